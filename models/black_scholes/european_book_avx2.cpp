// Compiled for AVX2, and called only where the processor has it.
#include "models/black_scholes/european_book_kernel.h"

namespace kestran {

void european_book_avx2(const EuropeanBook& book, std::size_t first, std::size_t count, int wanted,
                        double* results, bool* left) {
  if (wanted == 1)
    european_book_kernel<elementary::FourLanes, false>(book, first, count, results, left);
  else
    european_book_kernel<elementary::FourLanes, true>(book, first, count, results, left);
}

}  // namespace kestran
