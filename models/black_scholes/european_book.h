// Many European options, several side by side.
#pragma once

#include <cstddef>

#include "models/black_scholes/european.h"
#include "numerics/lanes.h"

namespace kestran {

/// Terms of many European options as in bs_general, but time in days and OptType a number of which the whole
/// part counts.
struct EuropeanBook {
  Strided S, K, days, r, q, sigma, OptType;
};

/// Results of options first to first + count - 1, each with the bits of bs_general: result i of option
/// first + k goes to results[i * count + k], i = 0 to wanted - 1, where wanted is 1 (premiums alone) or
/// european_results. left[k] says that an option is left to the caller because something about it is
/// unusual: it has expired, one of its terms is not a number, its numbers are so large or small that they
/// need care, or no full group of options is left. `lanes` is 2 or, where the processor has AVX2, 4.
void european_book(const EuropeanBook& book, std::size_t first, std::size_t count, int wanted,
                   double* results, bool* left, int lanes);

}  // namespace kestran
