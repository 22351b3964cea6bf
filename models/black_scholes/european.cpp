#include "models/black_scholes/european.h"

#include <cmath>
#include <cstdio>

#include "models/black_scholes/european_parts.h"
#include "models/bumps.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {

namespace {

double sign_of(int OptType) { return OptType == 0 ? -1.0 : 1.0; }

using Parts = EuropeanParts<elementary::OneValue>;

// Before expiry: the terms, and what stands in d1.
Parts option_parts(double S, double K, double T, double r, double q, double sigma, int OptType) {
  Parts option;
  option.S = S;
  option.T = T;
  option.r = r;
  option.q = q;
  option.sigma = sigma = floored_volatility(sigma);
  option.sign = sign_of(OptType);
  option.root_T = std::sqrt(T);
  // Divided while the logarithm is still under way.
  option.over_v = 1.0 / (sigma * option.root_T);
  option.moneyness = natural_log(S / K);
  option.drift = (r - q) + sigma * sigma / 2.0;
  option.d1 = (option.moneyness + option.drift * T) * option.over_v;
  return option;
}

}  // namespace

double bs_general(double S, double K, double T, double r, double q, double sigma, int OptType, int RetType) {
  if (!(T > 0.0)) return RetType == 0 ? positive_part(sign_of(OptType) * (S - K)) : 0.0;
  Parts option = option_parts(S, K, T, r, q, sigma, OptType);
  const double sign = option.sign, d1 = option.d1;
  const double v = option.sigma * option.root_T;
  // Expanded in each case, for calls would find all that these refer to in memory.
  const auto with_Dq = [&]() __attribute__((always_inline)) { option.Dq = exponential(-q * T); };
  const auto with_N1 = [&]() __attribute__((always_inline)) { option.N1 = cnorm(sign * d1); };
  const auto with_density = [&]() __attribute__((always_inline)) {
    option.density = exponential(-d1 * d1 / 2.0) * over_root_2_pi;
  };
  const auto with_asset_and_cash = [&]() __attribute__((always_inline)) {
    const __m128d discounted = exponential(_mm_set_pd(-r * T, -q * T)) * _mm_set_pd(K, S);
    const __m128d parts = discounted * cnorm(_mm_set_pd(sign * (d1 - v), sign * d1));
    option.asset = parts[0];
    option.cash = parts[1];
  };
  const auto with_cash = [&]() __attribute__((always_inline)) {
    option.cash = exponential(-r * T) * K * cnorm(sign * (d1 - v));
  };

  switch (static_cast<EuropeanResult>(RetType)) {
    case EuropeanResult::premium:
      with_asset_and_cash();
      return option.premium();
    case EuropeanResult::delta:
      with_Dq(), with_N1();
      return option.delta();
    case EuropeanResult::gamma:
      with_Dq(), with_density();
      return option.gamma();
    case EuropeanResult::vega:
      with_Dq(), with_density();
      return option.vega();
    case EuropeanResult::carry_rho:
      with_asset_and_cash();
      return option.carry_rho();
    case EuropeanResult::theta:
      with_asset_and_cash(), with_Dq(), with_density();
      return option.theta();
    case EuropeanResult::rho:
      with_cash();
      return option.rho();
    case EuropeanResult::delta_by_volatility:
      with_Dq(), with_density();
      return option.delta_by_volatility();
    case EuropeanResult::delta_by_time:
      with_Dq(), with_density(), with_N1();
      return option.delta_by_time();
    default:
      return 99.0;
  }
}

void bs_general_all(double S, double K, double T, double r, double q, double sigma, int OptType,
                    double results[european_results]) {
  if (!(T > 0.0)) {
    for (int i = 0; i < european_results; ++i) results[i] = 0.0;
    results[0] = positive_part(sign_of(OptType) * (S - K));
    return;
  }
  Parts option = option_parts(S, K, T, r, q, sigma, OptType);
  const double v = option.sigma * option.root_T;
  const __m128d discount = exponential(_mm_set_pd(-r * T, -q * T));
  const NormalPair normal =
      cnorm_and_bell(_mm_set_pd(option.sign * (option.d1 - v), option.sign * option.d1));
  const __m128d parts = discount * _mm_set_pd(K, S) * normal.N;
  option.Dq = discount[0];
  option.density = normal.bell[0] * over_root_2_pi;
  option.N1 = normal.N[0];
  option.asset = parts[0];
  option.cash = parts[1];
  option.each_result([&](EuropeanResult result, double value) { results[static_cast<int>(result)] = value; });
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
