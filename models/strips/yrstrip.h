// Options on every day of a year's months, each month on its own forward price and weighted with quantity.
#pragma once

namespace kestran {

/// The months of the strip, month 1 at index 0 of each array.
struct YearStrip {
  const double* Price = nullptr;   // forward price of every day of the month
  const double* Strike = nullptr;  // fixed strike, or for one still to be set what it would be today
  const double* IntRt = nullptr;   // interest rate, continuous, per year
  const double* Vol = nullptr;     // volatility, per year
  const double* ToSet = nullptr;   // days until the strike is set; 0 or less when it is fixed
  const double* Beg = nullptr;     // days to the first day of the month, truncated; may be past
  const double* End = nullptr;     // days to its last day, truncated
  const double* Qty = nullptr;     // quantity of the whole month, spread evenly over its days
  int L = 0;                       // number of months
  double AnnualQty = 0.0;          // quantity the results are per unit of; 0 or less for the sum of Qty
  int OptType = 0;                 // 0 put, any other value call
};

/// Days a month may have ahead of it: a century of them. More would keep the caller waiting.
constexpr double yrstrip_most_days = 36525.0;

/// Whether every month stays within yrstrip_most_days; not so where a day is not a number.
bool yrstrip_is_bounded(const YearStrip& strip);

/// Premium and sensitivities of a strip of European options, one expiring on each day of the months, by
/// Black's formula with bs_call_sens and bs_put_sens (Black 1976). A month whose strike is still to be set
/// has forward-start options (Rubinstein 1991, "Pay now, choose later", Risk 4): on the day ToSet the strike
/// becomes the same multiple of that day's price as Strike is of Price today. On return out holds, per unit
/// of AnnualQty,
///   0 premium   1 delta, to all prices moving together   2 gamma   3 vega, per 1.00 of all volatilities
///   4 sensitivity to all rates moving together, per 1.00   5 theta, change of value per year as time passes
///   6 change of delta with volatility
/// A day is 1/365.25 year. Days before today contribute nothing, their options being settled; the option of
/// today, or of a day not after ToSet, is worth its discounted intrinsic value. A month with End before Beg
/// is left out. Exact for lognormal prices but for cnorm (7.5e-8 of Price and Strike). In months longer than
/// 128 days those beyond two years go by blocks, within 4e-11 of Price of the day-by-day sum.
///
/// A strip that is not bounded makes every result not a number, and so does a Price below 0 with days to
/// come. Nothing else is checked: a Price of 0 stays 0 and a Strike of 0 leaves a call the forward (both 0
/// are not a number, and neither is a Strike below 0 or no quantity).
void yrstrip_value(const YearStrip& strip, double out[7]);

}  // namespace kestran
