// Texts of the exotic options on one and two prices.
#include "functions/shared_texts.h"

namespace kestran {
namespace text {
namespace {

constexpr ArgumentText barrier_rate{
    "IntRt", "interest rate to expiry; the drift takes it as compounded once a year", Unit::rate, 0, 0.15};
constexpr ArgumentText barrier_yield{
    "Yield",
    "yield of the underlying, equal to IntRt for futures; the drift takes it as compounded once a year",
    Unit::rate, 0, 0.15};
constexpr ArgumentText barrier =
    with_role({"BarrPr", "barrier; at or below Price it lies below the price, above Price above it",
               Unit::price, 50, 150},
              Role::barrier);
constexpr ArgumentText rebate{
    "Rebate",
    "cash paid: by a knock-out when the barrier is touched, by a knock-in at expiry if it never was",
    Unit::price, 0, 20};
constexpr Choice barrier_types[] = {{0, "put"}, {1, "call"}, {2, "put"}};
constexpr ArgumentText barrier_type{"OptType", "put or call", Unit::selector, 0, 2, none, barrier_types};
constexpr Choice knock_types[] = {{0, "knock-out"}, {1, "knock-in"}};
constexpr ArgumentText knock_type{
    "KnockType", "what touching the barrier does", Unit::selector, 0, 1, none, knock_types, "knock-in"};

constexpr ArgumentText extreme{
    "Strike", "extreme seen so far: the lowest price for a call, the highest for a put; Price at the start",
    Unit::price, 50, 150};

constexpr ArgumentText strike_over{
    "StrOver", "strike of the option held: the price at which the underlying option is bought or sold",
    Unit::price, 1, 30};
constexpr ArgumentText strike_under{"StrUnder", "strike of the underlying option", Unit::price, 50, 150};
constexpr ArgumentText time_over =
    expiry({"TimeOver", "time to expiry of the option held", Unit::days, 1, 365});
constexpr ArgumentText time_under =
    clock({"TimeUnder", "time to expiry of the underlying option, later than TimeOver", Unit::days, 30, 730});
constexpr ArgumentText rate_to_both{"IntRt", "interest rate to both expiries", Unit::rate, 0, 0.15};
constexpr ArgumentText compound_yield{
    "Yield", "yield of the underlying; only equal to IntRt, as for futures, it is priced exactly", Unit::rate,
    0, 0.15};
constexpr ArgumentText forward_vol{"FwdVol", "volatility between TimeOver and TimeUnder", Unit::volatility,
                                   0.05, 0.5};
constexpr ArgumentText vol_to_under{
    "Vol", "volatility from now to TimeUnder; that until TimeOver follows from it and FwdVol",
    Unit::volatility, 0.05, 1};
constexpr Choice compound_types[] = {{1, "call on a call"},
                                     {2, "put on a call"},
                                     {3, "call on a put"},
                                     {4, "put on a put"},
                                     {5, "no option: the volatility until TimeOver"}};
constexpr ArgumentText compound_type{
    "OptType",      "put or call, on a put or a call", Unit::selector, 1, 4, none,
    compound_types, "no such type, -999999999.999"};

constexpr ArgumentText exchange_rate{"ExRt", "domestic price of one unit of foreign currency today",
                                     Unit::price, 0.5, 2.5};
constexpr ArgumentText foreign_price =
    driver({"Price", "price of the asset today, in foreign currency", Unit::price, 50, 150});
constexpr ArgumentText quanto_strike{
    "Strike",
    "exercise price: in foreign currency with Qtype 1 and 3, domestic with 2, an exchange rate with 4",
    Unit::price, 50, 150};
constexpr ArgumentText domestic_rate{"dIntRt", "domestic interest rate to expiry", Unit::rate, 0, 0.15};
constexpr ArgumentText foreign_rate{"fIntRt", "foreign interest rate to expiry", Unit::rate, 0, 0.15};
constexpr ArgumentText asset_yield{"Yield", "yield of the asset, such as its dividends", Unit::rate, 0, 0.15};
constexpr ArgumentText asset_vol{"Vol", "volatility of the asset; 0 and less count as 0.00001",
                                 Unit::volatility, 0.05, 1};
constexpr ArgumentText exchange_vol{"exVol", "volatility of the exchange rate; 0 and less count as 0.00001",
                                    Unit::volatility, 0.02, 0.5};
constexpr ArgumentText exchange_correl{"Correl",
                                       "correlation of the asset and the exchange rate as quoted by ExRt",
                                       Unit::correlation, -0.95, 0.95};
constexpr Choice quanto_types[] = {{1, "foreign strike at the exchange rate of expiry"},
                                   {2, "domestic strike of the asset in domestic currency"},
                                   {3, "foreign strike at the exchange rate of today"},
                                   {4, "strike of the exchange rate on the price of the asset"}};
constexpr ArgumentText quanto_type{"Qtype",     "what is fixed in which currency", Unit::selector, 1, 4, none,
                                   quanto_types};

constexpr ArgumentText rainbow_strike{
    "Strike", "exercise price; the cash with OptType 6, without meaning with 5", Unit::price, 50, 150};
constexpr ArgumentText rainbow_rate{"IntRt", "interest rate to expiry; the yield of both futures too",
                                    Unit::rate, 0, 0.15};
constexpr ArgumentText vol_a_as_given{"VolA", "volatility of A", Unit::volatility, 0.05, 1};
constexpr ArgumentText vol_b_as_given{"VolB", "volatility of B", Unit::volatility, 0.05, 1};
constexpr Choice rainbow_types[] = {
    {1, "call on the greater price"}, {2, "call on the smaller price"},
    {3, "put on the greater price"},  {4, "put on the smaller price"},
    {5, "receive A for B"},           {6, "the best of A, B and the cash Strike"}};
constexpr ArgumentText rainbow_type{"OptType", "what is paid", Unit::selector, 1, 6, none, rainbow_types};

constexpr ArgumentText correl_within_one{
    "Correl", "correlation of the logarithms of the two prices; beyond -1 and 1 it counts as these",
    Unit::correlation, -0.95, 0.95};

constexpr ArgumentText forward_spread =
    driver({"FwdSpd", "forward spread today, of any sign", Unit::price, -10, 10});
constexpr ArgumentText strike_of_spread{"Strike", "strike of the spread, of any sign", Unit::price, -10, 10};
constexpr ArgumentText spread_vol{"Vol", "volatility of the spread in units of price, not per cent",
                                  Unit::price_volatility, 0.5, 20};
constexpr ArgumentText call_or_put{"OptType", "put or call", Unit::selector, 0, 1, none, put_call, "put"};

constexpr ArgumentText output_price =
    driver({"PriceA", "price of the output today, such as power", Unit::price, 20, 120});
constexpr ArgumentText fuel_price = driver({"PriceB", "price of the fuel today", Unit::price, 2, 20});
constexpr ArgumentText strike_of_ratio{"Strike", "strike of the ratio PriceA / PriceB", Unit::ratio, 3, 15};
constexpr ArgumentText output_vol{"VolA", "volatility of the output; 0 and less count as 0.00001",
                                  Unit::volatility, 0.05, 1};
constexpr ArgumentText fuel_vol{"VolB", "volatility of the fuel", Unit::volatility, 0.05, 1};

constexpr ArgumentText share_price = driver({"Price", "price of a share today", Unit::price, 50, 150});
constexpr ArgumentText dividend_yield{"Yield", "dividend yield of the share", Unit::rate, 0, 0.15};
constexpr ArgumentText firm_vol{
    "Vol", "volatility of shares and warrants together, per share; 0 and less count as 0.00001",
    Unit::volatility, 0.05, 1};
constexpr ArgumentText to_vested =
    clock({"toVested",
           "time until it may first be exercised; 0 or less: at any time, toExp or more: only at expiry",
           Unit::days, 0, 1826});
constexpr ArgumentText to_expiry = expiry({"toExp", "time to expiry", Unit::days, 30, 3652});
constexpr ArgumentText warrants{"Nwar",
                                "warrants outstanding, counted as the shares are; 0 for one without dilution",
                                Unit::quantity, 0, 100};
constexpr ArgumentText shares{"Nshr", "shares outstanding", Unit::quantity, 10, 1000};
constexpr Choice warrant_types[] = {{0, "put warrant (the firm buys shares back)"}, {1, "call warrant"}};
constexpr ArgumentText warrant_type{"WarType", "put or call warrant", Unit::selector, 0, 1,
                                    none,      warrant_types,         "call warrant"};

constexpr const ArgumentText* barrier_arguments[] = {
    &price,   &strike, &barrier_rate, &barrier_yield, &vol_as_given, &exp_days,
    &barrier, &rebate, &barrier_type, &knock_type,    &which_result};
constexpr const ArgumentText* lookback_arguments[] = {&price,        &extreme,  &rate,        &yield,
                                                      &vol_as_given, &exp_days, &put_or_call, &which_result};
constexpr const ArgumentText* compound_arguments[] = {
    &price,          &strike_over, &strike_under, &time_over,     &time_under,  &rate_to_both,
    &compound_yield, &forward_vol, &vol_to_under, &compound_type, &which_result};
constexpr const ArgumentText* quanto_arguments[] = {
    &exchange_rate, &foreign_price,   &quanto_strike, &domestic_rate, &foreign_rate, &asset_yield, &asset_vol,
    &exchange_vol,  &exchange_correl, &exp_days,      &put_or_call,   &quanto_type,  &which_result};
constexpr const ArgumentText* rainbow_arguments[] = {
    &price_a,        &price_b, &rainbow_strike, &rainbow_rate, &vol_a_as_given,
    &vol_b_as_given, &correl,  &exp_days,       &rainbow_type, &which_result};
constexpr const ArgumentText* spread_arguments[] = {
    &price_a,           &price_b,  &strike_of_difference, &rate,        &vol_a, &vol_b,
    &correl_within_one, &exp_days, &put_or_call,          &which_result};
constexpr const ArgumentText* normal_spread_arguments[] = {
    &forward_spread, &strike_of_spread, &rate, &spread_vol, &exp_days, &call_or_put, &which_result};
constexpr const ArgumentText* heat_rate_arguments[] = {
    &output_price, &fuel_price, &strike_of_ratio, &rate,        &output_vol,
    &fuel_vol,     &correl,     &exp_days,        &put_or_call, &which_result};
constexpr const ArgumentText* warrant_arguments[] = {
    &share_price, &strike,   &rate,   &dividend_yield, &firm_vol,    &to_vested,
    &to_expiry,   &warrants, &shares, &warrant_type,   &which_result};

constexpr ResultText barrier_results[] = {
    premium(0),
    delta(1),
    gamma(2),
    vega(3),
    {4, "carry_rho", "change of the premium with rate and yield set to 1.001 IntRt; 0 at a rate of 0",
     per_rate},
    theta(5)};
constexpr ResultText lookback_results[] = {premium(0),          delta(1), gamma(2),    vega(3),
                                           proportional_rho(4), theta(5), delta_vol(6)};
constexpr ResultText compound_results[] = {
    premium(0, -1),
    delta(1),
    gamma(2),
    {3, "vega", "change of the premium with both volatilities moving in proportion, per 1.00 of Vol",
     per_volatility},
    proportional_rho(4),
    theta(5)};
constexpr ResultText quanto_results[] = {
    {0, "premium", "what the holder pays today, in domestic currency", "price"},
    {1, "delta", "change of the premium with the price of the asset", per_price},
    {2, "delta_fx", "change of the premium with the exchange rate", "premium per 1.00 of exchange rate"},
    {3, "gamma", "change of delta with the price of the asset", delta_per_price},
    {4, "gamma_fx", "change of delta_fx with the exchange rate", "delta_fx per 1.00 of exchange rate"},
    {5, "cross_gamma", "change of delta with the exchange rate", "delta per 1.00 of exchange rate"},
    {6, "vega", "change of the premium with the volatility of the asset", per_volatility},
    {7, "vega_fx", "change of the premium with the volatility of the exchange rate", per_volatility},
    correlation(8),
    {9, "rho_domestic", "change of the premium with the domestic interest rate", per_rate},
    {10, "rho_foreign", "change of the premium with the foreign interest rate", per_rate},
    theta(11)};
constexpr ResultText rainbow_results[] = {
    premium(0),
    delta_a(1),
    delta_b(2),
    gamma_a(3),
    gamma_b(4),
    cross_gamma(5),
    vega_a(6),
    vega_b(7),
    correlation(8),
    {9, "carry_rho", "change of the premium with the rate, which is both yields too; 0 at a rate of 0",
     per_rate},
    theta(10)};
constexpr ResultText spread_results[] = {
    premium(0),
    delta_a(1),
    delta_b(2),
    gamma_a(3),
    gamma_b(4),
    vega_a(5),
    vega_b(6),
    correlation(7),
    carry_rho(8),
    theta(9),
    delta_time_a(10),
    delta_time_b(11),
    cross_gamma(12),
    {13, "delta_a_vol_a", "change of delta A with the volatility of A", delta_per_volatility},
    {14, "delta_b_vol_b", "change of delta B with the volatility of B", delta_per_volatility},
    {15, "delta_a_vol_b", "change of delta A with the volatility of B", delta_per_volatility},
    {16, "delta_b_vol_a", "change of delta B with the volatility of A", delta_per_volatility}};
constexpr ResultText normal_spread_results[] = {
    premium(0),
    delta(1),
    gamma(2),
    {3, "vega", "change of the premium with the volatility in units of price",
     "premium per 1.00 of price volatility"},
    carry_rho(4),
    theta(5),
    delta_time(8)};
constexpr ResultText heat_rate_results[] = {
    {0, "premium", "what the holder pays today, in the unit of the ratio", "ratio"},
    delta_a(1),
    delta_b(2),
    gamma_a(3),
    gamma_b(4),
    vega_a(5),
    vega_b(6),
    correlation(7),
    carry_rho(8),
    theta(9),
    delta_time_a(10),
    delta_time_b(11),
    cross_gamma(12)};
constexpr ResultText warrant_results[] = {
    {0, "premium", "value of one warrant", "price", ResultText::one, -99},
    delta(1),
    gamma(2),
    vega(3),
    carry_rho(4),
    theta(5)};

constexpr FunctionText functions[] = {
    {"BRRR", "barrier option with rebate",
     "A European call or put that begins or ends when the price touches a barrier, watched continuously, "
     "with a cash rebate (Reiner and Rubinstein 1991).",
     barrier_arguments, barrier_results,
     "Closed form; at a price of 100 within 6e-5 at a volatility of 20 %, 1e-3 at 10 %, 1e-2 at 5 %. The "
     "drift makes knock-in and knock-out together differ a little from EURO unless rate and yield are "
     "equal, and carry_rho means something only then.",
     "EURO, LKBK", "=BRRR(100,95,6%,2%,30%,180,85,2,1,0,0)"},
    {"LKBK", "lookback option whose extreme starts at the strike",
     "A call pays the final price less the lower of the extreme seen so far and the lowest price from now "
     "on; a put the higher of the extreme and the highest price from now on, less the final price (Goldman, "
     "Sosin and Gatto 1979, Garman 1989).",
     lookback_arguments, lookback_results,
     "Closed form; at a price of 100 within 2e-4 at volatilities of 5 to 80 %, 1.5e-2 at 2 %. The "
     "extreme is watched continuously: daily fixings are worth less.",
     "BRRR, EURO", "=LKBK(100,95,5%,2%,30%,180,1,0)"},
    {"CMPDV", "option on an option, with a forward volatility",
     "A European option to buy or sell a European option, with one volatility until the first expiry and "
     "one from there to the second (Geske 1979).",
     compound_arguments, compound_results,
     "Within 1e-5 of the larger of Price and StrUnder, for a Yield equal to IntRt; with other yields the "
     "exercise at the first expiry is decided at a wrong price. -1 means that FwdVol and Vol contradict "
     "each other.",
     "CMPASN, XCAP, EURO", "=CMPDV(100,6,100,120,300,5%,5%,25%,28%,1,0)"},
    {"QUANTO", "four kinds of options on foreign assets",
     "A European option on an asset priced in a foreign currency, of Reiner's (1992) four types. Values are "
     "in domestic currency.",
     quanto_arguments, quanto_results,
     "Closed form; good to about 1e-7 of price and strike in domestic currency.", "FOREXCH, EURO",
     "=QUANTO(1.5,100,105,8%,5%,4%,20%,10%,0.3,182.625,1,3,0)"},
    {"RBOW", "rainbow option: on the better or worse of two prices, exchange, best of two and cash",
     "A European option on the better or the worse of two futures prices (Stulz 1982), to exchange one for "
     "the other (Margrabe 1978), or on the best of both and cash.",
     rainbow_arguments, rainbow_results,
     "Within 1e-5 of the largest of the two prices and the strike, the exchange option within 2e-7; gammas "
     "and the cross gamma lose digits.",
     "SPRDOPT, HEAT", "=RBOW(100,105,98,5%,25%,30%,0.5,180,1,0)"},
    {"SPRDOPT", "option on the difference of two prices",
     "A European option on the difference A - B of two futures or forward prices, both lognormal: the "
     "premium given one price, integrated over that price.",
     spread_arguments, spread_results,
     "Within 5e-5, mostly 1e-5, at correlations of -0.95 to 0.95, 2e-4 at 0.99, 1e-3 at 0.999 and 1e-6 at "
     "1, for prices of 60 to 140 and a volatility times the root of the years of up to 1.",
     "WSPRD, ASNSPRD, OSTRIPSPRD, PPLUS, RBOW", "=SPRDOPT(100,96,2,5%,35%,30%,0.85,273.9375,1,0)"},
    {"WSPRD", "option on a spread that is itself normally distributed",
     "A European option on a forward spread that is itself traded and normally distributed, so that spread "
     "and strike may be negative (Wilcox 1990, Bachelier 1900).",
     normal_spread_arguments, normal_spread_results,
     "Closed form; the time value is 0.0001 % too low. The put's theta lies 2 (FwdSpd - Strike) IntRt, "
     "discounted, above the exact one, as intended.",
     "SPRDOPT", "=WSPRD(2.5,2,5%,4,90,1,0)"},
    {"HEAT", "option on the ratio of two prices (a heat rate)",
     "A European option on the ratio of the price of an output to that of its fuel: Black's formula (1976) "
     "with the volatility of the difference of the logarithms.",
     heat_rate_arguments, heat_rate_results,
     "Closed form on a ratio without drift; for a payment in cash on the ratio of two futures multiply "
     "PriceA by exp((VolB^2 - Correl VolA VolB) T), T in years. The put's theta, delta_time_a and "
     "delta_time_b have intended oddities of sign.",
     "SPRDOPT, RBOW", "=HEAT(52,6.5,7.5,5%,45%,55%,0.6,120,1,0)"},
    {"WARRANT", "warrant with vesting and dilution",
     "A warrant that may be exercised from vesting to expiry: an option on the firm's worth per share, "
     "solved together with the warrant's own value (Galai and Schneller 1978, Lauterbach and Schultz 1990).",
     warrant_arguments, warrant_results,
     "Errors up to 0.005 on a premium of 25 at five years. -99 means impossible counts or prices.",
     "AMERB, EURO", "=WARRANT(100,110,5%,2%,30%,730.5,1826.25,20,100,1,0)"},
};

}  // namespace
}  // namespace text

const FamilyText exotics_texts{"One and two prices: exotics", text::functions};

}  // namespace kestran
