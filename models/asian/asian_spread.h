// Options on the difference of two average prices.
#pragma once

#include <cstddef>

#include "models/repricings.h"

namespace kestran {

/// Results of the average-price spread option, by their number on the worksheet.
enum class AsianSpreadResult : int {
  premium,
  delta_A,
  delta_B,
  gamma_A,
  gamma_B,
  vega_A,
  vega_B,
  by_correlation,
  carry_rho,
  theta,
  delta_A_by_time,
  delta_B_by_time,
  cross_gamma,
  vega_within,
};

struct AsianSpreadKept;

/// The terms of a European option on the difference of two arithmetic averages of daily fixings, payoff
/// max(+-(average A - average B - K), 0), paid on the day of the last fixing, which both averages share. Days
/// are counted from today; a day is 1/365.25 year. Volatilities are per year, and taken as 1e-5 when they are
/// not above 0.
struct AsianSpread {
  double PriceA = 0.0;   // spot price of A
  double PriceB = 0.0;   // and of B
  double K = 0.0;        // strike, of any sign
  double r = 0.0;        // interest rate, continuous, per year
  double q1 = 0.0;       // yield of A, likewise; the interest rate for a futures price
  double q2 = 0.0;       // yield of B
  double VolAf = 0.0;    // volatility of A from the start of its averaging onwards
  double VolBf = 0.0;    // and of B
  double VolA = 0.0;     // volatility of A until the start of its averaging
  double VolB = 0.0;     // and of B
  double rho = 0.0;      // correlation
  double SetAvgA = 0.0;  // average of A's fixings made, looked at when there are any
  double SetAvgB = 0.0;  // and of B's
  int E = 0;             // days to the last fixing
  int BA = 0;            // days to A's first fixing; negative: -BA are made, today's is not; beyond E: E
  int BB = 0;            // days to B's first fixing, likewise
  int OptType = 0;       // 0 put, any other value call
  AsianSpreadKept* kept = nullptr;  // what other results of the same call worked out; null for nothing
};
template <>
inline constexpr std::size_t bytes_of_terms<AsianSpread> = offsetof(AsianSpread, kept);
static_assert(bytes_of_terms<AsianSpread> == 15 * sizeof(double));

/// The option reduced to two lognormal prices, or to its payoff once averaging is over.
struct LognormalSpread {
  bool settled;
  double payoff;
  double FA, FB, K;
  double vA, vB, rho;
  double D;
  int OptType;
  AsianSpreadKept* kept;
};

struct LognormalTerms {
  double FA, FB, K, vA, vB, rho, D;
};

/// What results of one call share: reductions as of today and of tomorrow, and premiums.
struct AsianSpreadKept {
  Repricings<AsianSpread, LognormalSpread, 8> today;
  Repricings<AsianSpread, LognormalSpread, 2> tomorrow;
  Repricings<LognormalTerms, double, 24> premiums;
};

/// Days that may lie between the first fixing outstanding and the last: a century of them. More would keep
/// the caller waiting.
constexpr int asian_spread_most_days = 36525;

/// From the earlier of both first outstanding fixings to the last one, in days.
double asian_spread_days(int E, int BA, int BB);

/// Premium: the average of the outstanding fixings of each price is taken as lognormal with its exact mean
/// and variance (Levy 1992, "Pricing European average rate currency options", Journal of International Money
/// and Finance 11), the correlation of the two logarithms from the exact mean of the product; fixings made go
/// into the strike, and spread_kernel prices the rest.
///
/// Error against simulations of the fixings (tools/measure-accuracy: strikes within two deviations, up to a
/// year of averaging, correlations of -0.5 to 0.98), as a share of the premium at the money: half of the
/// deals within 0.06 %; 95 % within 0.25 % at a deviation sigma sqrt(T) up to 0.12, 0.5 % up to 0.2, 0.6 % up
/// to 0.3, 0.9 % up to 0.5 and 1.2 % up to 0.8; the largest 0.6, 0.8, 1.4, 2.6 and 4 %, mostly too high. A
/// single fixing left has the accuracy of spread_kernel.
///
/// E < 1: averaging is over; the payoff on SetAvgA and SetAvgB, undiscounted. More than
/// asian_spread_most_days between the fixings gives not a number. Nothing else is checked: prices of 0 and
/// below count as in spread_kernel.
double asian_spread_price(const AsianSpread& option);

/// Premium or a sensitivity, by repricing, the relative moves being 0.1 %:
///   0 premium
///   1 and 2 delta, 3 and 4 gamma by price A and price B
///   5 and 6 vega, both volatilities of price A, of price B up by 0.0001, per 1.00
///   7 sensitivity to the correlation, per 1.00: moved towards 0 by 0.1 %, up by 0.001 from 0
///   8 sensitivity to r and both yields moving together, per 1.00
///   9 theta, change over one day per year; fixings falling due in it are made at today's prices
///   10 and 11 change of the deltas by price A and price B over that day, per year
///   12 cross gamma
///   13 vega, both volatilities within averaging (VolAf, VolBf) up by 0.0001, per 1.00
/// Any other RetType gives 99.0. E < 1: every result but the premium is 0.
double asian_spread_greek(const AsianSpread& option, int RetType);

}  // namespace kestran
