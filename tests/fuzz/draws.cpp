// Inputs that are rows of choices, of which nothing need be read: each makes many cases.
#include "tests/fuzz/fuzzer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kestran::fuzz::Choices choices(data, size);
  for (int cases = 0; cases < 64; ++cases) kestran::fuzz::make_case(choices);
  return 0;
}

// Most inputs are new, so that no two make the same calls; a few are near one that led somewhere new.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                               unsigned seed) {
  const std::uint64_t bits[] = {kestran::fuzz::fresh_bits(seed), kestran::fuzz::fresh_bits(seed)};
  if (seed % 4 == 0 || most < sizeof bits) return LLVMFuzzerMutate(data, size, most);
  std::memcpy(data, bits, sizeof bits);
  return sizeof bits;
}
