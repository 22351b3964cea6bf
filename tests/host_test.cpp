// The stand-in for Excel, tried with an add-in that consists of the functions below: some that look at what
// they are given, some that do what Excel does not forgive. Expected values follow Excel's documented rules.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <list>
#include <new>
#include <random>
#include <utility>

#include "functions/number_text.h"
#include "functions/utf8.h"
#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/wide_text.h"
#include "tests/failing_new.h"

namespace kestran {
namespace {

int call(int function, XLOPER* result, std::initializer_list<XLOPER*> operands) {
  std::vector<XLOPER*> pointers(operands);
  return call_standin(function, result, static_cast<int>(pointers.size()), pointers.data());
}

XLOPER number(double value) {
  XLOPER record;
  record.type = xltypeNum;
  record.value.number = value;
  return record;
}

XLOPER integer(std::int16_t value) {
  XLOPER record;
  record.type = xltypeInt;
  record.value.integer = value;
  return record;
}

XLOPER error(std::uint16_t code) {
  XLOPER record;
  record.type = xltypeErr;
  record.value.error = code;
  return record;
}

// The way add-ins give texts: the count holds the low eight bits of the length only.
XLOPER text(const std::string& characters) {
  static std::list<std::string> kept;
  XLOPER record;
  record.type = xltypeStr;
  record.value.text = kept.emplace_back(static_cast<char>(characters.size() & 0xFF) + characters).data();
  return record;
}

std::string text_of(const XLOPER& record) {
  return {record.value.text + 1, static_cast<unsigned char>(record.value.text[0])};
}

XLOPER array(std::vector<XLOPER>& elements, std::uint16_t columns) {
  XLOPER record;
  record.type = xltypeMulti;
  record.value.array.elements = elements.data();
  record.value.array.rows = static_cast<std::uint16_t>(elements.size() / columns);
  record.value.array.columns = columns;
  return record;
}

XLOPER* give(const XLOPER& value) {
  static XLOPER result;
  result = value;
  return &result;
}

int coerce(XLOPER& value, std::uint16_t type, XLOPER& result) {
  XLOPER wanted = integer(static_cast<std::int16_t>(type));
  return call(xlCoerce, &result, {&value, &wanted});
}

// Tells which record a function was given: its type and what is within it.
XLOPER* EXCEL_STDCALL Kind_Of(XLOPER* given) {
  const auto area = [](const CellRectangle& cells) {
    return std::to_string(cells.last_row - cells.first_row + 1) + "x" +
           std::to_string(cells.last_column - cells.first_column + 1);
  };
  const auto& value = given->value;
  switch (given->type) {
    case xltypeNum:
      return give(text("Num"));
    case xltypeStr:
      return give(text("Str " + text_of(*given)));
    case xltypeBool:
      return give(text("Bool " + std::to_string(value.boolean)));
    case xltypeErr:
      return give(text("Err " + std::to_string(value.error)));
    case xltypeMissing:
      return give(text("Missing"));
    case xltypeSRef:
      return give(text("SRef " + area(value.sheet_reference.area)));
    case xltypeRef:
      return give(text("Ref " + area(value.reference.areas->area)));
    case xltypeMulti:
      return give(
          text("Multi " + std::to_string(value.array.rows) + "x" + std::to_string(value.array.columns)));
  }
  return give(text("type " + std::to_string(given->type)));
}

XLOPER* EXCEL_STDCALL Kind_Of_Second(XLOPER*, XLOPER* given) { return Kind_Of(given); }

// Sum of the numbers among the cells of both arguments, plus 1000 for each argument missing.
XLOPER* EXCEL_STDCALL Total(XLOPER* first, XLOPER* second) {
  double sum = 0.0;
  for (XLOPER* argument : {first, second}) {
    if (argument->type == xltypeMissing) sum += 1000.0;
    XLOPER cells;
    const int code = coerce(*argument, xltypeMulti, cells);
    if (code != xlretSuccess) return give(error(65535));
    for (int i = 0; i < cells.value.array.rows * cells.value.array.columns; ++i) {
      const XLOPER& cell = cells.value.array.elements[i];
      if (cell.type == xltypeNum) sum += cell.value.number;
    }
    call(xlFree, nullptr, {&cells});
  }
  return give(number(sum));
}

template <std::size_t>
using Digit = XLOPER*;

// Each argument with a weight of its own.
template <class... Given>
XLOPER* EXCEL_STDCALL Weigh(Given... given) {
  double weight = 1.0;
  double sum = 0.0;
  ((sum += given->value.number * weight, weight *= 2.0), ...);
  return give(number(sum));
}
template <std::size_t... index>
void* weigh_of(std::index_sequence<index...>) {
  return reinterpret_cast<void*>(&Weigh<Digit<index>...>);
}

XLOPER* EXCEL_STDCALL Infinity() { return give(number(std::numeric_limits<double>::infinity())); }
XLOPER* EXCEL_STDCALL Not_A_Number() { return give(number(-std::numeric_limits<double>::quiet_NaN())); }
XLOPER* EXCEL_STDCALL Odd_Error() { return give(error(65535)); }
XLOPER* EXCEL_STDCALL Nothing() { return nullptr; }
XLOPER* EXCEL_STDCALL Same(XLOPER* given) { return given; }
XLOPER* EXCEL_STDCALL Matrix() {
  static std::vector<XLOPER> elements;
  elements = {number(7), text("x"), number(8), error(xlerrNA)};
  return give(array(elements, 2));
}
XLOPER* EXCEL_STDCALL Keeps(XLOPER* given) {
  XLOPER cells;
  coerce(*given, xltypeMulti, cells);
  return give(number(1));
}
XLOPER* EXCEL_STDCALL Frees_Twice(XLOPER* given) {
  XLOPER cells;
  coerce(*given, xltypeMulti, cells);
  XLOPER copy = cells;
  call(xlFree, nullptr, {&cells});
  call(xlFree, nullptr, {&copy});
  return give(number(cells.type));
}
int EXCEL_STDCALL Say_Hello() {
  XLOPER words = text("hello");
  XLOPER kind = integer(2);
  call(xlcAlert, nullptr, {&words, &kind});
  return 1;
}

const char fake_path[] = "/addins/fake";

// Gives the new function's id, or an error.
XLOPER enter(std::initializer_list<std::string> texts_after_library) {
  std::vector<XLOPER> records = {text(fake_path)};
  for (const std::string& one : texts_after_library) records.push_back(text(one));
  std::vector<XLOPER*> operands;
  for (XLOPER& record : records) operands.push_back(&record);
  XLOPER result;
  const int code = call_standin(xlfRegister, &result, static_cast<int>(operands.size()), operands.data());
  EXPECT_TRUE(code == xlretSuccess || standin().out_of_memory) << code;
  return result;
}

int EXCEL_STDCALL Open() {
  for (const char* name : {"Infinity", "Not_A_Number", "Odd_Error", "Nothing", "Matrix"})
    enter({name, "R", name});
  for (const char* name : {"Kind_Of", "Same", "Keeps", "Frees_Twice"}) enter({name, "RR", name, "x", "1"});
  enter({"Total", "RRR", "Total", "First, Second", "1", "Tests", " ", " ", "Adds up"});
  enter({"Kind_Of_Second", "RRR", "Second"});
  enter({"Weigh", "R" + std::string(29, 'R'), "Weigh"});
  enter({"Say_Hello", "A", "Say_Hello", " ", "2"});
  return 1;
}

void* find_entry(const char* wanted) {
  const std::pair<const char*, void*> entries[] = {
      {"xlAutoOpen", reinterpret_cast<void*>(Open)},
      {"Kind_Of", reinterpret_cast<void*>(Kind_Of)},
      {"Kind_Of_Second", reinterpret_cast<void*>(Kind_Of_Second)},
      {"Total", reinterpret_cast<void*>(Total)},
      {"Weigh", weigh_of(std::make_index_sequence<29>())},
      {"Infinity", reinterpret_cast<void*>(Infinity)},
      {"Not_A_Number", reinterpret_cast<void*>(Not_A_Number)},
      {"Odd_Error", reinterpret_cast<void*>(Odd_Error)},
      {"Nothing", reinterpret_cast<void*>(Nothing)},
      {"Same", reinterpret_cast<void*>(Same)},
      {"Matrix", reinterpret_cast<void*>(Matrix)},
      {"Keeps", reinterpret_cast<void*>(Keeps)},
      {"Frees_Twice", reinterpret_cast<void*>(Frees_Twice)},
      {"Say_Hello", reinterpret_cast<void*>(Say_Hello)}};
  for (const auto& [name, entry] : entries)
    if (std::strcmp(name, wanted) == 0) return entry;
  return nullptr;
}

class Host : public testing::Test {
 protected:
  void SetUp() override {
    reset_standin();
    ASSERT_EQ("", attach_addin(fake_path, find_entry));
    ASSERT_TRUE(standin().faults.empty()) << standin().faults[0];
  }
  void TearDown() override { reset_standin(); }
};

std::string repeated(const std::string& piece, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += piece;
  return all;
}

std::string only_fault() { return standin().faults.size() == 1 ? standin().faults[0] : "not one fault"; }

TEST_F(Host, AnswersFormulasAsAWorksheetDoes) {
  // clang-format off
  const std::pair<std::string, const char*> rows[] = {
      {"=-2^2", "4"}, {"2^3^2", "64"}, {" 2 + 3 * 4 ", "14"}, {"(2+3)*4", "20"}, {"8/4/2", "1"},
      {"7-2-1", "4"}, {"2^-1", "0.5"}, {"50%", "0.5"}, {"5%%*10000", "5"}, {"-50%^2", "0.25"},
      {"1.5e2+.5+1.", "151.5"}, {"0.1+0.2", "0.30000000000000004"}, {"2^0.5", "1.4142135623730951"},
      {"-0", "-0"}, {"1e300*1e-300", "1"}, {"TRUE+1", "2"}, {"true", "TRUE"}, {"-FALSE", "-0"},
      {"\"3\"+1", "4"}, {"\"+3\"*1", "3"}, {"\" -5% \"*1", "-0.05"}, {"--\"3\"", "3"}, {"+\"3x\"", "3x"},
      {"\"3x\"+1", "#VALUE!"}, {"\"\"+1", "#VALUE!"}, {"-\"1e999\"", "#VALUE!"}, {"{3}*2", "6"},
      {"{}+1", "1"}, {"{1,2}+1", "#VALUE!"}, {"{#N/A}+1", "#N/A"}, {"{\"4\"}/2", "2"},
      {"#REF!+#N/A", "#REF!"}, {"1+#n/a", "#N/A"}, {"\"x\"+#N/A", "#VALUE!"}, {"-#NULL!", "#NULL!"},
      {"1/0", "#DIV/0!"}, {"0/0", "#DIV/0!"}, {"0^0", "#NUM!"}, {"0^-1", "#DIV/0!"}, {"(-8)^(1/3)", "#NUM!"},
      {"(-2)^3", "-8"}, {"1e308*10", "#NUM!"}, {"-1e308-1e308", "#NUM!"}, {"10^309", "#NUM!"},
      {"1e-300^2", "0"}, {"Infinity()", "inf"}, {"-INFINITY()", "-inf"}, {"infinity()/0", "inf"},
      {"1/infinity()", "0"}, {"infinity()-infinity()", "nan"}, {"Not_A_Number()", "nan"},
      {"not_a_number()^0", "1"}, {"\"say \"\"hi\"\"\"", "say \"hi\""}, {"\"a\nb\"", "a b"}, {"{}", "0"},
      {"{;}", "0"}, {"{\"t\",1;2,3}", "t"}, {"{ - 5 % , TRUE }", "-0.05"}, {"1e22", "1e+22"},
      {"odd_error()", "#ERR(65535)"}, {"nobody(1,2)", "#NAME?"}, {"matrix()", "7"}, {"matrix()+1", "#VALUE!"},
      {"1\r", "1"}, {"_xll.Total({1,2;3,4},{5;6})", "21"}, {"TOTAL(1)", "1001"}, {"total()", "2000"},
      {"total(,2)", "1002"}, {"Total( Total(1,2) , matrix() )", "18"},
      {"total({1,,\"9\",TRUE,#N/A},{-50%})", "0.5"}, {"weigh(" + repeated("0,", 27) + "1,1)", "402653184"}
  };
  // clang-format on
  for (const auto& [formula, expected] : rows) {
    const Evaluation evaluation = evaluate_line(formula);
    EXPECT_EQ(expected, evaluation.text) << formula;
    EXPECT_TRUE(evaluation.readable) << formula;
  }
  EXPECT_TRUE(standin().faults.empty());
}

TEST_F(Host, SaysWhereALineCannotBeRead) {
  // clang-format off
  const struct {
    std::string formula;
    std::size_t column;
    const char* expected;
  } rows[] = {
      {"", 1, "a formula"}, {"= ", 3, "a formula"}, {"1+", 3, "a number"}, {"1 2", 3, "an operator"},
      {"(1", 3, "')'"}, {"1)", 2, "an operator"}, {"total(1", 8, "')'"}, {"total(1;2)", 8, "','"},
      {"total(1,2,3)", 11, "at most 2 arguments"}, {"total(1,2,)", 11, "at most 2"},
      {"infinity(1)", 10, "at most 0"}, {"A1+1", 3, "'('"}, {"{1,2;3}", 7, "equal length"},
      {"{1;2,3}", 6, "equal length"}, {"{1,2", 5, "'}'"}, {"{1+1}", 3, "'}'"}, {"{A1}", 2, "TRUE"},
      {"\"abc", 5, "'\"'"}, {"#ERR!", 1, "#VALUE!"}, {"1e999", 1, "1.8E308"}, {".", 1, "a number"},
      {"2e", 2, "an operator"}, {"1&2", 2, "an operator"}, {std::string("1\0", 2), 2, "end"},
      {"\"" + std::string(256, 'x') + "\"", 1, "255 characters"},
      {"{" + repeated(";", 65535) + "}", 65537, "65535 rows"},
      {"{" + repeated(",", 65535) + "}", 65537, "65535 columns"},
      {repeated("(", 201) + "1", 201, "200 levels"}, {repeated("-(", 300000), 402, "200 levels"},
      {repeated("total(", 201), 1206, "200 levels"}
  };
  // clang-format on
  for (const auto& row : rows) {
    const Evaluation evaluation = evaluate_line(row.formula);
    const std::string start = "#SYNTAX! column " + std::to_string(row.column) + ": expected ";
    EXPECT_EQ(start, evaluation.text.substr(0, start.size())) << row.formula.substr(0, 40);
    EXPECT_NE(std::string::npos, evaluation.text.find(row.expected))
        << row.formula.substr(0, 40) << evaluation.text;
    EXPECT_FALSE(evaluation.readable) << row.formula.substr(0, 40);
  }
}

TEST_F(Host, ReadsLinesOfAnyLength) {
  EXPECT_EQ("65535", evaluate_line("total({" + repeated("1,", 65534) + "1},0)").text);
  EXPECT_EQ("65535", evaluate_line("total(0,{" + repeated("1;", 65534) + "1})").text);
  EXPECT_EQ("100001", evaluate_line("1" + repeated("+1", 100000)).text);
  EXPECT_EQ("-1", evaluate_line(repeated("- ", 100001) + "1").text);
  EXPECT_EQ("1", evaluate_line(repeated("(", 200) + "1" + repeated(")", 200)).text);
  EXPECT_EQ("#NAME?", evaluate_line("nobody(" + repeated(",", 100000) + ")").text);
  EXPECT_EQ(std::string(255, 'x'), evaluate_line("\"" + std::string(255, 'x') + "\"").text);
}

TEST_F(Host, PrintsNumbersThatReadBackExactly) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = random();
    double value;
    std::memcpy(&value, &bits, sizeof value);
    if (value - value != 0.0) continue;
    const std::string shown = exact_number(value);
    EXPECT_EQ(value, std::strtod(shown.c_str(), nullptr)) << shown;
    EXPECT_EQ(shown, evaluate_line(shown).text);
  }
}

