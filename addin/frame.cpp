#include "addin/frame.h"

#include "addin/range_intake.h"

namespace kestran {

void give(const Answer& answer, XLOPER& result) {
  if (answer.error < 0) {
    result.type = xltypeNum;
    result.value.number = answer.number;
  } else {
    result.type = xltypeErr;
    result.value.error = static_cast<std::uint16_t>(answer.error);
  }
}

namespace {

// What one argument, or the one cell it refers to, holds.
enum class Found { number, error, nothing, several_cells };

Found look_at_cell(const XLOPER& cell, double& number, int& error) {
  switch (cell.type) {
    case xltypeNum:
      number = cell.value.number;
      return Found::number;
    case xltypeErr:
      error = cell.value.error;
      return Found::error;
    case xltypeNil:
      return Found::nothing;
    default:
      error = xlerrValue;
      return Found::error;
  }
}

// A cell that is not calculated yet and a coercion that fails for another reason count as several cells: all
// three end the call at once.
Found read_reference(XLOPER* reference, double& number, int& error) {
  const CoercedCells cells(reference);
  if (!cells.ready || cells.rows() != 1 || cells.columns() != 1) return Found::several_cells;
  return look_at_cell(cells[0], number, error);
}

}  // namespace

bool read_numbers(XLOPER* const* given, int count, double* numbers, XLOPER& result) {
  int last_error = -1;
  int counted = 0;
  for (int i = 0; i < count; ++i) {
    switch (given[i]->type) {
      case xltypeNum:
        numbers[i] = given[i]->value.number;
        ++counted;
        continue;
      case xltypeMissing:
        continue;
      case xltypeErr:
        last_error = given[i]->value.error;
        continue;
      default:
        break;
    }
    if (!is_reference(*given[i])) {  // text, logical values, integers, and types with a flag bit set
      last_error = xlerrValue;
      continue;
    }
    const Found found = read_reference(given[i], numbers[i], last_error);
    if (found == Found::several_cells) {
      give(Answer::failure(xlerrValue), result);
      return false;
    }
    if (found == Found::number) ++counted;
  }
  if (last_error < 0 && counted == count) return true;
  give(Answer::failure(last_error < 0 ? missing_code : last_error), result);
  return false;
}

}  // namespace kestran
