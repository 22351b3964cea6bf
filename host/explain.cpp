// The calls of a formula, explained argument by argument.
#include "functions/explain.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "functions/describe.h"
#include "functions/intake.h"
#include "host/describe.h"
#include "host/evaluate.h"

namespace kestran {
namespace {

Holds held(const Scalar& scalar) {
  switch (scalar.kind) {
    case Kind::number:
      return Holds::number;
    case Kind::error:
      return Holds::error;
    case Kind::empty:
    case Kind::missing:
      return Holds::nothing;
    default:
      return Holds::other;
  }
}

// The values of a formula as the intake reads them, to learn why it refuses a call.
struct FormulaReader {
  using Given = kestran::Block;
  static Holds holds(const Given& given) { return given.rows > 0 ? Holds::cells : held(given.cells[0]); }
  static double number(const Given& given) { return given.cells[0].number; }
  static int error(const Given& given) { return given.cells[0].code; }

  class Block {
   public:
    explicit Block(const Given& given) : block(given) {}
    bool ready() const { return true; }
    int rows() const { return static_cast<int>(block.rows); }
    int columns() const { return static_cast<int>(block.columns); }
    Holds holds(int i) const { return held(cell(i)); }
    double number(int i) const { return cell(i).number; }
    int error(int i) const { return cell(i).code; }

   private:
    const Scalar& cell(int i) const { return block.cells[static_cast<std::size_t>(i)]; }
    const Given& block;
  };
};

// The numbers among a call's values; NaN for whatever else is there.
std::vector<std::vector<double>> numbers_of(const std::vector<Block>& given) {
  std::vector<std::vector<double>> numbers;
  for (const Block& block : given) {
    numbers.emplace_back();
    for (const Scalar& cell : block.cells)
      numbers.back().push_back(cell.kind == Kind::number ? cell.number : none);
  }
  return numbers;
}

std::string shown(const Block& given, const Function& function, int i, const Operand& operand) {
  if (given.rows == 0 && given.cells[0].kind != Kind::number && held(given.cells[0]) != Holds::nothing)
    return printed(given.cells[0]);
  return understood(function, i, operand);
}

void print_result(const Function& function, const Call& call, const Operand* operands) {
  const FunctionText& text = text_of(function);
  std::printf("= %s", printed(call.answer).c_str());
  const int i = result_argument(function);
  const ResultText* result = result_text(text, i < 0 || operands[i].values[0] != operands[i].values[0]
                                                   ? 0
                                                   : truncate_to_int(*operands[i].values));
  if (call.answer.kind == Kind::number && result != nullptr)
    std::printf("  %s, %s (%s)", result->name, result->meaning, result->unit);
  std::fputc('\n', stdout);
}

// Each refusal in turn, the argument at fault then put right.
void print_refusals(const Function& function, std::vector<Block> given, const Operand* operands) {
  for (int k = 0; k <= function.argument_count; ++k) {
    const Answer answer = FrameReader<FormulaReader>::evaluate(function, given.data());
    if (answer.is_number()) return;
    std::printf("refused: %s\n", refusal_text(function, operands, answer).c_str());
    if (answer.argument < 0 || is_range(function.arguments[answer.argument].kind)) return;
    given[static_cast<std::size_t>(answer.argument)] = {0, 0, {number_scalar(1.0)}};
  }
}

void explain_call(const Function& function, const Call& call) {
  std::string headline = text_of(function).headline;
  headline.erase(std::remove(headline.begin(), headline.end(), '`'), headline.end());
  std::printf("%s: %s\n", function.name, headline.c_str());

  std::vector<Block> given = call.given;
  given.resize(static_cast<std::size_t>(function.argument_count),
               {0, 0, {Scalar{Kind::missing, 0, 0.0, {}}}});
  const std::vector<std::vector<double>> numbers = numbers_of(given);
  std::vector<Operand> operands;
  for (std::size_t i = 0; i < given.size(); ++i)
    operands.push_back(
        {numbers[i].data(), static_cast<int>(given[i].rows), static_cast<int>(given[i].columns)});
  int widest = 0;
  for (int i = 0; i < function.argument_count; ++i)
    widest = std::max(widest, static_cast<int>(std::string(function.arguments[i].name).size()));
  for (int i = 0; i < function.argument_count; ++i)
    std::printf("  %-*s  %s\n", widest, function.arguments[i].name,
                shown(given[static_cast<std::size_t>(i)], function, i, operands[static_cast<std::size_t>(i)])
                    .c_str());

  print_result(function, call, operands.data());
  print_refusals(function, given, operands.data());
  for (const std::string& slip : slips(function, operands.data())) std::printf("warning: %s\n", slip.c_str());
  if (call.answer.kind == Kind::number && !std::isfinite(call.answer.number))
    std::puts("warning: the model has no number for these arguments");
}

}  // namespace

void explain_formula(std::string_view formula, Outcome& outcome) {
  std::vector<Call> calls;
  const Evaluation evaluation = evaluate_line(formula, &calls);
  int explained = 0;
  for (const Call& call : calls) {
    const Function* function = find_in_catalogue(call.name.c_str());
    if (function == nullptr) continue;
    explain_call(*function, call);
    ++explained;
  }
  // What is more than one call has a value of its own.
  if (explained != 1 || calls.size() != 1 || evaluation.text != printed(calls[0].answer))
    std::printf("%s\n", evaluation.text.c_str());
  if (!evaluation.unknown_function.empty()) tell_unknown(evaluation.unknown_function);
  outcome.error = outcome.error || evaluation.kind == Kind::error;
  outcome.unreadable = outcome.unreadable || !evaluation.readable;
  report(outcome);
}

}  // namespace kestran
