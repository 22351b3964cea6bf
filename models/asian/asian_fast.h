// Options on the average of daily prices: a fast approximation.
#pragma once

namespace kestran {

/// European option on the arithmetic average of N evenly spaced fixings of a futures price, m of them made: a
/// Black price at the volatility of the average, and for calls a correction (asian_call_correction). Puts
/// have none, so call and put do not keep parity; both are intended. Fixings made enter through the strike.
///
/// S price (futures or forward), K strike, r interest rate (continuous, per year), sigma volatility (per
/// year), A average of the fixings made, N fixings in all, m fixings made, t1 years to the next fixing, T
/// years to the last one, when the option expires and pays. OptType 0 put, any other value call. On return
/// out holds
///   0 price   1 delta   2 gamma   3 vega, per 1.00 of volatility
///   4 -T times the price without the correction: the sensitivity to the rate, as for futures
///   5 theta, change of value per year as time passes; with fixings made, the difference over one day on
///     which a fixing comes in at S
///   6 change of delta with volatility
/// Sensitivities other than that theta do not see the correction. Results below 1e-20 are 0, and so is a call
/// below 1e-7 of S.
///
/// All fixings made (m >= N): the discounted payoff on A. m < 0 counts as 0. With fixings to come and T <= 0
/// the results are not numbers; nothing else is checked.
///
/// Largest error of a price without fixings made, undiscounted, in units of S, against the exact value for
/// the discrete average (the average-price equation solved numerically), S/K from 0.7 to 1.5, t1/T from 0 to
/// 0.95:
///   sigma sqrt(T)           0.1      0.16     0.25     0.4      0.63     1        1.6      2.5
///   call, 250 fixings       2e-5     4e-5     6e-5     1.6e-4   6e-4     2.5e-3   1.3e-2   6.7e-2
///   call,  21 fixings       3e-5     5e-5     1.2e-4   3e-4     9e-4     3.3e-3   1.5e-2   7e-2
///   call,   5 fixings       6e-5     1.6e-4   4e-4     1e-3     2.5e-3   7e-3     2.3e-2   8e-2
///   put,  250 fixings       8e-5     2e-4     5e-4     1.3e-3   3.3e-3   7e-3     1.6e-2   3.4e-2
/// Under 0.025 a call may be wrong by 8e-5, as the correction is then off its table; a put is within 5e-6
/// there. Above 0.4 the call's error is almost wholly too high a price, at 1.6 about 5 % of it: use
/// asian_geo_cond there.
void asn_model(double S, double K, double r, double sigma, double A, int N, int m, double t1, double T,
               int OptType, double out[7]);

/// The price of asn_model alone, the same to the last bit.
double asn_price(double S, double K, double r, double sigma, double A, int N, int m, double t1, double T,
                 int OptType);

}  // namespace kestran
