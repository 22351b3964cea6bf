#include "host/evaluate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <utility>

#include "functions/number_text.h"
#include "host/excel_standin.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

constexpr std::size_t most_arguments = max_operands - 1;
constexpr int most_tries = 100;             // of a function whose cells come late
constexpr std::size_t usual_operands = 16;  // more need a second allocation

// An operand: one value, or cells that lie on a sheet or came as an array.
struct Value {
  Scalar scalar;
  std::shared_ptr<const Block> cells;
  std::size_t sheet = 0;  // counted from 1; 0 for an array
  bool spills = false;    // an array that a function of today's Excel gave
};

Value of_scalar(Scalar scalar) {
  Value value;
  value.scalar = std::move(scalar);
  return value;
}

// What an operand of arithmetic counts as; false for an error, which is then in `error`.
bool operand_number(const Value& value, double& number, int& error) {
  error = xlerrValue;
  if (value.cells != nullptr && value.cells->cells.size() != 1) return false;
  const Scalar& scalar = value.cells != nullptr ? value.cells->cells[0] : value.scalar;
  if (scalar.kind == Kind::error) error = scalar.code;
  return number_of(scalar, number);
}

Scalar combine(Operation operation, double left, double right) {
  const bool finite = std::isfinite(left) && std::isfinite(right);
  double result = 0.0;
  switch (operation) {
    case Operation::add:
      result = left + right;
      break;
    case Operation::subtract:
      result = left - right;
      break;
    case Operation::multiply:
      result = left * right;
      break;
    case Operation::divide:
      if (finite && right == 0.0) return error_scalar(xlerrDiv0);
      result = left / right;
      break;
    default:
      // The worksheet has no answer where the C library has 1 and infinity.
      if (left == 0.0 && right == 0.0) return error_scalar(xlerrNum);
      if (finite && left == 0.0 && right < 0.0) return error_scalar(xlerrDiv0);
      result = power(left, right);
  }
  return finite && !std::isfinite(result) ? error_scalar(xlerrNum) : number_scalar(result);
}

Scalar combine(Operation operation, const Value& left, const Value& right) {
  double first = 0.0;
  double second = 0.0;
  int error = 0;
  if (!operand_number(left, first, error) || !operand_number(right, second, error))
    return error_scalar(error);
  return combine(operation, first, second);
}

Scalar change(Operation operation, const Value& operand) {
  double number = 0.0;
  int error = 0;
  if (!operand_number(operand, number, error)) return error_scalar(error);
  return number_scalar(operation == Operation::negate ? -number : number / 100.0);
}

std::size_t rows_of(const Value& value) { return value.cells == nullptr ? 1 : value.cells->rows; }
std::size_t columns_of(const Value& value) { return value.cells == nullptr ? 1 : value.cells->columns; }

// The value of an operand for one cell of an array of answers.
Value cell_of(const Value& value, std::size_t row, std::size_t column) {
  if (value.cells == nullptr) return of_scalar(value.scalar);
  if (rows_of(value) == 1) row = 0;
  if (columns_of(value) == 1) column = 0;
  const bool inside = row < rows_of(value) && column < columns_of(value);
  return of_scalar(inside ? value.cells->cells[row * columns_of(value) + column] : error_scalar(xlerrNA));
}

// Where an operand spills, so does what is made of it, cell by cell.
template <class Calculate>
Value for_each_cell(const Value& left, const Value& right, const Calculate& calculate) {
  if (!left.spills && !right.spills) return of_scalar(calculate(left, right));
  Block block{std::max(rows_of(left), rows_of(right)), std::max(columns_of(left), columns_of(right)), {}};
  for (std::size_t row = 0; row < block.rows; ++row)
    for (std::size_t column = 0; column < block.columns; ++column)
      block.cells.push_back(calculate(cell_of(left, row, column), cell_of(right, row, column)));
  return {Scalar(), std::make_shared<Block>(std::move(block)), 0, true};
}

