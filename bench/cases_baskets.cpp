#include <cmath>
#include <memory>

#include "bench/cases.h"
#include "bench/straight.h"
#include "models/baskets/basket_correl.h"
#include "models/baskets/basket_vol.h"
#include "models/baskets/basket_vol_tset.h"
#include "models/baskets/pplus.h"

namespace kestran::bench {
namespace {

// A basket whose assets are the less correlated the further apart they are in it.
struct Basket {
  std::vector<double> F, sigma, mu, w, Tset, rho, lower_rho;
};

std::shared_ptr<const Basket> basket(int n) {
  const auto assets = std::make_shared<Basket>();
  for (int i = 0; i < n; ++i) {
    assets->F.push_back(80.0 + i % 7);
    assets->sigma.push_back(0.2 + 0.01 * (i % 11));
    assets->mu.push_back(0.03 - 0.005 * (i % 3));
    assets->w.push_back(1.0 / n);
    assets->Tset.push_back(0.25 + 0.75 * i / n);
    for (int j = 0; j < n; ++j) assets->rho.push_back(std::pow(0.95, std::abs(i - j)));
    for (int j = 0; j < i; ++j) assets->lower_rho.push_back(std::pow(0.95, i - j));
  }
  return assets;
}

constexpr double years = 0.75;

void add_basket(int n) {
  const auto b = basket(n);
  Case& volatility = add_case("BASVOL/" + std::to_string(n), years, 1.0);
  add_worksheet(volatility, "BASVOL",
                {b->F, b->sigma, b->mu, b->w, Argument(b->rho, static_cast<std::size_t>(n)), years}, 5);
  add_model(volatility, [=](double T) {
    return basket_vol_moment_match(b->F.data(), b->sigma.data(), b->mu.data(), b->w.data(), b->rho.data(), n,
                                   T);
  });
  add_straight(volatility, [=](double T) {
    return straight::basket_vol(b->F.data(), b->sigma.data(), b->mu.data(), b->w.data(), b->rho.data(), n, T);
  });
}

void add_two_assets() {
  Case& volatility = add_case("BASVOL2d", years, 1.0);
  const auto b = basket(2);
  add_worksheet(
      volatility, "BASVOL2d",
      {b->F[0], b->F[1], b->sigma[0], b->sigma[1], b->mu[0], b->mu[1], b->w[0], b->w[1], b->rho[1], years},
      9);
  add_model(volatility, [=](double T) {
    return basket_vol_moment_match(b->F.data(), b->sigma.data(), b->mu.data(), b->w.data(), b->rho.data(), 2,
                                   T);
  });
  add_straight(volatility, [=](double T) {
    return straight::basket_vol(b->F.data(), b->sigma.data(), b->mu.data(), b->w.data(), b->rho.data(), 2, T);
  });
}

void add_basket_of_fixings(int n) {
  const auto b = basket(n);
  Case& volatility = add_case("BASVOLT/" + std::to_string(n), years, 1.0);
  add_worksheet(volatility, "BASVOLT", {b->F, b->sigma, b->w, b->Tset, Argument(b->lower_rho), years, 0}, 5);
  add_model(volatility, [=](double T) {
    return basket_vol_tset({b->F.data(), b->sigma.data(), b->w.data(), b->Tset.data(), n},
                           b->lower_rho.data(), T, 0);
  });
  add_straight(volatility, [=](double T) {
    return straight::basket_vol_tset(b->F.data(), b->sigma.data(), b->w.data(), b->Tset.data(),
                                     b->lower_rho.data(), T, n);
  });
}

// Two baskets of n assets each, the first and the second half of one.
void add_basket_correlation(int n) {
  const auto b = basket(2 * n);
  const auto half = [n](const std::vector<double>& of_both, int which) {
    return std::vector<double>(of_both.begin() + which * n, of_both.begin() + (which + 1) * n);
  };
  Case& correlation = add_case("BASCORR/" + std::to_string(n), years, 1.0);
  add_worksheet(correlation, "BASCORR",
                {half(b->F, 0), half(b->F, 1), half(b->sigma, 0), half(b->sigma, 1), half(b->w, 0),
                 half(b->w, 1), half(b->Tset, 0), half(b->Tset, 1), Argument(b->lower_rho), years},
                9);
  add_model(correlation, [=](double T) {
    const FixingBasket first = {b->F.data(), b->sigma.data(), b->w.data(), b->Tset.data(), n};
    const FixingBasket second = {first.F + n, first.sigma + n, first.w + n, first.Tset + n, n};
    return basket_correl_tset(first, second, b->lower_rho.data(), T);
  });
  add_straight(correlation, [=](double T) {
    return straight::basket_correl(b->F.data(), b->sigma.data(), b->w.data(), b->Tset.data(),
                                   b->lower_rho.data(), T, n, n);
  });
}

// Baskets of two prices each, the first one an average, the second one weighted with days.
void add_difference_of_baskets() {
  constexpr double K = 5.0, r = 0.05;
  const TwoBaskets difference = {{100.0, 101.0, 95.0, 96.0},
                                 {0.35, 0.34, 0.4, 0.39},
                                 {0.95, 0.95, 0.7, 0.68, 0.68, 0.7},
                                 {10.0, 20.0},
                                 K,
                                 r,
                                 years,
                                 1,
                                 1,
                                 1};
  Case& option = add_case("PPLUS", K, 100.0);
  std::vector<Argument> arguments;
  const auto append = [&arguments](const auto& numbers) {
    for (double number : numbers) arguments.push_back(number);
  };
  append(difference.S);
  append(difference.days_B);
  append(difference.sigma);
  append(difference.rho);
  for (double number : {K, r, years, 1.0, 0.0, 1.0, 1.0}) arguments.push_back(number);
  add_worksheet(option, "PPLUS", arguments, 16);
  add_model(option, [difference](double strike) {
    TwoBaskets struck = difference;
    struck.K = strike;
    return pplus_price(struck);
  });
}

}  // namespace

void add_basket_cases() {
  for (int n : {2, 50, 64, 128, 256}) add_basket(n);
  add_two_assets();
  add_basket_of_fixings(50);
  add_basket_correlation(25);
  add_difference_of_baskets();
}

}  // namespace kestran::bench
