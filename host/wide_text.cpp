#include "host/wide_text.h"

#include "functions/utf8.h"

namespace kestran {

constexpr unsigned high_half = 0xD800, low_half = 0xDC00, beyond_halves = 0xE000, first_pair = 0x10000;

std::u16string widen(std::string_view text) {
  std::u16string wide;
  while (!text.empty()) {
    const std::size_t bytes = character_bytes(text);
    unsigned code = static_cast<unsigned char>(text[0]);
    if (bytes == 0) {
      code += low_half;
    } else if (bytes > 1) {
      code &= 0xFFu >> (bytes + 1);
      for (std::size_t i = 1; i < bytes; ++i)
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3Fu);
    }
    if (code >= first_pair) {
      wide += static_cast<char16_t>(high_half + ((code - first_pair) >> 10));
      code = low_half + ((code - first_pair) & 0x3FF);
    }
    wide += static_cast<char16_t>(code);
    text.remove_prefix(bytes == 0 ? 1 : bytes);
  }
  return wide;
}

std::string narrow(std::u16string_view text) {
  std::string narrowed;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned code = text[i];
    const bool pair = code >= high_half && code < low_half && i + 1 < text.size() &&
                      text[i + 1] >= low_half && text[i + 1] < beyond_halves;
    if (pair) code = first_pair + ((code - high_half) << 10) + (text[++i] - low_half);
    if (code < 0x80 || (code >= low_half + 0x80 && code <= low_half + 0xFF)) {
      narrowed += static_cast<char>(code);
      continue;
    }
    const int more = code < 0x800 ? 1 : code < first_pair ? 2 : 3;
    narrowed += static_cast<char>((0xFF00 >> (more + 1)) | (code >> (6 * more)));
    for (int shift = 6 * (more - 1); shift >= 0; shift -= 6)
      narrowed += static_cast<char>(0x80 | ((code >> shift) & 0x3F));
  }
  return narrowed;
}

}  // namespace kestran
