#include "functions/catalogue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "functions/asian.h"
#include "functions/baskets.h"
#include "functions/black_scholes.h"
#include "functions/exotics.h"
#include "functions/intake.h"
#include "functions/rates.h"
#include "functions/refused_number.h"
#include "functions/strips.h"

namespace kestran {
namespace {

// The frames that function_list.h names.
constexpr Frame Scalar{Intake::scalars};
constexpr Frame LooseScalars{Intake::lines};
constexpr Frame EqualRanges{Intake::lines};
constexpr Frame BasketRanges{Intake::lines, Length::shortest, FirstCell::uncounted};
constexpr Frame StripRanges{Intake::lines, Length::last, FirstCell::uncounted};
constexpr Frame CapRanges{Intake::lines, Length::last, FirstCell::error_passed_on};
constexpr Frame SwapRanges{Intake::lines, Length::last, FirstCell::error_passed_on, Singles::refused};
constexpr Frame Blocks{Intake::blocks};

// The worksheet function behind a list of arguments: its kinds, and the call with each argument converted.
// `Kept` is what a call keeps for its other results, void where nothing is.
template <auto function, class Kept, class... Parameter>
struct Call {
  static constexpr std::size_t count = sizeof...(Parameter);
  static constexpr bool keeps = !std::is_void_v<Kept>;
  static constexpr bool takes_ranges = (is_range(Taken<Parameter>::kind) || ...);
  static_assert(count <= most_arguments);
  static_assert((int{is_line(Taken<Parameter>::kind)} + ...) <= most_lines);
  static_assert((int{is_range(Taken<Parameter>::kind)} + ...) <= most_blocks);

  static constexpr std::array<Argument, count> arguments(std::string_view names) {
    std::array<Argument, count> list{
        Argument{{}, Taken<Parameter>::kind, Taken<Parameter>::lowest, Taken<Parameter>::highest}...};
    std::size_t begin = 0;
    for (Argument& argument : list) {
      while (names[begin] == ' ') ++begin;
      const std::size_t end = names.find(',', begin) < names.size() ? names.find(',', begin) : names.size();
      for (std::size_t i = begin; i < end; ++i) argument.name[i - begin] = names[i];
      begin = end + 1;
    }
    return list;
  }

  // Flat, so that what is there for several results costs a single one nothing. An optimisation at link time
  // would take whole models in here, again and again.
#if !defined(KESTRAN_OPTIMISED_AT_LINK_TIME)
  [[gnu::flatten]]
#endif
  static Answer
  compute(const double* numbers, const Cells* cells) {
    return compute(numbers, cells, std::make_index_sequence<count>());
  }

  /// Of every function whose result argument stands at `place`; null where nothing is shared.
  template <int place>
  static constexpr auto compute_all() -> decltype(Function::compute_all) {
    if constexpr (keeps && place >= 0)
      return
          [](const double* numbers, const Cells* cells, const int* selectors, int results, Answer* answers) {
            compute_all<std::size_t{place}>(numbers, cells, selectors, results, answers,
                                            std::make_index_sequence<count>());
          };
    else
      return nullptr;
  }

