#include "bench/quantlib.h"

#include <algorithm>
#include <cmath>
#include <ql/currencies/europe.hpp>
#include <ql/exercise.hpp>
#include <ql/experimental/exoticoptions/analyticcompoundoptionengine.hpp>
#include <ql/experimental/exoticoptions/analyticeuropeanmargrabeengine.hpp>
#include <ql/indexes/iborindex.hpp>
#include <ql/instruments/asianoption.hpp>
#include <ql/instruments/barrieroption.hpp>
#include <ql/instruments/basketoption.hpp>
#include <ql/instruments/lookbackoption.hpp>
#include <ql/instruments/quantovanillaoption.hpp>
#include <ql/instruments/swaption.hpp>
#include <ql/instruments/vanillaoption.hpp>
#include <ql/interestrate.hpp>
#include <ql/math/distributions/bivariatenormaldistribution.hpp>
#include <ql/methods/lattices/binomialtree.hpp>
#include <ql/pricingengines/asian/turnbullwakemanasianengine.hpp>
#include <ql/pricingengines/barrier/analyticbarrierengine.hpp>
#include <ql/pricingengines/basket/kirkengine.hpp>
#include <ql/pricingengines/basket/stulzengine.hpp>
#include <ql/pricingengines/blackformula.hpp>
#include <ql/pricingengines/blackscholescalculator.hpp>
#include <ql/pricingengines/lookback/analyticcontinuousfloatinglookback.hpp>
#include <ql/pricingengines/quanto/quantoengine.hpp>
#include <ql/pricingengines/swaption/blackswaptionengine.hpp>
#include <ql/pricingengines/vanilla/analyticeuropeanengine.hpp>
#include <ql/pricingengines/vanilla/baroneadesiwhaleyengine.hpp>
#include <ql/pricingengines/vanilla/binomialengine.hpp>
#include <ql/processes/blackscholesprocess.hpp>
#include <ql/quotes/simplequote.hpp>
#include <ql/settings.hpp>
#include <ql/termstructures/volatility/equityfx/blackconstantvol.hpp>
#include <ql/termstructures/yield/flatforward.hpp>
#include <ql/time/calendars/nullcalendar.hpp>
#include <ql/time/daycounters/actual36525.hpp>
#include <utility>
#include <vector>

