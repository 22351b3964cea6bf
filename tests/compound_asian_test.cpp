#include "models/asian/compound_asian.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "models/asian/asian_geo_cond.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

const CompoundAsian before_averaging{100, .05, .35, .30, 0, 21, 0, 150, 180, .40, 100, 4, 90, .045, 1, 12};
const CompoundAsian half_way{100, .05, .35, .30, 0, 31, 0, 30, 60, .40, 100, 4, 45, .045, 1, 12};
const CompoundAsian under_way{100, .05, .35, .30, 97, 31, 10, 1, 21, .40, 99, 2, 11, .045, 1, 12};
const CompoundAsian weekly{100, .05, .35, .30, 103, 6, 1, 0.5, 32.5, .40, 100, 1, 17, .03, 1, 12};
const CompoundAsian last_day{100, .05, .35, .30, 96, 8, 3, 0, 40, .40, 100, 1, 40, .03, 1, 12};

CompoundAsian with(CompoundAsian option, int CmpOptType, int steps) {
  option.CmpOptType = CmpOptType;
  option.steps = steps;
  return option;
}

// Expected values here and below, unless said otherwise: tree and node values worked again in
// mpmath, 30 digits, rolled back level by level, with the same normal distribution.
TEST(CompoundAsian, Premium) {
  const struct {
    CompoundAsian option;
    double expected[4];
  } rows[] = {{before_averaging, {6.9773759611961, 1.239768040133, 6.6734820408138, 0.93692713681629}},
              {half_way, {3.5202459540892, 2.2842323013721, 3.3258781559791, 2.0900884449606}},
              {under_way, {0.70041124245768, 1.1634312453328, 0.63886285362156, 1.134055485647}},
              {weekly, {1.830646295026, 0.40770993314733, 1.3894573775522, 0.46427242790525}},
              {last_day, {0.85375228871262, 0.6507864168913, 2.07162414564, 0.37362459824378}}};
  for (const auto& row : rows)
    for (int type = 1; type <= 4; ++type)
      EXPECT_NEAR(compound_asian_tree(with(row.option, type, 12)), row.expected[type - 1], 1e-11)
          << row.option.CmpExpDays << " days, type " << type;
  CompoundAsian expired = half_way;
  expired.CmpExpDays = 0;
  EXPECT_NEAR(compound_asian_tree(expired), 0.41893898420637, 1e-11);
}

TEST(CompoundAsian, Sensitivities) {
  const struct {
    CompoundAsian option;
    double expected[9];
  } rows[] = {{with(before_averaging, 1, 12),
               {6.9773759611961, 0.48003749932856, 0.01706327292107, 17.503711719498, -4.4951524373753,
                -13.880922100253, 0.19665130053075, 5.9620549252336, 0.82844872943236}},
              {with(under_way, 2, 12),
               {1.1634312453328, -0.13193451937921, -0.0030504588670164, -0.25878084765245,
                -0.026883056224244, 5.3194600416618, 0.3124778137388, -0.1019417454733, -0.249300718443}},
              {with(weekly, 3, 12),
               {1.3894573775522, -0.31992888695675, 0.047311021606936, 4.8026168468582, -0.25878663910555,
                -34.427219377129, -0.21438312431053, 0.26274427017809, 0.056505929205553}}};
  const double tolerance[9] = {1e-11, 1e-9, 1e-11, 1e-7, 1e-6, 1e-8, 1e-5, 1e-7, 1e-7};
  for (const auto& row : rows)
    for (int RetType = 0; RetType < 9; ++RetType)
      EXPECT_NEAR(compound_asian_greek(row.option, RetType), row.expected[RetType], tolerance[RetType])
          << row.option.CmpExpDays << " days, RetType " << RetType;
}

// Fixing paths simulated up to the compound expiry in antithetic pairs, the premium and its standard error.
TEST(CompoundAsian, AgainstSimulatedPaths) {
  const struct {
    CompoundAsian option;
    double simulated, error;
  } rows[] = {{with(half_way, 2, 400), 2.27993, 0.00043},
              {with(under_way, 2, 400), 1.16888, 0.00014},
              {with(under_way, 4, 400), 1.14061, 0.00012},
              {with(last_day, 2, 400), 0.68208, 0.00029}};
  for (const auto& row : rows)
    EXPECT_NEAR(compound_asian_tree(row.option), row.simulated, 3 * row.error) << row.simulated;
}

