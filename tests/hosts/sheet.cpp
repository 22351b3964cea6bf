// Sheets and files of deals as a library, for a process that soaks all hosts at once: the stand-in for Excel
// with an add-in, and `kestran price`.
#include <cstdint>
#include <string_view>

#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/price_book.h"

using namespace kestran;

#define EXPORTED extern "C" __attribute__((visibility("default")))

/// Loads an add-in; 0 when that fails.
EXPORTED int sheet_open(const char* path) { return load_addin(path).empty(); }

/// Unloads it and gives the number of faults since it was loaded.
EXPORTED int sheet_close() {
  unload_addin();
  const auto faults = static_cast<int>(standin().faults.size());
  reset_standin();
  return faults;
}

/// Answers formulas, one a line, and gives the number of answers: numbers and codes of errors that functions
/// gave, and the cells of arrays.
EXPORTED std::int64_t sheet_answers(const char* formulas, double* answers, std::int64_t room) {
  std::int64_t made = 0;
  const auto add = [&](const Scalar& given) {
    if (made < room) answers[made] = given.kind == Kind::number ? given.number : given.code;
    ++made;
  };
  for (std::string_view left = formulas; !left.empty();) {
    const std::string_view line = left.substr(0, left.find('\n'));
    left.remove_prefix(line.size() < left.size() ? line.size() + 1 : line.size());
    std::vector<Call> calls;
    const Evaluation evaluation = evaluate_line(line, &calls);
    if (evaluation.array != nullptr)
      for (const Scalar& cell : evaluation.array->cells) add(cell);
    else
      for (const Call& call : calls) add(call.answer);
  }
  return made;
}

/// Prices a file of deals and gives the command's exit status.
EXPORTED int price_file(const char* input, const char* output, int threads) {
  PriceOptions options;
  options.input = input;
  options.output = output;
  options.threads = threads;
  return price_book(options);
}
