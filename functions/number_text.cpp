#include "functions/number_text.h"

#include <cmath>
#include <cstdlib>

namespace kestran {

std::string exact_number(double number) {
  if (std::isnan(number)) return "nan";
  char text[32];
  return std::string(text, std::to_chars(text, text + sizeof text, number).ptr);
}

#if defined(__cpp_lib_to_chars)

std::from_chars_result read_decimal(const char* begin, const char* end, double& number) {
  return std::from_chars(begin, end, number);
}

#else

// The C library's reading, but for what it takes beside: blanks, a plus sign and hexadecimal digits.
std::from_chars_result read_decimal(const char* begin, const char* end, double& number) {
  const std::string text(begin, end);
  const std::size_t sign = text[0] == '-';
  const char first = text[sign];
  const bool digits = (first >= '0' && first <= '9') || first == '.';
  const bool word = first == 'i' || first == 'I' || first == 'n' || first == 'N';
  if (!digits && !word) return {begin, std::errc::invalid_argument};
  if (first == '0' && (text[sign + 1] | 0x20) == 'x') {
    number = sign == 0 ? 0.0 : -0.0;
    return {begin + sign + 1, std::errc()};
  }
  char* stop = nullptr;
  const double read = std::strtod(text.c_str(), &stop);
  if (stop == text.c_str()) return {begin, std::errc::invalid_argument};
  const char* const next = begin + (stop - text.c_str());
  const std::string digits_read = text.substr(0, static_cast<std::size_t>(stop - text.c_str()));
  const bool vanished =
      read == 0.0 && digits_read.find_first_of("123456789") < digits_read.find_first_of("eE");
  if (!word && (std::isinf(read) || vanished)) return {next, std::errc::result_out_of_range};
  number = read;
  return {next, std::errc()};
}

#endif

}  // namespace kestran
