// The Gauss-Legendre rules, as gauss_legendre hands them out. They were worked by Newton's method on the
// recursion of the Legendre polynomials in 60-digit arithmetic and rounded once.
#pragma once

#include "numerics/gauss_legendre.h"

namespace kestran {

extern const QuadratureNode gauss_legendre_18[18];
extern const QuadratureNode gauss_legendre_19[19];
extern const QuadratureNode gauss_legendre_24[24];
extern const QuadratureNode gauss_legendre_27[27];
extern const QuadratureNode gauss_legendre_28[28];
extern const QuadratureNode gauss_legendre_55[55];

}  // namespace kestran
