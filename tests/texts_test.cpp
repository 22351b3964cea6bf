// The texts of the functions: none missing, none that contradicts what the function does.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <sstream>
#include <string>

#include "functions/catalogue_json.h"
#include "functions/describe.h"
#include "functions/example.h"
#include "functions/explain.h"
#include "functions/nearest.h"
#include "functions/written_call.h"
#include "tests/case_files.h"

namespace kestran {
namespace {

// What a text must not say: it stands alone in a spreadsheet's function wizard.
void expect_whole(const std::string& text, const std::string& where) {
  EXPECT_GE(text.size(), 4u) << where;
  for (const char* vague : {"the same as", "the same for", "the same on", "the same with", "as in EURO",
                            "as in AS", "see ", "likewise", "ditto"})
    EXPECT_EQ(text.find(vague), std::string::npos) << where << ": " << text;
}

void expect_sensible(const Function& function, int i) {
  const Argument& argument = function.arguments[i];
  const ArgumentText& text = *text_of(function).arguments[i];
  const std::string where = std::string(function.name) + "." + argument.name;
  EXPECT_STREQ(text.name, argument.name) << where;
  expect_whole(text.meaning, where);
  if (i == result_argument(function)) return;
  EXPECT_LT(text.low, text.high) << where;
  const bool in_days =
      argument.kind == ParameterKind::days || argument.kind == ParameterKind::not_negative_days;
  if (in_days) {
    EXPECT_EQ(text.unit, Unit::days) << where;
  }
  if (text.unit == Unit::selector) {
    EXPECT_GT(text.choices.count, 0) << where;
  }
  for (const Choice& choice : text.choices) EXPECT_GE(std::string(choice.meaning).size(), 2u) << where;
  if (argument.kind != ParameterKind::selector || text.choices.count == 0) return;
  std::set<int> chosen;
  for (const Choice& choice : text.choices) {
    chosen.insert(choice.value);
    EXPECT_TRUE(choice.value >= argument.lowest && choice.value <= argument.highest) << where << choice.value;
  }
  const int values = argument.highest - argument.lowest + 1;
  EXPECT_TRUE(text.other_choices != nullptr || static_cast<int>(chosen.size()) == values) << where;
}

TEST(Texts, StandForEveryArgumentAndResult) {
  for (int f = 0; f < catalogue_size; ++f) {
    const Function& function = catalogue[f];
    const FunctionText& text = text_of(function);
    EXPECT_TRUE(text.name == std::string(function.name) || "x" + std::string(text.name) == function.name)
        << function.name;
    ASSERT_EQ(text.arguments.count, function.argument_count) << function.name;
    ASSERT_LE(text.results.count, most_results) << function.name;
    for (int i = 0; i < function.argument_count; ++i) expect_sensible(function, i);
    expect_whole(text.prices, function.name);
    expect_whole(text.headline, function.name);
    EXPECT_GE(std::string(text.accuracy).size(), 10u) << function.name;
    std::set<std::string> names;
    for (const ResultText& result : text.results) {
      expect_whole(result.meaning, std::string(function.name) + " " + result.name);
      EXPECT_TRUE(names.insert(result.name).second) << function.name << " has two results " << result.name;
      for (const char* c = result.name; *c != '\0'; ++c)
        EXPECT_TRUE(*c == '_' || (*c >= 'a' && *c <= 'z') || (*c >= '0' && *c <= '9')) << result.name;
      EXPECT_STRNE(result.unit, "") << function.name;
    }
    std::istringstream related(text.related);
    for (std::string name; std::getline(related >> std::ws, name, ',');)
      EXPECT_NE(find_in_catalogue(name.c_str()), nullptr) << function.name << " sends to " << name;
  }
}

// Every result that has a text prices in the example, and no number without a text answers anything but 0.
TEST(Texts, GivePicturesWhatTheyMoveAndWhatRunsDown) {
  for (int f = 0; f < catalogue_size; ++f) {
    const FunctionText& text = text_of(catalogue[f]);
    const bool prices = text.results[0].name == std::string("premium");
    int drivers = 0, ends = 0, months = 0;
    for (const ArgumentText* argument : text.arguments) {
      const Role role = argument->role;
      const bool runs_down = role >= Role::clock && role <= Role::setting;
      const bool is_time =
          argument->unit == Unit::days || argument->unit == Unit::whole_days || argument->unit == Unit::years;
      drivers += role == Role::driver;
      ends += role == Role::expiry || role == Role::start;
      months += role == Role::month;
      EXPECT_TRUE(!runs_down || is_time || argument->unit == Unit::trading_days) << text.name;
      EXPECT_TRUE(!prices || runs_down || !is_time) << text.name << "." << argument->name;
    }
    EXPECT_GT(drivers, 0) << text.name;
    EXPECT_TRUE(!prices || ends > 0) << text.name;
    for (const ResultText& result : text.results)
      EXPECT_TRUE(result.each != ResultText::of_month || months == 1) << text.name;
  }
}

TEST(Texts, NameEveryResultThatPrices) {
  for (int f = 0; f < catalogue_size; ++f) {
    const Function& function = catalogue[f];
    const FunctionText& text = text_of(function);
    const int selector = result_argument(function);
    std::vector<GivenArgument> given = example_arguments(text);
    if (selector < 0) {
      EXPECT_EQ(text.results.count, 1) << function.name;
      continue;
    }
    if (text.arguments[selector]->other_choices != nullptr) continue;  // any number chooses one
    for (int value = -1; value <= 26; ++value) {
      given[static_cast<std::size_t>(selector)].values = {double(value)};
      const Answer answer = price(function, operands(given).data());
      const ResultText* result = result_text(text, value);
      if (result != nullptr && answers(function, *result)) {
        EXPECT_TRUE(answer.is_number()) << function.name << " " << value;
      } else {
        EXPECT_TRUE(!answer.is_number() || answer.number == 0.0) << function.name << " answers " << value;
      }
    }
  }
}

TEST(Texts, ExamplesAreTheOnesWorkedOutIndependently) {
  std::set<std::string> worked_out;
  for (const FormulaCase& one : read_case_files())
    if (one.place.rfind("examples.cases", 0) == 0) worked_out.insert("=" + one.formula);
  for (const FamilyText* family : families)
    for (const FunctionText& text : family->functions)
      EXPECT_EQ(worked_out.count(text.example), 1u) << text.example;
}

TEST(Texts, DescriptionsFillTheirLines) {
  for (int place = 0; place < catalogue_size; ++place) {
    std::istringstream lines(description(catalogue[place]));
    std::size_t indent = 0, length = 0, meaning = 0;
    for (std::string line; std::getline(lines, line);) {
      const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
      const std::size_t word = std::min(line.find(' ', begin), line.size()) - begin;
      EXPECT_TRUE(line.size() <= 100 || line[begin] == '=') << line;  // a formula is one
      // So deep stand only lines that go on.
      EXPECT_FALSE(begin > 8 && begin == indent && length + 1 + word <= 100) << line;
      if (begin == 2) meaning = line.find_first_not_of(' ', line.find("  ", begin));
      EXPECT_TRUE(begin <= 4 || begin == meaning) << line;
      indent = begin;
      length = line.size();
    }
  }
}

TEST(WrittenCalls, ReadAsEachHostWantsThem) {
  const double euro[] = {100, 95, 0.05, NAN, INFINITY, 90, 1, 0};
  std::vector<Operand> given;
  for (const double& number : euro) given.push_back({&number});
  const Function& function = *find_in_catalogue("EURO");
  EXPECT_EQ(sheet_call(function, given.data()), "=EURO(100,95,0.05,,inf,90,1,0)");
  EXPECT_EQ(python_call(function, given.data()),
            "kestran.EURO(Price=100, Strike=95, IntRt=0.05, Yield=None, Vol=float('inf'), ExpDays=90, "
            "OptType=1, RetType=0)");
  EXPECT_EQ(
      postgres_call(function, given.data()),
      "kestran.euro(price => 100, strike => 95, intrt => 0.05, yield => 'nan', vol => 'inf', expdays => 90, "
      "opttype => 1, rettype => 0)");
  EXPECT_EQ(postgres_name("AMERZaz_2"), "amerzaz_2");
  const double numbers[] = {3, 1, 0.5, 0.25, 1, 2};
  const Operand line = {numbers, 2, 1}, square = {numbers + 1, 2, 2}, time = {numbers + 5};
  const Operand basket[] = {line, line, line, line, square, time};
  const Function& ranges = *find_in_catalogue("BASVOL");
  EXPECT_EQ(sheet_call(ranges, basket), "=BASVOL({3;1},{3;1},{3;1},{3;1},{1,0.5;0.25,1},2)");
  EXPECT_EQ(duckdb_call(ranges, basket), "BASVOL([3,1],[3,1],[3,1],[3,1],[[1,0.5],[0.25,1]],2)");
  EXPECT_EQ(python_call(ranges, basket),
            "kestran.BASVOL(Forward_Price=[3, 1], Annual_Vol=[3, 1], Drift=[3, 1], Weight=[3, 1], "
            "Correl_Matrix=[[1, 0.5], [0.25, 1]], ExpTime=2)");
}

TEST(Texts, ReadArgumentsOfTablesAndFormulas) {
  const struct {
    const char* text;
    std::vector<double> values;
    int rows, columns;
  } rows[] = {{"100", {100}, 0, 0},
              {" -2.5% ", {-0.025}, 0, 0},
              {"40/365.25", {40 / 365.25}, 0, 0},
              {"1E-8", {1e-8}, 0, 0},
              {"20;21;22", {20, 21, 22}, 3, 1},
              {"1;0.5|0.5;1", {1, .5, .5, 1}, 2, 2},
              {"{1,2;3,4}", {1, 2, 3, 4}, 2, 2},
              {"{1;2}", {1, 2}, 2, 1},
              {"{7}", {7}, 1, 1}};
  for (const auto& row : rows) {
    GivenArgument given;
    ASSERT_TRUE(read_argument(row.text, given)) << row.text;
    EXPECT_EQ(given.values, row.values) << row.text;
    EXPECT_EQ(given.rows, row.rows) << row.text;
    EXPECT_EQ(given.columns, row.columns) << row.text;
  }
  GivenArgument given;
  ASSERT_TRUE(read_argument("", given));
  EXPECT_TRUE(std::isnan(given.values[0]));
  for (const char* wrong : {"x", "1 2", "1;2|3", "{1,2;3}", "5%%", "1/", "TRUE", "12.3.4"})
    EXPECT_FALSE(read_argument(wrong, given)) << wrong;
}

TEST(Texts, RefusalsNameTheArgumentAndTheReason) {
  const struct {
    const char* function;
    std::vector<const char*> given;
    std::vector<std::string> reasons;
  } rows[] = {
      {"EURO", {"100", "95", "5%", "2%", "25%", "90", "1", "0"}, {}},
      {"EURO",
       {"100", "", "5%", "2%", "25%", "{1,2}", "1", "12"},
       {"ExpDays is a range where one number is wanted", "Strike is missing",
        "RetType 12 is outside 0 to 8"}},
      {"DIGITAL",
       {"10", "-1", "105", "5%", "2%", "30%", "-1", "1", "0"},
       {"Price -1 is not above 0", "ExpDays -1 is below 0"}},
      {"AMERB", {"1", "1", "1", "1", "1", "1", "1", "0", "0"}, {"Nsteps 0 is below 1"}},
      {"SWAPTION",
       {"{1,2}", "{1,2}", "{1,2}", "{1,2}", "1", "1", "1", "1", "1", "1", "3"},
       {"RetMonth is not one of the months or periods of the strip"}},
      {"XCOL", {"{1,2}", "{1,2,3}", "{1,2}", "{1,2}", "1", "1", "1", "1", "1", "1", "1"}, {"IntRt_rng"}},
      {"SWAPTION",
       {"{1,2,3}", "{1,2,3}", "{1,2}", "{1,2,3}", "1", "1", "1", "1", "1", "1", "1"},
       {"Swaptime has another length"}},
      {"BASVOLT", {"{1,2}", "{1,2}", "", "{1,2}", "1", "1", "0"}, {"Weight_rng is missing"}},
      {"BASVOL",
       {"{1,2}", "1", "{1,2}", "{1,2}", "{1,2;3,4}", "1"},
       {"Annual_Vol 1 is a single number beside ranges"}},
  };
  for (const auto& row : rows) {
    const Function& function = *find_in_catalogue(row.function);
    std::vector<GivenArgument> given(row.given.size());
    for (std::size_t i = 0; i < given.size(); ++i) ASSERT_TRUE(read_argument(row.given[i], given[i]));
    const std::vector<std::string> found = refusals(function, operands(given).data());
    ASSERT_EQ(found.size(), row.reasons.size()) << row.function;
    for (std::size_t i = 0; i < found.size(); ++i)
      EXPECT_NE(found[i].find(row.reasons[i]), std::string::npos) << found[i];
  }
}

TEST(Texts, NamesThatWereMeant) {
  const std::pair<const char*, const char*> rows[] = {
      {"SAN", "ASN"}, {"AS", "ASN"}, {"asnn", "ASN"}, {"EURRO", "EURO"}, {"xSAN", "xASN"}};
  for (const auto& [written, meant] : rows) {
    ASSERT_NE(nearest_function(written), nullptr) << written;
    EXPECT_STREQ(nearest_function(written)->name, meant);
  }
  for (const char* other : {"", "SNA2", "Q", "EUROEUROEUROEUROEUROEUROEUROEUROE"})
    EXPECT_EQ(nearest_function(other), nullptr) << other;
}

// The brackets of a JSON text outside its strings, and whether each is closed by its like.
bool is_nested(const std::string& json) {
  std::string open;
  bool quoted = false;
  for (std::size_t i = 0; i < json.size(); ++i) {
    const char mark = json[i];
    if (mark == '"') quoted = !quoted;
    if (quoted && mark == '\\') ++i;
    if (quoted || mark == '"') continue;
    if (mark == '{' || mark == '[') open += mark == '{' ? '}' : ']';
    if (mark != '}' && mark != ']') continue;
    if (open.empty() || open.back() != mark) return false;
    open.pop_back();
  }
  return open.empty() && !quoted;
}

TEST(Texts, TheCatalogueAsJson) {
  const std::string json = catalogue_json("1.2");
  EXPECT_EQ(json.find("{\"version\":\"1.2\""), 0u);
  EXPECT_TRUE(is_nested(json));
  const struct {
    const char* function;
    std::vector<const char*> said;
  } rows[] = {
      {"BASVOL",
       {R"("twin":"xBASVOL","family":"Baskets")", R"("example":[100,90]})", R"("example":[[1,0.5],[0.5,1]]})",
        R"("kind":"square","shape":"block")", R"("resultArgument":null,)",
        R"("length":"shortest","singles":true)", R"("related":["BASVOL2d","BASVOLT","BASCORR"],)",
        R"("odd":[{"above":null,"below":0,"words":"is a negative price"}])"}},
      {"xEURO",
       {R"("twin":"EURO",)", R"("lowest":0,"highest":8,)", R"("length":null)",
        R"("choices":[{"value":0,"meaning":"put"},{"value":1,"meaning":"call"}],"otherChoices":"call")",
        R"("resultArgument":7,"results":[{"selector":0,"name":"premium",)"}},
      {"AMERB", {R"("highest":null,"refused":"below 1")", R"("recommended":200,)"}},
      {"SWAPTION", {R"("each":"month")", R"("singles":false)"}},
      {"CMPDV", {R"("inOrder":[[3,4]],"fixingsWithin":[])", R"("noAnswer":-1})"}},
      {"BASVOLT", {R"("twin":null,)"}},
  };
  for (const auto& row : rows) {
    const std::size_t begin = json.find(std::string(R"({"name":")") + row.function + R"(","twin")");
    ASSERT_NE(begin, std::string::npos) << row.function;
    const std::string part = json.substr(begin, json.find(R"(,"twin")", begin + 40) - begin);
    for (const char* said : row.said)
      EXPECT_NE(part.find(said), std::string::npos) << row.function << ": " << said;
  }
}

}  // namespace
}  // namespace kestran
