// Writes the script of the PostgreSQL extension: a function of SQL, and its comment, for each worksheet
// function.
//
//   make_sql              what CREATE EXTENSION runs
//   make_sql --update     what ALTER EXTENSION ... UPDATE runs; functions that are there keep what depends on
//   them
#include <cstdio>
#include <cstring>
#include <string>

#include "functions/describe.h"
#include "functions/example.h"
#include "functions/written_call.h"

namespace kestran {
namespace {

std::string quoted(const std::string& text) {
  std::string literal = "'";
  for (char character : text) literal += character == '\'' ? std::string("''") : std::string(1, character);
  return literal + "'";
}

// The result is 0 by default. SQL wants a default for what follows it, too: NaN, which is missing.
std::string parameters(const Function& function) {
  const int result = result_argument(function);
  std::string text;
  for (int i = 0; i < function.argument_count; ++i) {
    const Argument& argument = function.arguments[i];
    text += (i > 0 ? ", " : "") + postgres_name(argument.name) +
            (is_range(argument.kind) ? " float8[]" : " float8");
    if (result >= 0 && i >= result) text += i == result ? " DEFAULT 0" : " DEFAULT 'NaN'";
  }
  return text;
}

std::string comment(const Function& function) {
  return description(function) + "\nIn SQL\n  " +
         postgres_call(function, operands(example_arguments(text_of(function))).data());
}

void write_function(const char* create, const Function& function, const std::string& prefix,
                    const std::string& about) {
  // Planners compare these with the cost 1 of a sum: tens of nanoseconds.
  const int cost = function.takes_ranges ? 100 : 10;
  const std::string name = prefix + postgres_name(function.name);
  std::printf(
      "%s %s(%s) RETURNS float8\n  AS 'MODULE_PATHNAME', 'kestran_%s%s'\n"
      "  LANGUAGE C IMMUTABLE STRICT PARALLEL SAFE COST %d;\nCOMMENT ON FUNCTION %s IS %s;\n\n",
      create, name.c_str(), parameters(function).c_str(), prefix.c_str(), function.name, cost, name.c_str(),
      quoted(about).c_str());
}

}  // namespace
}  // namespace kestran

int main(int count, char** arguments) {
  using namespace kestran;
  const bool update = count == 2 && std::strcmp(arguments[1], "--update") == 0;
  if (count > 2 || (count == 2 && !update)) {
    std::fputs("make_sql [--update]\n", stderr);
    return 2;
  }
  std::puts("\\echo Use \"CREATE EXTENSION kestran\" or \"ALTER EXTENSION kestran UPDATE\". \\quit\n");
  for (int i = 0; i < catalogue_size; ++i) {
    const char* create = update ? "CREATE OR REPLACE FUNCTION" : "CREATE FUNCTION";
    const std::string name = postgres_name(catalogue[i].name);
    write_function(create, catalogue[i], "", comment(catalogue[i]));
    write_function(create, catalogue[i], "try_", name + ", with NULL for a call that it refuses");
  }
  std::puts("GRANT USAGE ON SCHEMA @extschema@ TO PUBLIC;");
  return std::fflush(stdout) == 0 ? 0 : 1;
}