TEST(CompoundAsian, Identities) {
  const double h = 1 / 365.25;
  // Call less put is the value of the average-price option less the strike; here it is a call that surely
  // pays.
  CompoundAsian sure = under_way;
  sure.K = 1;
  const double forward = (10 * 97 + 21 * 100) / 31.0 - 1;
  EXPECT_NEAR(compound_asian_tree(with(sure, 1, 50)) - compound_asian_tree(with(sure, 2, 50)),
              forward * std::exp(-.05 * 21 * h) - 2 * std::exp(-.045 * 11 * h), 2e-3);
  // Daily fixings are those of asian_geo_cond; one in the past counts as today's, days are rounded.
  const auto node = [](double m, double N, double K, double first, double last, bool call) {
    return compound_asian_node(95, 102, m, N, K, .04, .35, .5, first, last, call);
  };
  EXPECT_EQ(node(0, 21, 100, 60, 80, false), asian_geo_cond(95, 100, 0, .04, .04, .35, .5, 80, 60, 0, 0));
  EXPECT_EQ(node(2, 7, 100, -5, 30.6, true), node(2, 7, 100, 0, 31.4, true));
  EXPECT_NEAR(node(2, 7, 100, 3.4, 30.6, true), 1.0839569275453, 1e-12);
  EXPECT_NEAR(node(7, 7, 100, 0, 10, true), 2 * std::exp(-.4 * h), 1e-14);
  EXPECT_EQ(node(2, 4, 50, 3, 30, false), 0.0);
  EXPECT_TRUE(std::isnan(node(2, 7, 100, NAN, 30, true)));
  EXPECT_TRUE(std::isnan(node(2, 7, 100, 0, 1e10, true)));
}

TEST(CompoundAsian, DegenerateInput) {
  for (int RetType : {INT_MIN, -1, 9, INT_MAX})
    EXPECT_EQ(compound_asian_greek(half_way, RetType), 0.0) << RetType;
  EXPECT_EQ(compound_asian_tree(with(half_way, 1, INT_MIN)), compound_asian_tree(with(half_way, 1, 1)));
  EXPECT_EQ(compound_asian_tree(with(half_way, 1, INT_MAX)),
            compound_asian_tree(with(half_way, 1, compound_asian_most_steps)));
  CompoundAsian option = half_way;
  option.rc = 0;
  EXPECT_EQ(compound_asian_greek(option, 4), 0.0);
  option.CmpExpDays = -1;
  EXPECT_EQ(compound_asian_greek(option, 1), 0.0);

  const struct {
    double CompoundAsian::*term;
    double value;
    int N;
  } refused[] = {{&CompoundAsian::ExpDays, 4e3, 31},
                 {&CompoundAsian::ExpDays, 1e300, 31},
                 {&CompoundAsian::ExpDays, NAN, 31},
                 {&CompoundAsian::toNext, -1e300, INT_MAX},
                 {&CompoundAsian::CmpExpDays, 1e300, 31},
                 {&CompoundAsian::CmpExpDays, NAN, 31},
                 {&CompoundAsian::sigma_c, 0, 31},
                 {&CompoundAsian::S0, -1, 31},
                 {&CompoundAsian::X, 4, 4000}};
  for (const auto& row : refused) {
    CompoundAsian bad = half_way;
    bad.*row.term = row.value;
    bad.N = row.N;
    for (int RetType : {0, 5}) EXPECT_TRUE(std::isnan(compound_asian_greek(bad, RetType))) << row.value;
  }
  set_allocation_limit(1);
  EXPECT_TRUE(std::isnan(compound_asian_tree(half_way)));
  set_allocation_limit(0);
}

TEST(CompoundAsian, NodeNeverFallsBelowTheForwardValue) {
  // 360 of 362 fixings made at 90 leave a strike of 2443, of which the price of 100 falls short for certain.
  const double put = 2.0 / 362.0 * std::exp(-0.05 / 365.25) * (2443.0 - 100.0);
  EXPECT_NEAR(compound_asian_node(100, 90, 360, 362, 103, 0.05, 0.25, 0.35, 0, 1, false), put, 1e-12);
  EXPECT_EQ(compound_asian_node(100, 90, 360, 362, 103, 0.05, 0.25, 0.35, 0, 1, true), 0.0);
}

}  // namespace
}  // namespace kestran
