#include "models/exotics/lookback.h"

#include <cmath>
#include <limits>

#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {

double lookback_price(double S, double K, double r, double q, double sigma, double days, int OptType,
                      double daysPerYear) {
  // What a call's distributions are short of 1, a put's take with the other sign.
  const double complement = OptType == 0 ? 1.0 : 0.0;
  const double T = days / daysPerYear;
  const double v = sigma * std::sqrt(T);
  // Divided while the logarithm is still under way.
  const double over_v = 1.0 / v;
  const double moneyness = natural_log(S / K);
  const double d1 = (moneyness + (r - q + sigma * sigma / 2.0) * T) * over_v;
  const double d2 = d1 - v;
  const __m128d Dr_Dq = exponential(_mm_set_pd(-q * T, -r * T));
  const double Dr = Dr_Dq[0], Dq = Dr_Dq[1];
  const __m128d N_d1 = cnorm(_mm_set_pd(-d1, d1)) - complement;
  const double N_minus_d1 = N_d1[1];

  double N_d2, L;
  if (r == q) {
    const double density = exponential(-d1 * d1 / 2.0) * over_root_2_pi;
    N_d2 = cnorm(d2) - complement;
    L = (-d1 * N_minus_d1 + density) * S * v * Dr;
  } else {
    const double B = 2.0 * (r - q) / (sigma * sigma);
    const __m128d N = cnorm(_mm_set_pd(B * v - d1, d2)) - complement;
    N_d2 = N[0];
    L = (N[1] * exponential(-B * moneyness) * Dr - N_minus_d1 * Dq) * (S / B);
  }
  return S * Dq * N_d1[0] - K * Dr * N_d2 + L;
}

double lookback_greek(double S, double K, double r, double q, double sigma, double days, int OptType,
                      double daysPerYear, int RetType) {
  const auto V = [&](double price_factor, double volatility_factor, double rate_factor, double time) {
    return lookback_price(S * price_factor, K, r * rate_factor, q * rate_factor, sigma * volatility_factor,
                          time, OptType, daysPerYear);
  };
  const auto value = [&] { return V(1.0, 1.0, 1.0, days); };
  switch (RetType) {
    case 0:
      return value();
    case 1:
      return (V(1.001, 1.0, 1.0, days) - value()) / (S * 0.001);
    case 2:
      return (V(1.001, 1.0, 1.0, days) + V(0.999, 1.0, 1.0, days) - 2.0 * value()) / (S * 0.001 * S * 0.001);
    case 3:
      return (V(1.0, 1.001, 1.0, days) - value()) / (sigma * 0.001);
    case 4:
      return r == 0.0 ? 0.0 : (V(1.0, 1.0, 1.001, days) - value()) / (r * 0.001);
    case 5:
      return (V(1.0, 1.0, 1.0, days - 1.0) - value()) / (1.0 / daysPerYear);
    case 6:
      return (V(1.001, 1.001, 1.0, days) + V(0.999, 0.999, 1.0, days) - V(0.999, 1.001, 1.0, days) -
              V(1.001, 0.999, 1.0, days)) /
             (4.0 * S * 0.001 * sigma * 0.001);
    default:
      return std::numeric_limits<double>::quiet_NaN();
  }
}

void lookback_greeks(double S, double K, double r, double q, double sigma, double days, int OptType,
                     double daysPerYear, double* out) {
  for (int RetType = 0; RetType <= 6; ++RetType)
    out[RetType] = lookback_greek(S, K, r, q, sigma, days, OptType, daysPerYear, RetType);
}

}  // namespace kestran
