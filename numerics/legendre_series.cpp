#include "numerics/legendre_series.h"

namespace kestran {

LegendreSeries legendre_series(const QuadratureRule& rule, const double* values) {
  LegendreSeries series;
  series.terms = rule.size;
  series.recursion[0] = 0.0;
  for (int k = 1; k <= rule.size; ++k) {
    const double square = static_cast<double>(k) * k;
    series.recursion[k] = square / (4.0 * square - 1.0);
  }
  for (int k = 0; k < rule.size; ++k) series.coefficient[k] = 0.0;
  for (int i = 0; i < rule.size; ++i) {
    const double weighted = rule.nodes[i].weight * values[i];
    double before = 0.0;
    double p = 1.0;
    double norm = 2.0;  // the integral of p squared
    for (int k = 0; k < rule.size; ++k) {
      series.coefficient[k] += weighted * p / norm;
      const double next = rule.nodes[i].x * p - series.recursion[k] * before;
      before = p;
      p = next;
      norm *= series.recursion[k + 1];
    }
  }
  return series;
}

}  // namespace kestran
