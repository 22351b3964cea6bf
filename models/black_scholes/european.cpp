#include "models/black_scholes/european.h"

#include <cmath>
#include <cstdio>

#include "models/bumps.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {

double bs_general(double S, double K, double T, double r, double q, double sigma, int OptType, int RetType) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  if (!(T > 0.0)) return RetType == 0 ? positive_part(sign * (S - K)) : 0.0;
  sigma = floored_volatility(sigma);

  const double root_T = std::sqrt(T);
  const double v = sigma * root_T;
  // Divided while the logarithm is still under way.
  const double over_v = 1.0 / v;
  const double moneyness = natural_log(S / K);
  const double drift = (r - q) + sigma * sigma / 2.0;
  const double d1 = (moneyness + drift * T) * over_v;
  const auto Dq = [&] { return exponential(-q * T); };
  const auto N1 = [&] { return cnorm(sign * d1); };
  const auto density = [&] { return exponential(-d1 * d1 / 2.0) * over_root_2_pi; };
  // S and K after discounting, times their probabilities, without the sign.
  const auto asset_and_cash = [&] {
    const __m128d discounted = exponential(_mm_set_pd(-r * T, -q * T)) * _mm_set_pd(K, S);
    return discounted * cnorm(_mm_set_pd(sign * (d1 - v), sign * d1));
  };
  const auto cash = [&] { return exponential(-r * T) * K * cnorm(sign * (d1 - v)); };
  const auto premium = [&] {
    const __m128d parts = asset_and_cash();
    return sign * (parts[0] - parts[1]);
  };

  switch (static_cast<EuropeanResult>(RetType)) {
    case EuropeanResult::premium:
      return premium();
    case EuropeanResult::delta:
      return sign * Dq() * N1();
    case EuropeanResult::gamma:
      return Dq() * density() * over_v / S;
    case EuropeanResult::vega:
      return Dq() * S * density() * root_T;
    case EuropeanResult::carry_rho:
      return -T * premium();
    case EuropeanResult::theta: {
      const __m128d parts = asset_and_cash();
      return -S * density() * sigma * Dq() / (2.0 * root_T) + sign * (q * parts[0] - r * parts[1]);
    }
    case EuropeanResult::rho:
      return sign * T * cash();
    case EuropeanResult::delta_by_volatility:
      return (root_T - d1 / sigma) * Dq() * density();
    case EuropeanResult::delta_by_time:
      return -Dq() * ((drift - moneyness / T) * density() * over_v / 2.0 - sign * q * N1());
    default:
      return 99.0;
  }
}

double bseuro(int OptType, double S, double K, double quantity, double T, double sigma, double r, double q) {
  if (OptType < 0 || OptType > 2) {
    std::fputs("Error encountered...\nError in bseuro\n", stderr);
    return 0.0;
  }
  const double v = sigma * std::sqrt(T);
  const double d1 = (natural_log(S / K) + ((r - q) + sigma * sigma / 2.0) * T) / v;
  const double d2 = d1 - v;
  const double Dq = exponential(-q * T);
  const double Dr = exponential(-r * T);
  const auto N = [](double x) { return cnorm3(x, cnorm3_poly(x)); };
  const double call = OptType == 0 ? 0.0 : Dq * S * N(d1) - Dr * K * N(d2);
  const double put = OptType == 1 ? 0.0 : Dr * K * N(-d2) - Dq * S * N(-d1);
  return quantity * (call + put);
}

}  // namespace kestran
