// Warrants: options on new shares, with vesting and dilution.
#pragma once

namespace kestran {

/// The terms of a warrant. Rates are continuous, rates and volatilities per year.
struct Warrant {
  double S = 0.0;      // today's share price
  double K = 0.0;      // strike
  double r = 0.0;      // interest rate
  double q = 0.0;      // yield
  double sigma = 0.0;  // volatility of the firm's worth per share, shares and warrants together
  double tv = 0.0;     // years to vesting; <= 0 vested: American; from T on: European
  double T = 0.0;      // years to expiry
  double Nwar = 0.0;   // warrants outstanding; 0 is a warrant without dilution
  double Nshr = 0.0;   // shares outstanding
  int WarType = 0;     // 0 put warrant, any other value call warrant
};

/// Value or a sensitivity of a warrant that may be exercised from vesting to expiry. With m = Nwar / Nshr,
/// the firm is worth x = S + m W per share, and exercise of a call warrant brings (x - K) / (1 + m), of a
/// put warrant (the firm buys shares back) (K - x) / (1 - m): so (1 + m) W, for a put (1 - m) W, is the
/// Bermudan option without dilution on S + m W, a fixed point (Galai and Schneller 1978, "Pricing of warrants
/// and the value of the firm"; Lauterbach and Schultz 1990, "Pricing warrants"). The Bermudan option is
/// american_tree with 400 steps (errors up to 0.005 on 25 at five years), or bs_general where it is never
/// exercised early.
///
/// RetType, as in EuropeanResult:
///   0 value   1 delta and 2 gamma, to the share price   3 vega, per 1.00 of volatility
///   4 sensitivity to r and q moving together   5 theta, change of value per year as time passes
/// They follow from the fixed point differentiated; 3 and 4 with one-sided differences of the option over
/// 0.1 % of the volatility or the rate (0.0001 for one nearer zero).
///
/// An unknown RetType gives 99.0. S, K or Nshr <= 0, Nwar < 0, or a put warrant on all the shares or more:
/// -99.0. T <= 0 or not a number: RetType 0 is max(S - K, 0), for a put max(K - S, 0), every other RetType 0.
/// sigma <= 0 is taken as 1e-5. Other bad input and a lack of memory give not a number.
double warrant_value(const Warrant& warrant, int RetType);

/// Every result of warrant_value for one warrant: results[RetType], with its bits.
constexpr int warrant_results = 6;
void warrant_values(const Warrant& warrant, double results[warrant_results]);

}  // namespace kestran
