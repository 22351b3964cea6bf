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

// Days between which a number looks like a spreadsheet's date of the years 1990 to 2100.
bool looks_like_a_date(double days) { return days >= 32874.0 && days <= 73415.0; }

std::string per_cent(double share) { return short_number(100.0 * share) + " %"; }

// What is odd about one number of an argument; empty when nothing is.
std::string oddity(const ArgumentText& text, double number) {
  if (std::isnan(number)) return "";
  const double years = text.unit == Unit::years ? number : number / days_per_year;
  const bool may_be_negative = text.low < 0.0;
  switch (text.unit) {
    case Unit::volatility:
      if (number > 3.0) return "is a volatility of " + per_cent(number) + " per year; 25 % is 0.25";
      if (number < 0.0) return "is a negative volatility";
      break;
    case Unit::rate:
    case Unit::semiannual:
      if (std::fabs(number) > 1.0) return "is a rate of " + per_cent(number) + " per year; 5 % is 0.05";
      break;
    case Unit::correlation:
      if (std::fabs(number) > 1.0) return "is a correlation beyond -1 to 1";
      break;
    case Unit::price:
    case Unit::ratio:
      if (number < 0.0 && !may_be_negative) return "is a negative price";
      break;
    case Unit::days:
    case Unit::whole_days:
      if (looks_like_a_date(number)) return "looks like a date; days from today are wanted";
      if (years > 50.0) return "is more than 50 years";
      if (number > 0.0 && number < 1.0) return "is less than a day; days are wanted, not years";
      break;
    case Unit::years:
      if (looks_like_a_date(number)) return "looks like a date; years from today are wanted";
      if (number > 50.0 || number > 5.0 * text.high)
        return "is " + short_number(number) + " years; days were meant?";
      break;
    case Unit::trading_days:
      if (looks_like_a_date(number)) return "looks like a date; trading days are wanted";
      if (number > 0.0 && number < 1.0) return "is less than a day; trading days are wanted, not years";
      break;
    case Unit::count:
      if (number < 0.0) return "is a negative count";
      break;
    default:
      break;
  }
  const bool truncated =
      text.unit == Unit::count || text.unit == Unit::whole_days || text.unit == Unit::selector;
  if (truncated && number != std::trunc(number)) return "counts as " + short_number(std::trunc(number));
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

const Operand* find(const Function& function, const Operand* given, const char* name) {
  for (int i = 0; i < function.argument_count; ++i)
    if (std::strcmp(function.arguments[i].name, name) == 0) return given + i;
  return nullptr;
}

double cell(const Operand& given, int k) { return given.values[std::min(k, cells_of(given) - 1)]; }

// Arguments of which the first must not come after the second.
constexpr const char* in_order[][2] = {
    {"toNext", "toEnd"},   {"toStart", "toEnd"},      {"toVested", "toExp"},   {"BegDays", "EndDays"},
    {"Next1", "End1"},     {"Next2", "End2"},         {"AvgStart", "AvgEnd"},  {"TimeOver", "TimeUnder"},
    {"toNext", "ExpDays"}, {"CmpExpDays", "ExpDays"}, {"Next_rng", "End_rng"}, {"BegDays_rng", "EndDays_rng"},
    {"SetDays", "TotDays"}};

// Counts of fixings with the years from the first fixing to the last, into which they must fit.
constexpr const char* fixings_within[][3] = {
    {"Settles_rng", "Next_rng", "End_rng"}, {"Settle1", "Next1", "End1"}, {"Settle2", "Next2", "End2"}};

void add_slips_of_pairs(const Function& function, const Operand* given, std::vector<std::string>& list) {
  for (const auto& pair : in_order) {
    const Operand* first = find(function, given, pair[0]);
    const Operand* second = find(function, given, pair[1]);
    if (first == nullptr || second == nullptr) continue;
    for (int k = 0; k < std::max(cells_of(*first), cells_of(*second)); ++k)
      if (cell(*first, k) > cell(*second, k)) {
        list.push_back(pair[0] + (" " + short_number(cell(*first, k))) + " is more than " + pair[1] + " " +
                       short_number(cell(*second, k)));
        break;
      }
  }
  for (const auto& names : fixings_within) {
    const Operand* fixings = find(function, given, names[0]);
    const Operand* first = find(function, given, names[1]);
    const Operand* last = find(function, given, names[2]);
    if (fixings == nullptr || first == nullptr || last == nullptr) continue;
    for (int k = 0; k < cells_of(*fixings); ++k) {
      const double days = (cell(*last, k) - cell(*first, k)) * days_per_year + 1.0;
      if (cell(*first, k) > 0.0 && days > 0.0 && cell(*fixings, k) > days + 0.5) {
        list.push_back(names[0] + (" " + short_number(cell(*fixings, k))) + " is more fixings than the " +
                       short_number(days, 3) + " days from " + names[1] + " to " + names[2]);
        break;
      }
    }
  }
}

}  // namespace

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
