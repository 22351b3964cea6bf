// Relations that hold between values of functions, whatever the deal.
#pragma once

#include <string>
#include <vector>

#include "functions/example.h"
#include "tests/fuzz/fuzzer.h"

namespace kestran::fuzz {

/// A call by the names of its arguments.
class Deal {
 public:
  Deal(const Function& priced, std::vector<GivenArgument> arguments)
      : function(&priced), given(std::move(arguments)) {}

  bool has(const char* name) const { return place(name) >= 0; }
  double& operator[](const char* name) { return given[static_cast<std::size_t>(place(name))].values[0]; }
  double operator[](const char* name) const { return given[static_cast<std::size_t>(place(name))].values[0]; }
  Deal with(const char* name, double value) const;
  /// The worksheet's value; not a number where the call is refused.
  double value() const;
  std::string text() const;

  const Function* function;
  std::vector<GivenArgument> given;

 private:
  int place(const char* name) const;
};

/// The value of a function for numbers.
double value_of(const char* function, std::initializer_list<double> numbers);

/// Tries all relations that there are of the deal's function.
void check_relations(const Deal& deal);

}  // namespace kestran::fuzz
