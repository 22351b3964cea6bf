#include "models/rates/swaption.h"

#include <algorithm>
#include <limits>

#include "models/black_scholes/black_scholes_sens.h"
#include "models/black_scholes/european.h"
#include "models/calendar.h"
#include "numerics/arrays.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

void fill_with_nan(int n, SwaptionRecord& record) {
  const double not_a_number = std::numeric_limits<double>::quiet_NaN();
  record.price = record.vega = record.rate_sens = record.theta = not_a_number;
  for (double* by_period :
       {record.delta_by_period, record.gamma_by_period, record.decay_by_period, record.vanna_by_period})
    if (by_period) std::fill_n(by_period, std::max(n, 0), not_a_number);
}

// The logarithm of the discount factor over t years, 0 for t <= 0, from that of the growth over half a year.
__m128d discount_exponent(__m128d t, __m128d log_growth) {
  return _mm_andnot_pd(_mm_cmple_pd(t, _mm_setzero_pd()), -2.0 * t * log_growth);
}

// The option with one fixed price, Strike, or with one per period where Strikes is given.
void price_swaption(const double* Fwd, const double* Qty, const double* Swaptime, const double* Rates,
                    const double* Strikes, double Strike, double Swapvol, double IntRt, double Expiry, int n,
                    int Opttype, SwaptionRecord& record) {
  WorkArray room(n);
  double* const discount = room;
  if (n < 1 || !discount) return fill_with_nan(n, record);

  double Qsum = 0.0, A = 0.0, FW = 0.0, KW = 0.0, D1 = 0.0, L = 0.0;
  for (int first = 0; first < n; first += 2) {
    // Two periods at a time; the last of an odd number goes with itself.
    const int second = std::min(first + 1, n - 1);
    const auto both = [&](const double* x) { return _mm_set_pd(x[second], x[first]); };
    const __m128d t = both(Swaptime);
    const __m128d growth = 1.0 + both(Rates) / 2.0;
    const __m128d log_growth = natural_log(growth);
    const __m128d quantity = both(Qty);
    const __m128d weight = exponential(discount_exponent(t, log_growth)) * quantity;
    const __m128d weighted_forward = weight * both(Fwd);
    const __m128d rate_part = weight * t / growth;
    const __m128d decay_part = weight * log_growth;
    const __m128d by_quantity = weight / quantity;
    for (int lane = 0; lane <= second - first; ++lane) {
      discount[first + lane] = by_quantity[lane];
      Qsum += quantity[lane];
      A += weight[lane];
      FW += weighted_forward[lane];
      if (Strikes) KW += weight[lane] * Strikes[first + lane];
      D1 += rate_part[lane];
      L += decay_part[lane];
    }
  }
  const double log_growth = log1p_half(IntRt / 2.0);
  const double D0 = Expiry <= 0.0 ? 1.0 : exponential(-2.0 * Expiry * log_growth);
  const double F = FW / A;
  const double K = Strikes ? KW / A : Strike;
  const double ratio = A / (Qsum * D0);

  double g[7];
  const double days = days_per_year * Expiry;
  const double P = Opttype == 0 ? bs_put_sens(F, K, days, IntRt, IntRt, Swapvol, g)
                                : bs_call_sens(F, K, days, IntRt, IntRt, Swapvol, g);
  const double K1 = 2.0 * (L - log_growth * A) / D0;
  record.price = P * ratio;
  record.vega = g[2] * ratio;
  record.theta = g[4] * ratio + K1 * P / Qsum;
  record.rate_sens = g[5] * ratio + (A * Expiry / (IntRt / 2.0 + 1.0) - D1) * P / (D0 * Qsum);

  const auto by_period = [&](double* result, double of_average) {
    if (!result) return;
    int i = 0;
    for (; i + 1 < n; i += 2) _mm_storeu_pd(result + i, of_average * _mm_loadu_pd(discount + i) / D0);
    if (i < n) result[i] = of_average * discount[i] / D0;
  };
  by_period(record.delta_by_period, g[0]);
  by_period(record.gamma_by_period, g[1]);
  by_period(record.vanna_by_period, g[6]);
  if (!record.decay_by_period) return;
  const double delta_decay = bs_general(F, K, Expiry, IntRt, IntRt, Swapvol, Opttype, 8);
  const double K2 = delta_decay / D0 + g[0] * K1 / A;
  for (int i = 0; i < n; ++i) record.decay_by_period[i] = K2 * discount[i];
}

}  // namespace

double log1p_half(double x) { return natural_log(1.0 + x); }

double semiannual_discount(double rate, double t) {
  return t <= 0.0 ? 1.0 : exponential(-2.0 * t * log1p_half(rate / 2.0));
}

void swaption_model(const double* Fwd, const double* Qty, const double* Swaptime, const double* Rates,
                    double Swapvol, double Strike, double IntRt, double Expiry, int n, int Opttype,
                    SwaptionRecord& record) {
  price_swaption(Fwd, Qty, Swaptime, Rates, nullptr, Strike, Swapvol, IntRt, Expiry, n, Opttype, record);
}

void swaption1_model(const double* Fwd, const double* Qty, const double* Swaptime, const double* Rates,
                     const double* Strike, double Swapvol, double IntRt, double Expiry, int n, int Opttype,
                     SwaptionRecord& record) {
  price_swaption(Fwd, Qty, Swaptime, Rates, Strike, 0.0, Swapvol, IntRt, Expiry, n, Opttype, record);
}

}  // namespace kestran
