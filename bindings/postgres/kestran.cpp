// The worksheet functions as functions of PostgreSQL: of each one that raises an error when a call is
// refused, and one, named try_, that gives NULL instead. make_sql.cpp writes the script that declares them.
#include <exception>
#include <limits>
#include <string>

#include "functions/explain.h"

extern "C" {
#include "postgres.h"

#include "fmgr.h"
#include "utils/array.h"

PG_MODULE_MAGIC;
}

namespace kestran {
namespace {

enum class Refused { is_error, is_null };

// The cells of an array, row after row; one of a single dimension is a column. A NULL among them is an empty
// cell, an array without cells a single empty one. An array of more dimensions holds cells that cannot be
// read.
Operand cells_of(ArrayType* array) {
  static constexpr double empty = std::numeric_limits<double>::quiet_NaN();
  if (ARR_NDIM(array) == 0) return {&empty, 1, 1};
  const int rows = ARR_DIMS(array)[0];
  const int count = ArrayGetNItems(ARR_NDIM(array), ARR_DIMS(array));
  const auto* values = reinterpret_cast<const double*>(ARR_DATA_PTR(array));
  if (ARR_NDIM(array) > 2) return {values, rows, 0};
  if (!ARR_HASNULL(array)) return {values, rows, count / rows};
  auto* cells = static_cast<double*>(palloc(sizeof(double) * static_cast<std::size_t>(count)));
  const bits8* present = ARR_NULLBITMAP(array);
  for (int i = 0; i < count; ++i) cells[i] = (present[i / 8] >> i % 8 & 1) != 0 ? *values++ : empty;
  return {cells, rows, count / rows};
}

// Why the call is refused, as text that needs no destructor: an error leaves by a jump. An empty one stands
// for memory that ran out.
struct Words {
  char text[256];
};

[[gnu::noinline]] Words why(const Function& function, const Operand* given, const Answer& answer) {
  Words words{};
  try {
    const std::string text = refusal_text(function, given, answer);
    words.text[text.copy(words.text, sizeof words.text - 1)] = '\0';
  } catch (const std::exception&) {
  }
  return words;
}

[[gnu::noinline]] [[noreturn]] void raise(const Function& function, const Operand* given,
                                          const Answer& answer) {
  const Words words = why(function, given, answer);
  if (words.text[0] == '\0') ereport(ERROR, (errcode(ERRCODE_OUT_OF_MEMORY), errmsg("out of memory")));
  ereport(ERROR, (errcode(ERRCODE_INVALID_PARAMETER_VALUE), errmsg("%s: %s", function.name, words.text)));
  pg_unreachable();
}

// Numbers alone take a shorter way, which a table of millions of rows shows.
Datum priced(FunctionCallInfo fcinfo, const Function& function, Refused refused) {
  double numbers[most_arguments];
  for (int i = 0; i < function.argument_count; ++i)
    if (!is_range(function.arguments[i].kind)) numbers[i] = PG_GETARG_FLOAT8(i);
  if (!function.takes_ranges) {
    const Answer answer = price(function, numbers);
    if (answer.is_number()) PG_RETURN_FLOAT8(answer.number);
  }
  Operand given[most_arguments];
  for (int i = 0; i < function.argument_count; ++i)
    given[i] =
        is_range(function.arguments[i].kind) ? cells_of(PG_GETARG_ARRAYTYPE_P(i)) : Operand{numbers + i};
  const Answer answer = price(function, given);
  if (answer.is_number()) PG_RETURN_FLOAT8(answer.number);
  if (refused == Refused::is_error) raise(function, given, answer);
  PG_RETURN_NULL();
}

enum Place {
#define FUNCTION(name, function, frame, pointers, description, names) place_of_##name,
#include "functions/function_list.h"
};

}  // namespace
}  // namespace kestran

extern "C" {
#define ENTRY(entry, name, refused)                                                                 \
  PG_FUNCTION_INFO_V1(entry);                                                                       \
  Datum entry(PG_FUNCTION_ARGS) {                                                                   \
    return kestran::priced(fcinfo, kestran::catalogue[kestran::place_of_##name], kestran::refused); \
  }
#define FUNCTION(name, function, frame, pointers, description, names) \
  ENTRY(kestran_##name, name, Refused::is_error)                      \
  ENTRY(kestran_try_##name, name, Refused::is_null)
#include "functions/function_list.h"
}
