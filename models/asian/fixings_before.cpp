#include "models/asian/fixings_before.h"

#include <emmintrin.h>

#include <cmath>

#include "numerics/elementary.h"

namespace kestran {

double sum_given_expiry(const FixingsBefore& fixings, double x, double z) {
  const int count = fixings.count;
  const double half_variance = fixings.variance / 2.0;
  const auto exponent = [&](auto u) { return u * (x + half_variance * (1.0 - u)); };
  int k = 0;
  for (; k + 1 < count; k += 2)
    _mm_storeu_pd(fixings.level + k, exponential(exponent(_mm_loadu_pd(fixings.time + k))));
  if (k < count) fixings.level[k] = exponential(exponent(fixings.time[k]));

  // The bridge at times s < u has the covariance variance s (1 - u).
  double up_to = 0.0;  // of level times u
  for (k = 0; k < count; ++k) {
    const double u = fixings.time[k];
    up_to += fixings.level[k] * u;
    fixings.covariance[k] = (1.0 - u) * up_to;
  }
  double after = 0.0;  // of level times 1 - u
  double total = 0.0;
  for (k = count - 1; k >= 0; --k) {
    const double u = fixings.time[k];
    const double level = fixings.level[k];
    fixings.covariance[k] += u * after;
    total += level * fixings.covariance[k];
    after += level * (1.0 - u);
  }

  const double scale = total > 0.0 ? std::sqrt(fixings.variance / total) : 0.0;
  const auto given_z = [&](auto loading) { return loading * (z - loading * 0.5); };
  __m128d sums = _mm_setzero_pd();
  for (k = 0; k + 1 < count; k += 2)
    sums +=
        _mm_loadu_pd(fixings.level + k) * exponential(given_z(_mm_loadu_pd(fixings.covariance + k) * scale));
  double sum = _mm_cvtsd_f64(sums) + _mm_cvtsd_f64(_mm_unpackhi_pd(sums, sums));
  if (k < count) sum += fixings.level[k] * exponential(given_z(fixings.covariance[k] * scale));
  return sum;
}

}  // namespace kestran
