#include "bench/cases.h"
#include "bench/straight.h"
#include "models/exotics/barrier.h"
#include "models/exotics/compound.h"
#include "models/exotics/heat_rate.h"
#include "models/exotics/lookback.h"
#include "models/exotics/quanto.h"
#include "models/exotics/rainbow.h"
#include "models/exotics/spread_option.h"
#include "models/exotics/warrant.h"
#include "models/exotics/wilcox_spread.h"

namespace kestran::bench {
namespace {

constexpr double S = 100.0, r = 0.06, sigma = 0.25;
constexpr int days = 180;
constexpr double T = days / 365.25;

// Rate and yield are equal: otherwise the model's drift is not the continuous one of QuantLib.
void add_barrier(const char* name, double K, double H, double R, int KnockType) {
  // The barrier has not been reached.
  Case& option = add_case(name, S, S, {H / S + 0.01, 1.3});
  add_worksheet(option, "BRRR", {S, K, r, r, sigma, days, H, R, 1, double(KnockType), 0}, 0);
  add_model(option,
            [=](double price) { return barrier_price(price, K, sigma, r, r, days, H, R, 1, KnockType); });
  add_straight(option, [=](double price) {
    return straight::barrier(price, K, sigma, r, r, days, H, R, 1, KnockType);
  });
  if constexpr (quantlib::available)
    add_quantlib(option, "AnalyticBarrierEngine", same_option,
                 quantlib::barrier({S, r, r, sigma}, K, days, H, R, KnockType != 0));
}

void add_lookback() {
  constexpr double K = 95.0, q = 0.03;
  Case& option = add_case("LKBK", S, S, {K / S, 1.3});
  add_worksheet(option, "LKBK", {S, K, r, q, sigma, days, 1, 0}, 0);
  add_model(option, [](double price) { return lookback_price(price, K, r, q, sigma, days, 1, 365.25); });
  add_straight(option,
               [](double price) { return straight::lookback(price, K, r, q, sigma, days, 1, 365.25); });
  if constexpr (quantlib::available)
    add_quantlib(option, "AnalyticContinuousFloatingLookbackEngine", same_option,
                 quantlib::lookback({S, r, q, sigma}, K, days));
}

// Rate and yield are equal: otherwise the model's option under the other one is not that of QuantLib.
void add_compound() {
  constexpr double X1 = 5.0, X = 100.0;
  constexpr int days1 = 90, days2 = 270;
  Case& option = add_case("CMPDV", S, S);
  add_worksheet(option, "CMPDV", {S, X1, X, days1, days2, r, r, sigma, sigma, 1, 0}, 0);
  add_model(option, [](double price) {
    return compound_price({price, X1, X, days1, days2, r, r, sigma, sigma, 1});
  });
  add_straight(option, [](double price) {
    return straight::compound(price, X1, X, days1, days2, r, r, sigma, sigma);
  });
  if constexpr (quantlib::available)
    add_quantlib(option, "AnalyticCompoundOptionEngine", same_option,
                 quantlib::compound({S, r, r, sigma}, X1, X, days1, days2));
}

void add_rainbow() {
  constexpr double S2 = 96.0, X = 98.0, sigma2 = 0.3, rho = 0.5;
  for (int OptType : {1, 5}) {
    Case& option = add_case("RBOW/" + std::to_string(OptType), S, S);
    add_worksheet(option, "RBOW", {S, S2, X, r, sigma, sigma2, rho, days, double(OptType), 0}, 0);
    add_model(option, [=](double price) {
      return rainbow_price({price, S2, X, r, r, r, T, sigma, sigma2, rho, OptType});
    });
    add_straight(option, [=](double price) {
      return straight::rainbow(price, S2, X, r, r, r, T, sigma, sigma2, rho, OptType);
    });
    if constexpr (quantlib::available) {
      const quantlib::Asset asset1 = {S, r, r, sigma}, asset2 = {S2, r, r, sigma2};
      if (OptType == 1)
        add_quantlib(option, "StulzEngine", same_option, quantlib::rainbow(asset1, asset2, rho, X, days));
      else
        add_quantlib(option, "AnalyticEuropeanMargrabeEngine", same_option,
                     quantlib::exchange(asset1, asset2, rho, days));
    }
  }
}

void add_spread_of_forwards() {
  constexpr double F = 4.0, K = 3.0, price_sigma = 6.0;
  Case& option = add_case("WSPRD", F, F);
  add_worksheet(option, "WSPRD", {F, K, r, price_sigma, days, 1, 0}, 0);
  add_model(option, [](double forward) { return wilcox_spread(forward, K, r, price_sigma, T, 1, 0); });
  add_straight(option,
               [](double forward) { return straight::spread_of_forwards(forward, K, r, price_sigma, T); });
  if constexpr (quantlib::available)
    add_quantlib(option, "bachelierBlackFormula", same_option,
                 quantlib::spread_of_forwards(K, r, price_sigma, T));
}

void add_heat_rate() {
  constexpr double SA = 50.0, SB = 5.0, K = 9.5, sigma_B = 0.4, rho = 0.6;
  Case& option = add_case("HEAT", SA, SA / SB);
  add_worksheet(option, "HEAT", {SA, SB, K, r, sigma, sigma_B, rho, days, 1, 0}, 0);
  add_model(option,
            [](double price) { return heat_rate_option(price, SB, K, r, sigma, sigma_B, rho, T, 1, 0); });
  add_straight(option,
               [](double price) { return straight::heat_rate(price, SB, K, r, sigma, sigma_B, rho, T); });
  if constexpr (quantlib::available)
    add_quantlib(option, "blackFormula", same_option, quantlib::heat_rate(SB, K, r, sigma, sigma_B, rho, T));
}

void add_quanto() {
  constexpr double E = 1.5, K = 105.0, rf = 0.04, q = 0.03, sigma_E = 0.12, rho = 0.3;
  Case& option = add_case("QUANTO", S, E * S);
  add_worksheet(option, "QUANTO", {E, S, K, r, rf, q, sigma, sigma_E, rho, days, 1, 3, 0}, 1);
  add_model(option, [](double price) {
    return quanto_option({E, price, K, r, rf, q, sigma, sigma_E, rho, T, 1, 3}, 0);
  });
  add_straight(option,
               [](double price) { return straight::quanto(E, price, K, r, rf, q, sigma, sigma_E, rho, T); });
  if constexpr (quantlib::available)
    add_quantlib(option, "QuantoEngine", same_option,
                 quantlib::quanto({S, r, q, sigma}, E, K, rf, sigma_E, rho, days));
}

void add_spread() {
  constexpr double SB = 96.0, K = 2.0, sigma_B = 0.3, rho = 0.85;
  Case& option = add_case("SPRDOPT", S, S);
  add_worksheet(option, "SPRDOPT", {S, SB, K, r, sigma, sigma_B, rho, days, 1, 0}, 0);
  add_model(option,
            [](double price) { return spread_option(price, SB, K, r, sigma, sigma_B, rho, T, 1, 0); });
  add_straight(option,
               [](double price) { return straight::spread(price, SB, K, r, sigma, sigma_B, rho, T); });
  // An approximation in closed form; near a strike of 0 it is good.
  if constexpr (quantlib::available)
    add_quantlib(option, "KirkEngine, an approximation", same_option,
                 quantlib::spread({S, r, r, sigma}, {SB, r, r, sigma_B}, rho, K, days));
}

void add_warrant() {
  constexpr double K = 110.0, q = 0.02, Nwar = 20.0, Nshr = 100.0;
  constexpr double vesting_days = 730.5, expiry_days = 1826.25;
  Case& warrant = add_case("WARRANT", S, S);
  add_worksheet(warrant, "WARRANT", {S, K, r, q, sigma, vesting_days, expiry_days, Nwar, Nshr, 1, 0}, 0);
  add_model(warrant, [](double price) {
    return warrant_value({price, K, r, q, sigma, 2.0, 5.0, Nwar, Nshr, 1}, 0);
  });
  add_straight(warrant,
               [](double price) { return straight::warrant(price, K, r, q, sigma, 2.0, 5.0, Nwar, Nshr); });
}

}  // namespace

void add_exotics_cases() {
  add_barrier("BRRR/out", 95.0, 90.0, 0.0, 0);
  add_barrier("BRRR/in", 90.0, 98.0, 3.0, 1);
  add_lookback();
  add_compound();
  add_rainbow();
  add_spread_of_forwards();
  add_heat_rate();
  add_quanto();
  add_spread();
  add_warrant();
}

}  // namespace kestran::bench
