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

namespace kestran {
namespace {

std::string quoted(const std::string& text) { return "`" + text + "`"; }

std::string rounded_value(const Function& function) {
  const double value = price(function, operands(example_arguments(text_of(function))).data()).number;
  char text[40];
  std::snprintf(text, sizeof text, "%.6f", value);
  return text;
}

// The functions a text belongs to, twins with an x in front last.
std::vector<const Function*> functions_of(const FunctionText& text) {
  std::vector<const Function*> list;
  for (int i = 0; i < catalogue_size; ++i)
    if (&text_of(catalogue[i]) == &text) list.push_back(&catalogue[i]);
  std::stable_sort(list.begin(), list.end(),
                   [&](const Function* a, const Function*) { return std::strcmp(a->name, text.name) == 0; });
  return list;
}

std::string names_of(const FunctionText& text) {
  std::string names;
  for (const Function* function : functions_of(text))
    names += (names.empty() ? "" : ", ") + quoted(function->name);
  return names;
}

std::string overview() {
  std::string text;
  for (const FamilyText* family : families) {
    text += (text.empty() ? "**" : "\n**") + std::string(family->title) +
            "**\n\n| functions | price | example | value |\n|---|---|---|---|\n";
    for (const FunctionText& function : family->functions) {
      const Function& first = *find_in_catalogue(function.name);
      text += "| " + names_of(function) + " | " + function.headline + " | " + quoted(example_formula(first)) +
              " | " + rounded_value(first) + " |\n";
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

std::string argument_cell(const Function& function, int i) {
  const ArgumentText& argument = *text_of(function).arguments[i];
  const std::string kind = kind_name(function.arguments[i].kind);
  std::string cell = (kind.empty() ? "" : kind + ": ") + argument.meaning;
  if (argument.choices.count > 0) cell += ": " + choices(argument);
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
             (result.each == ResultText::of_month ? "; of month, contract or period `RetMonth`" : "") +
             " | " + result.unit + " |\n";
  }
  return block;
}

// Which result each RetType asks for, over all functions.
std::string result_matrix() {
  int most = 0;
  for (const FamilyText* family : families)
    for (const FunctionText& text : family->functions)
      if (result_argument(*find_in_catalogue(text.name)) >= 0)
        for (const ResultText& result : text.results) most = std::max(most, result.selector);
  std::string block = "| functions |";
  std::string rule = "|---|";
  for (int i = 0; i <= most; ++i) {
    block += " " + std::to_string(i) + " |";
    rule += "---|";
  }
  block += "\n" + rule + "\n";
  for (const FamilyText* family : families)
    for (const FunctionText& text : family->functions) {
      if (result_argument(*find_in_catalogue(text.name)) < 0) continue;
      block += "| " + quoted(text.name) + " |";
      for (int i = 0; i <= most; ++i) {
        const ResultText* result = result_text(text, i);
        block += result == nullptr ? " |" : " " + std::string(result->name) + " |";
      }
      block += "\n";
    }
  return block;
}

// What each function makes of its put-or-call selector; functions that agree share a row.
std::string type_matrix() {
  std::map<std::string, std::string> rows;  // by meaning
  std::vector<std::string> order;
  for (const FamilyText* family : families)
    for (const FunctionText& text : family->functions)
      for (const ArgumentText* argument : text.arguments) {
        const std::string name = argument->name;
        if (name != "OptType" && name != "Opttype" && name != "CmpOptType" && name != "WarType" &&
            name != "CallPutStr")
          continue;
        std::string meaning;
        for (int value = 0; value <= 8; ++value) {
          const Choice* found = nullptr;
          for (const Choice& choice : argument->choices)
            if (choice.value == value) found = &choice;
          meaning += std::string(" ") +
                     (found != nullptr                     ? found->meaning
                      : argument->other_choices != nullptr ? argument->other_choices
                                                           : "refused") +
                     " |";
        }
        if (rows.count(meaning) == 0) order.push_back(meaning);
        std::string& names = rows[meaning];
        names += (names.empty() ? "" : ", ") + quoted(text.name);
      }
  std::string block =
      "| functions | 0 | 1 | 2 | 3 | 4 | 5 | 6 | 7 | 8 |\n|---|---|---|---|---|---|---|---|---|---|\n";
  for (const std::string& meaning : order) block += "| " + rows[meaning] + " |" + meaning + "\n";
  return block;
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
