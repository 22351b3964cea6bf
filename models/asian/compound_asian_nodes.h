// The payoff of an option on an average-price option at many prices at its expiry.
#pragma once

#include "models/asian/compound_asian_payoff.h"

namespace kestran {

constexpr int most_payoff_lanes = 4;

/// Where exercise stands, `count` numbers each, at points whose room is a multiple of most_payoff_lanes.
struct CompoundAsianNodes {
  int count = 0;
  const double* y = nullptr;  // deviations of the price at expiry from its mean, any number after the last
  double* price = nullptr;    // at expiry
  double* strike = nullptr;   // left for the fixings ahead
  double* margin = nullptr;   // see exercise_margin
  double* bell = nullptr;     // e^(-y^2 / 2)
};

/// Fills in what stands at the points, in the bits of one point at a time, given the z of mean_payoff.
void exercise_at_nodes(const CompoundAsianPayoff& payoff, double z, const CompoundAsianNodes& nodes);

/// The same compiled for AVX2: to be called only where the processor has it.
void exercise_at_nodes_avx2(const CompoundAsianPayoff& payoff, double z, const CompoundAsianNodes& nodes);

}  // namespace kestran
