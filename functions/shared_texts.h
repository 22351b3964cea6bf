// Texts of arguments and results that several functions share.
#pragma once

#include "functions/texts.h"

namespace kestran {

// The families, a file each.
extern const FamilyText black_scholes_texts, exotics_texts, asian_texts, strips_texts, baskets_texts,
    rates_texts;

namespace text {

constexpr ArgumentText with_role(ArgumentText text, Role role) {
  text.role = role;
  return text;
}
constexpr ArgumentText driver(const ArgumentText& text) { return with_role(text, Role::driver); }
constexpr ArgumentText clock(const ArgumentText& text) { return with_role(text, Role::clock); }
constexpr ArgumentText expiry(const ArgumentText& text) { return with_role(text, Role::expiry); }
constexpr ArgumentText start(const ArgumentText& text) { return with_role(text, Role::start); }
constexpr ArgumentText setting(const ArgumentText& text) { return with_role(text, Role::setting); }
constexpr ArgumentText of_month(const ArgumentText& text) { return with_role(text, Role::month); }

inline constexpr Choice put_call[] = {{0, "put"}, {1, "call"}};

inline constexpr ArgumentText price =
    driver({"Price", "price of the underlying today", Unit::price, 50, 150});
inline constexpr ArgumentText futures_price =
    driver({"Price", "futures or forward price today", Unit::price, 50, 150});
inline constexpr ArgumentText strike{"Strike", "exercise price", Unit::price, 50, 150};
inline constexpr ArgumentText rate{"IntRt", "interest rate to expiry", Unit::rate, 0, 0.15};
inline constexpr ArgumentText yield{
    "Yield",
    "yield of the underlying: dividends, convenience yield or foreign rate; equal to IntRt for futures",
    Unit::rate, 0, 0.15};
inline constexpr ArgumentText vol{"Vol", "volatility of the price; 0 and less count as 0.00001",
                                  Unit::volatility, 0.05, 1};
inline constexpr ArgumentText exp_days =
    expiry({"ExpDays", "time to expiry and payment", Unit::days, 1, 730});
inline constexpr ArgumentText put_or_call{"OptType", "put or call", Unit::selector, 0,
                                          1,         none,          put_call,       "call"};
inline constexpr ArgumentText which_result{"RetType", "which result is wanted", Unit::selector, none, none,
                                           0};

// Units of results.
inline constexpr char per_price[] = "premium per 1.00 of price";
inline constexpr char delta_per_price[] = "delta per 1.00 of price";
inline constexpr char per_volatility[] = "premium per 1.00 of volatility";
inline constexpr char per_rate[] = "premium per 1.00 of rate";
inline constexpr char per_year[] = "premium per year";
inline constexpr char delta_per_volatility[] = "delta per 1.00 of volatility";
inline constexpr char delta_per_year[] = "delta per year";
inline constexpr char per_correlation[] = "premium per 1.00 of correlation";

// Results that mean the same wherever they occur; the number differs.
constexpr ResultText premium(int selector, double no_answer = none) {
  return {selector, "premium", "what the holder pays today", "price", ResultText::one, no_answer};
}
constexpr ResultText delta(int selector) {
  return {selector, "delta", "change of the premium with the price", per_price};
}
constexpr ResultText gamma(int selector) {
  return {selector, "gamma", "change of delta with the price", delta_per_price};
}
constexpr ResultText vega(int selector) {
  return {selector, "vega", "change of the premium with the volatility", per_volatility};
}
constexpr ResultText rho(int selector) {
  return {selector, "rho", "change of the premium with the interest rate alone", per_rate};
}
constexpr ResultText carry_rho(int selector) {
  return {selector, "carry_rho", "change of the premium with rate and yield moving together", per_rate};
}
constexpr ResultText theta(int selector) {
  return {selector, "theta", "change of the premium as time passes, negative when value decays", per_year};
}
constexpr ResultText delta_vol(int selector) {
  return {selector, "delta_vol", "change of delta with the volatility", delta_per_volatility};
}
constexpr ResultText delta_time(int selector) {
  return {selector, "delta_time", "change of delta as time passes", delta_per_year};
}

// Of options on two prices, on forwards, and on averages.
inline constexpr ArgumentText price_a =
    driver({"PriceA", "futures or forward price of A today", Unit::price, 50, 150});
inline constexpr ArgumentText price_b =
    driver({"PriceB", "futures or forward price of B today", Unit::price, 50, 150});
inline constexpr ArgumentText vol_a{"VolA", "volatility of A; 0 and less count as 0.00001", Unit::volatility,
                                    0.05, 1};
inline constexpr ArgumentText vol_b{"VolB", "volatility of B; 0 and less count as 0.00001", Unit::volatility,
                                    0.05, 1};
inline constexpr ArgumentText vol_as_given{"Vol", "volatility of the price", Unit::volatility, 0.05, 1};
inline constexpr ArgumentText correl{"Correl", "correlation of the logarithms of the two prices",
                                     Unit::correlation, -0.95, 0.95};
inline constexpr ArgumentText strike_of_difference{"Strike", "strike of the difference A - B, of any sign",
                                                   Unit::price, -30, 30};
inline constexpr ArgumentText set_price{
    "SetPrice", "average of the fixings already made; any number while none is made", Unit::price, 50, 150};

constexpr ResultText delta_a(int selector) {
  return {selector, "delta_a", "change of the premium with the price of A", per_price};
}
constexpr ResultText delta_b(int selector) {
  return {selector, "delta_b", "change of the premium with the price of B", per_price};
}
constexpr ResultText gamma_a(int selector) {
  return {selector, "gamma_a", "change of delta A with the price of A", delta_per_price};
}
constexpr ResultText gamma_b(int selector) {
  return {selector, "gamma_b", "change of delta B with the price of B", delta_per_price};
}
constexpr ResultText cross_gamma(int selector) {
  return {selector, "cross_gamma", "change of delta A with the price of B", delta_per_price};
}
constexpr ResultText vega_a(int selector) {
  return {selector, "vega_a", "change of the premium with the volatility of A", per_volatility};
}
constexpr ResultText vega_b(int selector) {
  return {selector, "vega_b", "change of the premium with the volatility of B", per_volatility};
}
constexpr ResultText correlation(int selector) {
  return {selector, "correlation", "change of the premium with the correlation", per_correlation};
}
constexpr ResultText delta_time_a(int selector) {
  return {selector, "delta_time_a", "change of delta A as time passes", delta_per_year};
}
constexpr ResultText delta_time_b(int selector) {
  return {selector, "delta_time_b", "change of delta B as time passes", delta_per_year};
}
/// Of functions of forward prices, where the rate only discounts.
constexpr ResultText forward_rho(int selector) {
  return {selector, "carry_rho", "change of the premium with the interest rate, forward prices unchanged",
          per_rate};
}
/// Where rate and yield are multiplied by the same factor.
constexpr ResultText proportional_rho(int selector) {
  return {
      selector, "carry_rho",
      "change of the premium with rate and yield moving in proportion, per 1.00 of IntRt; 0 at a rate of 0",
      per_rate};
}

}  // namespace text
}  // namespace kestran
