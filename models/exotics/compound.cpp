#include "models/exotics/compound.h"

#include <cmath>
#include <limits>
#include <optional>

#include "models/bumps.h"
#include "models/calendar.h"
#include "numerics/bivariate_normal.h"
#include "numerics/elementary.h"
#include "numerics/normal.h"

namespace kestran {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double critical_price_tolerance = 0.0001;

// An option on a forward price, all but that price. sign: 1 call, -1 put.
struct ForwardOption {
  double sign, X, v, half_variance, discount;
};

ForwardOption forward_option(double sign, double X, double days, double r, double sigma) {
  const double T = days / days_per_year;
  return {sign, X, sigma * std::sqrt(T), sigma * sigma * T / 2.0, exponential(-r * T)};
}

struct Premium {
  double value, delta_size;
};

Premium premium(const ForwardOption& option, double F) {
  const double d1 = (natural_log(F / option.X) + option.half_variance) / option.v;
  const double N1 = cnorm(option.sign * d1);
  const double N2 = cnorm(option.sign * (d1 - option.v));
  return {option.sign * option.discount * (F * N1 - option.X * N2), option.discount * N1};
}

// Forward prices outside which a premium differs from the target by more than the tolerance, on a known side.
struct Surroundings {
  double below, above;
};

constexpr Surroundings unknown_surroundings = {-infinity, infinity};

// Newton's method, until Taylor's theorem vouches for both ends of a small interval about the next iterate.
// The exact premium is monotone in F, so outside that interval only the error of cnorm could mislead, and in
// F N(d1) - X N(d2) it stays below (2e-7 + 1e-6 v^3) X for v < 2.5, whatever F (measured: since F n(d1) =
// X n(d2), it depends on d1 and v alone).
Surroundings surroundings(const ForwardOption& option, double target, double lo, double hi) {
  const double X = option.X, v = option.v, discount = option.discount;
  if (!(target > 0.0 && X > 0.0 && lo >= 0.0 && v > 1e-4 && v < 2.5)) return unknown_surroundings;
  const double error = discount * ((2e-7 + 1e-6 * v * v * v) * X + 1e-15 * hi);
  const double margin = critical_price_tolerance + 2.0 * error;

  // The premium is convex in F, so the iterates stay on the side of the root on which they start.
  double F = X + option.sign * target / discount;
  for (int step = 0; step < 12 && F > 0.0 && F < hi; ++step) {
    const Premium here = premium(option, F);
    if (!(here.delta_size > 1e-4 * discount)) break;
    const double move = option.sign * (target - here.value) / here.delta_size;
    const double half_width = 2.5 * margin / here.delta_size;
    const double reach = std::fabs(move) + half_width;
    // Gamma is discount n(d1) / (F v), below 0.8 discount / (F v) within `reach` of F.
    if (reach < F / 2.0 && 0.4 * discount * reach * reach < margin * F * v) {
      return {F + move - half_width, F + move + half_width};
    }
    F += move;
  }
  return unknown_surroundings;
}

// All of an option on an option but the price of the underlying: the critical price is the costly part.
struct Compound {
  bool needs_price = false;
  double answer = 0.0;             // when it does not need the price
  double over = 0.0, under = 0.0;  // 1 call, -1 put
  double critical_price = 0.0, X = 0.0;
  double v1 = 0.0, drift1 = 0.0;  // to the first expiry
  double v = 0.0, drift = 0.0;    // to the second
  double rho = 0.0;
  double discounted_yield = 0.0, discounted_X = 0.0, discounted_X1 = 0.0;
};

Compound compound(const CompoundOption& terms) {
  constexpr double compound_year = 365.35;  // intended; Black 76 takes days_per_year
  const double t1 = terms.days1 / compound_year;
  const double T2 = terms.days2 / compound_year;
  const double variance1 = (T2 * terms.sigma * terms.sigma - (T2 - t1) * terms.sigma_f * terms.sigma_f) / t1;

  Compound result;
  if (variance1 < 0.0) {
    result.answer = -1.0;
    return result;
  }
  const double sigma1 = std::sqrt(variance1);
  if (terms.OptType < 1 || terms.OptType > 4) {
    result.answer = terms.OptType == 5 ? sigma1 : -999999999.999;
    return result;
  }
  result.needs_price = true;
  result.over = terms.OptType % 2 == 1 ? 1.0 : -1.0;
  result.under = terms.OptType < 3 ? 1.0 : -1.0;
  result.critical_price = compound_critical_price(terms.X1, terms.X, terms.days2 - terms.days1, terms.r,
                                                  terms.sigma_f, 1e-12, 1e8, terms.OptType >= 3);
  result.X = terms.X;
  result.v1 = sigma1 * std::sqrt(t1);
  result.drift1 = (terms.r - terms.q + variance1 / 2.0) * t1;
  result.v = terms.sigma * std::sqrt(T2);
  result.drift = (terms.r - terms.q + terms.sigma * terms.sigma / 2.0) * T2;
  result.rho = std::sqrt(t1 / T2) * sigma1 / terms.sigma;
  result.discounted_yield = exponential(-terms.q * T2);
  result.discounted_X = terms.X * exponential(-terms.r * T2);
  result.discounted_X1 = terms.X1 * exponential(-terms.r * t1);
  return result;
}

double value(const Compound& option, double S) {
  if (!option.needs_price) return option.answer;
  const double y1 = (natural_log(S / option.critical_price) + option.drift1) / option.v1;
  const double z1 = (natural_log(S / option.X) + option.drift) / option.v;
  const double exercised = option.over * option.under;  // 1 when exercised above the critical price, -1 below
  const double y2 = exercised * (y1 - option.v1);
  const double rho = option.over * option.rho;
  const double price_part = S * option.discounted_yield * binorm(exercised * y1, option.under * z1, rho);
  const double strike_part = option.discounted_X * binorm(y2, option.under * (z1 - option.v), rho);
  return exercised * (price_part - strike_part) - option.over * option.discounted_X1 * cnorm(y2);
}

}  // namespace

