#include "functions/utf8.h"

#include <cstdio>

namespace kestran {

std::size_t character_bytes(std::string_view text) {
  const auto byte = [text](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
  };
  const unsigned first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t bytes = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
  for (std::size_t i = 1; i < bytes; ++i)
    if ((byte(i) & 0xC0) != 0x80) return 0;
  // Longer than need be, half of a surrogate pair, or beyond the last character.
  const bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
  const bool beyond = (first == 0xED && byte(1) > 0x9F) || (first == 0xF4 && byte(1) > 0x8F);
  return overlong || beyond ? 0 : bytes;
}

std::string json_quoted(std::string_view text) {
  std::string quoted = "\"";
  quoted.reserve(text.size() + 2);
  while (!text.empty()) {
    const std::size_t bytes = character_bytes(text);
    const char c = text[0];
    if (bytes == 0) {
      quoted += "\\ufffd";
    } else if (c == '"' || c == '\\') {
      quoted += {'\\', c};
    } else if (bytes == 1 && static_cast<unsigned char>(c) < 0x20) {
      char code[8];
      std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
      quoted += code;
    } else {
      quoted += text.substr(0, bytes);
    }
    text.remove_prefix(bytes == 0 ? 1 : bytes);
  }
  return quoted + '"';
}

}  // namespace kestran