TEST_F(Host, PassesArgumentsInExcelsRecords) {
  // clang-format off
  const std::pair<std::string, const char*> rows[] = {
      {"kind_of(1)", "Num"}, {"kind_of(\"a\"\"b\")", "Str a\"b"}, {"kind_of(\"\")", "Str "},
      {"kind_of(TRUE)", "Bool 1"}, {"kind_of(#N/A)", "Err 42"}, {"kind_of(odd_error())", "Err 65535"},
      {"kind_of()", "Missing"}, {"kind_of(infinity())", "Num"}, {"kind_of(1/0)", "Err 7"},
      {"kind_of(kind_of(1))", "Str Num"}, {"kind_of(+\"3\")", "Str 3"}, {"kind_of(--\"3\")", "Num"},
      {"kind_of({5})", "SRef 1x1"}, {"kind_of({1,2,3;4,5,6})", "SRef 2x3"}, {"kind_of(({1;2}))", "SRef 2x1"},
      {"second({1},{1,2,3})", "Ref 1x3"}, {"second(kind_of({1}),{1;2})", "Ref 2x1"},
      {"second({" + repeated(",", 256) + "},{1;2})", "SRef 2x1"}, {"kind_of(matrix())", "Multi 2x2"},
      {"kind_of({" + repeated(",", 255) + "})", "SRef 1x256"},
      {"kind_of({" + repeated(",", 256) + "})", "Multi 1x257"}
  };
  // clang-format on
  for (const auto& [formula, expected] : rows) EXPECT_EQ(expected, evaluate_line(formula).text) << formula;
}

