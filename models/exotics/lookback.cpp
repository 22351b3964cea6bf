#include "models/exotics/lookback.h"

#include <cmath>
#include <limits>

#include "models/bumps.h"
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
                      double daysPerYear, int RetType, LookbackRepricings* kept) {
  const auto price = [&](const LookbackMoves& by) {
    return lookback_price(S * by.price, K, r * by.rates, q * by.rates, sigma * by.volatility, by.days,
                          OptType, daysPerYear);
  };
  const auto V = [&](double price_factor, double volatility_factor, double rate_factor, double time) {
    return repriced(kept, LookbackMoves{price_factor, volatility_factor, rate_factor, time}, price);
  };
  const auto value = [&] { return V(1.0, 1.0, 1.0, days); };
  switch (static_cast<LookbackResult>(RetType)) {
    case LookbackResult::premium:
      return value();
    case LookbackResult::delta:
      return (V(bump_up, 1.0, 1.0, days) - value()) / (S * bump);
    case LookbackResult::gamma:
      return (V(bump_up, 1.0, 1.0, days) + V(bump_down, 1.0, 1.0, days) - 2.0 * value()) /
             (S * bump * S * bump);
    case LookbackResult::vega:
      return (V(1.0, bump_up, 1.0, days) - value()) / (sigma * bump);
    case LookbackResult::rho:
      return r == 0.0 ? 0.0 : (V(1.0, 1.0, bump_up, days) - value()) / (r * bump);
    case LookbackResult::theta:
      return (V(1.0, 1.0, 1.0, days - 1.0) - value()) / (1.0 / daysPerYear);
    case LookbackResult::delta_by_volatility:
      return (V(bump_up, bump_up, 1.0, days) + V(bump_down, bump_down, 1.0, days) -
              V(bump_down, bump_up, 1.0, days) - V(bump_up, bump_down, 1.0, days)) /
             (4.0 * S * bump * sigma * bump);
    default:
      return std::numeric_limits<double>::quiet_NaN();
  }
}

void lookback_greeks(double S, double K, double r, double q, double sigma, double days, int OptType,
                     double daysPerYear, double* out) {
  LookbackRepricings kept;
  for (int RetType = 0; RetType <= 6; ++RetType)
    out[RetType] = lookback_greek(S, K, r, q, sigma, days, OptType, daysPerYear, RetType, &kept);
}

}  // namespace kestran
