#include "tests/fuzz/relations.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <utility>

#include "functions/number_text.h"

namespace kestran::fuzz {

int Deal::place(const char* name) const {
  for (int i = 0; i < function->argument_count; ++i)
    if (std::strcmp(function->arguments[i].name, name) == 0) return i;
  return -1;
}

Deal Deal::with(const char* name, double value) const {
  Deal moved = *this;
  for (double& one : moved.given[static_cast<std::size_t>(place(name))].values) one = value;
  return moved;
}

// Some numbers that functions answer with are no prices.
static double price_of(const Answer& answer) {
  for (const double sentinel : {-1.0, -99.0, 99.0, -999999999.999, -1e17})
    if (answer.number == sentinel) return none;
  return answer.is_number() ? answer.number : none;
}

double Deal::value() const {
  count_calls();
  return price_of(price(*function, operands(given).data()));
}

std::string Deal::text() const { return shown(*function, operands(given).data()); }

double value_of(const char* name, std::initializer_list<double> numbers) {
  const Function& function = *find_in_catalogue(name);
  require(numbers.size() == static_cast<std::size_t>(function.argument_count), name);
  count_calls();
  return price_of(price(function, numbers.begin()));
}

namespace {

constexpr double year = 365.25;

double years(const Deal& deal) { return deal["ExpDays"] / year; }
double discount(const Deal& deal) { return std::exp(-deal["IntRt"] * years(deal)); }
bool is(const Deal& deal, const char* function) {
  return std::strcmp(deal.function->computed_by, function) == 0;
}

// The size of the deal's prices, in which differences are measured.
double scale(const Deal& deal) {
  if (is(deal, "HEAT")) return std::max(deal["Strike"], deal["PriceA"] / deal["PriceB"]);
  double largest = 1e-3;
  for (int i = 0; i < deal.function->argument_count; ++i)
    if (text_of(*deal.function).arguments[i]->unit == Unit::price)
      for (const double value : deal.given[static_cast<std::size_t>(i)].values)
        largest = std::max(largest, std::fabs(value));
  return largest;
}

// The same terms for another function that has arguments of these names, and some more.
Deal as(const Deal& deal, const char* name, std::initializer_list<std::pair<const char*, double>> further) {
  const Function& function = *find_in_catalogue(name);
  Deal other(function, {});
  for (int i = 0; i < function.argument_count; ++i) {
    const char* const argument = function.arguments[i].name;
    other.given.push_back({{0.0}});
    for (int k = 0; k < deal.function->argument_count; ++k)
      if (std::strcmp(deal.function->arguments[k].name, argument) == 0)
        other.given.back() = deal.given[static_cast<std::size_t>(k)];
    for (const auto& [further_name, value] : further)
      if (std::strcmp(further_name, argument) == 0) other.given.back() = {{value}};
  }
  return other;
}

double of_type(const Deal& deal, double type, double strike_moved) {
  return deal.with(deal.has("OptType") ? "OptType" : "Opttype", type)
      .with("Strike", deal["Strike"] + strike_moved)
      .value();
}
double call(const Deal& deal, double strike_moved = 0.0) { return of_type(deal, 1.0, strike_moved); }
double put(const Deal& deal, double strike_moved = 0.0) { return of_type(deal, 0.0, strike_moved); }

// One of two without an answer differs as much as can be.
double difference(double a, double b) {
  if (same_number(a, b)) return 0.0;
  return std::isnan(a) || std::isnan(b) ? std::numeric_limits<double>::infinity() : std::fabs(a - b);
}
double excess(double smaller, double greater) { return std::max(smaller - greater, 0.0); }

// ---- One function, its strikes and types.

double straight(const Deal& deal) {
  const double h = 0.04 * scale(deal);
  const auto less = [&](double moved) { return call(deal, moved) - put(deal, moved); };
  return difference(less(h) + less(-h), 2.0 * less(0.0));
}

double discounted(const Deal& deal) {
  const double h = 0.04 * scale(deal);
  const double slope = call(deal, h) - put(deal, h) - (call(deal) - put(deal));
  return difference(slope, -h * discount(deal));
}

double ordered(const Deal& deal) {
  const double h = 0.04 * scale(deal);
  const double calls[] = {call(deal, -h), call(deal), call(deal, h)};
  const double puts[] = {put(deal, -h), put(deal), put(deal, h)};
  return std::max({excess(calls[1], calls[0]), excess(calls[2], calls[1]), excess(puts[0], puts[1]),
                   excess(puts[1], puts[2]), excess(0.0, calls[2]), excess(0.0, puts[0])});
}

double convex(const Deal& deal) {
  const double h = 0.04 * scale(deal);
  return std::max(excess(2.0 * call(deal), call(deal, -h) + call(deal, h)),
                  excess(2.0 * put(deal), put(deal, -h) + put(deal, h)));
}

double expired(const Deal& deal) {
  const Deal now = deal.with("ExpDays", 0.0);
  const double gain = deal["Price"] - deal["Strike"];
  return difference(call(now), std::max(gain, 0.0)) + difference(put(now), std::max(-gain, 0.0));
}

double without_volatility(const Deal& deal) {
  const Deal sure = deal.with("Vol", 0.0);
  const double yield = deal.has("Yield") ? deal["Yield"] : deal["IntRt"];
  const double gain = deal["Price"] * std::exp(-yield * years(deal)) - deal["Strike"] * discount(deal);
  return difference(call(sure), std::max(gain, 0.0)) + difference(put(sure), std::max(-gain, 0.0));
}

double more_volatile(const Deal& deal) {
  return excess(deal.value(), deal.with("Vol", 1.1 * deal["Vol"]).value());
}

Deal twice(const Deal& deal) {
  Deal other = deal;
  for (int i = 0; i < deal.function->argument_count; ++i) {
    const Unit unit = text_of(*deal.function).arguments[i]->unit;
    if (unit == Unit::price || unit == Unit::amount || unit == Unit::price_volatility)
      for (double& value : other.given[static_cast<std::size_t>(i)].values) value *= 2.0;
  }
  return other;
}
double twice_as_large(const Deal& deal) {
  if (is(deal, "CMPDV") && deal["OptType"] == 5.0) return 0.0;  // a volatility
  return difference(twice(deal).value(), 2.0 * deal.value());
}
double same_of_twice(const Deal& deal) { return difference(twice(deal).value(), deal.value()); }

// ---- One function by another.

double forward_by_euro(const Deal& deal) {
  return difference(deal.value(), as(deal, "EURO", {{"Yield", deal["IntRt"]}}).value());
}
double closed_form(const Deal& deal) {
  const double T = years(deal), v = deal["Vol"] * std::sqrt(T);
  if (!(v > 0.0)) return 0.0;
  const double asset = deal["Price"] * std::exp(-deal["Yield"] * T), cash = deal["Strike"] * discount(deal);
  const auto normal_below = [](double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); };
  const double d1 = std::log(asset / cash) / v + v / 2.0;
  return difference(call(deal), asset * normal_below(d1) - cash * normal_below(d1 - v));
}
double forex_by_euro(const Deal& deal) {
  return difference(deal.value(), Deal(*find_in_catalogue("EURO"), deal.given).value());
}
double asian_spread_by_its_wider_form(const Deal& deal) {
  const double q = deal["IntRt"], days = deal["AvgBegDays"], a = deal["VolA"], b = deal["VolB"];
  return difference(
      deal.value(),
      as(deal, "ASNSPRD2",
         {{"q1", q}, {"q2", q}, {"VolAf", a}, {"VolBf", b}, {"AvgBegDaysA", days}, {"AvgBegDaysB", days}})
          .value());
}
double strip_by_its_wider_form(const Deal& deal) {
  return difference(deal.value(), as(deal, "OSTRIP2", {}).value());
}
double collar_by_its_wider_form(const Deal& deal) {
  return difference(deal.value(), as(deal, "XCOL3", {{"OptType", 1.0}, {"RetType", 0.0}}).value());
}

double american_above_european(const Deal& deal) {
  const Deal european = as(deal, "EURO", {});
  const double gain = deal["Price"] - deal["Strike"];
  return std::max({excess(call(european), call(deal)), excess(put(european), put(deal)),
                   excess(gain, call(deal)), excess(-gain, put(deal))});
}
double american_never_early(const Deal& deal) {
  if (deal["IntRt"] < 0.0) return 0.0;
  const Deal unyielding = deal.with("Yield", 0.0);
  return difference(call(unyielding), call(as(unyielding, "EURO", {})));
}

// Where the error of the quadratic approximation is known.
double two_americans(const Deal& deal) {
  const double S = deal["Price"] / deal["Strike"], r = deal["IntRt"], q = deal["Yield"];
  if (years(deal) > 1.0 || S < 0.78 || S > 1.28 || std::min(r, q) < 0.0) return 0.0;
  const Deal tree = as(deal, "AMERB", {{"Nsteps", 100.0}});
  return std::max(difference(call(deal), call(tree)), difference(put(deal), put(tree)));
}

// ---- Sums that are known.

double in_plus_out(const Deal& deal) {
  const double vol = deal["Vol"];
  if (years(deal) > 2.0 || vol < 0.2 || deal["OptType"] > 1.0) return 0.0;
  const Deal plain = deal.with("Rebate", 0.0).with("Yield", deal["IntRt"]);
  const double both = plain.with("KnockType", 0.0).value() + plain.with("KnockType", 1.0).value();
  return difference(both, as(plain, "EURO", {}).value());
}
double digital_pair(const Deal& deal) {
  return difference(deal.with("OptType", 0.0).value() + deal.with("OptType", 1.0).value(),
                    deal["Cash"] * discount(deal));
}
double better_plus_worse(const Deal& deal) {
  const auto black = [&](const char* price, const char* vol) {
    return value_of("EURO_Forward",
                    {deal[price], deal["Strike"], deal["IntRt"], deal[vol], deal["ExpDays"], 1.0, 0.0});
  };
  return difference(deal.with("OptType", 1.0).value() + deal.with("OptType", 2.0).value(),
                    black("PriceA", "VolA") + black("PriceB", "VolB"));
}
Deal swapped(const Deal& deal, std::initializer_list<std::pair<const char*, const char*>> pairs) {
  Deal other = deal;
  for (const auto& [a, b] : pairs) std::swap(other[a], other[b]);
  return other;
}
double either_order(const Deal& deal) {
  const double type = deal["OptType"];
  if (type == 5.0) return 0.0;
  return difference(deal.value(), swapped(deal, {{"PriceA", "PriceB"}, {"VolA", "VolB"}}).value());
}
double basket_in_either_order(const Deal& deal) {
  return difference(
      deal.value(),
      swapped(deal, {{"Price1", "Price2"}, {"Vol1", "Vol2"}, {"Drift1", "Drift2"}, {"Weight1", "Weight2"}})
          .value());
}
bool known_spread(const Deal& deal) {
  return std::max(deal["VolA"], deal["VolB"]) * std::sqrt(years(deal)) <= 1.0 &&
         std::fabs(deal["Correl"]) <= 0.95;
}
double spread_from_the_other_side(const Deal& deal) {
  if (!known_spread(deal)) return 0.0;
  const Deal other = swapped(deal, {{"PriceA", "PriceB"}, {"VolA", "VolB"}}).with("Strike", -deal["Strike"]);
  return difference(call(deal), put(other));
}
double exchange(const Deal& deal) {
  if (!known_spread(deal)) return 0.0;
  return difference(call(deal.with("Strike", 0.0)),
                    as(deal, "RBOW", {{"OptType", 5.0}, {"Strike", 0.0}}).value());
}
double legs(const Deal& deal) {
  static constexpr struct {
    double sign_a, type_a, sign_b, type_b;
  } positions[] = {{1, 0, 1, 1},  {1, 1, -1, 1}, {-1, 0, 1, 0}, {-1, 1, 1, 1},
                   {1, 0, -1, 0}, {1, 0, -1, 1}, {-1, 0, 1, 1}, {1, 1, 1, 0}};
  const auto& position = positions[static_cast<int>(deal["OptType"]) & 7];
  const auto leg = [&](const char* at, const char* vol, double type) {
    return as(deal, "EURO", {{"Strike", deal[at]}, {"Vol", deal[vol]}, {"OptType", type}}).value();
  };
  return difference(deal.value(), position.sign_a * leg("StrikeA", "VolA", position.type_a) +
                                      position.sign_b * leg("StrikeB", "VolB", position.type_b));
}

// ---- There and back.

double implied(const Deal& deal) {
  const double accuracy = 1e-7 * deal["Price"];
  const double premium = deal.value();
  const double type = deal["OptType"];
  const double vol = value_of("EIMPVOL", {type, premium, deal["Price"], deal["Strike"], deal["ExpDays"],
                                          deal["IntRt"], deal["Yield"], 3.0, accuracy, 100.0});
  return excess(difference(deal.with("Vol", vol).value(), premium), accuracy);
}
double implied_american(const Deal& deal) {
  const double accuracy = 1e-7 * deal["Price"];
  const Deal tree = deal.with("Nsteps", 30.0);
  const double premium = tree.value();
  const double vol =
      value_of("IMPVOLAB", {premium, deal["Price"], deal["Strike"], deal["IntRt"], deal["Yield"], 3.0,
                            deal["ExpDays"], deal["OptType"], 30.0, accuracy});
  return excess(difference(tree.with("Vol", vol).value(), premium), accuracy);
}
double pays_later(const Deal& deal) {
  return difference(as(deal, "COD", {{"Premium", deal.value()}}).value(), 0.0);
}

// Tolerances are those of docs/functions.md in units of the largest price, times the number of values that
// meet. Rounding is 1e-12.
constexpr double rounding = 1e-12;
constexpr double normal = 1e-7;  // the error of a closed form
constexpr double spread = 1e-6;  // of SPRDOPT: 5e-5 at prices of 60 to 140
constexpr struct {
  const char* functions;
  const char* relation;
  double (*deviation)(const Deal& deal);
  double tolerance;
} relations[] = {
    {"EURO EURO_Equity EURO_Forward WSPRD HEAT QUANTO", "call less put is a straight line in the strike",
     straight, rounding},
    {"ASTRIP ASTRIPMV ASTRIP2m AdjASTRIP2m xCrudeAPO SWAPTION",
     "call less put is a straight line in the strike", straight, rounding},
    {"OSTRIP OSTRIP2", "call less put is a straight line in the strike", straight, 4 * 2 * 4e-7},
    {"SPRDOPT xSPRDOPT ASNSPRD ASNSPRD2 PPLUS", "call less put is a straight line in the strike", straight,
     8 * 1e-5},
    {"EURO EURO_Equity EURO_Forward WSPRD HEAT", "its slope is the discount factor", discounted, rounding},
    {"EURO EURO_Equity EURO_Forward WSPRD HEAT QUANTO SWAPTION",
     "premiums are in the order of strikes, and positive", ordered, 2 * normal},
    {"EURO EURO_Equity EURO_Forward WSPRD HEAT QUANTO SWAPTION", "premiums are convex in the strike", convex,
     4 * normal},
    {"ASTRIP ASTRIPMV ASTRIP2m AdjASTRIP2m xCrudeAPO", "premiums are in the order of strikes, and positive",
     ordered, 2 * normal},
    {"ASTRIP ASTRIPMV ASTRIP2m AdjASTRIP2m xCrudeAPO", "premiums are convex in the strike", convex,
     4 * normal},
    {"SPRDOPT xSPRDOPT ASNSPRD ASNSPRD2 PPLUS", "premiums are in the order of strikes, and positive", ordered,
     2 * 1e-5},
    {"SPRDOPT xSPRDOPT ASNSPRD ASNSPRD2 PPLUS", "premiums are convex in the strike", convex, 4 * 1e-5},
    {"AMER", "premiums are in the order of strikes, and positive", ordered, rounding},
    {"AMERB", "premiums are in the order of strikes, and positive", ordered, 2 * 10 * 1.5e-4},
    {"EURO EURO_Equity EURO_Forward AMER AMERB", "an expired option is worth its exercise", expired, 0.0},
    {"EURO EURO_Equity EURO_Forward", "without volatility an option is worth its discounted forward",
     without_volatility, 1e-5},
    {"EURO", "the formula of Black and Scholes", closed_form, 2 * 7.5e-8},
    {"EURO_Forward", "EURO with a yield equal to the rate", forward_by_euro, 0.0},
    {"FOREXCH", "EURO with the other currency's rate as its yield", forex_by_euro, 0.0},
    {"ASNSPRD", "ASNSPRD2 without yields of its own", asian_spread_by_its_wider_form, 0.0},
    {"OSTRIP", "OSTRIP2", strip_by_its_wider_form, 0.0},
    {"XCOL XCOL2", "XCOL3 of a call", collar_by_its_wider_form, 0.0},
    {"AMER", "an American option is worth no less than a European one and its exercise",
     american_above_european, normal},
    {"AMERB", "an American option is worth no less than a European one and its exercise",
     american_above_european, 10 * 1.5e-4},
    {"AMER", "a call without yield is not exercised early", american_never_early, 0.0},
    {"AMER", "approximation and tree", two_americans, 5 * 7.2e-4 + 10 * 2.3e-5},
    {"BRRR", "knock-in plus knock-out is the plain option", in_plus_out, 2 * 6e-7 + normal},
    {"DIGITAL", "call plus put is the cash, discounted", digital_pair, 2 * normal},
    {"RBOW", "the better plus the worse of two are both", better_plus_worse, 2 * 1e-5},
    {"RBOW", "A and B in either order", either_order, 2 * 1e-5},
    {"BASVOL2d", "assets in either order", basket_in_either_order, rounding},
    {"SPRDOPT", "a call is a put on the negative spread", spread_from_the_other_side, 2 * spread},
    {"SPRDOPT", "struck at 0 it is the exchange option", exchange, spread + 2e-7},
    {"COMBOPT", "both of its options", legs, rounding},
    {"EURO", "the implied volatility gives the premium", implied, rounding},
    {"AMERB", "the implied volatility gives the premium", implied_american, rounding},
    {"EURO EURO_Equity EURO_Forward WSPRD", "more volatility is worth more", more_volatile, 2 * normal},
    {"CODPREM", "the contingent premium makes the option free", pays_later, 6e-5},
    {"EURO EURO_Equity EURO_Forward FOREXCH AMER AMERB DIGITAL COD CODPREM COMBOPT BRRR LKBK RBOW "
     "SPRDOPT WSPRD "
     "WARRANT ASN AGC ASV ASNSPRD ASNSPRD2 CMPASN ASTRIP ASTRIPMV ASTRIP2m AdjASTRIP2m xCrudeAPO OSTRIP "
     "OSTRIP2 "
     "OSTRIPSPRD YRSTRIP PPLUS XCAP XCOL XCOL2 XCOL3 SWAPTION SWAPTION1",
     "twice the prices are twice the premium", twice_as_large, 1e-9},
    {"CMPDV", "twice the prices are twice the premium", twice_as_large, 3 * 1e-5},
    {"BOST", "twice the prices are twice the strike", twice_as_large, 3 * 1e-7},
    {"BASVOL BASVOL2d BASVOLT BASCORR", "twice the prices have the same volatility", same_of_twice, rounding},
};

bool names(const std::string& list, const std::string& function) {
  return (" " + list + " ").find(" " + function + " ") != std::string::npos;
}

}  // namespace

void check_relations(const Deal& deal) {
  static const auto by_place = of_each_function([](const Function& function) {
    std::vector<decltype(&relations[0])> list;
    for (const auto& relation : relations)
      if (names(relation.functions, function.computed_by)) list.push_back(&relation);
    return list;
  });
  for (const auto* const relation : by_place[static_cast<std::size_t>(deal.function - catalogue)]) {
    const double deviation = relation->deviation(deal) / scale(deal);
    if (deviation > relation->tolerance)
      fault(deal.text() + ": " + relation->relation + ", but for " + exact_number(deviation) +
            " of the largest price");
  }
}

}  // namespace kestran::fuzz
