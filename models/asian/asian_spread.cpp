#include "models/asian/asian_spread.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/bumps.h"
#include "models/calendar.h"
#include "models/exotics/spread_kernel.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

// The fixings of one price. Days and counts are whole numbers.
struct LegFixings {
  double first;  // day of the first one outstanding
  double made;
  double outstanding;
  double set;  // average of those made
};

LegFixings fixings(double E, double B, double SetAvg) {
  const double begin = std::min(B, E);
  const double first = positive_part(begin);
  return {first, positive_part(-begin), E - first + 1.0, SetAvg};
}

// The fixings as tomorrow will see them, those due today made at the price S.
LegFixings fixings_tomorrow(double E, double B, double SetAvg, double S) {
  const LegFixings today = fixings(E, B, SetAvg);
  LegFixings tomorrow = fixings(E - 1.0, std::min(B, E) - 1.0, SetAvg);
  const double due = E < 2.0 ? today.outstanding : B <= 0.0 ? 1.0 : 0.0;
  if (due > 0.0) tomorrow.set = today.made > 0.0 ? (today.made * SetAvg + due * S) / (today.made + due) : S;
  return tomorrow;
}

// Moments of the two averages of outstanding fixings, at prices of 1.
struct Moments {
  double A, B, AA, BB, AB;
};

Moments moments(const AsianSpread& option, double E, double first_A, double first_B) {
  const double before_A = floored_volatility(option.VolA);
  const double before_B = floored_volatility(option.VolB);
  const double after_A = floored_volatility(option.VolAf);
  const double after_B = floored_volatility(option.VolBf);
  const double earlier = std::min(first_A, first_B);
  const double later = std::max(first_A, first_B);
  const double between = first_A < first_B ? after_A * before_B : before_A * after_B;
  const double weight_A = 1.0 / (E - first_A + 1.0);
  const double weight_B = 1.0 / (E - first_B + 1.0);

  // From the last day back, so that each fixing meets the sum of the later ones: with all of them it has the
  // variance up to its own day in common.
  Moments sum = {};
  const int days = static_cast<int>(E - earlier);
  for (int back = 0; back <= days; ++back) {
    const double k = E - back;
    const double t = k * one_day;
    const double until_A = std::min(k, first_A);
    const double until_B = std::min(k, first_B);
    const double until_later = std::min(k, later);
    const double variance_A = before_A * before_A * until_A + after_A * after_A * (k - until_A);
    const double variance_B = before_B * before_B * until_B + after_B * after_B * (k - until_B);
    const double covariance =
        option.rho * (before_A * before_B * earlier + between * (until_later - earlier) +
                      after_A * after_B * (k - until_later));
    double growth[2], square[2];
    _mm_storeu_pd(growth, exponential(_mm_set_pd((option.r - option.q2) * t, (option.r - option.q1) * t)));
    _mm_storeu_pd(square, exponential(_mm_set_pd(variance_B * one_day, variance_A * one_day)));
    const double a = k < first_A ? 0.0 : weight_A * growth[0];
    const double b = k < first_B ? 0.0 : weight_B * growth[1];
    sum.AA += square[0] * a * (a + 2.0 * sum.A);
    sum.BB += square[1] * b * (b + 2.0 * sum.B);
    sum.AB += exponential(covariance * one_day) * (a * b + a * sum.B + b * sum.A);
    sum.A += a;
    sum.B += b;
  }
  return sum;
}

LognormalSpread reduced(const AsianSpread& option, double E, const LegFixings& A, const LegFixings& B) {
  LognormalSpread result = {};
  result.kept = option.kept;
  if (E < 1.0) {
    const double margin = A.set - B.set - option.K;
    result.settled = true;
    result.payoff = positive_part(option.OptType == 0 ? -margin : margin);
    return result;
  }
  const Moments m = moments(option, E, A.first, B.first);
  const double total_A = A.made + A.outstanding;
  const double total_B = B.made + B.outstanding;
  result.FA = option.PriceA * m.A * A.outstanding / total_A;
  result.FB = option.PriceB * m.B * B.outstanding / total_B;
  result.K = option.K;
  if (A.made > 0.0) result.K -= A.set * A.made / total_A;
  if (B.made > 0.0) result.K += B.set * B.made / total_B;
  result.vA = std::sqrt(positive_part(natural_log(m.AA / (m.A * m.A))));
  result.vB = std::sqrt(positive_part(natural_log(m.BB / (m.B * m.B))));
  const double product = result.vA * result.vB;
  result.rho = product <= 1e-14 ? option.rho : natural_log(m.AB / (m.A * m.B)) / product;
  result.D = exponential(-option.r * E * one_day);
  result.OptType = option.OptType;
  return result;
}