 private:
  static Answer refusal(int at) {
    return Answer::failure(missing_code, refuses_signs(at) ? Reason::wrong_sign : Reason::out_of_range, at);
  }
  template <std::size_t place, std::size_t... i>
  static void compute_all(const double* numbers, [[maybe_unused]] const Cells* cells, const int* selectors,
                          int results, Answer* answers, std::index_sequence<i...>) {
    using Asks = std::tuple_element_t<place, std::tuple<Parameter...>>;
    constexpr int asks_at = static_cast<int>(place);
    int refused = static_cast<int>(count);
    static_cast<void>(
        ((i == place || accepts<Parameter>(numbers[i]) || (refused = static_cast<int>(i), false)) && ...));
    if (refused < static_cast<int>(count)) {
      for (int j = 0; j < results; ++j)
        answers[j] = refusal(refused > asks_at && !Taken<Asks>::accepts(selectors[j]) ? asks_at : refused);
      return;
    }
    std::tuple<Parameter...> taken{
        Taken<Parameter>::from(i == place ? 0.0 : numbers[i], takes_ranges ? cells + i : nullptr)...};
    Kept kept;
    for (int j = 0; j < results; ++j) {
      if (!Taken<Asks>::accepts(selectors[j])) {
        answers[j] = refusal(asks_at);
        continue;
      }
      std::get<place>(taken) = Taken<Asks>::from(selectors[j]);
      answers[j] = function(&kept, std::get<i>(taken)...);
    }
  }
  template <std::size_t... i>
  static Answer compute(const double* numbers, [[maybe_unused]] const Cells* cells,
                        std::index_sequence<i...>) {
    int at = -1;
    if (!((++at, accepts<Parameter>(numbers[i])) && ...)) return refusal(at);
    if constexpr (keeps)
      return function(nullptr, Taken<Parameter>::from(numbers[i], takes_ranges ? cells + i : nullptr)...);
    else
      return function(Taken<Parameter>::from(numbers[i], takes_ranges ? cells + i : nullptr)...);
  }
  static bool refuses_signs(int at) {
    constexpr bool signs[] = {(Taken<Parameter>::kind == ParameterKind::positive ||
                               Taken<Parameter>::kind == ParameterKind::not_negative ||
                               Taken<Parameter>::kind == ParameterKind::not_negative_days)...};
    return signs[at];
  }
  template <class Each>
  static bool accepts(const double& number) {
    if constexpr (is_range(Taken<Each>::kind)) {
      return true;
    } else {
      return Taken<Each>::accepts(number);
    }
  }
};

template <auto function, class... Parameter>
Call<function, void, Parameter...> call_of(Answer (*)(Parameter...));
template <auto function, class Kept, class... Parameter>
Call<function, Kept, Parameter...> call_of(Answer (*)(Kept*, Parameter...));

template <auto function>
using Signature = decltype(call_of<function>(function));

constexpr int commas(std::string_view names) {
  int count = 0;
  for (char character : names) count += character == ',';
  return count;
}

// The place of the argument that asks for the result.
template <std::size_t count>
constexpr int result_place(const std::array<Argument, count>& arguments) {
  for (std::size_t i = 0; i < count; ++i)
    if (std::string_view(arguments[i].name) == "RetType" || std::string_view(arguments[i].name) == "Risk")
      return static_cast<int>(i);
  return -1;
}

template <auto function>
constexpr const EuropeanForm* european_form() {
  return worksheet::european<function>.results > 0 ? &worksheet::european<function> : nullptr;
}

#define FUNCTION(name, function, frame, pointers, description, names)                    \
  constexpr auto arguments_of_##name = Signature<worksheet::function>::arguments(names); \
  static_assert(commas(names) + 1 == Signature<worksheet::function>::count, #name);      \
  static_assert(pointers >= Signature<worksheet::function>::count, #name);               \
  constexpr int result_of_##name = result_place(arguments_of_##name);
#include "functions/function_list.h"

// Operands are read like records; all their cells are there.
struct OperandReader {
  using Given = Operand;

  // __builtin_expect keeps numbers on the straight path.
  static Holds held(double number) {
    if (__builtin_expect(number == number, 1)) return Holds::number;
    const int code = refusal_code(number);
    if (code == no_number_code) return Holds::other;
    return code < 0 ? Holds::nothing : Holds::error;
  }
  static Holds holds(const Operand& given) { return given.rows > 0 ? Holds::cells : held(*given.values); }
  static double number(const Operand& given) { return *given.values; }
  static int error(const Operand& given) { return refusal_code(*given.values); }

  class Block {
   public:
    explicit Block(const Operand& given) : operand(given) {}
    bool ready() const { return operand.columns > 0; }
    int rows() const { return operand.rows; }
    int columns() const { return operand.columns; }
    Holds holds(int i) const { return held(operand.values[i]); }
    double number(int i) const { return operand.values[i]; }
    int error(int i) const { return refusal_code(operand.values[i]); }
    const double* numbers() const { return operand.values; }
    static constexpr int apart = 1;

   private:
    const Operand& operand;
  };
};

char lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool same_name(const char* name, const char* other) {
  while (*name != '\0' && lower(*name) == lower(*other)) ++name, ++other;
  return lower(*name) == lower(*other);
}

}  // namespace

const Function catalogue[] = {
#define FUNCTION(name, function, frame, pointers, description, names) \
  {#name,                                                             \
   #function,                                                         \
   description,                                                       \
   arguments_of_##name.data(),                                        \
   static_cast<int>(arguments_of_##name.size()),                      \
   result_of_##name,                                                  \
   Signature<worksheet::function>::takes_ranges,                      \
   frame,                                                             \
   Signature<worksheet::function>::compute,                           \
   Signature<worksheet::function>::compute_all<result_of_##name>(),   \
   european_form<worksheet::function>()},
#include "functions/function_list.h"
};

StillWanted still_wanted = nullptr;

const int catalogue_size = static_cast<int>(std::size(catalogue));

const Function* find_in_catalogue(const char* name) {
  for (const Function& function : catalogue)
    if (same_name(function.name, name)) return &function;
  return nullptr;
}

Answer price(const Function& function, const Operand* given) {
  return FrameReader<OperandReader>::evaluate(function, given);
}

void price_results(const Function& function, const Operand* given, const int* selectors, int results,
                   Answer* answers) {
  if (results < 1) return;
  const int asks_at = function.result_argument;
  const bool together = results > 1 && function.compute_all != nullptr;
  double numbers[most_arguments];
  bool plain = function.frame.intake == Intake::scalars && together;
  const auto take = [&](int first, int end) {
    for (int i = first; i < end && plain; ++i) {
      plain = given[i].rows == 0 && *given[i].values == *given[i].values;
      if (plain) numbers[i] = *given[i].values;
    }
  };
  take(0, asks_at);
  take(asks_at + 1, function.argument_count);
  if (plain) {
    const ProcessorState state;
    function.compute_all(numbers, nullptr, selectors, results, answers);
    return;
  }

  Operand operands[most_arguments];
  std::copy_n(given, function.argument_count, operands);
  double selector = selectors[0];
  operands[asks_at] = {&selector};
  if (!together) {
    for (int j = 0; j < results; ++j) {
      selector = selectors[j];
      answers[j] = price(function, operands);
    }
    return;
  }
  FrameReader<OperandReader>::evaluate_results(function, operands, selectors, results, answers);
}

struct Operands {
  Operand given[most_arguments];
};
static Operands operands_of(const Function& function, const double* numbers) {
  Operands operands;
  for (int i = 0; i < function.argument_count; ++i) operands.given[i] = {numbers + i};
  return operands;
}

// Numbers need no reader in a frame of scalars; a NaN does, which may carry the code of a refusal.
Answer price(const Function& function, const double* numbers) {
  bool complete = function.frame.intake == Intake::scalars;
  for (int i = 0; complete && i < function.argument_count; ++i) complete = numbers[i] == numbers[i];
  if (complete) {
    const ProcessorState state;
    return function.compute(numbers, nullptr);
  }
  return price(function, operands_of(function, numbers).given);
}

void price_results(const Function& function, const double* numbers, const int* selectors, int results,
                   Answer* answers) {
  bool complete = function.frame.intake == Intake::scalars && results > 1 && function.compute_all != nullptr;
  for (int i = 0; complete && i < function.argument_count; ++i)
    complete = i == function.result_argument || numbers[i] == numbers[i];
  if (complete) {
    const ProcessorState state;
    function.compute_all(numbers, nullptr, selectors, results, answers);
    return;
  }
  price_results(function, operands_of(function, numbers).given, selectors, results, answers);
}

}  // namespace kestran
