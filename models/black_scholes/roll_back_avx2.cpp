// Compiled for AVX2, and called only where the processor has it.
#include "models/black_scholes/roll_back_kernel.h"

namespace kestran {

void roll_back_avx2(const RolledBack& level, int first, int last_exercised, int last, double* V) {
  roll_back_level<elementary::FourLanes>(level, first, last_exercised, last, V);
}

}  // namespace kestran