LognormalSpread today(const AsianSpread& given) {
  return repriced(given.kept == nullptr ? nullptr : &given.kept->today, given, [](const AsianSpread& option) {
    return reduced(option, option.E, fixings(option.E, option.BA, option.SetAvgA),
                   fixings(option.E, option.BB, option.SetAvgB));
  });
}

LognormalSpread tomorrow(const AsianSpread& given) {
  return repriced(given.kept == nullptr ? nullptr : &given.kept->tomorrow, given,
                  [](const AsianSpread& option) {
                    return reduced(option, option.E - 1.0,
                                   fixings_tomorrow(option.E, option.BA, option.SetAvgA, option.PriceA),
                                   fixings_tomorrow(option.E, option.BB, option.SetAvgB, option.PriceB));
                  });
}

// The premium with the prices multiplied; what is not proportional to them does not depend on them.
double premium(const LognormalSpread& option, double factor_A = 1.0, double factor_B = 1.0) {
  if (option.settled) return option.payoff;
  const LognormalTerms terms = {
      option.FA * factor_A, option.FB * factor_B, option.K, option.vA, option.vB, option.rho, option.D};
  return repriced(option.kept == nullptr ? nullptr : &option.kept->premiums, terms,
                  [&](const LognormalTerms& t) {
                    double out[3];
                    return spread_kernel(t.FA, t.FB, t.K, t.vA, t.vB, t.rho, t.D, option.OptType, out);
                  });
}

enum class Leg { A, B };

// The premium with the price of one leg multiplied.
double premium(const LognormalSpread& option, Leg leg, double factor) {
  return leg == Leg::A ? premium(option, factor, 1.0) : premium(option, 1.0, factor);
}

double delta(const LognormalSpread& option, Leg leg, double S) {
  return (premium(option, leg, bump_up) - premium(option)) / (bump * S);
}

double gamma(const LognormalSpread& option, Leg leg, double S) {
  const double step = bump * S;
  return (premium(option, leg, bump_up) + premium(option, leg, bump_down) - 2.0 * premium(option)) /
         (step * step);
}

}  // namespace

double asian_spread_days(int E, int BA, int BB) {
  const double last = E;
  const double first = std::min({last, positive_part(BA), positive_part(BB)});
  return E < 1 ? 0.0 : last - first;
}

double asian_spread_price(const AsianSpread& option) { return asian_spread_greek(option, 0); }

double asian_spread_greek(const AsianSpread& option, int RetType) {
  if (RetType < 0 || RetType > 13) return 99.0;
  if (RetType != 0 && option.E < 1) return 0.0;
  if (asian_spread_days(option.E, option.BA, option.BB) > asian_spread_most_days)
    return std::numeric_limits<double>::quiet_NaN();

  const LognormalSpread base = today(option);
  AsianSpread moved = option;
  const auto change = [&](double step) { return (premium(today(moved)) - premium(base)) / step; };
  const double h = 0.0001;
  switch (static_cast<AsianSpreadResult>(RetType)) {
    case AsianSpreadResult::premium:
      return premium(base);
    case AsianSpreadResult::delta_A:
      return delta(base, Leg::A, option.PriceA);
    case AsianSpreadResult::delta_B:
      return delta(base, Leg::B, option.PriceB);
    case AsianSpreadResult::gamma_A:
      return gamma(base, Leg::A, option.PriceA);
    case AsianSpreadResult::gamma_B:
      return gamma(base, Leg::B, option.PriceB);
    case AsianSpreadResult::vega_A:
      moved.VolA += h;
      moved.VolAf += h;
      return change(h);
    case AsianSpreadResult::vega_B:
      moved.VolB += h;
      moved.VolBf += h;
      return change(h);
    case AsianSpreadResult::by_correlation: {
      const double step = option.rho == 0.0 ? bump : -bump * option.rho;
      moved.rho += step;
      return change(step);
    }
    case AsianSpreadResult::carry_rho:
      return -option.E * one_day * premium(base);
    case AsianSpreadResult::theta:
      return (premium(tomorrow(option)) - premium(base)) * days_per_year;
    case AsianSpreadResult::delta_A_by_time:
      return (delta(tomorrow(option), Leg::A, option.PriceA) - delta(base, Leg::A, option.PriceA)) *
             days_per_year;
    case AsianSpreadResult::delta_B_by_time:
      return (delta(tomorrow(option), Leg::B, option.PriceB) - delta(base, Leg::B, option.PriceB)) *
             days_per_year;
    case AsianSpreadResult::cross_gamma:
      return (premium(base, bump_up, bump_up) + premium(base, bump_down, bump_down) -
              premium(base, bump_up, bump_down) - premium(base, bump_down, bump_up)) /
             (4.0 * (bump * option.PriceA) * (bump * option.PriceB));
    case AsianSpreadResult::vega_within:
      moved.VolAf += h;
      moved.VolBf += h;
      return change(h);
    default:
      return 99.0;
  }
}

}  // namespace kestran
