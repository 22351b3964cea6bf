// Plain Black-Scholes premiums, for the models that price many of them.
#pragma once

#include "numerics/convention.h"

namespace kestran {

/// Premium of a European call on a price with a continuous yield (Black and Scholes 1973, Merton 1973),
/// normal distribution by cnorm (so prices carry up to 7.5e-8 of S and K).
///
/// S price, K strike, T years to expiry, r interest rate and q yield (continuous, per year), sigma volatility
/// (per year). Nothing is checked: T or sigma of 0 gives the limit where the arithmetic has one (discounted S
/// less discounted K, or 0) and is not a number at S = K; bad input gives not a number.
KESTRAN_SSE_CALL double bs_call(double S, double K, double T, double r, double q, double sigma);

/// Premium of the put; arguments and bad input as in bs_call.
KESTRAN_SSE_CALL double bs_put(double S, double K, double T, double r, double q, double sigma);

}  // namespace kestran
