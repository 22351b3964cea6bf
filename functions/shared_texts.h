// Texts of arguments and results that several functions share.
#pragma once

#include "functions/texts.h"

namespace kestran {

// The families, a file each.
extern const FamilyText black_scholes_texts, exotics_texts, asian_texts, strips_texts, baskets_texts,
    rates_texts;

namespace text {

inline constexpr Choice put_call[] = {{0, "put"}, {1, "call"}};

inline constexpr ArgumentText price{"Price", "price of the underlying today", Unit::price, 50, 150};
inline constexpr ArgumentText futures_price{"Price", "futures or forward price today", Unit::price, 50, 150};
inline constexpr ArgumentText strike{"Strike", "exercise price", Unit::price, 50, 150};
inline constexpr ArgumentText rate{"IntRt", "interest rate to expiry", Unit::rate, 0, 0.15};
inline constexpr ArgumentText yield{
    "Yield",
    "yield of the underlying: dividends, convenience yield or foreign rate; equal to IntRt for futures",
    Unit::rate, 0, 0.15};
inline constexpr ArgumentText vol{"Vol", "volatility of the price; 0 and less count as 0.00001",
                                  Unit::volatility, 0.05, 1};
inline constexpr ArgumentText exp_days{"ExpDays", "time to expiry and payment", Unit::days, 1, 730};
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
constexpr ResultText premium(int selector) {
  return {selector, "premium", "what the holder pays today", "price"};
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

}  // namespace text
}  // namespace kestran
