// Writes the tables of README.md and docs/functions.md from the texts of the functions. What stands between
// the lines <!-- NAME --> and <!-- end of NAME --> is made anew; everything else stays.
//
//   make_docs FOLDER           writes the files below FOLDER, the root of the sources
//   make_docs --check FOLDER   changes nothing; names each file that is out of date, and fails if there is
//   one
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "functions/describe.h"
#include "functions/example.h"
#include "functions/number_text.h"

namespace kestran {
namespace {

std::string quoted(const std::string& text) { return "`" + text + "`"; }

std::string rounded_value(const Function& function) {
  const double value = price(function, operands(example_arguments(text_of(function))).data()).number;
  char text[40];
  std::snprintf(text, sizeof text, "%.6f", value);
  return text;
}

std::string names_of(const FunctionText& text) {
  std::string names;
  for (const Function* function : functions_of(text))
    names += (names.empty() ? "" : ", ") + quoted(function->name);
  return names;
}

// The text with the names of the function's arguments quoted.
std::string with_names_quoted(const Function& function, const std::string& text) {
  const auto in_word = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; };
  std::string result;
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t end = begin;
    while (end < text.size() && in_word(text[end])) ++end;
    const std::string word = text.substr(begin, std::max<std::size_t>(end - begin, 1));
    bool is_name = false;
    for (int i = 0; i < function.argument_count; ++i) is_name = is_name || word == function.arguments[i].name;
    result += is_name ? quoted(word) : word;
    begin += word.size();
  }
  return result;
}

std::string overview() {
  std::string text;
  for (const FamilyText* family : families) {
    text += (text.empty() ? "**" : "\n**") + std::string(family->title) +
            "**\n\n| functions | price | example | value |\n|---|---|---|---|\n";
    for (const FunctionText& function : family->functions) {
      const Function& first = *find_in_catalogue(function.name);
      text += "| " + names_of(function) + " | " + with_names_quoted(first, function.headline) + " | " +
              quoted(example_formula(first)) + " | " + rounded_value(first) + " |\n";
    }
  }
  return text;
}

const char* kind_name(ParameterKind kind) {
  switch (kind) {
    case ParameterKind::line:
      return "range";
    case ParameterKind::line_or_number:
      return "range or number";
    case ParameterKind::square:
      return "square block";
    case ParameterKind::block:
    case ParameterKind::triangle:
      return "block";
    default:
      return "";
  }
}

std::string argument_cell(const Function& function, int i) {
  const ArgumentText& argument = *text_of(function).arguments[i];
  const std::string kind = kind_name(function.arguments[i].kind);
  std::string cell = (kind.empty() ? "" : kind + ": ") + argument.meaning;
  if (argument.choices.count > 0) cell += ": " + choices(function, i);
  if (!std::isnan(argument.recommended) && i != result_argument(function))
    cell += "; " + exact_number(argument.recommended) + " is a good choice";
  return with_names_quoted(function, cell);
}

std::string reference(const FunctionText& text) {
  const Function& function = *find_in_catalogue(text.name);
  std::string block = quoted(signature(function)) + "\n\n| argument | meaning | unit |\n|---|---|---|\n";
  for (int i = 0; i < function.argument_count; ++i)
    block += "| " + quoted(function.arguments[i].name) + " | " + argument_cell(function, i) + " | " +
             unit_name(text.arguments[i]->unit) + " |\n";
  const int selector = result_argument(function);
  block += "\n| " +
           (selector < 0 ? std::string("result") : quoted(function.arguments[selector].name) + " | result") +
           " | meaning | unit |\n|---|---|---" + (selector < 0 ? "|\n" : "|---|\n");
  for (const ResultText& result : text.results) {
    block += "| ";
    if (selector >= 0)
      block +=
          std::to_string(result.selector) + (result.each == ResultText::of_period ? ", ..." : "") + " | ";
    block += quoted(result.name) + " | " + with_names_quoted(function, result.meaning) +
             (result.each == ResultText::of_month ? "; for `RetMonth`" : "") + " | " + result.unit + " |\n";
  }
  return block;
}

// A table whose rows say what several functions have in common, in the order in which they first came.
class Groups {
 public:
  void add(const std::string& row, const std::string& name) {
    std::string& names = names_[row];
    if (names.empty()) order_.push_back(row);
    names += (names.empty() ? "" : ", ") + quoted(name);
  }
  std::string rows() const {
    std::string text;
    for (const std::string& row : order_) text += "| " + names_.at(row) + " |" + row + "\n";
    return text;
  }

 private:
  std::map<std::string, std::string> names_;
  std::vector<std::string> order_;
};

std::string table_head(const std::vector<std::string>& titles) {
  std::string text = "|";
  std::string rule = "|";
  for (const std::string& title : titles) {
    text += " " + title + " |";
    rule += "---|";
  }
  return text + "\n" + rule + "\n";
}

