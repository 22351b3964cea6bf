#include "models/strips/ostrip.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/bumps.h"
#include "models/calendar.h"
#include "models/exotics/spread_kernel.h"
#include "models/strips/strip_days.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

// The results in the order of their numbers.
enum class Result : int {
  premium,
  delta,
  gamma,
  vega,
  rho,
  theta,
  delta_by_volatility,
  vega_before,
  vega_after,
  by_basis,
  by_pct,
};

double premium(const OptionStrip& strip, int age = 0) {
  double out[2];
  ostrip_price(strip, age, out);
  return out[0];
}

double delta(const OptionStrip& strip) {
  OptionStrip moved = strip;
  moved.F *= bump_up;
  return (premium(moved) - premium(strip)) / (bump * strip.F);
}

// Change of the premium per unit as a term of the strip moves from one value to another.
double two_sided(const OptionStrip& strip, double OptionStrip::*term, double from, double to) {
  OptionStrip down = strip;
  OptionStrip up = strip;
  down.*term = from;
  up.*term = to;
  return (premium(up) - premium(down)) / (to - from);
}

}  // namespace

double black_variance(double F, double K, double v, double D, int OptType) {
  const double sign = OptType == 0 ? -1.0 : 1.0;
  if (K <= 0.0 || v <= 0.0) return D * positive_part(sign * (F - K));
  const double deviation = std::sqrt(v);
  const double d1 = natural_log(F / K) / deviation + deviation / 2.0;
  double N[2];
  _mm_storeu_pd(N, cnorm(_mm_set_pd(sign * (d1 - deviation), sign * d1)));
  return sign * D * (F * N[0] - K * N[1]);
}

namespace {

void price(const OptionStrip& strip, int age, double out[2]) {
  const bool forward_start = strip.FwdStFlag != 0 && strip.NowToSet > 0.0;
  const double set_days = positive_part(strip.NowToSet - age);
  const double set_time = set_days * one_day;
  const bool still_to_set = forward_start && set_time > 0.0;
  const double fixed_strike = strip.pct * (forward_start ? strip.F : strip.K) + strip.basis;
  const int OptType = strip.OptType == 0 ? 0 : 1;

  const auto value = [&](double t, double D) {
    const double until_set = std::min(set_time, t);
    const double variance_before = strip.sigma_before * strip.sigma_before * until_set;
    const double variance_after = strip.sigma_after * strip.sigma_after * (t - until_set);
    const double variance = variance_before + variance_after;
    if (strip.F < 0.0 && variance > 0.0) return std::numeric_limits<double>::quiet_NaN();
    if (!still_to_set || variance == 0.0) return black_variance(strip.F, fixed_strike, variance, D, OptType);
    if (strip.basis == 0.0) return black_variance(strip.F, strip.pct * strip.F, variance_after, D, OptType);
    const double v = std::sqrt(variance);
    const double v_set = std::sqrt(variance_before);
    double kernel[3];
    return spread_kernel(strip.F, strip.pct * strip.F, strip.basis, v, v_set, v_set / v, D, OptType, kernel);
  };
  const auto layout = [&](double t) {
    const double until_set = std::min(set_time, t);
    const double variance_before = strip.sigma_before * strip.sigma_before * until_set;
    const double v_set = std::sqrt(variance_before);
    const double v = std::sqrt(variance_before + strip.sigma_after * strip.sigma_after * (t - until_set));
    return spread_layout(strip.F, strip.pct * strip.F, strip.basis, v, v_set, v_set / v);
  };
  const auto add = [&](double first, double last, DaySums& sums) {
    if (!still_to_set || strip.basis == 0.0) return add_days(first, last, strip.r, value, sums);
    const double before = std::min(last, std::floor(set_days));
    add_days_by_layout(first, before, 0.0, strip.r, value, layout, sums);
    add_days_by_layout(std::max(first, before + 1.0), last, set_days, strip.r, value, layout, sums);
  };
  average_over_days(strip.B, strip.E, age, ostrip_most_days, add, out);
}

}  // namespace

void ostrip_price(const OptionStrip& strip, int age, double out[2]) {
  const AgedOptionStrip aged = {static_cast<double>(age), strip};
  const std::array<double, 2> values = repriced(strip.kept, aged, [age](const AgedOptionStrip& terms) {
    std::array<double, 2> priced;
    price(terms.strip, age, priced.data());
    return priced;
  });
  out[0] = values[0];
  out[1] = values[1];
}

double ostrip_greek(const OptionStrip& strip, int RetType) {
  OptionStrip moved = strip;
  const auto change = [&](double step) { return (premium(moved) - premium(strip)) / step; };
  const double h = 0.0001;
  switch (Result{RetType}) {
    case Result::premium:
      return premium(strip);
    case Result::delta:
      return delta(strip);
    case Result::gamma: {
      moved.F = bump_up * strip.F;
      OptionStrip down = strip;
      down.F = bump_down * strip.F;
      const double step = bump * strip.F;
      return (premium(moved) + premium(down) - 2.0 * premium(strip)) / (step * step);
    }
    case Result::vega:
      moved.sigma_before += h;
      moved.sigma_after += h;
      return change(h);
    case Result::rho: {
      double out[2];
      ostrip_price(strip, 0, out);
      return -out[1];
    }
    case Result::theta:
      return (premium(strip, 1) - premium(strip)) * days_per_year;
    case Result::delta_by_volatility:
      moved.sigma_before += h;
      moved.sigma_after += h;
      return (delta(moved) - delta(strip)) / h;
    case Result::vega_before:
      moved.sigma_before += h;
      return change(h);
    case Result::vega_after:
      moved.sigma_after += h;
      return change(h);
    case Result::by_basis:
      return two_sided(strip, &OptionStrip::basis, strip.basis - bump * strip.F,
                       strip.basis + bump * strip.F);
    case Result::by_pct: {
      // No step crosses 0, where the strike loses its share in the price.
      const double least = strip.pct >= 0.0 ? 0.0 : -HUGE_VAL;
      return two_sided(strip, &OptionStrip::pct, std::max(strip.pct - 0.001, least), strip.pct + 0.001);
    }
    default:
      return 99.0;
  }
}

}  // namespace kestran
