// The options of the benchmarks as priced by QuantLib, in the use in which it is fastest: its objects are
// made once, and a call changes one quote and asks for the price again.
#pragma once

#include <functional>

#include "models/rates/swaption.h"
#include "models/rates/xcap.h"

namespace kestran::bench::quantlib {

#ifdef KESTRAN_QUANTLIB
/// Whether the program was built with QuantLib; without it nothing below is defined, nor may be called.
constexpr bool available = true;
#else
constexpr bool available = false;
#endif

/// Prices by the argument that changes: the spot price where nothing else is said.
using Price = std::function<double(double)>;

/// The market of one asset.
struct Asset {
  double S, r, q, sigma;
};

/// Arguments in the units of the models; times are whole numbers of days. A call unless a function says
/// otherwise.

/// AnalyticEuropeanEngine
Price european(const Asset& asset, double K, int days);
/// The sum of BlackScholesCalculator's value and five greeks; discount factors and deviation are worked out
/// once
Price calculator(const Asset& asset, double K, int days);
/// The same engine on a payoff of Cash
Price digital(const Asset& asset, double Cash, double K, int days);
/// BaroneAdesiWhaleyApproximationEngine, put
Price american_quadratic(const Asset& asset, double K, int days);
/// BinomialVanillaEngine<CoxRossRubinstein>, put
Price american_tree(const Asset& asset, double K, int days, int steps);
/// VanillaOption::impliedVolatility by the premium; of an American put it is found by finite differences
Price implied_vol_european(const Asset& asset, double K, int days, double accuracy);
Price implied_vol_american(const Asset& asset, double K, int days, double accuracy);

/// AnalyticBarrierEngine, a barrier below the price
Price barrier(const Asset& asset, double K, int days, double H, double R, bool knock_in);
/// AnalyticContinuousFloatingLookbackEngine
Price lookback(const Asset& asset, double lowest, int days);
/// AnalyticCompoundOptionEngine, call on a call
Price compound(const Asset& asset, double X1, double X, int days1, int days2);
/// StulzEngine, call on the greater price, by the first price
Price rainbow(const Asset& asset1, const Asset& asset2, double rho, double K, int days);
/// AnalyticEuropeanMargrabeEngine, by the first price
Price exchange(const Asset& asset1, const Asset& asset2, double rho, int days);
/// bachelierBlackFormula, by the forward price
Price spread_of_forwards(double K, double r, double sigma, double T);
/// blackFormula on the ratio of the prices, by the first price
Price heat_rate(double SB, double K, double r, double sigma_A, double sigma_B, double rho, double T);

/// QuantoEngine<VanillaOption, AnalyticEuropeanEngine> times the fixed exchange rate E
Price quanto(const Asset& asset, double E, double K, double foreign_rate, double sigma_E, double rho,
             int days);
/// KirkEngine, by the first forward price
Price spread(const Asset& asset1, const Asset& asset2, double rho, double K, int days);

/// TurnbullWakemanAsianEngine on a fixing every day from tomorrow on
Price asian(const Asset& asset, double K, int fixings);

/// blackFormula for each period, by the factor on all prices
Price cap(const CapOption& option);
/// The same in the nodes at expiry of a tree that is rolled back, by the strike of the cap
Price option_on_cap(const CapOption& option);
/// InterestRate::discountFactor for each period and blackFormula on the average forward, premium only; by the
/// strike
Price swaption(const double* Fwd, const double* Qty, const double* Swaptime, const double* Rates,
               double Swapvol, double IntRt, double Expiry, int n);

/// BlackSwaptionEngine on monthly periods, by the volatility
Price black_swaption(int n);

/// The two bivariate normal distributions, by a
Price binorm_drezner(double b, double rho);
Price binorm_west(double b, double rho);

}  // namespace kestran::bench::quantlib
