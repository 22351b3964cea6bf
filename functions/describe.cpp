#include "functions/describe.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "functions/example.h"
#include "functions/number_text.h"

namespace kestran {
namespace {

constexpr std::size_t line_width = 100;

// Appends words to a line that began with `indent` blanks' worth of text already, broken at line_width.
void add_words(std::string& text, const std::string& words, std::size_t indent) {
  const std::size_t newline = text.rfind('\n');
  std::size_t column = text.size() - (newline == std::string::npos ? 0 : newline + 1);
  std::size_t begin = 0;
  while (begin < words.size()) {
    const std::size_t end = std::min(words.find(' ', begin), words.size());
    if (column > indent && column + 1 + end - begin > line_width) {
      text += '\n' + std::string(indent, ' ');
      column = indent;
    } else if (column > indent) {
      text += ' ';
      ++column;
    }
    text.append(words, begin, end - begin);
    column += end - begin;
    begin = end + 1;
  }
  text += '\n';
}

struct Row {
  std::string name, meaning;
};

void add_rows(std::string& text, const char* title, const std::vector<Row>& rows) {
  std::size_t widest = 0;
  for (const Row& row : rows) widest = std::max(widest, row.name.size());
  text += '\n' + std::string(title) + '\n';
  for (const Row& row : rows) {
    text += "  " + row.name + std::string(widest + 2 - row.name.size(), ' ');
    add_words(text, row.meaning, widest + 4);
  }
}

std::string kind_of_range(ParameterKind kind) {
  switch (kind) {
    case ParameterKind::line:
      return "range: ";
    case ParameterKind::line_or_number:
      return "range, or one number for all: ";
    case ParameterKind::square:
      return "square block: ";
    case ParameterKind::block:
    case ParameterKind::triangle:
      return "block: ";
    default:
      return "";
  }
}

}  // namespace

std::string signature(const Function& function) {
  std::string text = function.name + std::string("(");
  for (int i = 0; i < function.argument_count; ++i)
    text += (i > 0 ? ", " : "") + std::string(function.arguments[i].name);
  return text + ")";
}

std::string example_formula(const Function& function) {
  const std::string example = text_of(function).example;
  return "=" + std::string(function.name) + example.substr(example.find('('));
}

bool answers(const Function& function, const ResultText& result) {
  const int i = result_argument(function);
  if (i < 0) return true;
  const Argument& selector = function.arguments[i];
  return selector.kind != ParameterKind::selector ||
         (result.selector >= selector.lowest && result.selector <= selector.highest);
}

std::string choices(const Function& function, int i, bool brief) {
  const ArgumentText& argument = *text_of(function).arguments[i];
  const Argument& taken = function.arguments[i];
  const bool refuses = taken.kind == ParameterKind::selector;
  std::string text;
  int greatest = 0;
  for (const Choice& choice : argument.choices) {
    std::string meaning = choice.meaning;
    if (brief) meaning = meaning.substr(0, meaning.find(':'));
    text += (text.empty() ? "" : ", ") + std::to_string(choice.value) + " " + meaning;
    greatest = std::max(greatest, choice.value);
  }
  if (text.empty()) return text;
  if (argument.other_choices != nullptr)
    text += ", " +
            (refuses ? std::to_string(greatest + 1) + " to " + std::to_string(taken.highest)
                     : std::string("any other number")) +
            ": " + argument.other_choices;
  return refuses ? text + ", others refused" : text;
}

std::string argument_meaning(const Function& function, int i, bool brief) {
  const ArgumentText& argument = *text_of(function).arguments[i];
  std::string meaning = kind_of_range(function.arguments[i].kind) + argument.meaning;
  if (argument.choices.count > 0) meaning += ": " + choices(function, i, brief);
  if (argument.unit != Unit::selector) meaning += " (" + std::string(unit_name(argument.unit)) + ")";
  return meaning;
}

std::string result_meaning(const ResultText& result) {
  const std::string meaning = result.meaning + std::string(" (") + result.unit + ")";
  return result.each == ResultText::of_month ? meaning + "; of RetMonth" : meaning;
}

std::string result_names(const Function& function) {
  std::string names;
  if (result_argument(function) < 0) return names;
  for (const ResultText& result : text_of(function).results) {
    if (!answers(function, result)) continue;
    names += (names.empty() ? "" : ", ") + std::to_string(result.selector) +
             (result.each == ResultText::of_period ? " and on " : " ") + result.name;
  }
  return names;
}

std::string description(const Function& function) {
  const FunctionText& about = text_of(function);
  std::string text;
  add_words(text, signature(function), 4);
  text += '\n';
  add_words(text, about.prices, 0);

  std::vector<Row> rows;
  for (int i = 0; i < function.argument_count; ++i) {
    const ArgumentText& argument = *about.arguments[i];
    std::string meaning = argument_meaning(function, i);
    if (i == result_argument(function))
      meaning += ", 0 by default";
    else if (!std::isnan(argument.recommended))
      meaning += "; " + exact_number(argument.recommended) + " is a good choice";
    rows.push_back({argument.name, meaning});
  }
  add_rows(text, "Arguments", rows);

  rows.clear();
  const bool selects = result_argument(function) >= 0;
  for (const ResultText& result : about.results) {
    if (!answers(function, result)) continue;
    std::string name = selects ? std::to_string(result.selector) + " " : "";
    if (result.each == ResultText::of_period) name += "and on ";
    rows.push_back({name + result.name, result_meaning(result)});
  }
  add_rows(text, selects ? "Results" : "Result", rows);

  text += "\nExample\n  " + example_formula(function) + "\n  " +
          exact_number(price(function, operands(example_arguments(about)).data()).number) +
          "\n\nHow far to trust it\n  ";
  add_words(text, about.accuracy, 2);
  if (*about.related != '\0') text += "\nSee also " + std::string(about.related) + "\n";
  return text;
}

}  // namespace kestran
