#include "models/black_scholes/black_scholes_price.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestran {
namespace {

TEST(BlackScholesPrice, AgreesWithIndependentValues) {
  // Haug (1998), "The Complete Guide to Option Pricing Formulas", sections 1.1.1 and 1.1.2.
  EXPECT_NEAR(bs_call(60, 65, 0.25, 0.08, 0, 0.3), 2.1334, 5e-5);
  EXPECT_NEAR(bs_put(100, 95, 0.5, 0.1, 0.05, 0.2), 2.4648, 5e-5);
  // The same formula and normal distribution with mpmath, 40 digits.
  EXPECT_NEAR(bs_call(110, 100, 2, 0.03, 0.03, 0.45), 29.663947050744943, 1e-12);
  EXPECT_NEAR(bs_put(80, 100, 0.75, -0.01, 0.04, 0.25), 24.178756633766013, 1e-12);
}

TEST(BlackScholesPrice, GivesTheLimitOrNotANumber) {
  EXPECT_EQ(bs_call(110, 100, 0, 0.05, 0, 0.2), 10.0);
  EXPECT_EQ(bs_put(110, 100, 0, 0.05, 0, 0.2), 0.0);
  EXPECT_EQ(bs_call(110, 0, 1, 0.05, 0, 0.2), 110.0);
  EXPECT_TRUE(std::isnan(bs_call(100, 100, 0, 0.05, 0, 0.2)));
  EXPECT_TRUE(std::isnan(bs_put(-100, 100, 1, 0.05, 0, 0.2)));
  EXPECT_TRUE(std::isnan(bs_put(100, 100, 1, 0.05, 0, NAN)));
}

}  // namespace
}  // namespace kestran
