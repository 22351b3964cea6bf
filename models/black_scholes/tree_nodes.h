// The nodes of an American option's tree that are worked: most of a level are exercised, out of reach or
// worth nothing, and are left out without moving the premium's last bit.
#pragma once

#include <algorithm>
#include <cmath>

#include "models/black_scholes/forward_tree.h"
#include "numerics/elementary.h"

namespace kestran {

/// The nodes of each level that bear on the value now: those within thirteen deviations of the price's path,
/// into the money also of the path towards the strike.
struct TreeReach {
  double outwards;         // probability of a move out of the money
  double tilt;             // nodes a level towards a call's higher prices, from which its premium comes
  double start_to_strike;  // nodes out of the money
  double growth;           // of the forward price, nodes a level out of the money
  double deviations_in, deviations_out;

  int first(int level) const {
    return within(level, (outwards - tilt) * level - width(deviations_in, level));
  }
  int last(int level) const { return within(level, 4.0 + outwards * level + width(deviations_out, level)); }
  // The last node in the money.
  int strike(int level) const { return within(level, (level + 4) / 2.0 + start_to_strike - growth * level); }

 private:
  static int within(int level, double node) {
    return static_cast<int>(std::min(std::max(0.0, node), level + 4.0));
  }
  static double width(double deviations, int level) {
    return deviations / 2.0 * std::sqrt(static_cast<double>(level)) + 9.0;
  }
};

/// Of a tree far in the money, with a price or strike not above 0, or with nodes too close to tell them from
/// the strike, all nodes.
TreeReach tree_reach(const ForwardTree& tree);

/// The worked nodes of one level after the other, the last level first.
struct WorkedNodes {
  int first, last;  // of the level
  int first_kept;   // from here on nodes are out of the money, or the level has no exercise

  /// Starts with the last level. `values` has the value of each of its nodes and stays the caller's; of an
  /// earlier level it holds those of the worked nodes.
  WorkedNodes(const ForwardTree& option, const LevelPrices& last_level, double* values)
      : first(0),
        last(option.levels + 3),
        first_kept(last + 1),
        tree(option),
        reach(tree_reach(option)),
        Dq(exponential(-option.q * option.dt)),
        Dr(exponential(-option.r * option.dt)),
        prices(last_level),
        V(values) {
    leave_out_settled();
  }

  /// Turns to level i, the one before; the values that it follows from are complete then.
  void step_back(int i, LevelPrices level) {
    const bool exercise = i >= tree.first_exercise;
    const int later_first = first;
    // Where both nodes that follow a node are exercised and it stays so, which is linear in the price, the
    // node is. Said to be likely, so that the processor goes on before it has the prices.
    exercised = exercise ? std::max(-1, exercised - 1) : -1;
    if (__builtin_expect(exercised >= 0 && !stays_exercised(level(0)), 0)) exercised = -1;
    while (__builtin_expect(exercised >= 0 && !stays_exercised(level(exercised)), 0)) --exercised;

    // Up to the strike exercise gives worth to nodes whose followers have none.
    const int strike = exercise ? reach.strike(i) + 1 : -1;
    first = std::max(exercised + 1, reach.first(i));
    last = std::min(std::max(last, strike), reach.last(i));
    first_kept = first + std::max(0, (std::min(last, strike) - first + 2) / 2 * 2);

    fill_exercised(first, later_first);
    prices = level;
  }

  /// Once the level is rolled back, leaves out nodes at its ends that are exercised for good, or worth
  /// nothing.
  void leave_out_settled() {
    for (int j = exercised + 1; j >= first && j < first_kept && j <= last; ++j) {
      if (V[j] != tree.intrinsic(prices(j)) || !stays_exercised(prices(j))) break;
      exercised = j;
    }
    for (; last > first && std::fabs(V[last]) < negligible; --last) V[last] = 0.0;
  }

  /// Completes the values of the first level.
  void complete() { fill_exercised(0, first); }

 private:
  // Values of this size at the end of a level count as 0: they are slow to work with and lost in any premium
  // above 1e-290.
  static constexpr double negligible = 1e-307;

  const ForwardTree& tree;
  const TreeReach reach;
  const double Dq, Dr;  // a step's yield and interest, as factors
  LevelPrices prices;   // of the level
  double* const V;
  int exercised = -1;  // nodes 0 .. exercised are

  // Whether exercise is worth more than to wait a step and exercise then, beyond rounding.
  bool stays_exercised(double price) const {
    return tree.sign() * (price * (1.0 - Dq) - tree.K * (1.0 - Dr)) > 1e-12 * (price + tree.K);
  }
  // What is left out deep in the money is exercised, or out of reach and anything that is bounded will do.
  void fill_exercised(int from, int to) {
    for (int j = from; j < to; ++j) V[j] = tree.intrinsic(prices(j));
  }
};

}  // namespace kestran
