#include "bindings/c/kestran.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "functions/describe.h"
#include "functions/explain.h"
#include "functions/price_many.h"

using kestran::Answer;
using kestran::Column;
using kestran::Function;
using kestran::Operand;

namespace {

const Function& of(const kestran_function* function) { return *reinterpret_cast<const Function*>(function); }

const kestran_function* handle(const Function* function) {
  return reinterpret_cast<const kestran_function*>(function);
}

bool has_argument(const Function& function, int argument) {
  return argument >= 0 && argument < function.argument_count;
}

void take(const Function& function, const kestran_operand* given, Operand* operands) {
  for (int i = 0; i < function.argument_count; ++i)
    operands[i] = {given[i].values, given[i].rows, given[i].columns};
}

int give(const Answer& answer, double& result) {
  result = answer.is_number() ? answer.number : std::numeric_limits<double>::quiet_NaN();
  return answer.is_number() ? 0 : answer.error;
}

}  // namespace

const char* kestran_version(void) { return KESTRAN_VERSION; }

int kestran_count(void) { return kestran::catalogue_size; }

const kestran_function* kestran_at(int place) {
  return place >= 0 && place < kestran::catalogue_size ? handle(&kestran::catalogue[place]) : nullptr;
}

const kestran_function* kestran_find(const char* name) { return handle(kestran::find_in_catalogue(name)); }

const char* kestran_name(const kestran_function* function) { return of(function).name; }

int kestran_arguments(const kestran_function* function) { return of(function).argument_count; }

const char* kestran_argument_name(const kestran_function* function, int argument) {
  return has_argument(of(function), argument) ? of(function).arguments[argument].name : nullptr;
}

const char* kestran_argument_meaning(const kestran_function* function, int argument) {
  return has_argument(of(function), argument) ? kestran::text_of(of(function)).arguments[argument]->meaning
                                              : nullptr;
}

int kestran_takes_cells(const kestran_function* function, int argument) {
  return has_argument(of(function), argument) && kestran::is_range(of(function).arguments[argument].kind);
}

int kestran_result_argument(const kestran_function* function) {
  return kestran::result_argument(of(function));
}

const char* kestran_result_name(const kestran_function* function, int selector) {
  const kestran::ResultText* result = kestran::result_text(kestran::text_of(of(function)), selector);
  return result != nullptr && kestran::answers(of(function), *result) ? result->name : nullptr;
}

int kestran_result_selector(const kestran_function* function, const char* name) {
  for (const kestran::ResultText& result : kestran::text_of(of(function)).results)
    if (std::strcmp(result.name, name) == 0 && kestran::answers(of(function), result)) return result.selector;
  return -1;
}

int kestran_price(const kestran_function* function, const kestran_operand* given, double* result) {
  Operand operands[kestran::most_arguments];
  take(of(function), given, operands);
  return give(kestran::price(of(function), operands), *result);
}

int kestran_price_numbers(const kestran_function* function, const double* numbers, double* result) {
  return give(kestran::price(of(function), numbers), *result);
}

size_t kestran_refusal(const kestran_function* function, const kestran_operand* given, char* text,
                       size_t size) {
  Operand operands[kestran::most_arguments];
  take(of(function), given, operands);
  try {
    const std::string words =
        kestran::refusal_text(of(function), operands, kestran::price(of(function), operands));
    if (size > 0) {
      const size_t length = std::min(words.size(), size - 1);
      std::memcpy(text, words.data(), length);
      text[length] = '\0';
    }
    return words.size();
  } catch (const std::bad_alloc&) {
    if (size > 0) *text = '\0';
    return 0;
  }
}

size_t kestran_price_many(const kestran_function* function, const kestran_operand* given, size_t deals,
                          const int* selectors, int count, double* results, int* codes, int threads) {
  constexpr size_t deals_at_once = 4096;
  const auto each = static_cast<size_t>(selectors == nullptr ? 1 : std::max(count, 0));
  try {
    std::vector<Answer> answers(
        std::min(deals, deals_at_once * static_cast<size_t>(std::max(threads, 1))) * each, Answer(0.0));
    const size_t at_once = each == 0 ? 0 : answers.size() / each;
    size_t refused = 0;
    for (size_t begin = 0; at_once > 0 && begin < deals; begin += at_once) {
      const size_t rows = std::min(at_once, deals - begin);
      Column columns[kestran::most_arguments];
      for (int i = 0; i < of(function).argument_count; ++i)
        columns[i] = {given[i].values + static_cast<ptrdiff_t>(begin) * given[i].stride, given[i].stride,
                      given[i].rows, given[i].columns};
      kestran::price_many(of(function), columns, rows, selectors, count, answers.data(), threads);
      for (size_t k = 0; k < rows * each; ++k) {
        const int code = give(answers[k], results[begin * each + k]);
        if (codes != nullptr) codes[begin * each + k] = code;
        refused += code != 0;
      }
    }
    return refused;
  } catch (const std::bad_alloc&) {
    return static_cast<size_t>(-1);
  }
}
