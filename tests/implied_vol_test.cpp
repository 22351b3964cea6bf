#include "models/black_scholes/implied_vol.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>

#include "models/black_scholes/american_tree.h"
#include "models/black_scholes/european.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();
const double infinity = std::numeric_limits<double>::infinity();

TEST(ImpliedVol, AgreesWithIndependentValues) {
  // Solutions with the exact normal distribution in mpmath.
  EXPECT_NEAR(implied_vol_european(1, 10, 100, 100, 0.5, 0.05, 0.02, 2, 1e-10, 100), 0.334260736, 2e-6);
  EXPECT_NEAR(implied_vol_european(0, 2.5, 110, 100, 0.25, 0.05, 0, 2, 1e-10, 100), 0.320863671, 2e-6);
  EXPECT_NEAR(implied_vol_european(2, 15, 100, 100, 0.5, 0.05, 0.02, 2, 1e-10, 100), 0.270135549, 2e-6);
  // The premium of Andersen, Lake and Offengenden (2016) and the European put, sigma 0.25.
  EXPECT_NEAR(implied_vol_american(9.462493 + 0.106952702747, 100, 100, 1, 0.05, 0.05, 2, 0, 1000, 1e-8),
              0.25, 1e-5);
}

TEST(ImpliedVol, InvertsThePremium) {
  std::mt19937_64 bits(5);
  const auto between = [&](double a, double b) {
    return a + (b - a) * static_cast<double>(bits() >> 11) * 0x1p-53;
  };
  for (int k = 0; k < 6000; ++k) {
    const double S = between(60, 160), T = between(0.02, 5), r = between(-0.02, 0.1), q = between(-0.02, 0.1);
    const double sigma = between(0.03, 1.5);
    const int kind = k % 3;
    const auto european = [&](int RetType) {
      const double put = kind == 1 ? 0.0 : bs_general(S, 100, T, r, q, sigma, 0, RetType);
      return kind == 0 ? put : put + bs_general(S, 100, T, r, q, sigma, 1, RetType);
    };
    if (european(3) < 0.1) continue;
    EXPECT_NEAR(implied_vol_european(kind, european(0), S, 100, T, r, q, 3, 1e-10, 25), sigma, 2e-9)
        << kind << " " << S << " " << T << " " << r << " " << q;
    if (k % 20 > 1) continue;
    const TreeResult american = american_tree(S, 100, T, 0, r, q, sigma, kind, 50);
    const double found = implied_vol_american(american.price, S, 100, T, r, q, 3, kind, 50, 1e-9);
    if (american.gamma == 0.0)
      EXPECT_EQ(found, 0.0);  // to be exercised now, whatever the volatility
    else
      EXPECT_NEAR(american_tree(S, 100, T, 0, r, q, found, kind, 50).price, american.price, 1e-9)
          << kind << " " << S << " " << T << " " << r << " " << q << " " << sigma;
  }
}

TEST(ImpliedVol, SaysWhenThereIsNone) {
  const auto european = [](double Premium, double MaxVol) {
    return implied_vol_european(1, Premium, 100, 95, 0.5, 0.05, 0.02, MaxVol, 1e-6, 100);
  };
  const double floor = 100 * std::exp(-0.01) - 95 * std::exp(-0.025);
  EXPECT_EQ(european(floor, 2), 0.0);
  EXPECT_EQ(european(floor - 1e-4, 2), -99.0);
  EXPECT_EQ(european(100, 2), -99.0);
  EXPECT_EQ(european(10, 0.2), -99.0);
  EXPECT_EQ(european(bs_general(100, 95, 0.5, 0.05, 0.02, 0.4, 1, 0), 0.4), 0.4);
  EXPECT_NEAR(european(10, 1e300), european(10, 2), 1e-6);
  for (const double bad : {0.0, -1.0, nan})
    for (int place = 0; place < 5; ++place) {
      double x[] = {10, 100, 95, 0.5, 2};
      x[place] = bad;
      EXPECT_EQ(implied_vol_european(1, x[0], x[1], x[2], x[3], 0.05, 0.02, x[4], 1e-6, 100), -99.0) << place;
      EXPECT_EQ(implied_vol_american(x[0], x[1], x[2], x[3], 0.05, 0.02, x[4], 1, 50, 1e-6), -99.0) << place;
    }
  // An accuracy that is none counts as the usual one.
  for (double none : {0.0, -1.0})
    EXPECT_EQ(implied_vol_american(10, 100, 95, 0.5, 0.05, 0.02, 2, 1, 50, none),
              implied_vol_american(10, 100, 95, 0.5, 0.05, 0.02, 2, 1, 50, 1e-8));
  EXPECT_EQ(implied_vol_european(1, 5, 100, 95, 0, 0.05, 0.02, 2, 1e-6, 100), -99.0);  // any would do
  EXPECT_TRUE(std::isnan(implied_vol_european(1, 10, 100, 95, 0.5, nan, 0.02, 2, 1e-6, 100)));
  EXPECT_EQ(implied_vol_european(1, 10, 100, 95, 0.5, 0.05, 0.02, 2, 1e-12, 1), -99.0);
  EXPECT_EQ(implied_vol_european(3, 10, 100, 95, 0.5, 0.05, 0.02, 2, 1e-6, 100), 99.0);
  EXPECT_NEAR(implied_vol_european(1, 10, 100, 95, 0.5, 0.05, 0.02, infinity, -1, INT_MAX), european(10, 2),
              1e-6);

  EXPECT_EQ(implied_vol_american(20, 80, 100, 0.5, 0.05, 0, 2, 0, 100, 1e-6), 0.0);
  EXPECT_EQ(implied_vol_american(19, 80, 100, 0.5, 0.05, 0, 2, 0, 100, 1e-6), -99.0);
  EXPECT_NEAR(implied_vol_american(12, 100, 95, 0.5, 0.05, 0.02, 1e300, 1, 100, 1e-9),
              implied_vol_american(12, 100, 95, 0.5, 0.05, 0.02, 2, 1, 100, 0), 1e-8);
  for (const int n : {1, 5}) {
    set_allocation_limit(n);
    EXPECT_TRUE(std::isnan(implied_vol_american(12, 100, 95, 0.5, 0.05, 0.02, 2, 1, 50, 1e-6))) << n;
  }
  set_allocation_limit(0);
}

}  // namespace
}  // namespace kestran
