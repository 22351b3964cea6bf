#include "addin/modern/help_topic.h"

#include <string_view>

#include "addin/modern/system12.h"

namespace kestran {

// The folder that a path lies in, with its separator; empty for a name alone.
static std::u16string folder_of(std::u16string_view path) {
  return std::u16string(path.substr(0, path.find_last_of(u"/\\") + 1));
}

static unsigned character_at(const std::u16string& text, std::size_t& place) {
  const unsigned first = text[place];
  const bool pair = first >= 0xD800 && first < 0xDC00 && place + 1 < text.size();
  return pair ? 0x10000 + ((first - 0xD800) << 10) + (text[++place] - 0xDC00u) : first;
}

// UTF-8 of a character, in the form that addresses have.
static void add_escaped(unsigned character, std::string& address) {
  constexpr char digits[] = "0123456789ABCDEF";
  const auto add = [&](unsigned byte) { address.append({'%', digits[byte >> 4], digits[byte & 15]}); };
  const int more = character < 0x80 ? 0 : character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  add(more == 0 ? character : ((0xFF00u >> (more + 1) & 0xFFu) | character >> (6 * more)));
  for (int shift = 6 * (more - 1); shift >= 0; shift -= 6) add(0x80u | (character >> shift & 0x3Fu));
}

// file:///C:/folder/, or file://server/folder/ where the path starts with two separators.
static std::string file_address(const std::u16string& folder) {
  std::string address;
  for (std::size_t place = 0; place < folder.size(); ++place) {
    const unsigned character = character_at(folder, place);
    const bool letter = (character | 0x20) >= 'a' && (character | 0x20) <= 'z';
    const bool plain = letter || (character >= '-' && character <= ':') || character == '_';
    if (character == '\\')
      address += '/';
    else if (plain)
      address += static_cast<char>(character);
    else
      add_escaped(character, address);
  }
  const bool server = address.rfind("//", 0) == 0, rooted = address.rfind('/', 0) == 0;
  return (server ? "file:" : rooted ? "file://" : "file:///") + address;
}

std::string reference_address(const std::u16string& library_path) {
  const std::u16string beside = folder_of(library_path);
  const std::u16string_view without_separator(beside.data(), beside.empty() ? 0 : beside.size() - 1);
  for (const std::u16string& folder : {beside, folder_of(without_separator)}) {
    const std::u16string reference = folder + u"reference/";
    if (!folder.empty() && is_file(reference + u"index.html")) return file_address(reference);
  }
  return "";
}

std::string help_topic(const std::string& address, const char* function) {
  const std::string topic = address + function + ".html!0";  // the number that Excel wants behind an address
  return address.empty() || topic.size() > longest_text ? "" : topic;
}

}  // namespace kestran
