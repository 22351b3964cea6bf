// Strips of average-price options and of daily options.
#include <memory>

#include "bench/cases.h"
#include "bench/straight.h"
#include "models/strips/asian_strip.h"
#include "models/strips/ostrip.h"
#include "models/strips/ostripsprd.h"
#include "models/strips/two_contract.h"
#include "models/strips/yrstrip.h"

namespace kestran::bench {
namespace {

constexpr double days_per_year = 365.25;

// Months of 30 days; the first begins tomorrow.
struct Months {
  std::vector<double> forward, sigma, fixings, volume, start, end;  // years
};

std::shared_ptr<const Months> months(int n) {
  const auto p = std::make_shared<Months>();
  for (int i = 0; i < n; ++i) {
    p->forward.push_back(20.0 + 0.1 * (i % 12));
    p->sigma.push_back(0.35 - 0.0005 * i);
    p->fixings.push_back(20.0 + i % 3);
    p->volume.push_back(1.0 + i % 3);
    p->end.push_back(30.0 * (i + 1) / days_per_year);
    p->start.push_back(p->end.back() - 29.0 / days_per_year);
  }
  return p;
}

AsianStrip average_strip(const Months& p, double strike) {
  AsianStrip strip;
  strip.F = p.forward.data();
  strip.K = strike;
  strip.r = 0.05;
  strip.sigma = p.sigma.data();
  strip.rho = 0.9;
  strip.n = p.fixings.data();
  strip.Next = p.start.data();
  strip.End = p.end.data();
  strip.ToExp = p.end.back() + 0.02;
  strip.OptType = 1;
  strip.L = static_cast<int>(p.forward.size());
  return strip;
}

constexpr double average_strike = 20.5;

void add_average_strip(int n) {
  const auto p = months(n);
  const AsianStrip strip = average_strip(*p, average_strike);
  Case& option = add_case("ASTRIP/" + std::to_string(n), average_strike, 20.0);
  add_worksheet(option, "ASTRIP",
                {p->forward, p->sigma, p->start, p->end, p->fixings, 0, average_strike, strip.r, strip.rho, 0,
                 strip.ToExp, 1, 0, 1},
                6);
  add_model(option, [p](double strike) { return asian_strip_price(average_strip(*p, strike)); });
  add_straight(option, [p](double strike) { return straight::asian_strip(average_strip(*p, strike)); });
}

void add_average_strip_with_volumes(int n) {
  const auto p = months(n);
  const AsianStrip strip = average_strip(*p, average_strike);
  Case& option = add_case("ASTRIPMV/" + std::to_string(n), average_strike, 20.0);
  add_worksheet(option, "ASTRIPMV",
                {p->forward, p->sigma, p->volume, p->start, p->end, p->fixings, 0, average_strike, strip.r,
                 strip.rho, 0, strip.ToExp, 1, 0, 1},
                7);
  add_model(option, [p](double strike) {
    AsianStrip struck = average_strip(*p, strike);
    struck.u = p->volume.data();
    return asian_strip_price(struck);
  });
}

// A month of fixings on each of two contracts.
void add_two_contracts(int fixings) {
  TwoContracts terms;
  for (int i : {0, 1}) {
    terms.F[i] = 20.0 + 0.3 * i;
    terms.sigma_before[i] = 0.35 - 0.02 * i;
    terms.sigma_within[i] = 0.4 - 0.02 * i;
    terms.Next[i] = (30.0 * i + 1.0) / days_per_year;
    terms.End[i] = (30.0 * i + 30.0) / days_per_year;
    terms.n[i] = fixings;
  }
  terms.r = 0.05;
  terms.rho = 0.95;
  terms.ToExp = terms.End[1] + 0.02;
  terms.OptType = 1;

  Case& option = add_case("AdjASTRIP2m/2x" + std::to_string(fixings), average_strike, 20.0);
  add_worksheet(option, "AdjASTRIP2m",
                {terms.F[0],
                 terms.F[1],
                 terms.sigma_before[0],
                 terms.sigma_before[1],
                 terms.sigma_within[0],
                 terms.sigma_within[1],
                 terms.Next[0],
                 terms.Next[1],
                 terms.End[0],
                 terms.End[1],
                 double(fixings),
                 double(fixings),
                 0,
                 average_strike,
                 terms.r,
                 terms.rho,
                 0,
                 terms.ToExp,
                 1,
                 0,
                 1},
                13);
  add_model(option, [terms](double strike) {
    TwoContracts struck = terms;
    struck.K = strike;
    return two_contract_price(struck);
  });
}

// Strips of daily options begin 30 days from now; the strike, or only the volatility, is set before that.
constexpr int first_day = 30;
constexpr double set_day = 20.0;

// Forward starts ("fwd") have a basis, without which they would be as quick as fixed prices.
void add_option_strip(int days, bool forward_start) {
  constexpr double F = 20.0;
  OptionStrip strip;
  strip.K = 20.5;
  strip.NowToSet = set_day;
  strip.B = first_day;
  strip.E = first_day + days - 1;
  strip.FwdStFlag = forward_start;
  strip.r = 0.05;
  strip.sigma_before = 0.35;
  strip.sigma_after = 0.6;
  strip.basis = 0.5;
  strip.OptType = 1;

  Case& option = add_case("OSTRIP/" + std::to_string(days) + (forward_start ? "/fwd" : ""), F, F);
  add_worksheet(option, "OSTRIP",
                {F, strip.K, set_day, first_day, double(strip.E), double(strip.FwdStFlag), strip.r,
                 strip.sigma_before, strip.sigma_after, strip.pct, strip.basis, 1, 0},
                0);
  const auto priced_at = [strip](double price) {
    OptionStrip priced = strip;
    priced.F = price;
    return priced;
  };
  add_model(option, [=](double price) {
    double results[2];
    ostrip_price(priced_at(price), 0, results);
    return results[0];
  });
  if (!forward_start)
    add_straight(option, [=](double price) { return straight::option_strip(priced_at(price)); });
}

void add_spread_strip(int days, bool forward_start) {
  constexpr double F1 = 20.0;
  SpreadStrip strip;
  strip.F2 = 18.0;
  strip.sigma1_m = 0.35;
  strip.sigma1_d = 0.6;
  strip.sigma2_m = 0.3;
  strip.sigma2_d = 0.5;
  strip.rho_m = 0.9;
  strip.rho_d = 0.7;
  strip.K = 2.0;
  strip.NowToSet = set_day;
  strip.B = first_day;
  strip.E = first_day + days - 1;
  strip.r = 0.05;
  strip.basis = 0.1;
  strip.FwdStFlag = forward_start;
  strip.OptType = 1;

  Case& option = add_case("OSTRIPSPRD/" + std::to_string(days) + (forward_start ? "/fwd" : ""), F1, F1);
  add_worksheet(option, "OSTRIPSPRD",
                {F1, strip.F2, strip.sigma1_m, strip.sigma1_d, strip.sigma2_m, strip.sigma2_d, strip.rho_m,
                 strip.rho_d, strip.K, set_day, first_day, double(strip.E), strip.r, strip.pct, strip.basis,
                 double(strip.FwdStFlag), 1, 0},
                0);
  add_model(option, [strip](double price) {
    SpreadStrip priced = strip;
    priced.F1 = price;
    double results[2];
    ostripsprd_price(priced, 0, results);
    return results[0];
  });
}

// Months of 30 days with fixed strikes; all results, of which the premium counts.
void add_year_strip(int n) {
  struct Days {
    std::vector<double> strike, rate, to_set, first, last;
  };
  const auto p = months(n);
  const auto days = std::make_shared<Days>();
  for (int i = 0; i < n; ++i) {
    days->strike.push_back(20.5);
    days->rate.push_back(0.05 + 0.0001 * i);
    days->to_set.push_back(0.0);
    days->first.push_back(30.0 * i + 1.0);
    days->last.push_back(30.0 * i + 30.0);
  }
  YearStrip strip;
  strip.Price = p->forward.data();
  strip.Strike = days->strike.data();
  strip.IntRt = days->rate.data();
  strip.Vol = p->sigma.data();
  strip.ToSet = days->to_set.data();
  strip.Beg = days->first.data();
  strip.End = days->last.data();
  strip.Qty = p->volume.data();
  strip.L = n;
  strip.OptType = 1;

  Case& option = add_case("YRSTRIP/" + std::to_string(n), 2.0 * n, 20.0);
  add_worksheet(option, "YRSTRIP",
                {p->forward, days->strike, days->rate, p->sigma, days->to_set, days->first, days->last,
                 p->volume, 2.0 * n, 1, 0},
                8);
  const auto premium = [p, days, strip](const auto& model, double quantity) {
    YearStrip of_quantity = strip;
    of_quantity.AnnualQty = quantity;
    double results[7];
    model(of_quantity, results);
    keep(results);
    return results[0];
  };
  add_model(option, [=](double quantity) { return premium(yrstrip_value, quantity); });
  add_straight(option, [=](double quantity) { return premium(straight::year_strip, quantity); });
}

}  // namespace

void add_strips_cases() {
  for (int n : {12, 32, 64, 128, 256}) add_average_strip(n);
  add_average_strip_with_volumes(12);
  add_two_contracts(21);
  for (bool forward_start : {false, true})
    for (int days : {31, 62, 124, 248}) add_option_strip(days, forward_start);
  for (bool forward_start : {false, true})
    for (int days : {31, 62, 124, 248}) add_spread_strip(days, forward_start);
  for (int n : {12, 24, 48}) add_year_strip(n);
}

}  // namespace kestran::bench