template <class Record, std::size_t>
using Argument = Record*;

template <class Record, std::size_t... index>
Record* call_with(void* entry, Record* const* arguments, std::index_sequence<index...>) {
  using Entry = Record*(EXCEL_STDCALL*)(Argument<Record, index>...);
  (void)arguments;  // not used where there are none
  return reinterpret_cast<Entry>(entry)(arguments[index]...);
}

template <class Record, std::size_t count>
Record* call_counted(void* entry, Record* const* arguments) {
  return call_with<Record>(entry, arguments, std::make_index_sequence<count>());
}

template <class Record>
using Caller = Record* (*)(void* entry, Record* const* arguments);

template <class Record, std::size_t... counts>
constexpr std::array<Caller<Record>, sizeof...(counts)> make_callers(std::index_sequence<counts...>) {
  return {call_counted<Record, counts>...};
}

// By number of arguments: the callee of 32-bit Windows takes exactly as many off the stack as it declares.
template <class Record>
constexpr auto callers = make_callers<Record>(std::make_index_sequence<most_arguments + 1>());

// An argument as Excel passes it; `memory` and `areas` hold what the record points at. A range that no sheet
// is wide enough for is an array.
template <class Record>
void make_argument(const Value& value, Record& record, std::vector<std::unique_ptr<char[]>>& memory,
                   typename Interface<Record>::Areas& areas) {
  if (value.cells == nullptr && value.scalar.kind == Kind::number) {
    record.type = xltypeNum;
    record.value.number = value.scalar.number;
  } else if (value.cells == nullptr) {
    record = make_record<Record>(value.scalar, memory.emplace_back());
  } else if (value.sheet == 0 || value.cells->columns > Interface<Record>::columns) {
    record = make_array<Record>(*value.cells, memory.emplace_back());
  } else {
    const Origin origin = origin_of<Record>(*value.cells);
    using Row = decltype(areas.area.last_row);
    using Column = decltype(areas.area.last_column);
    areas.count = 1;
    areas.area = {static_cast<Row>(origin.row), static_cast<Row>(origin.row + value.cells->rows - 1),
                  static_cast<Column>(origin.column),
                  static_cast<Column>(origin.column + value.cells->columns - 1)};
    if (value.sheet == 1) {
      record.type = xltypeSRef;
      record.value.sheet_reference = areas;
    } else {
      record.type = xltypeRef;
      record.value.reference = {&areas, sheet_id(value.sheet - 1)};
    }
  }
}

template <class Record>
Value read_result(const Record* result) {
  Value value;
  if (result == nullptr) {
    note_fault("gives no result");
    value.scalar = error_scalar(xlerrNum);
  } else if (result->type == xltypeMulti && (value.cells = read_array(*result)) != nullptr) {
    return value;
  } else if (!read_scalar(*result, value.scalar)) {
    note_fault("gives a result of type " + std::to_string(result->type) + " that no cell can hold");
    value.scalar = error_scalar(xlerrValue);
  }
  return value;
}

// A result that the add-in wants back goes back on this thread, before the next call.
Value take_result(const Registration&, XLOPER* result) { return read_result(result); }
Value take_result(const Registration& function, XLOPER12* result) {
  const bool wanted_back = result != nullptr && (result->type & xlbitDLLFree) != 0;
  if (wanted_back) result->type &= ~std::uint32_t{xlbitDLLFree};
  Value value = read_result(result);
  value.spills = value.cells != nullptr && value.cells->cells.size() > 1;
  if (!wanted_back) return value;
  result->type |= xlbitDLLFree;
  if (function.take_back == nullptr) {
    note_fault("wants a result back but has no xlAutoFree12");
  } else {
    reinterpret_cast<void(EXCEL_STDCALL*)(XLOPER12*)>(function.take_back)(result);
    ++standin().accounting.results_freed;
  }
  return value;
}

