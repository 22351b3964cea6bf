// Measures every model; bench/run calls it.
//   kestran_bench --agree FILTER     whether all sides of a case price alike
//   kestran_bench --pass N FILTER    one pass over the cases: lines of build, case, side and nanoseconds a
//   call kestran_bench --report FILE      the table of what passes printed into FILE kestran_bench --check
//   FILE LIMITS
// FILTER is a regular expression that a case's name must match.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <regex>
#include <string>
#include <vector>

#include "bench/cases.h"
#include "bench/report.h"
#include "host/excel_standin.h"
#include "host/library.h"

namespace kestran::bench {
namespace {

#if defined(_WIN64)
constexpr char build[] = "win64";
#elif defined(_WIN32)
constexpr char build[] = "win32";
#else
constexpr char build[] = "linux";
#endif

// Of this thread, in nanoseconds, or by the clock on the wall. Windows counts a thread's time in ticks too
// long for this.
double now([[maybe_unused]] bool on_the_wall) {
#if !defined(_WIN32)
  if (!on_the_wall) {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e9 * static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec);
  }
#endif
  const auto since_start = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double, std::nano>(since_start).count();
}

double duration(const Case& option, const Side& side, std::size_t first, std::size_t calls) {
  const double begin = now(option.threads);
  side.repeat(option.values.data(), first, calls);
  return now(option.threads) - begin;
}

// Nanoseconds a deal: the shortest of a few stretches that are long enough to be timed, since where time is
// the clock's another program may have had some of it.
double measured(const Case& option, const Side& side, std::size_t first) {
  constexpr double long_enough = 1e6;
  constexpr int stretches = 3;
  std::size_t calls = 1;
  const auto shortest = [&](int times) {
    double least = duration(option, side, first, calls);
    for (int time = 1; time < times; ++time) least = std::min(least, duration(option, side, first, calls));
    return least;
  };
  while (shortest(2) < long_enough) calls *= 2;
  return shortest(stretches) / (static_cast<double>(calls) * option.deals);
}

// Whether the sides of a case give the price of the model; what does not is printed.
bool agrees(const Case& option) {
  constexpr std::size_t compared = 32;
  const Side& model = model_of(option);
  for (std::size_t i = 0; i < compared; ++i) {
    const double expected = model.price(option.values[i]);
    for (const Side& side : option.sides) {
      const double price = side.price(option.values[i]);
      if (std::fabs(price - expected) <= side.tolerance * option.scale) continue;
      std::fprintf(stderr, "%s: of %.17g %s makes %.17g, but the model %.17g\n", option.name.c_str(),
                   option.values[i], side.name.c_str(), price, expected);
      return false;
    }
  }
  return true;
}

int over_cases(bool compare, std::size_t pass, const std::regex& filter) {
  bool agree = true;
  for (const Case& option : cases()) {
    if (!std::regex_search(option.name, filter)) continue;
    if (compare) {
      agree = agrees(option) && agree;
      continue;
    }
    for (const Side& side : option.sides)
      std::printf("%s %s %s %.6g\n", build, option.name.c_str(), side.name.c_str(),
                  measured(option, side, pass * 977));
  }
  if (agree) return 0;
  std::fputs("Nothing was measured: a benchmark must not compare different things.\n", stderr);
  return 1;
}

int run(const std::vector<std::string>& arguments) {
  const std::string failure = load_addin(program_folder() + KESTRAN_ADDIN);
  if (!failure.empty()) {
    std::fprintf(stderr, "%s\n", failure.c_str());
    return 1;
  }
  standin().arrays_as_they_are = true;
  add_black_scholes_cases();
  add_exotics_cases();
  add_asian_cases();
  add_basket_cases();
  add_strips_cases();
  add_rates_cases();
  add_book_cases();

  const std::string& task = arguments[0];
  int status = 2;
  if (task == "--agree" && arguments.size() == 2) status = over_cases(true, 0, std::regex(arguments[1]));
  if (task == "--pass" && arguments.size() == 3)
    status = over_cases(false, std::strtoul(arguments[1].c_str(), nullptr, 10), std::regex(arguments[2]));
  if (task == "--report" && arguments.size() == 2) status = print_report(arguments[1]);
  if (task == "--check" && arguments.size() == 3) status = check_limits(arguments[1], arguments[2]);
  unload_addin();
  return status;
}

}  // namespace
}  // namespace kestran::bench

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  return kestran::bench::run({argv + 1, argv + argc});
}
