#include "models/asian/compound_asian_payoff.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/asian/compound_asian_nodes.h"
#include "numerics/elementary.h"
#include "numerics/gauss_legendre.h"
#include "numerics/normal.h"
#include "numerics/root_bracketed.h"

namespace kestran {
namespace {

// The logarithm of the price at expiry, y deviations from its mean, less that of today's.
double log_growth(const CompoundAsianPayoff& payoff, double y) {
  return payoff.deviation * (y - payoff.deviation / 2.0);
}

double price_at(const CompoundAsianPayoff& payoff, double y) {
  return payoff.S0 * exponential(log_growth(payoff, y));
}

// What the fixings before expiry leave of the strike.
double strike_left(const CompoundAsianPayoff& payoff, double y, double z) {
  return payoff.strike - payoff.S0 * sum_given_expiry(payoff.before, log_growth(payoff, y), z);
}

// Points and what stands there; those that fill up the last lanes have nothing to say.
template <int count>
struct NodeBlock {
  static constexpr int room = (count + most_payoff_lanes - 1) / most_payoff_lanes * most_payoff_lanes;
  double y[room] = {}, price[room], strike[room], margin[room], bell[room];

  CompoundAsianNodes nodes(int used = count) { return {used, y, price, strike, margin, bell}; }
};

// The range of y in cells. Within one no function here turns round, so sign changes tell its roots.
constexpr int cells = 12;

struct Grid {
  double low, high;
  double at(int i) const { return low + (high - low) * i / cells; }
};

// Writes the points where f, known at the ends of the cells, changes sign, with an error of at most `error`,
// and gives their number.
template <class Function>
int sign_changes(const Grid& grid, const double at_ends[cells + 1], const Function& f, double error,
                 double found[cells]) {
  int count = 0;
  for (int i = 0; i < cells; ++i)
    if ((at_ends[i] > 0.0) != (at_ends[i + 1] > 0.0)) {
      const double x =
          root_bracketed(f, grid.at(i), grid.at(i + 1), at_ends[i], at_ends[i + 1], 0.0, error, 100).x;
      found[count++] = std::isnan(x) ? grid.at(i) : x;
    }
  return count;
}

// Where the average-price option is at the money at expiry its value bends, within a few widths.
struct Bend {
  double y, width;
};
constexpr double bend_reach = 8.0;

// The range of y, cut where panels must not straddle: at the exercise boundaries, about the bends, and where
// the fixings before expiry use up the strike.
struct Cuts {
  int edges = 0, bends = 0;
  double edge[2 + 4 * cells];
  Bend bend[cells];
};

Cuts cuts(const CompoundAsianPayoff& payoff, double z) {
  constexpr double reach = 8.0;                       // leaves out 1e-15 of the mass at either end
  const Grid grid{-reach, reach + payoff.deviation};  // a call's mass lies that much higher
  const auto left = [&](double y) { return strike_left(payoff, y, z); };
  const auto out_of_money = [&](double y) { return left(y) - payoff.ahead.count * price_at(payoff, y); };
  const auto margin = [&](double y) { return exercise_margin(payoff, price_at(payoff, y), left(y)); };
  NodeBlock<cells + 1> ends;
  for (int i = 0; i <= cells; ++i) ends.y[i] = grid.at(i);
  exercise_at_nodes(payoff, z, ends.nodes());
  double forward_margins[cells + 1];
  for (int i = 0; i <= cells; ++i) forward_margins[i] = ends.strike[i] - payoff.ahead.count * ends.price[i];

  // The payoff is 0 at an exercise boundary: what this error moves is its square. Without fixings ahead a
  // bend is as sharp; other edges may lie anywhere near.
  constexpr double sharp = 1e-8;
  constexpr double rough = 1e-3;
  Cuts cut;
  cut.edge[0] = grid.low;
  cut.edge[1] = grid.high;
  cut.edges = 2 + sign_changes(grid, ends.margin, margin, sharp, cut.edge + 2);
  // Near a strike of 0 the value is all but straight unless the fixings ahead are widely spread.
  constexpr double wide = 0.25;
  if (payoff.ahead.deviation > wide)
    cut.edges += sign_changes(grid, ends.strike, left, rough, cut.edge + cut.edges);
  double y[cells];
  cut.bends = sign_changes(grid, forward_margins, out_of_money, payoff.ahead.count > 0 ? rough : sharp, y);
  for (int i = 0; i < cut.bends; ++i) {
    constexpr double h = 1e-3;
    const double slope = (out_of_money(y[i] + h) - out_of_money(y[i] - h)) / (2.0 * h);
    const double spread = payoff.ahead.deviation * payoff.ahead.count * price_at(payoff, y[i]);
    cut.bend[i] = {y[i], std::fmin(spread / std::fabs(slope), grid.high - grid.low)};
    for (double side : {-bend_reach, bend_reach})
      cut.edge[cut.edges++] = std::clamp(y[i] + side * cut.bend[i].width, grid.low, grid.high);
  }
  std::sort(cut.edge, cut.edge + cut.edges);
  return cut;
}

}  // namespace

double exercise_margin(const CompoundAsianPayoff& payoff, double S, double strike) {
  const double value = payoff.discount * sum_option(payoff.ahead, S, strike, payoff.is_call);
  return payoff.is_call_on ? value - payoff.X : payoff.X - value;
}

double mean_payoff(const CompoundAsianPayoff& payoff, double z) {
  // Beyond, prices in the range of y overflow.
  constexpr double largest_deviation = 25.0;
  if (!(payoff.deviation > 0.0 && payoff.deviation <= largest_deviation))
    return std::numeric_limits<double>::quiet_NaN();
  constexpr double most_panels = 64.0;  // more than any range needs
  constexpr double widest_panel = 4.5;  // in deviations of the density, or widths of the bend nearby
  constexpr int panel_nodes = 18;
  const QuadratureRule rule = gauss_legendre(panel_nodes);
  NodeBlock<2 * panel_nodes> block;
  const auto margin = [&](double y) {
    return exercise_margin(payoff, price_at(payoff, y), strike_left(payoff, y, z));
  };
  const Cuts cut = cuts(payoff, z);
  double mean = 0.0;
  for (int i = 0; i + 1 < cut.edges; ++i) {
    const double left = cut.edge[i];
    const double right = cut.edge[i + 1];
    const double middle = (left + right) / 2.0;
    if (!(right > left) || margin(middle) <= 0.0) continue;
    double widest = widest_panel;
    for (int k = 0; k < cut.bends; ++k)
      if (std::fabs(middle - cut.bend[k].y) < bend_reach * cut.bend[k].width)
        widest = std::min(widest, widest_panel * cut.bend[k].width);
    const int panels = static_cast<int>(std::ceil(std::fmin((right - left) / widest, most_panels)));
    const double half = (right - left) / (2.0 * panels);
    // Two panels at a time, which fill all lanes.
    for (int first = 0; first < panels; first += 2) {
      const int used = std::min(panels - first, 2) * panel_nodes;
      for (int k = 0; k < used; ++k)
        block.y[k] = left + half * (2 * (first + k / panel_nodes) + 1 + rule.nodes[k % panel_nodes].x);
      exercise_at_nodes(payoff, z, block.nodes(used));
      for (int k = 0; k < used; ++k)
        mean += half * rule.nodes[k % panel_nodes].weight * over_root_2_pi * block.bell[k] *
                positive_part(block.margin[k]);
    }
  }
  return mean;
}

}  // namespace kestran
