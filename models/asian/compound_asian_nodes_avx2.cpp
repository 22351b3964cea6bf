// Compiled for AVX2, and called only where the processor has it.
#include "models/asian/compound_asian_nodes_kernel.h"

namespace kestran {

void exercise_at_nodes_avx2(const CompoundAsianPayoff& payoff, double z, const CompoundAsianNodes& nodes) {
  exercise_at_nodes_kernel<elementary::FourLanes>(payoff, z, nodes);
}

}  // namespace kestran
