// What a model worked out for one result of a call and needs again for others.
#pragma once

#include <cstring>
#include <type_traits>

namespace kestran {

/// Values of up to `most` sets of terms, so that results of one call that need the same value share it.
/// Terms count as the same when all their bytes are.
template <class Terms, class Value, int most>
class Repricings {
  static_assert(std::is_trivially_copyable_v<Terms>);

 public:
  /// work(terms), from memory if it is known.
  template <class Work>
  Value value(const Terms& terms, const Work& work) {
    for (int i = 0; i < count; ++i)
      if (std::memcmp(&known_terms[i], &terms, sizeof terms) == 0) return values[i];
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

/// work(terms), remembered in `kept` where that is not null.
template <class Terms, class Value, int most, class Work>
Value repriced(Repricings<Terms, Value, most>* kept, const Terms& terms, const Work& work) {
  return kept == nullptr ? work(terms) : kept->value(terms, work);
}

}  // namespace kestran