TEST_F(Host, CoercesValues) {
  const auto as_integer = [](XLOPER value) {
    XLOPER result;
    const int code = coerce(value, xltypeInt, result);
    return code == xlretSuccess ? result.value.integer : -code;
  };
  EXPECT_EQ(-2, as_integer(number(-2.9)));
  EXPECT_EQ(32767, as_integer(number(32767.9)));
  EXPECT_EQ(-xlretFailed, as_integer(number(32768)));
  EXPECT_EQ(-xlretFailed, as_integer(number(std::numeric_limits<double>::quiet_NaN())));
  EXPECT_EQ(12, as_integer(text(" 12.5 ")));
  EXPECT_EQ(-xlretFailed, as_integer(text("twelve")));
  EXPECT_EQ(-xlretFailed, as_integer(error(xlerrNA)));

  evaluate_line("nobody({1,2;3,\"4\"},{5})");
  AreaList areas = {1, {1, 1, 1, 1}};
  XLOPER reference;
  reference.type = xltypeSRef;
  reference.value.sheet_reference = areas;
  EXPECT_EQ(4, as_integer(reference));
  XLOPER result;
  for (const AreaList& outside : {AreaList{2, areas.area}, AreaList{0, areas.area}, AreaList{1, {0, 2, 0, 0}},
                                  AreaList{1, {0, 0, 2, 2}}, AreaList{1, {1, 0, 0, 0}}}) {
    reference.value.sheet_reference = outside;
    EXPECT_EQ(xlretFailed, coerce(reference, xltypeMulti, result));
  }
  reference.type = xltypeRef;
  reference.value.reference = {&areas, sheet_id(1)};
  EXPECT_EQ(xlretFailed, coerce(reference, xltypeMulti, result)) << "beyond the one cell of the second range";
  areas.area = {0, 0, 0, 0};
  EXPECT_EQ(5, as_integer(reference));
  reference.value.reference.sheet = sheet_id(2);
  EXPECT_EQ(xlretFailed, coerce(reference, xltypeMulti, result));
  reference.value.reference.areas = nullptr;
  EXPECT_EQ(xlretFailed, coerce(reference, xltypeMulti, result));

  std::vector<XLOPER> elements = {number(1), text("abc")};
  XLOPER both = array(elements, 2);
  ASSERT_EQ(xlretSuccess, coerce(both, xltypeMulti, result));
  EXPECT_EQ("abc", text_of(result.value.array.elements[1]));
  EXPECT_NE(elements.data(), result.value.array.elements);
  EXPECT_EQ(xlretSuccess, call(xlFree, nullptr, {&result}));
  EXPECT_EQ(xltypeNil, result.type);
  both.value.array.elements = nullptr;
  EXPECT_EQ(xlretInvXloper, coerce(both, xltypeMulti, result));
  EXPECT_TRUE(standin().faults.empty());
}

