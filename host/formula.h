// A worksheet formula as text: what it may hold and how one line is read. Knows nothing of add-ins.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kestran {

enum class Kind { empty, missing, number, text, boolean, error };

/// What one cell, constant or argument holds.
struct Scalar {
  Kind kind = Kind::empty;
  int code = 0;  // of an error; 1 or 0 for TRUE or FALSE
  double number = 0.0;
  std::string text;
};

Scalar number_scalar(double number);
Scalar text_scalar(std::string text);
Scalar boolean_scalar(bool value);
Scalar error_scalar(int code);

/// A rectangle of cells, row after row.
struct Block {
  std::size_t rows = 0;
  std::size_t columns = 0;
  std::vector<Scalar> cells;
};

enum class Operation { scalar, block, negate, percent, add, subtract, multiply, divide, raise, call };

/// One step of a formula in the order of evaluation: operands come before the operation that takes them.
struct Step {
  Operation operation = Operation::scalar;
  std::size_t count = 0;  // of a call: its arguments; of a block: its index
  Scalar scalar;          // a constant, or the called function's name in upper case as text
};

/// A formula that was read, or where and why it could not be.
struct Formula {
  std::vector<Step> steps;
  std::vector<std::shared_ptr<const Block>> blocks;  // as they stand from left to right
  std::size_t error_column = 0;                      // counted from 1; 0 when the line was read
  std::string expected;                              // at error_column, in plain words
};

/// How many arguments the function of this upper-case name takes; below 0 when there is none of that name.
using DeclaredArguments = std::function<int(const std::string& name)>;

/// Reads one line. A call of a known function has at most the arguments declared for it; one of an unknown
/// function may have any number.
Formula parse_formula(const std::string& line, const DeclaredArguments& declared);

/// The number a cell's text stands for, blanks around it, a sign and percent signs allowed; false when it
/// stands for none.
bool number_from_text(const std::string& text, double& number);

/// What a value counts as in arithmetic: TRUE 1, FALSE and nothing 0, a text the number it stands for. False
/// for errors and other texts.
bool number_of(const Scalar& scalar, double& number);

/// Whether a function or command may carry this name on a worksheet.
bool is_worksheet_name(const std::string& name);

std::string upper_case(std::string text);

/// Name of one of Excel's own errors, such as #VALUE!; null for any other code.
const char* error_name(int code);

}  // namespace kestran
