#include "models/strips/two_contract.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "functions/strips.h"
#include "models/black_scholes/european.h"

namespace kestran {
namespace {

constexpr double day = 1.0 / 365.25;

TwoContracts option(double Next1, double Next2, double End1, double End2, int m, double ToExp, int OptType) {
  TwoContracts o{{25, 25.5}, {.35, .33}, {.45, .4}, {Next1 * day, Next2 * day}, {End1 * day, End2 * day}};
  o.n[0] = 14, o.n[1] = 8, o.m = m;
  o.A = 24.6, o.K = 25, o.r = .05, o.rho = .98, o.ToExp = ToExp * day, o.OptType = OptType;
  return o;
}

TwoContracts one_period(TwoContracts o) {
  o.one_period = true;
  o.Next[1] = o.End[0] = NAN;
  return o;
}

TEST(TwoContracts, OneFixingIsAEuropeanOption) {
  TwoContracts o = one_period(option(10, 0, 0, 70, 0, 75, 1));
  o.n[0] = 0, o.n[1] = 1;
  EXPECT_NEAR(two_contract_price(o),
              bs_general(o.F[1], o.K, o.End[1], o.r, o.r, o.sigma_before[1], 1, 0) * std::exp(-o.r * 5 * day),
              1e-12);
}

// Expected values: all ordered pairs of fixings, volatilities integrated piece by piece, and all moves in
// mpmath, 30 digits. Second differences of moves of 1e-4 carry the rounding of the premium 1e8-fold.
TEST(TwoContracts, EveryResult) {
  TwoContracts overlapping = option(30, 20, 70, 50, 0, .15 / day, 1);
  overlapping.rho = -.3;
  TwoContracts sure = option(0, 11, 10, 21, 12, 26, 1);
  sure.K = 15;
  sure.A = 40;
  const struct {
    struct {
      const char* name;
      int contract;
    } of;
    TwoContracts option;
    double result[10];
  } rows[] = {
      {{"ahead", 1},
       option(40, 60, 59, 70, 0, 75, 1),
       {1.37712580271, 0.344717883723, 0.0762369784246, 1.78955467791, -0.282774468981, -4.37590500172,
        -4.37590500172, 0.377792537652, 0.292011614102, 0.00541420216046}},
      {{"under way", 2},
       option(0, 11, 10, 21, 6, 26, 0),
       {0.336872198223, -0.164160894132, 0.111426213901, 0.575725678676, -0.0239798657904, -9.54971571803,
        -5.77542283073, 0.124469013208, 0.0722775331033, -0.0239801927932}},
      {{"second window first", 1},
       overlapping,
       {0.899663678923, 0.357745834586, 0.121714576355, 1.1881512096, -0.134948539722, -2.90987660992,
        -2.90987660992, 0.729708749781, 0.339984336224, -0.0281058982786}},
      {{"first contract over", 2},
       option(-3, 1, -1, 15, 14, 26, 1),
       {0.140345399876, 0.160803549644, 0.119269416626, 0.0700363354146, -0.00999032829387, -4.33975022008,
        -4.36220047097, 0.37191658183, 0, 0.0109994692455}},
      {{"one period under way", 1},
       one_period(option(-9, 0, 0, 21, 7, 26, 1)),
       {0.391312229172, 0.167671905967, 0.0940060086777, 0, -0.0278551177188, -9.80335601724, -9.77692846127,
        0.27239460722, 0.0685326344868, 0}},
      {{"sure to be exercised", 2},
       sure,
       {18.2983925754, 0.362344407434, 0, 0, -1.30255034536, 0.914982254463, 0.914982254463, 0, 0, 0}},
  };
  const double tolerance[10] = {1e-11, 1e-10, 1e-7, 1e-8, 2e-9, 1e-10, 1e-10, 1e-8, 1e-9, 3e-6};
  for (const auto& row : rows)
    for (int RetType = 0; RetType <= 9; ++RetType)
      EXPECT_NEAR(two_contract_sens(row.option, RetType, row.of.contract), row.result[RetType],
                  tolerance[RetType])
          << row.of.name << " RetType " << RetType;
}

// 600,000 pairs of antithetic paths of all fixings, each with its standard error.
TEST(TwoContracts, AgreesWithSimulation) {
  TwoContracts loose{{25, 22}, {.6, .5}, {.7, .4}, {30 * day, 50 * day}, {75 * day, 110 * day}};
  loose.n[0] = loose.n[1] = 21;
  loose.K = 24, loose.r = .05, loose.rho = .3, loose.ToExp = 120 * day, loose.OptType = 1;
  EXPECT_NEAR(two_contract_price(loose), 1.378026, 2.5 * 0.001835);
  EXPECT_NEAR(two_contract_price(option(0, 11, 10, 21, 6, 26, 0)), 0.336950, 2.5 * 0.000340);
  EXPECT_NEAR(two_contract_price(one_period(option(-9, 0, 0, 21, 7, 26, 1))), 0.391577, 2.5 * 0.000379);
}

TEST(TwoContracts, SpecialCases) {
  const double step = 30.0 / 21.0;
  EXPECT_NEAR(two_contract_price(one_period(option(40, 0, 0, 70, 0, 75, 1))),
              two_contract_price(option(40, 40 + 14 * step, 40 + 13 * step, 70, 0, 75, 1)), 1e-12);

  TwoContracts two_days = one_period(option(40, 0, 0, 70, 0, 75, 1)),
               apart = option(40, 70, 40, 70, 0, 75, 1);
  for (TwoContracts* o : {&two_days, &apart}) o->n[0] = o->n[1] = 1;
  EXPECT_NEAR(two_contract_price(two_days), two_contract_price(apart), 1e-12);

  TwoContracts alone = option(0, 0, 0, 0, 0, 90, 0);
  alone.n[0] = 0;
  alone.n[1] = 1;
  alone.sigma_before[0] = alone.rho = NAN;
  alone.Next[1] = .25;
  EXPECT_NEAR(two_contract_price(alone),
              bs_general(25.5, 25, .25, .05, .05, .33, 0, 0) * std::exp(-.05 * (90 * day - .25)), 1e-12);
  EXPECT_NEAR(two_contract_price(option(-9, -1, -1, -1, 22, 26, 0)), .4 * std::exp(-.05 * 26 * day), 1e-12);
}

TEST(TwoContracts, DegenerateInput) {
  const TwoContracts good = option(40, 60, 59, 70, 0, 75, 1);
  const int counts[][3] = {{-1, 8, 0},    {14, -1, 0}, {14, 8, -1}, {INT_MAX, INT_MAX, 0},
                           {99999, 2, 0}, {0, 0, 5}};
  for (const auto& count : counts) {
    TwoContracts bad = good;
    bad.n[0] = count[0];
    bad.n[1] = count[1];
    bad.m = count[2];
    EXPECT_TRUE(std::isnan(two_contract_price(bad))) << count[0] << ' ' << count[1] << ' ' << count[2];
  }
  for (double TwoContracts::*input : {&TwoContracts::K, &TwoContracts::r, &TwoContracts::rho}) {
    TwoContracts bad = good;
    bad.*input = NAN;
    EXPECT_TRUE(std::isnan(two_contract_price(bad)));
  }
  const TwoContracts bad_date = option(40, NAN, 59, 70, 0, 75, 1),
                     bad_end = option(40, 60, NAN, 70, 0, 75, 1);
  EXPECT_TRUE(std::isnan(two_contract_price(bad_date)) && std::isnan(two_contract_price(bad_end)));
  EXPECT_TRUE(std::isnan(two_contract_sens(good, 1, INT_MIN)));
  EXPECT_TRUE(std::isnan(two_contract_sens(good, 10, 1)));
  TwoContracts long_made = good;
  long_made.m = INT_MAX;
  EXPECT_TRUE(std::isfinite(two_contract_sens(long_made, 5, 1)));
}

// A contract without fixings to come counts for nothing, and a settled average has no distribution.
TEST(TwoContracts, PricesThatAreNotPositive) {
  const struct {
    const char* name;
    double F1, F2, K;
    int n2, m;
    bool a_number;
  } rows[] = {{"both below 0", -25, -25.5, -25, 8, 0, false},
              {"one below 0", 25, -2, 15, 8, 0, false},
              {"call sure by its strike", 25, -2, -30, 8, 0, false},
              {"first over, second below 0", 25, -2, 20, 8, 14, false},
              {"both 0", 0, 0, 20, 8, 0, false},
              {"one 0", 0, 25.5, 9, 8, 0, true},
              {"below 0 without fixings", 25, -2, 25, 0, 0, true},
              {"below 0 with its fixings made", -25, 25.5, 25, 8, 14, true},
              {"settled", -25, -25.5, 20, 8, 22, true}};
  for (const auto& row : rows)
    for (bool one : {false, true})
      for (int OptType : {0, 1}) {
        TwoContracts o = option(20, 40, 39, 50, row.m, 75, OptType);
        if (one) o = one_period(option(20, 0, 0, 50, row.m, 75, OptType));
        o.F[0] = row.F1, o.F[1] = row.F2, o.K = row.K, o.n[1] = row.n2;
        EXPECT_EQ(std::isfinite(two_contract_price(o)), row.a_number) << row.name << one << OptType;
      }
  TwoContracts half = option(20, 20, 39, 39, 0, 0, 1);
  half.F[0] = 0, half.n[0] = half.n[1] = 1, half.K = 10, half.ToExp = 20 * day;
  EXPECT_NEAR(two_contract_price(half), .5 * bs_general(25.5, 20, 20 * day, .05, .05, .33, 1, 0), 1e-12);
}

TEST(TwoContracts, OnTheWorksheet) {
  const double Price[] = {25, 25.5}, Vol[] = {.35, .33}, Next[] = {.02, .06}, End[] = {.05, .1},
               n[] = {14.9, 8};
  for (int RetType = 0; RetType <= 9; ++RetType)
    EXPECT_EQ(worksheet::ASTRIP2m(nullptr, 25, 25.5, .35, .33, .02, .06, .05, .1, 14.9, 8, 3, 25, .05, .98,
                                  24, .1, 20, RetType, 2)
                  .number,
              asian_strip(worksheet::asian_strip_terms(nullptr, Price, Vol, Next, End, n, 2, 3, 25, .05, .98,
                                                       24, .1, 20),
                          RetType, 2))
        << RetType;
  EXPECT_TRUE(std::isnan(worksheet::ASTRIP2m(nullptr, 25, -5.5, .35, .33, .02, .06, .05, .1, 14, 8, 3, 9, .05,
                                             .98, 24, .1, 1, 0, 2)
                             .number));
  const auto refused = [](int Settle1, int SetDays, int RetType, int RetMonth) {
    return worksheet::xCrudeAPO(nullptr, 25, 25.5, .35, .33, .45, .4, .1, .2, Settle1, 8, SetDays, 25, .05,
                                .98, 0, .2, 1, RetType, RetMonth)
               .error == value_code;
  };
  EXPECT_TRUE(refused(INT_MAX, 0, 0, 1) && refused(-1, 0, 0, 1) && refused(14, -1, 0, 1));
  EXPECT_TRUE(refused(14, 0, -1, 1) && refused(14, 0, 10, 1) && refused(14, 0, 9, 3));
  EXPECT_FALSE(refused(99992, 0, 9, 2) || refused(14, INT_MAX, 0, 0));
}

}  // namespace
}  // namespace kestran
