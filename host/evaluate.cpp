#include "host/evaluate.h"

#include <array>
#include <cmath>
#include <exception>
#include <utility>

#include "functions/describe.h"
#include "host/excel_standin.h"
#include "numerics/elementary.h"

namespace kestran {
namespace {

constexpr std::size_t most_arguments = max_operands - 1;
constexpr std::size_t sheet_columns = 256;
constexpr std::size_t usual_operands = 16;  // more need a second allocation

// An operand: one value, or cells that lie on a sheet or came as an array.
struct Value {
  Scalar scalar;
  std::shared_ptr<const Block> cells;
  std::size_t sheet = 0;  // counted from 1; 0 for an array
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

template <std::size_t>
using Argument = XLOPER*;

template <std::size_t... index>
XLOPER* call_with(void* entry, XLOPER* const* arguments, std::index_sequence<index...>) {
  using Entry = XLOPER*(EXCEL_STDCALL*)(Argument<index>...);
  (void)arguments;  // not used where there are none
  return reinterpret_cast<Entry>(entry)(arguments[index]...);
}

template <std::size_t count>
XLOPER* call_counted(void* entry, XLOPER* const* arguments) {
  return call_with(entry, arguments, std::make_index_sequence<count>());
}

using Caller = XLOPER* (*)(void* entry, XLOPER* const* arguments);

template <std::size_t... counts>
constexpr std::array<Caller, sizeof...(counts)> make_callers(std::index_sequence<counts...>) {
  return {call_counted<counts>...};
}

// By number of arguments: the callee of 32-bit Windows takes exactly as many off the stack as it declares.
constexpr auto callers = make_callers(std::make_index_sequence<most_arguments + 1>());

// An argument as Excel passes it; `memory` and `areas` hold what the record points at.
void make_argument(const Value& value, XLOPER& record, std::vector<std::unique_ptr<char[]>>& memory,
                   AreaList& areas) {
  if (value.cells == nullptr && value.scalar.kind == Kind::number) {
    record.type = xltypeNum;
    record.value.number = value.scalar.number;
  } else if (value.cells == nullptr) {
    record = make_record(value.scalar, memory.emplace_back());
  } else if (value.sheet == 0) {
    record = make_array(*value.cells, memory.emplace_back());
  } else {
    areas.count = 1;
    areas.area = {0, static_cast<std::uint16_t>(value.cells->rows - 1), 0,
                  static_cast<std::uint8_t>(value.cells->columns - 1)};
    if (value.sheet == 1) {
      record.type = xltypeSRef;
      record.value.sheet_reference = areas;
    } else {
      record.type = xltypeRef;
      record.value.reference = {&areas, sheet_id(value.sheet - 1)};
    }
  }
}

Value read_result(const XLOPER* result) {
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

Value call_function(const std::string& name, const Value* given, std::size_t count) {
  const Registration* const function = find_function(name);
  if (function == nullptr || count > function->arguments) return of_scalar(error_scalar(xlerrName));
  void* const entry = function->entry;
  const std::size_t declared = function->arguments;
  std::vector<std::unique_ptr<char[]>> memory;
  std::array<AreaList, most_arguments> areas;
  std::array<XLOPER, most_arguments> records;
  std::array<XLOPER*, most_arguments> arguments{};
  for (std::size_t i = 0; i < declared; ++i) {
    arguments[i] = &records[i];
    records[i].type = xltypeMissing;
    if (i < count) make_argument(given[i], records[i], memory, areas[i]);
  }
  Value value;
  const bool gives_logical = registered_text(*function, type_text) == "A";
  begin_call(registered_name(*function));
  if (gives_logical) {
    using Entry = int(EXCEL_STDCALL*)();
    value.scalar = boolean_scalar((reinterpret_cast<Entry>(entry)() & 0xFFFF) != 0);
  } else {
    value = read_result(call_entry(entry, arguments.data(), declared));
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
  auto& sheets = standin().sheets;
  if (block->columns > sheet_columns) return 0;
  sheets.push_back(block);
  return sheets.size();
}

// Does one step with the operands on the stack.
void do_step(Step& step, std::vector<Value>& stack, Trace& trace) {
  switch (step.operation) {
    case Operation::scalar:
      stack.push_back(of_scalar(std::move(step.scalar)));
      break;
    case Operation::block: {
      const std::size_t sheet = lay_out(step.block);
      stack.push_back({Scalar(), std::move(step.block), sheet});
      break;
    }
    case Operation::negate:
    case Operation::percent:
      stack.back() = of_scalar(change(step.operation, stack.back()));
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
      const Scalar result = combine(step.operation, stack[stack.size() - 2], stack.back());
      stack.pop_back();
      stack.back() = of_scalar(result);
    }
  }
}

int declared_arguments(const std::string& name) {
  const Registration* const function = find_function(name);
  return function == nullptr ? -1 : static_cast<int>(function->arguments);
}

}  // namespace

XLOPER* call_entry(void* entry, XLOPER* const* arguments, std::size_t count) {
  return callers[count](entry, arguments);
}

const char out_of_memory_text[] = "#MEMORY!";

namespace {

Evaluation evaluate(std::string_view line, std::vector<Call>* calls) {
  std::vector<Value> stack;
  Trace trace{{}, calls};
  stack.reserve(usual_operands);
  const Unreadable unreadable =
      read_formula(line, declared_arguments, [&](Step& step) { do_step(step, stack, trace); });
  if (unreadable.column != 0)
    return {"#SYNTAX! column " + std::to_string(unreadable.column) + ": expected " + unreadable.expected,
            false};
  const Value& value = stack.back();
  const Scalar& shown = value.cells == nullptr ? value.scalar : value.cells->cells[0];
  Evaluation evaluation{printed(shown), true, shown.kind, std::move(trace.unknown_function)};
  if (shown.kind == Kind::number && !std::isfinite(shown.number)) evaluation.kind = Kind::error;
  if (shown.kind == Kind::empty || shown.kind == Kind::missing) evaluation.kind = Kind::number;
  return evaluation;
}

}  // namespace

Evaluation evaluate_line(std::string_view line, std::vector<Call>* calls) noexcept {
  Standin& excel = standin();
  excel.sheets.clear();
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
