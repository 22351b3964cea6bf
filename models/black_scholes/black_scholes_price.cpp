#include "models/black_scholes/black_scholes_price.h"

#include <cmath>

#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

// sign: 1 call, -1 put.
double premium(double sign, double S, double K, double T, double r, double q, double sigma) {
  const double v = sigma * std::sqrt(T);
  const double d1 = (natural_log(S / K) + (r - q + sigma * sigma / 2.0) * T) / v;
  const double d2 = d1 - v;
  return sign * (S * exponential(-q * T) * cnorm(sign * d1) - K * exponential(-r * T) * cnorm(sign * d2));
}

}  // namespace

double bs_call(double S, double K, double T, double r, double q, double sigma) {
  return premium(1.0, S, K, T, r, q, sigma);
}

double bs_put(double S, double K, double T, double r, double q, double sigma) {
  return premium(-1.0, S, K, T, r, q, sigma);
}

}  // namespace kestran
