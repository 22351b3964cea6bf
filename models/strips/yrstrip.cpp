#include "models/strips/yrstrip.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "models/black_scholes/black_scholes_sens.h"
#include "models/calendar.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

// The days of a month that the calendar holds and those of them that lie ahead, at least today's.
struct MonthDays {
  double first;  // ahead
  double ahead;  // how many, 0 or less when the month is over or left out
  double all;
};

MonthDays month_days(const YearStrip& strip, int i) {
  const double Beg = std::trunc(strip.Beg[i]);
  const double End = std::trunc(strip.End[i]);
  const double first = Beg < 0.0 ? 0.0 : Beg;
  const double all = End - Beg + 1.0;
  return {first, End < Beg ? 0.0 : End - first + 1.0, all};
}

// Adds the results of month i's option on day d, times `weight`.
void add_day(const YearStrip& strip, int i, double d, double weight, double out[7]) {
  const double F = strip.Price[i];
  const double K = strip.Strike[i];
  const double r = strip.IntRt[i];
  const bool call = strip.OptType != 0;
  const bool to_be_set = !(strip.ToSet[i] <= 0.0);
  const double set_day = to_be_set ? std::min(strip.ToSet[i], d) : 0.0;
  const double discount = exponential(-r * set_day * one_day);
  const double left = d - set_day;

  double g[7] = {};
  double V;
  if (F < 0.0 && d > 0.0)
    V = std::numeric_limits<double>::quiet_NaN();
  else if (left > 0.0)
    V = discount * (call ? bs_call_sens : bs_put_sens)(F, K, left, r, r, strip.Vol[i], g);
  else
    V = discount * positive_part(call ? F - K : K - F);
  out[0] += weight * V;
  out[3] += weight * discount * g[2];
  out[4] -= weight * d * one_day * V;
  if (to_be_set) {
    out[1] += weight * V / F;
    out[5] += weight * r * V;
    out[6] += weight * discount * g[2] / F;
  } else {
    out[1] += weight * g[0];
    out[2] += weight * g[1];
    out[5] += weight * g[4];
    out[6] += weight * g[6];
  }
}

struct WeightedDay {
  double from_centre;
  double weight;
};

// Five days that stand for 128 consecutive ones: sums of polynomials of degree up to 9 are exact (the
// Gaussian rule of a sum, from the recurrence of Gram's polynomials in 40 digits).
constexpr int block_days = 128;
constexpr WeightedDay block[5] = {{-57.984409713450612761, 15.176264996626428608},
                                  {-34.452502040481194845, 30.624478098283997638},
                                  {0.0, 36.398513810179147507},
                                  {34.452502040481194845, 30.624478098283997638},
                                  {57.984409713450612761, 15.176264996626428608}};

// Whether a block of days from day d on is two years off and, where the strike is set before it, two years
// from that day, too: values then change too slowly for the five days to differ from all of them.
bool is_smooth_block(const YearStrip& strip, int i, double d) {
  constexpr double far = 730.0;
  const double set_day = positive_part(strip.ToSet[i]);
  return d >= far && (d - set_day >= far || d + block_days <= set_day);
}

}  // namespace

bool yrstrip_is_bounded(const YearStrip& strip) {
  for (int i = 0; i < strip.L; ++i)
    if (!(month_days(strip, i).ahead <= yrstrip_most_days)) return false;
  return true;
}

void yrstrip_value(const YearStrip& strip, double out[7]) {
  const bool bounded = yrstrip_is_bounded(strip);
  std::fill_n(out, 7, bounded ? 0.0 : std::numeric_limits<double>::quiet_NaN());
  if (!bounded) return;
  double quantity = 0.0;
  for (int i = 0; i < strip.L; ++i) {
    const MonthDays days = month_days(strip, i);
    quantity += strip.Qty[i];
    const double weight = strip.Qty[i] / days.all;
    for (double k = 0.0; k < days.ahead;) {
      const double d = days.first + k;
      if (k + block_days <= days.ahead && is_smooth_block(strip, i, d)) {
        const double centre = d + (block_days - 1) / 2.0;
        for (const WeightedDay& day : block)
          add_day(strip, i, centre + day.from_centre, weight * day.weight, out);
        k += block_days;
      } else {
        add_day(strip, i, d, weight, out);
        k += 1.0;
      }
    }
  }
  const double referred = strip.AnnualQty <= 0.0 ? quantity : strip.AnnualQty;
  for (int k = 0; k < 7; ++k) out[k] /= referred;
}

}  // namespace kestran
