#include "bench/cases.h"
#include "bench/straight.h"
#include "models/asian/asian_fast.h"
#include "models/asian/asian_geo_cond.h"
#include "models/asian/asian_spread.h"
#include "models/asian/asian_vol_approx.h"
#include "models/asian/compound_asian.h"

namespace kestran::bench {
namespace {

constexpr double S = 100.0, K = 98.0, r = 0.06, sigma = 0.4;

// QuantLib approximates the same option in another way.
constexpr double other_approximation = 2e-3;

void add_fast(int fixings) {
  const double t1 = 1.0 / 365.25, T = fixings / 365.25;
  Case& option = add_case("ASN/" + std::to_string(fixings), S, S);
  add_worksheet(option, "ASN", {S, K, r, sigma, 0, double(fixings), 0, t1, T, 1, 0}, 0);
  add_model(option, [=](double price) {
    double results[7];
    asn_model(price, K, r, sigma, 0.0, fixings, 0, t1, T, 1, results);
    return results[0];
  });
  add_straight(option, [=](double price) {
    double results[7];
    straight::asian_fast(price, K, r, sigma, fixings, t1, T, results);
    return results[0];
  });
  if constexpr (quantlib::available)
    add_quantlib(option, "TurnbullWakemanAsianEngine", other_approximation,
                 quantlib::asian({S, r, r, sigma}, K, fixings));
}

void add_geometric_conditioning(int fixings) {
  Case& option = add_case("AGC/" + std::to_string(fixings), S, S);
  add_worksheet(option, "AGC", {S, K, 0, r, r, sigma, sigma, 1, double(fixings), 1, 0}, 0);
  add_model(option, [=](double price) {
    return asian_geo_cond(price, K, 0.0, r, r, sigma, sigma, fixings, 1, 1, 0);
  });
  add_straight(option, [=](double price) {
    return straight::asian_geo_cond(price, K, r, r, sigma, sigma, fixings, 1);
  });
  if constexpr (quantlib::available)
    add_quantlib(option, "TurnbullWakemanAsianEngine", other_approximation,
                 quantlib::asian({S, r, r, sigma}, K, fixings));
}

void add_volatility_approximation() {
  constexpr double toExp = 35.0, toStart = 1.0, toEnd = 21.0, TradeDays = 252.0;
  Case& option = add_case("ASV", S, S);
  add_worksheet(option, "ASV", {S, K, r, sigma, 0, toExp, toStart, toEnd, TradeDays, 1, 0}, 0);
  add_model(option, [](double price) {
    double results[7];
    asian_vol_approx({price, K, r, sigma, 0.0, toExp, toStart, toEnd, TradeDays, 1}, results);
    return results[0];
  });
  add_straight(option, [](double price) {
    double results[7];
    straight::asian_vol_approx(price, K, r, sigma, toExp, toStart, toEnd, TradeDays, results);
    return results[0];
  });
}

void add_spread(int fixings) {
  constexpr double PriceB = 95.0, strike = 4.0, VolB = 0.3, rho = 0.7;
  AsianSpread spread;
  spread.PriceB = PriceB;
  spread.K = strike;
  spread.r = spread.q1 = spread.q2 = r;
  spread.VolA = spread.VolAf = sigma;
  spread.VolB = spread.VolBf = VolB;
  spread.rho = rho;
  spread.E = fixings;
  spread.BA = spread.BB = 1;
  spread.OptType = 1;

  Case& option = add_case("ASNSPRD/" + std::to_string(fixings), S, S);
  add_worksheet(option, "ASNSPRD", {S, PriceB, strike, r, sigma, VolB, rho, 0, 0, double(fixings), 1, 1, 0},
                0);
  add_model(option, [spread](double price) {
    AsianSpread priced = spread;
    priced.PriceA = price;
    return asian_spread_price(priced);
  });
}

// Averaging over a month that starts after the option on the average-price option expires.
void add_compound(int steps) {
  constexpr double Vol1 = 0.35, CmpVol = 0.3, strike = 5.0, CmpExpDays = 60.0, toNext = 91.0, ExpDays = 120.0;
  constexpr int TotDays = 30;
  CompoundAsian compound;
  compound.r = compound.rc = r;
  compound.sigma1 = Vol1;
  compound.sigma2 = sigma;
  compound.N = TotDays;
  compound.toNext = toNext;
  compound.ExpDays = ExpDays;
  compound.sigma_c = CmpVol;
  compound.K = K;
  compound.X = strike;
  compound.CmpExpDays = CmpExpDays;
  compound.CmpOptType = 1;

  Case& option = add_case("CMPASN/" + std::to_string(steps), S, S);
  add_worksheet(option, "CMPASN",
                {S, r, Vol1, sigma, 0, TotDays, 0, toNext, ExpDays, CmpVol, K, strike, CmpExpDays, r, 1, 0,
                 double(steps)},
                0);
  add_model(option, [compound](double price) {
    CompoundAsian priced = compound;
    priced.S0 = price;
    return compound_asian_price(priced);
  });
}

}  // namespace

void add_asian_cases() {
  for (int fixings : {30, 252}) add_fast(fixings);
  for (int fixings : {30, 60, 120, 252, 365}) add_geometric_conditioning(fixings);
  add_volatility_approximation();
  add_spread(60);
  for (int steps : {100, 200, 400}) add_compound(steps);
}

}  // namespace kestran::bench
