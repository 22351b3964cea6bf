#include "functions/texts.h"

#include <algorithm>
#include <cstring>

#include "functions/shared_texts.h"

namespace kestran {

static constexpr const FamilyText* all_families[] = {&black_scholes_texts, &exotics_texts, &asian_texts,
                                                     &strips_texts,        &baskets_texts, &rates_texts};
const List<const FamilyText*> families(all_families);

const char* unit_name(Unit unit) {
  switch (unit) {
    case Unit::price:
      return "price";
    case Unit::amount:
      return "money";
    case Unit::rate:
      return "per year, continuous";
    case Unit::semiannual:
      return "per year, semi-annual";
    case Unit::volatility:
      return "per year";
    case Unit::price_volatility:
      return "price per root of a year";
    case Unit::days:
      return "calendar days";
    case Unit::whole_days:
      return "whole calendar days";
    case Unit::trading_days:
      return "trading days";
    case Unit::years:
      return "years";
    case Unit::count:
      return "number";
    case Unit::quantity:
      return "quantity";
    case Unit::correlation:
      return "-1 to 1";
    case Unit::weight:
      return "factor";
    case Unit::ratio:
      return "ratio";
    case Unit::selector:
      break;
  }
  return "selector";
}

// Twins compare equal by the name of what computes them; a function whose twin differs has no text of its
// own.
static const FunctionText& text_named(const Function& function) {
  const char* names[] = {function.computed_by, function.name + (function.name[0] == 'x')};
  for (const char* name : names)
    for (const FamilyText* family : families)
      for (const FunctionText& text : family->functions)
        if (std::strcmp(text.name, name) == 0) return text;
  return families[0]->functions[0];  // never: a test asks for the text of every function
}

namespace {

constexpr int functions = 0
#define FUNCTION(...) +1
#include "functions/function_list.h"
    ;

// The text of each function of the catalogue and the selectors of its results, looked up once.
struct TextsByPlace {
  const FunctionText* texts[functions];
  int selectors[functions][most_results];

  TextsByPlace() {
    for (int i = 0; i < functions; ++i) {
      texts[i] = &text_named(catalogue[i]);
      for (int j = 0; j < texts[i]->results.count; ++j) selectors[i][j] = texts[i]->results[j].selector;
    }
  }
};

const TextsByPlace& texts_by_place() {
  static const TextsByPlace by_place;
  return by_place;
}

}  // namespace

const FunctionText& text_of(const Function& function) {
  return *texts_by_place().texts[&function - catalogue];
}

List<int> selectors_of(const Function& function) {
  const TextsByPlace& by_place = texts_by_place();
  const auto place = &function - catalogue;
  return {by_place.selectors[place], by_place.texts[place]->results.count};
}

std::vector<const Function*> functions_of(const FunctionText& text) {
  std::vector<const Function*> list;
  for (int i = 0; i < catalogue_size; ++i)
    if (&text_of(catalogue[i]) == &text) list.push_back(&catalogue[i]);
  std::stable_sort(list.begin(), list.end(),
                   [&](const Function* a, const Function*) { return std::strcmp(a->name, text.name) == 0; });
  return list;
}

const ResultText* result_text(const FunctionText& text, int selector) {
  for (const ResultText& result : text.results)
    if (result.selector == selector || (result.each == ResultText::of_period && selector > result.selector))
      return &result;
  return nullptr;
}

}  // namespace kestran
