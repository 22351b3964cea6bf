#include "models/black_scholes/forward_tree.h"

#include <emmintrin.h>

#include <limits>

#include "models/black_scholes/european.h"
#include "models/black_scholes/roll_back_kernel.h"
#include "models/black_scholes/tree_nodes.h"
#include "numerics/arrays.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// The prices of all levels: a centre for each, one array of ratios for all.
struct TreePrices {
  const ForwardTree& tree;
  double h;
  double *ratio, *centre;

  int middle() const { return (tree.levels + 4) / 2; }
  // How far node j of the last level lies above the middle one by price, in nodes.
  int height(int j) const { return (tree.OptType == 0 ? j : tree.levels + 3 - j) - middle(); }
  double log_centre(int i) const {
    return (tree.r - tree.q) * (tree.f + i * tree.dt) + (2 * middle() - i - 4) * h;
  }

  LevelPrices level(int i) const {
    // An earlier level lacks a call's highest prices, with which its nodes begin.
    return {centre[i], tree.OptType == 0 ? ratio : ratio + (tree.levels - 1 - i)};
  }
};

void fill_prices(const TreePrices& prices, int padded) {
  for (int j = 0; j < padded; j += 2) {
    const __m128d heights = _mm_set_pd(prices.height(j + 1), prices.height(j));
    _mm_storeu_pd(prices.ratio + j, exponential(heights * _mm_set1_pd(2.0 * prices.h)));
  }
  for (int i = 0; i < prices.tree.levels; i += 2) {
    const __m128d centres = exponential(_mm_set_pd(prices.log_centre(i + 1), prices.log_centre(i)));
    _mm_storeu_pd(prices.centre + i, _mm_set1_pd(prices.tree.S) * centres);
  }
}

// The values of the last level: European until expiry, or exercised.
void fill_last_level(const ForwardTree& tree, const TreePrices& prices, double* V) {
  const double K = tree.K, dt = tree.dt, r = tree.r, q = tree.q, sigma = tree.sigma, h = prices.h;
  const double sign = tree.sign();
  const LevelPrices level = prices.level(tree.levels - 1);
  const double centre_d1 = (natural_log(level.centre / K) + (r - q + sigma * sigma / 2.0) * dt) / h;
  const double Dq = exponential(-q * dt);
  const double Dr = exponential(-r * dt);
  for (int j = 0; j < tree.levels + 4; ++j) {
    const double price = level(j);
    const double d1 = sign * (centre_d1 + 2.0 * prices.height(j));
    const double d2 = d1 - sign * h;
    if (d1 < -25.0 && d2 < -25.0)  // where cnorm is exactly 0, and 1 above 25
      V[j] = 0.0;
    else if (d1 > 25.0 && d2 > 25.0)
      V[j] = sign * (Dq * price - Dr * K);
    else
      V[j] = bs_general(price, K, dt, r, q, sigma, tree.OptType, 0);
    if (V[j] < tree.intrinsic(price)) V[j] = tree.intrinsic(price);
  }
}

void roll_back([[maybe_unused]] bool four_lanes, const RolledBack& level, int first, int last_exercised,
               int last, double* V) {
#if !defined(__wasm__)
  if (four_lanes) return roll_back_avx2(level, first, last_exercised, last, V);
#endif
  roll_back_level<elementary::TwoLanes>(level, first, last_exercised, last, V);
}

// Results from the five nodes of the first level.
TreeValue value_now(const ForwardTree& tree, const double* V) {
  const double f = tree.f, sigma = tree.sigma, S = tree.S;
  const double y = 2.0 * tree.h();
  const auto at = [&](int height) { return V[tree.OptType == 0 ? 2 + height : 2 - height]; };
  const auto now = [&](int height) {
    const double value = at(height);
    if (f == 0.0) return value;
    const double up = at(height + 1), down = at(height - 1);
    const double curvature = (up - 2.0 * value + down) / (y * y) - (up - down) / (2.0 * y);
    return value + f * (sigma * sigma / 2.0 * curvature - tree.r * value);
  };
  const double below = now(-1);
  const double price = now(0);
  const double above = now(1);

  const double up_move = S * (exponential(y) - 1.0);
  const double down_move = S * (1.0 - exponential(-y));
  const double slope_up = (above - price) / up_move;
  const double slope_down = (price - below) / down_move;
  const double width = up_move + down_move;
  return {price, (down_move * slope_up + up_move * slope_down) / width,
          2.0 * (slope_up - slope_down) / width};
}

}  // namespace

TreeValue forward_tree_value(const ForwardTree& tree) {
  const int last_nodes = tree.levels + 4;
  const int padded = last_nodes + 3;  // pairs of nodes reach beyond the last one
  double* V = dvector(0, 3 * padded);
  if (!V) return {nan, nan, nan};
  const TreePrices prices = {tree, tree.h(), V + padded, V + 2 * padded};
  fill_prices(prices, padded);
  fill_last_level(tree, prices, V);
  for (int j = last_nodes; j < padded; ++j) V[j] = 0.0;

  const double sign = tree.sign();
  const double discount = exponential(-tree.r * tree.dt);
  const double inwards = discount / (1.0 + exponential(sign * prices.h));
  const double outwards = discount / (1.0 + exponential(-sign * prices.h));
  const bool four_lanes = lanes() == 4;
  RolledBack rolled_back = {inwards, outwards, 0.0, sign * tree.K, nullptr};
  WorkedNodes nodes(tree, prices.level(tree.levels - 1), V);
  for (int i = tree.levels - 2; i >= 0; --i) {
    const LevelPrices level = prices.level(i);
    nodes.step_back(i, level);
    rolled_back.centre = sign * level.centre;
    rolled_back.ratio = level.ratio;
    roll_back(four_lanes, rolled_back, nodes.first, nodes.first_kept - 1, nodes.last, V);
    nodes.leave_out_settled();
  }
  nodes.complete();
  const TreeValue value = value_now(tree, V);
  free_dvector(V, 0, 3 * padded);
  return value;
}

}  // namespace kestran
