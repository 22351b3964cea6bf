#include "models/baskets/basket_vol.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "models/baskets/basket_vol_tset.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

using Numbers = std::vector<double>;

double basket_vol(const Numbers& F, const Numbers& sigma, const Numbers& mu, const Numbers& w,
                  const Numbers& rho, double T) {
  return basket_vol_moment_match(F.data(), sigma.data(), mu.data(), w.data(), rho.data(),
                                 static_cast<int>(F.size()), T);
}

double vol_tset(const Numbers& F, const Numbers& sigma, const Numbers& w, const Numbers& Tset,
                const Numbers& packed_correl, double T, int RetType = 0) {
  return basket_vol_tset({F.data(), sigma.data(), w.data(), Tset.data(), static_cast<int>(F.size())},
                         packed_correl.data(), T, RetType);
}

// Expected values: the double sums over all pairs in mpmath, 30 digits.
TEST(BasketVol, DoubleSumsOverAllPairs) {
  EXPECT_NEAR(basket_vol({100, 90}, {.3, .4}, {.02, -.01}, {.6, .4}, {1, .5, .5, 1}, .75),
              0.29324634819337763, 1e-14);
  // A short position and a matrix that is not symmetric.
  EXPECT_NEAR(basket_vol({100, 105, 98}, {.3, .25, .6}, {.02, -.01, .05}, {.5, .7, -.4},
                         {1, .8, .6, .7, 1, .5, .65, .45, 1}, 1.5),
              0.34974595267191477, 1e-14);
  EXPECT_NEAR(basket_vol({80}, {.37}, {.1}, {-2}, {.49}, 2), 0.37 * 0.7, 1e-15);
  EXPECT_NEAR(vol_tset({100, 102, 104}, {.3, .28, .26}, {.5, .3, .2}, {.25, .5, 2}, {.95, .9, .97}, 1),
              0.16064975059323498, 1e-14);
  EXPECT_NEAR(vol_tset({100, 102, 104, 50}, {.3, .28, .56, .4}, {.5, -.3, .2, .1}, {.25, .5, 2, -.1},
                       {.95, .9, .97, .1, .2, .3}, .8),
              0.28166729517860082, 1e-14);
}

// Each pair counts with both of its cells, wherever it stands.
TEST(BasketVol, MatrixAndItsTransposeAreTheSame) {
  for (int n : {2, 3, 6, 7, 18, 35}) {
    const Numbers F(n, 100.0), vols(n, 0.4), zeros(n, 0.0), w(n, 1.0);
    for (int i = 0; i < n; ++i)
      for (int j = 0; j < i; ++j) {
        Numbers rho(n * n, 0.5), transpose = rho;
        rho[i * n + j] = transpose[j * n + i] = 0.7;
        EXPECT_NEAR(basket_vol(F, vols, zeros, w, rho, 2), basket_vol(F, vols, zeros, w, transpose, 2), 1e-14)
            << n << " " << i << " " << j;
      }
  }
}

TEST(BasketVol, CorrelationsMayStandApart) {
  const Numbers F = {100, 105, 98}, sigma = {.3, .25, .6}, mu = {.02, -.01, .05}, w = {.5, .7, -.4};
  const Numbers rho = {1, .8, .6, .7, 1, .5, .65, .45, 1};
  for (int apart : {2, 3, 4}) {
    Numbers spread(rho.size() * apart, NAN);
    for (std::size_t i = 0; i < rho.size(); ++i) spread[i * apart] = rho[i];
    EXPECT_EQ(
        basket_vol_moment_match(F.data(), sigma.data(), mu.data(), w.data(), spread.data(), 3, 1.5, apart),
        basket_vol(F, sigma, mu, w, rho, 1.5));
  }
}

TEST(BasketVol, PerfectCorrelationAndNoVolatility) {
  for (int n : {2, 7, 256}) {
    Numbers F(n), w(n), packed(n * (n - 1) / 2, 1.0);
    for (int i = 0; i < n; ++i) F[i] = 50.0 + 3.0 * i, w[i] = 1.0 / (i + 1);
    const Numbers zeros(n, 0.0), vols(n, 0.35), late(n, 9.0), ones(n * n, 1.0);
    EXPECT_NEAR(basket_vol(F, vols, zeros, w, ones, 0.4), 0.35, 1e-12) << n;
    EXPECT_NEAR(vol_tset(F, vols, w, late, packed, 0.4), 0.35, 1e-12) << n;
    EXPECT_EQ(basket_vol(F, zeros, zeros, w, ones, 0.4), 0.0) << n;
    EXPECT_EQ(vol_tset(F, zeros, w, late, packed, 0.4), 0.0) << n;
  }
}

TEST(BasketVol, LateFixingIsTheSameAsNone) {
  EXPECT_NEAR(vol_tset({100, 90}, {.3, .4}, {.6, .4}, {.75, 3}, {.5}, .75),
              basket_vol({100, 90}, {.3, .4}, {0, 0}, {.6, .4}, {1, .5, .5, 1}, .75), 1e-14);
}

TEST(BasketVol, DegenerateInput) {
  EXPECT_EQ(vol_tset({100, 90}, {.3, .4}, {.6, .4}, {1, 1}, {.5}, .75, -3), 96.0);
  EXPECT_EQ(vol_tset({100, 50}, {.3, .4}, {1, -2}, {1, 1}, {.5}, .75), 0.0);
  EXPECT_EQ(vol_tset({100, 90}, {.3, .4}, {.6, .4}, {1, 1}, {.5}, 0, 1), 0.0);
  EXPECT_TRUE(std::isnan(vol_tset({100, 90}, {.3, .4}, {.6, .4}, {NAN, 1}, {.5}, .75)));
  EXPECT_TRUE(std::isnan(basket_vol({100, 90}, {.3, .4}, {0, 0}, {.6, .4}, {1, .5, .5, 1}, 0)));
  EXPECT_TRUE(std::isnan(basket_vol_moment_match(nullptr, nullptr, nullptr, nullptr, nullptr, 0, 1)));
  for (int failing = 1; failing <= 3; ++failing) {
    set_allocation_limit(failing);
    EXPECT_TRUE(std::isnan(vol_tset({100, 90}, {.3, .4}, {.6, .4}, {1, 1}, {.5}, .75))) << failing;
  }
  set_allocation_limit(0);
}

}  // namespace
}  // namespace kestran
