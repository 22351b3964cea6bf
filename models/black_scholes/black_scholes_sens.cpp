#include "models/black_scholes/black_scholes_sens.h"

#include <emmintrin.h>

#include <cmath>

#include "models/calendar.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

// sign 1 for a call, -1 for a put.
double premium_and_sens(double sign, double S, double K, double days, double r, double q, double sigma,
                        double out[7]) {
  const double T = days / days_per_year;
  const double root_T = std::sqrt(T);
  const double v = sigma * root_T;
  // Divided while the logarithm is still under way.
  const double over_v = 1.0 / v;
  const double d1 = (natural_log(S / K) + (r - q + sigma * sigma / 2.0) * T) * over_v;
  const __m128d discount = exponential(_mm_set_pd(-r * T, -q * T));
  const NormalPair normal = cnorm_and_bell(_mm_set_pd(sign * (d1 - v), sign * d1));
  const double Dq_density = discount[0] * (normal.bell[0] * over_root_2_pi);
  const double delta = discount[0] * normal.N[0];
  const double cash = K * discount[1] * normal.N[1];

  const double premium = sign * (S * delta - cash);
  out[0] = sign * delta;
  out[1] = Dq_density * over_v / S;
  out[2] = root_T * S * Dq_density;
  out[3] = sign * T * cash;
  out[4] = -S * Dq_density * (sigma * sigma * over_v / 2.0) + sign * (q * S * delta - r * cash);
  out[5] = -T * premium;
  out[6] = root_T * (1.0 - d1 * over_v) * Dq_density;
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
