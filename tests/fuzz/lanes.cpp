#include "tests/fuzz/lanes.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <vector>

#include "functions/price_many.h"
#include "tests/fuzz/fuzzer.h"

namespace kestran::fuzz {
namespace {

int other_processes[2];

struct Result {
  double number;
  std::int64_t error;
};

// Every result of one deal, and one of several that differ from it.
void price_deals(Choices& choices, std::vector<Result>& results) {
  constexpr std::size_t deals = 13;
  // Those that are rare elsewhere have kernels of their own.
  const int rare = choices.below(128);
  const Function& function =
      rare < 8 ? *find_in_catalogue(rare == 0 ? "CMPASN" : "AMERB") : catalogue[any_place(choices)];
  const std::vector<GivenArgument> given = realistic_call(function, choices);
  std::vector<std::vector<double>> memory;
  std::vector<Column> columns;
  for (const GivenArgument& one : given) {
    std::vector<double>& values = memory.emplace_back(one.values);
    const bool own = memory.size() != static_cast<std::size_t>(function.result_argument + 1);
    for (std::size_t k = 1; own && k < deals; ++k)
      for (const double value : one.values)
        values.push_back(choices.one_in(24) ? odd_number(choices) : value * choices.between(0.8, 1.2));
    columns.push_back(
        {values.data(), own ? static_cast<std::ptrdiff_t>(one.values.size()) : 0, one.rows, one.columns});
  }
  std::vector<Answer> answers(deals + static_cast<std::size_t>(text_of(function).results.count), Answer(0.0));
  count_calls(2);
  price_many(function, columns.data(), deals, nullptr, 1, answers.data());
  price_all(function, operands(given).data(), answers.data() + deals);
  for (const Answer& answer : answers) results.push_back({answer.number, answer.error});
}

std::vector<Result> results_of(std::uint64_t seed) {
  std::uint8_t bytes[sizeof seed];
  std::memcpy(bytes, &seed, sizeof seed);
  Choices choices(bytes, sizeof bytes);
  std::vector<Result> results;
  for (int functions = 0; functions < 32; ++functions) price_deals(choices, results);
  return results;
}

// Moves all of it, though the fuzzer's clock interrupts; false when nobody is at the other end.
template <class Move>
bool whole(const Move& move, std::size_t size) {
  for (std::size_t done = 0; done < size;) {
    const ssize_t moved = move(done);
    if (moved == 0 || (moved < 0 && errno != EINTR)) return false;
    done += static_cast<std::size_t>(std::max<ssize_t>(moved, 0));
  }
  return true;
}

bool receive(int from, void* data, std::size_t size) {
  return whole([&](std::size_t done) { return recv(from, static_cast<char*>(data) + done, size - done, 0); },
               size);
}

bool pass(int to, const void* data, std::size_t size) {
  const auto* const bytes = static_cast<const char*>(data);
  return whole([&](std::size_t done) { return send(to, bytes + done, size - done, MSG_NOSIGNAL); }, size);
}

// Answers until the fuzzer ends.
[[noreturn]] void serve(int fuzzer) {
  for (std::uint64_t seed = 0; receive(fuzzer, &seed, sizeof seed);) {
    const std::vector<Result> results = results_of(seed);
    if (!pass(fuzzer, results.data(), results.size() * sizeof(Result))) break;
  }
  _exit(0);
}

}  // namespace

void start_other_lanes() {
  const char* lanes = "1";
  for (int& process : other_processes) {
    int ends[2];
    require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0, "no sockets");
    const pid_t child = fork();
    require(child >= 0, "no process beside this one");
    if (child == 0) {
      setenv("KESTRAN_LANES", lanes, 1);
      unsetenv("KESTRAN_FUZZ_CALLS");
      close(ends[0]);
      serve(ends[1]);
    }
    close(ends[1]);
    process = ends[0];
    lanes = "2";
  }
}

void compare_lanes(std::uint64_t seed) {
  for (const int process : other_processes)
    require(pass(process, &seed, sizeof seed), "a process beside this one has ended");
  const std::vector<Result> wanted = results_of(seed);
  for (const int process : other_processes) {
    std::vector<Result> found(wanted.size());
    require(receive(process, found.data(), found.size() * sizeof(Result)),
            "a process beside this one has ended");
    for (std::size_t i = 0; i < found.size(); ++i)
      require(found[i].error == wanted[i].error && same_number(found[i].number, wanted[i].number),
              "another number of lanes, other bits");
  }
}

}  // namespace kestran::fuzz
