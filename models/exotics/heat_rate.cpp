#include "models/exotics/heat_rate.h"

#include <algorithm>
#include <cmath>

#include "models/bumps.h"
#include "models/repricings.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

// The result RetType, or all of them, into `out`.
template <bool all>
[[gnu::always_inline]] inline void work_out(double SA, double SB, double K, double r, double sigma_A,
                                            double sigma_B, double rho, double T, int OptType, int RetType,
                                            double* out) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  const double R = SA / SB;
  if (T <= 0.0) {
    std::fill_n(out, all ? heat_rate_results : 1, 0.0);
    if (all || RetType == 0) *out = positive_part(sign * (R - K));
    return;
  }
  sigma_A = floored_volatility(sigma_A);

  const double sigma = std::sqrt(sigma_B * sigma_B + sigma_A * sigma_A - 2.0 * rho * sigma_A * sigma_B);
  const double root_T = std::sqrt(T);
  const double v = sigma * root_T;
  // Divided while the logarithm is still under way.
  const double over_v = 1.0 / v;
  const double D = exponential(-r * T);
  const double moneyness = natural_log(SA / (SB * K));
  const double d1 = (moneyness + sigma * sigma * T / 2.0) * over_v;
  const auto arguments = [&] { return _mm_set_pd(sign * (d1 - v), sign * d1); };
  const auto shared = once<all>([&] { return cnorm_and_bell(arguments()); });
  const auto N1 = [&] {
    if constexpr (all) return shared().N[0];
    return cnorm(sign * d1);
  };
  const auto density = [&] {
    if constexpr (all) return shared().bell[0] * over_root_2_pi;
    return exponential(-d1 * d1 / 2.0) * over_root_2_pi;
  };
  // R and K times their probabilities.
  const auto ratio_and_strike = [&] {
    if constexpr (all) return _mm_set_pd(K, R) * shared().N;
    return _mm_set_pd(K, R) * cnorm(arguments());
  };
  const auto premium = [&] {
    const __m128d parts = ratio_and_strike();
    return sign * (parts[0] - parts[1]) * D;
  };
  // Of the delta in SA with time, before discounting. The put's has the opposite sign, which is intended.
  const auto delta_decay = once<all>([&] {
    const __m128d per_B = _mm_set_pd(density(), r * N1()) / SB;
    return per_B[0] - sign * per_B[1] * (sigma * sigma / 2.0 - moneyness / T) * over_v / 2.0;
  });
  // By sigma_A and by sigma_B.
  const auto vegas = once<all>([&] {
    const __m128d own = _mm_set_pd(sigma_B, sigma_A), other = _mm_set_pd(sigma_A, sigma_B);
    return (own - rho * other) * R * D * density() * root_T / sigma;
  });

  const auto result = [&](int which) __attribute__((always_inline))->double {
    switch (static_cast<HeatRateResult>(which)) {
      case HeatRateResult::premium:
        return premium();
      case HeatRateResult::delta_A:
        return sign * D * N1() / SB;
      case HeatRateResult::delta_B:
        return -sign * D * N1() * SA / (SB * SB);
      case HeatRateResult::gamma_A:
        return D * density() / (SA * SB) * over_v;
      case HeatRateResult::gamma_B: {
        const double convexity = sign * 2.0 * SA * N1();
        const double curvature = SA * density() * over_v;
        const double cube = SB * SB * SB;
        // Without a price B the second term has no value, and so the two have no sum.
        return (cube == 0.0 ? convexity / cube + curvature / cube : (convexity + curvature) / cube) * D;
      }
      case HeatRateResult::vega_A:
        return vegas()[0];
      case HeatRateResult::vega_B:
        return vegas()[1];
      case HeatRateResult::by_correlation:
        return -(sigma_A * sigma_B / sigma) * R * D * density() * root_T;
      case HeatRateResult::rho:
        return -T * premium();
      case HeatRateResult::theta: {
        // For the put, too, the price's interest is added and the strike's taken off: intended.
        const __m128d parts = ratio_and_strike();
        return parts[0] * r * D - R * density() * sigma * D / (2.0 * root_T) - D * r * parts[1];
      }
      case HeatRateResult::delta_A_by_time:
        return delta_decay() * D;
      case HeatRateResult::delta_B_by_time:
        return delta_decay() * -R * D;
      case HeatRateResult::cross_gamma:
        return (-density() * over_v - sign * N1()) * D / (SB * SB);
      default:
        return 99.0;
    }
  };
  if constexpr (all)
    every_result(out, result, Results<heat_rate_results>());
  else
    *out = result(RetType);
}

}  // namespace

double heat_rate_option(double SA, double SB, double K, double r, double sigma_A, double sigma_B, double rho,
                        double T, int OptType, int RetType) {
  double result;
  work_out<false>(SA, SB, K, r, sigma_A, sigma_B, rho, T, OptType, RetType, &result);
  return result;
}

void heat_rate_all(double SA, double SB, double K, double r, double sigma_A, double sigma_B, double rho,
                   double T, int OptType, double results[heat_rate_results]) {
  work_out<true>(SA, SB, K, r, sigma_A, sigma_B, rho, T, OptType, 0, results);
}

}  // namespace kestran
