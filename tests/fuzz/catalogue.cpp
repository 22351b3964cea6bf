// The catalogue of functions, with realistic deals: the ways to price a deal agree to the bit, values stand
// in the relations that they must, and what is refused is what the rules refuse.
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

#include "functions/refused_number.h"
#include "numerics/lanes.h"
#include "tests/fuzz/fuzzer.h"
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

void price_several(const Function& function, const Arguments& given, Choices& choices) {
  const bool many = function.european != nullptr && choices.one_in(8);
  const auto deals = static_cast<std::size_t>(1 + choices.below(many ? 40 : 5));
  const Columns several(function, given, deals, choices);
  std::vector<Answer> answers(deals, Answer(0.0));
  count_calls();
  price_many(function, several.columns.data(), deals, nullptr, 1, answers.data());
  Arguments deal = given;
  for (std::size_t k = 0; k < deals; ++k) {
    for (std::size_t i = 0; i < deal.size(); ++i)
      std::copy_n(several.columns[i].values + static_cast<std::ptrdiff_t>(k) * several.columns[i].stride,
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

// The same deals priced by kernels of other widths. How many lanes they use is decided once in a process, so
// that a process beside this one has two, and another none for books of European options.
int other_processes[2];

// Every result of one deal, and one of several that differ from it.
void price_in_lanes(Choices& choices, std::vector<Answer>& answers) {
  constexpr std::size_t deals = 13;
  // Those that are rare elsewhere have kernels of their own.
  const int rare = choices.below(128);
  const Function& function =
      rare < 8 ? *find_in_catalogue(rare == 0 ? "CMPASN" : "AMERB") : catalogue[any_place(choices)];
  const std::vector<GivenArgument> given = realistic_call(function, choices);
  const Columns several(function, given, deals, choices);
  answers.assign(deals + static_cast<std::size_t>(text_of(function).results.count), Answer(0.0));
  count_calls(2);
  price_many(function, several.columns.data(), deals, nullptr, 1, answers.data());
  price_all(function, operands(given).data(), answers.data() + deals);
}

// A number that hangs on each bit of the answers to deals that are drawn from a seed.
std::uint64_t digest_of(std::uint64_t seed) {
  Choices choices(seed);
  std::vector<Answer> answers;
  std::uint64_t digest = 0;
  for (int functions = 0; functions < 32; ++functions) {
    price_in_lanes(choices, answers);
    for (const Answer& answer : answers) {
      std::uint64_t bits = static_cast<std::uint64_t>(answer.error);
      if (answer.is_number() && answer.number == answer.number)
        std::memcpy(&bits, &answer.number, sizeof bits);
      digest = (digest ^ bits) * 0x9E3779B97F4A7C15u;
      digest ^= digest >> 29;
    }
  }
  return digest;
}

// The fuzzer's clock interrupts.
bool receive(int from, std::uint64_t& number) {
  return TEMP_FAILURE_RETRY(recv(from, &number, sizeof number, 0)) == sizeof number;
}
bool pass(int to, std::uint64_t number) {
  return TEMP_FAILURE_RETRY(send(to, &number, sizeof number, MSG_NOSIGNAL)) == sizeof number;
}

// Answers until the fuzzer ends.
[[noreturn]] void serve(int fuzzer) {
  for (std::uint64_t seed = 0; receive(fuzzer, seed) && pass(fuzzer, digest_of(seed));) {
  }
  _exit(0);
}

// To be called before anything is priced.
void start_other_lanes() {
  const char* wanted = "1";
  for (int& process : other_processes) {
    int ends[2];
    require(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0, "no sockets");
    const pid_t child = fork();
    require(child >= 0, "no process beside this one");
    if (child == 0) {
      setenv("KESTRAN_LANES", wanted, 1);
      require(lanes() == std::atoi(wanted), "lanes that were not asked for");
      unsetenv("KESTRAN_FUZZ_CALLS");
      close(ends[0]);
      serve(ends[1]);
    }
    close(ends[1]);
    process = ends[0];
    wanted = "2";
  }
}

void compare_lanes(std::uint64_t seed) {
  for (const int process : other_processes)
    require(pass(process, seed), "a process beside this one has ended");
  const std::uint64_t wanted = digest_of(seed);
  for (const int process : other_processes) {
    std::uint64_t found = 0;
    require(receive(process, found), "a process beside this one has ended");
    require(found == wanted, "another number of lanes, other bits");
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
