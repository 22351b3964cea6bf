#include "models/black_scholes/european_book.h"

#include "models/black_scholes/european_book_kernel.h"

namespace kestran {

void european_book_avx2(const EuropeanBook& book, std::size_t first, std::size_t count, int wanted,
                        double* results, bool* left);

void european_book(const EuropeanBook& book, std::size_t first, std::size_t count, int wanted,
                   double* results, bool* left, [[maybe_unused]] int lanes) {
#if !defined(__wasm__)
  if (lanes == 4) return european_book_avx2(book, first, count, wanted, results, left);
#endif
  if (wanted == 1)
    european_book_kernel<elementary::TwoLanes, false>(book, first, count, results, left);
  else
    european_book_kernel<elementary::TwoLanes, true>(book, first, count, results, left);
}

}  // namespace kestran
