#include "host/formula.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "addin/excel_api.h"
#include "functions/number_text.h"

namespace kestran {

Scalar number_scalar(double number) {
  Scalar scalar;
  scalar.kind = Kind::number;
  scalar.number = number;
  return scalar;
}

Scalar text_scalar(std::string text) {
  Scalar scalar;
  scalar.kind = Kind::text;
  scalar.text = std::move(text);
  return scalar;
}

Scalar boolean_scalar(bool value) {
  Scalar scalar;
  scalar.kind = Kind::boolean;
  scalar.code = value ? 1 : 0;
  return scalar;
}

Scalar error_scalar(int code) {
  Scalar scalar;
  scalar.kind = Kind::error;
  scalar.code = code;
  return scalar;
}

namespace {

constexpr int deepest_nesting = 200;
constexpr std::size_t longest_text = 255;
constexpr std::size_t most_rows_or_columns = 65535;

constexpr struct {
  const char* name;
  int code;
} error_names[] = {{"#NULL!", xlerrNull}, {"#DIV/0!", xlerrDiv0}, {"#VALUE!", xlerrValue},
                   {"#REF!", xlerrRef},   {"#NAME?", xlerrName},  {"#NUM!", xlerrNum},
                   {"#N/A", xlerrNA}};

bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool starts_name(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '\\'; }
bool continues_name(char c) { return starts_name(c) || is_digit(c) || c == '.' || c == '?'; }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// Digits, a decimal point and an exponent; no sign. A number beyond the range of a double comes out infinite.
bool scan_number(std::string_view text, std::size_t& at, double& number) {
  std::size_t end = at;
  const auto scan_digits = [&] {
    const std::size_t from = end;
    while (end < text.size() && is_digit(text[end])) ++end;
    return end > from;
  };
  bool digits = scan_digits();
  if (end < text.size() && text[end] == '.') {
    ++end;
    digits = scan_digits() || digits;
  }
  if (!digits) return false;
  const std::size_t mantissa_end = end;
  if (end < text.size() && upper(text[end]) == 'E') {
    ++end;
    if (end < text.size() && (text[end] == '+' || text[end] == '-')) ++end;
    if (!scan_digits()) end = mantissa_end;
  }
  const auto read = read_decimal(text.data() + at, text.data() + end, number);
  // That does not tell a number that is too large from one that is too small; strtod does.
  if (read.ec != std::errc()) number = std::strtod(std::string(text.substr(at, end - at)).c_str(), nullptr);
  at = end;
  return true;
}

struct Parser {
  std::string_view line;
  const DeclaredArguments& declared;
  const TakeStep& take_step;
  Unreadable unreadable;
  std::size_t at = 0;
  int nesting = 0;
};

bool fail_at(Parser& parser, std::size_t at, std::string expected) {
  parser.unreadable = {at + 1, std::move(expected)};
  return false;
}

bool fail(Parser& parser, std::string expected) { return fail_at(parser, parser.at, std::move(expected)); }

// The next character that is not blank; NUL at the end of the line, which is no valid character otherwise.
char peek(Parser& parser) {
  while (parser.at < parser.line.size() && is_blank(parser.line[parser.at])) ++parser.at;
  return parser.at < parser.line.size() ? parser.line[parser.at] : '\0';
}

bool take(Parser& parser, char wanted) {
  if (peek(parser) != wanted || wanted == '\0') return false;
  ++parser.at;
  return true;
}

std::string scan_name(Parser& parser) {
  const std::size_t from = parser.at;
  while (parser.at < parser.line.size() && continues_name(parser.line[parser.at])) ++parser.at;
  return upper_case(std::string(parser.line.substr(from, parser.at - from)));
}

void hand_over(Parser& parser, Operation operation, std::size_t count = 0, Scalar scalar = {},
               std::shared_ptr<const Block> block = {}) {
  Step step{operation, count, std::move(scalar), std::move(block)};
  parser.take_step(step);
}

bool parse_number(Parser& parser, Scalar& scalar) {
  const std::size_t from = parser.at;
  scalar.kind = Kind::number;
  if (!scan_number(parser.line, parser.at, scalar.number)) return fail(parser, "a number");
  return !std::isinf(scalar.number) || fail_at(parser, from, "a number below 1.8E308");
}

bool parse_text(Parser& parser, Scalar& scalar) {
  const std::size_t from = parser.at;
  scalar.kind = Kind::text;
  while (true) {
    const std::size_t start = ++parser.at;
    parser.at = parser.line.find('"', start);
    if (parser.at == std::string_view::npos) {
      parser.at = parser.line.size();
      return fail(parser, "'\"' at the end of the text");
    }
    scalar.text.append(parser.line, start, parser.at - start);
    ++parser.at;
    if (parser.at >= parser.line.size() || parser.line[parser.at] != '"') break;
    scalar.text += '"';
  }
  return scalar.text.size() <= longest_text || fail_at(parser, from, "a text of at most 255 characters");
}

bool parse_error_name(Parser& parser, Scalar& scalar) {
  for (const auto& error : error_names) {
    const std::string name = error.name;
    if (upper_case(std::string(parser.line.substr(parser.at, name.size()))) != name) continue;
    parser.at += name.size();
    scalar = error_scalar(error.code);
    return true;
  }
  return fail(parser, "an error such as #VALUE! or #N/A");
}

bool parse_cell(Parser& parser, Scalar& cell) {
  const char next = peek(parser);
  if (next == ',' || next == ';' || next == '}') return true;
  if (next == '"') return parse_text(parser, cell);
  if (next == '#') return parse_error_name(parser, cell);
  if (starts_name(next)) {
    const std::size_t from = parser.at;
    const std::string name = scan_name(parser);
    cell = boolean_scalar(name == "TRUE");
    return name == "TRUE" || name == "FALSE" ||
           fail_at(parser, from, "a number, a text, TRUE, FALSE or an error in a cell");
  }
  const bool negative = next == '-';
  if (negative || next == '+') ++parser.at;
  const char digit = peek(parser);
  if (!is_digit(digit) && digit != '.') return fail(parser, "a number, a text, TRUE, FALSE, an error or '}'");
  if (!parse_number(parser, cell)) return false;
  if (negative) cell.number = -cell.number;
  while (take(parser, '%')) cell.number /= 100.0;
  return true;
}

bool parse_block(Parser& parser) {
  ++parser.at;
  const auto block = std::make_shared<Block>();
  // As many cells as there can be: a vector that grows takes three times their memory while it does.
  const std::string_view rest = parser.line.substr(parser.at);
  const auto separates = [](char c) { return c == ',' || c == ';'; };
  const std::string_view cells = rest.substr(0, rest.find('}'));
  block->cells.reserve(1 + static_cast<std::size_t>(std::count_if(cells.begin(), cells.end(), separates)));
  std::size_t columns = 0;  // of the row being read
  while (true) {
    const std::size_t from = parser.at;
    if (block->rows == most_rows_or_columns) return fail(parser, "at most 65535 rows");
    if (columns == most_rows_or_columns) return fail(parser, "at most 65535 columns");
    if (!parse_cell(parser, block->cells.emplace_back())) return false;
    ++columns;
    if (take(parser, ',')) continue;
    const char next = peek(parser);
    if (next != ';' && next != '}') return fail(parser, "',', ';' or '}'");
    if (block->rows > 0 && columns != block->columns)
      return fail_at(parser, columns < block->columns ? parser.at : from, "rows of equal length");
    block->columns = columns;
    ++block->rows;
    columns = 0;
    ++parser.at;
    if (next == '}') break;
  }
  hand_over(parser, Operation::block, 0, {}, block);
  return true;
}

bool parse_operators(Parser& parser, int precedence);

bool enter(Parser& parser) {
  return ++parser.nesting <= deepest_nesting || fail(parser, "at most 200 levels of parentheses and calls");
}

bool parse_call(Parser& parser, const std::string& name) {
  if (!enter(parser)) return false;
  ++parser.at;
  const int declared = parser.declared(name);
  std::size_t count = 0;
  bool more = peek(parser) != ')';
  while (more) {
    if (declared >= 0 && count == static_cast<std::size_t>(declared))
      return fail(parser, "')', as " + name + " takes at most " + std::to_string(declared) + " arguments");
    ++count;
    const char next = peek(parser);
    if (next == ',' || next == ')') {
      Scalar missing;
      missing.kind = Kind::missing;
      hand_over(parser, Operation::scalar, 0, missing);
    } else if (!parse_operators(parser, 0)) {
      return false;
    }
    if (declared < 0) hand_over(parser, Operation::drop);
    more = take(parser, ',');
  }
  if (!take(parser, ')')) return fail(parser, "an operator, ',' or ')'");
  --parser.nesting;
  hand_over(parser, Operation::call, declared < 0 ? 0 : count, text_scalar(name));
  return true;
}

bool parse_name(Parser& parser) {
  std::string name = scan_name(parser);
  if (peek(parser) == '(') {
    constexpr char prefix[] = "_XLL.";
    if (name.compare(0, sizeof prefix - 1, prefix) == 0) name.erase(0, sizeof prefix - 1);
    return parse_call(parser, name);
  }
  if (name != "TRUE" && name != "FALSE") return fail(parser, "'(' after " + name);
  hand_over(parser, Operation::scalar, 0, boolean_scalar(name == "TRUE"));
  return true;
}

bool parse_operand(Parser& parser) {
  const char next = peek(parser);
  if (starts_name(next)) return parse_name(parser);
  if (next == '{') return parse_block(parser);
  if (next == '(') {
    if (!enter(parser)) return false;
    ++parser.at;
    if (!parse_operators(parser, 0)) return false;
    if (!take(parser, ')')) return fail(parser, "an operator or ')'");
    --parser.nesting;
    return true;
  }
  Scalar scalar;
  if (next == '"') {
    if (!parse_text(parser, scalar)) return false;
  } else if (next == '#') {
    if (!parse_error_name(parser, scalar)) return false;
  } else if (is_digit(next) || next == '.') {
    if (!parse_number(parser, scalar)) return false;
  } else {
    return fail(parser, "a number, a text, a range, a function or '('");
  }
  hand_over(parser, Operation::scalar, 0, std::move(scalar));
  return true;
}

// An operand with its signs, which bind tighter than any operator between two operands, and percent signs.
bool parse_signed(Parser& parser) {
  std::size_t minuses = 0;
  while (peek(parser) == '-' || peek(parser) == '+') {
    if (parser.line[parser.at] == '-') ++minuses;
    ++parser.at;
  }
  if (!parse_operand(parser)) return false;
  while (take(parser, '%')) hand_over(parser, Operation::percent);
  // Two signs cancel but still make a number of their operand.
  const std::size_t negations = minuses == 0 ? 0 : 2 - minuses % 2;
  for (std::size_t i = 0; i < negations; ++i) hand_over(parser, Operation::negate);
  return true;
}

constexpr int signed_operand = 3;

int precedence_of(char symbol, Operation& operation) {
  switch (symbol) {
    case '+':
      operation = Operation::add;
      return 0;
    case '-':
      operation = Operation::subtract;
      return 0;
    case '*':
      operation = Operation::multiply;
      return 1;
    case '/':
      operation = Operation::divide;
      return 1;
    case '^':
      operation = Operation::raise;
      return 2;
    default:
      return -1;
  }
}

// Operands joined by the operators of this precedence, all of which associate to the left.
bool parse_operators(Parser& parser, int precedence) {
  if (precedence == signed_operand) return parse_signed(parser);
  if (!parse_operators(parser, precedence + 1)) return false;
  Operation operation = Operation::add;
  while (precedence_of(peek(parser), operation) == precedence) {
    const Operation joined_by = operation;
    ++parser.at;
    if (!parse_operators(parser, precedence + 1)) return false;
    hand_over(parser, joined_by);
  }
  return true;
}

}  // namespace

Unreadable read_formula(std::string_view line, const DeclaredArguments& declared, const TakeStep& take_step) {
  Parser parser{line, declared, take_step, {}};
  take(parser, '=');
  const bool any = peek(parser) != '\0' || parser.at < line.size();
  if (!any) {
    fail(parser, "a formula");
  } else if (parse_operators(parser, 0) && (peek(parser) != '\0' || parser.at < line.size())) {
    fail(parser, "an operator or the end of the formula");
  }
  return parser.unreadable;
}

bool number_from_text(std::string_view text, double& number) {
  std::size_t at = 0;
  const auto skip_blanks = [&] {
    while (at < text.size() && is_blank(text[at])) ++at;
  };
  skip_blanks();
  const bool negative = at < text.size() && text[at] == '-';
  if (negative || (at < text.size() && text[at] == '+')) ++at;
  if (!scan_number(text, at, number) || std::isinf(number)) return false;
  if (negative) number = -number;
  for (skip_blanks(); at < text.size() && text[at] == '%'; skip_blanks()) {
    number /= 100.0;
    ++at;
  }
  return at == text.size();
}

bool number_of(const Scalar& scalar, double& number) {
  if (scalar.kind == Kind::error) return false;
  if (scalar.kind == Kind::text) return number_from_text(scalar.text, number);
  number = scalar.kind == Kind::number ? scalar.number : scalar.code;
  return true;
}

bool is_worksheet_name(const std::string& name) {
  if (name.empty() || !starts_name(name[0])) return false;
  for (const char c : name)
    if (!continues_name(c)) return false;
  const std::string upper_name = upper_case(name);
  return upper_name != "TRUE" && upper_name != "FALSE";
}

std::string upper_case(std::string text) {
  for (char& c : text) c = upper(c);
  return text;
}

const char* error_name(int code) {
  for (const auto& error : error_names)
    if (error.code == code) return error.name;
  return nullptr;
}

}  // namespace kestran
