#include "models/strips/ostripsprd.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/bumps.h"
#include "models/calendar.h"
#include "models/exotics/spread_kernel.h"
#include "models/strips/strip_days.h"
#include "numerics/elementary.h"
#include "numerics/gauss_hermite.h"

namespace kestran {
namespace {

// The results in the order of their numbers.
enum class Result : int {
  premium,
  delta_1,
  delta_2,
  gamma_1,
  gamma_2,
  vega_1,
  vega_2,
  by_correlation,
  rho,
  theta,
  delta_1_by_time,
  delta_2_by_time,
  cross_gamma,
  daily_vega_1,
  daily_vega_2,
  by_daily_correlation,
  by_basis,
  by_pct,
};

constexpr int nodes = 25;

// Both prices on the setting day and the probability of the pair.
struct PricePair {
  double S1, S2, weight;
};

void prices_at_nodes(const SpreadStrip& strip, double set_time, PricePair pair[nodes]) {
  const double v1 = strip.sigma1_m * std::sqrt(set_time);
  const double v2 = strip.sigma2_m * std::sqrt(set_time);
  const double alone = std::sqrt(positive_part(1.0 - strip.rho_m * strip.rho_m));
  for (int i = 0; i < nodes; ++i) {
    const WeightedNode& z1 = gauss_hermite_5[i / 5];
    const WeightedNode& z2 = gauss_hermite_5[i % 5];
    const double y = strip.rho_m * z1.node + alone * z2.node;
    pair[i].S1 = strip.F1 * exponential(v1 * z1.node - v1 * v1 / 2.0);
    pair[i].S2 = strip.F2 * exponential(v2 * y - v2 * v2 / 2.0);
    pair[i].weight = z1.weight * z2.weight;
  }
}

double intrinsic(double F1, double F2, double K, double D, int OptType) {
  return D * positive_part(OptType == 0 ? K - (F1 - F2) : F1 - F2 - K);
}

// Value of an option with a fixed strike when the rates of variance before and after the setting day last for
// the given years.
double fixed_strike_value(const SpreadStrip& strip, double K, double until_set, double after, double D) {
  const double w1 = strip.sigma1_m * strip.sigma1_m * until_set + strip.sigma1_d * strip.sigma1_d * after;
  const double w2 = strip.sigma2_m * strip.sigma2_m * until_set + strip.sigma2_d * strip.sigma2_d * after;
  const double w12 = strip.rho_m * strip.sigma1_m * strip.sigma2_m * until_set +
                     strip.rho_d * strip.sigma1_d * strip.sigma2_d * after;
  double out[3];
  return spread_kernel(strip.F1, strip.F2, K, std::sqrt(w1), std::sqrt(w2), w12 / std::sqrt(w1 * w2), D,
                       strip.OptType, out);
}

// Value of an option whose strike is set from one of the pairs of prices and which has `after` years left
// then, as far as the `count` pairs go.
double forward_start_value(const SpreadStrip& strip, const PricePair* pair, int count, double after,
                           double D) {
  const double v1 = strip.sigma1_d * std::sqrt(after);
  const double v2 = strip.sigma2_d * std::sqrt(after);
  double mean = 0.0;
  for (int i = 0; i < count; ++i) {
    const double K = strip.pct * (pair[i].S1 - pair[i].S2) + strip.basis;
    double out[3];
    mean +=
        pair[i].weight * spread_kernel(pair[i].S1, pair[i].S2, K, v1, v2, strip.rho_d, D, strip.OptType, out);
  }
  return mean;
}

int forward_start_layout(const SpreadStrip& strip, const PricePair& pair, double after) {
  const double root = std::sqrt(after);
  const double K = strip.pct * (pair.S1 - pair.S2) + strip.basis;
  return spread_layout(pair.S1, pair.S2, K, strip.sigma1_d * root, strip.sigma2_d * root, strip.rho_d);
}

// Value of an option that expires, in t years, by the day its strike is set: it pays by (1 - pct) times the
// difference of the prices less the basis.
double value_before_setting(const SpreadStrip& strip, double t, double D) {
  const double share = 1.0 - strip.pct;
  if (share == 0.0) return intrinsic(0.0, 0.0, strip.basis, D, strip.OptType);
  const double v1 = strip.sigma1_m * std::sqrt(t);
  const double v2 = strip.sigma2_m * std::sqrt(t);
  const int opposite = strip.OptType == 0 ? 1 : 0;
  double out[3];
  return spread_kernel(std::fabs(share) * strip.F1, std::fabs(share) * strip.F2,
                       share < 0.0 ? -strip.basis : strip.basis, v1, v2, strip.rho_m, D,
                       share < 0.0 ? opposite : strip.OptType, out);
}

int layout_before_setting(const SpreadStrip& strip, double t) {
  const double share = 1.0 - strip.pct;
  if (share == 0.0) return 0;
  return spread_layout(std::fabs(share) * strip.F1, std::fabs(share) * strip.F2,
                       share < 0.0 ? -strip.basis : strip.basis, strip.sigma1_m * std::sqrt(t),
                       strip.sigma2_m * std::sqrt(t), strip.rho_m);
}

double premium(const SpreadStrip& strip, int age = 0) {
  double out[2];
  ostripsprd_price(strip, age, out);
  return out[0];
}

double delta(const SpreadStrip& strip, double SpreadStrip::*price, int age) {
  SpreadStrip moved = strip;
  moved.*price *= bump_up;
  return (premium(moved, age) - premium(strip, age)) / (bump * strip.*price);
}

double gamma(const SpreadStrip& strip, double SpreadStrip::*price) {
  SpreadStrip up = strip;
  SpreadStrip down = strip;
  up.*price *= bump_up;
  down.*price *= bump_down;
  const double step = bump * strip.*price;
  return (premium(up) + premium(down) - 2.0 * premium(strip)) / (step * step);
}

double cross_gamma(const SpreadStrip& strip) {
  const auto moved = [&](double factor1, double factor2) {
    SpreadStrip both = strip;
    both.F1 *= factor1;
    both.F2 *= factor2;
    return premium(both);
  };
  return (moved(bump_up, bump_up) + moved(bump_down, bump_down) - moved(bump_up, bump_down) -
          moved(bump_down, bump_up)) /
         (4.0 * (bump * strip.F1) * (bump * strip.F2));
}

double change_of_delta(const SpreadStrip& strip, double SpreadStrip::*price) {
  return (delta(strip, price, 1) - delta(strip, price, 0)) * days_per_year;
}

}  // namespace

namespace {

void price(const SpreadStrip& given, int age, double out[2]) {
  SpreadStrip strip = given;
  strip.sigma1_m = floored_volatility(strip.sigma1_m);
  strip.sigma1_d = floored_volatility(strip.sigma1_d);
  strip.sigma2_m = floored_volatility(strip.sigma2_m);
  strip.sigma2_d = floored_volatility(strip.sigma2_d);
  strip.rho_m = std::clamp(strip.rho_m, -1.0, 1.0);
  strip.rho_d = std::clamp(strip.rho_d, -1.0, 1.0);
  const bool forward_start = strip.FwdStFlag != 0 && strip.NowToSet > 0.0;
  const double set_days = positive_part(strip.NowToSet - age);
  const double set_time = set_days * one_day;
  const bool still_to_set = forward_start && set_time > 0.0;
  const double fixed_strike = strip.pct * (forward_start ? strip.F1 - strip.F2 : strip.K) + strip.basis;

  PricePair pair[nodes];
  if (still_to_set) prices_at_nodes(strip, set_time, pair);
  const auto value = [&](double t, double D) {
    const double until_set = std::min(set_time, t);
    const double after = t - until_set;
    if (t > 0.0 && (strip.F1 < 0.0 || strip.F2 < 0.0)) return std::numeric_limits<double>::quiet_NaN();
    if (t <= 0.0) return intrinsic(strip.F1, strip.F2, fixed_strike, D, strip.OptType);
    if (still_to_set) return value_before_setting(strip, t, D);
    return fixed_strike_value(strip, fixed_strike, until_set, after, D);
  };
  const auto layout = [&](const PricePair& one) {
    return [&](double t) { return forward_start_layout(strip, one, t - set_time); };
  };
  const auto add_after_setting = [&](double first, double last, DaySums& sums) {
    // Pairs whose layout stays are interpolated together, the others each from change to change.
    const double start = first_smooth_day(first, set_days);
    PricePair alike[nodes], apart[nodes];
    const auto stays = [&](const PricePair& one) {
      return last - start <= 18.0 || last_day_alike(start, last, layout(one)) == last;
    };
    const auto [end_alike, end_apart] = std::partition_copy(pair, pair + nodes, alike, apart, stays);
    const auto value_of = [&](const PricePair* some, int count) {
      return [&, some, count](double t, double D) {
        if (strip.F1 < 0.0 || strip.F2 < 0.0) return std::numeric_limits<double>::quiet_NaN();
        return forward_start_value(strip, some, count, t - set_time, D);
      };
    };
    const int together = static_cast<int>(end_alike - alike);
    add_days_by_layout(
        first, last, set_days, strip.r, value_of(alike, together), [](double) { return 0; }, sums);
    for (const PricePair* one = apart; one < end_apart; ++one)
      add_days_by_layout(first, last, set_days, strip.r, value_of(one, 1), layout(*one), sums);
  };
  const auto add = [&](double first, double last, DaySums& sums) {
    if (!still_to_set) return add_days(first, last, strip.r, value, sums);
    const double before = std::min(last, std::floor(set_days));
    const auto layout_before = [&](double t) { return layout_before_setting(strip, t); };
    add_days_by_layout(first, before, 0.0, strip.r, value, layout_before, sums);
    add_after_setting(std::max(first, before + 1.0), last, sums);
  };
  average_over_days(strip.B, strip.E, age, ostripsprd_most_days, add, out);
}

}  // namespace

void ostripsprd_price(const SpreadStrip& strip, int age, double out[2]) {
  const AgedSpreadStrip aged = {static_cast<double>(age), strip};
  const std::array<double, 2> values = repriced(strip.kept, aged, [age](const AgedSpreadStrip& terms) {
    std::array<double, 2> priced;
    price(terms.strip, age, priced.data());
    return priced;
  });
  out[0] = values[0];
  out[1] = values[1];
}

double ostripsprd_greek(const SpreadStrip& strip, int RetType) {
  SpreadStrip moved = strip;
  const auto change = [&](double step) { return (premium(moved) - premium(strip)) / step; };
  const double h = 0.0001;
  double step = 0.001;
  switch (Result{RetType}) {
    case Result::premium:
      return premium(strip);
    case Result::delta_1:
      return delta(strip, &SpreadStrip::F1, 0);
    case Result::delta_2:
      return delta(strip, &SpreadStrip::F2, 0);
    case Result::gamma_1:
      return gamma(strip, &SpreadStrip::F1);
    case Result::gamma_2:
      return gamma(strip, &SpreadStrip::F2);
    case Result::vega_1:
      moved.sigma1_m += h;
      moved.sigma1_d += h;
      return change(h);
    case Result::vega_2:
      moved.sigma2_m += h;
      moved.sigma2_d += h;
      return change(h);
    case Result::by_correlation:
      if (strip.rho_m > 0.0 || strip.rho_d > 0.0) step = -step;
      moved.rho_m += step;
      moved.rho_d += step;
      return change(step);
    case Result::rho: {
      double out[2];
      ostripsprd_price(strip, 0, out);
      return -out[1];
    }
    case Result::theta:
      return (premium(strip, 1) - premium(strip)) * days_per_year;
    case Result::delta_1_by_time:
      return change_of_delta(strip, &SpreadStrip::F1);
    case Result::delta_2_by_time:
      return change_of_delta(strip, &SpreadStrip::F2);
    case Result::cross_gamma:
      return cross_gamma(strip);
    case Result::daily_vega_1:
      moved.sigma1_d += h;
      return change(h);
    case Result::daily_vega_2:
      moved.sigma2_d += h;
      return change(h);
    case Result::by_daily_correlation:
      if (strip.rho_d > 0.0) step = -step;
      moved.rho_d += step;
      return change(step);
    case Result::by_basis:
      step *= (strip.F1 + strip.F2) / 2.0;
      moved.basis += step;
      return change(step);
    case Result::by_pct:
      moved.pct += step;
      return change(step);
    default:
      return 99.0;
  }
}

}  // namespace kestran
