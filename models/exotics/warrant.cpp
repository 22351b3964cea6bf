#include "models/exotics/warrant.h"

#include <algorithm>
#include <cmath>

#include "models/black_scholes/american_tree.h"
#include "models/black_scholes/early_exercise.h"
#include "models/black_scholes/european.h"
#include "models/bumps.h"
#include "numerics/elementary.h"

namespace kestran {

namespace {

// The results first to last, which are numbers of results, into `out`.
void work_out(const Warrant& warrant, int first, int last, double* out) {
  const double S = warrant.S, K = warrant.K, r = warrant.r, q = warrant.q, tv = warrant.tv, T = warrant.T;
  const double Nwar = warrant.Nwar, Nshr = warrant.Nshr;
  const int WarType = warrant.WarType;
  const auto fill = [&](double result) { std::fill_n(out, last - first + 1, result); };
  const double sign = WarType == 0 ? -1.0 : 1.0;
  const double m = Nwar / Nshr;
  const double g = 1.0 + sign * m;
  if (S <= 0.0 || K <= 0.0 || Nshr <= 0.0 || Nwar < 0.0 || g <= 0.0) return fill(-99.0);
  if (!(T > 0.0)) {
    fill(0.0);
    if (first == 0) *out = positive_part(sign * (S - K));
    return;
  }
  const double sigma = floored_volatility(warrant.sigma);

  // One method for all prices: between a tree and a formula, a small step in the rate would drown in their
  // difference.
  const bool european = early_exercise_rule(r, q, WarType) == EarlyExercise::never;
  const auto bermudan = [&](double x, double rate, double yield, double volatility) -> TreeResult {
    if (!european) return american_tree(x, K, T, tv, rate, yield, volatility, WarType, 400);
    const auto result = [&](EuropeanResult i) {
      return bs_general(x, K, T, rate, yield, volatility, WarType, static_cast<int>(i));
    };
    return {result(EuropeanResult::premium), result(EuropeanResult::delta), result(EuropeanResult::gamma),
            result(EuropeanResult::theta)};
  };

  TreeResult option = bermudan(S, r, q, sigma);
  double W = option.price;
  double x = S;
  if (m != 0.0) {
    double lo = 0.0;
    double hi = sign > 0.0 ? option.price : option.price / g;
    W = std::min(option.price / g, hi);
    for (int step = 0; step < 60; ++step) {
      x = S + m * W;
      option = bermudan(x, r, q, sigma);
      const double excess = g * W - option.price;
      if (std::isnan(excess)) return fill(excess);
      const double newton = W - excess / (g - m * option.delta);
      if (std::fabs(excess) <= 1e-9 * K) {
        W = newton;
        break;
      }
      (excess > 0.0 ? hi : lo) = W;
      if (hi - lo <= 1e-12 * K) break;
      W = newton > lo && newton < hi ? newton : (lo + hi) / 2.0;
    }
  }

  const double d = g - m * option.delta;
  const double h = rate_step(r);
  const auto result = [&](int which) -> double {
    switch (static_cast<EuropeanResult>(which)) {
      case EuropeanResult::premium:
        return W;
      case EuropeanResult::delta:
        return option.delta / d;
      case EuropeanResult::gamma:
        return option.gamma * (g / d) * (g / d) / d;
      case EuropeanResult::vega:
        return (bermudan(x, r, q, bump_up * sigma).price - option.price) / (bump * sigma) / d;
      case EuropeanResult::carry_rho:
        return (bermudan(x, r + h, q + h, sigma).price - option.price) / h / d;
      default:
        return option.theta / d;
    }
  };
  for (int i = first; i <= last; ++i) out[i - first] = result(i);
}

}  // namespace

double warrant_value(const Warrant& warrant, int RetType) {
  if (RetType < 0 || RetType >= warrant_results) return 99.0;
  double result;
  work_out(warrant, RetType, RetType, &result);
  return result;
}

void warrant_values(const Warrant& warrant, double results[warrant_results]) {
  work_out(warrant, 0, warrant_results - 1, results);
}

}  // namespace kestran