TEST_F(Host, AccountsForMemory) {
  evaluate_line("total({1},{2})");
  EXPECT_EQ(2u, standin().accounting.arrays_handed_out);
  EXPECT_EQ(2u, standin().accounting.arrays_freed);
  standin().next_coerce_code = xlretUncalced;
  EXPECT_EQ("#ERR(65535)", evaluate_line("total({1},{2})").text);
  EXPECT_EQ("3", evaluate_line("total({1},{2})").text) << "the planned failure happens once";
  EXPECT_EQ(4u, standin().accounting.arrays_handed_out);
  EXPECT_TRUE(standin().faults.empty());

  // clang-format off
  const std::pair<const char*, const char*> rows[] = {
      {"keeps({1})", "Keeps: leak"}, {"frees_twice({1})", "Frees_Twice: double free"},
      {"nothing()", "Nothing: gives no"}, {"same({1})", "Same: gives a result of type 1024"}
  };
  // clang-format on
  for (const auto& [formula, fault] : rows) {
    standin().faults.clear();
    evaluate_line(formula);
    EXPECT_EQ(0u, only_fault().find(fault)) << formula << ": " << only_fault();
  }

  XLOPER name;
  standin().faults.clear();
  ASSERT_EQ(xlretSuccess, call(xlGetName, &name, {}));
  EXPECT_EQ(fake_path, text_of(name));
  XLOPER scalar = number(1);
  EXPECT_EQ(xlretSuccess, call(xlFree, nullptr, {&name, &scalar, &name}));
  EXPECT_TRUE(standin().faults.empty());
  XLOPER own = text("mine");
  call(xlFree, nullptr, {&own});
  EXPECT_EQ(0u, only_fault().find("add-in: double free"));
}

