// The engine of all options on the difference of two prices.
#pragma once

namespace kestran {

/// Premium and deltas of a European option on the difference of two jointly lognormal terminal prices A and
/// B, payoff max(+-(A - B - K), 0): the conditional expectation given one of them in Black's (1976) closed
/// form, with cnorm, integrated over that one by 55 Gauss-Legendre points (as Pearson 1995, "An efficient
/// approach for pricing spread options"), in panels that meet where the exercise decision changes.
///
/// FA, FB expected terminal prices, K strike of any sign, vA, vB standard deviations of the logarithms at
/// expiry, rho their correlation, taken as 1 or -1 beyond, D discount factor. OptType 0 put, any other value
/// call. out[0] is the premium, out[1] its derivative in FA and out[2] in FB; the premium is returned too.
/// Deviations may be 0. A price below 0 stands for one whose amount is lognormal: A - B with a negative B is
/// a sum of two prices. If an argument is not a number, neither is any result, and if both prices are below
/// 0, or one is and the other 0, mostly none is.
///
/// Measured against adaptive quadrature with the exact normal distribution, prices 60 to 140 and strikes -30
/// to 30: for deviations up to 1 the premium is within 5e-5 for rho from -0.95 to 0.95 (mostly 1e-5, from
/// cnorm), 2e-4 at -0.99 and 0.99, 1e-3 at 0.999 and 1e-6 at -1 and 1; for deviations up to 3, within 1e-2.
/// Call less put is D (FA - FB - K) within 2e-6. With one price below 0 the premium is within 2e-2.
double spread_kernel(double FA, double FB, double K, double vA, double vB, double rho, double D, int OptType,
                     double out[3]);

/// The way in which spread_kernel integrates: over which price, and in how many panels. Among deals that it
/// is the same of, the results are smooth functions of the terms; where it changes they jump by the error of
/// the quadrature.
int spread_layout(double FA, double FB, double K, double vA, double vB, double rho);

}  // namespace kestran
