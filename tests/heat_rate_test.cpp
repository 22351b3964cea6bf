#include "models/exotics/heat_rate.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kestran {
namespace {

const double nan = std::nan("");

// Expected: the closed forms with the polynomial normal distribution in mpmath, 30 digits. With the exact
// distribution numerical derivatives agreed to 30 digits, but for the put's results 9 to 11, whose signs are
// meant.
TEST(HeatRate, EveryResult) {
  const double call[] = {1.0860426383073034,    0.097635739670717493, -0.78108591736573995,
                         0.0040080865846866893, 0.49685166984017579,  0.45519037724969793,
                         1.0621108802492952,    -0.93883015307750198, -0.3801149234075562,
                         -1.0728359450838868,   0.013259850858378641, -0.10607880686702913,
                         -0.047085575703757744};
  const double put[] = {0.59471652047476685,   -0.053541527354678377,  0.42833221883742702,
                        0.0040080865846866893, 0.12472301254689365,    0.45519037724969793,
                        1.0621108802492952,    -0.93883015307750198,   -0.2081507821661684,
                        -1.1568739030229904,   -0.0057009875071088474, 0.045607900056870779,
                        -0.02382753462292761};
  const auto result = [](int OptType, int RetType) {
    return heat_rate_option(52, 6.5, 7.5, 0.05, 0.45, 0.55, 0.6, 0.35, OptType, RetType);
  };
  for (int RetType = 0; RetType <= 12; ++RetType) {
    EXPECT_NEAR(result(1, RetType), call[RetType], 1e-13) << "call " << RetType;
    EXPECT_NEAR(result(0, RetType), put[RetType], 1e-13) << "put " << RetType;
    EXPECT_EQ(result(1, RetType), result(2, RetType)) << RetType;
  }
  for (const int RetType : {-1, 13}) EXPECT_EQ(result(1, RetType), 99.0);
}

TEST(HeatRate, ExpiryPassed) {
  const auto result = [](double SA, double T, int OptType, int RetType) {
    return heat_rate_option(SA, 6.5, 7.5, 0.05, 0.45, 0.55, 0.6, T, OptType, RetType);
  };
  EXPECT_EQ(result(52, 0, 1, 0), 0.5);
  EXPECT_EQ(result(52, -1, 0, 0), 0.0);
  EXPECT_EQ(result(39, 0, 0, 0), 1.5);
  for (int RetType = 1; RetType <= 13; ++RetType) EXPECT_EQ(result(52, 0, 1, RetType), 0.0) << RetType;
  EXPECT_TRUE(std::isnan(result(nan, 0, 1, 0)));
  EXPECT_TRUE(std::isnan(result(52, nan, 1, 0)));
}

// Term by term: without a price B the gamma in B is infinity and 0 / 0.
TEST(HeatRate, WithoutAPriceB) {
  for (const int OptType : {0, 1})
    EXPECT_TRUE(std::isnan(heat_rate_option(50, 0, 5, 0.05, 0.3, 0.3, 0.5, 0.25, OptType, 4))) << OptType;
}

TEST(HeatRate, VolatilitiesThatAreNotPositive) {
  const auto premium = [](double sigma_A, double sigma_B, double rho) {
    return heat_rate_option(52, 6.5, 7.5, 0.05, sigma_A, sigma_B, rho, 0.35, 1, 0);
  };
  EXPECT_EQ(premium(0, 0.3, 0), premium(1e-5, 0.3, 0));
  EXPECT_EQ(premium(-0.2, 0.3, 0.5), premium(1e-5, 0.3, 0.5));
  EXPECT_NEAR(premium(0.4, -0.3, 0.5), premium(0.4, 0.3, -0.5), 1e-14);
  EXPECT_TRUE(std::isnan(premium(0.4, 0.4, 2)));
  EXPECT_TRUE(std::isnan(premium(nan, 0.4, 0)));
}

}  // namespace
}  // namespace kestran
