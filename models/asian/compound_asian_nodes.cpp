#include "models/asian/compound_asian_nodes.h"

#include "models/asian/compound_asian_nodes_kernel.h"

namespace kestran {

void exercise_at_nodes(const CompoundAsianPayoff& payoff, double z, const CompoundAsianNodes& nodes) {
#if !defined(__wasm__)
  if (lanes() == 4) return exercise_at_nodes_avx2(payoff, z, nodes);
#endif
  exercise_at_nodes_kernel<elementary::TwoLanes>(payoff, z, nodes);
}

}  // namespace kestran
