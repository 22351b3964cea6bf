// What a model worked out for one result of a call and needs again for others.
#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

namespace kestran {

/// How many of their bytes make terms the same; what is kept, and comes last in some, is not among them, and
/// no padding may be: it could differ by chance.
template <class Terms>
constexpr std::size_t bytes_of_terms = sizeof(Terms);

/// Values of up to `most` sets of terms, so that results of one call that need the same value share it.
template <class Terms, class Value, int most>
class Repricings {
  static_assert(std::is_trivially_copyable_v<Terms>);

 public:
  /// work(terms), from memory if it is known.
  template <class Work>
  [[gnu::noinline]] Value value(const Terms& terms, const Work& work) {
    for (int i = 0; i < count; ++i)
      if (std::memcmp(&known_terms[i], &terms, bytes_of_terms<Terms>) == 0) return values[i];
    const Value result = work(terms);
    if (count < most) {
      std::memcpy(&known_terms[count], &terms, sizeof terms);
      values[count++] = result;
    }
    return result;
  }

 private:
  int count = 0;
  Terms known_terms[most];
  Value values[most];
};

/// What a call worked out for one of its results and keeps for the others; models that give all results at
/// once fill it.
template <int size>
struct KeptResults {
  bool known = false;
  double values[size];
};

/// Result i of those that work(values) fills in: kept, where `kept` is not null, for the next result.
template <int size, class Work>
double kept_result(KeptResults<size>* kept, int i, const Work& work) {
  if (kept == nullptr) {
    double values[size];
    work(values);
    return values[i];
  }
  if (!kept->known) {
    work(kept->values);
    kept->known = true;
  }
  return kept->values[i];
}

/// Prices, after moves of the terms that several results of a call have in common, by numbers of the model's.
template <int size>
struct KeptPrices {
  bool known[size] = {};
  double values[size];
};

/// Price i, which is work(): kept, where `kept` is not null, for the call's other results.
template <int size, class Work>
double kept_price(KeptPrices<size>* kept, int i, const Work& work) {
  if (kept == nullptr) return work();
  if (!kept->known[i]) {
    kept->values[i] = work();
    kept->known[i] = true;
  }
  return kept->values[i];
}

/// What is kept by a function whose results have nothing in common but its arguments.
struct NothingKept {};

/// A function that gives work(): worked out here and now where `all` results are wanted, else when asked for.
template <bool all, class Work>
auto once(const Work& work) {
  if constexpr (all)
    return [value = work()] { return value; };
  else
    return work;
}

/// out[i] = result(i) for every i of the sequence, each a constant: nothing is chosen at run time.
template <class Result, int... i>
[[gnu::always_inline]] inline void every_result(double* out, const Result& result,
                                                std::integer_sequence<int, i...>) {
  ((out[i] = result(i)), ...);
}
template <int size>
using Results = std::make_integer_sequence<int, size>;

/// work(terms), remembered in `kept` where that is not null.
template <class Terms, class Value, int most, class Work>
[[gnu::always_inline]] inline Value repriced(Repricings<Terms, Value, most>* kept, const Terms& terms,
                                             const Work& work) {
  return kept == nullptr ? work(terms) : kept->value(terms, work);
}

}  // namespace kestran
