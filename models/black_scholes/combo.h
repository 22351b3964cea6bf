// Two European options as one position.
#pragma once

#include "models/black_scholes/european.h"

namespace kestran {

/// Premium or a sensitivity of a position of two European options on one price, each by bs_general: leg A
/// with strike KA and volatility sigmaA, leg B with KB and sigmaB. KA <= KB is usual, not required. OptType
/// selects the legs:
///   0 put A + call B: straddle (KA = KB) or strangle    1 call A - call B: bull spread
///   2 put B - put A: bear spread                        3 call B - call A: bear spread
///   4 put A - put B: bull spread                        5 put A - call B: collar of a holder of the price
///   6 call B - put A: collar of a buyer of the price    7 call A + put B: strangle of in-the-money options
/// RetType 0..8, S, T, r, q and expiry as in bs_general; 3 is the vega and 7 the change of delta for both
/// volatilities moving together. An unknown OptType or RetType gives 99.0, and a negative S, KA or KB before
/// expiry not a number.
double combo_option(double S, double KA, double KB, double T, double r, double q, double sigmaA,
                    double sigmaB, int OptType, int RetType);

/// Every result of combo_option for one position: results[RetType], with its bits.
void combo_option_all(double S, double KA, double KB, double T, double r, double q, double sigmaA,
                      double sigmaB, int OptType, double results[european_results]);

}  // namespace kestran
