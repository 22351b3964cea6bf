#include "models/rates/xcap.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/bumps.h"
#include "models/rates/black_strip.h"
#include "models/trees/log_tree.h"
#include "numerics/arrays.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

BlackStrip strip_of(const CapOption& option) {
  return {option.Price, option.IntRt, option.Vol, option.ExpDays, option.Qty, option.n, option.T, option.r};
}

double total_quantity(const CapOption& option) {
  double Qsum = 0.0;
  for (int i = 0; i < option.n; ++i) Qsum += option.Qty[i];
  return Qsum;
}

// value[k] = the strip's value per unit of quantity at factor[k] = e^log_factor[k]; `nodes` is even.
void strip_values(const CapOption& option, const double* log_factor, const double* factor, int nodes,
                  double* value) {
  std::fill_n(value, nodes, 0.0);
  add_strip_values(strip_of(option), option.CfStrike, option.OptType < 3, 1.0, log_factor, factor, nodes,
                   value);
  const double Qsum = total_quantity(option);
  for (int k = 0; k < nodes; ++k) value[k] /= Qsum;
}

// No payoff is above this times 1 + factor: no caplet is worth more than its forward, no floorlet more than
// its strike.
double largest_payoff(const CapOption& option) {
  double amount = 0.0;
  for (int i = 0; i < option.n; ++i)
    amount += std::fabs(option.Qty[i]) * forward_discount(strip_of(option), i) *
              std::max(std::fabs(option.Price[i]), std::fabs(option.CfStrike));
  return amount / std::fabs(total_quantity(option)) + std::fabs(option.CompStrike);
}

// The last level of the tree, node k at index k. Some nodes lie beyond the top, to make an even number.
struct LastLevel {
  double *log_factor, *factor, *weight, *payoff;
  int likeliest;
};

// The payoffs at the nodes first .. end - 1; both even.
void fill_payoffs(const CapOption& option, int first, int end, const LastLevel& level) {
  strip_values(option, level.log_factor + first, level.factor + first, end - first, level.payoff + first);
  const double sign = option.OptType & 1 ? 1.0 : -1.0;
  for (int k = first; k < end; ++k)
    level.payoff[k] = positive_part(sign * (level.payoff[k] - option.CompStrike));
}

// The mean payoff. Nodes so unlikely that the payoff, which grows with the factor at most, cannot move the
// last bit of the mean are left out, unless the mean turns out so small that they can.
double mean_payoff(const CapOption& option, const LastLevel& level) {
  constexpr double unlikely = 0x1p-70, last_bit = 0x1p-56;
  const int N = option.N;
  const auto left_out = [&](int k) { return level.weight[k] * (1.0 + level.factor[k]) < unlikely; };
  int first = 0, last = N;
  while (first < level.likeliest && left_out(first)) ++first;
  while (last > level.likeliest && left_out(last)) --last;
  const int even_first = first / 2 * 2, even_end = padded_nodes(last);
  fill_payoffs(option, even_first, even_end, level);
  const double mean = binomial_mean(level.payoff, level.weight, first, level.likeliest, last);
  if (last - first == N || unlikely * largest_payoff(option) < last_bit * mean) return mean;
  fill_payoffs(option, 0, even_first, level);
  fill_payoffs(option, even_end, padded_nodes(N), level);
  return binomial_mean(level.payoff, level.weight, 0, level.likeliest, N);
}

double unmoved_price(const CapOption& option) {
  return kept_price(option.kept, 0, [&] { return xcap_tree(option); });
}

