// Volatilities implied by the premiums of European and American options.
#pragma once

namespace kestran {

/// Volatility (per year) at which bs_general gives the Premium of a European option. CallPutStr 0 put, 1
/// call, 2 straddle (a call and a put); any other value gives 99.0. S price, K strike, T years to expiry, r
/// interest rate and q yield (continuous, per year). The search goes up to MaxVol, or 60 / sqrt(T) if that is
/// less, where premiums stop rising. Accuracy is the largest difference from the Premium, in its units, that
/// is accepted (<= 0: 1e-8); Maxiter bounds the steps (< 1: 100; above 1000: 1000).
///
/// A premium within Accuracy of the least possible one gives 0.0, within Accuracy of the greatest one the end
/// of the search. -99.0 is "no answer": T, S or K <= 0, MaxVol <= 1e-5, any of these or Premium not a number,
/// no volatility fits, or Maxiter steps did not find it. r or q not a number: not a number.
///
/// Newton's method from the volatility of largest vega (Manaster and Koehler 1982, "The calculation of
/// implied variances from the Black-Scholes model"), kept within a bracket; about 4 steps.
double implied_vol_european(int CallPutStr, double Premium, double S, double K, double T, double r, double q,
                            double MaxVol, double Accuracy, int Maxiter);

/// Asked between the trees of a long search: false ends it.
using StillWanted = bool (*)();

/// Volatility (per year) at which american_tree with Nsteps steps gives the Premium of an American option.
/// OptType 0 put, any other value call; the search ends at 30 / sqrt(T); other arguments and answers as
/// above. A premium equal to the exercise value of an option that should be exercised gives 0.0: every small
/// volatility fits there. Usually 10 trees, at most 150 (0.01 to 0.08 s at 5000 steps). Nsteps < 1 is taken
/// as 1; a lack of memory gives not a number, and so does a search that `still_wanted` ends (null: never).
double implied_vol_american(double Premium, double S, double K, double T, double r, double q, double MaxVol,
                            int OptType, int Nsteps, double Accuracy, StillWanted still_wanted = nullptr);

}  // namespace kestran
