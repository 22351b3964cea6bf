#include "models/trees/log_tree.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace kestran {
namespace {

constexpr int N = 120;
constexpr double deviation = 10.0;  // in nodes, about the middle one

double density(double x) { return std::exp(-x * x / 2) / std::sqrt(2 * std::acos(-1.0)); }

// The sum over the nodes of a call's (sign 1) or put's payoff on the node's number, under a normal density.
double node_sum(double K, double sign, bool corrected) {
  std::vector<double> g, pay;
  for (int i = 0; i <= N; ++i) {
    g.push_back(sign * (i - K));
    pay.push_back(std::fmax(g.back(), 0.0));
  }
  if (corrected) kink_correct(g.data(), pay.data(), N);
  double sum = 0.0;
  for (int i = 0; i <= N; ++i) sum += pay[i] * density((i - N / 2) / deviation) / deviation;
  return sum;
}

// Expected: the integral, in closed form (Bachelier 1900).
TEST(LogTree, KinkCorrectionMeetsTheIntegral) {
  for (double K : {60.0, 60.25, 60.5, 60.97, 71.3, 48.6}) {
    const double d = (N / 2 - K) / deviation;
    for (double sign : {1.0, -1.0}) {
      const double integral = deviation * (density(d) + sign * d * std::erfc(-sign * d / std::sqrt(2.0)) / 2);
      EXPECT_NEAR(node_sum(K, sign, true), integral, 5e-5) << K << " " << sign;
    }
  }
  // Without it the sum is further off by far.
  EXPECT_GT(std::fabs(node_sum(60, 1, false) - deviation * density(0)), 3e-3);
}

TEST(LogTree, KinkCorrectionLeavesTheRestAlone) {
  const double g[6] = {-3, -1, 3, 4, 0, NAN};
  double pay[6] = {0, 0, 3, 4, 0, NAN};
  kink_correct(g, pay, 5);
  const double share = 0.25, correction = 4 / 12.0 - 3 / 8.0;
  EXPECT_NEAR(pay[1], correction * (1 - share), 1e-15);
  EXPECT_NEAR(pay[2], 3 + correction * share, 1e-15);
  EXPECT_NEAR(pay[3], 4, 1e-15);  // falls to 0 exactly on the next node: correction 4/12, all on that node
  EXPECT_NEAR(pay[4], 4 / 12.0, 1e-15);
  EXPECT_EQ(pay[0], 0.0);
  EXPECT_TRUE(std::isnan(pay[5]));
}

}  // namespace
}  // namespace kestran
