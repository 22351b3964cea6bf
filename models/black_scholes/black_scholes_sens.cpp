#include "models/black_scholes/black_scholes_sens.h"

#include <emmintrin.h>

#include <cmath>

#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

// sign 1 for a call, -1 for a put.
double premium_and_sens(double sign, double S, double K, double days, double r, double q, double sigma,
                        double out[7]) {
  const double T = days / 365.25;
  const double root_T = std::sqrt(T);
  const double v = sigma * root_T;
  const double d1 = (natural_log(S / K) + (r - q + sigma * sigma / 2.0) * T) / v;
  const double d2 = d1 - v;
  double discount[2];
  _mm_storeu_pd(discount, exponential(_mm_set_pd(-r * T, -q * T)));
  const double Dq = discount[0];
  const double Dr = discount[1];
  const double density = exponential(-d1 * d1 / 2.0) / std::sqrt(6.283185307179586);
  const double N1 = cnorm(sign * d1);
  const double N2 = cnorm(sign * d2);

  const double premium = sign * (S * Dq * N1 - K * Dr * N2);
  out[0] = sign * Dq * N1;
  out[1] = Dq * density / (S * v);
  out[2] = root_T * S * Dq * density;
  out[3] = sign * T * K * Dr * N2;
  out[4] = -S * density * sigma * Dq / (2.0 * root_T) + sign * (q * S * Dq * N1 - r * K * Dr * N2);
  out[5] = -T * premium;
  out[6] = (root_T - d1 / sigma) * Dq * density;
  return premium;
}

}  // namespace

double bs_call_sens(double S, double K, double days, double r, double q, double sigma, double out[7]) {
  return premium_and_sens(1.0, S, K, days, r, q, sigma, out);
}

double bs_put_sens(double S, double K, double days, double r, double q, double sigma, double out[7]) {
  return premium_and_sens(-1.0, S, K, days, r, q, sigma, out);
}

}  // namespace kestran