double black76_call(double F, double X, double days, double r, double sigma) {
  return premium(forward_option(1.0, X, days, r, sigma), F).value;
}

double black76_put(double F, double X, double days, double r, double sigma) {
  return premium(forward_option(-1.0, X, days, r, sigma), F).value;
}

double compound_critical_price(double target, double X, double days, double r, double sigma, double lo,
                               double hi, bool put) {
  const ForwardOption option = forward_option(put ? -1.0 : 1.0, X, days, r, sigma);
  const Surroundings known = surroundings(option, target, lo, hi);
  const double lowest = lo, highest = hi;
  bool lower_end_moved = false;
  double mid = (lo + hi) / 2.0;
  for (int iteration = 0; iteration <= 10000; ++iteration) {
    // Negative when the price sought lies above mid.
    double excess = 0.0;
    if (mid < known.below) {
      excess = -infinity;
    } else if (mid > known.above) {
      excess = infinity;
    } else {
      excess = option.sign * (premium(option, mid).value - target);
    }
    if (std::fabs(excess) < critical_price_tolerance) return mid;
    if (excess < 0.0) {
      lo = mid;
      lower_end_moved = true;
    } else if (excess > 0.0) {
      hi = mid;
    }
    const double next = (lo + hi) / 2.0;
    // From here on the midpoint would stay where it is.
    if (next == mid || std::isnan(excess)) break;
    mid = next;
  }
  return lower_end_moved ? highest : lowest;
}

double compound_price(const CompoundOption& option) { return value(compound(option), option.S); }

double compound_greek(const CompoundOption& terms, int RetType, CompoundKept* kept) {
  const double S = terms.S;
  const auto changed = [&](double days_less, double rate_factor, double volatility_factor) {
    CompoundOption moved = terms;
    moved.days1 -= days_less;
    moved.days2 -= days_less;
    moved.r *= rate_factor;
    moved.q *= rate_factor;
    moved.sigma_f *= volatility_factor;
    moved.sigma *= volatility_factor;
    return compound(moved);
  };
  std::optional<Compound> unmoved;
  const auto value_at = [&](double price) {
    if (!unmoved) unmoved = compound(terms);
    return value(*unmoved, price);
  };
  const double base = kept_price(kept, 0, [&] { return value_at(S); });
  const auto above = [&] { return kept_price(kept, 1, [&] { return value_at(S * bump_up); }); };
  const double h = S * bump;

  switch (static_cast<CompoundResult>(RetType)) {
    case CompoundResult::premium:
      return base;
    case CompoundResult::delta:
      return (above() - base) / h;
    case CompoundResult::gamma:
      return (above() + value_at(S * bump_down) - 2.0 * base) / (h * h);
    case CompoundResult::vega:
      return (value(changed(0.0, 1.0, bump_up), S) - base) / (terms.sigma * bump);
    case CompoundResult::rho:
      return terms.r == 0.0 ? 0.0 : (value(changed(0.0, bump_up, 1.0), S) - base) / (terms.r * bump);
    case CompoundResult::theta: {
      const double days = terms.days1 <= 0.001 ? 1e-6 : 0.001;
      return (value(changed(days, 1.0, 1.0), S) - base) / days * days_per_year;
    }
    default:
      return std::numeric_limits<double>::quiet_NaN();
  }
}

}  // namespace kestran
