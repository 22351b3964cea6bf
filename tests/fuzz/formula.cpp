// The reader of formulas and what works them out, with KESTRAN12 behind it: any text, on a polite host. A
// formula has one answer however often, late or widely spaced it is asked for, and nothing that was handed
// out is kept.
#include <dlfcn.h>

#include <string>
#include <utility>

#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "tests/fuzz/fuzzer.h"

namespace kestran::fuzz {

static void start() {
  static const std::string refused =
      attach_addin("fuzzer", [](const char* name) { return dlsym(RTLD_DEFAULT, name); });
  if (!refused.empty()) fault("the add-in does not start: " + refused);
}

static Evaluation answer(const std::string& line) {
  count_calls();
  Evaluation answered = evaluate_line(line);
  const Standin& excel = standin();
  if (!excel.faults.empty()) fault(excel.faults.front());
  require(excel.accounting.arrays_handed_out == excel.accounting.arrays_freed, "an array was kept");
  require(excel.accounting.texts_handed_out == excel.accounting.texts_freed, "a text was kept");
  require(answered.text.find('\n') == std::string::npos, "an answer of more than one line");
  return answered;
}

static void expect(const std::string& line, const Evaluation& first) {
  const Evaluation again = answer(line);
  if (again.text != first.text || again.readable != first.readable)
    fault(line + " was answered with " + first.text + ", then with " + again.text);
}

}  // namespace kestran::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestran::fuzz;
  start();
  const std::string line(reinterpret_cast<const char*>(data), size);
  const kestran::Evaluation first = answer(line);
  kestran::standin().cells_come_late = true;
  expect(line, first);
  kestran::standin().cells_come_late = false;
  if (first.readable) expect(" " + line + "\t ", first);
  return 0;
}
