#include "models/strips/two_contract.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/black_scholes/european.h"
#include "models/calendar.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

// The results in the order of their numbers.
enum class Result : int {
  premium,
  delta,
  gamma,  // change of delta as both prices rise
  vega_before,
  rho,
  theta_with_fixing,
  theta_of_time,
  vega_within,
  by_correlation,
  vega_by_price,  // change of vega_before as both prices rise
};

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

// The outstanding fixings of a contract, at even steps from the first; those in the past count as today's.
struct OutstandingFixings {
  double first = 0.0;
  double step = 0.0;
  int count = 0;
};

double time_of(const OutstandingFixings& fixings, int i) {
  return positive_part(fixings.first + fixings.step * i);
}

double last_time(const OutstandingFixings& fixings) {
  return fixings.count > 0 ? time_of(fixings, fixings.count - 1) : 0.0;
}

double later(double a, double b) { return std::isnan(a) || a > b ? a : b; }

int fixings_made(const TwoContracts& option, int contract) {
  const int of_first = std::min(option.m, option.n[0]);
  return contract == 0 ? of_first : std::min(option.m - of_first, option.n[1]);
}

double even_step(double first, double last, int count) {
  return count > 1 ? positive_part(last - first) / (count - 1) : 0.0;
}

OutstandingFixings outstanding_fixings(const TwoContracts& option, int contract) {
  const int made = fixings_made(option, contract);
  OutstandingFixings fixings;
  fixings.count = option.n[contract] - made;
  if (option.one_period) {
    const int N = option.n[0] + option.n[1];
    fixings.step = even_step(option.Next[0], option.End[1], N);
    fixings.first =
        N > 1 ? option.Next[0] + fixings.step * (contract == 0 ? made : option.n[0] + made) : option.End[1];
  } else {
    fixings.first = positive_part(option.Next[contract]);
    fixings.step = even_step(fixings.first, option.End[contract], fixings.count);
  }
  return fixings;
}

// Integrals over time of the contracts' instantaneous variances and covariance.
struct Covariance {
  double before[2], within[2];  // variance per year of each contract before and within its window
  double cross_before, cross_between, cross_within;
  double window[2];  // start of each window
};

Covariance covariance_of(const TwoContracts& option, const OutstandingFixings* fixings) {
  const double* before = option.sigma_before;
  const double* within = option.sigma_within;
  Covariance c;
  for (int i = 0; i < 2; ++i) {
    c.before[i] = before[i] * before[i];
    c.within[i] = within[i] * within[i];
    c.window[i] = option.m > (i == 0 ? 0 : option.n[0]) ? 0.0 : time_of(fixings[i], 0);
  }
  c.cross_before = option.rho * before[0] * before[1];
  c.cross_between = option.rho * (c.window[0] < c.window[1] ? within[0] * before[1] : before[0] * within[1]);
  c.cross_within = option.rho * within[0] * within[1];
  return c;
}

double variance_until(const Covariance& c, int contract, double t) {
  const double window = c.window[contract];
  return c.before[contract] * std::min(t, window) + c.within[contract] * positive_part(t - window);
}

double covariance_until(const Covariance& c, double t) {
  const double one_open = std::min(t, std::min(c.window[0], c.window[1]));
  const double both_open = std::min(t, std::max(c.window[0], c.window[1]));
  return c.cross_before * one_open + c.cross_between * (both_open - one_open) +
         c.cross_within * (t - both_open);
}

// Variance of the sum of the outstanding fixings. A pair of fixings shares the variance up to the earlier
// one: from the latest fixing to the earliest, each meets all those after it.
double variance_of_sum(const TwoContracts& option, const OutstandingFixings* fixings) {
  const Covariance c = covariance_of(option, fixings);
  int left[2] = {fixings[0].count, fixings[1].count};
  double after[2] = {0.0, 0.0};
  double variance = 0.0;
  while (left[0] > 0 || left[1] > 0) {
    const double last[2] = {time_of(fixings[0], left[0] - 1), time_of(fixings[1], left[1] - 1)};
    const int own = left[0] == 0 || (left[1] > 0 && last[1] >= last[0]) ? 1 : 0;
    const int other = 1 - own;
    // A contract without fixings must not enter, whatever its volatility.
    const double shared = after[other] > 0.0 ? covariance_until(c, last[own]) : 0.0;
    double growth[2];
    _mm_storeu_pd(growth, exponential(_mm_set_pd(shared, variance_until(c, own, last[own]))));
    variance += option.F[own] * ((growth[0] - 1.0) * option.F[own] * (1.0 + 2.0 * after[own]) +
                                 (growth[1] - 1.0) * option.F[other] * 2.0 * after[other]);
    after[own] += 1.0;
    --left[own];
  }
  return variance;
}

