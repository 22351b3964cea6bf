// Texts of today's Excel, which are UTF-16, and the host's own, which are UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace kestran {

/// Bytes that are no UTF-8 become halves of surrogate pairs, which narrow() makes the same bytes of.
std::u16string widen(std::string_view text);
std::string narrow(std::u16string_view text);

}  // namespace kestran
