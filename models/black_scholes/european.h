// European options on a price with a continuous yield, and their sensitivities.
#pragma once

#include "numerics/convention.h"

namespace kestran {

/// Results of a European option, by their number on the worksheet.
enum class EuropeanResult : int {
  premium,
  delta,
  gamma,
  vega,
  carry_rho,
  theta,
  rho,
  delta_by_volatility,
  delta_by_time,
};
constexpr int european_results = 9;

/// Premium or a sensitivity of a European option by the generalised Black-Scholes formula (Black and Scholes
/// 1973, Merton 1973), normal distribution by cnorm (so prices carry up to 7.5e-8 of S and K).
///
/// S price, K strike, T years to expiry, r interest rate and q yield (continuous, per year), sigma volatility
/// (per year). OptType 0 put, any other value call. RetType selects the result:
///   0 premium   1 delta   2 gamma   3 vega, per 1.00 of volatility
///   4 -T times the premium: the sensitivity to r and q moving together, as for futures
///   5 theta, change of value per year as time passes   6 rho, r alone
///   7 change of delta with volatility   8 change of delta per year as time passes
///
/// T <= 0 or not a number: RetType 0 is the intrinsic value, every other RetType 0. sigma <= 0 is taken as
/// 1e-5. An unknown RetType gives 99.0. Nothing else is checked: a non-positive S or K gives what the
/// arithmetic gives.
KESTRAN_SSE_CALL double bs_general(double S, double K, double T, double r, double q, double sigma,
                                   int OptType, int RetType);

/// Every result of bs_general for one option: results[RetType], with its bits.
void bs_general_all(double S, double K, double T, double r, double q, double sigma, int OptType,
                    double results[european_results]);

/// Premium of `quantity` European options with the cheaper normal approximation cnorm3 (about 1e-5 of S and
/// K). OptType 0 put, 1 call, 2 straddle; any other value reports to the error stream and gives 0. Arguments
/// as in bs_general, none of them checked.
double bseuro(int OptType, double S, double K, double quantity, double T, double sigma, double r, double q);

}  // namespace kestran
