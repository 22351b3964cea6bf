#include "host/csv.h"

#include <cstring>

namespace kestran {

static std::size_t find(std::string_view text, char character, std::size_t begin) {
  if (begin >= text.size()) return std::string_view::npos;
  const void* found = std::memchr(text.data() + begin, character, text.size() - begin);
  return found == nullptr ? std::string_view::npos
                          : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

// A line feed ends the record unless it stands in quotes. Quotes open at the beginning of a field only: one
// within a field, as in 5" pipe, is a character like any other.
std::size_t record_end(std::string_view text, std::size_t begin, char delimiter) {
  std::size_t looked_at = begin;
  bool open = false;
  for (;;) {
    const std::size_t line_feed = find(text, '\n', looked_at);
    if (line_feed == std::string_view::npos) return line_feed;
    const std::string_view line = text.substr(0, line_feed);
    for (std::size_t quote = find(line, '"', looked_at); quote != std::string_view::npos;
         quote = find(line, '"', quote + 1)) {
      if (!open)
        open = quote == begin || text[quote - 1] == delimiter;
      else if (quote + 1 < line.size() && line[quote + 1] == '"')
        ++quote;
      else
        open = false;
    }
    if (!open) return line_feed + 1;
    looked_at = line_feed + 1;
  }
}

std::string_view without_line_end(std::string_view record) {
  if (!record.empty() && record.back() == '\n') record.remove_suffix(1);
  if (!record.empty() && record.back() == '\r') record.remove_suffix(1);
  return record;
}

void split_record(std::string_view record, char delimiter, std::vector<std::string_view>& fields) {
  fields.clear();
  std::size_t begin = 0;
  for (;;) {
    std::size_t end = begin;
    if (begin < record.size() && record[begin] == '"') {
      bool open = true;
      for (++end; end < record.size() && (open || record[end] != delimiter); ++end) {
        if (!open || record[end] != '"') continue;
        if (end + 1 < record.size() && record[end + 1] == '"')
          ++end;
        else
          open = false;
      }
    } else {
      end = find(record, delimiter, begin);
      if (end == std::string_view::npos) end = record.size();
    }
    fields.push_back(record.substr(begin, end - begin));
    if (end >= record.size()) return;
    begin = end + 1;
  }
}

std::string_view field_text(std::string_view field, std::string& room) {
  if (field.empty() || field.front() != '"') return field;
  room.clear();
  bool open = true;
  for (std::size_t i = 1; i < field.size(); ++i) {
    if (!open || field[i] != '"') {
      room += field[i];
    } else if (i + 1 < field.size() && field[i + 1] == '"') {  // two stand for one
      room += '"';
      ++i;
    } else {
      open = false;
    }
  }
  return room;
}

void append_field(std::string& record, std::string_view text, char delimiter) {
  const char special[] = {delimiter, '"', '\n', '\r', '\0'};
  if (text.find_first_of(special) == std::string_view::npos) {
    record += text;
    return;
  }
  record += '"';
  for (char character : text) {
    if (character == '"') record += '"';
    record += character;
  }
  record += '"';
}

}  // namespace kestran
