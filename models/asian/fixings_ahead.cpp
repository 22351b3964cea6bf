#include "models/asian/fixings_ahead.h"

#include <emmintrin.h>

#include <cmath>

#include "numerics/elementary.h"
#include "numerics/lanes.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

struct SumGivenAverage {
  double value;  // over the price
  double slope;  // by z
};

SumGivenAverage sum_given_average(const FixingsAhead& fixings, double z) {
  __m128d values = _mm_setzero_pd();
  __m128d slopes = _mm_setzero_pd();
  int k = 0;
  for (; k + 1 < fixings.count; k += 2) {
    const __m128d a = _mm_loadu_pd(fixings.loading + k);
    const __m128d value = exponential(a * (z - a * 0.5));
    values += value;
    slopes += a * value;
  }
  SumGivenAverage sum{sum_of_lanes(values), sum_of_lanes(slopes)};
  if (k < fixings.count) {
    const double a = fixings.loading[k];
    const double value = exponential(a * (z - a * 0.5));
    sum.value += value;
    sum.slope += a * value;
  }
  return sum;
}

// The z at which the sum is expected at e^log_sum: Newton's method on the logarithm, which is convex, from a
// point that convexity puts above the root. Without a root, where fixings without variance exceed the sum,
// some z at which exercise is certain.
double boundary(const FixingsAhead& fixings, double log_sum) {
  double z = (log_sum - fixings.log_count + fixings.mean_half_square) / fixings.mean_loading;
  for (int i = 0; i < sum_boundary_steps; ++i) {
    const SumGivenAverage sum = sum_given_average(fixings, z);
    const double step = (natural_log(sum.value) - log_sum) * sum.value / sum.slope;
    z -= step;
    if (!(std::fabs(step) > sum_boundary_close_enough) || z < certain_sum_boundary) break;
  }
  return z;
}

}  // namespace

FixingsAhead fixings_ahead(int count, double before, double step, double* loading) {
  FixingsAhead fixings;
  if (count < 1) return fixings;
  const double n = count;
  fixings.count = count;
  fixings.log_count = natural_log(n);
  fixings.loading = loading;
  fixings.deviation = std::sqrt(before + step * (n - 1.0) * (2.0 * n - 1.0) / (6.0 * n));
  if (fixings.deviation == 0.0) return fixings;
  for (int k = 0; k < count; ++k) {
    const double covariance = before + step * k * (1.0 - (k + 1.0) / (2.0 * n));
    const double a = covariance / fixings.deviation;
    loading[k] = a;
    fixings.mean_loading += a;
    fixings.mean_half_square += a * a / 2.0;
  }
  fixings.mean_loading /= n;
  fixings.mean_half_square /= n;
  return fixings;
}

double sum_option(const FixingsAhead& fixings, double S, double strike, bool is_call) {
  if (fixings.count == 0 || fixings.deviation == 0.0 || strike <= 0.0) {
    const double sum = fixings.count * S;
    return positive_part(is_call ? sum - strike : strike - sum);
  }
  const double z = boundary(fixings, natural_log(strike / S));
  const double side = is_call ? 1.0 : -1.0;
  __m128d exercised = _mm_setzero_pd();
  int k = 0;
  for (; k + 1 < fixings.count; k += 2)
    exercised += cnorm_precise(side * (_mm_loadu_pd(fixings.loading + k) - z));
  double sum = sum_of_lanes(exercised);
  if (k < fixings.count) sum += cnorm_precise(side * (fixings.loading[k] - z));
  return positive_part(side * (S * sum - strike * cnorm_precise(-side * z)));
}

}  // namespace kestran
