#include "numerics/bivariate_normal.h"

#include <gtest/gtest.h>

#include <cmath>

#include "numerics/normal.h"

namespace kestran {
namespace {

TEST(BivariateNormal, IsTheQuadratureAndStaysNearTheExactDistribution) {
  // value: the same quadrature and identities, exact: the defining integral; both with mpmath, 40 digits.
  const struct {
    double a, b, rho, value, exact;
  } rows[] = {
      {-1, -0.5, -0.3, 0.025398124868931822, 0.0253991184815},
      {0.7, 1.2, -0.6, 0.6452332851928021, 0.64523584045},
      {0.8, -0.4, 0.5, 0.32058723184765442, 0.320585436681},
      {-0.3, 1.5, 0.9, 0.38208770602069855, 0.382087610508},
      {1, 1, 0.5, 0.74519906877467901, 0.745203586847},
      {1, -1, -0.5, 0.096145673480785223, 0.0961411592218},
      {0, 0, 0.3, 0.29849334853192614, 0.29849334201},
      {-2.2, -2.2, 0.99, 0.011900176889645205, 0.0119084157877},
      {1.5, 0.1, -0.999, 0.47302066756563678, 0.473020636008},
  };
  for (const auto& row : rows) {
    EXPECT_NEAR(binorm(row.a, row.b, row.rho), row.value, 2e-15) << row.a << ' ' << row.b << ' ' << row.rho;
    EXPECT_NEAR(binorm(row.b, row.a, row.rho), row.exact, 9e-6) << row.a << ' ' << row.b << ' ' << row.rho;
  }
}

TEST(BivariateNormal, IsOneDimensionalAtFullCorrelation) {
  EXPECT_EQ(binorm(0.3, -0.7, 1.0), cnorm(-0.7));
  EXPECT_EQ(binorm(-0.7, 0.3, 1.0), cnorm(-0.7));
  EXPECT_EQ(binorm(0.5, -0.5, -1.0), 0.0);
  EXPECT_EQ(binorm(-1.0, 0.5, -1.0), 0.0);
  EXPECT_EQ(binorm(1.0, 0.5, -1.0), cnorm(1.0) - cnorm(-0.5));
}

TEST(BivariateNormal, HoldsWhereRoundingIsHarshest) {
  for (double tiny = 0.1; tiny > 0.0; tiny /= 7.0) {
    for (const double b : {-1.3, 0.4, 2.1}) {
      EXPECT_NEAR(binorm(tiny, b, 0.3), binorm(0.0, b, 0.3), tiny + 9e-6) << tiny;
      EXPECT_NEAR(binorm(b, tiny, -0.7), binorm(b, 0.0, -0.7), tiny + 9e-6) << tiny;
      EXPECT_NEAR(binorm(b, b * (1.0 - tiny), 1.0 - tiny), cnorm(b), 0.4 * std::sqrt(tiny) + 9e-6) << tiny;
      EXPECT_NEAR(binorm(b, b, tiny), cnorm(b) * cnorm(b), 0.2 * tiny + 9e-6) << tiny;
    }
    EXPECT_NEAR(binorm(tiny, tiny, 0.5), 1.0 / 3, tiny + 9e-6) << tiny;  // 1/4 + asin(rho) / (2 pi) at 0
  }
}

TEST(BivariateNormal, NeverHidesBadInput) {
  EXPECT_TRUE(std::isnan(binorm(NAN, 1.0, 1.0)));
  EXPECT_TRUE(std::isnan(binorm(1.0, NAN, 1.0)));
  EXPECT_TRUE(std::isnan(binorm(-1.0, NAN, -1.0)));
  EXPECT_TRUE(std::isnan(binorm(1.0, 1.0, NAN)));
  EXPECT_TRUE(std::isnan(binorm(1.0, 1.0, 1.5)));
  testing::internal::CaptureStderr();
  EXPECT_EQ(binorm_rt(0.1, -1.0, -0.2), -1.0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Invalid parameter passed to binorm_rt(0.100000,-1.000000,-0.200000)\n");
}

}  // namespace
}  // namespace kestran
