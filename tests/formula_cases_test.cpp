// The formulas of tests/data/*.cases with the answers they must give, through the built add-in.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/library.h"
#include "tests/case_files.h"

namespace kestran {
namespace {

TEST(Formulas, GiveTheAnswersOfTheCaseFiles) {
  reset_standin();
  ASSERT_EQ(load_addin(program_folder() + KESTRAN_ADDIN), "");
  const std::vector<FormulaCase> cases = read_case_files();
  for (const FormulaCase& one : cases) {
    const std::string answer = evaluate_line(one.formula).text;
    if (one.tolerance.empty()) {
      EXPECT_EQ(answer, one.expected) << one.place;
      continue;
    }
    char* end = nullptr;
    const double value = std::strtod(answer.c_str(), &end);
    EXPECT_TRUE(end != answer.c_str() && *end == '\0') << one.place << " gave " << answer;
    EXPECT_NEAR(value, std::stod(one.expected), std::stod(one.tolerance)) << one.place;
  }
  EXPECT_GT(cases.size(), 200u);
  unload_addin();
  EXPECT_TRUE(standin().faults.empty());
}

TEST(Formulas, EveryFunctionPricesItsExample) {
  reset_standin();
  ASSERT_EQ(load_addin(program_folder() + KESTRAN_ADDIN), "");
  std::map<std::string, std::string> examples;
  std::ifstream file(KESTRAN_TEST_DATA "/examples.cases");
  for (std::string line; std::getline(file, line);) {
    const std::size_t name_end = line.find('(');
    if (line[0] != '#')
      examples[line.substr(0, name_end)] = line.substr(name_end, line.find('\t') - name_end);
  }
  for (const Registration& function : standin().registrations) {
    if (is_command(function)) continue;
    const std::string& name = registered_name(function);
    const auto own = examples.find(name);
    const auto example = own != examples.end() ? own : examples.find(name.substr(1));
    ASSERT_NE(example, examples.end()) << name;
    const std::string answer = evaluate_line(name + example->second).text;
    EXPECT_EQ(answer, evaluate_line(example->first + example->second).text) << name;
    char* end = nullptr;
    EXPECT_TRUE(std::isfinite(std::strtod(answer.c_str(), &end)) && *end == '\0') << name << ": " << answer;
  }
  unload_addin();
}

// Rows of the README's table of functions end in: | `=FORMULA` | value |, the value rounded.
TEST(Formulas, GiveTheNumbersOfTheReadme) {
  reset_standin();
  ASSERT_EQ(load_addin(program_folder() + KESTRAN_ADDIN), "");
  std::ifstream readme(KESTRAN_TEST_DATA "/../../README.md");
  std::set<std::string> shown;
  for (std::string line; std::getline(readme, line);) {
    const std::size_t begin = line.find("| `=");
    if (begin == std::string::npos) continue;
    const std::size_t end = line.find("` | ", begin);
    ASSERT_NE(end, std::string::npos) << line;
    const std::string formula = line.substr(begin + 3, end - begin - 3);
    const std::string value = line.substr(end + 4, line.find(" |", end + 4) - end - 4);
    const std::size_t point = value.find('.');
    char rounded[64];
    std::snprintf(rounded, sizeof rounded, "%.*f",
                  static_cast<int>(point == std::string::npos ? 0 : value.size() - point - 1),
                  std::strtod(evaluate_line(formula).text.c_str(), nullptr));
    EXPECT_EQ(rounded, value) << formula;
    shown.insert(upper_case(formula.substr(1, formula.find('(') - 1)));
  }
  // Every function has its row, or its twin has.
  for (const Registration& function : standin().registrations) {
    const std::string name = upper_case(registered_name(function));
    if (is_command(function)) continue;
    EXPECT_TRUE(shown.count(name) || shown.count(name.substr(1))) << name;
  }
  unload_addin();
}

}  // namespace
}  // namespace kestran
