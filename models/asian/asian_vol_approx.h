// Options on the average of daily prices: the fast approximation with averaging counted in trading days.
#pragma once

namespace kestran {

/// The terms of an option on an average that is counted in trading days. With averaging begun toEnd - toStart
/// + 1 fixings are counted in all and toEnd rounded up to come; no number of days need be whole.
struct TradingDayAverage {
  double S = 0.0;          // price
  double K = 0.0;          // strike
  double r = 0.0;          // interest rate, continuous, per year
  double sigma = 0.0;      // volatility, per year
  double A = 0.0;          // average of the fixings made
  double toExp = 0.0;      // calendar days to payment
  double toStart = 0.0;    // trading days to the first fixing, <= 0 once averaging has begun
  double toEnd = 0.0;      // trading days to the last fixing
  double TradeDays = 0.0;  // trading days per year
  int OptType = 0;         // 0 put, any other value call
};

/// European option on the arithmetic average of a futures price, fixed every trading day and paid on a day of
/// its own: the approximation of asn_model (Black at the volatility of the average, for calls with the
/// correction of asian_call_correction; puts have none, which is intended).
///
/// On return out holds
///   0 price   1 delta   2 gamma   3 vega, per 1.00 of volatility
///   4 -years to the last fixing times the price without the correction: the sensitivity to the rate, as for
///     futures
///   5 theta, change of value as time passes: per year while the payoff is open (once averaging has begun,
///     less the price over the number of fixings), per day once it is certain
///   6 change of delta with volatility
/// Results below 1e-20 are 0, and so is a call below 1e-7 of S before discounting to payment.
///
/// toExp < 0 counts as 0. toEnd <= 0: averaging is over, the discounted payoff on A. TradeDays = 0 gives no
/// number; nothing else is checked.
void asian_vol_approx(const TradingDayAverage& option, double out[7]);

}  // namespace kestran
