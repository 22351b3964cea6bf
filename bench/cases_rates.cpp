// Caps, collars and swaptions.
#include <memory>

#include "bench/cases.h"
#include "bench/straight.h"
#include "models/rates/swaption.h"
#include "models/rates/xcap.h"
#include "models/rates/xcol.h"

namespace kestran::bench {
namespace {

constexpr double days_per_year = 365.25;
constexpr int most_periods = 256;

// Monthly periods; the first ends four months from now.
struct Periods {
  std::vector<double> forward, rate, sigma, quantity, end, end_days;
};

std::shared_ptr<const Periods> periods(int n) {
  const auto p = std::make_shared<Periods>();
  for (int i = 0; i < n; ++i) {
    p->forward.push_back(20.0 + 0.1 * (i % 12));
    p->rate.push_back(0.05 + 0.0001 * i);
    p->sigma.push_back(0.35 - 0.0005 * i);
    p->quantity.push_back(1.0 + i % 3);
    p->end_days.push_back(120.0 + 30.0 * i);
    p->end.push_back(p->end_days.back() / days_per_year);
  }
  return p;
}

constexpr double option_days = 90.0, cap_strike = 21.0;

// The option on a cap; without drift of the common factor.
CapOption cap_option(const Periods& p, int steps) {
  CapOption option;
  option.Price = p.forward.data();
  option.IntRt = p.rate.data();
  option.Vol = p.sigma.data();
  option.ExpDays = p.end.data();
  option.Qty = p.quantity.data();
  option.n = static_cast<int>(p.forward.size());
  option.StripVol = 0.3;
  option.CfStrike = cap_strike;
  option.CompStrike = 1.5;
  option.T = option_days / days_per_year;
  option.r = 0.05;
  option.r_carry = option.r;
  option.N = steps;
  option.OptType = 1;
  return option;
}

void add_cap(int n) {
  const auto p = periods(n);
  const CapOption terms = cap_option(*p, 1);
  Case& cap = add_case("cap/" + std::to_string(n), 1.0, 20.0);
  add_model(cap, [p, terms](double factor) {
    return capfloor_strip_value(factor, terms.Price, terms.IntRt, terms.Vol, terms.ExpDays, terms.Qty,
                                terms.T, terms.CfStrike, terms.r, terms.n, true);
  });
  add_straight(cap, [p, terms](double factor) { return straight::cap(factor, terms); });
  if constexpr (quantlib::available)
    add_quantlib(cap, "blackFormula for each period", same_option, quantlib::cap(terms));
}

void add_option_on_cap(int steps, int n) {
  const auto p = periods(n);
  const CapOption terms = cap_option(*p, steps);
  Case& option = add_case("XCAP/" + std::to_string(steps) + "x" + std::to_string(n), cap_strike, 20.0);
  add_worksheet(option, "XCAP",
                {p->forward, p->rate, p->sigma, p->end_days, p->quantity, terms.StripVol, cap_strike,
                 terms.CompStrike, option_days, terms.r, 1, 0, double(steps)},
                6);
  const auto struck_at = [p, terms](double strike) {
    CapOption struck = terms;
    struck.CfStrike = strike;
    return struck;
  };
  add_model(option, [=](double strike) { return xcap_tree(struck_at(strike)); });
  add_straight(option, [=](double strike) { return straight::option_on_cap(struck_at(strike)); });
  if constexpr (quantlib::available)
    add_quantlib(option, "blackFormula in the nodes of a tree", same_option, quantlib::option_on_cap(terms));
}

void add_option_on_collar(int n) {
  constexpr double SwapVol = 0.3, VolSpread = 0.02, floor = 19.5, r = 0.05;
  const auto p = periods(n);
  CollarOption collar;
  collar.Price = p->forward.data();
  collar.IntRt = p->rate.data();
  collar.Vol = p->sigma.data();
  collar.ExpDays = p->end.data();
  collar.n = n;
  collar.SwapVol = SwapVol;
  collar.VolSpread = VolSpread;
  collar.T = option_days / days_per_year;
  collar.Floor = floor;
  collar.r = r;
  collar.OptType = 1;

  Case& option = add_case("XCOL/" + std::to_string(n), cap_strike, 20.0);
  add_worksheet(option, "XCOL",
                {p->forward, p->rate, p->sigma, p->end_days, SwapVol, VolSpread, option_days, cap_strike,
                 floor, r, 100.0},
                7);
  add_model(option, [p, collar](double strike) {
    CollarOption struck = collar;
    struck.Cap = strike;
    return xcol_price(struck);
  });
}

// All results of the swaption, of which the price counts.
template <class Model>
double swaption_price(const Model& model) {
  double by_period[4][most_periods];
  SwaptionRecord record;
  record.delta_by_period = by_period[0];
  record.gamma_by_period = by_period[1];
  record.decay_by_period = by_period[2];
  record.vanna_by_period = by_period[3];
  model(record);
  keep(by_period);
  return record.price;
}

void add_swaption(int n) {
  constexpr double K = 20.5, r = 0.05, sigma = 0.3, expiry = 0.25;
  const auto p = periods(n);
  Case& option = add_case("SWAPTION/" + std::to_string(n), K, 20.0);
  add_worksheet(option, "SWAPTION", {p->forward, p->quantity, p->end, p->rate, sigma, K, r, expiry, 1, 0, 1},
                5);
  add_model(option, [=](double strike) {
    return swaption_price([&](SwaptionRecord& record) {
      swaption_model(p->forward.data(), p->quantity.data(), p->end.data(), p->rate.data(), sigma, strike, r,
                     expiry, n, 1, record);
    });
  });
  add_straight(option, [=](double strike) {
    return swaption_price([&](SwaptionRecord& record) {
      straight::swaption(p->forward.data(), p->quantity.data(), p->end.data(), p->rate.data(), nullptr,
                         strike, sigma, r, expiry, n, record);
    });
  });
  if constexpr (quantlib::available)
    add_quantlib(
        option, "InterestRate and blackFormula, premium only", same_option,
        [p, price = quantlib::swaption(p->forward.data(), p->quantity.data(), p->end.data(), p->rate.data(),
                                       sigma, r, expiry, n)](double strike) { return price(strike); });
}

// The same swaption when its volatility moves, beside what a pricing library recalculates then.
void add_moved_volatility(int n) {
  constexpr double K = 20.5, r = 0.05, sigma = 0.3, expiry = 0.25;
  const auto p = periods(n);
  Case& option = add_case("SWAPTION/vol/" + std::to_string(n), sigma, 20.0);
  add_worksheet(option, "SWAPTION", {p->forward, p->quantity, p->end, p->rate, sigma, K, r, expiry, 1, 0, 1},
                4);
  add_model(option, [=](double volatility) {
    return swaption_price([&](SwaptionRecord& record) {
      swaption_model(p->forward.data(), p->quantity.data(), p->end.data(), p->rate.data(), volatility, K, r,
                     expiry, n, 1, record);
    });
  });
  if constexpr (quantlib::available)
    add_quantlib(option, "BlackSwaptionEngine, of a swap on a rate", not_compared,
                 quantlib::black_swaption(n));
}

// The fixed price of each period is a tenth above its forward price.
void add_swaption_with_strikes(int n) {
  constexpr double r = 0.05, sigma = 0.3, expiry = 0.25;
  const auto p = periods(n);
  std::vector<double> strikes = p->forward;
  for (double& strike : strikes) strike *= 1.1;
  Case& option = add_case("SWAPTION1/" + std::to_string(n), sigma, 20.0);
  add_worksheet(option, "SWAPTION1",
                {p->forward, p->quantity, p->end, p->rate, strikes, sigma, r, expiry, 1, 0, 1}, 5);
  add_model(option, [=](double volatility) {
    return swaption_price([&](SwaptionRecord& record) {
      swaption1_model(p->forward.data(), p->quantity.data(), p->end.data(), p->rate.data(), strikes.data(),
                      volatility, r, expiry, n, 1, record);
    });
  });
  add_straight(option, [=](double volatility) {
    return swaption_price([&](SwaptionRecord& record) {
      straight::swaption(p->forward.data(), p->quantity.data(), p->end.data(), p->rate.data(), strikes.data(),
                         0.0, volatility, r, expiry, n, record);
    });
  });
}

}  // namespace

void add_rates_cases() {
  for (int n : {12, 120}) add_cap(n);
  for (int steps : {200, 1000, 2000, 4000}) add_option_on_cap(steps, 12);
  for (int n : {30, 60, 120}) add_option_on_cap(1000, n);
  add_option_on_collar(12);
  for (int n : {12, 30, 60, 120}) add_swaption(n);
  for (int n : {12, 120}) add_moved_volatility(n);
  add_swaption_with_strikes(12);
}

}  // namespace kestran::bench
