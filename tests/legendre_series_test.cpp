#include "numerics/legendre_series.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestran {
namespace {

TEST(LegendreSeries, ReproducesPolynomialsAndGoesThroughEveryValue) {
  for (int n : {18, 24, 55}) {
    const QuadratureRule rule = gauss_legendre(n);
    double polynomial[legendre_most_terms], exponentials[legendre_most_terms];
    const auto degree_17 = [](double x) { return 3.0 - x * x + 0.5 * std::pow(x, 17); };
    for (int i = 0; i < n; ++i) {
      polynomial[i] = degree_17(rule.nodes[i].x);
      exponentials[i] = std::exp(5.0 * rule.nodes[i].x);
    }
    const LegendreSeries exact = legendre_series(rule, polynomial);
    const LegendreSeries growth = legendre_series(rule, exponentials);
    for (int i = 0; i < n; ++i)
      EXPECT_NEAR(legendre_sum(growth, rule.nodes[i].x), exponentials[i], 1e-12 * std::exp(5.0)) << n;
    for (double x : {-1.0, -0.3, 0.0, 0.77, 1.0}) {
      EXPECT_NEAR(legendre_sum(exact, x), degree_17(x), 1e-13) << n << ' ' << x;
      // The error of interpolation of e^(5 x) is about e^5 5^n / (n! 2^(n - 1)) at most.
      EXPECT_NEAR(legendre_sum(growth, x), std::exp(5.0 * x), n == 18 ? 7e-7 : 1e-11) << n << ' ' << x;
    }
  }
}

TEST(LegendreSeries, ValueThatIsNoNumber) {
  double values[18] = {};
  values[7] = NAN;
  EXPECT_TRUE(std::isnan(legendre_sum(legendre_series(gauss_legendre(18), values), 0.5)));
}

}  // namespace
}  // namespace kestran
