#include "models/exotics/wilcox_spread.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestran {
namespace {

// Expected: the closed forms with the polynomial normal distribution and 6.2832 in mpmath, 30 digits. With
// the exact distribution numerical derivatives agreed, but for the put's theta, 2 (F - K) r e^(-rT) higher.
TEST(WilcoxSpread, EveryResult) {
  const struct {
    struct {
      double F, K, r, sigma, T;
      int OptType;
    } of;
    double result[9];
  } rows[] = {
      {{-2, -3, 0.05, 4.5, 0.4, 1},
       {1.6710261191020173, 0.62472214111228742, 0.12917333061601604, 0.23251199510882887,
        -0.66841044764080693, -1.2243286665320615, 0, 0, 0.19270277032563442}},
      {{-2, -3, 0.05, 4.5, 0.4, 0},
       {0.69082744579526202, -0.35547653219446788, 0.12917333061601604, 0.23251199510882887,
        -0.27633097831810481, -1.1753187328667237, 0, 0, 0.14369283666029665}},
      {{7, 12, 0.03, 9, 2, 2},
       {7.500718453192017, -0.61476510146034492, 0.027326499665989459, 0.49187699398781026,
        -15.001436906384034, -1.1642310429520872, 0, 0, -0.052601077626297171}},
  };
  for (const auto& [of, result] : rows)
    for (int RetType = 0; RetType <= 8; ++RetType)
      EXPECT_NEAR(wilcox_spread(of.F, of.K, of.r, of.sigma, of.T, of.OptType, RetType), result[RetType],
                  1e-12)
          << "F " << of.F << " OptType " << of.OptType << " RetType " << RetType;
}

TEST(WilcoxSpread, AtTheMoneyCallAndPutAgree) {
  for (const double F : {-5.0, 0.0, 3.0}) {
    const double call = wilcox_spread(F, F, 0.05, 4, 0.25, 1, 0);
    EXPECT_NEAR(call, 2.0 * 0.98757780049388143 / 2.5066312054229278, 1e-14);  // e^-0.0125, root of 6.2832
    EXPECT_EQ(call, wilcox_spread(F, F, 0.05, 4, 0.25, 0, 0));
  }
}

TEST(WilcoxSpread, DegenerateInputs) {
  EXPECT_EQ(wilcox_spread(5, 3, 0.05, 4, 0, 1, 0), 2.0);
  EXPECT_EQ(wilcox_spread(5, 3, 0.05, 4, 0, 0, 0), 0.0);
  EXPECT_TRUE(std::isnan(wilcox_spread(5, 5, 0.05, 4, 0, 1, 0)));
  EXPECT_TRUE(std::isnan(wilcox_spread(5, 3, 0.05, 4, -0.1, 1, 0)));
  EXPECT_NEAR(wilcox_spread(5, 3, 0.05, 0, 0.5, 1, 0), 2.0 * 0.97530991202833262, 1e-15);  // e^-0.025
  for (const int RetType : {-1, 9}) EXPECT_EQ(wilcox_spread(5, 3, 0.05, 4, 1, 1, RetType), 0.0);
}

}  // namespace
}  // namespace kestran
