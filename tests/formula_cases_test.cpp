// The formulas of tests/data/*.cases with the answers they must give, through the built add-in.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>

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

}  // namespace
}  // namespace kestran
