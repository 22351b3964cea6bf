// One pass of the binomial tree behind American and Bermudan options.
#pragma once

#include <cmath>

namespace kestran {

/// An option on a binomial tree centred on the forward: over a step the price moves by the factors
/// exp((r - q) dt +- h), h = sigma sqrt(dt), up with probability 1 / (1 + e^h), which reproduces the forward
/// and is a probability whatever the input. Level i = 0 .. levels - 1 lies f + i dt from now and has i + 5
/// nodes, numbered from the deepest in the money on: from a put's lowest price, a call's highest. Expiry is
/// dt after the last level.
struct ForwardTree {
  double S, K;  // price now, strike
  double r, q;  // interest rate and yield, continuous, per year
  double sigma;
  int OptType;         // 0 put, any other value call
  double f, dt;        // years, 0 <= f < dt
  int levels;          // 1 or more
  int first_exercise;  // the first level with exercise, below `levels`

  double sign() const { return OptType == 0 ? -1.0 : 1.0; }
  double h() const { return sigma * std::sqrt(dt); }
  double intrinsic(double price) const { return sign() * price - sign() * K; }
};

/// The prices of a level's nodes.
struct LevelPrices {
  double centre;
  const double* ratio;  // of each node's price to `centre`
  double operator()(int j) const { return centre * ratio[j]; }
};

struct TreeValue {
  double price;
  double delta;
  double gamma;
};

/// Premium, delta and gamma. The last step is the European formula (Broadie and Detemple 1996, "American
/// option valuation: new bounds, approximations, and a comparison of existing methods"); the five nodes of
/// the first level (Pelsser and Vorst 1994, "The binomial model and the Greeks") are taken back over f by the
/// pricing equation, and the middle three give the results.
///
/// Nodes that cannot move the last bit are left out (tree_nodes.h), which costs premiums below 1e-290 their
/// digits. Bad input gives what the arithmetic gives, a lack of memory not a number.
TreeValue forward_tree_value(const ForwardTree& tree);

}  // namespace kestran
