#include "functions/explain.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "models/calendar.h"

namespace kestran {
namespace {

struct ReasonText {
  Reason reason;
  const char* text;  // after the argument's name; a whole sentence where no argument is named
};
constexpr ReasonText reason_texts[] = {
    {Reason::missing, "is missing"},
    {Reason::no_number, "is text or a logical value where a number is wanted"},
    {Reason::error_value, "is an error value"},
    {Reason::unreadable, "refers to cells that cannot be read"},
    {Reason::several_cells, "is a range where one number is wanted"},
    {Reason::bad_cell, "has a cell that holds no number"},
    {Reason::too_many_cells, "has more cells than are taken"},
    {Reason::rows_and_columns, "has several rows and several columns"},
    {Reason::not_square, "must have a row and a column for each cell of the ranges before it"},
    {Reason::beside_ranges, "is a single number beside ranges"},
    {Reason::length, "has another length than the other ranges"},
    {Reason::out_of_range, "is not a number that can be chosen"},
    {Reason::wrong_sign, "has the wrong sign"},
    {Reason::no_memory, "found no memory"},
    {Reason::single_strip, "single numbers make no strip here: at least two cells a range are wanted"},
    {Reason::sizes, "the sizes of the ranges do not fit together"},
    {Reason::result, "there is no such result"},
    {Reason::month, "RetMonth is not one of the months or periods of the strip"},
    {Reason::fixings_made, "the count of fixings made is negative"},
    {Reason::fixings, "there are more fixings, or more days of fixings, than are priced, or fewer than none"},
    {Reason::days, "there are more days than are priced"},
    {Reason::tree_steps, "Tsteps is below 0 or above 10,000"},
};

const char* text_of(Reason reason) {
  for (const ReasonText& one : reason_texts)
    if (one.reason == reason) return one.text;
  return "";
}

int cells_of(const Operand& given) { return given.rows > 0 ? given.rows * given.columns : 1; }

// A spreadsheet's dates of the years 1990 to 2100.
constexpr double before_dates = 32873.0, after_dates = 73416.0;

std::string per_cent(double share) { return short_number(100.0 * share) + " %"; }

// The words with the number in its place.
std::string filled(std::string words, double number) {
  const std::size_t share = words.find("{%}");
  if (share != std::string::npos) words.replace(share, 3, per_cent(number));
  const std::size_t plain = words.find("{}");
  if (plain != std::string::npos) words.replace(plain, 2, short_number(number));
  return words;
}

// What is odd about one number of an argument; empty when nothing is.
std::string oddity(const ArgumentText& text, double number) {
  if (std::isnan(number)) return "";
  for (const OddNumbers& odd : odd_numbers(text))
    if (!(number <= odd.above || number >= odd.below)) return filled(odd.words, number);
  if (counts_whole(text) && number != std::trunc(number))
    return "counts as " + short_number(std::trunc(number));
  return "";
}

// Whether the unit's name may follow a number.
bool has_words(Unit unit) {
  switch (unit) {
    case Unit::rate:
    case Unit::semiannual:
    case Unit::volatility:
    case Unit::days:
    case Unit::whole_days:
    case Unit::trading_days:
    case Unit::years:
      return true;
    default:
      return false;
  }
}

double cell(const Operand& given, int k) { return given.values[std::min(k, cells_of(given) - 1)]; }

// Arguments of which the first must not be more than the second.
constexpr const char* ordered_names[][2] = {
    {"toNext", "toEnd"},   {"toStart", "toEnd"},      {"toVested", "toExp"},   {"BegDays", "EndDays"},
    {"Next1", "End1"},     {"Next2", "End2"},         {"AvgStart", "AvgEnd"},  {"TimeOver", "TimeUnder"},
    {"toNext", "ExpDays"}, {"CmpExpDays", "ExpDays"}, {"Next_rng", "End_rng"}, {"BegDays_rng", "EndDays_rng"},
    {"SetDays", "TotDays"}};

// Counts of fixings with the years from the first fixing to the last, into which they must fit.
constexpr const char* names_of_fixings[][3] = {
    {"Settles_rng", "Next_rng", "End_rng"}, {"Settle1", "Next1", "End1"}, {"Settle2", "Next2", "End2"}};

int place_of(const Function& function, const char* name) {
  for (int i = 0; i < function.argument_count; ++i)
    if (std::strcmp(function.arguments[i].name, name) == 0) return i;
  return -1;
}

// Those of the lists of names that the function has all of, as places.
template <std::size_t size, std::size_t lists>
std::vector<std::array<int, size>> places(const Function& function, const char* const (&names)[lists][size]) {
  std::vector<std::array<int, size>> found;
  for (const auto& list : names) {
    std::array<int, size> place{};
    std::transform(list, list + size, place.begin(),
                   [&](const char* name) { return place_of(function, name); });
    if (*std::min_element(place.begin(), place.end()) >= 0) found.push_back(place);
  }
  return found;
}

void add_slips_of_pairs(const Function& function, const Operand* given, std::vector<std::string>& list) {
  for (const auto& [a, b] : in_order(function)) {
    const Operand &first = given[a], &second = given[b];
    for (int k = 0; k < std::max(cells_of(first), cells_of(second)); ++k)
      if (cell(first, k) > cell(second, k)) {
        list.push_back(function.arguments[a].name + (" " + short_number(cell(first, k))) + " is more than " +
                       function.arguments[b].name + " " + short_number(cell(second, k)));
        break;
      }
  }
  for (const auto& [n, a, b] : fixings_within(function)) {
    const Operand &fixings = given[n], &first = given[a], &last = given[b];
    for (int k = 0; k < cells_of(fixings); ++k) {
      const double days = (cell(last, k) - cell(first, k)) * days_per_year + 1.0;
      if (cell(first, k) > 0.0 && days > 0.0 && cell(fixings, k) > days + 0.5) {
        list.push_back(function.arguments[n].name + (" " + short_number(cell(fixings, k))) +
                       " is more fixings than the " + short_number(days, 3) + " days from " +
                       function.arguments[a].name + " to " + function.arguments[b].name);
        break;
      }
    }
  }
}

}  // namespace

std::vector<OddNumbers> odd_numbers(const ArgumentText& text) {
  switch (text.unit) {
    case Unit::volatility:
      return {{3.0, none, "is a volatility of {%} per year; 25 % is 0.25"},
              {none, 0.0, "is a negative volatility"}};
    case Unit::rate:
    case Unit::semiannual:
      return {{1.0, none, "is a rate of {%} per year; 5 % is 0.05"},
              {none, -1.0, "is a rate of {%} per year; 5 % is 0.05"}};
    case Unit::correlation:
      return {{1.0, none, "is a correlation beyond -1 to 1"},
              {none, -1.0, "is a correlation beyond -1 to 1"}};
    case Unit::price:
    case Unit::ratio:
      if (text.low < 0.0) return {};
      return {{none, 0.0, "is a negative price"}};
    case Unit::days:
    case Unit::whole_days:
      return {{before_dates, after_dates, "looks like a date; days from today are wanted"},
              {50.0 * days_per_year, none, "is more than 50 years"},
              {0.0, 1.0, "is less than a day; days are wanted, not years"}};
    case Unit::years:
      return {{before_dates, after_dates, "looks like a date; years from today are wanted"},
              {std::fmin(50.0, 5.0 * text.high), none, "is {} years; days were meant?"}};
    case Unit::trading_days:
      return {{before_dates, after_dates, "looks like a date; trading days are wanted"},
              {0.0, 1.0, "is less than a day; trading days are wanted, not years"}};
    case Unit::count:
      return {{none, 0.0, "is a negative count"}};
    default:
      return {};
  }
}

bool counts_whole(const ArgumentText& text) {
  return text.unit == Unit::count || text.unit == Unit::whole_days || text.unit == Unit::selector;
}

std::vector<std::array<int, 2>> in_order(const Function& function) { return places(function, ordered_names); }

std::vector<std::array<int, 3>> fixings_within(const Function& function) {
  return places(function, names_of_fixings);
}

std::string short_number(double number, int digits) {
  char text[40];
  std::snprintf(text, sizeof text, "%.*g", digits, number);
  return text;
}

std::string understood(const Function& function, int i, const Operand& given) {
  const ArgumentText& text = *text_of(function).arguments[i];
  const int cells = cells_of(given);
  if (given.rows > 0 && cells > 1) {
    const auto [least, greatest] = std::minmax_element(given.values, given.values + cells);
    const std::string shown = std::to_string(given.rows) + " x " + std::to_string(given.columns) +
                              " cells, " + short_number(*least) + " to " + short_number(*greatest);
    return has_words(text.unit) ? shown + " " + unit_name(text.unit) : shown;
  }
  const double number = *given.values;
  if (std::isnan(number)) return "missing";
  if (text.unit == Unit::selector) {
    const int value = truncate_to_int(number);
    const std::string shown = std::to_string(value);
    if (i == result_argument(function)) {
      const ResultText* result = result_text(text_of(function), value);
      return result == nullptr ? shown : shown + ": " + result->name;
    }
    for (const Choice& choice : text.choices)
      if (choice.value == value) return shown + ": " + choice.meaning;
    return text.other_choices == nullptr ? shown : shown + ": " + text.other_choices;
  }
  const std::string shown = short_number(number, 15);
  switch (text.unit) {
    case Unit::days:
    case Unit::whole_days:
      return shown + " days = " + short_number(number / days_per_year, 4) + " years";
    case Unit::years:
      return shown + " years = " + short_number(number * days_per_year) + " days";
    case Unit::trading_days:
      return shown + " trading days";
    case Unit::rate:
    case Unit::semiannual:
    case Unit::volatility:
      return shown + " = " + per_cent(number) + " " + unit_name(text.unit);
    case Unit::price_volatility:
      return shown + " in units of price per root of a year";
    default:
      return shown;
  }
}

std::string refused_numbers(const Argument& argument) {
  switch (argument.kind) {
    case ParameterKind::selector:
      return argument.highest == TakenNumber::highest
                 ? "below " + std::to_string(argument.lowest)
                 : "outside " + std::to_string(argument.lowest) + " to " + std::to_string(argument.highest);
    case ParameterKind::positive:
      return "not above 0";
    case ParameterKind::not_negative:
    case ParameterKind::not_negative_days:
      return "below 0";
    default:
      return "";
  }
}

std::string refusal_text(const Function& function, const Operand* given, const Answer& answer) {
  if (answer.is_number()) return "";
  const int i = answer.argument;
  if (answer.reason == Reason::result) {
    const int selector = result_argument(function);
    const char* name = selector < 0 ? "RetType" : function.arguments[selector].name;
    return name + (given == nullptr ? "" : " " + short_number(*given[selector].values)) + " is no result";
  }
  if (i < 0) return text_of(answer.reason);
  const Argument& argument = function.arguments[i];
  std::string text = argument.name;
  if (given != nullptr && given[i].rows == 0 && !std::isnan(*given[i].values))
    text += " " + short_number(*given[i].values, 15);
  if ((answer.reason == Reason::out_of_range && argument.kind == ParameterKind::selector) ||
      answer.reason == Reason::wrong_sign)
    return text + " is " + refused_numbers(argument);
  return text + " " + text_of(answer.reason);
}

std::vector<std::string> refusals(const Function& function, const Operand* given) {
  std::vector<Operand> mended(given, given + function.argument_count);
  std::vector<std::string> list;
  for (int k = 0; k <= function.argument_count; ++k) {
    const Answer answer = price(function, mended.data());
    if (answer.is_number()) break;
    list.push_back(refusal_text(function, given, answer));
    const int i = answer.argument;
    if (i < 0 || is_range(function.arguments[i].kind)) break;
    static constexpr double one = 1.0;
    mended[static_cast<std::size_t>(i)] = {&one};
  }
  return list;
}

std::vector<std::string> slips(const Function& function, const Operand* given) {
  const FunctionText& text = text_of(function);
  std::vector<std::string> list;
  for (int i = 0; i < function.argument_count; ++i)
    for (int k = 0; k < cells_of(given[i]); ++k) {
      const std::string odd = oddity(*text.arguments[i], given[i].values[k]);
      if (odd.empty()) continue;
      list.push_back(function.arguments[i].name + (" " + short_number(given[i].values[k], 15)) + " " + odd);
      break;
    }
  add_slips_of_pairs(function, given, list);
  return list;
}

std::vector<std::string> warnings(const Function& function, const Operand* given, const Answer& answer) {
  std::vector<std::string> list = slips(function, given);
  if (answer.is_number() && !std::isfinite(answer.number))
    list.push_back("the model has no number for these arguments");
  return list;
}

}  // namespace kestran
