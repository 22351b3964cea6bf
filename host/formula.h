// A worksheet formula as text: what it may hold and how one line is read. Knows nothing of add-ins.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
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

enum class Operation { scalar, block, negate, percent, add, subtract, multiply, divide, raise, drop, call };

/// One step of a formula in the order of evaluation: operands come before the operation that takes them. An
/// operand that nothing takes is dropped.
struct Step {
  Operation operation = Operation::scalar;
  std::size_t count = 0;               // of a call: its arguments
  Scalar scalar;                       // a constant, or the called function's name in upper case as text
  std::shared_ptr<const Block> block;  // a range
};

/// Where a line stops to make sense, and why.
struct Unreadable {
  std::size_t column = 0;  // counted from 1; 0 when the line was read
  std::string expected;    // at the column, in plain words
};

/// How many arguments the function of this upper-case name takes; below 0 when there is none of that name.
using DeclaredArguments = std::function<int(const std::string& name)>;

/// Takes over what it needs of a step.
using TakeStep = std::function<void(Step& step)>;

/// Reads one line and hands over its steps as it goes, so that the memory it needs does not grow with the
/// line. A call of a known function has at most the arguments declared for it; one of an unknown function may
/// have any number, which are dropped.
Unreadable read_formula(std::string_view line, const DeclaredArguments& declared, const TakeStep& take);

/// The number a cell's text stands for, blanks around it, a sign and percent signs allowed; false when it
/// stands for none.
bool number_from_text(std::string_view text, double& number);

/// What a value counts as in arithmetic: TRUE 1, FALSE and nothing 0, a text the number it stands for. False
/// for errors and other texts.
bool number_of(const Scalar& scalar, double& number);

/// Whether a function or command may carry this name on a worksheet.
bool is_worksheet_name(const std::string& name);

std::string upper_case(std::string text);

/// Name of one of Excel's own errors, such as #VALUE!; null for any other code.
const char* error_name(int code);

}  // namespace kestran
