#include "functions/price_many.h"

#include "functions/in_parts.h"
#include "functions/processor_state.h"
#include "functions/texts.h"

namespace kestran {
namespace {

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
      for (int j = 0; j < results; ++j) {
        if (selector >= 0) numbers[selector] = selectors[j];
        *answer++ = complete ? function.compute(numbers, nullptr) : price(function, numbers);
      }
    }
  }

  void price_operands_of(std::size_t begin, std::size_t end) const {
    const int selector = selectors == nullptr ? -1 : result_argument(function);
    Operand operands[most_arguments];
    for (std::size_t k = begin; k < end; ++k) {
      for (int i = 0; i < function.argument_count; ++i)
        operands[i] = {given[i].values + static_cast<std::ptrdiff_t>(k) * given[i].stride, given[i].rows,
                       given[i].columns};
      for (int j = 0; j < results; ++j) {
        const double wanted = selector < 0 ? 0.0 : selectors[j];
        if (selector >= 0) operands[selector] = {&wanted};
        answers[k * static_cast<std::size_t>(results) + static_cast<std::size_t>(j)] =
            price(function, operands);
      }
    }
  }

  void price_rows(std::size_t begin, std::size_t end) const {
    bool numbers = function.frame.intake == Intake::scalars;
    for (int i = 0; i < function.argument_count; ++i)
      numbers = numbers && (given[i].rows == 0 || (selectors != nullptr && i == result_argument(function)));
    numbers ? price_numbers_of(begin, end) : price_operands_of(begin, end);
  }
};

}  // namespace

void price_many(const Function& function, const Column* given, std::size_t deals, const int* selectors,
                int results, Answer* answers, int threads) {
  const Book book{function, given, selectors, selectors == nullptr ? 1 : results, answers};
  in_parts(deals, threads, [&](std::size_t begin, std::size_t end) { book.price_rows(begin, end); });
}

void price_all(const Function& function, const Operand* given, Answer* answers) {
  const FunctionText& text = text_of(function);
  Column columns[most_arguments];
  for (int i = 0; i < function.argument_count; ++i)
    columns[i] = {given[i].values, 0, given[i].rows, given[i].columns};
  for (int j = 0; j < text.results.count; ++j) {
    const bool selects = result_argument(function) >= 0;
    price_many(function, columns, 1, selects ? &text.results[j].selector : nullptr, 1, answers + j);
  }
}

}  // namespace kestran
