// A level of a tree rolled back from the level after it, several nodes side by side: compiled for two and for
// four lanes. Everything is expanded where it is used: what was compiled for AVX2 must not serve other files.
#pragma once

#include "numerics/lanes.h"

namespace kestran {

struct RolledBack {
  double inwards, outwards;  // discounted probabilities of moves into and out of the money
  double centre, strike;     // the level's and the strike, below 0 for a put
  const double* ratio;       // of each node's price to the level's centre
};

/// Rolls the nodes first to `last` of a level back: V[j] from V[j] and V[j + 1]. Those up to last_exercised
/// may be exercised. Nodes go in pairs, whose second may lie beyond, whatever the width.
template <class Width, bool exercise>
[[gnu::always_inline]] inline void roll_back_nodes(const RolledBack& level, int first, int last, double* V) {
  using Real = typename Width::Real;
  constexpr int width = sizeof(Real) / sizeof(double);
  // Copies, which storing a value cannot change.
  const double inwards = level.inwards, outwards = level.outwards;
  const double centre = level.centre, strike = level.strike;
  const double* const ratio = level.ratio;
  const auto group = [&](auto lanes_of, int j) __attribute__((always_inline)) {
    using Group = decltype(lanes_of);
    using Values = typename Group::Real;
    Values value = outwards * load<Group>(V + j + 1) + inwards * load<Group>(V + j);
    // The value comes second, so that NaN stays.
    if (exercise) value = greater(centre * load<Group>(ratio + j) - strike, value);
    store(V + j, value);
  };
  int j = first;
  for (; j + width - 2 <= last; j += width) group(Width(), j);
  if (width > 2 && j <= last) group(elementary::TwoLanes(), j);
}

template <class Width>
[[gnu::always_inline]] inline void roll_back_level(const RolledBack& level, int first, int last_exercised,
                                                   int last, double* V) {
  roll_back_nodes<Width, true>(level, first, last_exercised, V);
  roll_back_nodes<Width, false>(level, last_exercised + 1, last, V);
}

/// Compiled for AVX2, and called only where the processor has it.
void roll_back_avx2(const RolledBack& level, int first, int last_exercised, int last, double* V);

}  // namespace kestran
