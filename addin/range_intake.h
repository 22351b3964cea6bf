// Arguments that may be ranges of cells: reading one argument at a time, as numbers.
#pragma once

#include "addin/excel_api.h"
#include "addin/excel_call.h"

namespace kestran {

constexpr int range_cells = 256;
constexpr int correlation_cells = range_cells * (range_cells - 1) / 2;

/// Cells that Excel made an array of from a reference; freed when they go out of scope.
struct CoercedCells {
  XLOPER cells;
  bool ready;  // false when the reference cannot be read now

  explicit CoercedCells(XLOPER* reference);
  ~CoercedCells() { Excel(xlFree, nullptr, 1, &cells); }
  CoercedCells(const CoercedCells&) = delete;
  CoercedCells& operator=(const CoercedCells&) = delete;

  int rows() const { return cells.value.array.rows; }
  int columns() const { return cells.value.array.columns; }
  bool is_line() const { return rows() == 1 || columns() == 1; }
  const XLOPER& operator[](int i) const { return cells.value.array.elements[i]; }
  int count() const { return rows() * columns(); }
};

/// Whether a value's type is one that is coerced to an array of cells.
bool is_reference(const XLOPER& value);

/// A row or column of numbers. `values` beyond `count` are not set.
struct Range {
  int count;
  double values[range_cells];

  Range() : count(0) {}
};

/// Numbers of a block of cells, row after row, in memory of their own; null when there was none.
struct NumberBlock {
  int count = 0;
  double* values = nullptr;

  NumberBlock() = default;
  ~NumberBlock();
  NumberBlock(const NumberBlock&) = delete;
  NumberBlock& operator=(const NumberBlock&) = delete;
};

/// A block that must be square, of as many rows as the ranges before it have cells.
struct SquareMatrix : NumberBlock {};

/// What the arguments of one call turned out to be so far.
struct IntakeCounts {
  int ranges = 0;    // rows, columns and matrices of several cells
  int singles = 0;   // numbers, and cells that hold one
  int standing = 0;  // the same that may stand for each cell of a range; not counted among the singles
  int shortest = 1;  // cells of the shortest row or column; 1 before the first
};

/// What becomes of a referenced scalar whose first cell holds no number.
enum class FirstCell {
  uncounted,        // the argument does not count, so that the call ends in #VALUE!
  error_passed_on,  // an error in it is the answer, anything else #VALUE!
  refused           // #VALUE!
};

// Each reader takes one argument. It gives go_on, or the error code that ends the call at once.
constexpr int go_on = -1;

/// A number, a cell, or a row or column of at most 256 cells. A block of several rows and columns is passed
/// over without counting.
int read_range(XLOPER* given, Range& range, IntakeCounts& counts);

/// A number, or a reference to a row or column, of which the first cell is taken.
int read_scalar(XLOPER* given, FirstCell rule, double& number, IntakeCounts& counts);

/// A number, a cell, or a square block with a row for each cell of the ranges so far.
int read_matrix(XLOPER* given, SquareMatrix& matrix, IntakeCounts& counts);

/// A number, a cell, or a block of any shape. `error` receives the code of an argument that does not count
/// but lets the reading go on. More than `capacity` cells end the call with `error`.
int read_block(XLOPER* given, int capacity, NumberBlock& block, int& error, IntakeCounts& counts);

/// The same for an argument that must be a single number or cell.
int read_cell(XLOPER* given, double& number, int& error, IntakeCounts& counts);

}  // namespace kestran
