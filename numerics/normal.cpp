#include "numerics/normal.h"

#include <cmath>

#include "numerics/elementary.h"

namespace kestran {
namespace {

// (1 - N(x)) e^(x^2 / 2) for x from 0 to 40, one value or two lanes.
template <class Real>
[[gnu::always_inline]] inline Real precise_tail_over_bell(Real x) {
  const Real over =
      (((((0.0352624965998911 * x + 0.700383064443688) * x + 6.37396220353165) * x + 33.912866078383) * x +
        112.079291497871) *
           x +
       221.213596169931) *
          x +
      220.206867912376;
  const Real under =
      ((((((0.0883883476483184 * x + 1.75566716318264) * x + 16.064177579207) * x + 86.7807322029461) * x +
         296.564248779674) *
            x +
        637.333633378831) *
           x +
       793.826512519948) *
          x +
      440.413735824752;
  return over / under;
}

// Beyond, N(x) is 0 or 1 whatever the rational function.
constexpr double precise_limit = 40.0;

}  // namespace

double cnorm(double x) {
  const double magnitude = std::fabs(x);
  if (magnitude > 25.0) return x > 0.0 ? 1.0 : 0.0;
  const double bell = elementary::exponential_in_range<elementary::OneValue>(x * x * -0.5);
  const double tail = bell * normal::tail_over_bell(magnitude);
  return x >= 0.0 ? 1.0 - tail : tail;
}

__m128d cnorm(__m128d x) { return cnorm_inlined(x); }

NormalPair cnorm_and_bell(__m128d x) {
  const __m128d bell = exponential(x * x * -0.5);
  return {normal::cnorm_by_bell(x, bell), bell};
}

double cnorm_precise(double x) {
  const double size = std::fabs(x);
  const double magnitude = size > precise_limit ? precise_limit : size;
  const double tail = exponential(magnitude * magnitude * -0.5) * precise_tail_over_bell(magnitude);
  return x > 0.0 ? 1.0 - tail : tail;
}

__m128d cnorm_precise(__m128d x) {
  const __m128d size = _mm_andnot_pd(_mm_set1_pd(-0.0), x);
  const __m128d magnitude = _mm_min_pd(_mm_set1_pd(precise_limit), size);  // keeps a NaN in the second
  const __m128d tail = exponential(magnitude * magnitude * -0.5) * precise_tail_over_bell(magnitude);
  const __m128d upper = _mm_cmpgt_pd(x, _mm_setzero_pd());
  return _mm_or_pd(_mm_and_pd(upper, 1.0 - tail), _mm_andnot_pd(upper, tail));
}

double ipow(double x, int n) {
  double product = 1.0;
  for (int i = 0; i < n; ++i) product *= x;
  return product;
}

double cnorm3_poly(double x) {
  const double t = 1.0 / (1.0 + 0.33267 * std::fabs(x));
  return 0.4361836 * t + -0.1201676 * ipow(t, 2) + 0.937298 * ipow(t, 3);
}

double cnorm3(double x, double polynomial) {
  if (x > 40.0) return 1.0;
  if (x < -40.0) return 0.0;
  // 2 pi to twelve digits: the constant of this approximation.
  const double density = exponential(-x * x / 2.0) * (1.0 / std::sqrt(6.28318530718));
  const double upper = 1.0 - density * polynomial;
  return x < 0.0 ? 1.0 - upper : upper;
}

}  // namespace kestran