template <class Record>
Value call_records(const Registration& function, const Value* given, std::size_t count) {
  std::vector<std::unique_ptr<char[]>> memory;
  std::array<typename Interface<Record>::Areas, most_arguments> areas;
  std::array<Record, most_arguments> records;
  std::array<Record*, most_arguments> arguments{};
  for (std::size_t i = 0; i < function.arguments; ++i) {
    arguments[i] = &records[i];
    records[i].type = xltypeMissing;
    if (i < count) make_argument(given[i], records[i], memory, areas[i]);
  }
  return take_result(function, call_entry(function.entry, arguments.data(), function.arguments));
}

// Today's Excel calls a function again that met a cell that was not calculated; meanwhile it calculates it.
Value call_wide(const Registration& function, const Value* given, std::size_t count) {
  for (int tries = 1;; ++tries) {
    standin().met_uncalculated = false;
    Value value = call_records<XLOPER12>(function, given, count);
    if (!standin().met_uncalculated) return value;
    if (tries == most_tries) {
      note_fault("asks for cells that are not calculated without end");
      return value;
    }
  }
}

Value call_function(const std::string& name, const Value* given, std::size_t count) {
  const Registration* const function = find_function(name);
  if (function == nullptr || count > function->arguments) return of_scalar(error_scalar(xlerrName));
  Value value;
  const bool gives_logical = registered_text(*function, type_text) == "A";
  begin_call(registered_name(*function));
  if (gives_logical) {
    using Entry = int(EXCEL_STDCALL*)();
    value.scalar = boolean_scalar((reinterpret_cast<Entry>(function->entry)() & 0xFFFF) != 0);
  } else {
    value =
        function->wide ? call_wide(*function, given, count) : call_records<XLOPER>(*function, given, count);
  }
  end_call();
  return value;
}

// What a line leaves behind beside its value.
struct Trace {
  std::string unknown_function;
  std::vector<Call>* calls;
};

Value call_traced(const std::string& name, const Value* given, std::size_t count, Trace& trace) {
  if (find_function(name) == nullptr) trace.unknown_function = name;
  Value value = call_function(name, given, count);
  if (trace.calls == nullptr) return value;
  Call call;
  call.name = name;
  for (std::size_t i = 0; i < count; ++i)
    call.given.push_back(given[i].cells == nullptr ? Block{0, 0, {given[i].scalar}} : *given[i].cells);
  call.answer = value.cells == nullptr ? value.scalar : value.cells->cells[0];
  trace.calls->push_back(std::move(call));
  return value;
}

// Puts a range on a sheet; gives its number, counted from 1, or 0 where it fits on none.
std::size_t lay_out(const std::shared_ptr<const Block>& block) {
  Standin& excel = standin();
  const bool wide = !excel.registrations.empty() && excel.registrations.back().wide;
  if (block->columns > (wide ? Interface<XLOPER12>::columns : Interface<XLOPER>::columns)) return 0;
  excel.sheets.push_back(block);
  return excel.sheets.size();
}

// Does one step with the operands on the stack.
void do_step(Step& step, std::vector<Value>& stack, Trace& trace) {
  switch (step.operation) {
    case Operation::scalar:
      stack.push_back(of_scalar(std::move(step.scalar)));
      break;
    case Operation::block: {
      const std::size_t sheet = lay_out(step.block);
      stack.push_back({Scalar(), std::move(step.block), sheet, false});
      break;
    }
    case Operation::negate:
    case Operation::percent:
      stack.back() = for_each_cell(stack.back(), Value(), [&](const Value& operand, const Value&) {
        return change(step.operation, operand);
      });
      break;
    case Operation::drop:
      stack.pop_back();
      break;
    case Operation::call: {
      const std::size_t first = stack.size() - step.count;
      Value value = call_traced(step.scalar.text, stack.data() + first, step.count, trace);
      stack.resize(first);
      stack.push_back(std::move(value));
      break;
    }
    default: {
      Value result = for_each_cell(
          stack[stack.size() - 2], stack.back(),
          [&](const Value& left, const Value& right) { return combine(step.operation, left, right); });
      stack.pop_back();
      stack.back() = std::move(result);
    }
  }
}

