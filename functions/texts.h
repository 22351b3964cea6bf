// What the arguments and results of the worksheet functions mean: the one source of every host's help and of
// the tables in README and docs/functions.md. Twins share their texts.
#pragma once

#include <limits>
#include <vector>

#include "functions/catalogue.h"

namespace kestran {

template <class Item>
struct List {
  const Item* items = nullptr;
  int count = 0;

  constexpr List() = default;
  template <int size>
  constexpr List(const Item (&array)[size]) : items(array), count(size) {}
  constexpr List(const Item* first, int size) : items(first), count(size) {}
  const Item* begin() const { return items; }
  const Item* end() const { return items + count; }
  const Item& operator[](int i) const { return items[i]; }
};

enum class Unit : unsigned char {
  price,             // money per unit of the underlying
  amount,            // money
  rate,              // continuous, per year
  semiannual,        // a rate compounded twice a year
  volatility,        // per root of a year, as a share of the price
  price_volatility,  // the same in units of price
  days,              // calendar days, need not be whole
  whole_days,        // calendar days, truncated
  trading_days,
  years,
  count,        // a number of things, truncated
  quantity,     // of the underlying, any unit
  correlation,  // -1 to 1
  weight,       // a plain factor
  ratio,        // one price over another
  selector      // one of the choices
};

/// "per year", "days" and the like, for people.
const char* unit_name(Unit unit);

struct Choice {
  int value;
  const char* meaning;
};

/// What an argument is to a picture of its function.
enum class Role : unsigned char {
  plain,
  driver,   // what a picture moves first
  barrier,  // which lies at or below the first driver, or above it, and stays on that side
  clock,    // a time that runs down
  expiry,   // the same, to the payoff: the deal's life ends there
  start,    // the same, to the first fixing: from there on the deal depends on what was fixed
  setting,  // the same, to the day that sets the strike; 0 or less where it is set
  month     // of which month, contract or period a result is wanted
};

constexpr double none = std::numeric_limits<double>::quiet_NaN();

struct ArgumentText {
  const char* name;
  const char* meaning;  // stands alone
  Unit unit;
  double low = none;  // a range over which a picture says something
  double high = none;
  double recommended = none;
  List<Choice> choices = {};
  const char* other_choices = nullptr;  // what any other number means; null when it is refused
  Role role = Role::plain;
};

struct ResultText {
  int selector;         // the RetType that asks for it
  const char* name;     // one word, the same for what is the same in all functions
  const char* meaning;  // stands alone
  const char* unit;
  enum Each : unsigned char { one, of_month, of_period } each = one;
  // of_month: RetMonth says of which; of_period: selector + k asks for period k, counted from 0
  double no_answer = none;  // a number that says there is none
};

struct FunctionText {
  const char* name;  // without the x of a twin
  const char* headline;
  const char* prices;                   // what it prices and how, in one to three sentences
  List<const ArgumentText*> arguments;  // in worksheet order
  List<ResultText> results;
  const char* accuracy;  // how far to trust it
  const char* related;   // names of functions to look at as well, separated by ", "; empty for none
  const char* example;   // a call that prices
};

struct FamilyText {
  const char* title;
  List<FunctionText> functions;
};

/// In the order of the README.
extern const List<const FamilyText*> families;

const FunctionText& text_of(const Function& function);

/// The functions that a text belongs to, twins with an x in front last.
std::vector<const Function*> functions_of(const FunctionText& text);

/// The selectors of the results in the function's text, in its order, of which there are at most
/// `most_results`.
List<int> selectors_of(const Function& function);
constexpr int most_results = 32;

/// Which argument asks for the result, by its place; -1 when there is one result only.
inline int result_argument(const Function& function) { return function.result_argument; }

/// The result that this RetType asks for; null when there is none, as for one that is refused.
const ResultText* result_text(const FunctionText& text, int selector);

}  // namespace kestran
