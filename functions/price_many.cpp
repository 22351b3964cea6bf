#include "functions/price_many.h"

#include <algorithm>
#include <cmath>

#include "functions/black_scholes.h"
#include "functions/in_parts.h"
#include "functions/processor_state.h"
#include "functions/texts.h"
#include "models/black_scholes/european_book.h"

namespace kestran {
namespace {

// Options that the book takes at once.
constexpr std::size_t block = 128;

struct Book {
  const Function& function;
  const Column* given;
  const int* selectors;
  int results;
  Answer* answers;

  // Only scalar frames take this way. A number that all deals share is looked at once.
  void price_numbers_of(std::size_t begin, std::size_t end) const {
    if (begin == end) return;
    const ProcessorState state;
    const int selector = selectors == nullptr ? -1 : result_argument(function);
    const bool together = results > 1 && function.compute_all != nullptr;
    double numbers[most_arguments];
    struct {
      const double* next;
      std::ptrdiff_t stride;
      double* number;
    } own[most_arguments];  // what each deal has of its own
    int own_count = 0;
    bool shared_complete = true;
    for (int i = 0; i < function.argument_count; ++i) {
      if (i == selector) continue;
      numbers[i] = *given[i].values;
      if (given[i].stride == 0)
        shared_complete = shared_complete && numbers[i] == numbers[i];
      else
        own[own_count++] = {given[i].values + static_cast<std::ptrdiff_t>(begin) * given[i].stride,
                            given[i].stride, numbers + i};
    }
    Answer* answer = answers + begin * static_cast<std::size_t>(results);
    for (std::size_t k = begin; k < end; ++k) {
      bool complete = shared_complete;
      for (int n = 0; n < own_count; ++n) {
        const double number = *own[n].next;
        *own[n].number = number;
        complete &= number == number;
        if (k + 1 < end) own[n].next += own[n].stride;
      }
      if (complete && together) {
        function.compute_all(numbers, nullptr, selectors, results, answer);
        answer += results;
        continue;
      }
      for (int j = 0; j < results; ++j) {
        if (selector >= 0) numbers[selector] = selectors[j];
        *answer++ = complete ? function.compute(numbers, nullptr) : price(function, numbers);
      }
    }
  }

  // European options, several side by side.
  void price_european(const EuropeanForm& form, const int* wanted, std::size_t begin, std::size_t end) const {
    const ProcessorState state;
    const auto column = [&](int i) { return Strided{given[i].values, given[i].stride}; };
    const EuropeanBook book = {column(form.at.S),      column(form.at.K), column(form.at.days),
                               column(form.at.r),      column(form.at.q), column(form.at.sigma),
                               column(form.at.OptType)};
    const bool premiums = std::all_of(wanted, wanted + results, [&](int selector) {
      return form.result[selector] == EuropeanResult::premium;
    });
    double values[european_results * block];
    bool left[block];
    for (std::size_t first = begin; first < end; first += block) {
      const std::size_t count = std::min(block, end - first);
      european_book(book, first, count, premiums ? 1 : european_results, values, left, lanes());
      for (int j = 0; j < results; ++j) {
        const double* of_result = values + static_cast<std::size_t>(form.result[wanted[j]]) * count;
        for (std::size_t k = 0; k < count; ++k)
          answers[(first + k) * static_cast<std::size_t>(results) + static_cast<std::size_t>(j)] =
              of_result[k];
      }
      for (std::size_t k = 0; k < count; ++k)
        if (left[k]) price_numbers_of(first + k, first + k + 1);
    }
  }

  void price_operands_of(std::size_t begin, std::size_t end) const {
    Operand operands[most_arguments];
    Answer* answer = answers + begin * static_cast<std::size_t>(results);
    for (std::size_t k = begin; k < end; ++k, answer += results) {
      for (int i = 0; i < function.argument_count; ++i)
        operands[i] = {given[i].values + static_cast<std::ptrdiff_t>(k) * given[i].stride, given[i].rows,
                       given[i].columns};
      if (selectors != nullptr && result_argument(function) >= 0)
        price_results(function, operands, selectors, results, answer);
      else
        for (int j = 0; j < results; ++j) answer[j] = price(function, operands);
    }
  }

  void price_rows(std::size_t begin, std::size_t end) const {
    bool numbers = function.frame.intake == Intake::scalars;
    for (int i = 0; i < function.argument_count; ++i)
      numbers = numbers && (given[i].rows == 0 || (selectors != nullptr && i == result_argument(function)));
    if (!numbers) return price_operands_of(begin, end);
    int one = 0;
    const bool many = function.european != nullptr && lanes() > 1 && end - begin >= 4;
    const int* wanted = many ? one_selection(one) : nullptr;
    wanted != nullptr ? price_european(*function.european, wanted, begin, end) : price_numbers_of(begin, end);
  }

 private:
  // The results of a European option if they are the same of every deal and none is refused, else null; `one`
  // is there for a single one.
  const int* one_selection(int& one) const {
    const int* wanted = selectors;
    if (wanted == nullptr) {
      const Column& column = given[function.result_argument];
      if (column.stride != 0 || !(std::fabs(*column.values) < most_arguments)) return nullptr;
      one = truncate_to_int(*column.values);
      wanted = &one;
    }
    const bool answered = std::all_of(wanted, wanted + results, [&](int selector) {
      return selector >= 0 && selector < function.european->results;
    });
    return answered ? wanted : nullptr;
  }
};

}  // namespace

void price_many(const Function& function, const Column* given, std::size_t deals, const int* selectors,
                int results, Answer* answers, int threads) {
  const Book book{function, given, selectors, selectors == nullptr ? 1 : results, answers};
  in_parts(deals, threads, [&](std::size_t begin, std::size_t end) { book.price_rows(begin, end); });
}

// Given is what price and price_results take.
template <class Given>
static void all_results(const Function& function, const Given* given, Answer* answers) {
  const List<int> selectors = selectors_of(function);
  if (function.result_argument >= 0)
    price_results(function, given, selectors.items, selectors.count, answers);
  else
    for (int j = 0; j < selectors.count; ++j) answers[j] = price(function, given);
}

void price_all(const Function& function, const Operand* given, Answer* answers) {
  all_results(function, given, answers);
}

void price_all(const Function& function, const double* numbers, Answer* answers) {
  all_results(function, numbers, answers);
}

}  // namespace kestran
