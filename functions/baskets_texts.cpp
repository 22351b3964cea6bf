// Texts of the baskets.
#include "functions/shared_texts.h"

namespace kestran {
namespace text {
namespace {

constexpr ArgumentText horizon{"ExpTime", "horizon over which the volatility is wanted", Unit::years, 0.05,
                               2};

constexpr ArgumentText forwards{"Forward_Price", "forward price of each asset", Unit::price, 50, 150};
constexpr ArgumentText vols{"Annual_Vol", "volatility of each asset", Unit::volatility, 0.05, 1};
constexpr ArgumentText drifts{"Drift", "drift of each price; 0 for forwards", Unit::rate, -0.1, 0.1};
constexpr ArgumentText weights{"Weight", "weight of each asset", Unit::weight, 0, 1};
constexpr ArgumentText correlation_matrix =
    driver({"Correl_Matrix", "correlations, a row and a column for each asset, with ones on the diagonal",
            Unit::correlation, -1, 1});

constexpr ArgumentText price_1 = driver({"Price1", "forward price of the first asset", Unit::price, 50, 150});
constexpr ArgumentText price_2{"Price2", "forward price of the second asset", Unit::price, 50, 150};
constexpr ArgumentText vol_1{"Vol1", "volatility of the first asset", Unit::volatility, 0.05, 1};
constexpr ArgumentText vol_2{"Vol2", "volatility of the second asset", Unit::volatility, 0.05, 1};
constexpr ArgumentText drift_1{"Drift1", "drift of the first price; 0 for forwards", Unit::rate, -0.1, 0.1};
constexpr ArgumentText drift_2{"Drift2", "drift of the second price; 0 for forwards", Unit::rate, -0.1, 0.1};
constexpr ArgumentText weight_1{"Weight1", "weight of the first asset", Unit::weight, 0, 1};
constexpr ArgumentText weight_2{"Weight2", "weight of the second asset", Unit::weight, 0, 1};

constexpr ArgumentText fwd_rng{"Fwd_rng", "forward price of each component, as expected at its fixing",
                               Unit::price, 50, 150};
constexpr ArgumentText vol_rng{"Vol_rng", "volatility of each component", Unit::volatility, 0.05, 1};
constexpr ArgumentText weight_rng{"Weight_rng", "weight of each component", Unit::weight, 0, 1};
constexpr ArgumentText tset_rng{"Tset_rng", "time to the fixing of each component", Unit::years, 0.05, 2};
constexpr ArgumentText correl_rng = driver(
    {"Correl_rng",
     "strictly lower triangle of the correlation matrix, row by row: (2,1), (3,1), (3,2), (4,1) and so on",
     Unit::correlation, -1, 1});
constexpr Choice volatility_or_forward[] = {{0, "volatility"}, {1, "forward value"}};
constexpr ArgumentText volatility_or_value{"RetType",
                                           "the basket's volatility or its forward value",
                                           Unit::selector,
                                           0,
                                           1,
                                           0,
                                           volatility_or_forward,
                                           "forward value"};

constexpr ArgumentText fwd_rng_1{"Fwd1_rng", "forward price of each component of basket 1", Unit::price, 50,
                                 150};
constexpr ArgumentText fwd_rng_2{"Fwd2_rng", "forward price of each component of basket 2", Unit::price, 50,
                                 150};
constexpr ArgumentText vol_rng_1{"Vol1_rng", "volatility of each component of basket 1", Unit::volatility,
                                 0.05, 1};
constexpr ArgumentText vol_rng_2{"Vol2_rng", "volatility of each component of basket 2", Unit::volatility,
                                 0.05, 1};
constexpr ArgumentText weight_rng_1{"Weight1_rng", "weight of each component of basket 1", Unit::weight, 0,
                                    1};
constexpr ArgumentText weight_rng_2{"Weight2_rng", "weight of each component of basket 2", Unit::weight, 0,
                                    1};
constexpr ArgumentText tset_rng_1{"Tset1_rng", "time to the fixing of each component of basket 1",
                                  Unit::years, 0.05, 2};
constexpr ArgumentText tset_rng_2{"Tset2_rng", "time to the fixing of each component of basket 2",
                                  Unit::years, 0.05, 2};
constexpr ArgumentText correl_of_both = driver(
    {"Correl_rng",
     "strictly lower triangle, row by row, of the correlations of all components, those of basket 1 first",
     Unit::correlation, -1, 1});

constexpr ArgumentText sa1 = driver({"SA1", "forward price of component A1", Unit::price, 20, 100});
constexpr ArgumentText sa2 = driver({"SA2", "forward price of component A2", Unit::price, 20, 100});
constexpr ArgumentText sb1 = driver({"SB1", "forward price of component B1", Unit::price, 20, 100});
constexpr ArgumentText sb2 = driver({"SB2", "forward price of component B2", Unit::price, 20, 100});
constexpr ArgumentText days_b1{"DaysSB1", "days on which B1 makes the average; counts with Bflag 1 only",
                               Unit::weight, 0, 31};
constexpr ArgumentText days_b2{"DaysSB2", "days on which B2 makes the average; counts with Bflag 1 only",
                               Unit::weight, 0, 31};
constexpr ArgumentText vol_a1{"VolA1", "volatility of A1; 0 and less count as 0.00001", Unit::volatility,
                              0.05, 1};
constexpr ArgumentText vol_a2{"VolA2", "volatility of A2; 0 and less count as 0.00001", Unit::volatility,
                              0.05, 1};
constexpr ArgumentText vol_b1{"VolB1", "volatility of B1; 0 and less count as 0.00001", Unit::volatility,
                              0.05, 1};
constexpr ArgumentText vol_b2{"VolB2", "volatility of B2; 0 and less count as 0.00001", Unit::volatility,
                              0.05, 1};
constexpr ArgumentText corr_a1a2{"CorrA1A2", "correlation of A1 and A2, within basket A", Unit::correlation,
                                 -1, 1};
constexpr ArgumentText corr_b1b2{"CorrB1B2", "correlation of B1 and B2, within basket B", Unit::correlation,
                                 -1, 1};
constexpr ArgumentText corr_a1b1{"CorrA1B1", "correlation of A1 and B1", Unit::correlation, -1, 1};
constexpr ArgumentText corr_a2b1{"CorrA2B1", "correlation of A2 and B1", Unit::correlation, -1, 1};
constexpr ArgumentText corr_a1b2{"CorrA1B2", "correlation of A1 and B2", Unit::correlation, -1, 1};
constexpr ArgumentText corr_a2b2{"CorrA2B2", "correlation of A2 and B2", Unit::correlation, -1, 1};
constexpr ArgumentText basket_strike{
    "Strike", "strike of the difference of basket A and basket B, of any sign", Unit::price, -20, 40};
constexpr ArgumentText basket_rate{"IR", "interest rate to expiry", Unit::rate, 0, 0.15};
constexpr ArgumentText basket_years = expiry({"Tmat", "time to expiry and payment", Unit::years, 0.02, 2});
constexpr ArgumentText basket_type{"Opttype", "put or call", Unit::selector, 0, 1, none, put_call, "call"};
constexpr ArgumentText risk{"Risk", "which result is wanted", Unit::selector, none, none, 0};
constexpr Choice basket_a[] = {{0, "A1 alone"}, {1, "average of A1 and A2"}, {2, "sum of A1 and A2"}};
constexpr Choice basket_b[] = {
    {0, "B1 alone"}, {1, "average of B1 and B2, weighted with their days"}, {2, "sum of B1 and B2"}};
constexpr ArgumentText a_flag{"Aflag",  "what basket A is made of", Unit::selector, 0, 2, none,
                              basket_a, "no such basket, -99"};
constexpr ArgumentText b_flag{"Bflag",  "what basket B is made of", Unit::selector, 0, 2, none,
                              basket_b, "no such basket, -99"};

constexpr const ArgumentText* basvol_arguments[] = {&forwards,           &vols,   &drifts, &weights,
                                                    &correlation_matrix, &horizon};
constexpr const ArgumentText* basvol2d_arguments[] = {&price_1, &price_2,  &vol_1,    &vol_2,  &drift_1,
                                                      &drift_2, &weight_1, &weight_2, &correl, &horizon};
constexpr const ArgumentText* basvolt_arguments[] = {&fwd_rng,    &vol_rng, &weight_rng,         &tset_rng,
                                                     &correl_rng, &horizon, &volatility_or_value};
constexpr const ArgumentText* bascorr_arguments[] = {&fwd_rng_1,      &fwd_rng_2,    &vol_rng_1,  &vol_rng_2,
                                                     &weight_rng_1,   &weight_rng_2, &tset_rng_1, &tset_rng_2,
                                                     &correl_of_both, &horizon};
constexpr const ArgumentText* pplus_arguments[] = {
    &sa1,           &sa2,         &sb1,          &sb2,         &days_b1,   &days_b2,   &vol_a1,    &vol_a2,
    &vol_b1,        &vol_b2,      &corr_a1a2,    &corr_b1b2,   &corr_a1b1, &corr_a2b1, &corr_a1b2, &corr_a2b2,
    &basket_strike, &basket_rate, &basket_years, &basket_type, &risk,      &a_flag,    &b_flag};

constexpr ResultText basket_volatility{0, "volatility", "volatility of the basket", "per year"};
constexpr ResultText basvol_results[] = {basket_volatility};
constexpr ResultText basvolt_results[] = {basket_volatility,
                                          {1, "forward", "forward value of the basket", "price"}};
constexpr ResultText bascorr_results[] = {
    {0, "correlation", "correlation of the logarithms of the two baskets", "-1 to 1"}};
constexpr ResultText pplus_results[] = {
    premium(0),
    {1, "delta_a1", "change of the premium with SA1", per_price},
    {2, "delta_a2", "change of the premium with SA2", per_price},
    {3, "delta_b1", "change of the premium with SB1", per_price},
    {4, "delta_b2", "change of the premium with SB2", per_price},
    {5, "gamma_a1", "change of the delta to SA1 with SA1", delta_per_price},
    {6, "gamma_a2", "change of the delta to SA2 with SA2", delta_per_price},
    {7, "gamma_b1", "change of the delta to SB1 with SB1", delta_per_price},
    {8, "gamma_b2", "change of the delta to SB2 with SB2", delta_per_price},
    {9, "vega_a1", "change of the premium with VolA1", per_volatility},
    {10, "vega_a2", "change of the premium with VolA2", per_volatility},
    {11, "vega_b1", "change of the premium with VolB1", per_volatility},
    {12, "vega_b2", "change of the premium with VolB2", per_volatility},
    {13, "correlation_a1a2", "change of the premium with CorrA1A2", per_correlation},
    {14, "correlation_b1b2", "change of the premium with CorrB1B2", per_correlation},
    {15, "correlation_a1b1", "change of the premium with CorrA1B1", per_correlation},
    {16, "correlation_a2b1", "change of the premium with CorrA2B1", per_correlation},
    {17, "correlation_a1b2", "change of the premium with CorrA1B2", per_correlation},
    {18, "correlation_a2b2", "change of the premium with CorrA2B2", per_correlation},
    carry_rho(19),
    theta(20),
    {21, "cross_gamma", "change of the delta to basket A with basket B", delta_per_price},
    {22, "volatility_a", "volatility of basket A", "per year"},
    {23, "volatility_b", "volatility of basket B", "per year"},
    {24, "correlation_ab", "correlation of the two baskets", "-1 to 1"}};

constexpr char exact_moments[] =
    "The moments are exact. One lognormal variable stands well for assets of one kind, badly for loosely "
    "correlated "
    "assets that move much and for negative weights.";

constexpr FunctionText functions[] = {
    {"BASVOL", "volatility of a basket",
     "The volatility of the lognormal variable that has the mean and the variance of a weighted basket of "
     "forwards "
     "(two moments, Levy 1992).",
     basvol_arguments, basvol_results, exact_moments, "BASVOL2d, BASVOLT, BASCORR",
     "=BASVOL({100,90},{0.3,0.4},{0.02,-0.01},{0.6,0.4},{1,0.5;0.5,1},0.75)"},
    {"BASVOL2d", "volatility of a basket of two",
     "The volatility of the lognormal variable that has the mean and the variance of a weighted basket of "
     "two forwards.",
     basvol2d_arguments, basvol_results, exact_moments, "BASVOL, PPLUS",
     "=BASVOL2d(100,90,30%,40%,2%,-1%,0.6,0.4,0.5,0.75)"},
    {"BASVOLT", "volatility of a basket whose components fix at different times",
     "The volatility, or the forward value, of a weighted basket whose components fix at different times: a "
     "pair shares "
     "variance up to the earlier of its two fixing times and the horizon.",
     basvolt_arguments, basvolt_results, exact_moments, "BASVOL, BASCORR, PPLUS",
     "=BASVOLT({100,102,104},{0.3,0.28,0.26},{0.5,0.3,0.2},{0.25,0.5,2},{0.95,0.9,0.97},1,0)"},
    {"BASCORR", "correlation of two baskets",
     "The correlation of the logarithms of two baskets whose components fix at different times, from the "
     "expected "
     "product of the two.",
     bascorr_arguments, bascorr_results, exact_moments, "BASVOLT, PPLUS",
     "=BASCORR({100,102,104},{60,61},{0.3,0.28,0.26},{0.35,0.33},{0.5,0.3,0.2},{1,1},{0.25,0.5,2},{0.25,0.5},"
     "{0.95,0.9,"
     "0.97,0.6,0.6,0.6,0.6,0.6,0.6,0.96},1)"},
    {"PPLUS", "option on the difference of two baskets of two prices",
     "European option on the difference of two baskets of two forward prices each: each basket as one "
     "lognormal "
     "variable, their correlation from the expected product, and the engine of SPRDOPT.",
     pplus_arguments, pplus_results,
     "As a share of the premium at the money mostly within 0.45 % for a volatility times the root of the "
     "years "
     "up to 0.3, 0.9 % up to 0.5 and 2.2 % up to 0.8; at most 0.9, 1.8 and 7 %.",
     "SPRDOPT, BASVOLT, BASCORR",
     "=PPLUS(60,62,50,51,20,10,30%,28%,35%,33%,0.95,0.97,0.85,0.84,0.83,0.86,8,5%,0.5,1,0,1,1)"},
};

}  // namespace
}  // namespace text

const FamilyText baskets_texts{"Baskets", text::functions};

}  // namespace kestran
