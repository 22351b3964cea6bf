#include "models/black_scholes/tree_nodes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "models/black_scholes/european.h"
#include "models/black_scholes/roll_back_kernel.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

// The same tree with every node of every level, from the lowest price to the highest.
TreeValue whole_tree(const ForwardTree& tree) {
  const auto [S, K, r, q, sigma, OptType, f, dt, levels, first_exercise] = tree;
  const double h = tree.h(), y = 2 * h;
  const double up = exponential(-r * dt) / (1 + exponential(h));
  const double down = exponential(-r * dt) / (1 + exponential(-h));
  const int middle = (levels + 4) / 2;
  std::vector<double> ratio, V;
  for (int j = 0; j < levels + 4; ++j) ratio.push_back(exponential((j - middle) * y));
  for (int i = levels - 1; i >= 0; --i) {
    const double centre = S * exponential((r - q) * (f + i * dt) + (2 * middle - i - 4) * h);
    for (std::size_t j = 0; j < static_cast<std::size_t>(i) + 5; ++j) {
      const double price = centre * ratio[j];
      if (i == levels - 1)
        V.push_back(bs_general(price, K, dt, r, q, sigma, OptType, 0));
      else
        V[j] = up * V[j + 1] + down * V[j];
      if (i >= first_exercise) V[j] = std::max(V[j], tree.intrinsic(price));
    }
  }
  double now[3];
  for (std::size_t j = 0; j < 3; ++j) {
    const double curvature = (V[j + 2] - 2 * V[j + 1] + V[j]) / (y * y) - (V[j + 2] - V[j]) / (2 * y);
    now[j] = f == 0 ? V[j + 1] : V[j + 1] + f * (sigma * sigma / 2 * curvature - r * V[j + 1]);
  }
  const double up_move = S * (exponential(y) - 1), down_move = S * (1 - exponential(-y));
  const double slope_up = (now[2] - now[1]) / up_move, slope_down = (now[1] - now[0]) / down_move;
  const double width = up_move + down_move;
  return {now[1], (down_move * slope_up + up_move * slope_down) / width, 2 * (slope_up - slope_down) / width};
}

// Also beyond the last node, and where values are no numbers.
TEST(TreeNodes, RolledBackAlikeInTwoAndFourLanes) {
  if (!__builtin_cpu_supports("avx2")) GTEST_SKIP();
  std::mt19937_64 bits(12);
  constexpr int nodes = 24;
  int differing = 0;
  for (int level = 0; level < 2000; ++level) {
    double ratio[nodes], two[nodes], four[nodes];
    for (int j = 0; j < nodes; ++j) {
      ratio[j] = std::exp(0.2 * (j - nodes / 2));
      two[j] = four[j] = bits() % 50 == 0 ? NAN : static_cast<double>(bits() % 1000) / 7.0;
    }
    const RolledBack rolled = {0.5, 0.49, level % 2 == 0 ? 100.0 : -100.0, level % 2 == 0 ? 100.0 : -100.0,
                               ratio};
    const int first = static_cast<int>(bits() % 8), last = first - 1 + static_cast<int>(bits() % 12);
    const int exercised = first - 1 + 2 * static_cast<int>(bits() % 4);
    roll_back_level<elementary::TwoLanes>(rolled, first, exercised, last, two);
    roll_back_avx2(rolled, first, exercised, last, four);
    differing += std::memcmp(two, four, sizeof two) != 0;
  }
  EXPECT_EQ(differing, 0);
}

TEST(TreeNodes, WhatIsLeftOutMovesNoBit) {
  std::mt19937_64 bits(11);
  const auto between = [&](double a, double b) {
    return a + (b - a) * static_cast<double>(bits() >> 11) * 0x1p-53;
  };
  const auto rate = [&] { return bits() % 4 == 0 ? 0.0 : between(-0.08, 0.15); };
  for (int deal = 0; deal < 1500; ++deal) {
    const double moneyness = deal % 3 == 0 ? between(-6, 6) : between(-0.5, 0.5);
    const double T = std::exp(between(-8, 2)), sigma = std::exp(between(-7, 1.5));
    const int steps = static_cast<int>(std::exp(between(1, 6.6)));
    const int first_exercise = deal % 4 == 0 ? static_cast<int>(bits() % 300) : 0;
    const double dt = T / steps, f = deal % 4 == 0 ? between(0, dt) : 0.0;
    const double widest = std::min(600 / (sigma * std::sqrt(dt)), 900 / (sigma * sigma * dt));
    const int levels = static_cast<int>(std::min<double>(steps + first_exercise, widest));
    if (levels <= first_exercise) continue;
    const int OptType = static_cast<int>(bits() % 2);
    const ForwardTree tree = {
        100 * std::exp(moneyness), 100, rate(), rate(), sigma, OptType, f, dt, levels, first_exercise};
    SCOPED_TRACE(testing::Message() << OptType << ": S " << tree.S << " r " << tree.r << " q " << tree.q
                                    << " sigma " << sigma << " dt " << dt << " levels " << levels << " from "
                                    << first_exercise);
    const TreeValue value = forward_tree_value(tree), expected = whole_tree(tree);
    if (expected.price < 1e-290) continue;
    ASSERT_EQ(value.price, expected.price);
    ASSERT_EQ(value.delta, expected.delta);
    ASSERT_EQ(value.gamma, expected.gamma);
  }
}

// A tree of 2000 levels has two million nodes.
TEST(TreeNodes, MostNodesAreOutOfReach) {
  for (const int OptType : {0, 1}) {
    const ForwardTree tree = {100, 100, 0.05, 0.05, 0.3, OptType, 0, 1.0 / 2000, 2000, 0};
    const TreeReach reach = tree_reach(tree);
    int nodes = 0;
    for (int i = 0; i < tree.levels; ++i) nodes += reach.last(i) - reach.first(i) + 1;
    EXPECT_LT(nodes, 1000000) << OptType;
  }
}

}  // namespace
}  // namespace kestran
