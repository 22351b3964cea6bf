#include "models/black_scholes/digital.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/black_scholes/european.h"
#include "models/bumps.h"
#include "models/repricings.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

double normal_density(double x) { return exponential(-x * x / 2.0) * over_root_2_pi; }

// The upper tail of the normal distribution over its density (Mills' ratio); from 1 upwards by Laplace's
// continued fraction, exact where cnorm has too few digits left for a quotient.
double mills_ratio(double x) {
  if (x < 1.0) return cnorm(-x) / normal_density(x);
  double c = x;
  for (int k = 80; k >= 1; --k) c = x + k / c;
  return 1.0 / c;
}

// The result RetType of digital_option, or all of them, into `out`.
template <bool all>
[[gnu::always_inline]] inline void work_out(double Cash, double S, double K, double T, double r, double q,
                                            double sigma, int OptType, int RetType, double* out) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  if (!(T > 0.0)) {
    const double exercise_value = positive_part(sign * (S - K));
    std::fill_n(out, all ? digital_results : 1, 0.0);
    if (all || RetType == 0) *out = exercise_value > 0.0 ? Cash : exercise_value;
    return;
  }
  sigma = floored_volatility(sigma);

  const double v = sigma * std::sqrt(T);
  // Divided while the logarithm is still under way.
  const double over_v = 1.0 / v;
  const double moneyness = natural_log(S / K);
  const double d1 = (moneyness + ((r - q) + sigma * sigma / 2.0) * T) * over_v;
  const double d2 = d1 - v;
  const double cash_today = Cash * exponential(-r * T);
  const auto premium = once<all>([&] { return cash_today * cnorm(sign * d2); });
  const auto density = once<all>([&] { return sign * cash_today * normal_density(d2); });

  const auto result = [&](int which) __attribute__((always_inline))->double {
    switch (static_cast<EuropeanResult>(which)) {
      case EuropeanResult::premium:
        return premium();
      case EuropeanResult::delta:
        return density() / (S * v);
      case EuropeanResult::gamma:
        return -density() * d1 / (S * S * v * v);
      case EuropeanResult::vega:
        return -density() * d1 / sigma;
      case EuropeanResult::carry_rho:
        return -T * premium();
      case EuropeanResult::theta:
        return r * premium() - density() * (((r - q) - sigma * sigma / 2.0) - moneyness / T) / (2.0 * v);
      default:
        return 99.0;
    }
  };
  if constexpr (all)
    every_result(out, result, Results<digital_results>());
  else
    *out = result(RetType);
}

}  // namespace

double digital_option(double Cash, double S, double K, double T, double r, double q, double sigma,
                      int OptType, int RetType) {
  double result;
  work_out<false>(Cash, S, K, T, r, q, sigma, OptType, RetType, &result);
  return result;
}

void digital_option_all(double Cash, double S, double K, double T, double r, double q, double sigma,
                        int OptType, double results[digital_results]) {
  work_out<true>(Cash, S, K, T, r, q, sigma, OptType, 0, results);
}

double cod_option(double S, double K, double T, double r, double q, double sigma, double Premium, int OptType,
                  int RetType) {
  if (RetType < 0 || RetType > 5) return 99.0;
  if (T > 0.0 && (S < 0.0 || K < 0.0)) return std::numeric_limits<double>::quiet_NaN();
  return bs_general(S, K, T, r, q, sigma, OptType, RetType) -
         digital_option(Premium, S, K, T, r, q, sigma, OptType, RetType);
}

void cod_option_all(double S, double K, double T, double r, double q, double sigma, double Premium,
                    int OptType, double results[digital_results]) {
  if (T > 0.0 && (S < 0.0 || K < 0.0)) {
    std::fill_n(results, digital_results, std::numeric_limits<double>::quiet_NaN());
    return;
  }
  double european[european_results];
  bs_general_all(S, K, T, r, q, sigma, OptType, european);
  digital_option_all(Premium, S, K, T, r, q, sigma, OptType, results);
  for (int i = 0; i < digital_results; ++i) results[i] = european[i] - results[i];
}

double cod_premium(double S, double K, double T, double r, double q, double sigma, int OptType) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  if (!(T > 0.0)) return positive_part(sign * (S - K));
  if (S < 0.0 || K < 0.0) return std::numeric_limits<double>::quiet_NaN();
  sigma = floored_volatility(sigma);
  const double v = sigma * std::sqrt(T);
  const double d1 = (natural_log(S / K) + ((r - q) + sigma * sigma / 2.0) * T) / v;
  const double d2 = d1 - v;

  // Unlikely exercise: (F N(d1) - K N(d2)) / N(d2) with F n(d1) = K n(d2), n the density.
  if (sign * d2 < -2.0) return sign * K * (mills_ratio(-sign * d1) / mills_ratio(-sign * d2) - 1.0);
  return bs_general(S, K, T, r, q, sigma, OptType, 0) / (exponential(-r * T) * cnorm(sign * d2));
}

}  // namespace kestran
