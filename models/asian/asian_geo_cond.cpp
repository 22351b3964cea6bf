#include "models/asian/asian_geo_cond.h"

#include <emmintrin.h>

#include <cmath>
#include <limits>

#include "models/bumps.h"
#include "models/calendar.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

// 270 years of daily fixings; what is beyond would keep the caller waiting.
constexpr double most_fixings = 100000.0;

// sum + terms[0] + terms[1], in this order; the second only while it belongs to the `left` terms still to be
// added.
double added(double sum, __m128d terms, int left) {
  sum += terms[0];
  return left > 1 ? sum + terms[1] : sum;
}

// E and B as doubles: a step of a day never overflows them.
double price(double S, double K, double A, double r, double q, double sigma1, double sigma2, double E,
             double B, bool call) {
  if (E < 1.0) return positive_part(call ? A - K : K - A);
  const double total = E - B + 1.0;
  const double made = B < 0.0 ? -B : 0.0;
  const double n = total - made;
  if (n < 1.0 || n > most_fixings) return std::numeric_limits<double>::quiet_NaN();
  const int count = static_cast<int>(n);
  const double K_left = made > 0.0 ? (total * K - made * A) / n : K;

  // Fixing i = 0 to n - 1 is at t0 + i h; its logarithm has the variance before + daily i.
  const double t0 = B < 0.0 ? 0.0 : B * one_day;
  const double before = sigma1 * sigma1 * t0;
  const double daily = sigma2 * sigma2 * one_day;
  const double drift = r - q;
  const double log_S = natural_log(S);
  const double log_K = natural_log(K_left);
  const double VG = before + daily * (n - 1.0) * (2.0 * n - 1.0) / (6.0 * n);
  // The drift is not multiplied by a time; intended.
  const double mean_G = log_S + drift - before / 2.0 - daily * (n - 1.0) / 4.0;
  const double slope = (log_K - mean_G) / VG;
  const double half_inverse_VG = 0.5 / VG;
  const double half_inverse_n = 0.5 / n;
  // Of two fixings at a time, as their numbers stand in the lanes of i.
  const auto covariance = [&](__m128d i) { return before + daily * i * (1.0 - (i + 1.0) * half_inverse_n); };
  const auto log_growth = [&](__m128d i) { return drift * (t0 + i * one_day); };

  // Expected average given a geometric average of K_left; a fixing's variance cancels against its log mean.
  double expected = 0.0;
  for (int first = 0; first < count; first += 2) {
    const __m128d i = _mm_set_pd(first + 1, first);
    const __m128d c = covariance(i);
    const __m128d term = exponential(log_growth(i) + c * (slope - c * half_inverse_VG));
    expected = added(expected, term, count - first);
  }
  // The least boundary makes exercise certain where the linear one fails, far out of the money; intended.
  double boundary = 2.0 * K_left - S / n * expected;
  if (boundary <= 0.0) boundary = 1e-16;

  const double inverse_sigma_G = 1.0 / std::sqrt(VG);
  const double distance = mean_G - natural_log(boundary);
  double forwards = 0.0;
  double above = 0.0;
  for (int first = 0; first < count; first += 2) {
    const __m128d i = _mm_set_pd(first + 1, first);
    const __m128d growth = exponential(log_growth(i));
    const __m128d N = cnorm_inlined((distance + covariance(i)) * inverse_sigma_G);
    forwards = added(forwards, growth, count - first);
    above = added(above, growth * N, count - first);
  }
  const double D = exponential(-r * (t0 + (n - 1.0) * one_day));
  double value = D * (S / n * above - K_left * cnorm(distance * inverse_sigma_G));
  if (!call) value -= D * (S / n * forwards - K_left);
  return made > 0.0 ? value * n / total : value;
}

}  // namespace

double asian_geo_cond(double S, double K, double A, double r, double q, double sigma1, double sigma2, int E,
                      int B, int OptType, int RetType) {
  if (E < 1 && RetType != 0) return 0.0;
  const bool call = OptType != 0;
  const auto priced = [&](double price_factor, double factor1, double factor2) {
    return price(S * price_factor, K, A, r, q, sigma1 * factor1, sigma2 * factor2, E, B, call);
  };
  const auto delta = [&](double factor1, double factor2) {
    return (priced(bump_up, factor1, factor2) - priced(1.0, factor1, factor2)) / (bump * S);
  };
  const auto base = [&] { return priced(1.0, 1.0, 1.0); };

  switch (static_cast<GeoCondResult>(RetType)) {
    case GeoCondResult::premium:
      return base();
    case GeoCondResult::delta:
      return delta(1.0, 1.0);
    case GeoCondResult::gamma:
      return (priced(bump_up, 1.0, 1.0) + priced(bump_down, 1.0, 1.0) - 2.0 * base()) / (S * S * bump * bump);
    case GeoCondResult::vega_before:
      return (priced(1.0, bump_up, 1.0) - base()) / (bump * sigma1);
    case GeoCondResult::rho:
      return (price(S, K, A, r * bump_up, q * bump_up, sigma1, sigma2, E, B, call) - base()) / (bump * r);
    case GeoCondResult::theta:
      return (price(S, K, A, r, q, sigma1, sigma2, E - 1.0, B - 1.0, call) - base()) * days_per_year;
    case GeoCondResult::delta_by_vol_before:
      return (delta(bump_up, 1.0) - delta(1.0, 1.0)) / (bump * sigma1);
    case GeoCondResult::vega_within:
      return (priced(1.0, 1.0, bump_up) - base()) / (bump * sigma2);
    case GeoCondResult::delta_by_vol_within:
      return (delta(1.0, bump_up) - delta(1.0, 1.0)) / (bump * sigma2);
    default:
      return -1e17;
  }
}

}  // namespace kestran
