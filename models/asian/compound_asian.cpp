#include "models/asian/compound_asian.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/asian/asian_geo_cond.h"
#include "models/calendar.h"
#include "models/trees/log_tree.h"
#include "numerics/arrays.h"
#include "numerics/elementary.h"
#include "numerics/gauss_hermite.h"

namespace kestran {
namespace {

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

int tree_steps(const CompoundAsian& option) { return std::clamp(option.steps, 1, compound_asian_most_steps); }

double outstanding(const CompoundAsian& option) { return option.N - static_cast<double>(option.m); }

double gap(const CompoundAsian& option) {
  const double n = outstanding(option);
  return n > 1.0 ? (option.ExpDays - option.toNext) / (n - 1.0) : 0.0;
}

// The fixings that come before the compound option's expiry. Times are shares of the way there.
struct Bridge {
  int count;
  double variance;    // of the logarithm of the price over the whole way
  double* time;       // u of each fixing, ascending
  double* convexity;  // half the variance of its logarithm given the price at expiry: variance u (1 - u) / 2
};

// Given the logarithm x of the price at expiry over today's: the sum of the bridged fixings over today's
// price, its mean and the deviation of its logarithm.
void bridged_sum(const Bridge& bridge, double x, double& mean, double& deviation) {
  mean = 0.0;
  double covariance = 0.0;    // of the sum with itself, per unit of the bridge's variance
  double weighted_sum = 0.0;  // of level times u over the earlier fixings
  for (int first = 0; first < bridge.count; first += 2) {
    const int last = std::min(first + 1, bridge.count - 1);
    const auto exponent = [&](int k) { return bridge.time[k] * x + bridge.convexity[k]; };
    double level[2];
    _mm_storeu_pd(level, exponential(_mm_set_pd(exponent(last), exponent(first))));
    for (int k = first; k <= last; ++k) {
      const double e = level[k - first];
      const double u = bridge.time[k];
      covariance += e * (1.0 - u) * (e * u + 2.0 * weighted_sum);
      weighted_sum += e * u;
      mean += e;
    }
  }
  deviation = std::sqrt(natural_log(1.0 + bridge.variance * covariance / (mean * mean)));
}

// What one tree pricing works in: arrays by node, then the bridge's by fixing, in one block.
struct Work {
  double* log_factor;
  double* factor;
  double* sum_mean;
  double* sum_deviation;
  double* margin;
  double* payoff;
  double* expected;
};

double payoff_at_expiry(const CompoundAsian& option, double asian_value) {
  return option.CmpOptType & 1 ? asian_value - option.X : option.X - asian_value;
}

// Values the expiry nodes: expected[i] = the payoff at node i. `f` is the rate from then to payment.
void expiry_payoffs(const CompoundAsian& option, const Bridge& bridge, double f, int N, const Work& work) {
  const bool call = option.CmpOptType < 3;
  const double m = option.m;
  const double made = m + bridge.count;
  const double next = option.toNext + bridge.count * gap(option) - option.CmpExpDays;
  const double first = made < option.N ? next : 0.0;
  const double last = option.ExpDays - option.CmpExpDays;
  constexpr WeightedNode certain[1] = {{0.0, 1.0}};
  const WeightedNode* rule = bridge.count > 0 ? gauss_hermite_3 : certain;
  const int passes = bridge.count > 0 ? 3 : 1;

  std::fill_n(work.expected, N + 1, 0.0);
  if (bridge.count > 0)
    for (int i = 0; i <= N; ++i)
      bridged_sum(bridge, work.log_factor[i], work.sum_mean[i], work.sum_deviation[i]);
  for (int z = 0; z < passes; ++z) {
    for (int i = 0; i <= N; ++i) {
      double A = option.A;
      if (bridge.count > 0) {
        const double s = work.sum_deviation[i];
        const double sum = option.S0 * work.sum_mean[i] * exponential(s * rule[z].node - s * s / 2.0);
        A = (m * option.A + sum) / made;
      }
      const double value = compound_asian_node(option.S0 * work.factor[i], A, made, option.N, option.K, f,
                                               option.sigma1, option.sigma2, first, last, call);
      work.margin[i] = payoff_at_expiry(option, value);
      work.payoff[i] = positive_part(work.margin[i]);
    }
    kink_correct(work.margin, work.payoff, N);
    for (int i = 0; i <= N; ++i) work.expected[i] += rule[z].weight * work.payoff[i];
  }
}

int fixings_until_expiry(const CompoundAsian& option) {
  const double spacing = gap(option);
  int count = 0;
  for (int k = 0; k < outstanding(option); ++k)
    // A fixing on the day of expiry belongs to it, whatever the rounding of the spacing.
    if (option.toNext + k * spacing <= option.CmpExpDays + 1e-9) ++count;
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

// The change of premium, or of delta, per unit of a term that moves up by 0.1 %.
double relative_change(double (*price)(const CompoundAsian&), const CompoundAsian& option,
                       double CompoundAsian::*term) {
  CompoundAsian moved = option;
  moved.*term *= 1.001;
  return (price(moved) - price(option)) / (0.001 * option.*term);
}

double delta(const CompoundAsian& option) {
  return relative_change(compound_asian_tree, option, &CompoundAsian::S0);
}

double gamma_of_a_spacing(const CompoundAsian& option) {
  const LogTree tree = log_tree(option.sigma_c, -0.5, option.CmpExpDays * one_day, tree_steps(option));
  const double u = exponential(2.0 * tree.dx);
  const double up = option.S0 * (u - 1.0);
  const double down = option.S0 * (1.0 - 1.0 / u);
  CompoundAsian moved = option;
  const double P = compound_asian_tree(option);
  moved.S0 = option.S0 * u;
  const double P_up = compound_asian_tree(moved);
  moved.S0 = option.S0 / u;
  const double P_down = compound_asian_tree(moved);
  return 2.0 * ((P_up - P) / up - (P - P_down) / down) / (up + down);
}

}  // namespace

bool compound_asian_is_bounded(const CompoundAsian& option) {
  const double days = option.ExpDays - option.toNext;
  return outstanding(option) <= compound_asian_most_fixings && std::isfinite(days) &&
         days <= compound_asian_most_fixings;
}

double compound_asian_node(double S, double A, double m, double N, double K, double f, double sigma1,
                           double sigma2, double first, double last, bool is_call) {
  const double n = N - m;
  const double discount = exponential(-f * positive_part(last) * one_day);
  if (n <= 0.0) return discount * positive_part(is_call ? A - K : K - A);
  const double K_left = (N * K - m * A) / n;
  if (K_left <= 0.0) return is_call ? ((n * S + m * A) / N - K) * discount : 0.0;

  const double E = std::floor(last + 0.5);
  const double rounded_first = std::floor(first + 0.5);
  if (E < 1.0) return n / N * positive_part(is_call ? S - K_left : K_left - S);
  if (!(E <= 1e9) || std::isnan(rounded_first)) return not_a_number;
  const double B = std::clamp(rounded_first, 0.0, E);
  const double days = E - B + 1.0;
  const double same_variance = std::sqrt((2.0 * n - 1.0) * days / (n * (2.0 * days - 1.0)));
  const double value = asian_geo_cond(S, K_left, 0.0, f, f, sigma1, sigma2 * same_variance,
                                      static_cast<int>(E), static_cast<int>(B), is_call ? 1 : 0, 0);
  // With a strike far from the price that approximation can fall below the forward value.
  const double least = exponential(-f * E * one_day) * positive_part(is_call ? S - K_left : K_left - S);
  return n / N * (value < least ? least : value);
}

double compound_asian_tree(const CompoundAsian& option) {
  if (!compound_asian_is_bounded(option)) return not_a_number;
  if (option.CmpExpDays <= 0.0)
    return positive_part(payoff_at_expiry(
        option,
        compound_asian_node(option.S0, option.A, option.m, option.N, option.K, option.r, option.sigma1,
                            option.sigma2, option.toNext, option.ExpDays, option.CmpOptType < 3)));
  const double Tc = option.CmpExpDays * one_day;
  const double TE = option.ExpDays * one_day;
  const double f = TE <= Tc ? 0.0 : (option.r * TE - option.rc * Tc) / (TE - Tc);
  const int N = tree_steps(option);
  const LogTree tree = log_tree(option.sigma_c, -0.5, Tc, N);
  if (std::isnan(tree.p)) return not_a_number;

  const int nodes = padded_nodes(N);
  Bridge bridge{fixings_until_expiry(option), option.sigma_c * option.sigma_c * Tc, nullptr, nullptr};
  const int cells = 7 * nodes + 2 * bridge.count;
  double* block = dvector(0, cells - 1);
  if (!block) return not_a_number;
  const auto by_node = [&](int i) { return block + i * nodes; };
  const Work work{by_node(0), by_node(1), by_node(2), by_node(3), by_node(4), by_node(5), by_node(6)};
  bridge.time = by_node(7);
  bridge.convexity = bridge.time + bridge.count;
  for (int k = 0; k < bridge.count; ++k) {
    const double u = std::clamp((option.toNext + k * gap(option)) / option.CmpExpDays, 0.0, 1.0);
    bridge.time[k] = u;
    bridge.convexity[k] = bridge.variance * u * (1.0 - u) / 2.0;
  }
  tree_factors(tree, N, work.log_factor, work.factor);
  expiry_payoffs(option, bridge, f, N, work);
  const double price = binomial_mean(work.expected, N, tree.p) * exponential(-option.rc * Tc);
  free_dvector(block, 0, cells - 1);
  return price;
}

double compound_asian_greek(const CompoundAsian& option, int RetType) {
  if (!compound_asian_is_bounded(option)) return not_a_number;
  if (option.CmpExpDays <= 0.0 && RetType != 0) return 0.0;
  CompoundAsian moved = option;
  switch (RetType) {
    case 0:
      return compound_asian_tree(option);
    case 1:
      return delta(option);
    case 2:
      return gamma_of_a_spacing(option);
    case 3:
      return relative_change(compound_asian_tree, option, &CompoundAsian::sigma_c);
    case 4:
      if (option.rc == 0.0) return 0.0;
      moved.r *= 1.001;
      moved.rc *= 1.001;
      return (compound_asian_tree(moved) - compound_asian_tree(option)) / (0.001 * option.rc);
    case 5: {
      const double days = std::min(1.0, option.CmpExpDays / 2.0);
      return (compound_asian_tree(some_time_on(option, days)) - compound_asian_tree(option)) /
             (days * one_day);
    }
    case 6:
      return relative_change(delta, option, &CompoundAsian::sigma_c);
    case 7:
      return relative_change(compound_asian_tree, option, &CompoundAsian::sigma1);
    case 8:
      return relative_change(compound_asian_tree, option, &CompoundAsian::sigma2);
    default:
      return 0.0;
  }
}

}  // namespace kestran
