// Compiled for AVX2, and called only where the processor has it.
#include "models/exotics/spread_sums_kernel.h"

namespace kestran {

SpreadSums spread_sums_avx2(const SpreadIntegrand& integrand, const SpreadNodes& nodes) {
  return spread_sums_kernel<elementary::FourLanes, true>(integrand, nodes);
}

}  // namespace kestran
