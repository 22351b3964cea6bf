// Texts for callers of another language.
#pragma once

#include <cstdlib>
#include <cstring>
#include <string>

namespace kestran {

/// A copy with its end mark, which the caller gives to free(); null without memory.
inline char* handed_over(const std::string& text) {
  void* const copy = std::malloc(text.size() + 1);
  if (copy != nullptr) std::memcpy(copy, text.c_str(), text.size() + 1);
  return static_cast<char*>(copy);
}

}  // namespace kestran
