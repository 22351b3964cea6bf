// Black-Scholes premiums together with all their sensitivities, time in days.
#pragma once

namespace kestran {

/// Premium of a European call on a price with a continuous yield (Black and Scholes 1973, Merton 1973) and
/// its sensitivities; normal distribution by cnorm (so the premium carries up to 7.5e-8 of S and K).
///
/// S price, K strike, days calendar days to expiry (a year has 365.25), r interest rate and q yield
/// (continuous, per year), sigma volatility (per year). On return out holds
///   0 delta   1 gamma   2 vega, per 1.00 of volatility   3 rho, r alone
///   4 theta, change of value per year as time passes
///   5 -years times the premium: the sensitivity to r and q moving together, as for futures
///   6 change of delta with volatility
///
/// No argument is checked: no time left, no volatility or a non-positive price gives what the arithmetic
/// gives.
double bs_call_sens(double S, double K, double days, double r, double q, double sigma, double out[7]);

/// The put to bs_call_sens: same arguments, same order of results.
double bs_put_sens(double S, double K, double days, double r, double q, double sigma, double out[7]);

}  // namespace kestran
