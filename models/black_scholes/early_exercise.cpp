#include "models/black_scholes/early_exercise.h"

namespace kestran {

EarlyExercise early_exercise_rule(double r, double q, int OptType) {
  const double gained = OptType == 0 ? r : q;
  const double lost = OptType == 0 ? q : r;
  if (gained > 0.0 || (gained == 0.0 && lost < 0.0)) return EarlyExercise::one_boundary;
  if (lost >= gained) return EarlyExercise::never;
  return EarlyExercise::two_boundaries;
}

}  // namespace kestran
