#include "tests/fuzz/fuzzer.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>

#include "functions/number_text.h"
#include "functions/refused_number.h"

namespace kestran::fuzz {

// In a file that is mapped, since a fault lets nothing be written at the end.
static std::uint64_t* calls_in_file() {
  static std::uint64_t unheeded;
  const char* const name = std::getenv("KESTRAN_FUZZ_CALLS");
  if (name == nullptr) return &unheeded;
  const int file = open(name, O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (file < 0 || ftruncate(file, sizeof(std::uint64_t)) != 0) fault(std::string("no file ") + name);
  void* const mapped = mmap(nullptr, sizeof(std::uint64_t), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (mapped == MAP_FAILED) fault(std::string("cannot map ") + name);
  return static_cast<std::uint64_t*>(mapped);
}

void count_call() {
  static std::uint64_t* const calls = calls_in_file();
  ++*calls;
}

void fault(const std::string& what) {
  dprintf(STDERR_FILENO, "\nfault: %s\n", what.c_str());
  std::abort();
}

bool same_number(double a, double b) { return (a != a && b != b) || std::memcmp(&a, &b, sizeof a) == 0; }

bool same_answer(const Answer& a, const Answer& b) {
  return a.error == b.error && (!a.is_number() || same_number(a.number, b.number));
}

double odd_number(Choices& choices) {
  constexpr double largest = std::numeric_limits<double>::max();
  constexpr double infinite = std::numeric_limits<double>::infinity();
  static const double numbers[] = {0.0,           -0.0,  1.0,    -1.0,    0.5,      2.0,       3.0,
                                   12.9,          1e-9,  -1e-9,  1e300,   -1e300,   5e-324,    largest,
                                   1e17,          -1e17, 256.0,  65535.0, infinite, -infinite, 2147483647.0,
                                   -2147483649.0, 100.0, 365.25, 1e6};
  switch (choices.below(8)) {
    case 0:
      return choices.any_double();
    case 1:
      return choices.below(41) - 20;
    case 2:
      return choices.between(-200.0, 200.0);
    case 3:
      return choices.between(0.0, 1.0);
    default:
      return choices.of(numbers);
  }
}

int any_place(Choices& choices) {
  const int place = choices.below(catalogue_size);
  for (const char* slow : {"OSTRIPSPRD", "OSTRIP2", "WARRANT", "CMPASN", "XCAP"})
    if (std::strcmp(catalogue[place].computed_by, slow) == 0 && !choices.one_in(16))
      return any_place(choices);
  return place;
}

// A number of this unit near `example`. Counts stay small, since many functions take time by them.
static double near(double example, Unit unit, Choices& choices) {
  const double share = choices.between(-1.0, 1.0);
  switch (unit) {
    case Unit::price:
    case Unit::amount:
    case Unit::price_volatility:
      return example * std::exp(0.5 * share);
    case Unit::rate:
    case Unit::semiannual:
      return choices.one_in(8) ? 0.0 : 0.05 + 0.07 * share;
    case Unit::volatility:
      return choices.one_in(8) ? 0.02 + 0.02 * share : 0.45 + 0.4 * share;
    case Unit::days:
    case Unit::trading_days:
    case Unit::years:
    case Unit::quantity:
    case Unit::weight:
    case Unit::ratio:
      return example * std::exp(share);
    case Unit::whole_days:
      return std::trunc(example * std::exp(0.7 * share));
    case Unit::count:
      return std::trunc(std::min(example, 60.0) * std::exp(0.7 * share));
    case Unit::correlation:
      return choices.one_in(8) ? 0.999 * share : 0.45 + 0.5 * share;
    default:
      return example;
  }
}

std::vector<GivenArgument> realistic_call(const Function& function, Choices& choices) {
  const FunctionText& text = text_of(function);
  static std::map<const FunctionText*, std::vector<GivenArgument>> examples;
  std::vector<GivenArgument>& example = examples[&text];
  if (example.empty()) example = example_arguments(text);
  std::vector<GivenArgument> given = example;
  for (int i = 0; i < function.argument_count; ++i) {
    const ArgumentText& argument = *text.arguments[i];
    if (argument.unit == Unit::selector) {
      const int count = argument.choices.count;
      if (count > 0)
        given[static_cast<std::size_t>(i)].values = {double(argument.choices[choices.below(count)].value)};
      if (i == function.result_argument)
        given[static_cast<std::size_t>(i)].values = {
            double(text.results[choices.below(text.results.count)].selector)};
      continue;
    }
    // A matrix stays one of correlations.
    if (function.arguments[i].kind == ParameterKind::square) continue;
    for (double& value : given[static_cast<std::size_t>(i)].values)
      if (!choices.one_in(4)) value = near(value, argument.unit, choices);
  }
  return given;
}

std::string shown(const Answer& answer) {
  return answer.is_number() ? exact_number(answer.number) : "error " + std::to_string(answer.error);
}

static std::string shown(double number) {
  const int code = refusal_code(number);
  return code == no_number_code ? "\"text\"" : code >= 0 ? "#" + std::to_string(code) : exact_number(number);
}

std::string shown(const Function& function, const Operand* given) {
  std::string text = function.name + std::string("(");
  for (int i = 0; i < function.argument_count; ++i) {
    if (i > 0) text += ", ";
    if (given[i].rows == 0) text += shown(*given[i].values);
    for (int k = 0; k < given[i].rows * given[i].columns; ++k)
      text += (k == 0 ? "{" : k % given[i].columns == 0 ? ";" : ",") + shown(given[i].values[k]);
    if (given[i].rows > 0) text += "}";
  }
  return text + ")";
}

}  // namespace kestran::fuzz
