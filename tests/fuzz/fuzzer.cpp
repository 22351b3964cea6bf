#include "tests/fuzz/fuzzer.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

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

void count_calls(std::uint64_t made) {
  static std::uint64_t* const calls = calls_in_file();
  *calls += made;
}

std::uint64_t fresh_bits(unsigned seed) {
  static std::mt19937_64 bits(seed);
  return bits();
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
  static const struct {
    const char* name;
    int one_in;
  } slow[] = {{"OSTRIPSPRD", 2048}, {"WARRANT", 512}, {"CMPASN", 512},   {"IMPVOLAB", 128}, {"AMERB", 32},
              {"OSTRIP2", 64},      {"XCOL", 16},     {"XCOL2", 32},     {"XCOL3", 32},     {"YRSTRIP", 16},
              {"ASNSPRD2", 16},     {"ASNSPRD", 8},   {"PPLUS", 8},      {"XCAP", 8},       {"OSTRIP", 8},
              {"SPRDOPT", 4},       {"CMPDV", 4},     {"AdjASTRIP2m", 8}};
  static const std::vector<int> one_in = of_each_function([](const Function& function) {
    for (const auto& one : slow)
      if (std::strcmp(function.computed_by, one.name) == 0) return one.one_in;
    return 1;
  });
  for (;;) {
    const int place = choices.below(catalogue_size);
    if (choices.one_in(one_in[static_cast<std::size_t>(place)])) return place;
  }
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

void draw_argument(const Function& function, int i, Choices& choices, GivenArgument& given) {
  static const std::vector<std::vector<GivenArgument>> examples =
      of_each_function([](const Function& one) { return example_arguments(text_of(one)); });
  given = examples[static_cast<std::size_t>(&function - catalogue)][static_cast<std::size_t>(i)];
  const FunctionText& text = text_of(function);
  const ArgumentText& argument = *text.arguments[i];
  if (i == function.result_argument) {
    given.values = {double(text.results[choices.below(text.results.count)].selector)};
  } else if (argument.unit == Unit::selector) {
    if (const int count = argument.choices.count; count > 0)
      given.values = {double(argument.choices[choices.below(count)].value)};
  } else if (function.arguments[i].kind != ParameterKind::square) {  // a matrix stays one of correlations
    for (double& value : given.values)
      if (!choices.one_in(4)) value = near(value, argument.unit, choices);
  }
}

std::vector<GivenArgument> realistic_call(const Function& function, Choices& choices) {
  std::vector<GivenArgument> given(static_cast<std::size_t>(function.argument_count));
  for (int i = 0; i < function.argument_count; ++i)
    draw_argument(function, i, choices, given[static_cast<std::size_t>(i)]);
  return given;
}

Columns::Columns(const Function& function, const std::vector<GivenArgument>& given, std::size_t deals,
                 Choices& choices) {
  for (const GivenArgument& one : given) {
    const bool own = choices.one_in(2) && memory.size() != static_cast<std::size_t>(function.result_argument);
    std::vector<double>& values = memory.emplace_back(one.values);
    for (std::size_t k = 1; own && k < deals; ++k)
      for (const double value : one.values)
        values.push_back(choices.one_in(16) ? odd_number(choices) : value * choices.between(0.8, 1.2));
    columns.push_back(
        {values.data(), own ? static_cast<std::ptrdiff_t>(one.values.size()) : 0, one.rows, one.columns});
  }
}

std::string shown(const Answer& answer) {
  return answer.is_number() ? exact_number(answer.number) : "error " + std::to_string(answer.error);
}

static std::string shown(double number) {
  const int code = refusal_code(number);
  return code == no_number_code ? "\"text\"" : code >= 0 ? "#" + std::to_string(code) : exact_number(number);
}

std::string shown(const Operand& given) {
  if (given.rows == 0) return shown(*given.values);
  std::string text = "{";
  for (int k = 0; k < given.rows * given.columns; ++k)
    text += (k == 0 ? "" : k % given.columns == 0 ? ";" : ",") + shown(given.values[k]);
  return text + "}";
}

std::string shown(const Function& function, const Operand* given) {
  std::string text = function.name + std::string("(");
  for (int i = 0; i < function.argument_count; ++i) text += (i > 0 ? ", " : "") + shown(given[i]);
  return text + ")";
}

}  // namespace kestran::fuzz
