#include "models/black_scholes/black_scholes_price.h"

#include <cmath>

#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

// sign: 1 call, -1 put.
double premium(double sign, double S, double K, double T, double r, double q, double sigma) {
  const double v = sigma * std::sqrt(T);
  // Divided while the logarithm is still under way.
  const double over_v = 1.0 / v;
  const double d1 = (natural_log(S / K) + (r - q + sigma * sigma / 2.0) * T) * over_v;
  const __m128d discounted = _mm_set_pd(K, S) * exponential(_mm_set_pd(-r * T, -q * T));
  const __m128d expected = discounted * cnorm(_mm_set_pd(sign * (d1 - v), sign * d1));
  return sign * (expected[0] - expected[1]);
}

}  // namespace

double bs_call(double S, double K, double T, double r, double q, double sigma) {
  return premium(1.0, S, K, T, r, q, sigma);
}

double bs_put(double S, double K, double T, double r, double q, double sigma) {
  return premium(-1.0, S, K, T, r, q, sigma);
}

}  // namespace kestran
