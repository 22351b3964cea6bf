#include "models/baskets/basket_correl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "numerics/arrays.h"

namespace kestran {
namespace {

using Numbers = std::vector<double>;

struct Baskets {
  Numbers F1, F2, sigma1, sigma2, w1, w2, Tset1, Tset2, packed_correl;
};

double correlation(const Baskets& b, double T) {
  const int n1 = static_cast<int>(b.F1.size()), n2 = static_cast<int>(b.F2.size());
  return basket_correl_tset({b.F1.data(), b.sigma1.data(), b.w1.data(), b.Tset1.data(), n1},
                            {b.F2.data(), b.sigma2.data(), b.w2.data(), b.Tset2.data(), n2},
                            b.packed_correl.data(), T);
}

const Baskets three_and_two{{100, 102, 104}, {60, 61},     {.3, .28, .26},
                            {.35, .33},      {.5, .3, .2}, {1, 1},
                            {.25, .5, 2},    {.25, .5},    {.95, .9, .97, .6, .6, .6, .6, .6, .6, .96}};

// Expected values: the double sums over all pairs in mpmath, 30 digits. The moments of 4,000,000
// simulated paths gave 0.5973 for the first, with a standard error of 0.0004.
TEST(BasketCorrel, DoubleSumsOverAllPairs) {
  EXPECT_NEAR(correlation(three_and_two, 1), 0.597208805323842287, 1e-13);
  const Baskets swapped{{60, 61},       {100, 102, 104}, {.35, .33},
                        {.3, .28, .26}, {1, 1},          {.5, .3, .2},
                        {.25, .5},      {.25, .5, 2},    {.96, .6, .6, .6, .6, .95, .6, .6, .9, .97}};
  EXPECT_NEAR(correlation(swapped, 1), 0.597208805323842287, 1e-13);

  Baskets short_positions = three_and_two;
  short_positions.w1[2] = -.2;
  short_positions.w2[1] = .4;
  short_positions.Tset2[0] = -.1;
  short_positions.packed_correl = {.95, .9, .97, .6, .5, .4, .3, .2, .1, -.96};
  EXPECT_NEAR(correlation(short_positions, .8), -0.204982585907051755, 1e-13);
}

TEST(BasketCorrel, OneComponentEach) {
  for (double rho : {.37, -.9, 1.0})
    for (double Tset : {.25, 3.0}) {
      const Baskets pair{{100}, {60}, {.3}, {.35}, {2}, {5}, {Tset}, {1}, {rho}};
      EXPECT_NEAR(correlation(pair, 1), Tset < 1 ? rho * .5 : rho, 1e-14) << rho << ' ' << Tset;
    }
}

TEST(BasketCorrel, OneBasketTwice) {
  const Baskets twice{
      {100, 50}, {100, 50}, {.3, .6}, {.3, .6}, {1, 2}, {1, 2}, {1, .5}, {1, .5}, {.4, 1, .4, .4, 1, .4}};
  EXPECT_NEAR(correlation(twice, 1), 1.0, 1e-14);
  Baskets impossible = twice;
  impossible.packed_correl = {.4, 1, 1, 1, 1, .4};
  EXPECT_EQ(correlation(impossible, 1), 1.0);
}

TEST(BasketCorrel, DegenerateInput) {
  Baskets baskets = three_and_two;
  EXPECT_EQ(correlation(baskets, 0), 0.0);
  EXPECT_TRUE(std::isnan(correlation(baskets, NAN)));
  baskets.w2 = {61, -60};
  EXPECT_EQ(correlation(baskets, 1), 0.0);
  baskets = three_and_two;
  baskets.sigma1 = {0, 0, 0};
  EXPECT_EQ(correlation(baskets, 1), 0.0);
  for (Numbers Baskets::*list : {&Baskets::F1, &Baskets::sigma1, &Baskets::w2, &Baskets::Tset1,
                                 &Baskets::Tset2, &Baskets::packed_correl}) {
    baskets = three_and_two;
    (baskets.*list)[0] = NAN;
    EXPECT_TRUE(std::isnan(correlation(baskets, 1)));
  }
  // A product of the two baskets with a negative expectation has no logarithm.
  const Baskets negative{{100, 90}, {60}, {2, .1}, {2}, {1, -1}, {1}, {1, 1}, {1}, {0, -1, 1}};
  EXPECT_TRUE(std::isnan(correlation(negative, 1)));
  for (int failing = 1; failing <= 4; ++failing) {
    set_allocation_limit(failing);
    EXPECT_TRUE(std::isnan(correlation(three_and_two, 1))) << failing;
  }
  set_allocation_limit(0);
}

}  // namespace
}  // namespace kestran
