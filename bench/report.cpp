#include "bench/report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>
#include <vector>

#include "bench/cases.h"

namespace kestran::bench {
namespace {

constexpr double not_measured = std::numeric_limits<double>::quiet_NaN();

// By BUILD:CASE:SIDE, nanoseconds of each pass.
using Measurements = std::map<std::string, std::vector<double>>;

Measurements read_measurements(const std::string& file) {
  Measurements all;
  std::ifstream lines(file);
  std::string build, name, side;
  double nanoseconds;
  while (lines >> build >> name >> side >> nanoseconds)
    all[build + ":" + name + ":" + side].push_back(nanoseconds);
  return all;
}

double median(std::vector<double> numbers) {
  if (numbers.empty()) return not_measured;
  const auto middle = numbers.begin() + static_cast<std::ptrdiff_t>(numbers.size() / 2);
  std::nth_element(numbers.begin(), middle, numbers.end());
  return *middle;
}

double median_of(const Measurements& all, const std::string& what) {
  const auto found = all.find(what);
  return found == all.end() ? not_measured : median(found->second);
}

// The median of the ratios within each pass: machines change their speed within seconds.
double ratio(const Measurements& all, const std::string& numerator, const std::string& denominator) {
  const auto above = all.find(numerator), below = all.find(denominator);
  if (above == all.end() || below == all.end()) return not_measured;
  std::vector<double> ratios;
  for (std::size_t pass = 0; pass < std::min(above->second.size(), below->second.size()); ++pass)
    ratios.push_back(above->second[pass] / below->second[pass]);
  return median(ratios);
}

void print(const char* format, int width, double number) {
  char text[32] = "-";
  if (!std::isnan(number)) std::snprintf(text, sizeof text, format, number);
  std::printf(" %*s", width, text);
}

void print_linux(const Measurements& all) {
  std::printf("\n%-22s %12s %12s %15s %12s", "Linux, ns", "worksheet", "model", "straight/model",
              "to half size");
  if (quantlib::available) std::printf(" %15s  %s", "QuantLib/model", "QuantLib's");
  std::printf("\n");
  for (const Case& option : cases()) {
    const std::string name = "linux:" + option.name + ":";
    const double model = median_of(all, name + "model");
    if (std::isnan(model)) continue;
    std::printf("%-22s", option.name.c_str());
    print("%.0f", 12, median_of(all, name + "worksheet"));
    print(model < 100.0 ? "%.1f" : "%.0f", 12, model);
    print("%.2f", 15, ratio(all, name + "straight", name + "model"));
    const Case* const half = half_size_of(option);
    print("%.2f", 12,
          half == nullptr ? not_measured : ratio(all, name + "model", "linux:" + half->name + ":model"));
    if (quantlib::available) {
      print("%.2f", 15, ratio(all, name + "QuantLib", name + "model"));
      std::printf("  %s", option.quantlib_name.c_str());
    }
    std::printf("\n");
  }
}

void print_windows(const Measurements& all) {
  std::printf("\n%-22s %25s %12s %25s\n%-22s %12s %12s %12s %12s %12s\n", "Windows, ns", "worksheet", "",
              "straight/model", "", "win32", "win64", "win32/win64", "win32", "win64");
  for (const Case& option : cases()) {
    const std::string side = option.sides[0].name;  // the worksheet's where there is one
    const std::string win32 = "win32:" + option.name + ":", win64 = "win64:" + option.name + ":";
    if (std::isnan(median_of(all, win32 + side))) continue;
    std::printf("%-22s", option.name.c_str());
    for (const std::string& build : {win32, win64}) print("%.0f", 12, median_of(all, build + side));
    print("%.2f", 12, ratio(all, win32 + side, win64 + side));
    for (const std::string& build : {win32, win64})
      print("%.2f", 12, ratio(all, build + "straight", build + "model"));
    std::printf("\n");
  }
}

void print_command(const Measurements& all) {
  std::printf("\n%-22s %12s %15s\n", "The command", "a second", "times a copy");
  for (const char* what : {"command/formulas", "command/csv"}) {
    const std::string name = std::string("linux:") + what + ":";
    std::printf("%-22s", what);
    print("%.0f", 12, 1e9 / median_of(all, name + "kestran"));
    print("%.1f", 15, ratio(all, name + "kestran", name + "copy"));
    std::printf("\n");
  }
}

bool measured(const Measurements& all, const std::string& start) {
  const auto found = all.lower_bound(start);
  return found != all.end() && found->first.compare(0, start.size(), start) == 0;
}

}  // namespace

int print_report(const std::string& measurements) {
  const Measurements all = read_measurements(measurements);
  if (all.empty()) {
    std::fputs("no case has this name\n", stderr);
    return 1;
  }
  std::printf("Time of a call and ratios within a pass, medians of %zu passes\n", all.begin()->second.size());
  if (measured(all, "linux:")) print_linux(all);
  if (measured(all, "win32:")) print_windows(all);
  if (measured(all, "linux:command/")) print_command(all);
  return 0;
}

int check_limits(const std::string& measurements, const std::string& limits) {
  const Measurements all = read_measurements(measurements);
  std::ifstream lines(limits);
  std::string line;
  int checked = 0, beyond = 0;
  while (std::getline(lines, line)) {
    std::istringstream words(line.substr(0, line.find('#')));
    std::string which, numerator, denominator;
    double limit;
    if (!(words >> which)) continue;
    if (!(words >> limit >> numerator >> denominator) || (which != "at_least" && which != "at_most")) {
      std::fprintf(stderr, "%s: cannot be read: %s\n", limits.c_str(), line.c_str());
      return 2;
    }
    const double found = ratio(all, numerator, denominator);
    if (std::isnan(found)) continue;
    ++checked;
    if (which == "at_least" ? found >= limit : found <= limit) continue;
    ++beyond;
    std::printf("%s / %s is %.2f, limit %s %.2f\n", numerator.c_str(), denominator.c_str(), found,
                which == "at_least" ? "at least" : "at most", limit);
  }
  std::printf("%d ratios compared, %d beyond their limit\n", checked, beyond);
  return beyond == 0 && checked > 0 ? 0 : 1;
}

}  // namespace kestran::bench
