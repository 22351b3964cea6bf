#include "numerics/normal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "numerics/elementary.h"

namespace kestran {
namespace {

TEST(Normal, IsThePolynomialToTheLastDigits) {
  // The same polynomial evaluated with mpmath, 30 digits.
  const struct {
    double x, value;
  } rows[] = {
      {0.0, 0.500000000598413421},    {-1e-300, 0.499999999401586579}, {1.0, 0.841344740460223973},
      {-1.0, 0.158655259539776027},   {0.5, 0.691462467832744615},     {2.5, 0.993790320147419266},
      {-3.3, 4.83482536240521326e-4}, {7.0, 0.999999999998711873},     {-25.0, 3.38473855356799274e-138},
  };
  for (const auto& row : rows) EXPECT_NEAR(cnorm(row.x), row.value, 4e-15 * row.value) << row.x;
}

TEST(Normal, StaysNearTheExactDistribution) {
  for (double x = -8.0; x <= 8.0; x += 1.0 / 64) {
    const double exact = std::erfc(-x / std::sqrt(2.0)) / 2.0;
    EXPECT_NEAR(cnorm(x), exact, 7.5e-8) << x;
    EXPECT_NEAR(cnorm3(x, cnorm3_poly(x)), exact, 1.2e-5) << x;
    EXPECT_NEAR(cnorm_precise(x), exact, 1e-15) << x;
    EXPECT_NEAR(cnorm(x) + cnorm(-x), 1.0, x == 0.0 ? 1.3e-9 : 1e-15) << x;
  }
}

TEST(Normal, IsClampedFarOut) {
  EXPECT_EQ(cnorm(-25.0000001), 0.0);
  EXPECT_EQ(cnorm(25.0000001), 1.0);
  EXPECT_EQ(cnorm(25.0), 1.0);  // the polynomial's value rounds to it
  EXPECT_GT(cnorm(-25.0), 0.0);
  EXPECT_EQ(cnorm3(41.0, 0.7), 1.0);
  EXPECT_EQ(cnorm3(-41.0, 0.7), 0.0);
  EXPECT_NEAR(cnorm3(0.0, 1.0), 1.0 - 0.3989422804, 1e-10);
  EXPECT_GT(cnorm3(-37.0, cnorm3_poly(37.0)), -1e-300);
  EXPECT_TRUE(std::isnan(cnorm(std::numeric_limits<double>::quiet_NaN())));
  EXPECT_EQ(cnorm(std::numeric_limits<double>::infinity()), 1.0);
  EXPECT_EQ(cnorm_precise(-1e300), 0.0);
  EXPECT_EQ(cnorm_precise(1e300), 1.0);
  EXPECT_TRUE(std::isnan(cnorm_precise(std::numeric_limits<double>::quiet_NaN())));
}

TEST(Normal, PairsHaveTheBitsOfSingleValues) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  std::vector<double> points = {0.0,      -0.0,      25.0, -25.0,  25.1,  -25.1,
                                infinity, -infinity, nan,  1e-300, -1e300};
  for (double x = -26.0; x <= 26.0; x += 0.0037) points.push_back(x);
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double x[2] = {points[i], points[(i * 7 + 3) % points.size()]};
    double pair[2], with_bell[2], bell[2], precise[2];
    _mm_storeu_pd(pair, cnorm(_mm_loadu_pd(x)));
    const NormalPair normal = cnorm_and_bell(_mm_loadu_pd(x));
    _mm_storeu_pd(with_bell, normal.N);
    _mm_storeu_pd(bell, normal.bell);
    _mm_storeu_pd(precise, cnorm_precise(_mm_loadu_pd(x)));
    for (int lane = 0; lane < 2; ++lane) {
      const double single = cnorm(x[lane]);
      if (std::isnan(single))
        EXPECT_TRUE(std::isnan(pair[lane]) && std::isnan(with_bell[lane]) && std::isnan(bell[lane]) &&
                    std::isnan(precise[lane]));
      else
        EXPECT_TRUE(pair[lane] == single && with_bell[lane] == single &&
                    precise[lane] == cnorm_precise(x[lane]) &&
                    bell[lane] == exponential(-x[lane] * x[lane] / 2.0))
            << x[lane];
    }
  }
}

TEST(Normal, PowersStartAtOne) {
  EXPECT_EQ(ipow(3.0, 4), 81.0);
  EXPECT_EQ(ipow(3.0, 0), 1.0);
  EXPECT_EQ(ipow(3.0, -2), 1.0);
}

}  // namespace
}  // namespace kestran
