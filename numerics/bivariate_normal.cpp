#include "numerics/bivariate_normal.h"

#include <emmintrin.h>

#include <cmath>
#include <cstdio>

#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

// Drezner's published digits; more exact Gauss weights and nodes would change results.
constexpr double weight[4] = {0.3253030, 0.4211071, 0.1334425, 0.006374323};
constexpr double node[4] = {0.1337764, 0.6243247, 1.3425378, 2.2626645};

// Correlation of the problem that remains at `near` when `far` is brought to 0.
double reduced_correlation(double near_limit, double far_limit, double rho) {
  const double offset = rho * near_limit - far_limit;
  // Equals sqrt(a^2 - 2 rho a b + b^2), but in this form no rounding takes the quotient beyond 1.
  const double distance = std::sqrt(offset * offset + (1.0 - rho * rho) * near_limit * near_limit);
  return sgn(near_limit) * offset / distance;
}

}  // namespace

int sgn(double x) { return (x > 0.0) - (x < 0.0); }

double binorm_rt(double a, double b, double rho) {
  if (!(a <= 0.0 && b <= 0.0 && rho <= 0.0)) {
    std::fprintf(stderr, "Invalid parameter passed to binorm_rt(%f,%f,%f)\n", a, b, rho);
    return -1.0;
  }
  if (rho < -1.0) rho = -1.0;
  const double complement = 1.0 - rho * rho;
  const double scale = std::sqrt(2.0 * complement);
  const double a1 = a / scale;
  const double b1 = b / scale;

  const __m128d b1_pair = _mm_set1_pd(b1);
  __m128d weights[2], from_b[2], distance_to_b[2];
  for (int pair = 0; pair < 2; ++pair) {
    const __m128d nodes = _mm_loadu_pd(node + 2 * pair);
    weights[pair] = _mm_loadu_pd(weight + 2 * pair);
    distance_to_b[pair] = _mm_sub_pd(nodes, b1_pair);
    from_b[pair] = _mm_mul_pd(b1_pair, _mm_sub_pd(_mm_add_pd(nodes, nodes), b1_pair));
  }

  double sum = 0.0;
  for (int i = 0; i < 4; ++i) {
    const __m128d from_a = _mm_set1_pd(a1 * (2.0 * node[i] - a1));
    const __m128d cross = _mm_set1_pd(2.0 * rho * (node[i] - a1));
    for (int pair = 0; pair < 2; ++pair) {
      const __m128d exponent =
          _mm_add_pd(_mm_add_pd(from_a, from_b[pair]), _mm_mul_pd(cross, distance_to_b[pair]));
      const __m128d term =
          _mm_mul_pd(_mm_mul_pd(_mm_set1_pd(weight[i]), weights[pair]), exponential(exponent));
      sum += _mm_cvtsd_f64(term);
      sum += _mm_cvtsd_f64(_mm_unpackhi_pd(term, term));
    }
  }
  return sum * std::sqrt(complement) / 3.141592653589793;
}

double binorm(double a, double b, double rho) {
  if (std::isnan(a) || std::isnan(b) || std::isnan(rho)) return a + b + rho;
  if (rho == 1.0) return a >= b ? cnorm(b) : cnorm(a);
  if (rho == -1.0) return a >= -b ? cnorm(a) - cnorm(-b) : 0.0;

  // Limits this small count as 0, so that their product keeps its sign and one of the cases below holds.
  const auto settled = [](double x) { return std::fabs(x) < 1e-100 ? 0.0 : x; };
  a = settled(a);
  b = settled(b);
  rho = settled(rho);
  if (a * b * rho > 0.0) {
    // With a zero among their arguments these calls end in one of the cases below.
    const double beyond = (1 - sgn(a) * sgn(b)) / 4.0;
    return binorm(a, 0.0, reduced_correlation(a, b, rho)) + binorm(b, 0.0, reduced_correlation(b, a, rho)) -
           beyond;
  }
  if (a <= 0.0 && b <= 0.0 && rho <= 0.0) return binorm_rt(a, b, rho);
  if (a >= 0.0 && b >= 0.0 && rho <= 0.0) return cnorm(a) + cnorm(b) - 1.0 + binorm_rt(-a, -b, rho);
  if (a >= 0.0 && b <= 0.0) return cnorm(b) - binorm_rt(-a, b, -rho);
  return cnorm(a) - binorm_rt(a, -b, -rho);
}

}  // namespace kestran
