#include "models/strips/asian_strip.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "models/black_scholes/european.h"
#include "models/calendar.h"
#include "numerics/arrays.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

// The results in the order of their numbers.
enum class Result : int {
  premium,
  delta,
  gamma,  // change of delta as all prices rise
  vega,
  rho,
  theta_with_fixing,
  theta_of_time,
  by_volume,
  by_correlation,
  vega_by_price,  // change of vega as all prices rise
};

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

double discounted_payoff(const AsianStrip& strip, double K, double average) {
  const double payoff = positive_part(strip.OptType == 0 ? K - average : average - K);
  return strip.ToExp < 0.0 ? payoff : payoff * exponential(-strip.r * strip.ToExp);
}

double fixing_volume(const AsianStrip& strip, int month) { return strip.u ? strip.u[month] : 1.0; }

double made_volume(const AsianStrip& strip) {
  if (!strip.u) return strip.m;
  double volume = 0.0;
  double earlier = 0.0;
  for (int i = 0; i < strip.L; ++i) {
    volume += std::min(positive_part(strip.m - earlier), strip.n[i]) * strip.u[i];
    earlier += strip.n[i];
  }
  return volume;
}

// What a strip of volume W with Wm of it fixed pays when no fixing can follow: the last month's price stands
// for the others.
double settled_price(const AsianStrip& strip, double K, double W, double Wm) {
  const double made = std::min(Wm, W);
  const double average = ((W - made) * strip.F[strip.L - 1] + made * strip.A) / W;
  return discounted_payoff(strip, K, average);
}

// The latest End from month `first` on, at least 0; not a number as soon as one of them is none.
double latest_fixing(const AsianStrip& strip, int first) {
  double latest = 0.0;
  for (int i = first; i < strip.L; ++i)
    if (std::isnan(strip.End[i]) || strip.End[i] > latest) latest = strip.End[i];
  return latest;
}

// The variance of the sum that has deviation w[i] in month i. month(k) is month k in the order of End.
template <class Order>
double correlated_variance(const AsianStrip& strip, int first, const double* w, const Order& month) {
  double variance = 0.0;
  for (int k = first; k < strip.L; ++k) variance += w[month(k)] * w[month(k)];
  double earlier = 0.0;
  for (int k = first; k < strip.L; k += 2) {
    // Two months at a time; the last of an odd number goes with itself.
    const int i = month(k), j = month(std::min(k + 1, strip.L - 1));
    const __m128d deviation = _mm_set_pd(w[j], w[i]);
    const __m128d root_End = _mm_sqrt_pd(_mm_set_pd(strip.End[j], strip.End[i]));
    const __m128d by_root = deviation / root_End, times_root = deviation * root_End;
    if (k > first) variance += 2.0 * strip.rho * earlier * by_root[0];
    earlier += times_root[0];
    if (j == i) break;
    variance += 2.0 * strip.rho * earlier * by_root[1];
    earlier += times_root[1];
  }
  return variance;
}

// The same for months in any order.
double correlated_variance(const AsianStrip& strip, int first, const double* w) {
  const double* const End = strip.End;
  if (std::is_sorted(End + first, End + strip.L))
    return correlated_variance(strip, first, w, [](int k) { return k; });
  int* const order = ivector(first, strip.L - 1);
  if (!order) return not_a_number;
  std::iota(order + first, order + strip.L, first);
  std::sort(order + first, order + strip.L, [&](int i, int j) { return End[i] < End[j]; });
  const double variance = correlated_variance(strip, first, w, [&](int k) { return order[k]; });
  free_ivector(order, first, strip.L - 1);
  return variance;
}

