#include "models/black_scholes/american_tree.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/black_scholes/american_result.h"
#include "models/black_scholes/european.h"
#include "models/black_scholes/forward_tree.h"
#include "models/bumps.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Keeps the prices of all nodes within the range of doubles.
constexpr double largest_deviation = 30.0;  // sigma sqrt(T)
constexpr double largest_spread = 600.0;    // sigma sqrt(T N), the logarithm of the tree's half width

}  // namespace

TreeResult american_tree(double S, double K, double T, double t0, double r, double q, double sigma,
                         int OptType, int N) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  const double intrinsic = positive_part(sign * (S - K));
  if (!(T > 0.0)) return {intrinsic, 0.0, 0.0, 0.0};
  sigma = floored_volatility(sigma);
  const double root_T = std::sqrt(T);
  if (sigma * root_T > largest_deviation) sigma = largest_deviation / root_T;

  N = std::clamp(N, 1, 5000);
  const double widest = largest_spread / (sigma * root_T);
  if (widest * widest < N) N = static_cast<int>(widest * widest);

  const bool american = t0 <= 0.0;
  const double share = american ? 1.0 : (T - t0) / T;  // of the time, with exercise
  if (std::isnan(share)) return {nan, nan, nan, nan};
  const auto european = [&](int RetType) { return bs_general(S, K, T, r, q, sigma, OptType, RetType); };
  if (share < 1.0 / 400.0) return {european(0), european(1), european(2), european(5)};
  const int n = american ? N : std::max(1, static_cast<int>(std::floor(N * share + 0.5)));

  const auto pass = [&](int steps) {
    const double dt = (american ? T : T - t0) / steps;
    const double before = american ? 0.0 : std::floor(t0 / dt + 1e-9);
    if (!(before <= 400.0 * 5000.0)) return TreeValue{nan, nan, nan};  // times too short to be divided
    const double f = american ? 0.0 : positive_part(t0 - before * dt);
    const int first_exercise = static_cast<int>(before);
    return forward_tree_value({S, K, r, q, sigma, OptType, f, dt, first_exercise + steps, first_exercise});
  };
  TreeValue value = pass(n);
  if (n >= 5) {
    const int m = n / 2;
    const TreeValue half = pass(m);
    const auto extrapolated = [&](double full_value, double half_value) {
      return (n * full_value - m * half_value) / (n - m);
    };
    value = {extrapolated(value.price, half.price), extrapolated(value.delta, half.delta),
             extrapolated(value.gamma, half.gamma)};
  }
  TreeResult result = {value.price, value.delta, value.gamma, 0.0};
  // The tree's error must not take the price below the European one. Only the price is lifted: its
  // derivatives would jump.
  const double european_price = european(0);
  if (result.price < european_price) result.price = european_price;
  result.theta = r * result.price - (r - q) * S * result.delta - sigma * sigma / 2.0 * S * S * result.gamma;

  const double margin = intrinsic > 0.0 ? 1e-10 * K : 0.0;
  if (american && result.price <= intrinsic + margin)
    return {intrinsic, intrinsic > 0.0 ? sign : 0.0, 0.0, 0.0};
  return result;
}

double american_binomial(double S, double K, double T, double r, double q, double sigma, int OptType,
                         int Nsteps, int RetType) {
  if (Nsteps < 1) return -99.0;
  if (RetType < 0 || RetType > 8) return 99.0;
  if (!(T > 0.0) && RetType != 0) return 0.0;
  if (T > 0.0 && (S < 0.0 || K < 0.0)) return nan;
  sigma = floored_volatility(sigma);

  const auto tree = [&](double years, double rate, double yield, double volatility) {
    return american_tree(S, K, years, 0.0, rate, yield, volatility, OptType, Nsteps);
  };
  const auto result = static_cast<EuropeanResult>(RetType);
  if (result == EuropeanResult::theta) return tree(T, r, q, sigma).theta;
  return american_result(tree, T, r, q, sigma, result);
}

}  // namespace kestran
