#include "models/exotics/spread_option.h"

#include <algorithm>
#include <cmath>

#include "models/bumps.h"
#include "models/exotics/spread_kernel.h"
#include "numerics/elementary.h"

namespace kestran {

double spread_option(double SA, double SB, double K, double r, double sigmaA, double sigmaB, double rho,
                     double T, int OptType, int RetType, SpreadRepricings* kept) {
  if (RetType < 0 || RetType > 16) return 99.0;
  if (!(T > 0.0)) return RetType == 0 ? positive_part((OptType == 0 ? -1.0 : 1.0) * (SA - SB - K)) : 0.0;
  sigmaA = floored_volatility(sigmaA);
  sigmaB = floored_volatility(sigmaB);

  using Terms = SpreadTerms;
  using KernelResult = double SpreadValues::*;
  constexpr KernelResult premium = &SpreadValues::premium;
  constexpr KernelResult delta_A = &SpreadValues::delta_A, delta_B = &SpreadValues::delta_B;
  const Terms terms = {SA, SB, sigmaA, sigmaB, rho, T};
  const auto values = [&](const Terms& t) -> SpreadValues {
    const double root_T = std::sqrt(t.T);
    double out[3];
    spread_kernel(t.SA, t.SB, K, t.sigmaA * root_T, t.sigmaB * root_T, t.rho, exponential(-r * t.T), OptType,
                  out);
    return {out[0], out[1], out[2]};
  };
  const auto kernel = [&](KernelResult result, const Terms& t) { return repriced(kept, t, values).*result; };
  // Two-sided: the vega of a spread may be near 0, where the error of a one-sided difference is all of it.
  const auto slope = [&](KernelResult result, double Terms::*variable) {
    Terms up = terms, down = terms;
    up.*variable *= bump_up;
    down.*variable *= bump_down;
    return (kernel(result, up) - kernel(result, down)) / (2.0 * bump * terms.*variable);
  };
  const auto slope_in_rho = [&] {
    const auto limited = [](double correlation) { return std::min(std::max(correlation, -1.0), 1.0); };
    Terms up = terms, down = terms;
    up.rho = limited(limited(rho) + bump);
    down.rho = limited(limited(rho) - bump);
    return (kernel(premium, up) - kernel(premium, down)) / (up.rho - down.rho);
  };
  const auto decay = [&](KernelResult result) {
    Terms later = terms;
    const double h = day_step(T);
    later.T -= h;
    return (kernel(result, later) - kernel(result, terms)) / h;
  };

  switch (static_cast<SpreadResult>(RetType)) {
    case SpreadResult::premium:
      return kernel(premium, terms);
    case SpreadResult::delta_A:
      return kernel(delta_A, terms);
    case SpreadResult::delta_B:
      return kernel(delta_B, terms);
    case SpreadResult::gamma_A:
      return slope(delta_A, &Terms::SA);
    case SpreadResult::gamma_B:
      return slope(delta_B, &Terms::SB);
    case SpreadResult::vega_A:
      return slope(premium, &Terms::sigmaA);
    case SpreadResult::vega_B:
      return slope(premium, &Terms::sigmaB);
    case SpreadResult::by_correlation:
      return slope_in_rho();
    case SpreadResult::rho:
      return -T * kernel(premium, terms);
    case SpreadResult::theta:
      return decay(premium);
    case SpreadResult::delta_A_by_time:
      return decay(delta_A);
    case SpreadResult::delta_B_by_time:
      return decay(delta_B);
    case SpreadResult::cross_gamma:
      return slope(delta_A, &Terms::SB);
    case SpreadResult::delta_A_by_vol_A:
      return slope(delta_A, &Terms::sigmaA);
    case SpreadResult::delta_B_by_vol_B:
      return slope(delta_B, &Terms::sigmaB);
    case SpreadResult::delta_A_by_vol_B:
      return slope(delta_A, &Terms::sigmaB);
    case SpreadResult::delta_B_by_vol_A:
      return slope(delta_B, &Terms::sigmaA);
    default:
      return 99.0;
  }
}

}  // namespace kestran
