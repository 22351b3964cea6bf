// The entry points of an add-in, called by a host that means no good: records of every type and of none, flag
// bits, texts and areas that are not there, sizes that are not true, callbacks that fail, give something else
// than was asked for, or say that cells are not calculated yet. Built once for KESTRAN.xll and once for
// KESTRAN12.xll.
//
// What the host says is there, is there, with these exceptions, against which an add-in can defend itself: a
// pointer that is null, a number of rows or columns of 0 and below, an array larger than anything that a
// function or a spilled array takes, and areas of other sizes than the cells that come for them. That an
// array of 30 cells has 40 cannot be known to an add-in; nor can it know of memory behind a value that it
// asked for as a number.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <deque>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "addin/arity.h"
#include "addin/excel_api.h"
#include "functions/refused_number.h"
#include "tests/fuzz/fuzzer.h"

#define RECORD Record

namespace kestran {

#if defined(KESTRAN_FUZZ_XLOPER12)
using Record = XLOPER12;
using Areas = AreaList12;
using Character = char16_t;
#else
using Record = XLOPER;
using Areas = AreaList;
using Character = char;
#endif
using Type = decltype(Record::type);
using Rows = decltype(Record().value.array.rows);
constexpr bool modern = sizeof(Character) == 2;

#define FUNCTION(name, function, frame, pointers, description, names) \
  extern "C" Record* EXCEL_STDCALL name(PARAMETERS_##pointers);
#include "functions/function_list.h"

extern "C" {
int EXCEL_STDCALL xlAutoOpen();
int EXCEL_STDCALL xlAutoClose();
#if defined(KESTRAN_FUZZ_XLOPER12)
void EXCEL_STDCALL xlAutoFree12(Record* record);
Record* EXCEL_STDCALL xlAddInManagerInfo12(Record* action);
#else
int EXCEL_STDCALL xlAutoAdd();
int EXCEL_STDCALL xlAutoRemove();
int EXCEL_STDCALL KESTRAN_Help();
int EXCEL_STDCALL KESTRAN_Exit();
Record* EXCEL_STDCALL xlAutoRegister(Record* name);
Record* EXCEL_STDCALL xlAddInManagerInfo(Record* action);
#endif
}

namespace fuzz {
namespace {

template <auto entry, class... Pointer, std::size_t... i>
Record* call_with(Record* (*)(Pointer...), Record* const* given, std::index_sequence<i...>) {
  return entry(given[i]...);
}

template <auto entry, class... Pointer>
Record* call_with(Record* (*function)(Pointer...), Record* const* given) {
  return call_with<entry>(function, given, std::index_sequence_for<Pointer...>());
}

Record* (*const entries[])(Record* const*) = {
#define FUNCTION(name, function, frame, pointers, description, names) \
  [](Record* const* given) { return call_with<name>(name, given); },
#include "functions/function_list.h"
};

constexpr Type types[] = {xltypeNum,     xltypeStr, xltypeBool, xltypeRef, xltypeErr, 32, xltypeMulti,
                          xltypeMissing, xltypeNil, xltypeSRef, xltypeInt, 0x0802,    0};
constexpr Type flags[] = {0x1000, 0x4000, 0x8000, 0x5000, 0x0001, 0x2000};

bool is_cells(const Record& record) {
  return record.type == xltypeMulti || record.type == xltypeSRef || record.type == xltypeRef;
}

// What stands behind an argument, and what the host says when it is asked for it.
struct Argument {
  Record record{};
  Areas areas{};
  std::vector<Record> cells;
  Type answered = xltypeMulti;  // type of the record that the host answers with
  int code = xlretSuccess;
  int rows = 0, columns = 0;  // of the answer
  bool lying = false;         // what the record says of its size is not what comes
  // The same as the catalogue takes it, and whether it has a word for it.
  std::vector<double> values;
  bool known = true;

  bool readable() const {
    return code == xlretSuccess && answered == xltypeMulti && rows > 0 && columns > 0 && !cells.empty();
  }
};

// The host. Cells that it hands out are memory of their own, so that the sanitizer sees who touches them
// when.
class Host {
 public:
  Argument arguments[most_arguments];  // whose records the add-in gets
  int argument_count = 0;
  Choices* moods = nullptr;  // of a host that answers as it likes; null where it is to repeat itself
  bool user_breaks = false;
  int asked = 0;  // during a call, whether the user breaks

  int answer(int function, Record* result, int count, Record** operands) {
    require(count >= 0 && count <= (modern ? max_operands12 : max_operands), "too many operands");
    for (int i = 0; i < count; ++i) require(operands[i] != nullptr, "an operand that is null");
    switch (function) {
      case xlFree:
        for (int i = 0; i < count; ++i) take_back(*operands[i]);
        return xlretSuccess;
      case xlCoerce:
        require(count == 2 && result != nullptr && operands[1]->type == xltypeInt,
                "xlCoerce of the wrong form");
        return operands[1]->value.integer == xltypeMulti ? hand_out(*operands[0], *result) : plain(result);
      case xlAbort:
        require(result != nullptr, "xlAbort without a result");
        user_breaks = user_breaks || ++asked > 20;
        result->type = xltypeBool;
        result->value.boolean = user_breaks;
        return xlretSuccess;
      case xlGetName:
        return name(*result);
      default:
        return plain(result);
    }
  }

  void end_call() const { require(lent.empty(), "the add-in kept cells or a text of the host's"); }

 private:
  static void* memory_of(const Record& record) {
    const auto type = static_cast<Type>(record.type & 0x0FFF);
    if (type == xltypeMulti) return record.value.array.elements;
    return type == xltypeStr ? static_cast<void*>(record.value.text) : nullptr;
  }

  void take_back(const Record& record) {
    const void* const memory = memory_of(record);
    if (memory == nullptr) return;
    const auto found = std::find(lent.begin(), lent.end(), memory);
    require(found != lent.end(), "freed twice, or what was not the host's");
    std::free(*found);
    lent.erase(found);
  }

  const Argument* argument_of(const Record& given) const {
    for (int i = 0; i < argument_count; ++i)
      if (&arguments[i].record == &given) return &arguments[i];
    return nullptr;
  }

  int hand_out(const Record& given, Record& result) {
    const Argument* const argument = argument_of(given);
    require(argument != nullptr && is_cells(given), "a coercion of what the host never gave");
    if (argument->code != xlretSuccess) return argument->code;
    result.type = argument->answered;
    if ((argument->answered & 0x0FFF) == xltypeStr) {
      result.value.text = lend<Character>(2);
      return xlretSuccess;
    }
    if ((argument->answered & 0x0FFF) != xltypeMulti) return xlretSuccess;
    result.value.array.rows = static_cast<Rows>(argument->rows);
    result.value.array.columns = static_cast<Rows>(argument->columns);
    result.value.array.elements = argument->cells.empty() ? nullptr : lend<Record>(argument->cells.size());
    std::copy(argument->cells.begin(), argument->cells.end(), result.value.array.elements);
    return xlretSuccess;
  }

  template <class Item>
  Item* lend(std::size_t count) {
    lent.push_back(std::calloc(count, sizeof(Item)));
    return static_cast<Item*>(lent.back());
  }

  int failure() { return 1 << moods->below(8); }

  // A number, an error or nothing.
  int plain(Record* result) {
    require(moods != nullptr, "a function called the host for something else than cells");
    if (moods->one_in(4)) return failure();
    if (result == nullptr) return xlretSuccess;
    const Type type =
        moods->of({xltypeNum, xltypeNum, xltypeInt, xltypeErr, xltypeBool, xltypeNil, xltypeMissing});
    *result = {};
    result->type = type;
    if (type == xltypeNum)
      result->value.number = odd_number(*moods);
    else
      result->value.integer = static_cast<decltype(result->value.integer)>(moods->below(3));
    return xlretSuccess;
  }

  int name(Record& result) {
    if (moods->one_in(4)) return failure();
    result = {};
    result.type = moods->of({xltypeStr, xltypeStr, xltypeErr, xltypeNil});
    if (result.type != xltypeStr || moods->one_in(8)) return xlretSuccess;
    const int length = moods->of({0, 1, 20, 255, modern ? 32767 : 255, modern ? 65535 : 255});
    result.value.text = lend<Character>(static_cast<std::size_t>(length) + 1);
    result.value.text[0] = static_cast<Character>(length);
    for (int i = 1; i <= length; ++i)
      result.value.text[i] = static_cast<Character>(moods->one_in(4) ? '/' : moods->below(65536));
    return xlretSuccess;
  }

  std::vector<void*> lent;
};

Host host;

Record number_record(double number) {
  Record record{};
  record.type = xltypeNum;
  record.value.number = number;
  return record;
}

// A value of any type but cells.
Record odd_record(Choices& choices) {
  static Character text[] = {3, 'a', 'b', 'c'};
  Record record{};
  record.type = choices.of(types);
  if (is_cells(record)) record.type = xltypeErr;
  if (record.type == xltypeNum) {
    record.value.number = odd_number(choices);
  } else if (record.type == xltypeErr) {
    record.value.error = static_cast<decltype(record.value.error)>(
        choices.one_in(8) ? static_cast<int>(choices.bits()) : choices.of({0, 7, 15, 23, 29, 36, 42, 43}));
  } else if (record.type == xltypeStr) {
    record.value.text = choices.one_in(3) ? nullptr : text;
  } else {
    record.value.integer = static_cast<decltype(record.value.integer)>(choices.bits());
  }
  if (choices.one_in(8)) record.type = static_cast<Type>(record.type | choices.of(flags));
  // Which may have made cells of it, of which none are there.
  if (is_cells(record)) record.type = static_cast<Type>(record.type | 0x1000);
  return record;
}

// Says which cells the argument is, as an array or a reference.
void place_cells(Argument& argument, Choices& choices) {
  Record& record = argument.record;
  const int form = choices.below(3);
  if (form == 0) {
    record.type = xltypeMulti;
    record.value.array.rows = static_cast<Rows>(argument.rows);
    record.value.array.columns = static_cast<Rows>(argument.columns);
    record.value.array.elements = argument.cells.empty() ? nullptr : argument.cells.data();
    return;
  }
  argument.areas.count = 1;
  auto& area = argument.areas.area;
  area = {};
  area.last_row = static_cast<decltype(area.last_row)>(argument.rows - 1);
  area.last_column = static_cast<decltype(area.last_column)>(argument.columns - 1);
  if (form == 1) {
    record.type = xltypeSRef;
    record.value.sheet_reference = argument.areas;
  } else {
    record.type = xltypeRef;
    record.value.reference.areas = &argument.areas;
    record.value.reference.sheet = 1;
  }
}

// What a host does that means no good with cells.
void spoil(Argument& argument, Choices& choices) {
  constexpr int least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
  Record& record = argument.record;
  switch (choices.below(7)) {
    case 0:
      argument.code = choices.of({xlretUncalced, xlretFailed, xlretInvXloper, xlretNotThreadSafe, -1});
      break;
    case 1:
      argument.answered = choices.of(types);
      break;
    case 2:
      argument.answered = xltypeMulti | 0x1000;
      break;
    case 3:  // no memory behind the cells
      argument.cells.clear();
      if (record.type == xltypeMulti) record.value.array.elements = nullptr;
      break;
    case 4: {  // sizes of nothing, or of more than there can be
      argument.lying = true;
      constexpr int old_sizes[][2] = {{0, 1}, {1, 0}, {0, 0}, {65535, 65535}};
      constexpr int sizes[][2] = {{0, 5},       {-1, -1},  {most, most},  {-70000, 1},
                                  {1 << 21, 2}, {1, most}, {65536, 65536}};
      const int* const size = modern ? choices.of(sizes) : choices.of(old_sizes);
      argument.rows = size[0];
      argument.columns = size[1];
      place_cells(argument, choices);
      break;
    }
    case 5: {  // areas that are not there, several, upside down, or of another size
      argument.lying = true;
      Areas* const areas = record.type == xltypeSRef  ? &record.value.sheet_reference
                           : record.type == xltypeRef ? &argument.areas
                                                      : nullptr;
      if (areas == nullptr) break;
      if (choices.one_in(4) && record.type == xltypeRef) record.value.reference.areas = nullptr;
      if (choices.one_in(4)) areas->count = static_cast<std::uint16_t>(choices.below(4));
      constexpr int ends[] = {0, 1, 2, 5, -1, least, most}, far_ends[] = {255, 70000};
      const auto end_of = [&] { return choices.one_in(256) ? choices.of(far_ends) : choices.of(ends); };
      auto& area = areas->area;
      area.first_row = static_cast<decltype(area.first_row)>(end_of());
      area.last_row = static_cast<decltype(area.last_row)>(end_of());
      area.first_column = static_cast<decltype(area.first_column)>(end_of());
      area.last_column = static_cast<decltype(area.last_column)>(end_of());
      break;
    }
    default:  // arrays in arrays, without an end
      for (Record& cell : argument.cells) {
        if (!choices.one_in(2)) continue;
        cell.type = xltypeMulti;
        cell.value.array.elements = argument.cells.data();
        cell.value.array.rows = cell.value.array.columns = 1;
      }
  }
}

void give_cells(Argument& argument, int rows, int columns, const std::vector<double>& numbers, bool hostile,
                Choices& choices) {
  argument.rows = rows;
  argument.columns = columns;
  for (const double number : numbers) argument.cells.push_back(number_record(number));
  const bool odd = hostile && choices.one_in(2);
  for (Record& cell : argument.cells)
    if (odd && choices.one_in(6)) cell = odd_record(choices);
  place_cells(argument, choices);
  if (hostile && choices.one_in(2)) spoil(argument, choices);
}

std::optional<double> operand_of(const Record& record, bool cell) {
  switch (record.type) {
    case xltypeNum:
      if (std::isnan(record.value.number)) return std::nullopt;
      return record.value.number;
    case xltypeErr:
      if (static_cast<unsigned>(record.value.error) >= unsigned{no_number_code}) return std::nullopt;
      return refused_number(record.value.error);
    case xltypeMissing:
    case xltypeNil:
      if ((record.type == xltypeNil) == cell) return std::numeric_limits<double>::quiet_NaN();
      return refused_number(no_number_code);
    default:
      return refused_number(no_number_code);
  }
}

// Says what the catalogue takes it for.
void take(Argument& argument) {
  const auto value = [&](const Record& record, bool cell) {
    const std::optional<double> operand = operand_of(record, cell);
    argument.known = argument.known && operand.has_value();
    argument.values.push_back(operand.value_or(0.0));
  };
  if (!is_cells(argument.record)) return value(argument.record, false);
  argument.known = argument.readable() && !argument.lying;
  for (const Record& cell : argument.cells) value(cell, true);
}

// A realistic argument, or one that is not what it should be.
void give_argument(const Function& function, int i, bool hostile, Choices& choices) {
  static GivenArgument realistic;
  draw_argument(function, i, choices, realistic);
  Argument& argument = host.arguments[i];
  argument = {};
  if (!hostile || (realistic.rows > 0 && choices.one_in(3))) {
    if (realistic.rows > 0)
      give_cells(argument, realistic.rows, realistic.columns, realistic.values, hostile, choices);
    else
      argument.record = number_record(realistic.values[0]);
  } else if (choices.one_in(3)) {
    argument.record = number_record(odd_number(choices));
  } else if (choices.one_in(2)) {
    argument.record = odd_record(choices);
  } else {
    const bool several = choices.one_in(2);
    const int rows = choices.one_in(512) ? choices.of({1, 257, 300}) : several ? 1 + choices.below(4) : 1;
    const int columns = several ? 1 + choices.below(4) : 1;
    std::vector<double> numbers;
    for (int k = 0; k < rows * columns; ++k)
      numbers.push_back(choices.one_in(4) ? odd_number(choices) : realistic.values[0]);
    give_cells(argument, rows, columns, numbers, choices.one_in(2), choices);
  }
  take(argument);
}

Answer answer_of(const Record& record) {
  const auto type = static_cast<Type>(record.type & ~unsigned{xlbitDLLFree});
  if (type == xltypeNum) return record.value.number;
  require(type == xltypeErr, "an answer that is neither a number nor an error");
  return Answer::failure(record.value.error, Reason::none);
}

void compare(const Function& function, const Operand* operands, const Record& record) {
  host.asked = 0;
  const Answer wanted = price(function, operands);
  if (host.user_breaks) return;  // the catalogue's search
  const Answer found = answer_of(record);
  if (!same_answer(wanted, found))
    fault(shown(function, operands) + " answers " + shown(found) + " and should " + shown(wanted));
}

// The answer of an array at one place: what the cells that stand there, or stand for it, get alone.
void compare_element(const Function& function, std::vector<Operand> operands, const Record& array, int at) {
  const int row = at / array.value.array.columns, column = at % array.value.array.columns;
  for (int i = 0; i < function.argument_count; ++i) {
    Operand& operand = operands[static_cast<std::size_t>(i)];
    if (is_range(function.arguments[i].kind) || operand.rows == 0) continue;
    const int r = operand.rows == 1 ? 0 : row, c = operand.columns == 1 ? 0 : column;
    const Record& element = array.value.array.elements[at];
    if (r >= operand.rows || c >= operand.columns)
      return require(element.type == xltypeErr && element.value.error == xlerrNA, "#N/A outside of a block");
    operand = {operand.values + r * operand.columns + c, 1, 1};
  }
  compare(function, operands.data(), array.value.array.elements[at]);
}

void check_array(const Function& function, const std::vector<Operand>& operands, const Record& array,
                 Choices& choices) {
  require(modern, "an array of an interface that knows none");
  int rows = 1, columns = 1;
  for (int i = 0; i < function.argument_count; ++i) {
    if (is_range(function.arguments[i].kind)) continue;
    rows = std::max(rows, operands[static_cast<std::size_t>(i)].rows);
    columns = std::max(columns, operands[static_cast<std::size_t>(i)].columns);
  }
  require(array.value.array.rows == rows && array.value.array.columns == columns,
          "an array of another shape");
  for (int checks = 0; checks < 3; ++checks)
    compare_element(function, operands, array, choices.below(std::min(rows * columns, 65536)));
}

bool same_record(const Record& a, const Record& b) {
  if (a.type != b.type) return false;
  if (a.type != (xltypeMulti | xlbitDLLFree)) return same_answer(answer_of(a), answer_of(b));
  if (a.value.array.rows != b.value.array.rows || a.value.array.columns != b.value.array.columns)
    return false;
  for (int i = 0; i < a.value.array.rows * a.value.array.columns; ++i)
    if (!same_record(a.value.array.elements[i], b.value.array.elements[i])) return false;
  return true;
}

// Excel gives results back when it pleases, and not always the last one first.
void take_result([[maybe_unused]] Record* result, [[maybe_unused]] Choices& choices) {
#if defined(KESTRAN_FUZZ_XLOPER12)
  static auto& kept = *new std::deque<Record*>;  // which outlives the search for leaks
  if ((result->type & xlbitDLLFree) == 0) return;
  kept.push_back(result);
  while (kept.size() > 80) {
    const bool first = choices.one_in(2);
    xlAutoFree12(first ? kept.front() : kept.back());
    first ? kept.pop_front() : kept.pop_back();
  }
#endif
}

Record* call(int place) {
  Record* pointers[most_arguments + 8];
  // Entry points may take more records than their functions have arguments; Excel passes missing ones.
  static Record missing;
  missing.type = xltypeMissing;
  std::fill(std::begin(pointers), std::end(pointers), &missing);
  for (int i = 0; i < host.argument_count; ++i) pointers[i] = &host.arguments[i].record;
  count_calls();
  Record* const result = entries[place](pointers);
  require(result != nullptr, "no result");
  host.end_call();
  return result;
}

void call_and_check(int place, Choices& choices) {
  const Function& function = catalogue[place];
  host.user_breaks = choices.one_in(32);
  host.asked = 0;
  Record* const first = call(place);
  if (choices.one_in(8)) {
    // The old interface has one record for all its answers.
    const Record copy = *first;
    Record* const second = call(place);
    if (!host.user_breaks)
      require(same_record(modern ? *first : copy, *second), "the same call, another answer");
    if (modern) take_result(second, choices);
  }
  bool known = !host.user_breaks, readable = true;
  static std::vector<Operand> operands;
  operands.clear();
  for (int i = 0; i < host.argument_count; ++i) {
    const Argument& one = host.arguments[i];
    const bool cells = is_cells(one.record);
    operands.push_back({one.values.data(), cells ? one.rows : 0, cells ? one.columns : 0});
    known = known && one.known;
    readable = readable && (!cells || one.readable());
  }
  const bool is_array = first->type == (xltypeMulti | xlbitDLLFree);
  require(readable || is_array || !answer_of(*first).is_number(), "a number from cells that cannot be read");
  if (known && is_array) check_array(function, operands, *first, choices);
  if (known && !is_array) compare(function, operands.data(), *first);
  take_result(first, choices);
}

// A realistic call, and calls like it of which some arguments are not what they should be.
void call_function(Choices& choices) {
  const int place = any_place(choices);
  const Function& function = catalogue[place];
  host.moods = nullptr;
  host.argument_count = function.argument_count;
  for (int i = 0; i < function.argument_count; ++i) give_argument(function, i, false, choices);
  call_and_check(place, choices);
  for (int calls = 1; calls < 24; ++calls) {
    const int i = choices.below(function.argument_count);
    give_argument(function, i, !choices.one_in(4), choices);
    call_and_check(place, choices);
    if (!choices.one_in(5)) give_argument(function, i, false, choices);
  }
}

// What Excel calls when the add-in is opened, listed and closed.
void live_and_die(Choices& choices) {
  host.moods = &choices;
  host.argument_count = 0;
  Record name = odd_record(choices);
  count_calls();
  switch (choices.below(modern ? 4 : 8)) {
    case 0:
      require(xlAutoOpen() == 1, "opened");
      break;
    case 1:
      require(xlAutoClose() == 1, "closed");
      break;
#if defined(KESTRAN_FUZZ_XLOPER12)
    default:
      require(xlAddInManagerInfo12(&name) != nullptr, "an answer");
#else
    case 2:
      xlAutoAdd();
      xlAutoRemove();
      break;
    case 3:
      KESTRAN_Help();
      break;
    case 4:
      KESTRAN_Exit();
      break;
    case 5:
      require(xlAutoRegister(&name) != nullptr, "an answer");
      break;
    default:
      require(xlAddInManagerInfo(&name) != nullptr, "an answer");
#endif
  }
  host.end_call();
}

}  // namespace

void make_case(Choices& choices) { choices.one_in(256) ? live_and_die(choices) : call_function(choices); }

}  // namespace fuzz

// The host's functions, as the add-ins look for them in the program.
#if defined(KESTRAN_FUZZ_XLOPER12)
extern "C" __attribute__((visibility("default"))) int MdCallBack12(int function, int count, Record** operands,
                                                                   Record* result) {
  return fuzz::host.answer(function, result, count, operands);
}
#else
extern "C" __attribute__((visibility("default"))) int Excel4v(int function, Record* result, int count,
                                                              Record** operands) {
  return fuzz::host.answer(function, result, count, operands);
}
#endif

}  // namespace kestran
