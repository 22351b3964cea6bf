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
    std::fill_n(by_period, std::max(n, 0), not_a_number);
}

// The option with one fixed price, Strike, or with one per period where Strikes is given.
void price_swaption(const double* Fwd, const double* Qty, const double* Swaptime, const double* Rates,
                    const double* Strikes, double Strike, double Swapvol, double IntRt, double Expiry, int n,
                    int Opttype, SwaptionRecord& record) {
  double* w = n < 1 ? nullptr : dvector(0, n - 1);
  if (!w) return fill_with_nan(n, record);

  double Qsum = 0.0, A = 0.0, FW = 0.0, KW = 0.0, D1 = 0.0, L = 0.0;
  for (int first = 0; first < n; first += 2) {
    // Two periods at a time; the last of an odd number goes with itself.
    const int second = std::min(first + 1, n - 1);
    double growth[2], discount[2];
    const auto exponent = [&](int i, double log_growth) {
      return Swaptime[i] <= 0.0 ? 0.0 : -2.0 * Swaptime[i] * log_growth;
    };
    _mm_storeu_pd(growth, natural_log(_mm_set_pd(1.0 + Rates[second] / 2.0, 1.0 + Rates[first] / 2.0)));
    _mm_storeu_pd(discount, exponential(_mm_set_pd(exponent(second, growth[1]), exponent(first, growth[0]))));
    for (int i = first; i <= second; ++i) {
      w[i] = discount[i - first] * Qty[i];
      Qsum += Qty[i];
      A += w[i];
      FW += w[i] * Fwd[i];
      if (Strikes) KW += w[i] * Strikes[i];
      D1 += w[i] * Swaptime[i] / (Rates[i] / 2.0 + 1.0);
      L += w[i] * growth[i - first];
    }
  }
  const double D0 = semiannual_discount(IntRt, Expiry);
  const double F = FW / A;
  const double K = Strikes ? KW / A : Strike;
  const double ratio = A / (Qsum * D0);

  double g[7];
  const double days = days_per_year * Expiry;
  const double P = Opttype == 0 ? bs_put_sens(F, K, days, IntRt, IntRt, Swapvol, g)
                                : bs_call_sens(F, K, days, IntRt, IntRt, Swapvol, g);
  const double delta_decay = bs_general(F, K, Expiry, IntRt, IntRt, Swapvol, Opttype, 8);
  const double K1 = 2.0 * (L - log1p_half(IntRt / 2.0) * A) / D0;
  const double K2 = delta_decay / D0 + g[0] * K1 / A;
  for (int i = 0; i < n; ++i) {
    const double discount = w[i] / Qty[i];
    record.delta_by_period[i] = g[0] * discount / D0;
    record.gamma_by_period[i] = g[1] * discount / D0;
    record.decay_by_period[i] = K2 * discount;
    record.vanna_by_period[i] = g[6] * discount / D0;
  }
  record.price = P * ratio;
  record.vega = g[2] * ratio;
  record.theta = g[4] * ratio + K1 * P / Qsum;
  record.rate_sens = g[5] * ratio + (A * Expiry / (IntRt / 2.0 + 1.0) - D1) * P / (D0 * Qsum);
  free_dvector(w, 0, n - 1);
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