TEST_F(Host, AnswersALineWhicheverAllocationFails) {
  const std::string long_text(100, 'x');
  const std::string rows[] = {
      "total({1,2;3,4},{5;6})",
      "total(total(1,2),matrix())",
      "kind_of(\"" + long_text + "\")",
      "second({" + repeated(",", 256) + "},{1;2})",
      "kind_of({\"" + long_text + "\"," + repeated(",", 256) + "})",
      long_text + "(1,2)",
      "weigh(" + repeated("1,", 28) + "1)",
      "1e-999+{\"" + long_text + "\"}",
      "total(1;2)",
      "keeps({1})",
      "frees_twice({1})",
      "nothing()",
  };
  for (const std::string& formula : rows) {
    const std::string expected = evaluate_line(formula).text;
    int failing = 1;
    for (;; ++failing) {
      standin().faults.clear();
      fail_new(failing);
      const Evaluation evaluation = evaluate_line(formula);
      const bool failed = new_failed();
      EXPECT_EQ(failed ? "#MEMORY!" : expected, evaluation.text) << formula << ", allocation " << failing;
      EXPECT_TRUE(standin().handed_out.empty()) << formula << ", allocation " << failing;
      if (!failed) break;
      EXPECT_FALSE(evaluation.readable) << formula << ", allocation " << failing;
    }
    EXPECT_GT(failing, 1) << formula << " allocates nothing";
  }
}

