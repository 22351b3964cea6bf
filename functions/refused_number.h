// Refusals among plain doubles, for hosts whose results and arguments are arrays of numbers: quiet NaNs that
// carry the code. Copies keep it, and so do rounding to float and back and most arithmetic.
#pragma once

#include <cstdint>
#include <cstring>

namespace kestran {

/// Code of an argument that is text or a logical value. No call is refused with it.
constexpr int no_number_code = 65534;

constexpr std::uint64_t refusal_mark = 0x7FFD600000000000u;  // with the code, bits that survive in a float
constexpr int refusal_code_shift = 29;

/// The NaN that stands for a refusal; `code` is 0 to 65535.
inline double refused_number(int code) {
  const std::uint64_t bits = refusal_mark | static_cast<std::uint64_t>(code) << refusal_code_shift;
  double number = 0.0;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

/// The code that a number carries; -1 for one that carries none, as any other NaN.
inline int refusal_code(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  bits &= ~(std::uint64_t{1} << 63);  // the sign of a NaN says nothing
  constexpr std::uint64_t codes = std::uint64_t{0xFFFF} << refusal_code_shift;
  return (bits & ~codes) == refusal_mark ? static_cast<int>((bits & codes) >> refusal_code_shift) : -1;
}

}  // namespace kestran
