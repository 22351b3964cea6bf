#include "models/exotics/spread_option.h"

#include <algorithm>
#include <cmath>

#include "models/bumps.h"
#include "models/exotics/spread_kernel.h"
#include "numerics/elementary.h"

namespace kestran {

double spread_option(double SA, double SB, double K, double r, double sigmaA, double sigmaB, double rho,
                     double T, int OptType, int RetType) {
  if (RetType < 0 || RetType > 16) return 99.0;
  if (!(T > 0.0)) return RetType == 0 ? positive_part((OptType == 0 ? -1.0 : 1.0) * (SA - SB - K)) : 0.0;
  if (sigmaA <= 0.0) sigmaA = 1e-5;
  if (sigmaB <= 0.0) sigmaB = 1e-5;

  enum Result { premium, delta_A, delta_B };
  struct Terms {
    double SA, SB, sigmaA, sigmaB, rho, T;
  };
  const Terms terms = {SA, SB, sigmaA, sigmaB, rho, T};
  const auto kernel = [&](Result result, const Terms& t) {
    const double root_T = std::sqrt(t.T);
    double out[3];
    spread_kernel(t.SA, t.SB, K, t.sigmaA * root_T, t.sigmaB * root_T, t.rho, exponential(-r * t.T), OptType,
                  out);
    return out[result];
  };
  // Two-sided: the vega of a spread may be near 0, where the error of a one-sided difference is all of it.
  const auto slope = [&](Result result, double Terms::*variable) {
    Terms up = terms, down = terms;
    up.*variable *= 1.001;
    down.*variable *= 0.999;
    return (kernel(result, up) - kernel(result, down)) / (0.002 * terms.*variable);
  };
  const auto slope_in_rho = [&] {
    const auto limited = [](double correlation) { return std::min(std::max(correlation, -1.0), 1.0); };
    Terms up = terms, down = terms;
    up.rho = limited(limited(rho) + 0.001);
    down.rho = limited(limited(rho) - 0.001);
    return (kernel(premium, up) - kernel(premium, down)) / (up.rho - down.rho);
  };
  const auto decay = [&](Result result) {
    Terms later = terms;
    const double h = day_step(T);
    later.T -= h;
    return (kernel(result, later) - kernel(result, terms)) / h;
  };

  switch (RetType) {
    case 0:
      return kernel(premium, terms);
    case 1:
      return kernel(delta_A, terms);
    case 2:
      return kernel(delta_B, terms);
    case 3:
      return slope(delta_A, &Terms::SA);
    case 4:
      return slope(delta_B, &Terms::SB);
    case 5:
      return slope(premium, &Terms::sigmaA);
    case 6:
      return slope(premium, &Terms::sigmaB);
    case 7:
      return slope_in_rho();
    case 8:
      return -T * kernel(premium, terms);
    case 9:
      return decay(premium);
    case 10:
      return decay(delta_A);
    case 11:
      return decay(delta_B);
    case 12:
      return slope(delta_A, &Terms::SB);
    case 13:
      return slope(delta_A, &Terms::sigmaA);
    case 14:
      return slope(delta_B, &Terms::sigmaB);
    case 15:
      return slope(delta_A, &Terms::sigmaB);
    default:
      return slope(delta_B, &Terms::sigmaA);
  }
}

}  // namespace kestran