// Results 1, 2, 5 and 11 + k with the move h. `input` has room for the strip.
double bumped_array_result(const CapOption& option, CapResult result, int period, double h, double* input) {
  const int n = option.n;
  const double P0 = unmoved_price(option);
  CapOption moved = option;
  if (result == CapResult::theta) {
    for (int i = 0; i < n; ++i) input[i] = option.ExpDays[i] - h;
    moved.ExpDays = input;
    moved.T -= h;
    return (xcap_tree(moved) - P0) / h;
  }
  moved.Price = input;
  if (result == CapResult::first_period_delta) {
    std::copy(option.Price, option.Price + n, input);
    input[period] *= bump_up;
    return (xcap_tree(moved) - P0) / (option.Price[period] * bump);
  }
  for (int i = 0; i < n; ++i) input[i] = option.Price[i] + h;
  const double P1 = kept_price(option.kept, 1, [&] { return xcap_tree(moved); });
  if (result == CapResult::delta) return (P1 - P0) / h;
  for (int i = 0; i < n; ++i) input[i] = option.Price[i] - h;
  return (P1 + xcap_tree(moved) - 2.0 * P0) / (h * h);
}

}  // namespace

double capfloor_strip_value(double m, const double* Price, const double* IntRt, const double* Vol,
                            const double* ExpDays, const double* Qty, double T, double CfStrike, double r,
                            int n, bool is_cap) {
  CapOption strip;
  strip.Price = Price;
  strip.IntRt = IntRt;
  strip.Vol = Vol;
  strip.ExpDays = ExpDays;
  strip.Qty = Qty;
  strip.n = n;
  strip.T = T;
  strip.CfStrike = CfStrike;
  strip.r = r;
  strip.OptType = is_cap ? 1 : 3;
  const double log_factor[2] = {natural_log(m), natural_log(m)};
  const double factor[2] = {m, m};
  double value[2];
  strip_values(strip, log_factor, factor, 2, value);
  return value[0];
}

double xcap_tree(const CapOption& option) {
  const int N = option.N;
  if (N < 1 || N > xcap_most_steps) return not_a_number;
  const double nu = (option.r - option.r_carry) / (option.StripVol * option.StripVol) - 0.5;
  const LogTree tree = log_tree(option.StripVol, nu, option.T, N);
  if (std::isnan(tree.p)) return not_a_number;

  const int nodes = padded_nodes(N);
  double* const block = dvector(0, 4 * nodes - 1);
  if (!block) return not_a_number;
  LastLevel level = {block, block + nodes, block + 2 * nodes, block + 3 * nodes, 0};
  tree_factors(tree, N, level.log_factor, level.factor);
  level.likeliest = binomial_weights(N, tree.p, level.weight);
  const double price = mean_payoff(option, level) * exponential(-option.r * option.T);
  free_dvector(block, 0, 4 * nodes - 1);
  return price;
}

double xcap_greeks(const CapOption& option, int RetType) {
  CapOption moved = option;
  auto result = static_cast<CapResult>(RetType);
  constexpr int first_period = static_cast<int>(CapResult::first_period_delta);
  int period = 0;
  double h = 0.0;
  switch (result) {
    case CapResult::premium:
      return unmoved_price(option);
    case CapResult::vega:
      moved.StripVol *= bump_up;
      return (xcap_tree(moved) - unmoved_price(option)) / (option.StripVol * bump);
    case CapResult::rho:
      if (option.r == 0.0) return 0.0;
      moved.r *= bump_up;
      moved.r_carry *= bump_up;
      return (xcap_tree(moved) - unmoved_price(option)) / (option.r * bump);
    case CapResult::delta:
    case CapResult::gamma:
      for (int i = 0; i < option.n; ++i) h += bump * option.Price[i];
      h /= option.n;
      break;
    case CapResult::theta:
      if (option.T <= 1e-6) return 0.0;
      h = option.T > 0.001 ? 0.001 : 1e-6;
      break;
    default:
      if (RetType < first_period || RetType - first_period >= option.n) return 0.0;
      period = RetType - first_period;
      result = CapResult::first_period_delta;
  }

  double* input = dvector(0, option.n - 1);
  if (!input) return not_a_number;
  const double value = bumped_array_result(option, result, period, h, input);
  free_dvector(input, 0, option.n - 1);
  return value;
}

}  // namespace kestran
