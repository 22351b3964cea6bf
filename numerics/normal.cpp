#include "numerics/normal.h"

#include <cmath>

#include "numerics/elementary.h"

namespace kestran {

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
  const double magnitude = size > normal::precise_limit ? normal::precise_limit : size;
  const double tail = exponential(magnitude * magnitude * -0.5) * normal::precise_tail_over_bell(magnitude);
  return x > 0.0 ? 1.0 - tail : tail;
}

__m128d cnorm_precise(__m128d x) { return normal::cnorm_precise_inlined(x); }

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
