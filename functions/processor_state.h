// The processor's rounding mode and treatment of subnormal numbers, which any library in the process may have
// changed, as the models need them.
#pragma once

#include <immintrin.h>

namespace kestran {

/// While one lives, results are rounded to nearest, subnormal numbers count as what they are, and no
/// operation traps; what the caller had set comes back afterwards. Reading the state costs nothing to speak
/// of, writing it several times a short function, hence only where it differs.
class ProcessorState {
 public:
  ProcessorState() : callers(_mm_getcsr()) {
    if (differs()) _mm_setcsr(usual);
  }
  ~ProcessorState() {
    if (differs()) _mm_setcsr(callers);
  }
  ProcessorState(const ProcessorState&) = delete;
  ProcessorState& operator=(const ProcessorState&) = delete;

 private:
  static constexpr unsigned usual = 0x1F80;
  static constexpr unsigned exceptions_seen = 0x003F;
  bool differs() const { return (callers & ~exceptions_seen) != usual; }

  unsigned callers;
};

}  // namespace kestran
