#include "models/exotics/quanto.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestran {
namespace {

// E 1.5, S 100, rd 0.08, rf 0.05, q 0.04, volatilities 0.2 and 0.12, rho 0.3, T 0.5. Expected values:
// numerical derivatives, in mpmath with 30 digits, of premiums with the exact normal distribution; the
// premiums agreed with the payoff integrated under the domestic measure.
TEST(Quanto, EveryResultOfEveryType) {
  const struct {
    int type[2];  // Qtype, OptType
    double result[12];
  } rows[] = {
      {{1, 1},
       {5.58537817, 0.596321917, 3.72358545, 0.0403091621, 0, 0.397547944, 40.3091621, 0, 0, 0, 27.0234067,
        -8.37888543}},
      {{2, 0},
       {14.7770638, -0.821296149, -54.7530766, 0.0312837167, 139.038741, 1.53805035, 36.9147857, 28.155345,
        3.75404601, -48.4533393, 0, -6.29424885}},
      {{3, 1},
       {5.29368479, 0.571133722, 3.5291232, 0.0393136804, 0, 0.380755815, 38.2856397, -1.71340117,
        -0.685360466, -2.6468424, 28.5566861, -7.59915875}},
      {{3, 0},
       {12.2976985, -0.872069508, 8.19846567, 0.0393136804, 0, -0.581379672, 40.8834056, 2.61620852,
        1.04648341, -6.14884925, -43.6034754, -6.63474075}},
      {{4, 1},
       {5.36485751, 0.0536485751, 53.1290777, 0, 305.526055, 0.531290777, 1.33791766, 43.4758802, 0.891945109,
        37.1643795, -37.1643795, -7.49995763}},
  };
  for (const auto& row : rows) {
    const auto [Qtype, OptType] = row.type;
    const double K = Qtype == 2 ? 160 : Qtype == 4 ? 1.52 : 105;
    for (int i = 0; i < 12; ++i)
      EXPECT_NEAR(quanto_option({1.5, 100, K, 0.08, 0.05, 0.04, 0.2, 0.12, 0.3, 0.5, OptType, Qtype}, i),
                  row.result[i], 2e-5)
          << "Qtype " << Qtype << " OptType " << OptType << " RetType " << i;
  }
}

TEST(Quanto, PublishedPremiums) {
  // Haug, "The Complete Guide to Option Pricing Formulas", currency-translated options.
  EXPECT_NEAR(quanto_option({1.5, 100, 160, 0.08, 0.05, 0.05, 0.2, 0.12, 0.45, 0.5, 1, 2}, 0), 8.3056, 6e-5);
  EXPECT_NEAR(quanto_option({1.5, 100, 105, 0.08, 0.05, 0.04, 0.2, 0.10, 0.3, 0.5, 1, 3}, 0), 5.3280, 6e-5);
  EXPECT_NEAR(quanto_option({1.5, 100, 1.52, 0.08, 0.05, 0.04, 0.2, 0.12, -0.4, 0.25, 0, 4}, 0), 4.2089,
              6e-5);
}

TEST(Quanto, IdentitiesExpiryAndSentinels) {
  const double strikes[] = {0, 95, 140, 95, 1.4, 95};
  const auto quanto = [&](double rho, double sigmaE, double T, int OptType, int Qtype, int RetType) {
    return quanto_option({1.5, 100, strikes[Qtype], 0.05, 0.05, 0.02, 0.25, sigmaE, rho, T, OptType, Qtype},
                         RetType);
  };
  EXPECT_EQ(quanto(0, 0.1, 1, 0, 3, 0), quanto(0, 0.1, 1, 0, 1, 0));
  EXPECT_EQ(quanto(0.9, 0.5, 1, 1, 1, 0), quanto(0, 0.1, 1, 1, 1, 0));
  EXPECT_NEAR(quanto(0.4, 0.1, 2, 1, 4, 0) - quanto(0.4, 0.1, 2, 0, 4, 0),
              100 * std::exp(-0.02 * 2) * (1.5 - 1.4 * std::exp(-0.4 * 0.25 * 0.1 * 2)), 3e-7);
  // Opposite moves of equal size leave the domestic price of the asset certain.
  EXPECT_NEAR(quanto(-1, 0.25, 1, 1, 2, 0), 150 * std::exp(-0.02) - 140 * std::exp(-0.05), 1e-9);
  const double payoff[] = {7.5, 10, 7.5, 10};
  for (int Qtype = 1; Qtype <= 4; ++Qtype) {
    EXPECT_NEAR(quanto(0.3, 0.1, 0, 1, Qtype, 0), payoff[Qtype - 1], 1e-12);
    EXPECT_EQ(quanto(0.3, 0.1, 0, 0, Qtype, 0), 0.0);
    for (int i = 1; i <= 11; ++i) EXPECT_EQ(quanto(0.3, 0.1, 0, 1, Qtype, i), 0.0);
    EXPECT_EQ(quanto(0.3, 0.1, 1, 1, Qtype, 12), 99.0);
    EXPECT_EQ(quanto(0.3, 0.1, 1, 1, Qtype, -1), 99.0);
    EXPECT_TRUE(std::isfinite(quanto(0.3, 0, 1, 1, Qtype, 7)));
  }
  EXPECT_EQ(quanto(0.3, 0.1, 1, 1, 0, 0), 99.0);
  EXPECT_EQ(quanto(0.3, 0.1, 1, 1, 5, 0), 99.0);
}

}  // namespace
}  // namespace kestran
