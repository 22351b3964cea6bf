// Gauss-Legendre quadrature.
#pragma once

namespace kestran {

struct QuadratureNode {
  double x, weight;
};

struct QuadratureRule {
  int size;
  const QuadratureNode* nodes;
};

/// The Gauss-Legendre rule of n points on [-1, 1], nodes rising: the integral of f is the sum of weight f(x),
/// exactly for polynomials of degree up to 2n - 1 (Abramowitz and Stegun 1964, 25.4.29). There are rules of
/// 18, 19, 24, 27, 28 and 55 points, their numbers correct to the last bit; any other n gives a rule of size
/// 0.
QuadratureRule gauss_legendre(int n);

}  // namespace kestran