TEST(HostWithoutMemory, LoadsNoAddInInPart) {
  int failing = 1;
  for (bool failed = true; failed; ++failing) {
    reset_standin();
    std::function<void*(const char*)> entries = find_entry;
    std::string reason;
    fail_new(failing);
    try {
      reason = attach_addin(fake_path, std::move(entries));
    } catch (const std::bad_alloc&) {
      reason = "thrown";
    }
    failed = new_failed();
    EXPECT_EQ(failed, !reason.empty()) << failing;
  }
  EXPECT_GT(failing, 50);
  reset_standin();
}

TEST_F(Host, RefusesWhatExcelWouldNotRegister) {
  const std::string r30(30, 'R');
  // clang-format off
  const struct {
    std::vector<std::string> texts;  // library, procedure, type, name, arguments, macro type, category
    const char* fault;
  } rows[] = {
      {{fake_path, "Absent", "R", "F"}, "not exported"}, {{"/else", "Same", "RR", "F"}, "not loaded"},
      {{fake_path, "Same", "", "F"}, "type text"}, {{fake_path, "Same", "RQ", "F"}, "type text"},
      {{fake_path, "Same", r30 + "R", "F"}, "type text"},
      {{fake_path, "Same", "RR", "F", "x", "2"}, "type text"}, {{fake_path, "Same", "RR", "2F"}, "no name"},
      {{fake_path, "Same", "RR", "F G"}, "no name"}, {{fake_path, "Same", "RR", ""}, "no name"},
      {{fake_path, "Same", "RR", "True"}, "no name"}, {{fake_path, "Same", "RR"}, "no name"},
      {{fake_path, "Same", "RR", "F", "x", "3"}, "macro type"},
      {{fake_path, "Same", "RR", "F", "x,y"}, "more argument names"},
      {{fake_path, "Same", "A", "F", "x"}, "more argument"},
      {{fake_path, "Same", "RR", "F", "x", "1", std::string(256, 'c')}, "operand 7 is longer than 255"},
      {{fake_path, "Same", "RR", "F", std::string(300, 'c')}, "operand 5 is longer than 255"},
      {std::vector<std::string>(31, "R"), "more than 30"}
  };
  // clang-format on
  const std::size_t before = standin().registrations.size();
  for (const auto& row : rows) {
    std::vector<XLOPER> records;
    std::vector<XLOPER*> operands;
    for (const std::string& one : row.texts) records.push_back(text(one));
    for (XLOPER& record : records) operands.push_back(&record);
    XLOPER result;
    standin().faults.clear();
    EXPECT_EQ(xlretSuccess,
              call_standin(xlfRegister, &result, static_cast<int>(operands.size()), operands.data()));
    EXPECT_EQ(xltypeErr, result.type) << row.fault;
    EXPECT_EQ(xlerrValue, result.value.error) << row.fault;
    EXPECT_NE(std::string::npos, only_fault().find(row.fault)) << row.fault << ": " << only_fault();
    if (operands.size() != 4) continue;
    operands[2] = nullptr;
    standin().faults.clear();
    call_standin<XLOPER>(xlfRegister, nullptr, 4, operands.data());
    EXPECT_NE(std::string::npos, only_fault().find("operand 3 is no text"));
  }
  EXPECT_EQ(before, standin().registrations.size());
  EXPECT_EQ(xltypeNum, enter({"Same", r30, "F", std::string(255, 'c'), "1"}).type)
      << "the longest Excel takes";
}

