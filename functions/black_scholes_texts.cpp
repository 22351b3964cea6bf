// Texts of the European and American options.
#include "functions/shared_texts.h"

namespace kestran {
namespace text {
namespace {

constexpr ArgumentText spot_ab = driver(
    {"SpotAB", "exchange rate today: units of currency A for one unit of currency B", Unit::price, 0.8, 1.8});
constexpr ArgumentText strike_ab{"StrikeAB", "strike: units of currency A for one unit of currency B",
                                 Unit::price, 0.8, 1.8};
constexpr ArgumentText rate_a{"IntRtA", "interest rate of the pricing currency A", Unit::rate, 0, 0.15};
constexpr ArgumentText rate_b{"IntRtB", "interest rate of the priced currency B", Unit::rate, 0, 0.15};
constexpr ArgumentText vol_ab{"VolAB", "volatility of the exchange rate; 0 and less count as 0.00001",
                              Unit::volatility, 0.02, 0.5};

constexpr ArgumentText tree_steps{
    "Nsteps", "steps of the tree, 1 or more; above 5000 counts as 5000", Unit::count, 10, 400, 200};

constexpr ArgumentText observed_premium = driver({"Premium", "the premium observed", Unit::price, 0.5, 40});
constexpr ArgumentText greatest_vol{"MaxVol", "largest volatility looked at", Unit::volatility, 0.5, 5, 5};
constexpr ArgumentText accuracy{
    "Accuracy",  "largest difference from the premium that is accepted; 0 and less count as 1E-8",
    Unit::price, 1e-10,
    1e-2,        1e-8};
constexpr ArgumentText most_iterations{
    "Maxiter", "most steps of the search; below 1 counts as 100, above 1000 as 1000", Unit::count, 1, 100,
    100};
constexpr Choice put_call_straddle[] = {{0, "put"}, {1, "call"}, {2, "straddle: a call and a put"}};
constexpr ArgumentText call_put_straddle{"CallPutStr", "put, call or straddle", Unit::selector,    0, 2,
                                         none,         put_call_straddle,       "no such type, 99"};

constexpr ArgumentText cash{"Cash", "amount paid, of any sign", Unit::amount, 1, 100};
constexpr ArgumentText put_or_call_only{"OptType", "put or call", Unit::selector, 0, 1, none, put_call};
constexpr ArgumentText due_premium{
    "Premium", "amount due at expiry when the option is in the money, not discounted", Unit::price, 0, 40};

constexpr ArgumentText strike_of_a{"StrikeA", "strike of leg A, usually the lower one", Unit::price, 50, 150};
constexpr ArgumentText strike_of_b{"StrikeB", "strike of leg B, usually the higher one", Unit::price, 50,
                                   150};
constexpr ArgumentText vol_of_a{"VolA", "volatility at which leg A is priced; 0 and less count as 0.00001",
                                Unit::volatility, 0.05, 1};
constexpr ArgumentText vol_of_b{"VolB", "volatility at which leg B is priced; 0 and less count as 0.00001",
                                Unit::volatility, 0.05, 1};
constexpr Choice positions[] = {{0, "put A + call B: straddle or strangle"},
                                {1, "call A - call B: bull spread"},
                                {2, "put B - put A: bear spread"},
                                {3, "call B - call A: bear spread"},
                                {4, "put A - put B: bull spread"},
                                {5, "put A - call B: collar of a holder of the price"},
                                {6, "call B - put A: collar of a buyer of the price"},
                                {7, "call A + put B: strangle of options in the money"}};
constexpr ArgumentText position{"OptType",
                                "which position of the two options",
                                Unit::selector,
                                0,
                                7,
                                none,
                                positions,
                                "no such position, 99"};
constexpr ArgumentText agreed_price{"Breakeven", "price agreed for expiry", Unit::price, 50, 150};
constexpr Choice boston_types[] = {{0, "put type: the holder sells"}, {1, "call type: the holder buys"}};
constexpr ArgumentText boston_type{"OptType",    "put or call type",          Unit::selector, 0, 1, none,
                                   boston_types, "call type: the holder buys"};

constexpr const ArgumentText* euro_arguments[] = {&price, &strike,   &rate,        &yield,
                                                  &vol,   &exp_days, &put_or_call, &which_result};
constexpr const ArgumentText* forward_arguments[] = {&futures_price, &strike,      &rate,        &vol,
                                                     &exp_days,      &put_or_call, &which_result};
constexpr const ArgumentText* exchange_arguments[] = {&spot_ab, &strike_ab, &rate_a,      &rate_b,
                                                      &vol_ab,  &exp_days,  &put_or_call, &which_result};
constexpr const ArgumentText* tree_arguments[] = {&price,    &strike,      &rate,       &yield,       &vol,
                                                  &exp_days, &put_or_call, &tree_steps, &which_result};
constexpr const ArgumentText* implied_arguments[] = {
    &call_put_straddle, &observed_premium, &price,          &strike, &exp_days, &rate, &yield,
    &greatest_vol,      &accuracy,         &most_iterations};
constexpr const ArgumentText* implied_tree_arguments[] = {
    &observed_premium, &price,    &strike,      &rate,       &yield,
    &greatest_vol,     &exp_days, &put_or_call, &tree_steps, &accuracy};
constexpr const ArgumentText* digital_arguments[] = {
    &cash, &price, &strike, &rate, &yield, &vol, &exp_days, &put_or_call_only, &which_result};
constexpr const ArgumentText* cod_arguments[] = {&price,    &strike,      &rate,        &yield,       &vol,
                                                 &exp_days, &due_premium, &put_or_call, &which_result};
constexpr const ArgumentText* codprem_arguments[] = {&price, &strike,   &rate,       &yield,
                                                     &vol,   &exp_days, &put_or_call};
constexpr const ArgumentText* combo_arguments[] = {&price,    &strike_of_a, &strike_of_b, &rate,
                                                   &yield,    &vol_of_a,    &vol_of_b,    &exp_days,
                                                   &position, &which_result};
constexpr const ArgumentText* boston_arguments[] = {&price, &agreed_price, &rate,       &yield,
                                                    &vol,   &exp_days,     &boston_type};

constexpr ResultText euro_results[] = {premium(0), delta(1), gamma(2),     vega(3),      carry_rho(4),
                                       theta(5),   rho(6),   delta_vol(7), delta_time(8)};
constexpr ResultText equity_results[] = {premium(0), delta(1), gamma(2),    vega(3),
                                         rho(4),     theta(5), delta_vol(6)};
constexpr ResultText forward_results[] = {premium(0),   delta(1), gamma(2),    vega(3),
                                          carry_rho(4), theta(5), delta_vol(6)};
constexpr ResultText baw_results[] = {premium(0),   delta(1), gamma(2), vega(3),
                                      carry_rho(4), theta(5), rho(6),   delta_vol(7)};
constexpr ResultText digital_results[] = {premium(0), delta(1), gamma(2), vega(3), carry_rho(4), theta(5)};
constexpr ResultText implied_results[] = {
    {0, "volatility",
     "the volatility that gives the premium; 0 for the least possible premium, -99 when none does",
     "per year", ResultText::one, -99}};
constexpr ResultText contingent_results[] = {
    {0, "premium", "amount due at expiry that makes the option free today", "price at expiry"}};
constexpr ResultText boston_results[] = {{0, "strike",
                                          "strike that makes the contract free today; -99 when there is none",
                                          "price", ResultText::one, -99}};

constexpr char closed_form[] = "Closed form; good to about 1e-7 of Price and Strike.";

constexpr FunctionText functions[] = {
    {"EURO", "European option by Black and Scholes, with a yield; premium and eight sensitivities",
     "A call or put on a price with a continuous yield, exercised at expiry only (Black and Scholes 1973, "
     "Merton "
     "1973).",
     euro_arguments, euro_results, closed_form, "EURO_Equity, EURO_Forward, AMER, AMERB, EIMPVOL",
     "=EURO(100,95,5%,2%,25%,90,1,0)"},
    {"EURO_Equity", "European option on shares; RetType 4 is rho, 6 the change of delta with volatility",
     "EURO for shares, with rho where shareholders look for it. Its results are numbered differently from "
     "EURO's.",
     euro_arguments, equity_results, closed_form, "EURO, AMER", "=EURO_Equity(100,95,5%,2%,25%,90,1,4)"},
    {"EURO_Forward", "European option on forwards and futures by Black",
     "EURO on forwards and futures, whose yield equals the rate (Black 1976).", forward_arguments,
     forward_results, closed_form, "EURO, XCAP, SWAPTION", "=EURO_Forward(100,95,4%,25%,365.25,1,0)"},
    {"FOREXCH", "foreign-exchange option",
     "A call or put on one unit of currency B, priced in currency A (Garman and Kohlhagen 1983).",
     exchange_arguments, euro_results, closed_form, "EURO, QUANTO", "=FOREXCH(1.25,1.2,5%,3%,12%,180,1,0)"},
    {"AMER", "American option, quadratic approximation; for up to about a year",
     "A call or put that may be exercised at any time, by the quadratic approximation (Barone-Adesi and "
     "Whaley "
     "1987): the European premium plus an early-exercise premium.",
     euro_arguments, baw_results,
     "Root mean square error at a strike of 100: 0.010 at a tenth of a year, 0.072 at one year, 0.42 at "
     "three; the "
     "largest about five times that. Longer options belong to AMERB.",
     "AMERB, EURO, IMPVOLAB", "=AMER(90,100,8%,2%,30%,182.625,0,0)"},
    {"AMERB", "American option, binomial tree of Nsteps steps",
     "A call or put that may be exercised at any time, by a binomial tree with the European formula in its "
     "last "
     "step, extrapolated from half as many steps (Broadie and Detemple 1996).",
     tree_arguments, euro_results,
     "Root mean square error at a strike of 100, up to two years: 0.0023 at 100 steps, 0.0013 at 200, 0.0005 "
     "at "
     "400; the largest about ten times that.",
     "AMER, EURO, IMPVOLAB", "=AMERB(100,100,5%,5%,25%,365.25,0,200,0)"},
    {"EIMPVOL", "implied volatility of a European put (0), call (1) or straddle (2)",
     "The volatility that gives the premium of a European option in EURO, by Newton's method within a "
     "bracket "
     "(Manaster and Koehler 1982).",
     implied_arguments, implied_results, "As good as Accuracy divided by vega.", "EURO, IMPVOLAB",
     "=EIMPVOL(1,10,100,100,182.625,5%,2%,2,1E-8,100)"},
    {"IMPVOLAB", "implied volatility of an American option",
     "The volatility that gives the premium of an American option in AMERB with the same number of steps.",
     implied_tree_arguments, implied_results,
     "As good as Accuracy divided by vega; the volatility belongs to the tree of Nsteps steps.",
     "AMERB, EIMPVOL", "=IMPVOLAB(9.569667,100,100,5%,5%,2,365.25,0,200,1E-6)"},
    {"DIGITAL", "cash-or-nothing option",
     "Pays an amount of cash at expiry if the price is then above the strike (call) or below it (put) "
     "(Rubinstein "
     "and Reiner 1991).",
     digital_arguments, digital_results, closed_form, "COD, EURO",
     "=DIGITAL(10,100,105,5%,2%,30%,182.625,1,0)"},
    {"COD", "cash-on-delivery option: Premium is paid only if it ends in the money",
     "Nothing is paid today; at expiry, if and only if the option is in the money, the holder exercises and "
     "pays "
     "the premium (Kat 1994). The value may be negative.",
     cod_arguments, digital_results, closed_form, "CODPREM, DIGITAL",
     "=COD(100,105,5%,2%,30%,182.625,8,1,0)"},
    {"CODPREM", "the premium that makes a cash-on-delivery option free today",
     "The amount due at expiry at which a cash-on-delivery option is worth nothing today.", codprem_arguments,
     contingent_results, "Within 6e-5 of itself, also far out of the money.", "COD",
     "=CODPREM(100,105,5%,2%,30%,182.625,1)"},
    {"COMBOPT", "spreads, straddles, strangles and collars of two options",
     "Two European options on one price as one position, each at its own strike and volatility.",
     combo_arguments, euro_results, closed_form, "EURO", "=COMBOPT(100,95,105,5%,2%,32%,28%,182.625,1,0)"},
    {"BOST", "Boston (break-forward) option: the strike that makes it free today",
     "No premium is paid today: the holder of the call type buys at expiry at the agreed price, or breaks "
     "the "
     "contract at the cost of the agreed price less a strike below it. The result is the strike that makes "
     "this "
     "fair.",
     boston_arguments, boston_results, "The strike solves the equation within 1e-7 of the forward price.",
     "EURO, COMBOPT", "=BOST(100,105,5%,2%,20%,182.625,1)"},
};

}  // namespace
}  // namespace text

const FamilyText black_scholes_texts{"European and American options", text::functions};

}  // namespace kestran
