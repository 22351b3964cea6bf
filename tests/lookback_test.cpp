#include "models/exotics/lookback.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestran {
namespace {

// Expected: the closed form and its differences with the polynomial normal distribution in mpmath, 30 digits.
// Exact: quadrature of the running extreme's distribution. The first row is also Haug (2007), section 4.15.1,
// floating strike: 25.3533.
TEST(Lookback, EveryResult) {
  const struct {
    struct {
      double S, K, r, q, sigma, days;
      int OptType;
    } of;
    double result[7], exact;
  } rows[] = {
      {{120, 100, 0.10, 0.06, 0.30, 182.625, 1},
       {25.353338632276362, 0.69264794153215151, 0.017204033522957781, 35.978057167387081, 5.7134996649539265,
        -11.941579017040219, -1.1330580352163226},
       25.3533552718},
      {{100, 110, 0.04, 0.04, 0.25, 90, 0},
       {13.276575493654981, -0.49470919338706731, 0.051999061962869851, 32.042658912295086,
        -3.2714193179041831, -15.735941018044155, 2.2120569482584238},
       13.2765759656},
      {{100, 95, 0.04, 0.04, 0.25, 90, 2},
       {10.179019344656861, 0.38983396387991088, 0.053717488786015897, 33.094227983950801,
        -2.5081648906636494, -16.424672828013881, -0.83563233091919127},
       10.179014378},
      {{95, 100, 0.02, 0.07, 0.35, 400, 0},
       {32.581175651062591, 0.18308857943719026, 0.031457404697123199, 92.801306471798546, 57.341125856891682,
        -15.883867768410059, 1.4001465062011309},
       32.5811771196},
  };
  // The differences magnify the price's rounding by 1 / (step size).
  const double tolerance[] = {2e-12, 2e-11, 1e-9, 1e-8, 1e-7, 1e-9, 1e-8};
  for (const auto& [of, result, exact] : rows) {
    double out[7];
    lookback_greeks(of.S, of.K, of.r, of.q, of.sigma, of.days, of.OptType, 365.25, out);
    for (int RetType = 0; RetType <= 6; ++RetType)
      EXPECT_NEAR(out[RetType], result[RetType], tolerance[RetType])
          << "S " << of.S << " OptType " << of.OptType << " RetType " << RetType;
    EXPECT_NEAR(out[0], exact, 3e-5);
    EXPECT_EQ(out[2], lookback_greek(of.S, of.K, of.r, of.q, of.sigma, of.days, of.OptType, 365.25, 2));
  }
}

TEST(Lookback, YearLengthCountsInDays) {
  EXPECT_EQ(lookback_price(120, 100, 0.1, 0.06, 0.3, 126, 1, 252),
            lookback_price(120, 100, 0.1, 0.06, 0.3, 182.625, 1, 365.25));
  const auto theta = [](double daysPerYear) {
    return lookback_greek(120, 100, 0.1, 0.06, 0.3, daysPerYear / 2, 1, daysPerYear, 5);
  };
  EXPECT_NEAR(theta(252) / theta(365.25), 1.0, 0.01);
}

TEST(Lookback, DegenerateInputs) {
  const auto result = [](double K, double r, double days, int RetType) {
    return lookback_greek(100, K, r, 0.02, 0.3, days, 1, 365.25, RetType);
  };
  EXPECT_EQ(result(90, 0.0, 90, 4), 0.0);
  EXPECT_EQ(result(90, 0.05, 0, 0), 10.0);
  EXPECT_TRUE(std::isfinite(result(90, 0.05, 1, 5)));
  EXPECT_TRUE(std::isnan(result(90, 0.05, 0.5, 5)));
  EXPECT_TRUE(std::isnan(result(-90, 0.05, 90, 0)));
  EXPECT_TRUE(std::isnan(result(std::nan(""), 0.05, 90, 0)));
  EXPECT_TRUE(std::isnan(result(90, 0.05, 90, 7)));
  EXPECT_TRUE(std::isnan(result(90, 0.05, 90, -1)));
}

}  // namespace
}  // namespace kestran
