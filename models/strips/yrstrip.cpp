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
  if (left > 0.0)
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
    for (double k = 0.0; k < days.ahead; ++k) add_day(strip, i, days.first + k, strip.Qty[i] / days.all, out);
  }
  const double referred = strip.AnnualQty <= 0.0 ? quantity : strip.AnnualQty;
  for (int k = 0; k < 7; ++k) out[k] /= referred;
}

}  // namespace kestran
