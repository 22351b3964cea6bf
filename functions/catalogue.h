// The worksheet functions as every host sees them: what each takes, and how to call it. A host knows this
// list and no function by name.
#pragma once

#include "functions/answer.h"
#include "functions/parameters.h"

namespace kestran {

constexpr int most_arguments = 23;

struct Argument {
  char name[16];
  ParameterKind kind;
  int lowest, highest;  // of a selector
};

/// How a function takes its arguments together; functions/intake.h has the rules.
enum class Intake : unsigned char {
  scalars,  // numbers or single cells; errors are remembered while reading on, the last wins
  lines,    // numbers, rows and columns; the first argument that does not fit ends the call
  blocks    // numbers and blocks of any shape; errors are remembered, the last wins
};

/// How many cells of its ranges a function uses.
enum class Length : unsigned char {
  shortest,  // as many as the shortest range has
  last,      // as many as the last range has; a shorter one is refused
  equal      // all of them; ranges of different lengths are refused
};

/// What becomes of a number that is given as cells whose first holds none.
enum class FirstCell : unsigned char {
  uncounted,        // the argument does not count, so that the call ends in #VALUE!
  error_passed_on,  // an error in it is the answer, anything else #VALUE!
  refused           // #VALUE!
};

/// Whether a call in which every range is a single number is priced.
enum class Singles : unsigned char { priced, refused };

struct Frame {
  Intake intake;
  Length length = Length::equal;
  FirstCell first_cell = FirstCell::refused;
  Singles singles = Singles::priced;
};

struct EuropeanForm;

struct Function {
  const char* name;         // on the worksheet
  const char* computed_by;  // the name without the x of a twin
  const char* description;  // as Excel shows it, blanks included
  const Argument* arguments;
  int argument_count;
  int result_argument;  // which one asks for the result, by its place; -1 when there is one result only
  bool takes_ranges;
  Frame frame;
  /// The function itself, for callers that have taken the arguments apart: numbers[i] or cells[i] is argument
  /// i. Cells may be written to.
  Answer (*compute)(const double* numbers, const Cells* cells);
  /// Answers several selectors of one call, working out once what their results share: answers[j] is what
  /// compute gives where argument result_argument is selectors[j]. Null where nothing is shared.
  void (*compute_all)(const double* numbers, const Cells* cells, const int* selectors, int results,
                      Answer* answers);
  /// Null where it is no European option.
  const EuropeanForm* european;
};

extern const Function catalogue[];
extern const int catalogue_size;

/// The function of that name, in any case; null when there is none.
const Function* find_in_catalogue(const char* name);

/// One argument of one call: a number (rows 0), or `rows` x `columns` cells, row after row. NaN is an
/// argument left out, or an empty cell; one of refused_number.h is the error, text or logical value it
/// carries.
struct Operand {
  const double* values;
  int rows = 0;
  int columns = 0;
};

/// Prices one call with the worksheet's bits and refusals. Safe on any number of threads; a call without
/// ranges takes no memory. Refusals and values do not depend on the caller's rounding mode.
Answer price(const Function& function, const Operand* given);

/// The same for numbers alone.
Answer price(const Function& function, const double* numbers);

/// The same for several results of one call: answers[j] is the answer where argument result_argument, which
/// is not looked at, is selectors[j]. The arguments are taken once.
void price_results(const Function& function, const Operand* given, const int* selectors, int results,
                   Answer* answers);

/// The same for numbers alone.
void price_results(const Function& function, const double* numbers, const int* selectors, int results,
                   Answer* answers);

}  // namespace kestran
