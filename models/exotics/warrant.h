// Warrants: options on new shares, with vesting and dilution.
#pragma once

namespace kestran {

/// Value or a sensitivity of a warrant that may be exercised from vesting to expiry. With m = Nwar / Nshr,
/// the firm is worth x = S + m W per share, and exercise of a call warrant brings (x - K) / (1 + m), of a
/// put warrant (the firm buys shares back) (K - x) / (1 - m): so (1 + m) W, for a put (1 - m) W, is the
/// Bermudan option without dilution on S + m W, a fixed point (Galai and Schneller 1978, "Pricing of warrants
/// and the value of the firm"; Lauterbach and Schultz 1990, "Pricing warrants"). The Bermudan option is
/// american_tree with 400 steps (errors up to 0.005 on 25 at five years), or bs_general where it is never
/// exercised early.
///
/// S today's share price, K strike, r interest rate and q yield (continuous, per year), sigma volatility (per
/// year) of the firm's worth per share, shares and warrants together; tv years to vesting (<= 0 vested:
/// American; from T on: European), T years to expiry, Nwar warrants and Nshr shares outstanding. WarType 0
/// put warrant, any other value call warrant. Nwar = 0 is a warrant without dilution. RetType, as in
/// EuropeanResult:
///   0 value   1 delta and 2 gamma, to the share price   3 vega, per 1.00 of volatility
///   4 sensitivity to r and q moving together   5 theta, change of value per year as time passes
/// They follow from the fixed point differentiated; 3 and 4 with one-sided differences of the option over
/// 0.1 % of the volatility or the rate (0.0001 for one nearer zero).
///
/// An unknown RetType gives 99.0. S, K or Nshr <= 0, Nwar < 0, or a put warrant on all the shares or more:
/// -99.0. T <= 0 or not a number: RetType 0 is max(S - K, 0), for a put max(K - S, 0), every other RetType 0.
/// sigma <= 0 is taken as 1e-5. Other bad input and a lack of memory give not a number.
double warrant_value(double S, double K, double r, double q, double sigma, double tv, double T, double Nwar,
                     double Nshr, int WarType, int RetType);

}  // namespace kestran
