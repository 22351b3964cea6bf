#include "models/black_scholes/boston.h"

#include <algorithm>
#include <cmath>

#include "models/black_scholes/european.h"
#include "numerics/elementary.h"
#include "numerics/root_bracketed.h"

namespace kestran {

double boston_strike(double S, double B, double T, double r, double q, double sigma, int OptType) {
  constexpr double no_strike = -99.0;
  const bool call_type = OptType != 0;
  const double sign = call_type ? 1.0 : -1.0;
  if (S <= 0.0 || B <= 0.0) return no_strike;
  if (std::isnan(S + B)) return S + B;
  if (!(T > 0.0)) return sign * (B - S) >= 0.0 ? B : no_strike;

  const double growth = exponential(r * T);
  const double F = S * exponential((r - q) * T);
  const double worse_than_forward = sign * (B - F);
  const double tolerance = 1e-9 * F;
  if (worse_than_forward < 0.0) return no_strike;
  if (worse_than_forward <= tolerance) return call_type ? 0.0 : no_strike;

  // By parity the fair terms say that the opposite option is worth what B is worse than the forward.
  const int opposite = call_type ? 0 : 1;
  const auto excess = [&](double K) {
    return growth * bs_general(S, K, T, r, q, sigma, opposite, 0) - worse_than_forward;
  };
  const double at_B = excess(B);
  if (std::isnan(at_B)) return at_B;
  if (at_B <= tolerance) return B;

  double lower = B, upper = B, at_lower = at_B, at_upper = at_B;
  if (call_type) {
    lower = 1e-6 * B;
    at_lower = excess(lower);
    if (at_lower > 0.0) return 0.0;
  } else {
    upper = 2.0 * std::max(B, F);
    at_upper = excess(upper);
    for (int doubling = 0; at_upper > 0.0; ++doubling) {
      if (doubling == 60) return no_strike;
      lower = upper;
      at_lower = at_upper;
      upper *= 2.0;
      at_upper = excess(upper);
    }
  }
  const BracketedRoot root =
      root_bracketed(excess, lower, upper, at_lower, at_upper, tolerance, 1e-12 * upper, 200);
  return root.status == 1 ? root.x : no_strike;
}

}  // namespace kestran
