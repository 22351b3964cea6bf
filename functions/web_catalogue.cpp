#include "functions/web_catalogue.h"

#include <cmath>
#include <string_view>

#include "functions/describe.h"
#include "functions/example.h"
#include "functions/explain.h"
#include "functions/number_text.h"
#include "functions/utf8.h"

namespace kestran {
namespace {

// Writes members one after another; commas stand before all but the first of an object or a list.
class Writer {
 public:
  void open(char bracket) {
    separate();
    json += bracket;
    first = true;
  }
  void close(char bracket) {
    json += bracket;
    first = false;
  }
  Writer& member(const char* name) {
    separate();
    json += '"' + std::string(name) + "\":";
    first = true;
    return *this;
  }
  void text(std::string_view value) { raw(json_quoted(value)); }
  void number(double value) { raw(std::isfinite(value) ? exact_number(value) : "null"); }
  void truth(bool value) { raw(value ? "true" : "false"); }
  void nothing() { raw("null"); }
  std::string json;

 private:
  void raw(std::string_view value) {
    separate();
    json += value;
  }
  void separate() {
    if (!first) json += ',';
    first = false;
  }
  bool first = true;
};

const char* key_of(Unit unit) {
  constexpr const char* keys[] = {
      "price",       "amount",     "rate",         "semiannual", "volatility", "price_volatility",
      "days",        "whole_days", "trading_days", "years",      "count",      "quantity",
      "correlation", "weight",     "ratio",        "selector"};
  return keys[static_cast<int>(unit)];
}

const char* key_of(Role role) {
  constexpr const char* keys[] = {"plain",  "driver", "barrier", "clock",
                                  "expiry", "start",  "setting", "month"};
  return keys[static_cast<int>(role)];
}

const char* key_of(ParameterKind kind) {
  constexpr const char* keys[] = {
      "number", "days",           "integer", "selector", "positive", "not_negative", "not_negative_days",
      "line",   "line_or_number", "square",  "block",    "triangle"};
  return keys[static_cast<int>(kind)];
}

const char* key_of(ResultText::Each each) {
  return each == ResultText::of_month ? "month" : each == ResultText::of_period ? "period" : "one";
}

const char* key_of(Length length) {
  return length == Length::shortest ? "shortest" : length == Length::last ? "last" : "equal";
}

void write_bound(Writer& to, const char* name, bool there, int bound) {
  to.member(name);
  there ? to.number(bound) : to.nothing();
}

void write_cells(Writer& to, ParameterKind kind, const GivenArgument& given) {
  if (given.rows == 0) return to.number(given.values[0]);
  const bool rows = !is_line(kind);
  to.open('[');
  for (std::size_t i = 0; i < given.values.size(); ++i) {
    const auto column = i % static_cast<std::size_t>(given.columns);
    if (rows && column == 0) to.open('[');
    to.number(given.values[i]);
    if (rows && column + 1 == static_cast<std::size_t>(given.columns)) to.close(']');
  }
  to.close(']');
}

void write_argument(Writer& to, const Function& function, int i, const GivenArgument& example) {
  const Argument& argument = function.arguments[i];
  const ArgumentText& about = *text_of(function).arguments[i];
  const bool selects = argument.kind == ParameterKind::selector;
  to.open('{');
  to.member("name").text(argument.name);
  to.member("meaning").text(about.meaning);
  to.member("unit").text(key_of(about.unit));
  to.member("unitName").text(about.unit == Unit::selector ? "" : unit_name(about.unit));
  to.member("role").text(key_of(about.role));
  to.member("kind").text(key_of(argument.kind));
  to.member("shape").text(!is_range(argument.kind) ? "number" : is_line(argument.kind) ? "range" : "block");
  write_bound(to, "lowest", selects, argument.lowest);
  write_bound(to, "highest", selects && argument.highest != TakenNumber::highest, argument.highest);
  to.member("refused").text(refused_numbers(argument));
  to.member("low").number(about.low);
  to.member("high").number(about.high);
  to.member("recommended").number(about.recommended);
  to.member("choices").open('[');
  for (const Choice& choice : about.choices) {
    to.open('{');
    to.member("value").number(choice.value);
    to.member("meaning").text(choice.meaning);
    to.close('}');
  }
  to.close(']');
  to.member("otherChoices");
  about.other_choices == nullptr ? to.nothing() : to.text(about.other_choices);
  write_cells(to.member("example"), argument.kind, example);
  to.close('}');
}

const Function* twin_of(const Function& function) {
  const std::string name = function.name;
  const Function* twin = find_in_catalogue(name[0] == 'x' ? function.name + 1 : ("x" + name).c_str());
  return twin != nullptr && &text_of(*twin) == &text_of(function) ? twin : nullptr;
}

void write_names(Writer& to, std::string_view names) {
  to.open('[');
  while (!names.empty()) {
    const std::size_t end = names.find(", ");
    to.text(names.substr(0, end));
    names.remove_prefix(end == std::string_view::npos ? names.size() : end + 2);
  }
  to.close(']');
}

void write_function(Writer& to, const Function& function, const char* family) {
  const FunctionText& about = text_of(function);
  const std::vector<GivenArgument> example = example_arguments(about);
  const Function* const twin = twin_of(function);
  to.open('{');
  to.member("name").text(function.name);
  to.member("twin");
  twin == nullptr ? to.nothing() : to.text(twin->name);
  to.member("family").text(family);
  to.member("description").text(function.description);
  to.member("headline").text(about.headline);
  to.member("prices").text(about.prices);
  to.member("accuracy").text(about.accuracy);
  write_names(to.member("related"), about.related);
  to.member("example").text(example_formula(function));
  to.member("arguments").open('[');
  for (int i = 0; i < function.argument_count; ++i)
    write_argument(to, function, i, example[static_cast<std::size_t>(i)]);
  to.close(']');
  write_bound(to, "resultArgument", result_argument(function) >= 0, result_argument(function));
  to.member("results").open('[');
  for (const ResultText& result : about.results) {
    if (!answers(function, result)) continue;
    to.open('{');
    to.member("selector").number(result.selector);
    to.member("name").text(result.name);
    to.member("meaning").text(result.meaning);
    to.member("unit").text(result.unit);
    to.member("each").text(key_of(result.each));
    to.member("noAnswer").number(result.no_answer);
    to.close('}');
  }
  to.close(']');
  to.member("length");
  function.takes_ranges ? to.text(key_of(function.frame.length)) : to.nothing();
  to.member("singles").truth(function.frame.singles == Singles::priced);
  to.close('}');
}

// Of each text of a family the functions that it is about, the plain name before its twin.
template <class Visit>
void visit_functions(const FamilyText& family, const Visit& visit) {
  for (const FunctionText& text : family.functions)
    for (const bool twins : {false, true})
      for (int i = 0; i < catalogue_size; ++i)
        if (&text_of(catalogue[i]) == &text && twins == (catalogue[i].name != std::string_view(text.name)))
          visit(catalogue[i]);
}

}  // namespace

std::string web_catalogue(const std::string& version) {
  Writer to;
  to.open('{');
  to.member("version").text(version);
  to.member("families").open('[');
  for (const FamilyText* family : families) {
    to.open('{');
    to.member("title").text(family->title);
    to.member("functions").open('[');
    visit_functions(*family, [&](const Function& function) { to.text(function.name); });
    to.close(']');
    to.close('}');
  }
  to.close(']');
  to.member("functions").open('[');
  for (const FamilyText* family : families)
    visit_functions(*family, [&](const Function& function) { write_function(to, function, family->title); });
  to.close(']');
  to.close('}');
  return std::move(to.json);
}

}  // namespace kestran
