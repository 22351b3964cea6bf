#include "functions/price_many.h"

#include <algorithm>
#include <array>
#if !defined(_WIN32)
#include <system_error>
#include <thread>
#include <vector>
#endif

#include "functions/processor_state.h"
#include "functions/texts.h"

namespace kestran {
namespace {

// One deal of numbers alone, under the usual processor state. Only scalar frames take this way.
Answer price_numbers(const Function& function, const double* numbers) {
  for (int i = 0; i < function.argument_count; ++i)
    if (numbers[i] != numbers[i]) return Answer::failure(missing_code, Reason::missing, i);
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
#if defined(_WIN32)
  static_cast<void>(threads);
  book.price_rows(0, deals);
#else
  const std::size_t parts =
      std::min(static_cast<std::size_t>(std::max(threads, 1)), std::max<std::size_t>(deals, 1));
  const auto begin_of = [&](std::size_t part) {
    return deals / parts * part + std::min(part, deals % parts);
  };
  std::vector<std::thread> helpers;
  std::size_t part = 1;
  try {
    helpers.reserve(parts);
    for (; part < parts; ++part)
      helpers.emplace_back(
          [&book, begin = begin_of(part), end = begin_of(part + 1)] { book.price_rows(begin, end); });
  } catch (const std::exception&) {
    // No more threads, or no memory for them, are to be had: this one does what is left.
  }
  book.price_rows(0, begin_of(1));
  if (part < parts) book.price_rows(begin_of(part), deals);
  for (std::thread& helper : helpers) helper.join();
#endif
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
