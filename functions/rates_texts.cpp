// Texts of the rates, caps and swaps.
#include "functions/shared_texts.h"

namespace kestran {
namespace text {
namespace {

constexpr ArgumentText forwards = driver({"Price_rng", "forward price of each period", Unit::price, 15, 30});
constexpr ArgumentText zero_rates{"IntRt_rng", "zero rate from today to the expiry of each period",
                                  Unit::rate, 0, 0.15};
constexpr ArgumentText period_vols{"Vol_rng",
                                   "volatility of each period, for valuing it from the option's expiry on",
                                   Unit::volatility, 0.05, 1};
constexpr ArgumentText caplet_vols{
    "Vol_rng", "volatility of each period's caplet, for valuing it from the option's expiry on",
    Unit::volatility, 0.05, 1};
constexpr ArgumentText period_days =
    clock({"ExpDays_rng", "time to the expiry of each period, all after the option's", Unit::days, 30, 1095});
constexpr ArgumentText quantities{"Qty_rng", "quantity of each period", Unit::quantity, 0, 10};
constexpr ArgumentText strip_vol{"StripVol", "volatility of the common factor until the option's expiry",
                                 Unit::volatility, 0.05, 1};
constexpr ArgumentText cap_strike{"CfStrike", "strike of the cap or floor", Unit::price, 15, 30};
constexpr ArgumentText option_strike{"CompStrike", "strike of the option, per unit of quantity", Unit::price,
                                     0, 5};
constexpr ArgumentText option_days =
    expiry({"OptExpDays", "time to the option's expiry", Unit::days, 1, 365});
constexpr ArgumentText option_rate{"OptIntRt", "zero rate to the option's expiry", Unit::rate, 0, 0.15};
constexpr Choice cap_types[] = {
    {1, "call on a cap"}, {2, "put on a cap"}, {3, "call on a floor"}, {4, "put on a floor"}};
constexpr ArgumentText cap_type{"OptType",
                                "call or put on a cap or floor",
                                Unit::selector,
                                1,
                                4,
                                none,
                                cap_types,
                                "odd: call, even: put; below 3 on a cap, else on a floor"};
constexpr ArgumentText tree_steps{"Tsteps", "steps of the tree, 1 to 10,000", Unit::count, 10, 1000, 200};

constexpr ArgumentText swap_factor_vol{"SwapVol", "volatility of the common factor until the option's expiry",
                                       Unit::volatility, 0.05, 1};
constexpr ArgumentText vol_spread{
    "VolSpread", "added to Vol_rng for the floorlets (skew); their volatility is at least 0.00001",
    Unit::volatility, -0.1, 0.1};
constexpr ArgumentText cap{"Cap", "strike of the cap", Unit::price, 15, 30};
constexpr ArgumentText floor{"Floor", "strike of the floor", Unit::price, 15, 30};
constexpr ArgumentText kept_steps{"Tsteps", "kept for older sheets; the result does not depend on it",
                                  Unit::count, 1, 2000};
constexpr Choice collar_types[] = {{0, "put: enter as the floor's buyer"},
                                   {1, "call: enter as the cap's buyer"}};
constexpr ArgumentText collar_type{"OptType",    "call or put on the collar", Unit::selector, 0, 1, none,
                                   collar_types, "odd: call, even: put"};

constexpr ArgumentText swap_forwards = driver({"Fwd", "forward price of each period", Unit::price, 15, 30});
constexpr ArgumentText swap_quantities{"Qty", "quantity of each period", Unit::quantity, 0, 10};
constexpr ArgumentText swap_times =
    clock({"Swaptime", "time to the settlement of each period", Unit::years, 0.1, 10});
constexpr ArgumentText swap_rates{"Rates", "zero rate to the settlement of each period", Unit::semiannual, 0,
                                  0.15};
constexpr ArgumentText swap_vol{"Swapvol", "volatility of the average forward", Unit::volatility, 0.05, 1};
constexpr ArgumentText fixed_price{"Strike", "fixed price of the swap", Unit::price, 15, 30};
constexpr ArgumentText fixed_prices{"Strike", "fixed price of each period", Unit::price, 15, 30};
constexpr ArgumentText swaption_rate{"IntRt", "zero rate to the option's expiry", Unit::semiannual, 0, 0.15};
constexpr ArgumentText swaption_expiry =
    expiry({"Expiry", "time to the option's expiry", Unit::years, 0.05, 5});
constexpr Choice swaption_types[] = {{0, "put: receive the fixed price"}, {1, "call: pay the fixed price"}};
constexpr ArgumentText swaption_type{"Opttype", "put or call", Unit::selector, 0,
                                     1,         none,          swaption_types, "call"};
constexpr ArgumentText period =
    of_month({"RetMonth", "for results of one period: of which, counted from 1; else not looked at",
              Unit::count, 1, 12});

constexpr const ArgumentText* cap_arguments[] = {
    &forwards,      &zero_rates,  &period_vols, &period_days, &quantities,   &strip_vol, &cap_strike,
    &option_strike, &option_days, &option_rate, &cap_type,    &which_result, &tree_steps};
constexpr const ArgumentText* collar_arguments[] = {
    &forwards,    &zero_rates, &caplet_vols, &period_days, &swap_factor_vol, &vol_spread,
    &option_days, &cap,        &floor,       &option_rate, &kept_steps};
constexpr const ArgumentText* collar2_arguments[] = {
    &forwards,    &zero_rates, &caplet_vols, &period_days, &swap_factor_vol, &vol_spread,
    &option_days, &cap,        &floor,       &option_rate, &kept_steps,      &which_result};
constexpr const ArgumentText* collar3_arguments[] = {
    &forwards, &zero_rates, &caplet_vols, &period_days, &swap_factor_vol, &vol_spread,  &option_days,
    &cap,      &floor,      &option_rate, &kept_steps,  &collar_type,     &which_result};
constexpr const ArgumentText* swaption_arguments[] = {
    &swap_forwards, &swap_quantities, &swap_times,    &swap_rates,   &swap_vol, &fixed_price,
    &swaption_rate, &swaption_expiry, &swaption_type, &which_result, &period};
constexpr const ArgumentText* swaption1_arguments[] = {
    &swap_forwards, &swap_quantities, &swap_times,    &swap_rates,   &fixed_prices, &swap_vol,
    &swaption_rate, &swaption_expiry, &swaption_type, &which_result, &period};

constexpr ResultText delta_of_periods(int selector) {
  return {selector, "delta_period",
          "change of the premium with the price of the first, second, ... period alone", per_price,
          ResultText::of_period};
}
constexpr ResultText delta_of_all{1, "delta", "change of the premium as all prices rise together", per_price};
constexpr ResultText gamma_of_all{2, "gamma", "change of delta as all prices rise together", delta_per_price};

constexpr ResultText cap_results[] = {premium(0),
                                      delta_of_all,
                                      gamma_of_all,
                                      {3, "vega", "change of the premium with StripVol", per_volatility},
                                      {4, "rho", "change of the premium with OptIntRt alone", per_rate},
                                      theta(5),
                                      delta_of_periods(11)};
constexpr ResultText collar_results[] = {premium(0)};
constexpr ResultText collar2_results[] = {
    premium(0),
    delta_of_all,
    gamma_of_all,
    {3, "vega", "change of the premium with SwapVol", per_volatility},
    {4, "carry_rho", "change of the premium as all rates rise together, forward prices unchanged", per_rate},
    theta(5),
    {6, "vega_periods", "change of the premium as every Vol_rng rises", per_volatility},
    {7, "vega_spread", "change of the premium with VolSpread", per_volatility},
    {8, "cap_sensitivity", "change of the premium with Cap", per_price},
    {9, "floor_sensitivity", "change of the premium with Floor", per_price},
    {10, "forward", "value of the collar at the option's expiry at today's forward prices; may be negative",
     "price"},
    delta_of_periods(11)};
constexpr ResultText swaption_results[] = {
    {0, "premium", "what the holder pays today, per unit of total quantity", "price"},
    {1, "delta", "change of the whole swaption with the period's price, per unit of its quantity", per_price,
     ResultText::of_month},
    {2, "gamma", "change of delta as the average forward rises by 1.00", delta_per_price,
     ResultText::of_month},
    vega(3),
    {4, "carry_rho",
     "change of the premium as all zero rates rise together, forward prices and their average unchanged",
     per_rate},
    theta(5),
    {6, "delta_vol", "change of delta with the volatility", delta_per_volatility, ResultText::of_month},
    {7, "delta_time", "change of delta as time passes", delta_per_year, ResultText::of_month}};

constexpr FunctionText functions[] = {
    {"XCAP", "option on a cap or floor",
     "European option on a cap or floor: a binomial tree of the common factor (Trigeorgis 1991) to the "
     "option's expiry, "
     "where each period is a caplet or floorlet by Black's formula (1976). Averages weighted with quantity, "
     "not sums.",
     cap_arguments, cap_results,
     "Within 0.8 % of the premium at the money at 100 steps, 0.56 % at 200, 0.09 % at 1000. Do not trust "
     "gamma.",
     "XCOL, XCOL3, SWAPTION",
     "=XCAP({20,20.5,21,21.5},{0.05,0.051,0.052,0.053},{0.3,0.29,0.28,0.27},{120,150,181,212},{1,2,1.5,3},25%"
     ",21,0.8,90,"
     "5%,1,0,25)"},
    {"XCOL", "option on a collar",
     "European option to enter a collar, long a cap and short a floor on periods of equal quantity, as the "
     "cap's buyer at "
     "no further cost. Premium per unit of quantity.",
     collar_arguments, collar_results,
     "The integral over the common factor, exact but for the normal distribution, whose error is 7.5e-8 of "
     "the price.",
     "XCOL2, XCOL3, XCAP",
     "=XCOL({20,20.5,21,21.5},{0.05,0.051,0.052,0.053},{0.3,0.29,0.28,0.27},{120,150,181,212},25%,3%,90,22,"
     "19,5%,100)"},
    {"XCOL2", "option on a collar, with sensitivities",
     "European option to enter a collar as the cap's buyer, with sensitivities.", collar2_arguments,
     collar2_results,
     "The integral over the common factor, exact but for the normal distribution, whose error is 7.5e-8 of "
     "the price.",
     "XCOL, XCOL3, XCAP",
     "=XCOL2({20,20.5,21,21.5},{0.05,0.051,0.052,0.053},{0.3,0.29,0.28,0.27},{120,150,181,212},25%,3%,90,22,"
     "19,5%,100,1)"},
    {"XCOL3", "call or put on a collar, with sensitivities",
     "European option to enter a collar, as the cap's buyer (call) or as the floor's buyer (put), with "
     "sensitivities.",
     collar3_arguments, collar2_results,
     "The integral over the common factor, exact but for the normal distribution, whose error is 7.5e-8 of "
     "the price.",
     "XCOL, XCOL2, XCAP",
     "=XCOL3({20,20.5,21,21.5},{0.05,0.051,0.052,0.053},{0.3,0.29,0.28,0.27},{120,150,181,212},25%,3%,90,22,"
     "19,5%,100,2,"
     "0)"},
    {"SWAPTION", "option to enter a swap",
     "European option to enter a swap of a strip of forward prices against a fixed price: Black's formula "
     "(1976) on the "
     "average forward, weighted with quantity and discount factor, per unit of total quantity.",
     swaption_arguments, swaption_results,
     "Black's formula on the average forward. carry_rho and theta hold the average forward constant, "
     "although its "
     "weights "
     "contain the rates: a full repricing differs by a few per cent in carry_rho.",
     "SWAPTION1, XCAP",
     "=SWAPTION({20,20.5,21,21.5},{1,1,2,1},{0.5,0.6,0.7,0.8},{0.05,0.051,0.052,0.053},25%,20.7,5%,0.45,1,0,"
     "1)"},
    {"SWAPTION1", "option to enter a swap with a fixed price for each period",
     "European option to enter a swap with a fixed price for each period: struck at their average, weighted "
     "like the "
     "forward prices.",
     swaption1_arguments, swaption_results,
     "Exact when one lognormal factor moves all forwards. carry_rho and theta hold both averages constant.",
     "SWAPTION, XCAP",
     "=SWAPTION1({20,20.5,21,21.5},{1,1,2,1},{0.5,0.6,0.7,0.8},{0.05,0.051,0.052,0.053},{19.5,20,21,22},25%,"
     "5%,0.45,1,0,"
     "2)"},
};

}  // namespace
}  // namespace text

const FamilyText rates_texts{"Rates, caps and swaps", text::functions};

}  // namespace kestran