// Premium per volume outstanding when that is the volume of the months from `first` on, with `first_count`
// fixings in that month and the last of all at T. `w` has room for the strip.
double outstanding_price(const AsianStrip& strip, int first, double first_count, double T, double K,
                         double* w) {
  double count = 0.0;
  double volume = 0.0;
  double sum = 0.0;
  for (int i = first; i < strip.L; i += 2) {
    // Two months at a time; the last of an odd number goes with itself.
    const int j = std::min(i + 1, strip.L - 1);
    const auto both = [&](const double* x) { return _mm_set_pd(x[j], x[i]); };
    const auto Next_after = [&](double fixings, double Next) {
      return fixings > 0.0 && Next < 0.0 ? 0.0 : Next;
    };
    const __m128d n = _mm_set_pd(strip.n[j], i == first ? first_count : strip.n[i]);
    const double count_i = count + n[0], count_j = count_i + n[1];
    const __m128d Next = _mm_set_pd(Next_after(count_j, strip.Next[j]), Next_after(count_i, strip.Next[i]));
    const __m128d month_volume = strip.u ? n * both(strip.u) : n;
    const __m128d amount = month_volume * both(strip.F);
    const __m128d deviation =
        amount * both(strip.sigma) * _mm_sqrt_pd((both(strip.End) - Next) * ((n - 0.5) / n) / 3.0 + Next);
    w[i] = deviation[0];
    volume += month_volume[0];
    sum += amount[0];
    count = count_i;
    if (j == i) break;
    w[j] = deviation[1];
    volume += month_volume[1];
    sum += amount[1];
    count = count_j;
  }
  if (T <= 0.0 || count < 1.0) return settled_price(strip, K, volume, 0.0);
  if (std::isnan(T)) return not_a_number;

  const double average = sum / volume;
  const double sigma = std::sqrt(correlated_variance(strip, first, w) / T) / (volume * average);
  const double premium = bs_general(average, K, T, strip.r, strip.r, sigma, strip.OptType == 0 ? 0 : 1, 0);
  return strip.ToExp == T ? premium : premium * exponential(-strip.r * (strip.ToExp - T));
}

double price_one_day_on(const AsianStrip& strip, bool with_fixing, double* Next, double* End) {
  for (int i = 0; i < strip.L; ++i) {
    Next[i] = strip.Next[i] - one_day;
    End[i] = strip.End[i] - one_day;
  }
  AsianStrip moved = strip;
  moved.Next = Next;
  moved.End = End;
  moved.ToExp = strip.ToExp - one_day;
  // A fixing is due by the first month's date, whichever month it falls in: intended.
  if (with_fixing && Next[0] <= 0.0 && End[strip.L - 1] >= 0.0) {
    moved.m = strip.m + 1.0;
    int month = 0;
    for (double count = strip.n[0]; month < strip.L - 1 && !(count >= moved.m);) count += strip.n[++month];
    const double Wm = made_volume(strip);
    const double added = fixing_volume(strip, month);
    if (Wm + added != 0.0) moved.A = (Wm * strip.A + added * strip.F[month]) / (Wm + added);
  }
  return asian_strip_price(moved);
}

// What moved, where several results need the premium after it.
enum class Moved : int { nothing, price_of_month, volatility_of_month, all_prices, something_else };

double price_after(Moved moved, const AsianStrip& strip) {
  if (moved == Moved::something_else) return asian_strip_price(strip);
  return kept_price(strip.kept, static_cast<int>(moved), [&] { return asian_strip_price(strip); });
}

bool is_per_month(Result result) {
  return result == Result::delta || result == Result::gamma || result == Result::vega ||
         result == Result::by_volume || result == Result::vega_by_price;
}

// The results of is_per_month. F and `other` have room for the strip.
void month_sensitivities(const AsianStrip& strip, Result result, int first_month, int last_month, double* F,
                         double* other, double* out) {
  const bool to_price = result == Result::delta || result == Result::gamma;
  const bool to_volume = result == Result::by_volume;
  AsianStrip moved = strip;
  moved.F = F;
  (to_volume ? moved.u : moved.sigma) = other;
  std::copy(strip.F, strip.F + strip.L, F);
  const double* unmoved_other = to_volume ? strip.u : strip.sigma;
  std::copy(unmoved_other, unmoved_other + strip.L, other);
  double price_sum = 0.0;
  for (int i = 0; i < strip.L; ++i) price_sum += F[i];
  const double h = 0.0001 * (price_sum / strip.L);

  const auto sensitivity = [&](int i, double base_price, Moved what) {
    double& input = to_price ? F[i] : other[i];
    const double unmoved = input;
    input = to_price ? unmoved + h : unmoved * 1.0001;
    const double change = price_after(what, moved) - base_price;
    input = unmoved;
    return change / (to_price ? h : unmoved * 0.0001);
  };

  const Moved own = to_price    ? Moved::price_of_month
                    : to_volume ? Moved::something_else
                                : Moved::volatility_of_month;
  double base_price = price_after(Moved::nothing, moved);
  for (int i = first_month; i <= last_month; ++i) out[i - first_month] = sensitivity(i - 1, base_price, own);
  if (result != Result::gamma && result != Result::vega_by_price) return;
  for (int i = 0; i < strip.L; ++i) F[i] += h;
  base_price = price_after(Moved::all_prices, moved);
  for (int i = first_month; i <= last_month; ++i) {
    double& sensitivity_before = out[i - first_month];
    sensitivity_before = (sensitivity(i - 1, base_price, Moved::something_else) - sensitivity_before) / h;
  }
}

}  // namespace

