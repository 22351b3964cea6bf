#include "models/baskets/pplus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "models/exotics/spread_kernel.h"

namespace kestran {
namespace {

TwoBaskets baskets(int Aflag, int Bflag, double K, int OptType) {
  return {{60, 62, 50, 51},
          {.3, .28, .35, .33},
          {.95, .97, .85, .84, .83, .86},
          {20, 10},
          K,
          .05,
          .5,
          OptType,
          Aflag,
          Bflag};
}

// Expected values: moments of the baskets, the exact normal distribution integrated over basket B by adaptive
// quadrature, and all moves in mpmath, 20 digits. cnorm is within 7.5e-8.
TEST(Pplus, EveryResult) {
  TwoBaskets put = baskets(2, 0, 70, 0);
  const double loose[6] = {.6, .5, 0, .5, .4, -.3};
  std::copy(loose, loose + 6, put.rho);
  const struct {
    const char* name;
    TwoBaskets option;
    double result[25];
  } rows[] = {
      {"averages, call",
       baskets(1, 1, 8, 1),
       {4.026377361,   0.3327360677,   0.3319742358,  -0.4129247315,  -0.2077396041,
        0.01314647181, 0.01320736661,  0.02585839404, 0.006428311393, 1.551881212,
        1.538799941,   2.804725938,    1.325879267,   2.055112818,    1.895434383,
        -2.906605271,  -2.793629135,   -1.393050409,  -1.341704646,   -2.013188681,
        -2.11285596,   -0.05524492588, 0.2862006696,  0.3409910567,   0.8613982055}},
      {"sum and first, put", put, {7.719278395,   -0.4019682822,  -0.4285746445, 0.5037147763, 0.0,
                                   0.01696455643, 0.0173344745,   0.01781914369, 0.0,          14.57798547,
                                   10.1340981,    4.009549194,    0.0,           2.638401592,  0.0,
                                   -2.684632763,  -2.652714602,   0.0,           0.0,          -3.859639197,
                                   -8.238781847,  -0.01725705958, 0.2593921695,  0.35,         0.2759378119}},
  };
  for (const auto& row : rows)
    for (int Risk = 0; Risk <= 24; ++Risk) {
      const double tolerance = Risk >= 22 ? 1e-9 : Risk >= 9 && Risk <= 18 ? 5e-5 : 1e-6;
      EXPECT_NEAR(pplus_greek(row.option, Risk), row.result[Risk], row.result[Risk] == 0 ? 0 : tolerance)
          << row.name << " Risk " << Risk;
    }
}

// 4,000,000 pairs of antithetic paths, with a standard error of 0.0009; 1,500,000 with 0.005.
TEST(Pplus, AgreesWithSimulation) {
  EXPECT_NEAR(pplus_price(baskets(1, 1, 8, 1)), 4.0263, 0.0025);
  EXPECT_NEAR(pplus_price(baskets(1, 1, 8, 0)), 1.4259, 0.0025);
  TwoBaskets lively{
      {60, 62, 50, 51}, {.5, .6, .4, .45}, {.6, .6, .6, .6, .6, .6}, {20, 10}, 8, .05, .5, 1, 1, 1};
  EXPECT_NEAR(pplus_price(lively), 6.8746, 0.006 * 6.8746);
}

TEST(Pplus, SpecialCases) {
  for (double K : {8.0, -20.0, 0.0})
    for (int Aflag = 0; Aflag <= 2; ++Aflag)
      for (int Bflag = 0; Bflag <= 2; ++Bflag) {
        const double A[] = {60, 61, 122}, B[] = {50, (50.0 * 20 + 51.0 * 10) / 30, 101};
        EXPECT_NEAR(pplus_price(baskets(Aflag, Bflag, K, 1)) - pplus_price(baskets(Aflag, Bflag, K, 0)),
                    std::exp(-.025) * (A[Aflag] - B[Bflag] - K), 2e-5)
            << K << ' ' << Aflag << ' ' << Bflag;
      }
  // First components alone; what is left out may hold anything.
  double spread[3];
  spread_kernel(60, 50, 8, .3 * std::sqrt(.5), .35 * std::sqrt(.5), .85, std::exp(-.025), 1, spread);
  TwoBaskets alone = baskets(0, 0, 8, 1);
  alone.S[1] = alone.S[3] = 0;
  alone.sigma[1] = alone.sigma[3] = 1e6;
  EXPECT_NEAR(pplus_price(alone), spread[0], 1e-10);
  for (int Risk : {2, 4, 6, 8, 10, 12, 13, 14, 16, 17, 18}) EXPECT_EQ(pplus_greek(alone, Risk), 0.0) << Risk;
  alone.Bflag = 1;
  alone.days_B[1] = 0;
  EXPECT_NEAR(pplus_price(alone), spread[0], 1e-10);

  TwoBaskets no_days = baskets(1, 1, 8, 1), even_days = no_days;
  no_days.days_B[0] = no_days.days_B[1] = 0;
  even_days.days_B[0] = even_days.days_B[1] = 7;
  EXPECT_EQ(pplus_price(no_days), pplus_price(even_days));
}

TEST(Pplus, DegenerateInput) {
  TwoBaskets option = baskets(1, 1, 8, 1);
  option.T = 0;
  EXPECT_NEAR(pplus_greek(option, 0), 61 - (50.0 * 20 + 51.0 * 10) / 30 - 8, 1e-13);
  for (int Risk : {1, 5, 13, 20, 22, 24}) EXPECT_EQ(pplus_greek(option, Risk), 0.0) << Risk;
  option = baskets(1, 1, 8, 1);
  for (int Risk : {-1, 25, INT_MIN, INT_MAX}) EXPECT_EQ(pplus_greek(option, Risk), 99.0);
  option.sigma[2] = -1;
  EXPECT_TRUE(std::isfinite(pplus_greek(option, 11)));
  for (double TwoBaskets::*input : {&TwoBaskets::K, &TwoBaskets::r, &TwoBaskets::T}) {
    TwoBaskets bad = baskets(1, 1, 8, 1);
    bad.*input = NAN;
    EXPECT_TRUE(std::isnan(pplus_price(bad)));
  }
  TwoBaskets bad = baskets(1, 1, 8, 1);
  bad.sigma[3] = NAN;
  EXPECT_TRUE(std::isnan(pplus_price(bad)));
  for (int flag : {-1, 3, INT_MAX}) {
    EXPECT_EQ(pplus_greek(baskets(flag, 0, 8, 1), 0), -99.0);
    EXPECT_EQ(pplus_greek(baskets(0, flag, 8, 1), 24), -99.0);
  }
}

}  // namespace
}  // namespace kestran
