#include "models/exotics/rainbow.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/black_scholes/black_scholes_price.h"
#include "models/bumps.h"
#include "numerics/bivariate_normal.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

// binorm with a correlation that follows from `rho`. At a rho of 1 or -1 rounding may put it beyond 1, where
// binorm mostly has no answer.
double binorm_derived(double a, double b, double derived, double rho) {
  const double result = binorm(a, b, derived);
  if (!std::isnan(result) || std::fabs(rho) > 1.0) return result;
  return binorm(a, b, std::min(std::max(derived, -1.0), 1.0));
}

double price(const RainbowOption& option) {
  const double S1 = option.S1, S2 = option.S2, X = option.X, T = option.T;
  const double r = option.r, q1 = option.q1, q2 = option.q2;
  const double sigma1 = option.sigma1, sigma2 = option.sigma2, rho = option.rho;
  const std::int64_t OptType = option.OptType;
  if (OptType < 1 || OptType > 6) return -1e26;
  const double root_T = std::sqrt(T);
  const double variance = sigma1 * sigma1 + sigma2 * sigma2 - 2.0 * rho * sigma1 * sigma2;
  const double sigma = std::sqrt(variance);
  const double v = sigma * root_T;
  // Divided while the logarithm is still under way.
  const double over_v = 1.0 / v;
  const double moneyness = natural_log(S1 / S2);
  const double d = (moneyness + (q2 - q1 + variance / 2.0) * T) * over_v;
  const __m128d assets = _mm_set_pd(S2, S1) * exponential(_mm_set_pd(-q2 * T, -q1 * T));
  const double asset1 = assets[0];
  const double asset2 = assets[1];
  const __m128d N = cnorm(_mm_set_pd(d - v, d));
  const double N1 = N[0];

  const auto exchange = [&] { return asset1 * N1 - asset2 * N[1]; };
  if (OptType == 5) return exchange();

  const double cash = X * exponential(-r * T);
  const auto better_asset = [&] { return asset2 + exchange(); };
  const auto best_of_three = [&] {
    const double v1 = sigma1 * root_T;
    const double v2 = sigma2 * root_T;
    const double y1 = (natural_log(S1 / X) + (r - q1 + sigma1 * sigma1 / 2.0) * T) / v1;
    const double y2 = (natural_log(S2 / X) + (r - q2 + sigma2 * sigma2 / 2.0) * T) / v2;
    const double reverse_d = (-moneyness + (q1 - q2 + variance / 2.0) * T) / v;
    return asset1 * (N1 - binorm_derived(-y1, d, (rho * sigma2 - sigma1) / sigma, rho)) +
           asset2 *
               (cnorm(reverse_d) - binorm_derived(-y2, reverse_d, (rho * sigma1 - sigma2) / sigma, rho)) +
           cash * binorm(v1 - y1, v2 - y2, rho);
  };
  if (OptType == 6) return X == 0.0 ? better_asset() : best_of_three();

  const double call_on_greater = X == 0.0 ? better_asset() : best_of_three() - cash;
  if (OptType == 1) return call_on_greater;
  if (OptType == 3) return cash - better_asset() + call_on_greater;

  const double calls = bs_call(S1, X, T, r, q1, sigma1) + bs_call(S2, X, T, r, q2, sigma2);
  const double call_on_smaller = calls - call_on_greater;
  return OptType == 2 ? call_on_smaller : cash - (asset1 + asset2 - better_asset()) + call_on_smaller;
}

}  // namespace

double rainbow_price(const RainbowOption& option) { return repriced(option.kept, option, price); }

double rainbow_greek(const RainbowOption& option, int RetType) {
  const double h1 = option.S1 * bump;
  const double h2 = option.S2 * bump;
  const auto at_prices = [&](double factor1, double factor2) {
    RainbowOption moved = option;
    moved.S1 *= factor1;
    moved.S2 *= factor2;
    return rainbow_price(moved);
  };
  const auto base = [&] { return rainbow_price(option); };
  const auto with = [&](double RainbowOption::*term, double value) {
    RainbowOption moved = option;
    moved.*term = value;
    return rainbow_price(moved);
  };
  const double r = option.r, T = option.T, rho = option.rho;

  switch (static_cast<RainbowResult>(RetType)) {
    case RainbowResult::premium:
      return base();
    case RainbowResult::delta_1:
      return (at_prices(bump_up, 1.0) - base()) / h1;
    case RainbowResult::delta_2:
      return (at_prices(1.0, bump_up) - base()) / h2;
    case RainbowResult::gamma_1:
      return (at_prices(bump_up, 1.0) + at_prices(bump_down, 1.0) - 2.0 * base()) / (h1 * h1);
    case RainbowResult::gamma_2:
      return (at_prices(1.0, bump_up) + at_prices(1.0, bump_down) - 2.0 * base()) / (h2 * h2);
    case RainbowResult::cross_gamma:
      return (at_prices(bump_up, bump_up) + at_prices(bump_down, bump_down) - at_prices(bump_up, bump_down) -
              at_prices(bump_down, bump_up)) /
             (4.0 * h1 * h2);
    case RainbowResult::vega_1:
      return (with(&RainbowOption::sigma1, option.sigma1 * bump_up) - base()) / (option.sigma1 * bump);
    case RainbowResult::vega_2:
      return (with(&RainbowOption::sigma2, option.sigma2 * bump_up) - base()) / (option.sigma2 * bump);
    case RainbowResult::by_correlation:
      if (rho == 0.0) return (with(&RainbowOption::rho, bump) - base()) / bump;
      return (with(&RainbowOption::rho, rho * bump_down) - base()) / (-rho * bump);
    case RainbowResult::rho: {
      if (r == 0.0) return 0.0;
      // The moved rate serves as both yields, whatever they were, and sizes the step: intended.
      RainbowOption moved = option;
      moved.r = moved.q1 = moved.q2 = r * bump_up;
      return (rainbow_price(moved) - base()) / (moved.r * bump);
    }
    case RainbowResult::theta:
      return (base() - with(&RainbowOption::T, T * bump_up)) / (T * bump);
    default:
      return std::numeric_limits<double>::quiet_NaN();
  }
}

}  // namespace kestran
