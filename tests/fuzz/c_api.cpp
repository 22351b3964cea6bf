// The C interface: every function of kestran.h, with numbers and blocks as a careless program hands them
// over. What a pointer promises is kept: the interface cannot know how much memory stands behind one.
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "bindings/c/kestran.h"
#include "tests/fuzz/fuzzer.h"

namespace kestran::fuzz {
namespace {

// Deals of one function, each argument with values of its own for every deal or shared ones.
struct Deals {
  const Function& function;
  std::vector<std::vector<double>> memory;
  std::vector<kestran_operand> given;
  std::size_t count;
};

void draw_values(const Function& function, std::size_t i, bool odd, Choices& choices, Deals& deals) {
  static GivenArgument argument;
  draw_argument(function, static_cast<int>(i), choices, argument);
  int rows = argument.rows, columns = argument.columns;
  std::vector<double>& values = deals.memory[i];
  values = argument.values;
  if (odd && choices.one_in(4)) {
    rows = choices.below(5) - 1;
    columns = choices.below(5) - 1;
    values.resize(16, 1.0);
  }
  const bool shared = choices.one_in(2);
  const std::size_t cells = values.size();
  for (std::size_t k = 1; !shared && k < deals.count; ++k)
    for (std::size_t at = 0; at < cells; ++at) values.push_back(values[at] * choices.between(0.9, 1.1));
  if (odd && choices.one_in(2))
    values[static_cast<std::size_t>(
        choices.below(static_cast<int>(std::min<std::size_t>(values.size(), 65536))))] = odd_number(choices);
  deals.given[i] = {values.data(), rows, columns, shared ? 0 : static_cast<ptrdiff_t>(cells)};
}

// The price of deal k with one selector, the way of a single call: what the catalogue answers.
int single(const kestran_function* function, const Deals& deals, std::size_t k, const int* selector,
           double& result) {
  kestran_operand given[most_arguments];
  Operand wanted[most_arguments];
  double numbers[most_arguments];
  double asked = 0.0;
  const int asks_at = kestran_result_argument(function);
  const int count = static_cast<int>(deals.given.size());
  bool plain = true;
  for (int i = 0; i < count; ++i) {
    given[i] = deals.given[static_cast<std::size_t>(i)];
    given[i].values += static_cast<ptrdiff_t>(k) * given[i].stride;
    if (selector != nullptr && i == asks_at) given[i] = {&(asked = *selector), 0, 0, 0};
    wanted[i] = {given[i].values, given[i].rows, given[i].columns};
    numbers[i] = *given[i].values;
    plain = plain && given[i].rows == 0;
  }
  count_calls();
  const int code = kestran_price(function, given, &result);
  const Answer answer = price(deals.function, wanted);
  require(
      code == (answer.is_number() ? 0 : answer.error) &&
          same_number(result, answer.is_number() ? answer.number : std::numeric_limits<double>::quiet_NaN()),
      "another answer than the catalogue's");
  double by_numbers = 0.0;
  if (plain) count_calls();
  if (plain &&
      (kestran_price_numbers(function, numbers, &by_numbers) != code || !same_number(by_numbers, result)))
    fault(kestran_name(function) + std::string(": numbers are priced otherwise than operands"));
  return code;
}

void price_deals(const kestran_function* function, const Deals& deals, Choices& choices) {
  int selectors[4];
  const int wanted = choices.below(6) - 1;  // of which a program may well ask for too few
  for (int& selector : selectors) selector = choices.below(24) - 2;
  const bool selected = choices.one_in(2);
  const auto each = static_cast<std::size_t>(selected ? std::max(wanted, 0) : 1);
  std::vector<double> results(deals.count * each);
  std::vector<int> codes(deals.count * each);
  const int threads = choices.one_in(2048) ? choices.below(5) - 1 : 1;
  count_calls();
  const std::size_t refused =
      kestran_price_many(function, deals.given.data(), deals.count, selected ? selectors : nullptr, wanted,
                         results.data(), choices.one_in(8) ? nullptr : codes.data(), threads);
  require(refused <= results.size(), "more refusals than results");
  for (std::size_t k = 0; k < deals.count; ++k)
    for (std::size_t j = 0; j < each; ++j) {
      if (k > 8 && !choices.one_in(8)) continue;
      double alone = 0.0;
      single(function, deals, k, selected ? &selectors[j] : nullptr, alone);
      if (!same_number(alone, results[k * each + j]))
        fault(kestran_name(function) + std::string(": a deal alone differs from that among many"));
    }
}

void explain(const kestran_function* function, const Deals& deals, Choices& choices) {
  char text[64];
  const auto size = static_cast<std::size_t>(choices.below(sizeof text + 1));
  double result = 0.0;
  const int code = single(function, deals, 0, nullptr, result);
  require((code != 0) <= std::isnan(result), "a refusal with a number");
  const std::size_t length = kestran_refusal(function, deals.given.data(), text, size);
  require((length > 0) == (code != 0), "a refusal is explained, and nothing else");
  require(size == 0 || std::strlen(text) == std::min(length, size - 1), "the text is cut to its room");
}

void look_up(Choices& choices) {
  char name[12] = {};
  for (char& character : name) character = static_cast<char>(choices.below(256));
  name[sizeof name - 1] = '\0';
  const kestran_function* found = kestran_find(name);
  const kestran_function* function = kestran_at(choices.below(kestran_count() + 8) - 4);
  if (function == nullptr) function = found;
  if (function == nullptr) return;
  require(kestran_find(kestran_name(function)) == function, "a function is found by its name");
  for (int i = -1; i <= kestran_arguments(function); ++i) {
    const bool inside = i >= 0 && i < kestran_arguments(function);
    require((kestran_argument_name(function, i) != nullptr) == inside, "arguments have names");
    require((kestran_argument_meaning(function, i) != nullptr) == inside, "arguments have meanings");
    kestran_takes_cells(function, i);
  }
  const int selector = static_cast<int>(choices.bits());
  for (const int asked : {selector, choices.below(40)}) {
    const char* result = kestran_result_name(function, asked);
    require(result == nullptr || kestran_result_selector(function, result) >= 0,
            "a result's name leads back");
  }
  kestran_result_selector(function, name);
}

}  // namespace

void make_case(Choices& choices) {
  if (choices.one_in(16)) look_up(choices);
  const int place = any_place(choices);
  const Function& function = catalogue[place];
  Deals deals{function, {}, {}, static_cast<std::size_t>(choices.below(choices.one_in(64) ? 300 : 6))};
  deals.memory.resize(static_cast<std::size_t>(function.argument_count));
  deals.given.resize(deals.memory.size());
  for (std::size_t i = 0; i < deals.given.size(); ++i) draw_values(function, i, false, choices, deals);
  for (int turns = 0; turns < 8; ++turns) {
    explain(kestran_at(place), deals, choices);
    price_deals(kestran_at(place), deals, choices);
    const int i = choices.below(function.argument_count);
    draw_values(function, static_cast<std::size_t>(i), choices.one_in(2), choices, deals);
  }
}

}  // namespace kestran::fuzz
