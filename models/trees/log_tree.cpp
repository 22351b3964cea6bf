#include "models/trees/log_tree.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numerics/elementary.h"

namespace kestran {

LogTree log_tree(double sigma, double nu, double T, int N) {
  const double v = sigma * sigma * (T / N);
  const double dx = std::sqrt(nu * nu * v * v + v);
  const double p = 0.5 * (1.0 + nu * v / dx);
  const bool exists = N >= 1 && v > 0.0 && p >= 0.0 && p <= 1.0;
  return {dx, exists ? p : std::numeric_limits<double>::quiet_NaN()};
}

void tree_factors(const LogTree& tree, int N, double* log_factor, double* factor) {
  for (int k = 0; k < padded_nodes(N); ++k) log_factor[k] = (2 * k - N) * tree.dx;
  for (int k = 0; k < padded_nodes(N); k += 2)
    _mm_storeu_pd(factor + k, exponential(_mm_loadu_pd(log_factor + k)));
}

// From the largest outwards, so that rounding stays far below 1e-12. The ratios of neighbours are divided two
// at a time, ahead of the products that wait for each other.
int binomial_weights(int N, double p, double* weight) {
  const double odds = p / (1.0 - p);
  const int likeliest = std::min(N, static_cast<int>((N + 1) * p));
  weight[likeliest] = 1.0;
  for (int k = likeliest; k < N; k += 2) {
    const __m128d ratio = _mm_set_pd(N - k - 1, N - k) / _mm_set_pd(k + 2.0, k + 1.0) * odds;
    weight[k + 1] = weight[k] * ratio[0];
    if (k + 1 < N) weight[k + 2] = weight[k + 1] * ratio[1];
  }
  for (int k = likeliest; k > 0; k -= 2) {
    const __m128d ratio = _mm_set_pd(k - 1, k) / (_mm_set_pd(N - k + 2.0, N - k + 1.0) * odds);
    weight[k - 1] = weight[k] * ratio[0];
    if (k > 1) weight[k - 2] = weight[k - 1] * ratio[1];
  }
  return likeliest;
}

double binomial_mean(const double* x, const double* weight, int first, int likeliest, int last) {
  double total = x[likeliest];
  double weight_sum = 1.0;
  const auto add = [&](int k) {
    weight_sum += weight[k];
    total += weight[k] * x[k];
  };
  for (int k = likeliest + 1; k <= last; ++k) add(k);
  for (int k = likeliest - 1; k >= first; --k) add(k);
  return total / weight_sum;
}

}  // namespace kestran