double asian_strip_price(const AsianStrip& strip) {
  if (strip.L < 1 || !(strip.m >= 0.0)) return not_a_number;
  const double m = strip.m;
  double N = 0.0;
  double W = 0.0;
  for (int i = 0; i < strip.L; ++i) {
    N += strip.n[i];
    W += strip.n[i] * fixing_volume(strip, i);
  }
  const double Wm = made_volume(strip);
  const double latest = latest_fixing(strip, 0);
  if (latest <= 0.0 || N - m < 1.0 || W == Wm) return settled_price(strip, strip.K, W, Wm);

  int first = 0;
  double count = strip.n[0];
  while (m > 0.0 && !(m < count) && first < strip.L - 1) count += strip.n[++first];
  const double first_count = count - m;

  if (strip.positive_prices)
    for (int i = first; i < strip.L; ++i)
      if (strip.F[i] < 0.0 && (i == first ? first_count : strip.n[i]) * fixing_volume(strip, i) != 0.0)
        return not_a_number;

  double K = strip.K;
  double share = 1.0;
  if (m > 0.0) {
    K = (W * strip.K - Wm * strip.A) / (W - Wm);
    share = (W - Wm) / W;
    if (!(K >= 0.0)) {
      double sum = first_count * fixing_volume(strip, first) * strip.F[first];
      for (int i = first + 1; i < strip.L; ++i) sum += strip.n[i] * fixing_volume(strip, i) * strip.F[i];
      return strip.ToExp < 0.0 ? 0.0 : discounted_payoff(strip, strip.K, (Wm * strip.A + sum) / W);
    }
  }

  WorkArray w(strip.L);
  if (!w) return not_a_number;
  const double T = first == 0 ? latest : latest_fixing(strip, first);
  return share * outstanding_price(strip, first, first_count, T, K, w);
}

void asian_strip_sens(const AsianStrip& strip, int RetType, int first_month, int last_month, double* out) {
  out[0] = not_a_number;
  const int L = strip.L;
  const Result result{RetType};
  if (L < 1 || (is_per_month(result) && (first_month < 1 || last_month < first_month || last_month > L)))
    return;

  AsianStrip moved = strip;
  switch (result) {
    case Result::premium:
      out[0] = price_after(Moved::nothing, strip);
      return;
    case Result::rho:
      moved.r += 0.0001;
      out[0] = (asian_strip_price(moved) - price_after(Moved::nothing, strip)) / 0.0001;
      return;
    case Result::by_correlation:
      moved.rho += 0.0001;
      out[0] = (asian_strip_price(moved) - price_after(Moved::nothing, strip)) / 0.0001;
      return;
    case Result::by_volume:
      if (strip.u) break;
      std::fill_n(out, last_month - first_month + 1, 0.0);
      return;
    default:
      break;
  }
  if (!is_per_month(result) && result != Result::theta_with_fixing && result != Result::theta_of_time) return;

  WorkArray first_copy(L), second_copy(L);
  if (!first_copy || !second_copy) return;
  if (is_per_month(result))
    month_sensitivities(strip, result, first_month, last_month, first_copy, second_copy, out);
  else
    out[0] = (price_one_day_on(strip, result == Result::theta_with_fixing, first_copy, second_copy) -
              price_after(Moved::nothing, strip)) /
             one_day;
}

double asian_strip(AsianStrip strip, int RetType, int RetMonth) {
  double result = not_a_number;
  if (strip.L < 1) return result;
  WorkArray n(strip.L);
  if (!n) return result;
  for (int i = 0; i < strip.L; ++i) n[i] = std::trunc(strip.n[i]);
  strip.n = n;
  strip.OptType %= 10;
  asian_strip_sens(strip, RetType, RetMonth, RetMonth, &result);
  return result;
}

}  // namespace kestran
