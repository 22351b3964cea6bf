// Average-price options whose fixings run across a strip of delivery months.
#pragma once

#include "models/repricings.h"

namespace kestran {

/// Premiums that several results need, those of one month of the same.
using AsianStripKept = KeptPrices<4>;

/// The terms of an average-price option on a strip, month 1 at index 0 of each array. The fixings run through
/// the months in order. In the average a fixing counts by its month's daily volume, or all fixings the same
/// where no volumes are given.
struct AsianStrip {
  const double* F = nullptr;       // futures price of each month
  double K = 0.0;                  // strike of the average
  double r = 0.0;                  // interest rate, continuous, per year
  const double* sigma = nullptr;   // volatility of each month, per year
  double rho = 0.0;                // correlation between months
  double A = 0.0;                  // average of the fixings made, weighted by volume
  const double* n = nullptr;       // number of fixings of each month, made or not: whole numbers
  double m = 0.0;                  // number of fixings made over the whole strip: a whole number
  const double* Next = nullptr;    // years to each month's next outstanding fixing
  const double* End = nullptr;     // years to each month's last fixing
  double ToExp = 0.0;              // years to payment
  int OptType = 0;                 // 0 put, any other value call
  int L = 0;                       // number of months
  const double* u = nullptr;       // daily volume of each month, in any unit; null: all the same
  bool positive_prices = false;    // whether a negative price that counts makes the option not a number
  AsianStripKept* kept = nullptr;  // what other results of one call worked out; null where months differ
};

/// Premium of the option. The average of the outstanding fixings is taken as one lognormal variable, its
/// variance linearised (compare the full match of moments of Levy 1992): month i has the deviation n sigma F
/// sqrt(Next + (End - Next)(n - 0.5) / (3 n)) and is correlated with an earlier month j by rho sqrt(End(j) /
/// End(i)). Fixings made move the strike. The premium at the last fixing is carried to the payment at r,
/// before it as well as after it.
///
/// Error against simulations of the fixings (tools/measure-accuracy: 2 to 12 months, volatilities of 10 to
/// 100 %, price / strike 0.7 to 1.4), as a share of the premium at the money: half of the deals within 0.4 %,
/// 95 % within 1.5 %, all from 3.3 % below to 1.3 % above; with volumes that differ up to five times from
/// 3.4 % below to 1.5 % above.
///
/// With nothing left to fix the result is the payoff of the settled average, the last month's price
/// standing for fixings that are missing; with an average set so high that the call cannot end worthless, the
/// payoff of the expected average. Both are discounted over ToExp; when that is negative the former is not
/// discounted and the latter is 0. Fixings without volume leave nothing to fix.
///
/// Nothing is checked: a month without fixings or a last fixing at End = 0 give not a number where they
/// enter, and so do L < 1, m < 0, no volume at all and a lack of memory, and a rho that makes the variance
/// negative: for three equal months from -0.85 (the first fixing today) or -0.52 (in a year) down, for twelve
/// from -0.14 or -0.10. Above that and below -1 / (L - 1), where no such correlations exist, the result is a
/// number all the same. Prices that are not positive give what the arithmetic gives, or with positive_prices
/// not a number while a month priced below 0 has fixings to come that count; a price of 0 stays 0, and a
/// month without volume is not looked at.
double asian_strip_price(const AsianStrip& strip);

/// Premium or sensitivities by repricing with small moves (h is 0.0001 of the mean of the L prices):
///   0 premium
///   1 delta of each month: its price up by h
///   2 change of each month's delta as all prices rise by h, per 1.00 of price
///   3 vega of each month, per 1.00 of volatility: its volatility up by 0.01 % (not a number for none, nor is
///     result 9)
///   4 rho: rate up by 0.0001, per 1.00 of rate
///   5 theta per year from one calendar day, with today's fixing made at its month's price when one is due
///   6 theta per year from one calendar day, time passing only
///   7 sensitivity to each month's volume, per unit of it: up by 0.01 % (not a number for no volume); 0 for
///     each month where no volumes are given
///   8 sensitivity to the correlation: up by 0.0001, per 1.00
///   9 change of each month's vega as all prices rise by h, per 1.00 of price
/// Results 1, 2, 3, 7 and 9 are worked out for the months first_month .. last_month (1 is the first) and
/// stored from out[0] on; the others are one number, out[0]. An unknown RetType, or months outside 1 .. L
/// where they matter, give not a number in out[0].
void asian_strip_sens(const AsianStrip& strip, int RetType, int first_month, int last_month, double* out);

/// The one number that a worksheet shows: the RetType of asian_strip_sens, for month RetMonth where that is a
/// result per month (and not looked at otherwise). Counts of fixings are truncated to whole numbers; of
/// OptType only the last decimal digit is read.
double asian_strip(AsianStrip strip, int RetType, int RetMonth);

}  // namespace kestran
