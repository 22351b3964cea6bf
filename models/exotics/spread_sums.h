// The sums of the quadrature behind spread_kernel.
#pragma once

namespace kestran {

constexpr int spread_slots = 56;  // of which the last has no weight: a whole number of lanes

/// Values of a standard normal variable, and their weights.
struct SpreadNodes {
  alignas(16) double z[spread_slots];
  double weight[spread_slots];
};

/// An option on optioned - given - strike, a call (sign 1) or a put (-1), at the values of z: given z, the
/// given price is given e^(v z - v^2 / 2) and the optioned one lognormal about optioned e^(m z - m^2 / 2)
/// with the deviation s.
struct SpreadIntegrand {
  double optioned, log_optioned, m;
  double given, v;
  double strike;
  double s, sign;
};

/// The option's value given z, without the sign, times weight and e^(-z^2 / 2), summed over the nodes, and
/// the same of what multiplies the two forwards in it.
struct SpreadSums {
  double value, in_optioned, in_given;
};

/// Whether no exponential and no strike leaves the usual range of numbers at nodes that rise from the first
/// to the last.
bool is_ordinary(const SpreadIntegrand& integrand, const SpreadNodes& nodes);

/// For what is ordinary. Compiled for AVX2, and to be called only where the processor has it; the bits are
/// those of spread_sums_kernel with two lanes.
SpreadSums spread_sums_avx2(const SpreadIntegrand& integrand, const SpreadNodes& nodes);

}  // namespace kestran
