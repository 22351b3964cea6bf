// The formulas of tests/data/*.cases with the answers they must give, through the built add-in.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/library.h"

namespace kestran {
namespace {

TEST(Formulas, GiveTheAnswersOfTheCaseFiles) {
  reset_standin();
  ASSERT_EQ(load_addin(program_folder() + KESTRAN_ADDIN), "");
  int checked = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KESTRAN_TEST_DATA)) {
    if (entry.path().extension() != ".cases") continue;
    std::ifstream file(entry.path());
    int line_number = 0;
    for (std::string line; std::getline(file, line);) {
      ++line_number;
      if (line.empty() || line[0] == '#') continue;
      std::istringstream columns(line);
      std::string formula, expected, tolerance;
      std::getline(columns, formula, '\t');
      std::getline(columns, expected, '\t');
      std::getline(columns, tolerance, '\t');
      const std::string answer = evaluate_line(formula).text;
      const std::string where =
          entry.path().filename().string() + ":" + std::to_string(line_number) + " " + formula;
      if (tolerance.empty()) {
        EXPECT_EQ(answer, expected) << where;
      } else {
        char* end = nullptr;
        const double value = std::strtod(answer.c_str(), &end);
        EXPECT_TRUE(end != answer.c_str() && *end == '\0') << where << " gave " << answer;
        EXPECT_NEAR(value, std::stod(expected), std::stod(tolerance)) << where;
      }
      ++checked;
    }
  }
  EXPECT_GT(checked, 50);
  unload_addin();
  EXPECT_TRUE(standin().faults.empty());
}

}  // namespace
}  // namespace kestran
