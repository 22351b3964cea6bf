#include "models/asian/compound_asian.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/asian/compound_asian_nodes.h"
#include "models/calendar.h"
#include "numerics/arrays.h"
#include "numerics/elementary.h"
#include "numerics/gauss_hermite.h"

namespace kestran {
namespace {

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

double outstanding(const CompoundAsian& option) {
  return positive_part(option.N - static_cast<double>(option.m));
}

double gap(const CompoundAsian& option) {
  const double n = outstanding(option);
  return n > 1.0 ? (option.ExpDays - option.toNext) / (n - 1.0) : 0.0;
}

int fixings_until_expiry(const CompoundAsian& option) {
  const double spacing = gap(option);
  int count = 0;
  for (int k = 0; k < outstanding(option); ++k)
    if (option.toNext + k * spacing <= option.CmpExpDays) ++count;
  return count;
}

CompoundAsian some_time_on(const CompoundAsian& option, double days) {
  CompoundAsian moved = option;
  const double spacing = gap(option);
  moved.toNext -= days;
  moved.ExpDays -= days;
  moved.CmpExpDays -= days;
  while (moved.m < moved.N && moved.toNext < 0.0) {
    moved.A = (moved.m * moved.A + moved.S0) / (moved.m + 1.0);
    ++moved.m;
    moved.toNext += spacing;
  }
  return moved;
}

constexpr double step = 0.001;

CompoundAsian with_factor(CompoundAsian option, double CompoundAsian::*term, double factor) {
  option.*term *= factor;
  return option;
}

double slope(double (*f)(const CompoundAsian&), const CompoundAsian& option, double CompoundAsian::*term) {
  return (f(with_factor(option, term, 1.0 + step)) - f(with_factor(option, term, 1.0 - step))) /
         (2.0 * step * option.*term);
}

double delta(const CompoundAsian& option) { return slope(compound_asian_price, option, &CompoundAsian::S0); }

double gamma(const CompoundAsian& option) {
  const double h = step * option.S0;
  return (compound_asian_price(with_factor(option, &CompoundAsian::S0, 1.0 + step)) -
          2.0 * compound_asian_price(option) +
          compound_asian_price(with_factor(option, &CompoundAsian::S0, 1.0 - step))) /
         (h * h);
}

double rho(const CompoundAsian& option) {
  if (option.rc == 0.0) return 0.0;
  const auto with_rates = [&](double factor) {
    return compound_asian_price(
        with_factor(with_factor(option, &CompoundAsian::r, factor), &CompoundAsian::rc, factor));
  };
  return (with_rates(1.0 + step) - with_rates(1.0 - step)) / (2.0 * step * option.rc);
}

double theta(const CompoundAsian& option) {
  const double days = std::min(1.0, option.CmpExpDays / 2.0);
  return (compound_asian_price(some_time_on(option, days)) - compound_asian_price(option)) / (days * one_day);
}

double price_of(const CompoundAsian& option);

}  // namespace

bool compound_asian_is_bounded(const CompoundAsian& option) {
  const double days = option.ExpDays - option.toNext;
  return outstanding(option) <= compound_asian_most_fixings && std::isfinite(days) &&
         days <= compound_asian_most_fixings;
}

namespace {

double price_of(const CompoundAsian& option) {
  if (!compound_asian_is_bounded(option) || !(option.S0 > 0.0)) return not_a_number;
  const bool expired = option.CmpExpDays <= 0.0;
  const double until_expiry = expired ? 0.0 : option.CmpExpDays;
  const int n = static_cast<int>(outstanding(option));
  const int before = expired ? 0 : fixings_until_expiry(option);
  const int ahead = n - before;
  const int work = most_payoff_lanes * before;
  const int cells = before + 2 * work + ahead;
  double* block = dvector(0, cells);
  if (!block) return not_a_number;

  CompoundAsianPayoff payoff;
  payoff.S0 = option.S0;
  payoff.deviation = option.sigma_c * std::sqrt(until_expiry * one_day);
  payoff.X = option.X;
  payoff.is_call_on = (option.CmpOptType & 1) != 0;
  payoff.is_call = option.CmpOptType < 3;
  // With no fixing to come the average is A, whatever the counts.
  const double total = n > 0 ? option.N : 1.0;
  payoff.strike = total * option.K - (n > 0 ? option.m : 1.0) * option.A;
  payoff.discount =
      exponential((option.rc * until_expiry - option.r * positive_part(option.ExpDays)) * one_day) / total;

  payoff.before = {before, payoff.deviation * payoff.deviation, block, block + before, block + before + work};
  for (int k = 0; k < before; ++k)
    payoff.before.time[k] = std::clamp((option.toNext + k * gap(option)) / until_expiry, 0.0, 1.0);
  const double first = positive_part(option.toNext + before * gap(option) - until_expiry);
  const double last = positive_part(option.ExpDays - until_expiry);
  const double sigma_until_first = option.m + before > 0 ? option.sigma2 : option.sigma1;
  payoff.ahead =
      fixings_ahead(ahead, sigma_until_first * sigma_until_first * first * one_day,
                    option.sigma2 * option.sigma2 * (last - first) / std::max(ahead - 1, 1) * one_day,
                    block + before + 2 * work);

  double price = 0.0;
  if (expired)
    price = positive_part(exercise_margin(payoff, option.S0, payoff.strike));
  else if (before == 0)
    price = mean_payoff(payoff, 0.0);
  else
    for (const WeightedNode& z : gauss_hermite_3) price += z.weight * mean_payoff(payoff, z.node);
  free_dvector(block, 0, cells);
  return price * exponential(-option.rc * until_expiry * one_day);
}

}  // namespace

double compound_asian_price(const CompoundAsian& option) { return repriced(option.kept, option, price_of); }

double compound_asian_greek(const CompoundAsian& option, int RetType) {
  if (!compound_asian_is_bounded(option)) return not_a_number;
  const auto result = static_cast<CompoundAsianResult>(RetType);
  if (option.CmpExpDays <= 0.0 && result != CompoundAsianResult::premium) return 0.0;
  switch (result) {
    case CompoundAsianResult::premium:
      return compound_asian_price(option);
    case CompoundAsianResult::delta:
      return delta(option);
    case CompoundAsianResult::gamma:
      return gamma(option);
    case CompoundAsianResult::vega:
      return slope(compound_asian_price, option, &CompoundAsian::sigma_c);
    case CompoundAsianResult::rho:
      return rho(option);
    case CompoundAsianResult::theta:
      return theta(option);
    case CompoundAsianResult::delta_by_volatility:
      return slope(delta, option, &CompoundAsian::sigma_c);
    case CompoundAsianResult::vega_until_averaging:
      return slope(compound_asian_price, option, &CompoundAsian::sigma1);
    case CompoundAsianResult::vega_while_averaging:
      return slope(compound_asian_price, option, &CompoundAsian::sigma2);
  }
  return 0.0;
}

}  // namespace kestran