TEST_F(Host, KeepsRegistrationsUntilUnregistered) {
  const auto is = [](bool wanted, const XLOPER& result) {
    return result.type == xltypeBool && (result.value.boolean != 0) == wanted;
  };
  XLOPER library = text(fake_path), procedure = text("Total"), name = text("total"), id, result;
  EXPECT_EQ("Adds up", registered_text(*find_function("tOTAL"), 9));
  ASSERT_EQ(xlretSuccess, call(xlfRegisterId, &id, {&library, &procedure}));
  EXPECT_EQ(find_function("total")->id, id.value.number);

  call(xlfSetName, &result, {&name});
  EXPECT_TRUE(is(true, result));
  EXPECT_EQ("#NAME?", evaluate_line("total(1,2)").text);
  call(xlfRegisterId, &result, {&library, &procedure});
  EXPECT_EQ(id.value.number, result.value.number) << "the registration outlives its name";
  const std::size_t count = standin().registrations.size();
  EXPECT_NE(id.value.number, enter({"Total", "RRR", "TOTAL"}).value.number);
  EXPECT_EQ(count, standin().registrations.size()) << "the same name is registered once";
  EXPECT_EQ("3", evaluate_line("total(1,2)").text);

  call(xlfUnregister, &result, {&id});
  EXPECT_TRUE(is(false, result)) << "the id was replaced";
  call(xlfRegisterId, &id, {&library, &procedure});
  call(xlfUnregister, &result, {&id});
  EXPECT_TRUE(is(true, result));
  EXPECT_EQ("#NAME?", evaluate_line("total(1,2)").text);
  call(xlfRegisterId, &id, {&library, &procedure});
  EXPECT_EQ(xlerrNA, id.value.error);
  call(xlfUnregister, &result, {&id});
  EXPECT_TRUE(is(false, result));

  EXPECT_EQ("#NAME?", evaluate_line("say_hello()").text) << "a command is no function";
  ASSERT_TRUE(run_command("say_hello"));
  EXPECT_FALSE(run_command("same"));
  ASSERT_EQ(1u, standin().alerts.size());
  EXPECT_EQ("hello", standin().alerts[0].text);
  EXPECT_EQ(2.0, standin().alerts[0].kind);
  unload_addin();
  EXPECT_EQ("#NAME?", evaluate_line("kind_of(1)").text);
  EXPECT_NE("", load_addin("/no/such/add-in"));
}

