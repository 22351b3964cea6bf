// Options on average-price options.
#pragma once

#include <cstddef>
#include <cstdint>

#include "models/repricings.h"

namespace kestran {
struct CompoundAsian;
using CompoundAsianRepricings = Repricings<CompoundAsian, double, 20>;

/// The terms of a European option on an average-price option. Days are calendar days from today, whole or
/// not. The fixings still to be made are evenly spaced from toNext to ExpDays.
struct CompoundAsian {
  double S0 = 0.0;          // futures or forward price
  double r = 0.0;           // zero rate to ExpDays, continuous, per year
  double sigma1 = 0.0;      // volatility from the compound option's expiry until the first fixing, per year
  double sigma2 = 0.0;      // volatility from the compound option's expiry on, once a fixing is made
  double A = 0.0;           // average of the fixings made
  int N = 0;                // fixings in all
  int m = 0;                // fixings made
  double toNext = 0.0;      // days to the next fixing
  double ExpDays = 0.0;     // days to the last fixing: expiry and payment of the average-price option
  double sigma_c = 0.0;     // volatility from today to the compound option's expiry
  double K = 0.0;           // strike of the average-price option
  double X = 0.0;           // strike of the compound option
  double CmpExpDays = 0.0;  // days to the compound option's expiry
  double rc = 0.0;          // zero rate to CmpExpDays, continuous, per year
  // Odd: call on the average-price option, even: put; below 3: that is a call. As wide as its neighbours.
  std::int64_t CmpOptType = 0;
  CompoundAsianRepricings* kept = nullptr;  // what other results worked out; null for nothing
};
template <>
inline constexpr std::size_t bytes_of_terms<CompoundAsian> = offsetof(CompoundAsian, kept);
static_assert(bytes_of_terms<CompoundAsian> == 14 * sizeof(double));

enum class CompoundAsianResult : int {
  premium = 0,
  delta = 1,
  gamma = 2,
  vega = 3,  // to sigma_c
  rho = 4,
  theta = 5,
  delta_by_volatility = 6,   // change of delta with sigma_c
  vega_until_averaging = 7,  // to sigma1
  vega_while_averaging = 8,  // to sigma2
};

/// Fixings still to be made, and days from the next to the last: ten years of either are priced, more would
/// keep the caller waiting.
constexpr double compound_asian_most_fixings = 3653.0;

/// Whether an option stays within compound_asian_most_fixings; not so where a day count is not a number.
bool compound_asian_is_bounded(const CompoundAsian& option);

/// Premium of the compound option, by quadrature over the price at its expiry (see mean_payoff). There the
/// fixings still to come make an option on their sum (see sum_option); those on the way are integrated out
/// given the price at expiry, in three points (see sum_given_expiry). sigma_c rules until expiry, whether or
/// not a fixing has come in; from there sigma1 until the first fixing of all and sigma2 from it on. A fixing
/// that falls due on the way is worth the same whether it is counted as made or as due today, before or after
/// expiry: the premium has no jump. The average-price option pays at ExpDays, discounted at r. CmpExpDays <=
/// 0: the payoff at today's price, undiscounted.
///
/// Error against simulated fixing paths (216 deals of 5 to 52 fixings, 0 to 180 days before expiry, strikes
/// of 85 to 115 % of the price, one volatility for all), largest as a share of S0: volatility 20 % 5e-6, 40 %
/// 1e-5, 80 % 3e-5, 160 % 1.2e-4. A fixing past its day counts as today's.
///
/// An option that is not bounded, S0 or sigma_c not above 0, sigma_c sqrt(CmpExpDays / 365.25) above 25 and a
/// lack of memory give not a number. Nothing else is checked.
double compound_asian_price(const CompoundAsian& option);

/// Premium or a sensitivity, `RetType` being one of CompoundAsianResult, by repricing with moves of 0.1 % up
/// and down: delta and gamma per unit of S0, vegas per 1.00 of volatility, rho with both rates moved, per
/// 1.00 of rc, and 0 when rc = 0. Theta is the change over the next day (half of CmpExpDays when that is
/// less) per year, with the fixings that fall due coming in at S0; it bends where a fixing comes within the
/// day. Against exact derivatives of an option on an option (volatility 30 %, 60 and 180 days) the moves are
/// right within 1e-5 of each sensitivity; rounding stays below 1e-9 at a price of 100.
///
/// Any other RetType gives 0, as do all but the premium when CmpExpDays <= 0. A sensitivity to a volatility
/// of 0 is not a number, nor is any of an option that is not bounded.
double compound_asian_greek(const CompoundAsian& option, int RetType);

}  // namespace kestran
