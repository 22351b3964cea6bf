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

// The weights follow from the largest one outwards, relative to it, so that rounding stays far below 1e-12.
double binomial_mean(const double* x, int N, double p) {
  const double odds = p / (1.0 - p);
  const int top = std::min(N, static_cast<int>((N + 1) * p));
  double total = x[top];
  double weight_sum = 1.0;
  double weight = 1.0;
  for (int k = top; k < N; ++k) {
    weight *= (N - k) / (k + 1.0) * odds;
    weight_sum += weight;
    total += weight * x[k + 1];
  }
  weight = 1.0;
  for (int k = top; k > 0; --k) {
    weight *= k / ((N - k + 1.0) * odds);
    weight_sum += weight;
    total += weight * x[k - 1];
  }
  return total / weight_sum;
}

void kink_correct(const double* g, double* pay, int N) {
  for (int i = 0; i < N; ++i) {
    if ((g[i] > 0.0) == (g[i + 1] > 0.0)) continue;
    const double below = std::fabs(g[i]);
    const double above = std::fabs(g[i + 1]);
    const double theta = below / (below + above);
    const double correction = (below + above) / 12.0 - theta * above / 2.0;
    pay[i] += correction * (1.0 - theta);
    pay[i + 1] += correction * theta;
  }
}

}  // namespace kestran
