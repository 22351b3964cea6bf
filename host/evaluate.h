// Works out formulas with the functions an add-in registered, by the rules of a worksheet.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "addin/excel_api.h"
#include "host/formula.h"

namespace kestran {

/// One call of a function within a formula: what it was given, a single value as a block without rows, and
/// what it answered.
struct Call {
  std::string name;
  std::vector<Block> given;
  Scalar answer;
};

/// The answer to one line: what a cell would show, or why the line was not worked out.
struct Evaluation {
  std::string text;
  bool readable = false;
  Kind kind =
      Kind::error;  // number, text, boolean or error; infinities and NaN, which no cell holds, are errors
  std::string unknown_function = {};        // the last name called that no function has
  std::shared_ptr<const Block> array = {};  // of an answer that spills; its kind is error where a cell's is
};

/// What is printed for a line that memory does not suffice for. Such a line counts as not readable.
extern const char out_of_memory_text[];

/// Reads and works out one formula. The first range in it lies on the active sheet, each further one on a
/// sheet of its own; a range of more columns than a sheet has, 256 to the old interface, reaches functions as
/// an array. Of an array that a function of the old interface gives, the first cell is shown.
/// It is worked out while it is read: functions may have been called when a line turns out not to be
/// readable. Whichever allocation fails, this throws nothing. `calls`, unless null, receives the calls in the
/// order in which they were made.
Evaluation evaluate_line(std::string_view line, std::vector<Call>* calls = nullptr) noexcept;

/// Calls a worksheet function's entry point with as many records as it declares, at most 29.
template <class Record>
Record* call_entry(void* entry, Record* const* arguments, std::size_t count);

/// What a cell shows for a value, on one line: an empty or missing one shows 0.
std::string printed(const Scalar& scalar);

}  // namespace kestran
