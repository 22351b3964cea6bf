// What the pages for users show: the numbers of their examples, and their tables against the case files.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/library.h"
#include "tests/case_files.h"

namespace kestran {
namespace {

constexpr std::size_t argument_names = 4;

const std::string deal_page = "docs/from-a-deal-to-arguments.md";

std::string trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::vector<std::string> split(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t end; (end = text.find(separator, begin)) != std::string::npos;
       begin = end + separator.size())
    parts.push_back(trimmed(text.substr(begin, end - begin)));
  parts.push_back(trimmed(text.substr(begin)));
  return parts;
}

// The texts between backticks.
std::vector<std::string> code_spans(const std::string& text) {
  std::vector<std::string> spans;
  const std::vector<std::string> parts = split(text, "`");
  for (std::size_t i = 1; i < parts.size(); i += 2) spans.push_back(parts[i]);
  return spans;
}

using Row = std::vector<std::string>;

// The rows, without the line under the headers, of the table of `page` whose header row begins with `header`;
// the `which` of that kind, counted from 0.
std::vector<Row> read_table(const std::string& page, const std::string& header, int which = 0) {
  std::vector<Row> rows;
  std::ifstream file(KESTRAN_TEST_DATA "/../../" + page);
  for (std::string line; std::getline(file, line);) {
    if (rows.empty() && (line.compare(0, header.size(), header) != 0 || which-- > 0)) continue;
    if (line.empty()) break;
    Row cells = split(line.substr(1, line.size() - 2), " | ");
    if (line.compare(0, 2, "|-") != 0) rows.push_back(cells);
  }
  return rows;
}

struct Example {
  std::string formula;
  std::string value;  // as shown
};

// Rows of the kind | `=FORMULA` | value |, and how many formulas the page has in all.
std::vector<Example> read_examples(const std::string& page, std::size_t& formulas) {
  std::vector<Example> examples;
  formulas = 0;
  std::ifstream file(KESTRAN_TEST_DATA "/../../" + page);
  for (std::string line; std::getline(file, line);) {
    for (const std::string& span : code_spans(line)) formulas += span.size() > 1 && span[0] == '=' ? 1 : 0;
    const std::size_t begin = line.find("| `=");
    if (begin == std::string::npos) continue;
    const std::size_t end = line.find("` | ", begin);
    if (end == std::string::npos) continue;
    examples.push_back(
        {line.substr(begin + 4, end - begin - 4), line.substr(end + 4, line.find(" |", end + 4) - end - 4)});
  }
  return examples;
}

// The examples of a page have the values beside them, to the digits shown.
void expect_values(const std::string& page) {
  std::size_t formulas = 0;
  const std::vector<Example> examples = read_examples(page, formulas);
  EXPECT_EQ(examples.size(), formulas) << page << " shows a formula without a value";
  for (const Example& example : examples) {
    const std::size_t point = example.value.find('.');
    char rounded[64];
    std::snprintf(rounded, sizeof rounded, "%.*f",
                  static_cast<int>(point == std::string::npos ? 0 : example.value.size() - point - 1),
                  std::strtod(evaluate_line(example.formula).text.c_str(), nullptr));
    EXPECT_EQ(rounded, example.value) << page << ": " << example.formula;
  }
}

// The function that stands in a list of names, or whose twin does.
template <class Names>
bool names_function(const Names& names, const std::string& function) {
  return std::find(names.begin(), names.end(), function) != names.end() ||
         (function[0] == 'x' && std::find(names.begin(), names.end(), function.substr(1)) != names.end());
}

class Pages : public testing::Test {
 protected:
  void SetUp() override {
    reset_standin();
    ASSERT_EQ(load_addin(program_folder() + KESTRAN_ADDIN), "");
  }
  void TearDown() override { unload_addin(); }
};

TEST_F(Pages, ReadmeShowsEveryFunctionWithItsNumber) {
  expect_values("README.md");
  std::size_t formulas = 0;
  std::set<std::string> shown;
  for (const Example& example : read_examples("README.md", formulas))
    shown.insert(example.formula.substr(0, example.formula.find('(')));
  for (const Registration& function : standin().registrations) {
    if (is_command(function)) continue;
    EXPECT_TRUE(names_function(shown, registered_name(function))) << registered_name(function);
  }
}

TEST_F(Pages, DealsHaveTheirNumbersAndEachNumberItsCase) {
  expect_values(deal_page);
  std::size_t formulas = 0;
  std::set<std::string> shown;
  for (const Example& example : read_examples(deal_page, formulas)) shown.insert(example.formula);
  std::set<std::string> checked;
  for (const FormulaCase& one : read_case_files())
    if (one.place.compare(0, 12, "deals.cases:") == 0) checked.insert(one.formula);
  EXPECT_EQ(shown, checked);
}

TEST_F(Pages, DealsNameTheTimesOfEveryFunction) {
  std::set<std::string> named;
  for (const Row& row : read_table(deal_page, "| functions | argument | unit |")) {
    for (const std::string& name : code_spans(row[0])) {
      named.insert(name);
      const Registration* const function = find_function(upper_case(name));
      ASSERT_NE(function, nullptr) << name;
      const Row arguments = split(registered_text(*function, argument_names), ",");
      for (const std::string& argument : code_spans(row[1]))
        EXPECT_EQ(std::count(arguments.begin(), arguments.end(), argument), 1) << name << ' ' << argument;
    }
  }
  for (const Registration& function : standin().registrations) {
    if (is_command(function)) continue;
    EXPECT_TRUE(names_function(named, registered_name(function))) << registered_name(function);
  }
}

std::string without_backticks(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '`'), text.end());
  return text;
}

