// Strips of daily options on one forward price, with a fixed strike or one that is set later.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "models/repricings.h"

namespace kestran {
struct AgedOptionStrip;
using OptionStripRepricings = Repricings<AgedOptionStrip, std::array<double, 2>, 20>;

/// The terms of a strip of European options, one expiring on each day from B to E on that day's price of one
/// forward. Days are counted from today; a day is 1/365.25 year.
struct OptionStrip {
  double F = 0.0;              // forward price of every day of the strip
  double K = 0.0;              // reference price of the strike, not looked at while it is still to be set
  double NowToSet = 0.0;       // days until the strike is set and the volatility changes
  int B = 0;                   // days to the first option's expiry; negative once the strip is running
  int E = 0;                   // days to the last one's
  std::int64_t FwdStFlag = 0;  // 0 fixed price; else the strike is set in NowToSet days, if that is above 0
  double r = 0.0;              // interest rate, continuous, per year
  double sigma_before = 0.0;   // volatility until the setting day, per year
  double sigma_after = 0.0;    // and from then on
  double pct = 1.0;            // the strike is pct times its reference price plus basis
  double basis = 0.0;
  std::int64_t OptType = 0;  // 0 put, any other value call; as wide as its neighbours, like the flag
  OptionStripRepricings* kept = nullptr;  // what other results of the same call worked out; null for nothing
};

/// A strip `age` days on.
struct AgedOptionStrip {
  double age;
  OptionStrip strip;
};
template <>
inline constexpr std::size_t bytes_of_terms<AgedOptionStrip> = offsetof(AgedOptionStrip, strip) +
                                                               offsetof(OptionStrip, kept);
static_assert(bytes_of_terms<AgedOptionStrip> == 12 * sizeof(double));

/// Days a strip may have ahead of it: a century of them. More would keep the caller waiting.
constexpr double ostrip_most_days = 36525.0;

/// Black's formula (Black 1976, equation 16) in the variance v of the logarithm until expiry: F forward
/// price, K strike, D discount factor, OptType 0 put, any other value call. K <= 0 or v <= 0 gives the
/// discounted intrinsic value.
double black_variance(double F, double K, double v, double D, int OptType);

/// The strip's premium per unit of a level daily quantity, that is the average over all days from B to E, in
/// out[0], and the average of premium times years to expiry in out[1], after the clock has moved on by `age`
/// days at an unchanged price.
///
/// The strike's reference price is K, or on a forward start (FwdStFlag other than 0, NowToSet above 0) the
/// price on the setting day. Forward starts without a basis have a closed form (Rubinstein 1991, "Pay now,
/// choose later", Risk 4); with a basis they are spread options between the price at expiry and pct times
/// that of the setting day, and priced by spread_kernel. An option that expires before the strike is set is
/// worth the intrinsic value against the strike of its own day.
///
/// Exact for a lognormal price but for cnorm, within 2e-7 of F, with a basis also but for spread_kernel:
/// within 4e-7 of F up to a deviation of 0.8 until the setting day, 3e-6 up to 1.5. With a basis and more
/// than 18 days to come, those before the setting and those after it are interpolated (add_days_by_layout):
/// within 1e-9 of F of the day-by-day mean, mostly 1e-11.
///
/// Past days have no value and count in the average. A strip without days (E < B) or without days to come (E
/// < 0) is worth 0; with more than ostrip_most_days to come the results are not a number. Nothing else is
/// checked but the price: F below 0 with variance to come is not a number. F of 0 stays 0, and a strike that
/// is not positive leaves a call the forward less the strike.
void ostrip_price(const OptionStrip& strip, int age, double out[2]);

/// Premium or a sensitivity of the strip, by repricing:
///   0 premium
///   1 delta and 2 gamma, from moves of F by 0.1 % (a strike still to be set moves with the price)
///   3 vega, both volatilities up by 0.0001, per 1.00
///   4 sensitivity to r, per 1.00: minus the average of premium times years to expiry
///   5 theta, change over one day per year; an option expiring today keeps its value
///   6 change of delta as both volatilities rise by 0.0001, per 1.00
///   7 and 8 vega by the volatility before and after the setting day alone
///   9 sensitivity to basis, from moves of 0.001 F up and down, per 1.00
///   10 sensitivity to pct, from moves of 0.001 up and down (down to 0 at most, when it is not below),
///   per 1.00
/// Any other RetType gives 99.0.
double ostrip_greek(const OptionStrip& strip, int RetType);

}  // namespace kestran
