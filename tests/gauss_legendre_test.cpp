#include "numerics/gauss_legendre.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kestran {
namespace {

// Legendre polynomial P of degree n at z and its derivative.
struct Legendre {
  long double value, slope;
};

Legendre legendre(int n, long double z) {
  long double p = 1, before = 0;
  for (int j = 1; j <= n; ++j) {
    const long double next = ((2 * j - 1) * z * p - (j - 1) * before) / j;
    before = p;
    p = next;
  }
  return {p, n * (z * p - before) / (z * z - 1)};
}

// Every node again, from its textbook starting value by Newton's method in extended precision.
TEST(GaussLegendre, NodesAreTheZerosOfTheLegendrePolynomials) {
  const long double pi = 3.141592653589793238462643383279502884L;
  for (int n : {18, 19, 24, 27, 28, 55}) {
    const QuadratureRule rule = gauss_legendre(n);
    ASSERT_EQ(rule.size, n);
    for (int i = 0; i < n; ++i) {
      long double z = -std::cos(pi * (i + 0.75L) / (n + 0.5L));
      for (int step = 0; step < 10; ++step) z -= legendre(n, z).value / legendre(n, z).slope;
      const long double slope = legendre(n, z).slope;
      const double ulp = std::numeric_limits<double>::epsilon();
      EXPECT_NEAR(rule.nodes[i].x, static_cast<double>(z), ulp * std::fabs(static_cast<double>(z)) + 1e-18);
      const double weight = static_cast<double>(2 / ((1 - z * z) * slope * slope));
      EXPECT_NEAR(rule.nodes[i].weight, weight, ulp * weight) << n << " " << i;
    }
  }
  EXPECT_DOUBLE_EQ(gauss_legendre(27).nodes[0].x, -0.9961792628889886);
  EXPECT_DOUBLE_EQ(gauss_legendre(18).nodes[0].x, -0.991565168420931);
}

TEST(GaussLegendre, OtherSizesHaveNoRule) {
  for (int n : {-1, 0, 1, 20, 56}) {
    EXPECT_EQ(gauss_legendre(n).size, 0);
    EXPECT_EQ(gauss_legendre(n).nodes, nullptr);
  }
}

}  // namespace
}  // namespace kestran
