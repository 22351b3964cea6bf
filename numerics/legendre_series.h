// Polynomials through the values of a function at the nodes of a Gauss-Legendre rule.
#pragma once

#include "numerics/gauss_legendre.h"

namespace kestran {

constexpr int legendre_most_terms = 55;

/// The sum of coefficient[k] p(k, x), p(k, x) being the Legendre polynomial of degree k with 1 as its leading
/// coefficient: p(k + 1, x) = x p(k, x) - recursion[k] p(k - 1, x).
struct LegendreSeries {
  int terms = 0;
  double coefficient[legendre_most_terms];
  double recursion[legendre_most_terms + 1];
};

/// The polynomial of least degree that takes values[i] at node i of the rule, which has at most
/// legendre_most_terms points. The rule gives the integrals of the coefficients exactly (Hildebrand 1974,
/// "Introduction to Numerical Analysis", 7.5). A value that is not a number makes every coefficient none.
LegendreSeries legendre_series(const QuadratureRule& rule, const double* values);

/// The series at x, one number or several lanes, by the recurrence of Clenshaw (1955), "A note on the
/// summation of Chebyshev series".
template <class Real>
Real legendre_sum(const LegendreSeries& series, Real x) {
  Real b1{}, b2{};
  for (int k = series.terms - 1; k >= 0; --k) {
    const Real b = series.coefficient[k] + x * b1 - series.recursion[k + 1] * b2;
    b2 = b1;
    b1 = b;
  }
  return b1;
}

}  // namespace kestran
