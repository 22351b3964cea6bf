#include "bench/cases.h"
#include "bench/straight.h"
#include "models/black_scholes/american_baw.h"
#include "models/black_scholes/american_tree.h"
#include "models/black_scholes/boston.h"
#include "models/black_scholes/combo.h"
#include "models/black_scholes/digital.h"
#include "models/black_scholes/european.h"
#include "models/black_scholes/implied_vol.h"
#include "numerics/bivariate_normal.h"

namespace kestran::bench {
namespace {

constexpr double S = 100.0, K = 105.0, r = 0.06, q = 0.03, sigma = 0.25;
constexpr int days = 180;
constexpr double T = days / 365.25;
constexpr quantlib::Asset asset = {S, r, q, sigma};

void add_european() {
  Case& premium = add_case("EURO", S, S);
  add_worksheet(premium, "EURO", {S, K, r, q, sigma, days, 1, 0}, 0);
  add_model(premium, [](double price) { return bs_general(price, K, T, r, q, sigma, 1, 0); });
  add_straight(premium, [](double price) { return straight::european(price, K, T, r, q, sigma, 1, 0); });
  if constexpr (quantlib::available)
    add_quantlib(premium, "AnalyticEuropeanEngine, with greeks", same_option,
                 quantlib::european(asset, K, days));
}

void add_american_quadratic() {
  Case& option = add_case("AMER", S, S);
  add_worksheet(option, "AMER", {S, K, r, q, sigma, days, 0, 0}, 0);
  add_model(option, [](double price) { return american_baw(price, K, T, r, q, sigma, 0, 0); });
  add_straight(option,
               [](double price) { return straight::american_quadratic(price, K, T, r, q, sigma, 0); });
  if constexpr (quantlib::available)
    add_quantlib(option, "BaroneAdesiWhaleyApproximationEngine", same_option,
                 quantlib::american_quadratic(asset, K, days));
}

void add_american_tree(int steps) {
  Case& option = add_case("AMERB/" + std::to_string(steps), S, S);
  add_worksheet(option, "AMERB", {S, K, r, q, sigma, days, 0, double(steps), 0}, 0);
  add_model(option, [=](double price) { return american_binomial(price, K, T, r, q, sigma, 0, steps, 0); });
  add_straight(
      option, [=](double price) { return straight::american_tree(price, K, T, 0.0, r, q, sigma, 0, steps); });
  // One tree, which is less exact than the two that the model extrapolates.
  if constexpr (quantlib::available)
    add_quantlib(option, "BinomialVanillaEngine<CoxRossRubinstein>", 5e-4,
                 quantlib::american_tree(asset, K, days, steps));
}

void add_implied_volatilities() {
  constexpr double call_premium = 6.0, put_premium = 9.0, accuracy = 1e-8, greatest = 2.0;
  Case& european = add_case("EIMPVOL", call_premium, 1.0);
  add_worksheet(european, "EIMPVOL", {1, call_premium, S, K, days, r, q, greatest, accuracy, 100}, 1);
  add_model(european, [](double premium) {
    return implied_vol_european(1, premium, S, K, T, r, q, greatest, accuracy, 100);
  });
  add_straight(european, [](double premium) {
    return straight::implied_vol_european(premium, S, K, T, r, q, accuracy, 1);
  });
  if constexpr (quantlib::available)
    add_quantlib(european, "VanillaOption::impliedVolatility", same_option,
                 quantlib::implied_vol_european(asset, K, days, accuracy));

  Case& american = add_case("IMPVOLAB/100", put_premium, 1.0);
  add_worksheet(american, "IMPVOLAB", {put_premium, S, K, r, q, greatest, days, 0, 100, accuracy}, 0);
  add_model(american, [](double premium) {
    return implied_vol_american(premium, S, K, T, r, q, greatest, 0, 100, accuracy);
  });
  add_straight(american, [](double premium) {
    return straight::implied_vol_american(premium, S, K, T, r, q, greatest, 0, 100, accuracy);
  });
  if constexpr (quantlib::available)
    add_quantlib(american, "VanillaOption::impliedVolatility, finite differences", 5e-4,
                 quantlib::implied_vol_american(asset, K, days, accuracy));
}

void add_digital() {
  constexpr double Cash = 10.0;
  Case& option = add_case("DIGITAL", S, Cash);
  add_worksheet(option, "DIGITAL", {Cash, S, K, r, q, sigma, days, 1, 0}, 1);
  add_model(option, [](double price) { return digital_option(Cash, price, K, T, r, q, sigma, 1, 0); });
  add_straight(option, [](double price) { return straight::digital(Cash, price, K, T, r, q, sigma); });
  if constexpr (quantlib::available)
    add_quantlib(option, "AnalyticEuropeanEngine, with greeks", same_option,
                 quantlib::digital(asset, Cash, K, days));
}

void add_cash_on_delivery() {
  constexpr double due = 11.0;
  Case& option = add_case("COD", S, S);
  add_worksheet(option, "COD", {S, K, r, q, sigma, days, due, 1, 0}, 0);
  add_model(option, [](double price) { return cod_option(price, K, T, r, q, sigma, due, 1, 0); });
  add_straight(option,
               [](double price) { return straight::cash_on_delivery(price, K, T, r, q, sigma, due); });

  Case& premium = add_case("CODPREM", S, S, {0.85, 1.3});
  add_worksheet(premium, "CODPREM", {S, K, r, q, sigma, days, 1}, 0);
  add_model(premium, [](double price) { return cod_premium(price, K, T, r, q, sigma, 1); });
  add_straight(premium, [](double price) { return straight::contingent_premium(price, K, T, r, q, sigma); });
}

void add_combination() {
  constexpr double KA = 95.0, sigmaA = 0.28;
  Case& strangle = add_case("COMBOPT", S, S);
  add_worksheet(strangle, "COMBOPT", {S, KA, K, r, q, sigmaA, sigma, days, 0, 0}, 0);
  add_model(strangle, [](double price) { return combo_option(price, KA, K, T, r, q, sigmaA, sigma, 0, 0); });
  add_straight(strangle,
               [](double price) { return straight::strangle(price, KA, K, T, r, q, sigmaA, sigma); });
}

void add_boston() {
  constexpr double B = 110.0;
  Case& strike = add_case("BOST", S, S, {0.8, 1.0});
  add_worksheet(strike, "BOST", {S, B, r, q, sigma, days, 1}, 0);
  add_model(strike, [](double price) { return boston_strike(price, B, T, r, q, sigma, 1); });
  add_straight(strike, [](double price) { return straight::boston_strike(price, B, T, r, q, sigma); });
}

// Limits of unlike sign with a correlation that needs two reductions.
void add_bivariate_normal(const char* name, const char* distribution, const Price& peer) {
  constexpr double a = -0.5, b = 0.3, rho = -0.4;
  Case& probability = add_case(name, a, 1.0);
  add_model(probability, [](double limit) { return binorm(limit, b, rho); });
  add_straight(probability, [](double limit) { return straight::binorm(limit, b, rho); });
  if (peer) add_quantlib(probability, distribution, same_option, peer);
}

void add_bivariate_normals() {
  Price drezner, west;
  if constexpr (quantlib::available) {
    drezner = quantlib::binorm_drezner(0.3, -0.4);
    west = quantlib::binorm_west(0.3, -0.4);
  }
  add_bivariate_normal("binorm/Dr78", "BivariateCumulativeNormalDistributionDr78", drezner);
  add_bivariate_normal("binorm/We04DP", "BivariateCumulativeNormalDistributionWe04DP", west);
}

}  // namespace

void add_black_scholes_cases() {
  add_european();
  add_american_quadratic();
  for (int steps : {100, 500, 1000, 2000, 4000}) add_american_tree(steps);
  add_implied_volatilities();
  add_digital();
  add_cash_on_delivery();
  add_combination();
  add_boston();
  add_bivariate_normals();
}

}  // namespace kestran::bench
