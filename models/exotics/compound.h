// Options on options.
#pragma once

#include "models/repricings.h"

namespace kestran {

/// Premiums that several results need: as the terms are, and with the price up.
using CompoundKept = KeptPrices<2>;

/// Results of an option on an option, by their number on the worksheet.
enum class CompoundResult : int {
  premium,
  delta,
  gamma,
  vega,
  rho,
  theta,
};

/// Premium of a European call on a forward price (Black 1976), normal distribution by cnorm. F forward price,
/// X strike, days to expiry (of 365.25 to the year), r interest rate (continuous, per year), sigma volatility
/// (per year). Nothing is checked: bad input gives not a number.
double black76_call(double F, double X, double days, double r, double sigma);

/// Premium of the put; arguments and bad input as in black76_call.
double black76_put(double F, double X, double days, double r, double sigma);

/// The forward price at which the option above (the put when `put` is set) is worth `target`: the first
/// midpoint, as lo..hi is halved, whose premium is within 0.0001 of it. Gives exactly the midpoint of a plain
/// bisection, but prices only those that decide. Where the halving comes to rest without such a midpoint, or
/// `target` or a premium is not a number, the answer is lo when the lower end never moved, otherwise hi.
double compound_critical_price(double target, double X, double days, double r, double sigma, double lo,
                               double hi, bool put);

/// The terms of an option on an option. Rates are continuous, rates and volatilities per year.
struct CompoundOption {
  double S = 0.0;        // price of the underlying
  double X1 = 0.0;       // strike of the option held
  double X = 0.0;        // strike of the option under it
  double days1 = 0.0;    // days to the expiry of the option held
  double days2 = 0.0;    // and of the option under it
  double r = 0.0;        // interest rate
  double q = 0.0;        // yield
  double sigma_f = 0.0;  // volatility between the two expiries
  double sigma = 0.0;    // volatility from now to the second
  int OptType = 0;       // 1 call on a call, 2 put on a call, 3 call on a put, 4 put on a put, 5 see below
};

/// Premium of an option on an option (Geske 1979, "The valuation of compound options"), with binorm and
/// cnorm: measured within 1e-5 of the greater of S and X.
///
/// The volatility of the stretch to the first expiry follows from the two given; OptType 5 gives it and no
/// premium. The year has 365.35 days here, but 365.25 where the option under is valued at the first expiry,
/// and there the price is taken as a forward: both intended.
///
/// Volatilities that contradict each other (a negative variance of the first stretch) give -1 whatever the
/// OptType; an unknown OptType -999999999.999. Nothing else is checked: days1 or days2 of 0 give what the
/// arithmetic gives.
double compound_price(const CompoundOption& option);

/// Premium or a sensitivity by re-pricing. Steps are 0.1 % of the argument unless said otherwise; the
/// sentinels of compound_price are differenced like premiums. RetType:
///   0 premium   1 delta   2 gamma   3 both volatilities moved, per 1.00 of sigma
///   4 r and q moved by the same part, per 1.00 of r; 0 when r is 0
///   5 theta per year, change of value as time passes: over 0.001 days, or 1e-6 when days1 <= 0.001
///
/// Another RetType is not a number.
///
/// kept: what other results of the same call worked out, null for nothing.
double compound_greek(const CompoundOption& option, int RetType, CompoundKept* kept = nullptr);

}  // namespace kestran
