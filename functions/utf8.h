// Texts in UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace kestran {

/// Bytes of the character that `text` starts with; 0 when it starts with none.
std::size_t character_bytes(std::string_view text);

/// A text as JSON writes it, in quotes; bytes that are no UTF-8 become replacement characters.
std::string json_quoted(std::string_view text);

}  // namespace kestran
