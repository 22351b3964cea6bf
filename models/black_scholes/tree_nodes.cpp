#include "models/black_scholes/tree_nodes.h"

#include <algorithm>
#include <cmath>

#include "numerics/elementary.h"

namespace kestran {
namespace {

constexpr double least_h = 1e-9;  // of a tree whose nodes can be told from the strike
constexpr double endless = 1e9;   // deviations or nodes, more than any level has

}  // namespace

TreeReach tree_reach(const ForwardTree& tree) {
  const double h = tree.h();
  if (!(tree.S > 0.0 && tree.K > 0.0 && h > least_h)) return {0.5, 0.0, endless, 0.0, endless, endless};

  const double sign = tree.sign();
  const double M = tree.levels;
  const double growth = sign * (tree.r - tree.q);  // into the money
  const double to_strike = sign * natural_log(tree.K / tree.S) - growth * tree.f;
  const double deviations = (to_strike - growth * M * tree.dt) / (h * std::sqrt(M));
  // Far in the money all values lie on one line, along which roundings travel any distance.
  const double least = deviations < -6.0 ? endless : 13.0;
  const double tilt = tree.OptType == 0 ? 0.0 : h / 2.0;
  const double nodes_to_strike = -to_strike / (2.0 * h);
  const double nodes_growth = -growth * tree.dt / (2.0 * h);
  const double outwards = 1.0 / (1.0 + exponential(-sign * h));
  return {outwards, tilt, nodes_to_strike, nodes_growth, least + std::max(0.0, deviations), least};
}

}  // namespace kestran
