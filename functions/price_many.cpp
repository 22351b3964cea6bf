#include "functions/price_many.h"

#include "functions/in_parts.h"
#include "functions/processor_state.h"
#include "functions/texts.h"

namespace kestran {
namespace {

// One deal of numbers alone, under the usual processor state. Only scalar frames take this way.
Answer price_numbers(const Function& function, const double* numbers) {
  for (int i = 0; i < function.argument_count; ++i)
    if (numbers[i] != numbers[i]) return price(function, numbers);
  return function.compute(numbers, nullptr);
}

struct Book {
  const Function& function;
  const Column* given;
  const int* selectors;
  int results;
  Answer* answers;

  void price_numbers_of(std::size_t begin, std::size_t end) const {
    const ProcessorState state;
    const int selector = selectors == nullptr ? -1 : result_argument(function);
    double numbers[most_arguments];
    for (std::size_t k = begin; k < end; ++k) {
      for (int i = 0; i < function.argument_count; ++i)
        if (i != selector) numbers[i] = given[i].values[static_cast<std::ptrdiff_t>(k) * given[i].stride];
      for (int j = 0; j < results; ++j) {
        if (selector >= 0) numbers[selector] = selectors[j];
        answers[k * static_cast<std::size_t>(results) + static_cast<std::size_t>(j)] =
            price_numbers(function, numbers);
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
