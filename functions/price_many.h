// Many deals in one call, and every result of a deal.
#pragma once

#include <cstddef>

#include "functions/catalogue.h"

namespace kestran {

/// One argument of many deals: its value, or its `rows` x `columns` cells, for deal k at values + k * stride.
/// A stride of 0 gives every deal the same.
struct Column {
  const double* values;
  std::ptrdiff_t stride = 0;
  int rows = 0;
  int columns = 0;
};

/// Prices `deals` deals. Where `selectors` is not null, argument result_argument(function) is not looked at,
/// and each deal gives one result for each of the `results` selectors; else `results` is 1. answers[k *
/// results
/// + j] receives result j of deal k. Rows are split among `threads` threads (on Windows one does the work).
/// Memory does not grow with the number of deals.
void price_many(const Function& function, const Column* given, std::size_t deals, const int* selectors,
                int results, Answer* answers, int threads = 1);

/// Every result of one deal, in the order of the function's text: answers[j] for results[j]. A result of
/// which the function has none, as a twin may, is refused.
void price_all(const Function& function, const Operand* given, Answer* answers);

/// The same for numbers alone.
void price_all(const Function& function, const double* numbers, Answer* answers);

}  // namespace kestran
