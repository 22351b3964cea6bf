#include "models/rates/black_strip.h"

#include <cmath>

#include "numerics/elementary.h"

namespace kestran {
namespace {

__m128d both(double x) { return _mm_set1_pd(x); }

__m128d select(__m128d condition, __m128d when_true, __m128d when_false) {
  return _mm_or_pd(_mm_and_pd(condition, when_true), _mm_andnot_pd(condition, when_false));
}

// The polynomial that turns the density at x into the tail beyond |x|, as in cnorm.
__m128d tail_polynomial(__m128d x) {
  const __m128d magnitude = _mm_andnot_pd(both(-0.0), x);
  const __m128d t = both(1.0) / (both(1.0) + both(0.2316419) * magnitude);
  const __m128d inner = both(1.781477937) + t * (both(-1.821255978) + t * both(1.330274429));
  return t * (both(0.31938153) + t * (both(-0.356563782) + t * inner));
}

// N(x) or N(-x) times `amount` from the tail beyond |x| times `amount`.
__m128d amount_below(__m128d x, __m128d amount, __m128d tail) {
  return select(_mm_cmpge_pd(x, both(0.0)), amount - tail, tail);
}

}  // namespace

double forward_discount(const BlackStrip& strip, int i) {
  const double tau = strip.ExpDays[i] - strip.T;
  const double forward_rate = (strip.IntRt[i] * strip.ExpDays[i] - strip.r * strip.T) / tau;
  return exponential(-forward_rate * tau);
}

void add_strip_values(const BlackStrip& strip, double K, bool is_call, double sign, const double* log_factor,
                      const double* factor, int nodes, double* value) {
  for (int i = 0; i < strip.n; ++i) {
    const double tau = strip.ExpDays[i] - strip.T;
    const double quantity = strip.Qty ? strip.Qty[i] : 1.0;
    const __m128d weight = both(sign * quantity * forward_discount(strip, i));
    const __m128d deviation = both(strip.Vol[i] * std::sqrt(tau));
    const __m128d per_deviation = both(1.0) / deviation;
    const __m128d moneyness = both(natural_log(strip.Price[i] / K) + strip.Vol[i] * strip.Vol[i] / 2.0 * tau);
    for (int k = 0; k < nodes; k += 2) {
      const __m128d F = _mm_loadu_pd(factor + k) * both(strip.Price[i]);
      const __m128d d1 = (moneyness + _mm_loadu_pd(log_factor + k)) * per_deviation;
      const __m128d d2 = d1 - deviation;
      // F n(d1) = K n(d2), so one density serves both normals; cnorm's divisor is a root of 2 pi to ten
      // digits.
      const __m128d density = F * exponential(d1 * d1 * both(-0.5)) / both(2.506628275);
      const __m128d F_tail = density * tail_polynomial(d1);
      const __m128d K_tail = density * tail_polynomial(d2);
      const __m128d option = is_call ? amount_below(d1, F, F_tail) - amount_below(d2, both(K), K_tail)
                                     : amount_below(-d2, both(K), K_tail) - amount_below(-d1, F, F_tail);
      _mm_storeu_pd(value + k, _mm_loadu_pd(value + k) + weight * option);
    }
  }
}

}  // namespace kestran
