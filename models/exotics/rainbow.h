// Options on the better or the worse of two prices.
#pragma once

#include <cstddef>
#include <cstdint>

#include "models/repricings.h"

namespace kestran {

/// Results of a rainbow option, by their number on the worksheet.
enum class RainbowResult : int {
  premium,
  delta_1,
  delta_2,
  gamma_1,
  gamma_2,
  cross_gamma,
  vega_1,
  vega_2,
  by_correlation,
  rho,
  theta,
};
struct RainbowOption;
using RainbowRepricings = Repricings<RainbowOption, double, 16>;

/// The terms of an option on two prices. Rates are continuous, rates and volatilities per year.
struct RainbowOption {
  double S1 = 0.0, S2 = 0.0;  // prices
  double X = 0.0;             // strike or cash amount
  double r = 0.0;             // interest rate
  double q1 = 0.0, q2 = 0.0;  // yields
  double T = 0.0;             // years to expiry
  double sigma1 = 0.0, sigma2 = 0.0;
  double rho = 0.0;
  std::int64_t OptType = 0;           // see below; as wide as its neighbours
  RainbowRepricings* kept = nullptr;  // what other results of the same call worked out; null for nothing
};
template <>
inline constexpr std::size_t bytes_of_terms<RainbowOption> = offsetof(RainbowOption, kept);
static_assert(bytes_of_terms<RainbowOption> == 11 * sizeof(double));

/// Premium of a European option on two lognormal prices with continuous yields (Stulz 1982, "Options on the
/// minimum or the maximum of two risky assets"; exchange option: Margrabe 1978), with binorm and cnorm:
/// measured within 1e-5 of the largest of S1, S2 and X, the exchange option within 2e-7. OptType:
///   1 call on the greater price   2 call on the smaller   3 put on the greater   4 put on the smaller
///   5 exchange: receive price 1 for price 2   6 the best of both prices and the cash X
///
/// An unknown OptType gives -1e26. Correlations that follow from a rho of 1 or -1 are kept within -1..1,
/// where rounding would leave them beyond. Nothing else is checked: prices of equal volatility at a rho of 1,
/// T = 0 or prices of 0 give what the arithmetic gives, mostly not a number. X = 0 is the greater price
/// itself (1 and 6).
double rainbow_price(const RainbowOption& option);

/// Premium or a sensitivity by re-pricing. Steps are 0.1 % of the argument unless said otherwise. RetType:
///   0 premium   1 delta 1   2 delta 2   3 gamma 1   4 gamma 2   5 cross gamma
///   6 vega to sigma1, 7 to sigma2, per 1.00 of volatility
///   8 to rho, per 1.00 of correlation: step down; from rho = 0 up to 0.001
///   9 to r and both yields set to the moved r, divided by the step of the moved r; 0 when r is 0
///   10 theta per year, change of value as time passes
///
/// Another RetType is not a number.
double rainbow_greek(const RainbowOption& option, int RetType);

}  // namespace kestran