int declared_arguments(const std::string& name) {
  const Registration* const function = find_function(name);
  return function == nullptr ? -1 : static_cast<int>(function->arguments);
}

}  // namespace

template <class Record>
Record* call_entry(void* entry, Record* const* arguments, std::size_t count) {
  return callers<Record>[count](entry, arguments);
}
template XLOPER* call_entry(void*, XLOPER* const*, std::size_t);
template XLOPER12* call_entry(void*, XLOPER12* const*, std::size_t);

const char out_of_memory_text[] = "#MEMORY!";

namespace {

// Infinities and NaN are nothing that a cell holds, and what holds nothing shows 0.
Kind shown_kind(const Scalar& scalar) {
  if (scalar.kind == Kind::number && !std::isfinite(scalar.number)) return Kind::error;
  return scalar.kind == Kind::empty || scalar.kind == Kind::missing ? Kind::number : scalar.kind;
}

// An array as a formula has it: rows behind semicolons, cells behind commas, texts in quotes.
std::string printed(const Block& block) {
  std::string text = "{";
  for (std::size_t i = 0; i < block.cells.size(); ++i) {
    if (i > 0) text += i % block.columns == 0 ? ';' : ',';
    const bool quotes = block.cells[i].kind == Kind::text;
    text += quotes ? '"' + printed(block.cells[i]) + '"' : printed(block.cells[i]);
  }
  return text + '}';
}

Evaluation evaluate(std::string_view line, std::vector<Call>* calls) {
  std::vector<Value> stack;
  Trace trace{{}, calls};
  stack.reserve(usual_operands);
  const Unreadable unreadable =
      read_formula(line, declared_arguments, [&](Step& step) { do_step(step, stack, trace); });
  if (unreadable.column != 0)
    return {"#SYNTAX! column " + std::to_string(unreadable.column) + ": expected " + unreadable.expected,
            false};
  Value& value = stack.back();
  const Scalar& shown = value.cells == nullptr ? value.scalar : value.cells->cells[0];
  Evaluation evaluation{printed(shown), true, shown_kind(shown), std::move(trace.unknown_function)};
  if (value.spills) {
    evaluation.text = printed(*value.cells);
    for (const Scalar& cell : value.cells->cells)
      if (evaluation.kind != Kind::error) evaluation.kind = shown_kind(cell);
    evaluation.array = std::move(value.cells);
  }
  return evaluation;
}

}  // namespace

Evaluation evaluate_line(std::string_view line, std::vector<Call>* calls) noexcept {
  Standin& excel = standin();
  excel.sheets.clear();
  excel.calculated.clear();
  excel.out_of_memory = false;
  try {
    Evaluation evaluation = evaluate(line, calls);
    if (!excel.out_of_memory) return evaluation;
  } catch (const std::exception&) {
    // No memory, or what was asked for is more than there are addresses.
    abandon_call();
  }
  excel.sheets.clear();
  return {out_of_memory_text, false};
}

std::string printed(const Scalar& scalar) {
  switch (scalar.kind) {
    case Kind::number:
      return exact_number(scalar.number);
    case Kind::boolean:
      return scalar.code != 0 ? "TRUE" : "FALSE";
    case Kind::error: {
      const char* const name = error_name(scalar.code);
      return name != nullptr ? name : "#ERR(" + std::to_string(scalar.code) + ")";
    }
    case Kind::text: {
      std::string line = scalar.text;
      for (char& c : line)
        if (c == '\n' || c == '\r') c = ' ';
      return line;
    }
    default:
      return "0";
  }
}

}  // namespace kestran
