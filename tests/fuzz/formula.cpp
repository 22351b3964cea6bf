// The reader of formulas and what works them out, with KESTRAN12 behind it: any text, on a polite host. A
// formula has one answer however often, late or widely spaced it is asked for, each call in it answers what
// the catalogue does, and nothing that was handed out is kept.
#include <dlfcn.h>

#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "functions/number_text.h"
#include "functions/refused_number.h"
#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "tests/fuzz/fuzzer.h"

namespace kestran::fuzz {
namespace {

void start() {
  static const std::string refused =
      attach_addin("fuzzer", [](const char* name) { return dlsym(RTLD_DEFAULT, name); });
  if (!refused.empty()) fault("the add-in does not start: " + refused);
}

Evaluation answer(const std::string& line, std::vector<Call>* calls = nullptr) {
  count_calls();
  Evaluation answered = evaluate_line(line, calls);
  const Standin& excel = standin();
  if (!excel.faults.empty()) fault(excel.faults.front());
  require(excel.accounting.arrays_handed_out == excel.accounting.arrays_freed, "an array was kept");
  require(excel.accounting.texts_handed_out == excel.accounting.texts_freed, "a text was kept");
  require(answered.text.find('\n') == std::string::npos, "an answer of more than one line");
  return answered;
}

void expect(const std::string& line, const Evaluation& first) {
  const Evaluation again = answer(line);
  if (again.text != first.text || again.readable != first.readable)
    fault(line + " was answered with " + first.text + ", then with " + again.text);
}

double operand_of(const Scalar& scalar) {
  if (scalar.kind == Kind::number) return scalar.number;
  if (scalar.kind == Kind::error) return refused_number(scalar.code);
  const bool nothing = scalar.kind == Kind::empty || scalar.kind == Kind::missing;
  return nothing ? std::numeric_limits<double>::quiet_NaN() : refused_number(no_number_code);
}

// A call that does not spill answers what the catalogue does.
void compare(const Call& call) {
  const Function* const function = find_in_catalogue(call.name.c_str());
  if (function == nullptr) return;
  std::vector<Block> blocks = call.given;
  blocks.resize(static_cast<std::size_t>(function->argument_count),
                {0, 0, {Scalar{Kind::missing, 0, 0.0, {}}}});
  std::vector<GivenArgument> given;
  for (const Block& block : blocks) {
    if (block.cells.size() > 1 && !is_range(function->arguments[given.size()].kind)) return;
    GivenArgument& one = given.emplace_back();
    one.rows = static_cast<int>(block.rows);
    one.columns = static_cast<int>(block.columns);
    for (const Scalar& cell : block.cells) {
      if (cell.kind == Kind::number && cell.number != cell.number) return;  // of a call within this one
      one.values.push_back(operand_of(cell));
    }
  }
  const Answer wanted = price(*function, operands(given).data());
  const bool same = call.answer.kind == Kind::number
                        ? wanted.is_number() && same_number(wanted.number, call.answer.number)
                        : call.answer.kind == Kind::error && wanted.error == call.answer.code;
  if (!same)
    fault(shown(*function, operands(given).data()) + " is " + shown(wanted) + ", the sheet shows " +
          printed(call.answer));
}

// A realistic formula of which some arguments are something else.
std::string formula_of(Choices& choices, int depth) {
  const Function& function = catalogue[any_place(choices)];
  const int nested = choices.one_in(4) && depth > 0 ? choices.below(function.argument_count) : -1;
  std::string text = function.name + std::string("(");
  GivenArgument argument;
  for (int i = 0; i < function.argument_count - choices.one_in(64); ++i) {
    draw_argument(function, i, choices, argument);
    if (i > 0 || choices.one_in(64)) text += ',';
    if (i == nested)
      text += formula_of(choices, depth - 1);
    else if (choices.one_in(24))
      text += choices.of({"", "0", "-1", "1E308*10", "\"abc\"", "\"5%\"", "TRUE", "#N/A", "#DIV/0!",
                          "{1,2;3,4}", "{\"a\",#REF!,TRUE}", "{}", "-(2+3)*4^0.5", "40/365.25", "7%%", "0^0",
                          "{1,2}*2", "(3"});
    else
      text += shown(argument.operand());
  }
  return text + (choices.one_in(8) ? ")*2" : ")");
}

}  // namespace
}  // namespace kestran::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestran::fuzz;
  start();
  const std::string line(reinterpret_cast<const char*>(data), size);
  std::vector<kestran::Call> calls;
  const kestran::Evaluation first = answer(line, &calls);
  for (const kestran::Call& call : calls) compare(call);
  kestran::standin().cells_come_late = true;
  expect(line, first);
  kestran::standin().cells_come_late = false;
  if (first.readable) expect(" " + line + "\t ", first);
  return 0;
}

// A new formula more often than not, and as often as not with a byte or two that were changed.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                               unsigned seed) {
  using namespace kestran::fuzz;
  if (seed % 4 != 0) {
    Choices choices(fresh_bits(seed));
    std::string line = formula_of(choices, 2);
    if (choices.one_in(64))
      for (int calls = 0; calls < 64; ++calls) line = "BOST(" + line + ",1,,2,3,4,5)";
    size = std::min(line.size(), most);
    std::copy_n(line.begin(), size, data);
    if (seed % 4 != 1) return size;
  }
  return LLVMFuzzerMutate(data, size, most);
}
