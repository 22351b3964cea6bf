// Prints the example of every function, once for each of its results: the formula, and the calls of
// PostgreSQL, DuckDB and Python, with tabulators between them.
#include <cstdio>

#include "functions/describe.h"
#include "functions/example.h"
#include "functions/written_call.h"

int main() {
  using namespace kestran;
  for (int i = 0; i < catalogue_size; ++i) {
    const Function& function = catalogue[i];
    const int selector = result_argument(function);
    std::vector<GivenArgument> given = example_arguments(text_of(function));
    for (const ResultText& result : text_of(function).results) {
      if (!answers(function, result)) continue;
      if (selector >= 0) given[static_cast<std::size_t>(selector)].values = {double(result.selector)};
      const std::vector<Operand> call = operands(given);
      std::printf("%s\t%s\t%s\t%s\n", sheet_call(function, call.data()).c_str(),
                  postgres_call(function, call.data()).c_str(), duckdb_call(function, call.data()).c_str(),
                  python_call(function, call.data()).c_str());
    }
  }
}
