#include "models/black_scholes/european.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kestran {
namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

// Expected values: the closed forms with the polynomial normal distribution in mpmath, 30 digits; the same
// forms with the exact distribution agreed with numerical derivatives of the premium to 12 digits.
TEST(European, EveryResultOfCallsAndPuts) {
  const struct {
    struct {
      double S, K, T, r, q, sigma;
      int OptType;
    } of;
    double result[9];
  } rows[] = {
      {{100, 95, 90 / 365.25, 0.05, 0.02, 0.25, 1},
       {8.1430382104940776, 0.70019657656922001, 0.027724497465937704, 17.078745872240886,
        -2.0064981216823189, -10.357343277288489, 15.246805613082856, -0.5654165749324484,
        0.21766155579201125}},
      {{100, 95, 90 / 365.25, 0.05, 0.02, 0.25, 0},
       {2.4713883384956389, -0.29488741533029828, 0.027724497465937704, 17.078745872240886,
        -0.60896632570734429, -7.6556737951898558, -7.8751860053040165, -0.5654165749324484,
        0.19775987595402089}},
      {{42, 57, 2.5, -0.01, 0.03, 0.6, 2},
       {9.482095992707694, 0.4812726427253026, 0.0092786994071108866, 24.551438631215406, -23.705239981769235,
        -2.2324555558944173, 26.828387504387538, 0.55557804431808582, -0.036642971032464931}},
      {{42, 57, 2.5, -0.01, 0.03, 0.6, 0},
       {28.959831436800916, -0.4464708436032503, 0.0092786994071108866, 24.551438631215406,
        -72.399578592002291, -3.9858419673673184, -119.27901717034357, 0.55557804431808582,
        -0.064475275622321518}},
  };
  for (const auto& [of, result] : rows)
    for (int RetType = 0; RetType <= 8; ++RetType)
      EXPECT_NEAR(bs_general(of.S, of.K, of.T, of.r, of.q, of.sigma, of.OptType, RetType), result[RetType],
                  2e-13 * of.S)
          << "S " << of.S << " OptType " << of.OptType << " RetType " << RetType;
}

TEST(European, ParityHoldsToRounding) {
  for (double S : {1e-3, 60.0, 100.0, 250.0})
    for (double T : {1e-4, 0.5, 30.0})
      for (double sigma : {0.0, 0.01, 0.4, 3.0}) {
        const double parity = std::exp(-0.03 * T) * S - std::exp(-0.07 * T) * 100.0;
        EXPECT_NEAR(
            bs_general(S, 100, T, 0.07, 0.03, sigma, 1, 0) - bs_general(S, 100, T, 0.07, 0.03, sigma, 0, 0),
            parity, 2e-9 * (S + 100.0))
            << S << " " << T << " " << sigma;
      }
}

TEST(European, ExpiryFloorsAndSentinels) {
  EXPECT_EQ(bs_general(110, 100, 0, 0.05, 0, 0.2, 1, 0), 10.0);
  EXPECT_EQ(bs_general(110, 100, -1, 0.05, 0, 0.2, 0, 0), 0.0);
  EXPECT_EQ(bs_general(90, 100, nan, 0.05, 0, 0.2, 0, 0), 10.0);
  EXPECT_EQ(bs_general(110, 100, 0, 0.05, 0, 0.2, 1, 1), 0.0);
  EXPECT_EQ(bs_general(110, 100, 0, 0.05, 0, 0.2, 1, 9), 0.0);
  EXPECT_EQ(bs_general(110, 100, 1, 0.05, 0, 0.2, 1, 9), 99.0);
  EXPECT_EQ(bs_general(110, 100, 1, 0.05, 0, 0.2, 1, -1), 99.0);
  EXPECT_EQ(bs_general(110, 100, 1, 0.05, 0, 0, 1, 3), bs_general(110, 100, 1, 0.05, 0, 1e-5, 1, 3));
  EXPECT_EQ(bs_general(110, 100, 1, 0.05, 0, -0.2, 1, 0), bs_general(110, 100, 1, 0.05, 0, 1e-5, 1, 0));
  // Bad prices never price as zero.
  EXPECT_TRUE(std::isnan(bs_general(nan, 100, 0, 0.05, 0, 0.2, 1, 0)));
  EXPECT_TRUE(std::isnan(bs_general(-100, 100, 1, 0.05, 0, 0.2, 1, 0)));
}

TEST(European, PriceOnlyRoutineNearTheFullOne) {
  for (double S : {80.0, 100.0, 130.0}) {
    const double call = bs_general(S, 100, 0.7, 0.04, 0.01, 0.3, 1, 0);
    const double put = bs_general(S, 100, 0.7, 0.04, 0.01, 0.3, 0, 0);
    EXPECT_NEAR(bseuro(1, S, 100, 3, 0.7, 0.3, 0.04, 0.01), 3 * call, 0.008);
    EXPECT_NEAR(bseuro(0, S, 100, 3, 0.7, 0.3, 0.04, 0.01), 3 * put, 0.008);
    EXPECT_NEAR(bseuro(2, S, 100, 3, 0.7, 0.3, 0.04, 0.01), 3 * (call + put), 0.012);
  }
  testing::internal::CaptureStderr();
  EXPECT_EQ(bseuro(3, 100, 100, 1, 1, 0.2, 0, 0), 0.0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error encountered...\nError in bseuro\n");
}

}  // namespace
}  // namespace kestran
