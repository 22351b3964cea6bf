#include "models/rates/xcol.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/rates/black_strip.h"
#include "models/trees/log_tree.h"
#include "numerics/arrays.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

int steps(const CollarOption& option) { return std::clamp(option.N, 1, xcol_most_steps); }

// value[k] = the collar's value at factor[k] = e^log_factor[k], for an even number of nodes. `floor_vol` has
// room for the strip.
void collar_values(const CollarOption& option, const double* log_factor, const double* factor, int nodes,
                   double* floor_vol, double* value) {
  for (int i = 0; i < option.n; ++i) {
    const double vol = option.Vol[i] + option.VolSpread;
    floor_vol[i] = vol < 1e-5 ? 1e-5 : vol;
  }
  BlackStrip strip{option.Price, option.IntRt, option.Vol, option.ExpDays,
                   nullptr,      option.n,     option.T,   option.r};
  std::fill_n(value, nodes, 0.0);
  add_strip_values(strip, option.Cap, true, 1.0, log_factor, factor, nodes, value);
  strip.Vol = floor_vol;
  add_strip_values(strip, option.Floor, false, -1.0, log_factor, factor, nodes, value);
  for (int k = 0; k < nodes; ++k) value[k] /= option.n;
}

double mean_price(const CollarOption& option) {
  double sum = 0.0;
  for (int i = 0; i < option.n; ++i) sum += option.Price[i];
  return sum / option.n;
}

// The change of premium per unit of `step` when one of the option's own terms has moved by it.
double change(const CollarOption& option, const CollarOption& moved, double step) {
  return (xcol_tree(moved) - xcol_tree(option)) / step;
}

// The change of premium when h is added to each of the n inputs; `moved` reads them from `input`.
double change_of_all(const CollarOption& option, const CollarOption& moved, const double* unmoved, double h,
                     double* input) {
  for (int i = 0; i < option.n; ++i) input[i] = unmoved[i] + h;
  return xcol_tree(moved) - xcol_tree(option);
}

// Results that move an array. `input` has room for the strip.
double array_result(const CollarOption& option, int RetType, double* input) {
  CollarOption moved = option;
  double h = 0.0001;
  switch (RetType) {
    case 1:
      moved.Price = input;
      h = 0.001 * mean_price(option);
      return change_of_all(option, moved, option.Price, h, input) / h;
    case 2: {
      moved.Price = input;
      const LogTree tree = log_tree(option.SwapVol, -0.5, option.T, steps(option));
      h = mean_price(option) * (exponential(2.0 * tree.dx) - 1.0);
      const double up = change_of_all(option, moved, option.Price, h, input);
      return (up + change_of_all(option, moved, option.Price, -h, input)) / (h * h);
    }
    case 4:
      moved.IntRt = input;
      moved.r += h;
      return change_of_all(option, moved, option.IntRt, h, input) / h;
    case 5:
      moved.ExpDays = input;
      h = option.T > 0.001 ? 0.001 : 1e-6;
      moved.T -= h;
      return change_of_all(option, moved, option.ExpDays, -h, input) / h;
    case 6:
      moved.Vol = input;
      return change_of_all(option, moved, option.Vol, h, input) / h;
    default: {
      moved.Price = input;
      const int k = RetType - 11;
      std::copy(option.Price, option.Price + option.n, input);
      input[k] *= 1.001;
      return change(option, moved, 0.001 * option.Price[k]);
    }
  }
}

}  // namespace

double collar_strip_value(double m, const CollarOption& option) {
  double* floor_vol = option.n < 1 ? nullptr : dvector(0, option.n - 1);
  if (!floor_vol) return not_a_number;
  const double log_factor[2] = {natural_log(m), natural_log(m)};
  const double factor[2] = {m, m};
  double value[2];
  collar_values(option, log_factor, factor, 2, floor_vol, value);
  free_dvector(floor_vol, 0, option.n - 1);
  return value[0];
}

double xcol_tree(const CollarOption& option) {
  const int N = steps(option);
  const LogTree tree = log_tree(option.SwapVol, -0.5, option.T, N);
  if (option.n < 1 || std::isnan(tree.p)) return not_a_number;

  // Four arrays by node and one by period, in one block.
  const int nodes = padded_nodes(N);
  double* work = dvector(0, 4 * nodes + option.n - 1);
  if (!work) return not_a_number;
  double* log_factor = work;
  double* factor = log_factor + nodes;
  double* margin = factor + nodes;
  double* payoff = margin + nodes;
  tree_factors(tree, N, log_factor, factor);
  collar_values(option, log_factor, factor, nodes, payoff + nodes, margin);
  for (int k = 0; k <= N; ++k) {
    if (!(option.OptType & 1)) margin[k] = -margin[k];
    payoff[k] = positive_part(margin[k]);
  }
  kink_correct(margin, payoff, N);
  const double price = binomial_mean(payoff, N, tree.p) * exponential(-option.r * option.T);
  free_dvector(work, 0, 4 * nodes + option.n - 1);
  return price;
}

double xcol_greeks(const CollarOption& option, int RetType) {
  CollarOption moved = option;
  switch (RetType) {
    case 0:
      return xcol_tree(option);
    case 3:
      moved.SwapVol *= 1.001;
      return change(option, moved, 0.001 * option.SwapVol);
    case 7:
      moved.VolSpread += 0.0001;
      return change(option, moved, 0.0001);
    case 8:
      moved.Cap *= 1.001;
      return option.Cap == 0.0 ? 0.0 : change(option, moved, 0.001 * option.Cap);
    case 9:
      moved.Floor *= 1.001;
      return option.Floor == 0.0 ? 0.0 : change(option, moved, 0.001 * option.Floor);
    case 10:
      return collar_strip_value(1.0, option);
    case 5:
      if (option.T <= 1e-6) return 0.0;
      break;
    default:
      if (RetType < 0 || RetType - 11 >= option.n) return 0.0;
  }
  double* input = option.n < 1 ? nullptr : dvector(0, option.n - 1);
  if (!input) return not_a_number;
  const double result = array_result(option, RetType, input);
  free_dvector(input, 0, option.n - 1);
  return result;
}

}  // namespace kestran
