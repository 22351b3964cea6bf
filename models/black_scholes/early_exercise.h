// When an American option is worth more than the European one.
#pragma once

namespace kestran {

enum class EarlyExercise {
  never,           // American and European option are worth the same
  one_boundary,    // exercised beyond one critical price: above the strike (call) or below it (put)
  two_boundaries,  // exercised between two critical prices
};

/// Whether and where early exercise can pay, from the signs of the interest rate r and the yield q
/// (continuous, per year); OptType 0 put, any other value call. A call is exercised for its yield, a put for
/// the interest on its strike; at negative rates waiting pays again far in the money, hence two boundaries
/// (Battauz, De Donno and Sbuelz 2015, "Real options and American derivatives: the double continuation
/// region"). Zero counts as zero: a call without yield is never exercised at r >= 0. NaN is never `never`.
EarlyExercise early_exercise_rule(double r, double q, int OptType);

}  // namespace kestran
