// Numbers as exact text, and back.
#pragma once

#include <charconv>
#include <string>

namespace kestran {

/// The number in the shortest form that reads back exactly; inf, -inf or nan.
std::string exact_number(double number);

/// What std::from_chars does for doubles, where the C++ library has it and where it does not: the nearest
/// double, and where the number ends.
std::from_chars_result read_decimal(const char* begin, const char* end, double& number);

}  // namespace kestran
