// Comma-separated values as RFC 4180 has them: records, fields, quotes. A record may end in a line feed with
// or without a carriage return before it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kestran {

/// The end of the record that begins at `begin`: one past its line feed, or npos when the text ends before.
std::size_t record_end(std::string_view text, std::size_t begin, char delimiter);

/// A record without its line end.
std::string_view without_line_end(std::string_view record);

/// Parts a record, which has no line end, into its fields as they stand, quotes included.
void split_record(std::string_view record, char delimiter, std::vector<std::string_view>& fields);

/// A field's text. One in quotes is read into `room`.
std::string_view field_text(std::string_view field, std::string& room);

/// Appends a text as a field, in quotes where it must be.
void append_field(std::string& record, std::string_view text, char delimiter);

}  // namespace kestran
