// The catalogue of functions, with realistic deals: the ways to price a deal agree to the bit, values stand
// in the relations that they must, and what is refused is what the rules refuse.
#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "functions/price_many.h"
#include "functions/refused_number.h"
#include "tests/fuzz/fuzzer.h"
#include "tests/fuzz/lanes.h"
#include "tests/fuzz/refusals.h"
#include "tests/fuzz/relations.h"

namespace kestran::fuzz {
namespace {

using Arguments = std::vector<GivenArgument>;

Answer answer(const Function& function, const Arguments& given) {
  count_calls();
  return price(function, operands(given).data());
}

void agree(const Function& function, const Arguments& given, const Answer& found, const char* way) {
  const Answer wanted = answer(function, given);
  if (!same_answer(wanted, found))
    fault(shown(function, operands(given).data()) + " is " + shown(wanted) + ", " + way + " " + shown(found));
}

Arguments asking_for(const Function& function, Arguments given, int selector) {
  if (function.result_argument >= 0)
    given[static_cast<std::size_t>(function.result_argument)] = {{double(selector)}};
  return given;
}

void price_every_result(const Function& function, const Arguments& given) {
  const List<ResultText>& results = text_of(function).results;
  std::vector<Answer> answers(static_cast<std::size_t>(results.count), Answer(0.0));
  count_calls();
  price_all(function, operands(given).data(), answers.data());
  for (int j = 0; j < results.count; ++j)
    agree(function, asking_for(function, given, results[j].selector), answers[static_cast<std::size_t>(j)],
          "among all results");
}

// Deals that differ from the first in some arguments.
void price_several(const Function& function, const Arguments& given, Choices& choices) {
  const auto deals =
      static_cast<std::size_t>(1 + choices.below(function.european != nullptr && choices.one_in(8) ? 40 : 5));
  std::vector<std::vector<double>> memory;
  std::vector<Column> columns;
  for (const GivenArgument& one : given) {
    std::vector<double> values = one.values;
    const bool own = choices.one_in(2) && memory.size() != static_cast<std::size_t>(function.result_argument);
    for (std::size_t k = 1; own && k < deals; ++k)
      for (const double value : one.values)
        values.push_back(choices.one_in(16) ? odd_number(choices) : value * choices.between(0.8, 1.2));
    memory.push_back(std::move(values));
    columns.push_back({memory.back().data(), own ? static_cast<std::ptrdiff_t>(one.values.size()) : 0,
                       one.rows, one.columns});
  }
  std::vector<Answer> answers(deals, Answer(0.0));
  count_calls();
  price_many(function, columns.data(), deals, nullptr, 1, answers.data());
  for (std::size_t k = 0; k < deals; ++k) {
    Arguments deal = given;
    for (std::size_t i = 0; i < deal.size(); ++i)
      std::copy_n(columns[i].values + static_cast<std::ptrdiff_t>(k) * columns[i].stride,
                  deal[i].values.size(), deal[i].values.begin());
    agree(function, deal, answers[k], "among several deals");
  }
}

void price_twins(const Function& function, const Arguments& given) {
  for (int place = 0; place < catalogue_size; ++place) {
    const Function& twin = catalogue[place];
    if (&twin != &function && std::strcmp(twin.computed_by, function.computed_by) == 0)
      agree(function, given, answer(twin, given), "by its twin");
  }
}

GivenArgument odd_argument(Choices& choices, const GivenArgument& realistic) {
  const auto content = [&] {
    switch (choices.below(8)) {
      case 0:
        return std::numeric_limits<double>::quiet_NaN();
      case 1:
        return refused_number(choices.of({0, 7, 15, 29, 36, 42, missing_code, no_number_code}));
      case 2:
        return odd_number(choices);
      default:
        return realistic
            .values[static_cast<std::size_t>(choices.below(static_cast<int>(realistic.values.size())))];
    }
  };
  GivenArgument odd;
  if (choices.one_in(2)) {
    odd.rows = choices.one_in(24) ? 257 : choices.one_in(3) ? 1 + choices.below(4) : 1;
    odd.columns = choices.one_in(16) ? 0 : choices.one_in(3) ? 1 + choices.below(4) : 1;
  }
  for (int cells = std::max(odd.rows * odd.columns, 1); cells > 0; --cells) odd.values.push_back(content());
  return odd;
}

// Calls with ever more arguments that are odd, and realistic ones in between.
void refuse(const Function& function, const Arguments& realistic, Choices& choices) {
  Arguments given = realistic;
  for (int calls = 0; calls < 16; ++calls) {
    const auto i = static_cast<std::size_t>(choices.below(static_cast<int>(given.size())));
    given[i] = choices.one_in(3) ? realistic[i] : odd_argument(choices, realistic[i]);
    const std::vector<Operand> call = operands(given);
    const int wanted = refusal_by_the_rules(function, call.data());
    const Answer found = answer(function, given);
    const bool by_the_model = found.is_number() || found.error == value_code || found.error == missing_code;
    if (wanted >= 0 ? found.error != wanted : !by_the_model)
      fault(shown(function, call.data()) + " is " + shown(found) + ", by the rules " +
            std::to_string(wanted));
  }
}

}  // namespace

void make_case(Choices& choices) {
  const Function& function = catalogue[any_place(choices)];
  const Arguments given = realistic_call(function, choices);
  switch (choices.below(8)) {
    case 0:
      price_every_result(function, given);
      break;
    case 1:
      price_several(function, given, choices);
      break;
    case 2:
      choices.one_in(64) ? compare_lanes(choices.bits()) : price_twins(function, given);
      break;
    case 3:
    case 4:
      refuse(function, given, choices);
      break;
    default:
      check_relations(Deal(function, asking_for(function, given, text_of(function).results[0].selector)));
  }
}

}  // namespace kestran::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  kestran::fuzz::start_other_lanes();
  return 0;
}
