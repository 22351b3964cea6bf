#include "bench/cases.h"
#include "bench/straight.h"
#include "models/asian/asian_fast.h"
#include "models/asian/asian_geo_cond.h"
#include "models/asian/asian_vol_approx.h"

namespace kestran::bench {
namespace {

constexpr double S = 100.0, K = 98.0, r = 0.06, sigma = 0.4;

// QuantLib approximates the same option in another way.
constexpr double other_approximation = 1e-3;

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
    asian_vol_approx(price, K, r, sigma, 0.0, toExp, toStart, toEnd, TradeDays, 1, results);
    return results[0];
  });
  add_straight(option, [](double price) {
    double results[7];
    straight::asian_vol_approx(price, K, r, sigma, toExp, toStart, toEnd, TradeDays, results);
    return results[0];
  });
}

}  // namespace

void add_asian_cases() {
  for (int fixings : {30, 252}) add_fast(fixings);
  for (int fixings : {30, 252, 365}) add_geometric_conditioning(fixings);
  add_volatility_approximation();
}

}  // namespace kestran::bench
