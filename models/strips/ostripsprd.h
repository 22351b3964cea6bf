// Strips of daily options on the difference of two forward prices.
#pragma once

#include <array>
#include <cstddef>

#include "models/repricings.h"

namespace kestran {
struct AgedSpreadStrip;
using SpreadStripRepricings = Repricings<AgedSpreadStrip, std::array<double, 2>, 32>;

/// The terms of a strip of European options, one expiring on each day from B to E on that day's difference of
/// two forwards. Days are counted from today; a day is 1/365.25 year. Volatilities are per year, and taken as
/// 1e-5 when they are not above 0; correlations beyond 1 and -1 count as these.
struct SpreadStrip {
  double F1 = 0.0;        // forward price 1 of every day of the strip
  double F2 = 0.0;        // and forward price 2
  double sigma1_m = 0.0;  // volatility of price 1 until the setting day (that of the monthly contract)
  double sigma1_d = 0.0;  // and from then on (that of the daily price)
  double sigma2_m = 0.0;  // the same of price 2
  double sigma2_d = 0.0;
  double rho_m = 0.0;     // correlation of the two until the setting day
  double rho_d = 0.0;     // and from then on
  double K = 0.0;         // reference price of the strike, not looked at while it is still to be set
  double NowToSet = 0.0;  // days until the strike is set and volatilities and correlation change
  int B = 0;              // days to the first option's expiry; negative once the strip is running
  int E = 0;              // days to the last one's
  double r = 0.0;         // interest rate, continuous, per year
  double pct = 1.0;       // the strike is pct times its reference price plus basis
  double basis = 0.0;
  int FwdStFlag = 0;  // 0 fixed price; else the strike is set in NowToSet days, if that is above 0
  int OptType = 0;    // 0 put, any other value call: max(+-(price 1 - price 2 - strike), 0)
  SpreadStripRepricings* kept = nullptr;  // what other results of the same call worked out; null for nothing
};

/// A strip `age` days on.
struct AgedSpreadStrip {
  double age;
  SpreadStrip strip;
};
template <>
inline constexpr std::size_t bytes_of_terms<AgedSpreadStrip> = offsetof(AgedSpreadStrip, strip) +
                                                               offsetof(SpreadStrip, kept);
static_assert(bytes_of_terms<AgedSpreadStrip> == 16 * sizeof(double));

/// Days a strip may have ahead of it: ten years of them. More would keep the caller waiting.
constexpr double ostripsprd_most_days = 3653.0;

/// The strip's premium per unit of a level daily quantity, that is the average over all days from B to E, in
/// out[0], and the average of premium times years to expiry in out[1], after the clock has moved on by `age`
/// days at unchanged prices. Every option is priced by spread_kernel.
///
/// The strike's reference price is K, or on a forward start (FwdStFlag other than 0, NowToSet above 0) the
/// difference of the prices on the setting day; the premium is then averaged over both prices of that day by
/// the five-point Gauss-Hermite rule in each direction. An option that expires before the strike is set is
/// worth the intrinsic value against the strike of its own day.
///
/// With a fixed strike, exact for lognormal prices but for spread_kernel (see there). The rule's largest
/// error on one day's option, in units of F1, for pct from 0.9 to 1.1 and bases within 0.06 F1, by the
/// deviation of the prices until the setting day:
///   sigma_m sqrt(t)   0.11    0.23    0.45     0.8
///   error             1e-10   5e-8    4e-6     5e-5
///
/// While the strike is still to be set and more than 18 days are to come, those before the setting and those
/// after it are interpolated (add_days_by_layout), pairs of prices apart where spread_kernel jumps from one
/// day to the next: within 1e-11 of F1 of the day-by-day mean in 95 % of strips, 2e-8 in strips of many years
/// at high volatilities.
///
/// Past days have no value and count in the average. A strip without days (E < B) or without days to come (E
/// < 0) is worth 0; with more than ostripsprd_most_days to come the results are not a number. Nothing else is
/// checked but the prices: one below 0 with time to come is not a number. A price of 0 stays 0.
void ostripsprd_price(const SpreadStrip& strip, int age, double out[2]);

/// Premium or a sensitivity of the strip, by repricing, the relative moves being 0.1 %:
///   0 premium
///   1 and 2 delta, 3 and 4 gamma by price 1 and price 2 (a strike still to be set moves with the prices)
///   5 and 6 vega, both volatilities of price 1, of price 2 up by 0.0001, per 1.00
///   7 sensitivity to both correlations moving together, per 1.00: down by 0.001, up when neither is above 0
///   8 sensitivity to r, per 1.00: minus the average of premium times years to expiry
///   9 theta, change over one day per year; an option expiring today keeps its value
///   10 and 11 change of the deltas by price 1 and price 2 over one day, per year
///   12 cross gamma
///   13 and 14 vega by the volatility of price 1, of price 2 after the setting day alone
///   15 sensitivity to the correlation after the setting day alone: down by 0.001, up when it is not above 0
///   16 sensitivity to basis, up by 0.001 of the mean of F1 and F2, per 1.00
///   17 sensitivity to pct, up by 0.001, per 1.00
/// Any other RetType gives 99.0.
double ostripsprd_greek(const SpreadStrip& strip, int RetType);

}  // namespace kestran
