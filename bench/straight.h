// The models' formulas written down as a textbook states them, with the functions of <cmath>: what the models
// are measured against. Quantities a textbook gives a name are worked out once, but nothing is rearranged.
//
// Where a model has conventions of its own (days in a year, approximations of the normal distribution) these
// follow it, so that both give the same number. Only what the benchmarks price is here: no settled options,
// no bad input.
#pragma once

#include "models/rates/swaption.h"
#include "models/rates/xcap.h"
#include "models/strips/asian_strip.h"
#include "models/strips/ostrip.h"
#include "models/strips/yrstrip.h"

namespace kestran::straight {

/// Arguments and results as in the kestran functions that the comments name.

double cnorm(double x);
double normal_density(double x);
double binorm(double a, double b, double rho);

/// Premium and sensitivities of a European option, in the units of bs_general.
struct Greeks {
  double premium, delta, gamma, vega, rates_together, theta, vanna, charm;
};
Greeks european_greeks(double S, double K, double T, double r, double q, double sigma, int OptType);

/// bs_general
double european(double S, double K, double T, double r, double q, double sigma, int OptType, int RetType);
/// american_baw, premium; Newton's method from the seed of Barone-Adesi and Whaley
double american_quadratic(double S, double K, double T, double r, double q, double sigma, int OptType);
/// american_tree, premium; t0 must come after a whole number of steps
double american_tree(double S, double K, double T, double t0, double r, double q, double sigma, int OptType,
                     int N);
/// implied_vol_european: Newton's method
double implied_vol_european(double Premium, double S, double K, double T, double r, double q, double Accuracy,
                            int OptType);
/// implied_vol_american: bisection
double implied_vol_american(double Premium, double S, double K, double T, double r, double q, double MaxVol,
                            int OptType, int Nsteps, double Accuracy);

/// digital_option and cod_option, premium of the call
double digital(double Cash, double S, double K, double T, double r, double q, double sigma);
double cash_on_delivery(double S, double K, double T, double r, double q, double sigma, double Premium);
/// cod_premium of the call
double contingent_premium(double S, double K, double T, double r, double q, double sigma);
/// combo_option, premium of a put struck at KA with a call struck at KB (OptType 0)
double strangle(double S, double KA, double KB, double T, double r, double q, double sigmaA, double sigmaB);
/// boston_strike of the call type: bisection
double boston_strike(double S, double B, double T, double r, double q, double sigma);

/// barrier_price: all of the terms A to F, then their combination
double barrier(double S, double K, double sigma, double r, double q, double days, double H, double R,
               int OptType, int KnockType);
/// lookback_price for r != q
double lookback(double S, double K, double r, double q, double sigma, double days, int OptType,
                double daysPerYear);
/// compound_price of a call on a call; the critical price by bisection
double compound(double S, double X1, double X, double days1, double days2, double r, double q, double sigma_f,
                double sigma);
/// rainbow_price, OptType 1 and 5
double rainbow(double S1, double S2, double X, double r, double q1, double q2, double T, double sigma1,
               double sigma2, double rho, int OptType);
/// wilcox_spread, premium of the call
double spread_of_forwards(double F, double K, double r, double sigma, double T);
/// heat_rate_option, premium of the call
double heat_rate(double SA, double SB, double K, double r, double sigma_A, double sigma_B, double rho,
                 double T);
/// quanto_option, premium of the call with a fixed exchange rate (Qtype 3)
double quanto(double E, double S, double K, double rd, double rf, double q, double sigma_S, double sigma_E,
              double rho, double T);
/// spread_option, premium of the call for a strike from 0 on and volatilities of like size
double spread(double SA, double SB, double K, double r, double sigma_A, double sigma_B, double rho, double T);
/// warrant_value of a call warrant: W repeatedly put into its own equation
double warrant(double S, double K, double r, double q, double sigma, double tv, double T, double Nwar,
               double Nshr);

/// asn_model of a call without fixings made
void asian_fast(double S, double K, double r, double sigma, int N, double t1, double T, double out[7]);
/// asian_geo_cond, premium of a call without fixings made
double asian_geo_cond(double S, double K, double r, double q, double sigma1, double sigma2, int E, int B);
/// asian_vol_approx of a call without fixings made
void asian_vol_approx(double S, double K, double r, double sigma, double toExp, double toStart, double toEnd,
                      double TradeDays, double out[7]);

/// asian_strip_price of a call without fixings made
double asian_strip(const AsianStrip& strip);
/// ostrip_price of calls with a fixed strike, none past or of today
double option_strip(const OptionStrip& strip);
/// yrstrip_value of calls with fixed strikes, none past or of today
void year_strip(const YearStrip& strip, double out[7]);

/// basket_vol_moment_match
double basket_vol(const double* F, const double* sigma, const double* mu, const double* w, const double* rho,
                  int n, double T);
/// basket_vol_tset
double basket_vol_tset(const double* F, const double* sigma, const double* w, const double* Tset,
                       const double* packed_correl, double T, int n);

/// basket_correl_tset; the components of the first basket come before those of the second
double basket_correl(const double* F, const double* sigma, const double* w, const double* Tset,
                     const double* packed_correl, double T, int n1, int n2);

/// capfloor_strip_value of a cap on the periods of `option`
double cap(double m, const CapOption& option);
/// xcap_tree of a call on a cap: the whole tree rolled back
double option_on_cap(const CapOption& option);
/// swaption_model of a call, or swaption1_model where Strikes are given instead of Strike
void swaption(const double* Fwd, const double* Qty, const double* Swaptime, const double* Rates,
              const double* Strikes, double Strike, double Swapvol, double IntRt, double Expiry, int n,
              SwaptionRecord& record);

}  // namespace kestran::straight
