// Inputs that are rows of choices, of which nothing need be read: each makes many cases.
#include <algorithm>
#include <random>

#include "tests/fuzz/fuzzer.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kestran::fuzz::Choices choices(data, size);
  for (int cases = 0; cases < 64; ++cases) kestran::fuzz::make_case(choices);
  return 0;
}

// Most inputs are new, so that no two make the same calls; a few are near one that led somewhere new.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                               unsigned seed) {
  if (seed % 4 == 0) return LLVMFuzzerMutate(data, size, most);
  static std::mt19937_64 numbers(seed);
  const std::size_t length = std::min<std::size_t>(most, 16);
  std::generate_n(data, length, [&] { return static_cast<std::uint8_t>(numbers()); });
  return length;
}