namespace kestran::bench::quantlib {
namespace {

using QuantLib::ext::shared_ptr;

template <class Object, class... Argument>
shared_ptr<Object> make(Argument&&... argument) {
  return QuantLib::ext::make_shared<Object>(std::forward<Argument>(argument)...);
}

QuantLib::Date today() {
  static const QuantLib::Date date = [] {
    const QuantLib::Date first(2, QuantLib::January, 2024);
    QuantLib::Settings::instance().evaluationDate() = first;
    return first;
  }();
  return date;
}

QuantLib::Handle<QuantLib::YieldTermStructure> flat_rate(double level) {
  return QuantLib::Handle<QuantLib::YieldTermStructure>(
      make<QuantLib::FlatForward>(today(), level, QuantLib::Actual36525()));
}

QuantLib::Handle<QuantLib::BlackVolTermStructure> flat_volatility(double level) {
  return QuantLib::Handle<QuantLib::BlackVolTermStructure>(
      make<QuantLib::BlackConstantVol>(today(), QuantLib::NullCalendar(), level, QuantLib::Actual36525()));
}

struct Market {
  shared_ptr<QuantLib::SimpleQuote> spot;
  shared_ptr<QuantLib::BlackScholesMertonProcess> process;
};

Market market(const Asset& asset) {
  const auto spot = make<QuantLib::SimpleQuote>(asset.S);
  return {spot, make<QuantLib::BlackScholesMertonProcess>(QuantLib::Handle<QuantLib::Quote>(spot),
                                                          flat_rate(asset.q), flat_rate(asset.r),
                                                          flat_volatility(asset.sigma))};
}

shared_ptr<QuantLib::Exercise> at_expiry(int days) {
  return make<QuantLib::EuropeanExercise>(today() + days);
}

shared_ptr<QuantLib::Exercise> until_expiry(int days) {
  return make<QuantLib::AmericanExercise>(today(), today() + days);
}

shared_ptr<QuantLib::PlainVanillaPayoff> call(double K) {
  return make<QuantLib::PlainVanillaPayoff>(QuantLib::Option::Call, K);
}

shared_ptr<QuantLib::PlainVanillaPayoff> put(double K) {
  return make<QuantLib::PlainVanillaPayoff>(QuantLib::Option::Put, K);
}

template <class Option>
Price repriced(const shared_ptr<Option>& option, const shared_ptr<QuantLib::PricingEngine>& engine,
               const shared_ptr<QuantLib::SimpleQuote>& spot) {
  option->setPricingEngine(engine);
  return [option, spot](double price) {
    spot->setValue(price);
    return option->NPV();
  };
}

// What blackFormula needs for the periods of a cap.
struct CapPeriods {
  std::vector<double> forward, deviation, discount, quantity;
  double total = 0.0;
};

CapPeriods cap_periods(const CapOption& option) {
  CapPeriods periods;
  for (int i = 0; i < option.n; ++i) {
    const double tau = option.ExpDays[i] - option.T;
    periods.forward.push_back(option.Price[i]);
    periods.deviation.push_back(option.Vol[i] * std::sqrt(tau));
    periods.discount.push_back(std::exp(option.r * option.T - option.IntRt[i] * option.ExpDays[i]));
    periods.quantity.push_back(option.Qty[i]);
    periods.total += option.Qty[i];
  }
  return periods;
}

double cap_value(const CapPeriods& periods, double factor, double strike) {
  double value = 0.0;
  for (std::size_t i = 0; i < periods.forward.size(); ++i)
    value += periods.quantity[i] * QuantLib::blackFormula(QuantLib::Option::Call, strike,
                                                          factor * periods.forward[i], periods.deviation[i],
                                                          periods.discount[i]);
  return value / periods.total;
}

}  // namespace

Price european(const Asset& asset, double K, int days) {
  const Market m = market(asset);
  return repriced(make<QuantLib::VanillaOption>(call(K), at_expiry(days)),
                  make<QuantLib::AnalyticEuropeanEngine>(m.process), m.spot);
}

Price calculator(const Asset& asset, double K, int days) {
  const double T = days / 365.25;
  const double growth = std::exp(-asset.q * T), discount = std::exp(-asset.r * T);
  const double deviation = asset.sigma * std::sqrt(T);
  return [=, payoff = call(K)](double price) {
    const QuantLib::BlackScholesCalculator results(payoff, price, growth, deviation, discount);
    return results.value() + results.delta() + results.gamma() + results.theta(T) + results.vega(T) +
           results.rho(T);
  };
}

Price digital(const Asset& asset, double Cash, double K, int days) {
  const Market m = market(asset);
  const auto payoff = make<QuantLib::CashOrNothingPayoff>(QuantLib::Option::Call, K, Cash);
  return repriced(make<QuantLib::VanillaOption>(payoff, at_expiry(days)),
                  make<QuantLib::AnalyticEuropeanEngine>(m.process), m.spot);
}

Price american_quadratic(const Asset& asset, double K, int days) {
  const Market m = market(asset);
  return repriced(make<QuantLib::VanillaOption>(put(K), until_expiry(days)),
                  make<QuantLib::BaroneAdesiWhaleyApproximationEngine>(m.process), m.spot);
}

Price american_tree(const Asset& asset, double K, int days, int steps) {
  const Market m = market(asset);
  return repriced(make<QuantLib::VanillaOption>(put(K), until_expiry(days)),
                  make<QuantLib::BinomialVanillaEngine<QuantLib::CoxRossRubinstein>>(
                      m.process, static_cast<QuantLib::Size>(steps)),
                  m.spot);
}

Price implied_vol_european(const Asset& asset, double K, int days, double accuracy) {
  const Market m = market(asset);
  const auto option = make<QuantLib::VanillaOption>(call(K), at_expiry(days));
  return
      [=](double premium) { return option->impliedVolatility(premium, m.process, accuracy, 100, 1e-5, 2.0); };
}

Price implied_vol_american(const Asset& asset, double K, int days, double accuracy) {
  const Market m = market(asset);
  const auto option = make<QuantLib::VanillaOption>(put(K), until_expiry(days));
  return
      [=](double premium) { return option->impliedVolatility(premium, m.process, accuracy, 100, 0.01, 2.0); };
}

Price barrier(const Asset& asset, double K, int days, double H, double R, bool knock_in) {
  const Market m = market(asset);
  const auto type = knock_in ? QuantLib::Barrier::DownIn : QuantLib::Barrier::DownOut;
  return repriced(make<QuantLib::BarrierOption>(type, H, R, call(K), at_expiry(days)),
                  make<QuantLib::AnalyticBarrierEngine>(m.process), m.spot);
}

Price lookback(const Asset& asset, double lowest, int days) {
  const Market m = market(asset);
  const auto payoff = make<QuantLib::FloatingTypePayoff>(QuantLib::Option::Call);
  return repriced(make<QuantLib::ContinuousFloatingLookbackOption>(lowest, payoff, at_expiry(days)),
                  make<QuantLib::AnalyticContinuousFloatingLookbackEngine>(m.process), m.spot);
}

Price compound(const Asset& asset, double X1, double X, int days1, int days2) {
  const Market m = market(asset);
  return repriced(make<QuantLib::CompoundOption>(call(X1), at_expiry(days1), call(X), at_expiry(days2)),
                  make<QuantLib::AnalyticCompoundOptionEngine>(m.process), m.spot);
}

Price rainbow(const Asset& asset1, const Asset& asset2, double rho, double K, int days) {
  const Market m1 = market(asset1), m2 = market(asset2);
  return repriced(make<QuantLib::BasketOption>(make<QuantLib::MaxBasketPayoff>(call(K)), at_expiry(days)),
                  make<QuantLib::StulzEngine>(m1.process, m2.process, rho), m1.spot);
}

Price exchange(const Asset& asset1, const Asset& asset2, double rho, int days) {
  const Market m1 = market(asset1), m2 = market(asset2);
  return repriced(make<QuantLib::MargrabeOption>(1, 1, at_expiry(days)),
                  make<QuantLib::AnalyticEuropeanMargrabeEngine>(m1.process, m2.process, rho), m1.spot);
}

Price spread_of_forwards(double K, double r, double sigma, double T) {
  return [=](double F) {
    return QuantLib::bachelierBlackFormula(QuantLib::Option::Call, K, F, sigma * std::sqrt(T),
                                           std::exp(-r * T));
  };
}

Price heat_rate(double SB, double K, double r, double sigma_A, double sigma_B, double rho, double T) {
  return [=](double SA) {
    const double sigma = std::sqrt(sigma_A * sigma_A + sigma_B * sigma_B - 2.0 * rho * sigma_A * sigma_B);
    return QuantLib::blackFormula(QuantLib::Option::Call, K, SA / SB, sigma * std::sqrt(T), std::exp(-r * T));
  };
}

Price quanto(const Asset& asset, double E, double K, double foreign_rate, double sigma_E, double rho,
             int days) {
  const Market m = market(asset);
  const auto correlation = QuantLib::Handle<QuantLib::Quote>(make<QuantLib::SimpleQuote>(rho));
  const Price in_foreign_units =
      repriced(make<QuantLib::QuantoVanillaOption>(call(K), at_expiry(days)),
               make<QuantLib::QuantoEngine<QuantLib::VanillaOption, QuantLib::AnalyticEuropeanEngine>>(
                   m.process, flat_rate(foreign_rate), flat_volatility(sigma_E), correlation),
               m.spot);
  return [=](double price) { return E * in_foreign_units(price); };
}

Price spread(const Asset& asset1, const Asset& asset2, double rho, double K, int days) {
  const auto forward = [](const Asset& asset, const shared_ptr<QuantLib::SimpleQuote>& quote) {
    return make<QuantLib::BlackProcess>(QuantLib::Handle<QuantLib::Quote>(quote), flat_rate(asset.r),
                                        flat_volatility(asset.sigma));
  };
  const auto quote1 = make<QuantLib::SimpleQuote>(asset1.S);
  const auto quote2 = make<QuantLib::SimpleQuote>(asset2.S);
  return repriced(make<QuantLib::BasketOption>(make<QuantLib::SpreadBasketPayoff>(call(K)), at_expiry(days)),
                  make<QuantLib::KirkEngine>(forward(asset1, quote1), forward(asset2, quote2), rho), quote1);
}

Price asian(const Asset& asset, double K, int fixings) {
  const Market m = market(asset);
  std::vector<QuantLib::Date> dates;
  for (int day = 1; day <= fixings; ++day) dates.push_back(today() + day);
  return repriced(make<QuantLib::DiscreteAveragingAsianOption>(QuantLib::Average::Arithmetic, 0.0, 0, dates,
                                                               call(K), at_expiry(fixings)),
                  make<QuantLib::TurnbullWakemanAsianEngine>(m.process), m.spot);
}

Price cap(const CapOption& option) {
  return [periods = cap_periods(option), strike = option.CfStrike](double factor) {
    return cap_value(periods, factor, strike);
  };
}

Price option_on_cap(const CapOption& option) {
  const double dt = option.T / option.N;
  const double variance = option.StripVol * option.StripVol * dt;
  const double drift = -variance / 2.0;
  const double dx = std::sqrt(variance + drift * drift);
  const double up = 0.5 + 0.5 * drift / dx;
  const double discount = std::exp(-option.r * dt);
  return [=, periods = cap_periods(option), N = option.N, K = option.CompStrike](double strike) {
    std::vector<double> value;
    for (int k = 0; k <= N; ++k)
      value.push_back(std::max(cap_value(periods, std::exp((2 * k - N) * dx), strike) - K, 0.0));
    for (std::size_t level = value.size() - 1; level > 0; --level)
      for (std::size_t k = 0; k < level; ++k)
        value[k] = discount * (up * value[k + 1] + (1.0 - up) * value[k]);
    return value[0];
  };
}

Price swaption(const double* Fwd, const double* Qty, const double* Swaptime, const double* Rates,
               double Swapvol, double IntRt, double Expiry, int n) {
  const auto rate = [](double level) {
    return QuantLib::InterestRate(level, QuantLib::Actual36525(), QuantLib::Compounded, QuantLib::Semiannual);
  };
  std::vector<QuantLib::InterestRate> rates;
  for (int i = 0; i < n; ++i) rates.push_back(rate(Rates[i]));
  const QuantLib::InterestRate to_expiry = rate(IntRt);
  return [=](double strike) {
    double quantity = 0.0, A = 0.0, FW = 0.0;
    for (int i = 0; i < n; ++i) {
      const double weight = Qty[i] * rates[static_cast<std::size_t>(i)].discountFactor(Swaptime[i]);
      quantity += Qty[i];
      A += weight;
      FW += weight * Fwd[i];
    }
    return QuantLib::blackFormula(QuantLib::Option::Call, strike, FW / A, Swapvol * std::sqrt(Expiry),
                                  std::exp(-IntRt * Expiry)) *
           A / (quantity * to_expiry.discountFactor(Expiry));
  };
}

Price black_swaption(int n) {
  const auto curve = flat_rate(0.05);
  const auto monthly = QuantLib::Period(1, QuantLib::Months);
  const QuantLib::Date start = today() + 91;
  const QuantLib::Schedule schedule(start, start + n * monthly, monthly, QuantLib::NullCalendar(),
                                    QuantLib::Unadjusted, QuantLib::Unadjusted,
                                    QuantLib::DateGeneration::Forward, false);
  const auto index =
      make<QuantLib::IborIndex>("monthly", monthly, 0, QuantLib::EURCurrency(), QuantLib::NullCalendar(),
                                QuantLib::Unadjusted, false, QuantLib::Actual36525(), curve);
  const auto swap =
      make<QuantLib::VanillaSwap>(QuantLib::VanillaSwap::Payer, 1.0, schedule, 0.05, QuantLib::Actual36525(),
                                  schedule, index, 0.0, QuantLib::Actual36525());
  const auto swaption = make<QuantLib::Swaption>(swap, make<QuantLib::EuropeanExercise>(today() + 90));
  const auto volatility = make<QuantLib::SimpleQuote>(0.3);
  return repriced(swaption,
                  make<QuantLib::BlackSwaptionEngine>(curve, QuantLib::Handle<QuantLib::Quote>(volatility)),
                  volatility);
}

Price binorm_drezner(double b, double rho) {
  return [b, distribution = QuantLib::BivariateCumulativeNormalDistributionDr78(rho)](double a) {
    return distribution(a, b);
  };
}

Price binorm_west(double b, double rho) {
  return [b, distribution = QuantLib::BivariateCumulativeNormalDistributionWe04DP(rho)](double a) {
    return distribution(a, b);
  };
}

}  // namespace kestran::bench::quantlib
