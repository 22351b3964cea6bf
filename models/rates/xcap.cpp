#include "models/rates/xcap.h"

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

// value[k] = the strip's value per unit of quantity at factor[k] = e^log_factor[k]; `nodes` is even.
void strip_values(const CapOption& option, const double* log_factor, const double* factor, int nodes,
                  double* value) {
  const BlackStrip strip{option.Price, option.IntRt, option.Vol, option.ExpDays,
                         option.Qty,   option.n,     option.T,   option.r};
  std::fill_n(value, nodes, 0.0);
  add_strip_values(strip, option.CfStrike, option.OptType < 3, 1.0, log_factor, factor, nodes, value);
  double Qsum = 0.0;
  for (int i = 0; i < option.n; ++i) Qsum += option.Qty[i];
  for (int k = 0; k < nodes; ++k) value[k] /= Qsum;
}

// Results 1, 2, 5 and 11 + k with the move h. `input` has room for the strip.
double bumped_array_result(const CapOption& option, int RetType, double h, double* input) {
  const int n = option.n;
  const double P0 = xcap_tree(option);
  CapOption moved = option;
  if (RetType == 5) {
    for (int i = 0; i < n; ++i) input[i] = option.ExpDays[i] - h;
    moved.ExpDays = input;
    moved.T -= h;
    return (xcap_tree(moved) - P0) / h;
  }
  moved.Price = input;
  if (RetType >= 11) {
    const int k = RetType - 11;
    std::copy(option.Price, option.Price + n, input);
    input[k] *= 1.001;
    return (xcap_tree(moved) - P0) / (option.Price[k] * 0.001);
  }
  for (int i = 0; i < n; ++i) input[i] = option.Price[i] + h;
  const double P1 = xcap_tree(moved);
  if (RetType == 1) return (P1 - P0) / h;
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
  double* log_factor = dvector(0, nodes - 1);
  double* factor = dvector(0, nodes - 1);
  double* value = dvector(0, nodes - 1);
  double price = not_a_number;
  if (log_factor && factor && value) {
    tree_factors(tree, N, log_factor, factor);
    strip_values(option, log_factor, factor, nodes, value);
    const double sign = option.OptType & 1 ? 1.0 : -1.0;
    for (int k = 0; k <= N; ++k) value[k] = positive_part(sign * (value[k] - option.CompStrike));
    price = binomial_mean(value, N, tree.p) * exponential(-option.r * option.T);
  }
  free_dvector(value, 0, nodes - 1);
  free_dvector(factor, 0, nodes - 1);
  free_dvector(log_factor, 0, nodes - 1);
  return price;
}

double xcap_greeks(const CapOption& option, int RetType) {
  CapOption moved = option;
  double h = 0.0;
  switch (RetType) {
    case 0:
      return xcap_tree(option);
    case 3:
      moved.StripVol *= 1.001;
      return (xcap_tree(moved) - xcap_tree(option)) / (option.StripVol * 0.001);
    case 4:
      if (option.r == 0.0) return 0.0;
      moved.r *= 1.001;
      moved.r_carry *= 1.001;
      return (xcap_tree(moved) - xcap_tree(option)) / (option.r * 0.001);
    case 1:
    case 2:
      for (int i = 0; i < option.n; ++i) h += 0.001 * option.Price[i];
      h /= option.n;
      break;
    case 5:
      if (option.T <= 1e-6) return 0.0;
      h = option.T > 0.001 ? 0.001 : 1e-6;
      break;
    default:
      if (RetType < 11 || RetType - 11 >= option.n) return 0.0;
  }

  double* input = dvector(0, option.n - 1);
  if (!input) return not_a_number;
  const double result = bumped_array_result(option, RetType, h, input);
  free_dvector(input, 0, option.n - 1);
  return result;
}

}  // namespace kestran
