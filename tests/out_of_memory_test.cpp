// Whichever allocation of a model fails, its answer is not a number.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "models/asian/compound_asian.h"
#include "models/baskets/basket_correl.h"
#include "models/baskets/basket_vol.h"
#include "models/baskets/basket_vol_tset.h"
#include "models/black_scholes/american_tree.h"
#include "models/exotics/warrant.h"
#include "models/rates/swaption.h"
#include "models/rates/xcap.h"
#include "models/rates/xcol.h"
#include "models/strips/asian_strip.h"
#include "numerics/arrays.h"

namespace kestran {
namespace {

const std::vector<double> twenty(20, 20.0), third(20, 0.3), late(20, 0.8), later(20, 0.9), none(400, 0.0),
    packed(190, 0.2);

AsianStrip strip() {
  AsianStrip option;
  option.F = twenty.data();
  option.K = 20;
  option.r = 0.05;
  option.sigma = third.data();
  option.rho = 0.9;
  option.n = twenty.data();
  option.m = 5;
  option.A = 20;
  option.Next = late.data();
  option.End = later.data();
  option.ToExp = 1;
  option.OptType = 1;
  option.L = 20;
  return option;
}

double price_out_of_order() {
  std::vector<double> End = later;
  End[7] = 0.7;
  AsianStrip option = strip();
  option.End = End.data();
  return asian_strip(option, 0, 1);
}

CapOption cap() {
  CapOption option;
  option.Price = option.Qty = twenty.data();
  option.IntRt = option.Vol = third.data();
  option.ExpDays = late.data();
  option.n = 20;
  option.StripVol = 0.3;
  option.CfStrike = 20;
  option.CompStrike = 1;
  option.T = 0.5;
  option.N = 10;
  option.OptType = 1;
  return option;
}

CollarOption collar() {
  CollarOption option;
  option.Price = twenty.data();
  option.IntRt = option.Vol = third.data();
  option.ExpDays = late.data();
  option.n = 20;
  option.SwapVol = 0.3;
  option.T = 0.5;
  option.Cap = 22;
  option.Floor = 19;
  option.OptType = 1;
  return option;
}

CompoundAsian compound() {
  CompoundAsian option;
  option.S0 = option.K = 100;
  option.sigma1 = option.sigma2 = option.sigma_c = 0.3;
  option.N = 21;
  option.toNext = 30;
  option.ExpDays = 60;
  option.CmpExpDays = 40;
  option.X = 4;
  option.CmpOptType = 1;
  return option;
}

double swaption_price() {
  double by_period[4][20];
  SwaptionRecord record;
  record.delta_by_period = by_period[0];
  record.gamma_by_period = by_period[1];
  record.decay_by_period = by_period[2];
  record.vanna_by_period = by_period[3];
  swaption_model(twenty.data(), twenty.data(), late.data(), third.data(), 0.3, 20, 0.05, 0.5, 20, 1, record);
  return record.price;
}

TEST(OutOfMemory, EveryFailingAllocationMakesTheAnswerNotANumber) {
  const struct {
    const char* name;
    std::function<double()> price;
  } rows[] = {
      {"basket_vol_moment_match",
       [] {
         return basket_vol_moment_match(twenty.data(), third.data(), none.data(), twenty.data(), none.data(),
                                        20, 1);
       }},
      {"basket_vol_tset",
       [] {
         return basket_vol_tset({twenty.data(), third.data(), twenty.data(), late.data(), 20}, packed.data(),
                                1, 0);
       }},
      {"basket_correl_tset",
       [] {
         const FixingBasket ten = {twenty.data(), third.data(), twenty.data(), late.data(), 10};
         return basket_correl_tset(ten, ten, packed.data(), 1);
       }},
      {"asian_strip price", [] { return asian_strip(strip(), 0, 1); }},
      {"asian_strip price out of order", price_out_of_order},
      {"asian_strip vega", [] { return asian_strip(strip(), 9, 2); }},
      {"asian_strip theta", [] { return asian_strip(strip(), 5, 2); }},
      {"xcap_greeks price", [] { return xcap_greeks(cap(), 0); }},
      {"xcap_greeks gamma", [] { return xcap_greeks(cap(), 2); }},
      {"xcol_greeks delta", [] { return xcol_greeks(collar(), 1); }},
      {"xcol_greeks forward value", [] { return xcol_greeks(collar(), 10); }},
      {"compound_asian_greek", [] { return compound_asian_greek(compound(), 1); }},
      {"american_binomial", [] { return american_binomial(100, 100, 1, 0.05, 0.03, 0.3, 0, 50, 3); }},
      {"warrant_value",
       [] {
         return warrant_value({100, 110, 0.05, 0.02, 0.3, 1, 3, 20, 100, 1}, 0);
       }},
      {"swaption_model", swaption_price},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(std::isfinite(row.price())) << row.name;
    int failing = 1;
    for (;; ++failing) {
      testing::internal::CaptureStderr();
      set_allocation_limit(failing);
      const double price = row.price();
      set_allocation_limit(0);
      const bool failed = !testing::internal::GetCapturedStderr().empty();
      if (!failed) break;
      EXPECT_TRUE(std::isnan(price)) << row.name << ", allocation " << failing;
    }
    EXPECT_GT(failing, 1) << row.name << " allocates nothing";
  }
}

}  // namespace
}  // namespace kestran
