// The bivariate normal distribution that the two-asset and option-on-option models share.
#pragma once

#include "numerics/convention.h"

namespace kestran {

/// 1 for x > 0, -1 for x < 0, 0 for zero and NaN.
int sgn(double x);

/// Probability that two standard normal variables with correlation rho stay below a and b, none of the three
/// positive: four-point Gauss quadrature (Drezner 1978, "Computation of the bivariate normal integral"). An
/// argument that is positive or NaN is reported to the error stream and gives -1. rho < -1 is taken as -1,
/// where the quadrature degenerates: 0, or not a number when a or b is 0.
KESTRAN_SSE_CALL double binorm_rt(double a, double b, double rho);

/// The same probability for all a, b and -1 <= rho <= 1, brought to binorm_rt by Drezner's identities, with
/// the marginal distributions from cnorm. Absolute error at most 9e-6, measured. At rho = 1 it is
/// N(min(a, b)), at -1 it is N(a) - N(-b) or, for a < -b, 0. Where an argument changes sign the identities
/// meet only within their errors: such small jumps are part of the results. rho outside -1..1 gives what the
/// arithmetic gives, mostly not a number. NaN gives NaN.
KESTRAN_SSE_CALL double binorm(double a, double b, double rho);

}  // namespace kestran
