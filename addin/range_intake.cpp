#include "addin/range_intake.h"

#include <algorithm>

#include "addin/frame.h"
#include "numerics/arrays.h"

namespace kestran {

CoercedCells::CoercedCells(XLOPER* reference) {
  cells.type = xltypeNil;
  ready = Excel(xlCoerce, &cells, 2, reference, TempInt(xltypeMulti)) == xlretSuccess &&
          cells.type == xltypeMulti && count() > 0;
}

NumberBlock::~NumberBlock() { free_dvector(values, 0, count - 1); }

bool is_reference(const XLOPER& value) {
  return value.type == xltypeSRef || value.type == xltypeRef || value.type == xltypeMulti;
}

// Copies all cells; false when one of them is not a number.
static bool copy_numbers(const CoercedCells& cells, double* numbers) {
  for (int i = 0; i < cells.count(); ++i) {
    if (cells[i].type != xltypeNum) return false;
    numbers[i] = cells[i].value.number;
  }
  return true;
}

static bool allocate(NumberBlock& block, int count) {
  block.values = dvector(0, count - 1);
  block.count = count;
  return block.values != nullptr;
}

int read_range(XLOPER* given, Range& range, IntakeCounts& counts) {
  if (given->type == xltypeErr) return given->value.error;
  if (given->type == xltypeNum) {
    range.values[0] = given->value.number;
    range.count = 1;
    ++counts.singles;
    return go_on;
  }
  if (!is_reference(*given)) return xlerrValue;
  const CoercedCells cells(given);
  if (!cells.ready || cells.count() > range_cells) return xlerrValue;
  if (!cells.is_line()) return go_on;
  if (!copy_numbers(cells, range.values)) return xlerrValue;
  range.count = cells.count();
  if (range.count == 1) {
    ++counts.singles;
  } else {
    counts.shortest = counts.ranges == 0 ? range.count : std::min(counts.shortest, range.count);
    ++counts.ranges;
  }
  return go_on;
}

int read_scalar(XLOPER* given, FirstCell rule, double& number, IntakeCounts& counts) {
  if (given->type == xltypeErr) return given->value.error;
  if (given->type == xltypeNum) {
    number = given->value.number;
    ++counts.singles;
    return go_on;
  }
  if (!is_reference(*given)) return xlerrValue;
  const CoercedCells cells(given);
  if (!cells.ready || !cells.is_line()) return xlerrValue;
  const XLOPER& first = cells[0];
  if (first.type == xltypeNum) {
    number = first.value.number;
    ++counts.singles;
    return go_on;
  }
  if (rule == FirstCell::uncounted) return go_on;
  return rule == FirstCell::error_passed_on && first.type == xltypeErr ? first.value.error : xlerrValue;
}

int read_matrix(XLOPER* given, SquareMatrix& matrix, IntakeCounts& counts) {
  if (given->type == xltypeErr) return given->value.error;
  if (given->type != xltypeNum && !is_reference(*given)) return xlerrValue;
  if (given->type == xltypeNum) {
    if (!allocate(matrix, 1)) return xlerrValue;
    matrix.values[0] = given->value.number;
    ++counts.singles;
    return go_on;
  }
  const CoercedCells cells(given);
  if (!cells.ready || cells.rows() != counts.shortest || cells.columns() != counts.shortest)
    return xlerrValue;
  if (!allocate(matrix, cells.count()) || !copy_numbers(cells, matrix.values)) return xlerrValue;
  ++(cells.count() == 1 ? counts.singles : counts.ranges);
  return go_on;
}

// Takes an argument that needs no coercion; true when it was one.
static bool take_plain(const XLOPER& given, double& number, int& error, IntakeCounts& counts) {
  if (is_reference(given)) return false;
  if (given.type == xltypeNum) {
    number = given.value.number;
    ++counts.singles;
  } else {
    error = given.type == xltypeErr ? given.value.error : xlerrValue;
  }
  return true;
}

int read_block(XLOPER* given, int capacity, NumberBlock& block, int& error, IntakeCounts& counts) {
  if (given->type == xltypeMissing) return xlerrValue;
  double number = 0.0;
  if (take_plain(*given, number, error, counts)) {
    if (!allocate(block, 1)) return xlerrValue;
    block.values[0] = number;
    return go_on;
  }
  const CoercedCells cells(given);
  if (!cells.ready) return xlerrValue;
  if (cells.count() > capacity) return error < 0 ? missing_code : error;
  if (!allocate(block, cells.count()) || !copy_numbers(cells, block.values)) return xlerrValue;
  ++counts.singles;
  return go_on;
}

int read_cell(XLOPER* given, double& number, int& error, IntakeCounts& counts) {
  if (given->type == xltypeMissing) return xlerrValue;
  if (take_plain(*given, number, error, counts)) return go_on;
  const CoercedCells cells(given);
  if (!cells.ready || cells.count() != 1 || !copy_numbers(cells, &number)) return xlerrValue;
  ++counts.singles;
  return go_on;
}

}  // namespace kestran
