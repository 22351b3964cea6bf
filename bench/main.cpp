// Measures every model and prints one table. Takes the options of Google Benchmark, such as
// --benchmark_filter.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "bench/cases.h"
#include "host/excel_standin.h"
#include "host/library.h"

namespace kestran::bench {
namespace {

// The sides of a case are measured one right after the other, and a ratio is taken within each pass: machines
// change their speed within seconds.
constexpr int passes = 15;

// By name of the benchmark, nanoseconds of each pass; printed at the end only.
struct Collector : benchmark::BenchmarkReporter {
  std::map<std::string, std::vector<double>> times;

  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs)
      if (run.run_type == Run::RT_Iteration)
        times[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
  }
};

std::string benchmark_name(const Case& option, const Side& side) { return option.name + "/" + side.name; }

// Whether all sides of all cases give the price of the model; what does not is printed.
bool all_agree() {
  bool agree = true;
  for (const Case& option : cases()) {
    const auto model = std::find_if(option.sides.begin(), option.sides.end(),
                                    [](const Side& side) { return side.name == "model"; });
    for (double changing : {option.first, option.second}) {
      const double expected = model->price(changing);
      for (const Side& side : option.sides) {
        const double price = side.price(changing);
        if (std::fabs(price - expected) <= side.tolerance * option.scale) continue;
        std::fprintf(stderr, "%s: %.17g, but the model gives %.17g\n", benchmark_name(option, side).c_str(),
                     price, expected);
        agree = false;
      }
    }
  }
  return agree;
}

double median(std::vector<double> numbers) {
  if (numbers.empty()) return std::numeric_limits<double>::quiet_NaN();
  const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
  std::nth_element(numbers.begin(), middle, numbers.end());
  return *middle;
}

std::string printed(double number, const char* format) {
  if (std::isnan(number)) return "-";
  char text[32];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

void print_table(const Collector& collector) {
  std::printf("CPU time per call in nanoseconds and ratios to the model, medians of %d passes\n\n", passes);
  std::printf("%-18s %12s %12s %15s", "", "worksheet", "model", "straight/model");
  if (quantlib::available) std::printf(" %15s  %s", "QuantLib/model", "QuantLib's");
  std::printf("\n");
  for (const Case& option : cases()) {
    const auto times = [&](const char* side) {
      const auto found = collector.times.find(option.name + "/" + side);
      return found == collector.times.end() ? std::vector<double>() : found->second;
    };
    const std::vector<double> model = times("model");
    if (model.empty()) continue;
    const auto ratio = [&](const char* side) {
      std::vector<double> ratios = times(side);
      for (std::size_t pass = 0; pass < ratios.size(); ++pass) ratios[pass] /= model[pass];
      return printed(median(ratios), "%.2f");
    };
    std::printf("%-18s %12s %12s %15s", option.name.c_str(),
                printed(median(times("worksheet")), "%.0f").c_str(), printed(median(model), "%.0f").c_str(),
                ratio("straight").c_str());
    if (quantlib::available)
      std::printf(" %15s  %s", ratio("QuantLib").c_str(), option.quantlib_name.c_str());
    std::printf("\n");
  }
}

int run() {
  const std::string failure = load_addin(program_folder() + KESTRAN_ADDIN);
  if (!failure.empty()) {
    std::fprintf(stderr, "%s\n", failure.c_str());
    return 1;
  }
  add_black_scholes_cases();
  add_exotics_cases();
  add_asian_cases();
  add_basket_cases();
  add_strips_cases();
  add_rates_cases();
  if (!all_agree()) {
    std::fputs("Nothing was measured: a benchmark must not compare different things.\n", stderr);
    return 1;
  }

  for (const Case& option : cases())
    for (const Side& side : option.sides)
      benchmark::RegisterBenchmark(benchmark_name(option, side).c_str(), side.measure);
  Collector collector;
  for (int pass = 1; pass <= passes; ++pass) {
    if (benchmark::RunSpecifiedBenchmarks(&collector) == 0) return 1;
    if (collector.times.empty()) return 0;  // the benchmarks were only listed
    std::fprintf(stderr, "\rpass %d of %d%s", pass, passes, pass == passes ? "\n" : "");
  }
  print_table(collector);
  unload_addin();
  return 0;
}

}  // namespace
}  // namespace kestran::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  return kestran::bench::run();
}