TEST_F(Host, KeepsMenus) {
  XLOPER bar = number(10), other_bar = integer(9), menu_itself = integer(0), result;
  XLOPER name = text("Tests"), before = text("Help");
  std::vector<XLOPER> elements = {text("&TESTS"), text(" "), text("&Hello"), text("Say_Hello")};
  XLOPER rows = array(elements, 2);
  call(xlfGetBar, &result, {&bar, &name, &menu_itself});
  EXPECT_EQ(xltypeErr, result.type);
  call(xlfAddMenu, &result, {&bar, &rows, &before});
  EXPECT_EQ(1.0, result.value.number);
  call(xlfGetBar, &result, {&bar, &name, &menu_itself});
  ASSERT_EQ(xltypeNum, result.type);
  EXPECT_EQ(1.0, result.value.number);
  call(xlfGetBar, &result, {&other_bar, &name, &menu_itself});
  EXPECT_EQ(xltypeErr, result.type);
  EXPECT_EQ("Help", standin().menus[0].before);
  EXPECT_EQ("Say_Hello", standin().menus[0].rows[1][1]);
  call(xlfDeleteMenu, &result, {&bar, &name});
  EXPECT_EQ(xltypeBool, result.type);
  EXPECT_TRUE(standin().menus.empty());
  EXPECT_TRUE(standin().faults.empty());
  elements[3] = number(1);
  call(xlfAddMenu, nullptr, {&bar, &rows});
  EXPECT_EQ(0u, only_fault().find("add-in: menu refused"));
}

TEST_F(Host, SurvivesCallsThatMakeNoSense) {
  XLOPER one = number(1), result;
  for (const int function : {xlfRegisterId, xlfUnregister, xlfSetName, xlfGetBar, xlfAddMenu, xlfDeleteMenu,
                             xlcAlert, xlCoerce, xlFree}) {
    const int count = function == xlfGetBar ? 3 : function == xlfRegisterId || function == xlfAddMenu ? 2 : 1;
    XLOPER* operands[31] = {};
    if (function != xlfDeleteMenu) {
      EXPECT_EQ(xlretInvXloper, call_standin(function, &result, count, operands)) << function;
      EXPECT_EQ(xlretInvXloper, call_standin<XLOPER>(function, nullptr, count, nullptr)) << function;
    }
    EXPECT_EQ(xlretInvCount, call_standin(function, &result, 31, operands)) << function;
    EXPECT_EQ(xlretInvCount, call_standin<XLOPER>(function, &result, -1, nullptr)) << function;
  }
  EXPECT_EQ(xlretInvCount, call(xlfDeleteMenu, &result, {&one, &one, &one}));
  EXPECT_EQ(xlretInvCount, call(xlfGetBar, &result, {&one, &one, &one, &one}));
  EXPECT_EQ(xlretInvXlfn, call(4711, &result, {&one}));
  one.type = 0x4001;
  EXPECT_EQ(xlretInvXloper, call(xlCoerce, &result, {&one}));
  ASSERT_EQ(xlretSuccess, call(xlSheetId, &result, {}));
  EXPECT_EQ(xltypeRef, result.type);
  EXPECT_EQ(sheet_id(0), result.value.reference.sheet);
}

TEST(WideText, TakesEveryCharacterThereAndBack) {
  const struct {
    std::string narrow;
    std::u16string wide;
  } characters[] = {{"\x7F", u"\x7F"},     {"\xC2\x80", u"\x80"},         {"\u07FF", u"\u07FF"},
                    {"\u0800", u"\u0800"}, {"\uD7FF", u"\uD7FF"},         {"\uE000", u"\uE000"},
                    {"\uFFFF", u"\uFFFF"}, {"\U00010000", u"\U00010000"}, {"\U0010FFFF", u"\U0010FFFF"}};
  for (const auto& [one, wide] : characters) {
    EXPECT_EQ(character_bytes(one), one.size()) << one;
    EXPECT_TRUE(widen(one + "a") == wide + u"a" && narrow(wide + u"a") == one + "a") << one;
    EXPECT_TRUE(widen("a" + one) == u"a" + wide && narrow(u"a" + wide) == "a" + one) << one;
  }
  // What is no character comes back as it was.
  for (const std::string bytes :
       {"\x80", "\xC1\xBF", "\xC2", "\xC2\xC0", "\xE0\x9F\xBF", "\xE1\x80", "\xED\xA0\x80",
        "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
    EXPECT_EQ(character_bytes(bytes), 0u) << bytes;
    EXPECT_EQ(narrow(widen(bytes + "a")), bytes + "a");
  }
  EXPECT_EQ(narrow(u"\xD83D\uFF21").substr(3), "\uFF21");
  for (const std::u16string half : {u"\xD83D", u"\xDE00"}) EXPECT_EQ(widen(narrow(half)).size(), 3u);
}

}  // namespace
}  // namespace kestran
