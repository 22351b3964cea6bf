// Texts of the average-price options.
#include "functions/shared_texts.h"

namespace kestran {
namespace text {
namespace {

constexpr ArgumentText rate_to_payment{"IntRt", "interest rate to payment", Unit::rate, 0, 0.15};

constexpr ArgumentText fixings_in_all{"TotDays", "number of fixings in all, made and to come; 1 or more",
                                      Unit::count, 1, 260};
constexpr ArgumentText fixings_made{"SetDays", "number of fixings already made; 0 or more", Unit::count, 0,
                                    30};
constexpr ArgumentText years_to_next = start({"toNext", "time to the next fixing", Unit::years, 0, 0.5});
constexpr ArgumentText years_to_last =
    clock({"toEnd", "time to the last fixing, which is expiry and payment", Unit::years, 0.05, 1});

constexpr ArgumentText vol_before{"Vol1", "volatility until averaging starts", Unit::volatility, 0.05, 1};
constexpr ArgumentText vol_within{"Vol2", "volatility from the start of averaging on", Unit::volatility, 0.05,
                                  1};
constexpr ArgumentText proportional_yield{
    "Yield", "yield of the underlying, best equal to IntRt, as for futures: the drift is approximate",
    Unit::rate, 0, 0.15};
constexpr ArgumentText days_to_first =
    start({"AvgStart",
           "time to the first fixing; negative within averaging: minus the fixings made, today's not counted",
           Unit::whole_days, -30, 365});
constexpr ArgumentText days_to_last =
    clock({"AvgEnd", "time to the last fixing, which is expiry and payment", Unit::whole_days, 1, 365});

constexpr ArgumentText days_to_payment =
    clock({"toExp", "time to payment; below 0 counts as 0", Unit::days, 1, 365});
constexpr ArgumentText trading_days_to_first =
    start({"toStart", "time to the first fixing; 0 or less once averaging has begun", Unit::trading_days, -20,
           250});
constexpr ArgumentText trading_days_to_last =
    clock({"toEnd", "time to the last fixing", Unit::trading_days, 1, 250});
constexpr ArgumentText trading_days_a_year{
    "TradeDays", "trading days in a year", Unit::trading_days, 240, 260, 252};

constexpr ArgumentText set_average_a{
    "SetAvgA", "average of A's fixings already made; any number while none is made", Unit::price, 50, 150};
constexpr ArgumentText set_average_b{
    "SetAvgB", "average of B's fixings already made; any number while none is made", Unit::price, 50, 150};
constexpr ArgumentText last_fixing_of_both =
    clock({"ExpDays", "time to the last fixing of both, when it pays", Unit::whole_days, 1, 365});
constexpr ArgumentText first_fixing_of_both =
    start({"AvgBegDays",
           "time to the first fixing of both; negative within averaging: minus the fixings made, today's not "
           "counted",
           Unit::whole_days, -30, 365});

constexpr ArgumentText spot_a = driver({"PriceA", "spot price of A today", Unit::price, 50, 150});
constexpr ArgumentText spot_b = driver({"PriceB", "spot price of B today", Unit::price, 50, 150});
constexpr ArgumentText yield_a{"q1", "yield of A; equal to IntRt for a futures price", Unit::rate, 0, 0.15};
constexpr ArgumentText yield_b{"q2", "yield of B; equal to IntRt for a futures price", Unit::rate, 0, 0.15};
constexpr ArgumentText vol_within_a{
    "VolAf", "volatility of A from the start of its averaging on; 0 and less count as 0.00001",
    Unit::volatility, 0.05, 1};
constexpr ArgumentText vol_within_b{
    "VolBf", "volatility of B from the start of its averaging on; 0 and less count as 0.00001",
    Unit::volatility, 0.05, 1};
constexpr ArgumentText vol_before_a{"VolA",
                                    "volatility of A until its averaging starts; 0 and less count as 0.00001",
                                    Unit::volatility, 0.05, 1};
constexpr ArgumentText vol_before_b{"VolB",
                                    "volatility of B until its averaging starts; 0 and less count as 0.00001",
                                    Unit::volatility, 0.05, 1};
constexpr ArgumentText first_fixing_of_a =
    start({"AvgBegDaysA",
           "time to A's first fixing; negative within averaging: minus the fixings made, today's not counted",
           Unit::whole_days, -30, 365});
constexpr ArgumentText first_fixing_of_b =
    start({"AvgBegDaysB",
           "time to B's first fixing; negative within averaging: minus the fixings made, today's not counted",
           Unit::whole_days, -30, 365});

constexpr ArgumentText rate_to_last{"IntRt", "interest rate to ExpDays", Unit::rate, 0, 0.15};
constexpr ArgumentText vol_until_fixings{
    "Vol1",
    "volatility from the compound option's expiry to the first fixing; unused once a fixing was made by then",
    Unit::volatility, 0.05, 1};
constexpr ArgumentText vol_from_fixings{
    "Vol2", "volatility from the compound option's expiry on, once a fixing is made", Unit::volatility, 0.05,
    1};
constexpr ArgumentText days_to_next =
    start({"toNext", "time to the next fixing; the fixings to come are evenly spaced from there to ExpDays",
           Unit::days, 1, 365});
constexpr ArgumentText days_to_last_fixing =
    clock({"ExpDays", "time to the last fixing: expiry and payment of the average-price option", Unit::days,
           1, 730});
constexpr ArgumentText compound_vol{"CmpVol",
                                    "volatility from today to the compound option's expiry, averaging or not",
                                    Unit::volatility, 0.05, 1};
constexpr ArgumentText average_strike{"AsnStrike", "strike of the average-price option", Unit::price, 50,
                                      150};
constexpr ArgumentText compound_strike{
    "CompStrike", "strike of the compound option: the price at which the average-price option changes hands",
    Unit::price, 0, 30};
constexpr ArgumentText compound_expiry =
    expiry({"CmpExpDays", "time to the compound option's expiry", Unit::days, 1, 365});
constexpr ArgumentText compound_rate{"CmpIntRt", "interest rate to CmpExpDays", Unit::rate, 0, 0.15};
constexpr Choice compound_types[] = {
    {1, "call on a call"}, {2, "put on a call"}, {3, "call on a put"}, {4, "put on a put"}};
constexpr ArgumentText compound_type{"CmpOptType",
                                     "put or call, on a put or a call",
                                     Unit::selector,
                                     1,
                                     4,
                                     none,
                                     compound_types,
                                     "odd a call, even a put; below 3 on a call, else on a put"};
constexpr ArgumentText unused_steps{"Tsteps", "kept for compatibility; the result does not depend on it",
                                    Unit::count, 1, 2000};

constexpr const ArgumentText* asn_arguments[] = {
    &futures_price, &strike,        &rate,          &vol_as_given, &set_price,   &fixings_in_all,
    &fixings_made,  &years_to_next, &years_to_last, &put_or_call,  &which_result};
constexpr const ArgumentText* agc_arguments[] = {
    &price,      &strike,        &set_price,    &rate,        &proportional_yield, &vol_before,
    &vol_within, &days_to_first, &days_to_last, &put_or_call, &which_result};
constexpr const ArgumentText* asv_arguments[] = {
    &futures_price,       &strike,          &rate_to_payment,       &vol_as_given,
    &set_price,           &days_to_payment, &trading_days_to_first, &trading_days_to_last,
    &trading_days_a_year, &put_or_call,     &which_result};
constexpr const ArgumentText* spread_arguments[] = {&price_a,
                                                    &price_b,
                                                    &strike_of_difference,
                                                    &rate,
                                                    &vol_a,
                                                    &vol_b,
                                                    &correl,
                                                    &set_average_a,
                                                    &set_average_b,
                                                    &last_fixing_of_both,
                                                    &first_fixing_of_both,
                                                    &put_or_call,
                                                    &which_result};
constexpr const ArgumentText* two_period_arguments[] = {&spot_a,
                                                        &spot_b,
                                                        &strike_of_difference,
                                                        &rate,
                                                        &yield_a,
                                                        &yield_b,
                                                        &vol_within_a,
                                                        &vol_within_b,
                                                        &vol_before_a,
                                                        &vol_before_b,
                                                        &correl,
                                                        &set_average_a,
                                                        &set_average_b,
                                                        &last_fixing_of_both,
                                                        &first_fixing_of_a,
                                                        &first_fixing_of_b,
                                                        &put_or_call,
                                                        &which_result};
constexpr const ArgumentText* compound_arguments[] = {
    &futures_price,  &rate_to_last,    &vol_until_fixings, &vol_from_fixings,    &set_price,
    &fixings_in_all, &fixings_made,    &days_to_next,      &days_to_last_fixing, &compound_vol,
    &average_strike, &compound_strike, &compound_expiry,   &compound_rate,       &compound_type,
    &which_result,   &unused_steps};

constexpr ResultText asn_results[] = {premium(0),   delta(1), gamma(2),    vega(3),
                                      carry_rho(4), theta(5), delta_vol(6)};
constexpr ResultText agc_results[] = {
    premium(0),
    delta(1),
    gamma(2),
    {3, "vega_1", "change of the premium with the volatility before averaging, Vol1", per_volatility},
    {4, "carry_rho",
     "change of the premium with rate and yield moving in proportion, per 1.00 of IntRt, which must not be 0",
     per_rate},
    theta(5),
    {6, "delta_vol_1", "change of delta with the volatility before averaging, Vol1", delta_per_volatility},
    {7, "vega_2", "change of the premium with the volatility within averaging, Vol2", per_volatility},
    {8, "delta_vol_2", "change of delta with the volatility within averaging, Vol2", delta_per_volatility},
    {9, "no_result", "answers -1E+17: there is no such result", "none"}};
constexpr ResultText asv_results[] = {
    premium(0),
    delta(1),
    gamma(2),
    vega(3),
    {4, "carry_rho", "change of the premium with rate and yield moving together, up to the last fixing",
     per_rate},
    {5, "theta", "change of the premium as time passes; per day once the payoff is certain", per_year},
    delta_vol(6)};
constexpr ResultText spread_results[] = {
    premium(0),     delta_a(1),   delta_b(2), gamma_a(3),       gamma_b(4),       vega_a(5),      vega_b(6),
    correlation(7), carry_rho(8), theta(9),   delta_time_a(10), delta_time_b(11), cross_gamma(12)};
constexpr ResultText two_period_results[] = {
    premium(0),
    delta_a(1),
    delta_b(2),
    gamma_a(3),
    gamma_b(4),
    {5, "vega_a", "change of the premium with both volatilities of A moving together", per_volatility},
    {6, "vega_b", "change of the premium with both volatilities of B moving together", per_volatility},
    correlation(7),
    {8, "carry_rho", "change of the premium with the rate and both yields moving together", per_rate},
    theta(9),
    delta_time_a(10),
    delta_time_b(11),
    cross_gamma(12),
    {13, "vega_averaging", "change of the premium with VolAf and VolBf, within averaging, moving together",
     per_volatility}};
constexpr ResultText compound_results[] = {
    premium(0),
    delta(1),
    gamma(2),
    {3, "vega", "change of the premium with CmpVol", per_volatility},
    {4, "carry_rho",
     "change of the premium with both rates moving in proportion, per 1.00 of CmpIntRt; 0 at a CmpIntRt of 0",
     per_rate},
    theta(5),
    {6, "delta_vol", "change of delta with CmpVol", delta_per_volatility},
    {7, "vega_1", "change of the premium with Vol1", per_volatility},
    {8, "vega_2", "change of the premium with Vol2", per_volatility}};

constexpr char fast_accuracy[] =
    "With V the volatility times the root of the years to the last fixing, a call on 21 fixings is within "
    "3e-5 of Price at V = 0.1, 3e-4 at 0.4 and 3.3e-3 at 1; a put on 250, which has no correction, "
    "within 8e-5, 1.3e-3 and 7e-3. Above V = 0.4, and for puts from 0.16, use "
    "AdjASTRIP2m for fixings on business days, AGC for one each calendar day.";
constexpr char spread_accuracy[] =
    "As a share of the premium at the money mostly within 0.25 % for a volatility times the root of the "
    "years "
    "up to 0.12, 0.6 % up to 0.3 and 1.2 % up to 0.8; at most 0.6, 1.4 and 4 %.";

constexpr FunctionText functions[] = {
    {"ASN", "average-price option, fast approximation; times in years",
     "A call or put on the arithmetic average of evenly spaced fixings of a futures price, paid at the "
     "last: Black's formula at the volatility of the average and, for calls, a tabulated correction.",
     asn_arguments, asn_results, fast_accuracy, "AdjASTRIP2m, AGC, ASV",
     "=ASN(100,102,5%,30%,0,30,0,0.1,0.2,1,0)"},
    {"AGC", "average-price option by geometric conditioning, two volatilities",
     "A call or put on the arithmetic average of daily fixings, one a calendar day, paid on the day of the "
     "last, by conditioning on the geometric average (after Curran 1994).",
     agc_arguments, agc_results,
     "With V the volatility times the root of the years, the premium is too low by up to 1.4e-6 of Price at "
     "V = 0.1, 6e-5 at 0.4 and 9e-4 at 1 where Yield equals IntRt, by up to 4.5e-5, 1.4e-4 and 9e-4 where "
     "they are 0.05 apart. Not for V of 2.5 and more, nor where the fixings made leave a strike of 8 times "
     "Price.",
     "ASN, ASV, CMPASN", "=AGC(100,103,0,5%,2%,25%,35%,10,25,1,0)"},
    {"ASV", "average-price option in trading days",
     "A call or put on the arithmetic average of a futures price, fixed every trading day and paid on a day "
     "of its own, by the approximation of ASN.",
     asv_arguments, asv_results, fast_accuracy, "ASN, AdjASTRIP2m, AGC",
     "=ASV(100,98,5%,30%,0,100,20,60,252,1,0)"},
    {"ASNSPRD", "option on the difference of two average prices",
     "A call or put on average A - average B, of daily fixings of futures prices, paid at the last: each "
     "average as one lognormal variable with its exact mean and variance (Levy 1992).",
     spread_arguments, spread_results, spread_accuracy, "ASNSPRD2, SPRDOPT, OSTRIPSPRD",
     "=ASNSPRD(100,90,8,5%,30%,25%,0.6,0,0,60,30,1,0)"},
    {"ASNSPRD2",
     "option on the difference of two average prices, with yields, forward volatilities and two averaging "
     "periods",
     "ASNSPRD on spot prices with yields, with an averaging period of its own and two volatilities for each "
     "price.",
     two_period_arguments, two_period_results, spread_accuracy, "ASNSPRD, SPRDOPT",
     "=ASNSPRD2(50,52,-3,5%,2%,4%,50%,40%,30%,35%,0.7,0,51,120,60,-20,0,0)"},
    {"CMPASN", "option on an average-price option",
     "A European option to buy or sell an average-price option, whose fixings may begin before the option's "
     "own expiry, by quadrature over the price at that expiry.",
     compound_arguments, compound_results,
     "Within 5e-6 of Price at volatilities of 20 %, 1e-5 at 40 %, 3e-5 at 80 % and 1.2e-4 at 160 %.",
     "AGC, CMPDV", "=CMPASN(100,5%,35%,30%,0,21,0,150,180,40%,100,4,90,4.5%,1,0,100)"},
};

}  // namespace
}  // namespace text

const FamilyText asian_texts{"Average prices", text::functions};

}  // namespace kestran