double price_one_day_on(const TwoContracts& option, bool with_fixing) {
  TwoContracts moved = option;
  for (int i = 0; i < 2; ++i) {
    moved.Next[i] -= one_day;
    moved.End[i] -= one_day;
  }
  moved.ToExp -= one_day;
  const int contract = option.m < option.n[0] ? 0 : 1;
  const OutstandingFixings fixings = outstanding_fixings(option, contract);
  // A fixing one day ahead is due tomorrow however its time was rounded.
  if (with_fixing && fixings.count > 0 && fixings.first - one_day <= 1e-12) {
    moved.A = (option.m * option.A + option.F[contract]) / (option.m + 1.0);
    moved.m = option.m + 1;
    if (!option.one_period) moved.Next[contract] += fixings.step;
  }
  return two_contract_price(moved);
}

bool is_per_contract(Result result) {
  return result == Result::delta || result == Result::gamma || result == Result::vega_before ||
         result == Result::vega_within || result == Result::vega_by_price;
}

double price(const TwoContracts& option) {
  const int n1 = option.n[0];
  const int n2 = option.n[1];
  if (n1 < 0 || n2 < 0 || option.m < 0 || n1 > two_contract_most_fixings ||
      n2 > two_contract_most_fixings - n1)
    return not_a_number;
  const OutstandingFixings fixings[2] = {outstanding_fixings(option, 0), outstanding_fixings(option, 1)};
  const int outstanding = fixings[0].count + fixings[1].count;
  const double N = n1 + n2;
  const double share = outstanding / N;
  const double fixed = (N - outstanding) * option.A;
  const double sum = fixings[0].count * option.F[0] + fixings[1].count * option.F[1];
  const double sign = option.OptType == 0 ? -1.0 : 1.0;
  const double T = later(last_time(fixings[0]), last_time(fixings[1]));
  const auto discount = [&] { return option.ToExp < 0.0 ? 1.0 : exponential(-option.r * option.ToExp); };
  if (outstanding < 1 || T <= 0.0) return positive_part(sign * ((fixed + sum) / N - option.K)) * discount();

  for (int i = 0; i < 2; ++i)
    if (fixings[i].count > 0 && option.F[i] < 0.0) return not_a_number;
  const double average = sum / outstanding;
  const double K = (N * option.K - fixed) / outstanding;
  if (K < 0.0) return option.OptType == 0 ? 0.0 : share * (average - K) * discount();

  const double log_variance = natural_log(1.0 + variance_of_sum(option, fixings) / (sum * sum));
  const double sigma = std::sqrt(positive_part(log_variance) / T);
  const double premium =
      share * bs_general(average, K, T, option.r, option.r, sigma, option.OptType == 0 ? 0 : 1, 0);
  return option.ToExp == T ? premium : premium * exponential(-option.r * (option.ToExp - T));
}

}  // namespace

double two_contract_price(const TwoContracts& option) { return repriced(option.kept, option, price); }

double two_contract_sens(const TwoContracts& option, int RetType, int contract) {
  const Result result{RetType};
  if (is_per_contract(result) && contract != 1 && contract != 2) return not_a_number;
  const int i = contract == 2 ? 1 : 0;
  const double h = 0.0001 * (option.F[0] + option.F[1]) / 2.0;
  const double step = 0.0001;
  const auto delta = [&](TwoContracts moved) {
    const double base = two_contract_price(moved);
    moved.F[i] += h;
    return (two_contract_price(moved) - base) / h;
  };
  const auto vega = [&](TwoContracts moved, double(TwoContracts::*sigmas)[2]) {
    const double base = two_contract_price(moved);
    double& sigma = (moved.*sigmas)[i];
    const double unmoved = sigma;
    sigma *= 1.0 + step;
    return (two_contract_price(moved) - base) / (step * unmoved);
  };

  TwoContracts changed = option;
  TwoContracts raised = option;
  raised.F[0] += h;
  raised.F[1] += h;
  switch (result) {
    case Result::premium:
      return two_contract_price(option);
    case Result::delta:
      return delta(option);
    case Result::gamma:
      return (delta(raised) - delta(option)) / h;
    case Result::vega_before:
      return vega(option, &TwoContracts::sigma_before);
    case Result::rho:
      changed.r += step;
      return (two_contract_price(changed) - two_contract_price(option)) / step;
    case Result::theta_with_fixing:
    case Result::theta_of_time:
      return (price_one_day_on(option, result == Result::theta_with_fixing) - two_contract_price(option)) /
             one_day;
    case Result::vega_within:
      return vega(option, &TwoContracts::sigma_within);
    case Result::by_correlation:
      changed.rho += step;
      return (two_contract_price(changed) - two_contract_price(option)) / step;
    case Result::vega_by_price:
      return (vega(raised, &TwoContracts::sigma_before) - vega(option, &TwoContracts::sigma_before)) / h;
    default:
      return not_a_number;
  }
}

}  // namespace kestran
