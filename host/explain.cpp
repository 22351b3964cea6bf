#include "host/explain.h"

#include <algorithm>
#include <string>
#include <vector>

#include "functions/explain.h"
#include "functions/intake.h"

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

void add_result(const Function& function, const Call& call, const Operand* operands, std::string& lines) {
  lines += "= " + printed(call.answer);
  const int i = result_argument(function);
  const ResultText* result = result_text(
      text_of(function),
      i < 0 || operands[i].values[0] != operands[i].values[0] ? 0 : truncate_to_int(*operands[i].values));
  if (call.answer.kind == Kind::number && result != nullptr)
    lines += std::string("  ") + result->name + ", " + result->meaning + " (" + result->unit + ")";
  lines += '\n';
}

// Each refusal in turn, the argument at fault then put right.
void add_refusals(const Function& function, std::vector<Block> given, const Operand* operands,
                  std::string& lines) {
  for (int k = 0; k <= function.argument_count; ++k) {
    const Answer answer = FrameReader<FormulaReader>::evaluate(function, given.data());
    if (answer.is_number()) return;
    lines += "refused: " + refusal_text(function, operands, answer) + '\n';
    if (answer.argument < 0 || is_range(function.arguments[answer.argument].kind)) return;
    given[static_cast<std::size_t>(answer.argument)] = {0, 0, {number_scalar(1.0)}};
  }
}

void add_call(const Function& function, const Call& call, std::string& lines) {
  std::string headline = text_of(function).headline;
  headline.erase(std::remove(headline.begin(), headline.end(), '`'), headline.end());
  lines += function.name + (": " + headline) + '\n';

  std::vector<Block> given = call.given;
  given.resize(static_cast<std::size_t>(function.argument_count),
               {0, 0, {Scalar{Kind::missing, 0, 0.0, {}}}});
  const std::vector<std::vector<double>> numbers = numbers_of(given);
  std::vector<Operand> operands;
  for (std::size_t i = 0; i < given.size(); ++i)
    operands.push_back(
        {numbers[i].data(), static_cast<int>(given[i].rows), static_cast<int>(given[i].columns)});
  std::size_t widest = 0;
  for (int i = 0; i < function.argument_count; ++i)
    widest = std::max(widest, std::string(function.arguments[i].name).size());
  for (std::size_t i = 0; i < given.size(); ++i) {
    const int place = static_cast<int>(i);
    std::string name = function.arguments[i].name;
    name.resize(widest + 2, ' ');
    lines += "  " + name + shown(given[i], function, place, operands[i]) + '\n';
  }

  add_result(function, call, operands.data(), lines);
  add_refusals(function, given, operands.data(), lines);
  for (const std::string& warning : warnings(function, operands.data(), Answer(call.answer.number)))
    lines += "warning: " + warning + '\n';
}

}  // namespace

Explanation explanation(std::string_view formula) {
  std::vector<Call> calls;
  Explanation explained{"", evaluate_line(formula, &calls)};
  int known = 0;
  for (const Call& call : calls) {
    const Function* function = find_in_catalogue(call.name.c_str());
    if (function == nullptr) continue;
    add_call(*function, call, explained.text);
    ++known;
  }
  // What is more than one call has a value of its own.
  if (known != 1 || calls.size() != 1 || explained.evaluation.text != printed(calls[0].answer))
    explained.text += explained.evaluation.text + '\n';
  return explained;
}

}  // namespace kestran
