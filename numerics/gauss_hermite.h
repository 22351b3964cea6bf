// Gauss-Hermite rules for means over a standard normal variable.
#pragma once

namespace kestran {

/// A value of the variable and its probability.
struct WeightedNode {
  double node;
  double weight;
};

/// The mean of f over a normal variable of mean 0 and variance 1 is about the sum of weight f(node), exactly
/// so for polynomials f of degree up to 5 with three nodes and up to 9 with five (Abramowitz and Stegun 1964,
/// table 25.10, rescaled from the weight e^(-x^2)).
constexpr WeightedNode gauss_hermite_3[3] = {
    {-1.7320508075688772, 1.0 / 6.0}, {0.0, 2.0 / 3.0}, {1.7320508075688772, 1.0 / 6.0}};

constexpr WeightedNode gauss_hermite_5[5] = {{-2.856970013872806, 0.011257411327720689},
                                             {-1.355626179974266, 0.2220759220056126},
                                             {0.0, 0.5333333333333333},
                                             {1.355626179974266, 0.2220759220056126},
                                             {2.856970013872806, 0.011257411327720689}};

}  // namespace kestran