// The number that asks for each result: a column for results that many functions have, the others in words.
std::string result_table(const std::vector<std::string>& columns, bool of_two_prices) {
  std::vector<std::string> titles = {"functions"};
  titles.insert(titles.end(), columns.begin(), columns.end());
  titles.push_back("others");
  Groups groups;
  for (const FamilyText* family : families)
    for (const FunctionText& text : family->functions) {
      if (result_argument(*find_in_catalogue(text.name)) < 0) continue;
      std::vector<std::string> numbers(columns.size());
      std::string others;
      bool two_prices = false;
      for (const ResultText& result : text.results) {
        std::string name = result.name;
        two_prices = two_prices || name == "delta_a" || name == "delta_1" || name == "delta_a1";
        if (name.size() > 2 && of_two_prices && name[name.size() - 2] == '_')
          name.back() = name.back() == '1' ? 'a' : name.back() == '2' ? 'b' : name.back();
        const auto column = std::find(columns.begin(), columns.end(), name);
        const std::string number =
            std::to_string(result.selector) + (result.each == ResultText::of_period ? ", ..." : "");
        if (column != columns.end())
          numbers[static_cast<std::size_t>(column - columns.begin())] = number;
        else if (name != "no_result")
          others += (others.empty() ? "" : ", ") + number + " " + result.name;
      }
      if (two_prices != of_two_prices) continue;
      if (std::count(others.begin(), others.end(), ',') > 8) others = "many: its section has them";
      std::string row;
      for (const std::string& number : numbers) row += " " + number + (number.empty() ? "|" : " |");
      groups.add(row + " " + others + (others.empty() ? "|" : " |"), text.name);
    }
  return table_head(titles) + groups.rows();
}

std::string result_matrix() {
  return result_table(
             {"premium", "delta", "gamma", "vega", "carry_rho", "rho", "theta", "delta_vol", "delta_time"},
             false) +
         "\nOn two prices; `_a` stands for `_1`, and `_b` for `_2`, where a function has those names:\n\n" +
         result_table({"premium", "delta_a", "delta_b", "gamma_a", "gamma_b", "vega_a", "vega_b",
                       "correlation", "carry_rho", "theta", "delta_time_a", "delta_time_b", "cross_gamma"},
                      true);
}

// What a selector's value means.
std::string meaning_of(const Function& function, int i, int value) {
  const ArgumentText& argument = *text_of(function).arguments[i];
  const Argument& taken = function.arguments[i];
  if (taken.kind == ParameterKind::selector && (value < taken.lowest || value > taken.highest))
    return "refused";
  for (const Choice& choice : argument.choices)
    if (choice.value == value) return choice.meaning;
  return argument.other_choices;
}

// What the functions make of their put-or-call selector: those with two types by value, the others in words.
std::string type_matrix() {
  constexpr int beyond = 101;  // the choice of no function
  Groups by_value, in_words;
  for (const FamilyText* family : families)
    for (const FunctionText& text : family->functions) {
      const Function& function = *find_in_catalogue(text.name);
      for (int i = 0; i < function.argument_count; ++i) {
        const ArgumentText& argument = *text.arguments[i];
        const std::set<std::string> names = {"OptType", "Opttype", "CmpOptType", "WarType", "CallPutStr"};
        if (names.count(argument.name) == 0) continue;
        if (argument.choices.count > 3 || argument.choices[0].value != 0) {
          in_words.add(" " + with_names_quoted(function, choices(function, i)) + " |", text.name);
          continue;
        }
        std::string row;
        for (int value = 0; value <= 2; ++value) row += " " + meaning_of(function, i, value) + " |";
        const Argument& taken = function.arguments[i];
        if (taken.kind == ParameterKind::selector && taken.highest > 2)
          row += " 3 to " + std::to_string(taken.highest) + " " + meaning_of(function, i, 3) +
                 ", others refused |";
        else
          row += " " + meaning_of(function, i, beyond) + " |";
        by_value.add(row, text.name);
      }
    }
  return table_head({"functions", "0", "1", "2", "any other number"}) + by_value.rows() + "\n" +
         table_head({"functions", "what the numbers mean"}) + in_words.rows();
}

std::map<std::string, std::function<std::string()>> all_blocks() {
  std::map<std::string, std::function<std::string()>> blocks{
      {"functions", overview}, {"results by RetType", result_matrix}, {"types of option", type_matrix}};
  for (const FamilyText* family : families)
    for (const FunctionText& text : family->functions)
      blocks[text.name] = [&text] { return reference(text); };
  return blocks;
}

// The file's text with every block made anew; `made` receives the names of the blocks found.
std::string remade(const std::string& old_text, std::set<std::string>& made) {
  const auto blocks = all_blocks();
  std::string text;
  std::istringstream lines(old_text);
  std::string end_line;
  for (std::string line; std::getline(lines, line);) {
    if (!end_line.empty() && line != end_line) continue;
    end_line.clear();
    text += line + '\n';
    if (line.rfind("<!-- ", 0) != 0 || line.size() < 9) continue;
    const std::string name = line.substr(5, line.size() - 9);
    const auto block = blocks.find(name);
    if (block == blocks.end()) continue;
    text += block->second();
    end_line = "<!-- end of " + name + " -->";
    made.insert(name);
  }
  return text;
}

int run(const std::string& folder, bool check) {
  std::set<std::string> made;
  int stale = 0;
  for (const char* name : {"README.md", "docs/functions.md"}) {
    const std::string path = folder + "/" + name;
    std::ostringstream old_text;
    old_text << std::ifstream(path, std::ios::binary).rdbuf();
    const std::string text = remade(old_text.str(), made);
    if (text == old_text.str()) continue;
    if (check) {
      std::printf("%s is out of date; tools/make-docs writes it anew\n", name);
      ++stale;
    } else if (!(std::ofstream(path, std::ios::binary) << text)) {
      std::printf("%s cannot be written\n", name);
      return 1;
    }
  }
  for (const auto& block : all_blocks())
    if (made.count(block.first) == 0) {
      std::printf("no page has the place <!-- %s -->\n", block.first.c_str());
      ++stale;
    }
  return stale > 0 ? 1 : 0;
}

}  // namespace
}  // namespace kestran

int main(int count, char** arguments) {
  const bool check = count == 3 && std::strcmp(arguments[1], "--check") == 0;
  if (count != 2 && !check) {
    std::puts("make_docs [--check] FOLDER");
    return 2;
  }
  return kestran::run(arguments[count - 1], check);
}