// What a cell of the table says a function answers: "general answer; `FUNCTION` its own answer".
std::string answer_in(const std::string& cell, const std::string& function) {
  const std::vector<std::string> answers = split(cell, "; ");
  for (const std::string& answer : answers)
    if (answer.compare(0, function.size() + 3, "`" + function + "` ") == 0)
      return answer.substr(function.size() + 3);
  return answers[0];
}

std::string told(const FormulaCase& one) {
  if (!one.tolerance.empty()) return "priced";
  return one.expected == "#ERR(65535)" ? "65535" : one.expected;
}

// The column of the table whose header names the function; that of all others is headed "plain".
std::size_t column_of(const Row& header, const std::string& function) {
  std::size_t others = header.size();
  for (std::size_t i = 1; i < header.size(); ++i) {
    if (names_function(code_spans(header[i]), function)) return i;
    if (header[i] == "plain") others = i;
  }
  return others;
}

TEST_F(Pages, RefusedCallsAreThoseOfTheCases) {
  std::map<std::string, std::vector<FormulaCase>> cases;  // by row
  for (const FormulaCase& one : read_case_files())
    if (one.place.compare(0, 15, "refusals.cases:") == 0) cases[one.source].push_back(one);
  for (const int which : {0, 1}) {
    const std::vector<Row> table = read_table("docs/functions.md", "| given |", which);
    ASSERT_GT(table.size(), 1u);
    for (std::size_t i = 1; i < table.size(); ++i) {
      const std::string name = without_backticks(table[i][0]);
      std::set<std::size_t> checked;
      for (const FormulaCase& one : cases[name]) {
        const std::string function = one.formula.substr(0, one.formula.find('('));
        const std::size_t column = column_of(table[0], function);
        ASSERT_LT(column, table[i].size()) << one.place;
        EXPECT_EQ(answer_in(table[i][column], function), told(one)) << one.place;
        checked.insert(column);
      }
      EXPECT_EQ(checked.size(), table[0].size() - 1) << "cells without a case: " << name;
      cases.erase(name);
    }
  }
  for (const auto& left : cases) ADD_FAILURE() << "cases of no row: " << left.first;
}

}  // namespace
}  // namespace kestran
