// The bare model in a loop over arrays, as someone would write it in C++: what the calls from Python are
// measured against.
#include "models/black_scholes/european.h"
#include "models/calendar.h"

extern "C" __attribute__((visibility("default"))) void kernel(const double* price, const double* strike,
                                                              double rate, double yield, const double* vol,
                                                              const double* days, int type, int result,
                                                              double* premium, long rows) {
  for (long k = 0; k < rows; ++k)
    premium[k] = kestran::bs_general(price[k], strike[k], days[k] / kestran::days_per_year, rate, yield,
                                     vol[k], type, result);
}
