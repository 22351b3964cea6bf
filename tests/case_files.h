// The formulas of tests/data/*.cases with the answers they must give.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace kestran {

struct FormulaCase {
  std::string formula;
  std::string expected;
  std::string tolerance;  // empty where the answer must be the very text
  std::string source;     // what the value comes from; in refusals.cases the row of the page's table
  std::string place;      // file and line
};

inline std::vector<FormulaCase> read_case_files() {
  std::vector<FormulaCase> cases;
  for (const auto& entry : std::filesystem::directory_iterator(KESTRAN_TEST_DATA)) {
    if (entry.path().extension() != ".cases") continue;
    std::ifstream file(entry.path());
    int line_number = 0;
    for (std::string line; std::getline(file, line);) {
      ++line_number;
      if (line.empty() || line[0] == '#') continue;
      FormulaCase one;
      std::istringstream columns(line);
      std::getline(columns, one.formula, '\t');
      std::getline(columns, one.expected, '\t');
      std::getline(columns, one.tolerance, '\t');
      std::getline(columns, one.source, '\t');
      one.place = entry.path().filename().string() + ":" + std::to_string(line_number) + " " + one.formula;
      cases.push_back(one);
    }
  }
  return cases;
}

}  // namespace kestran
