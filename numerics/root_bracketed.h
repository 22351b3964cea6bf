// Root of a function of one variable between two points where it has opposite signs.
#pragma once

#include <cmath>

namespace kestran {

struct BracketedRoot {
  double x = 0.0;
  // 1 found, 0 not converged, -1 the two ends do not have opposite signs.
  int status = 0;
};

/// Root of f (a callable double -> double) between a < b, given fa = f(a) and fb = f(b): regula falsi with
/// the Illinois modification (Dowell and Jarratt 1971, "A modified regula falsi method for computing the root
/// of an equation") and a bisection every third step. Found when |f| <= ytol or the bracket is no wider than
/// xtol or than two neighbouring numbers; an end that already meets ytol is returned as it is. At most maxit
/// evaluations, typically 10. Where the ends do not have opposite signs, x is a; where f is not a number on
/// the way, neither is x (status 0).
template <class Function>
BracketedRoot root_bracketed(Function f, double a, double b, double fa, double fb, double ytol, double xtol,
                             int maxit) {
  if (std::fabs(fa) <= ytol) return {a, 1};
  if (std::fabs(fb) <= ytol) return {b, 1};
  if (!(fa < 0.0 && fb > 0.0) && !(fa > 0.0 && fb < 0.0)) return {a, -1};

  const bool rising = fb > 0.0;
  int moved = 0;  // the end the last step moved: -1 a, 1 b
  for (int k = 1; k <= maxit; ++k) {
    double x = k % 3 == 0 ? (a + b) / 2.0 : (a * fb - b * fa) / (fb - fa);
    if (!(x > a && x < b)) x = (a + b) / 2.0;
    if (!(x > a && x < b)) return {x, 1};
    const double fx = f(x);
    if (std::fabs(fx) <= ytol) return {x, 1};
    if (std::isnan(fx)) return {fx, 0};
    if ((fx > 0.0) == rising) {
      b = x;
      fb = fx;
      if (moved == 1) fa /= 2.0;
      moved = 1;
    } else {
      a = x;
      fa = fx;
      if (moved == -1) fb /= 2.0;
      moved = -1;
    }
    if (b - a <= xtol) return {(a + b) / 2.0, 1};
  }
  return {(a + b) / 2.0, 0};
}

}  // namespace kestran
