#include "models/asian/asian_geo_cond.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "models/black_scholes/european.h"

namespace kestran {
namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

// Expected values: the same sums in mpmath, 34 digits, written independently (put by the closed form of the
// average forward).
TEST(AsianGeoCond, EveryResult) {
  struct Option {
    double S, K, A, r, q, sigma1, sigma2;
    int E, B, OptType;
  };
  const struct {
    Option option;
    double result[9];
  } rows[] = {
      {{100, 103, 0, 0.05, 0.02, 0.25, 0.35, 25, 10, 1},
       {1.181393217428061, 0.3254723060806796, 0.06192784998831233, 4.240523448039134, 0.8350701684214713,
        -20.441544326776906, 0.3764911154683448, 2.8949048034184397, 0.250148487515922}},
      {{100, 103, 0, 0.05, 0.02, 0.25, 0.35, 25, 10, 0},
       {4.0277875798806795, -0.6725447923295781, 0.06192784998831233, 4.240523448039134, -2.2290761002578554,
        -17.304876652837443, 0.3764911154683448, 2.8949048034184397, 0.250148487515922}},
      {{100, 97, 101.5, 0.04, 0.04, 0.3, 0.4, 12, -6, 0},
       {0.12946519773511733, -0.06551801915128144, 0.02917245948538597, 0, -0.004253473927412572,
        -20.978924150466234, 0, 1.1969270622234605, -0.3705579223716975}},
      {{100, 97, 101.5, 0.04, 0.01, 0.3, 0.4, 12, -6, 1},
       {3.6288570654525856, 0.619531281021166, 0.028739109603935782, 0, 0.6254755369227704, 6.583882415884802,
        0, 1.178710124332731, -0.36866557788089893}},
      {{50, 52, 0, -0.01, 0.03, 0.5, 0.9, 40, 40, 1},
       {2.364257772816799, 0.42803891198471083, 0.04728727857302686, 6.47315708210359, 9.132237358898143,
        -14.03728959876611, 0.26851181094576004, 0, 0}},
      {{50, 48, 50, 0.03, 0.03, 0.2, 0.3, 7, 0, 0},
       {0.01743188908184669, -0.03601078239107214, 0.07169953869393242, 0, -0.00033408128266773114,
        -4.763906993536071, 0, 0.31472491455428503, -0.47007342724336165}},
  };
  // A difference magnifies the rounding of the prices by one over its step.
  const double tolerance[] = {1e-14, 1e-12, 1e-10, 1e-11, 1e-9, 1e-11, 1e-9, 1e-11, 1e-9};
  for (const auto& row : rows) {
    const Option& o = row.option;
    for (int RetType = 0; RetType <= 8; ++RetType)
      EXPECT_NEAR(asian_geo_cond(o.S, o.K, o.A, o.r, o.q, o.sigma1, o.sigma2, o.E, o.B, o.OptType, RetType),
                  row.result[RetType], tolerance[RetType] * o.S)
          << "K " << o.K << " B " << o.B << " OptType " << o.OptType << " RetType " << RetType;
  }
}

// One fixing is a European option, priced exactly where r = q.
TEST(AsianGeoCond, OneFixingIsEuropean) {
  for (int OptType : {0, 1})
    EXPECT_NEAR(asian_geo_cond(100, 104, 0, 0.05, 0.05, 0.3, 0.8, 90, 90, OptType, 0),
                bs_general(100, 104, 90 / 365.25, 0.05, 0.05, 0.3, OptType, 0), 1e-12);
}

TEST(AsianGeoCond, NearTheExactPrice) {
  // The average-price equation solved on 3200 price nodes; simulation (2 million paths, geometric control
  // variate) gave 0.0260757 and 0.0394541, standard errors 4e-7 and 9e-7.
  EXPECT_NEAR(asian_geo_cond(1, 1, 0, 0.05, 0.05, 0.4, 0.4, 30, 0, 1, 0), 0.0260750, 1e-6);
  EXPECT_NEAR(asian_geo_cond(1, 1.02, 0, 0.05, 0.02, 0.3, 0.5, 60, 20, 1, 0), 0.0394522, 5e-6);
  EXPECT_NEAR(asian_geo_cond(1, 0.95, 0, 0.03, 0.03, 0.5, 0.5, 365, 1, 1, 0), 0.1339350, 7e-5);
  // Levy (1997), "Asian options", in Clewlow and Strickland (eds), "Exotic Options: The State of the Art":
  // 250 fixings over 11 months, here as daily fixings with rates and volatility scaled to the same totals.
  const double scale = 11.0 / 12.0 / (249 / 365.25);
  EXPECT_NEAR(asian_geo_cond(90, 87, 0, 0.025 * scale, 0.06 * scale, 0.13 * std::sqrt(scale),
                             0.13 * std::sqrt(scale), 249, 0, 0, 0),
              1.7490, 2e-3);
}

// The closed form of the average forward loses all its digits where r and q nearly agree; the price does not.
TEST(AsianGeoCond, PutParityWithNearlyEqualRates) {
  const double put = asian_geo_cond(100, 103, 0, 0.05, 0.05, 0.3, 0.3, 60, 5, 0, 0);
  EXPECT_NEAR(asian_geo_cond(100, 103, 0, 0.05, 0.05 + 1e-15, 0.3, 0.3, 60, 5, 0, 0), put, 1e-11);
}

TEST(AsianGeoCond, ExpiryMarkersAndLimits) {
  const int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();
  const auto price = [](int E, int B, int RetType) {
    return asian_geo_cond(100, 98, 101, 0.05, 0.03, 0.2, 0.3, E, B, 1, RetType);
  };
  EXPECT_EQ(price(0, -5, 0), 3.0);
  EXPECT_EQ(asian_geo_cond(100, 98, 101, 0.05, 0.03, 0.2, 0.3, least, least, 0, 0), 0.0);
  for (int RetType : {1, 5, 9}) EXPECT_EQ(price(0, -5, RetType), 0.0);
  EXPECT_EQ(price(10, 5, 9), -1e17);
  EXPECT_TRUE(std::isnan(asian_geo_cond(100, 98, nan, 0.05, 0.03, 0.2, 0.3, 0, -1, 1, 0)));
  EXPECT_TRUE(std::isnan(asian_geo_cond(100, 98, 101, 0, 0, 0.2, 0.3, 10, 5, 1, 4)));  // no rate to step
  EXPECT_TRUE(
      std::isnan(asian_geo_cond(100, 40, 101, 0.05, 0.03, 0.2, 0.3, 5, -50, 1, 0)));  // surely exercised
  EXPECT_TRUE(std::isnan(price(10, 11, 0)));
  EXPECT_TRUE(std::isnan(price(10, most, 0)));
  EXPECT_GT(price(99999, 0, 0), 0.0);
  EXPECT_TRUE(std::isnan(price(100000, 0, 0)));
  EXPECT_TRUE(std::isnan(price(most, least, 8)));
  EXPECT_TRUE(std::isfinite(asian_geo_cond(100, 98, 98, 0.05, 0.03, 0.2, 0.3, 6, least, 1, 5)));
}

}  // namespace
}  // namespace kestran
