// The built add-in as Excel sees it: what it registers, what its entry points make of raw values, how it
// opens and closes. The stand-in for Excel loads the file that is shipped.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <set>
#include <sstream>

#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/library.h"

namespace kestran {
namespace {

struct Addin : testing::Test {
  Addin() {
    reset_standin();
    const std::string failure = load_addin(program_folder() + KESTRAN_ADDIN);
    EXPECT_EQ(failure, "");
    EXPECT_EQ(standin().accounting.arrays_handed_out, 0u);
  }
  ~Addin() override {
    unload_addin();
    EXPECT_TRUE(standin().faults.empty()) << standin().faults.front();
    EXPECT_EQ(standin().accounting.arrays_handed_out, standin().accounting.arrays_freed);
    EXPECT_EQ(standin().accounting.texts_handed_out, standin().accounting.texts_freed);
  }

  template <class Function>
  Function entry(const char* name) {
    return reinterpret_cast<Function>(standin().find_entry(name));
  }
  int run(const char* name) { return entry<int(EXCEL_STDCALL*)()>(name)(); }
};

XLOPER number(double value) {
  XLOPER record;
  record.type = xltypeNum;
  record.value.number = value;
  return record;
}

XLOPER of_type(std::uint16_t type) {
  XLOPER record = number(0.0);
  record.type = type;
  return record;
}

XLOPER error(std::uint16_t code) {
  XLOPER record = of_type(xltypeErr);
  record.value.error = code;
  return record;
}

XLOPER array(XLOPER* elements, std::uint16_t rows, std::uint16_t columns) {
  XLOPER record = of_type(xltypeMulti);
  record.value.array.elements = elements;
  record.value.array.rows = rows;
  record.value.array.columns = columns;
  return record;
}

std::vector<std::vector<std::string>> expected_functions() {
  std::vector<std::vector<std::string>> rows;
  std::ifstream file(KESTRAN_TEST_DATA "/registration.tsv");
  for (std::string line; std::getline(file, line);) {
    std::vector<std::string> cells;
    std::istringstream columns(line);
    for (std::string cell; std::getline(columns, cell, '\t');) cells.push_back(cell);
    rows.push_back(cells);
  }
  return rows;
}

TEST_F(Addin, RegistersEveryTextByteForByte) {
  std::vector<std::vector<std::string>> expected;
  const std::string& library = standin().library_path;
  for (const auto& row : expected_functions())
    expected.push_back(
        {library, row[0], row[1], row[0], row[2], "1", "KESTRAN Add-In", " ", " ", row[3], " "});
  for (const auto& command : {std::pair("KESTRAN_Help", "m"), std::pair("KESTRAN_Exit", "n")})
    expected.push_back(
        {library, command.first, "A", command.first, " ", "2", "KESTRAN Add-In", command.second});
  ASSERT_EQ(standin().registrations.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(standin().registrations[i].texts, expected[i]);
}

TEST_F(Addin, NamesAsManyArgumentsAsItDeclares) {
  for (const Registration& registration : standin().registrations) {
    if (is_command(registration)) continue;
    const std::string& name = registered_name(registration);
    const std::string names = registered_text(registration, 4);
    const auto named = static_cast<std::size_t>(std::count(names.begin(), names.end(), ',')) + 1;
    // The swaptions are registered with a pointer to spare.
    const bool swaption = name.find("SWAPTION") != std::string::npos;
    EXPECT_EQ(registration.arguments, swaption ? 12u : named) << name;
  }
}

TEST_F(Addin, AddsItsMenuOnce) {
  const std::vector<std::vector<std::string>> rows = {
      {"KESTRA&N", " ", " ", "The KESTRAN.XLL Add-In", " "},
      {"KESTRAN &Help", "KESTRAN_Help", " ", "KESTRAN Help", " "},
      {"KESTRAN E&xit", "KESTRAN_Exit", " ", "Close the KESTRAN.XLL", " "}};
  const std::size_t registered = standin().registrations.size();
  EXPECT_EQ(run("xlAutoOpen"), 1);  // a second time
  ASSERT_EQ(standin().menus.size(), 1u);
  EXPECT_EQ(standin().menus[0].bar, 10.0);
  EXPECT_EQ(standin().menus[0].rows, rows);
  EXPECT_EQ(standin().menus[0].before, "Help");
  EXPECT_EQ(standin().registrations.size(), registered);
}

TEST_F(Addin, ClosingDeletesNamesAndMenu) {
  ASSERT_NE(find_function("EURO"), nullptr);
  const std::size_t registered = standin().registrations.size();
  EXPECT_EQ(run("xlAutoClose"), 1);
  EXPECT_EQ(find_function("EURO"), nullptr);
  EXPECT_TRUE(standin().menus.empty());
  EXPECT_EQ(standin().registrations.size(), registered);
  EXPECT_EQ(run("xlAutoClose"), 1);
}

TEST_F(Addin, ExitCommandUnregistersEverything) {
  EXPECT_TRUE(run_command("KESTRAN_Exit"));
  EXPECT_TRUE(standin().registrations.empty());
  EXPECT_TRUE(standin().menus.empty());
}

TEST_F(Addin, TellsWhatHappensToIt) {
  EXPECT_EQ(run("xlAutoAdd"), 1);
  EXPECT_EQ(run("xlAutoRemove"), 1);
  ASSERT_EQ(standin().alerts.size(), 2u);
  EXPECT_EQ(standin().alerts[0].text,
            "Adding KESTRAN.XLL\n built on Oct 31 2001 at 15:12:35 \nThe Tarnwell Group (x40101, x40102)");
  EXPECT_EQ(standin().alerts[1].text, "Removing KESTRAN.XLL ");
  EXPECT_EQ(standin().alerts[0].kind, 2.0);
}

#if !defined(_WIN32)
TEST_F(Addin, HelpLiesBesideTheLibrary) {
  run("KESTRAN_Help");
  run("xlAutoClose");
  const std::string path = program_folder() + "Kestran.hlp";
  ASSERT_EQ(standin().help_calls.size(), 2u);
  EXPECT_EQ(standin().help_calls[0].path, path);
  EXPECT_EQ(standin().help_calls[0].command, 11u);
  EXPECT_EQ(standin().help_calls[1].path, path);
  EXPECT_EQ(standin().help_calls[1].command, 2u);
}

TEST(HelpCommand, TellsWhenTheLibraryCannotBeFound) {
  reset_standin();
  const std::string copy = program_folder() + "moved_away.so";
  std::filesystem::copy_file(program_folder() + KESTRAN_ADDIN, copy,
                             std::filesystem::copy_options::overwrite_existing);
  ASSERT_EQ(load_addin(copy), "");
  std::filesystem::remove(copy);
  EXPECT_TRUE(run_command("KESTRAN_Help"));
  EXPECT_TRUE(standin().help_calls.empty());
  ASSERT_EQ(standin().alerts.size(), 1u);
  EXPECT_EQ(
      standin().alerts[0].text,
      "Could not found the help file for Kestran.\nPlease contact the Tarnwell Group x40102 or x40101\n");
  EXPECT_EQ(standin().alerts[0].kind, 2.0);
  unload_addin();
}
#endif

TEST_F(Addin, AnswersTheAddInManager) {
  const auto info = entry<XLOPER*(EXCEL_STDCALL*)(XLOPER*)>("xlAddInManagerInfo");
  XLOPER one = number(1.0);
  const XLOPER* answer = info(&one);
  ASSERT_EQ(answer->type, xltypeStr);
  EXPECT_EQ(std::string(answer->value.text, 8), "\7KESTRAN");
  XLOPER two = number(2.0);
  char text[] = "\3abc";
  XLOPER word = of_type(xltypeStr);
  word.value.text = text;
  for (XLOPER* other : {&two, &word}) {
    ASSERT_EQ(info(other)->type, xltypeErr);
    EXPECT_EQ(info(other)->value.error, xlerrValue);
  }
}

TEST_F(Addin, RegistersOneFunctionByName) {
  const auto register_one = entry<XLOPER*(EXCEL_STDCALL*)(XLOPER*)>("xlAutoRegister");
  run_command("KESTRAN_Exit");
  char known[] = "\4HEAT", part[] = "\3HEA", unknown[] = "\5HEATS";
  XLOPER name = of_type(xltypeStr);
  name.value.text = known;
  EXPECT_EQ(register_one(&name)->type, xltypeNum);
  ASSERT_EQ(standin().registrations.size(), 1u);
  EXPECT_EQ(registered_text(standin().registrations[0], 9), "Heat Option");
  for (char* text : {part, unknown, static_cast<char*>(nullptr)}) {
    name.value.text = text;
    EXPECT_EQ(register_one(&name)->type, xltypeErr);
    EXPECT_EQ(register_one(&name)->value.error, xlerrValue);
  }
  XLOPER missing = of_type(xltypeMissing);
  EXPECT_EQ(register_one(&missing)->type, xltypeErr);
}

TEST_F(Addin, EveryEntryHasARecordOfItsOwn) {
  std::set<const XLOPER*> records;
  for (const Registration& registration : standin().registrations) {
    if (is_command(registration)) continue;
    std::vector<XLOPER> values(registration.arguments, error(xlerrNA));
    std::vector<XLOPER*> pointers;
    for (XLOPER& value : values) pointers.push_back(&value);
    const XLOPER* record = call_entry(registration.entry, pointers.data(), pointers.size());
    EXPECT_EQ(record, call_entry(registration.entry, pointers.data(), pointers.size()));
    EXPECT_EQ(record->type, xltypeErr) << registered_name(registration);
    records.insert(record);
  }
  EXPECT_EQ(records.size(), expected_functions().size());
}

// A European option with one argument replaced: what becomes of every type of value.
struct ScalarFrame : Addin {
  XLOPER price_with(int argument, const XLOPER& value) {
    XLOPER values[8] = {number(100),  number(95), number(0.05), number(0.02),
                        number(0.25), number(90), number(1),    number(0)};
    values[argument] = value;
    XLOPER* pointers[8];
    for (int i = 0; i < 8; ++i) pointers[i] = &values[i];
    return *call_entry(find_function("EURO")->entry, pointers, 8);
  }
  int code_with(const XLOPER& value) {
    const XLOPER result = price_with(0, value);
    return result.type == xltypeErr ? result.value.error : -1;
  }
};

TEST_F(ScalarFrame, TakesOnlyNumbersAndSingleCells) {
  XLOPER cells[4] = {number(100), of_type(xltypeNil), error(xlerrDiv0), of_type(xltypeBool)};
  EXPECT_EQ(code_with(number(100)), -1);
  EXPECT_EQ(code_with(array(&cells[0], 1, 1)), -1);
  EXPECT_EQ(price_with(0, array(&cells[0], 1, 1)).value.number, price_with(0, number(100)).value.number);
  const struct {
    const char* what;
    XLOPER value;
    int code;
  } rows[] = {
      {"missing", of_type(xltypeMissing), 65535},
      {"nil", of_type(xltypeNil), 15},
      {"integer", of_type(xltypeInt), 15},
      {"boolean", of_type(xltypeBool), 15},
      {"number with a flag bit", of_type(xltypeNum | 0x1000), 15},
      {"error with a flag bit", of_type(xltypeErr | 0x4000), 15},
      {"missing with a flag bit", of_type(xltypeMissing | 0x1000), 15},
      {"unknown type", of_type(0), 15},
      {"error", error(xlerrNum), 36},
      {"unknown error", error(65535), 65535},
      {"empty cell", array(&cells[1], 1, 1), 65535},
      {"cell with an error", array(&cells[2], 1, 1), 7},
      {"cell with TRUE", array(&cells[3], 1, 1), 15},
      {"two cells", array(&cells[0], 2, 1), 15},
  };
  for (const auto& row : rows) EXPECT_EQ(code_with(row.value), row.code) << row.what;
}

TEST_F(ScalarFrame, AnyFailingCoercionIsValueAtOnce) {
  XLOPER cell = number(100);
  for (int code : {xlretUncalced, xlretFailed, xlretInvXloper, 1, 128}) {
    standin().next_coerce_code = code;
    XLOPER later_error[1] = {error(xlerrNA)};
    EXPECT_EQ(code_with(array(&cell, 1, 1)), 15) << code;
    EXPECT_EQ(code_with(array(later_error, 1, 1)), xlerrNA);
  }
}

TEST_F(ScalarFrame, SelectorsAreTruncatedAndNeverOverflow) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  for (double refused : {nan, inf, -inf, 1e300, -1.0, 9.0, 2147483648.0, -4294967296.0})
    EXPECT_EQ(price_with(7, number(refused)).value.error, 65535) << refused;
  for (double call : {1.0, -1.9, inf, -inf, 1e300})
    EXPECT_EQ(price_with(6, number(call)).value.number, price_with(6, number(1)).value.number) << call;
  EXPECT_EQ(price_with(6, number(nan)).value.error, 65535);
  EXPECT_EQ(price_with(6, number(0.9)).value.number, price_with(6, number(0)).value.number);
}

// Which selectors each function refuses, as the function reference states them: argument counted from 1.
TEST_F(Addin, SelectorRanges) {
  constexpr int any = 1000000;
  const struct {
    const char* name;
    std::size_t arguments, selector;
    int lowest, highest;
  } rows[] = {
      {"EURO", 8, 8, 0, 8},       {"EURO_Equity", 8, 8, 0, 6},   {"EURO_Forward", 7, 7, 0, 6},
      {"FOREXCH", 8, 8, 0, 8},    {"AMER", 8, 8, 0, 7},          {"AMERB", 9, 9, 0, 8},
      {"AMERB", 9, 8, 1, any},    {"DIGITAL", 9, 9, 0, 5},       {"DIGITAL", 9, 8, 0, 1},
      {"DIGITAL", 9, 2, 1, any},  {"DIGITAL", 9, 3, 1, any},     {"DIGITAL", 9, 6, 0, any},
      {"DIGITAL", 9, 7, 0, any},  {"COD", 9, 9, 0, 5},           {"CODPREM", 7, 7, 0, 8},
      {"COMBOPT", 10, 10, 0, 8},  {"BOST", 7, 7, 0, 8},          {"EIMPVOL", 10, 1, 0, 6},
      {"IMPVOLAB", 10, 8, 0, 6},  {"IMPVOLAB", 10, 9, 1, any},   {"ASN", 11, 11, 0, 6},
      {"ASN", 11, 6, 1, any},     {"ASN", 11, 7, 0, any},        {"AGC", 11, 11, 0, 9},
      {"ASNSPRD", 13, 13, 0, 12}, {"ASNSPRD2", 18, 18, 0, 13},   {"ASV", 11, 11, 0, 6},
      {"BRRR", 11, 11, 0, 5},     {"BRRR", 11, 9, 0, 2},         {"CMPDV", 11, 11, 0, 5},
      {"HEAT", 10, 10, 0, 12},    {"LKBK", 8, 8, 0, 6},          {"OSTRIP", 13, 13, 0, 6},
      {"OSTRIP2", 13, 13, 0, 10}, {"OSTRIPSPRD", 18, 18, 0, 17}, {"QUANTO", 13, 13, 0, 11},
      {"QUANTO", 13, 12, 1, 4},   {"RBOW", 10, 10, 0, 10},       {"RBOW", 10, 9, 1, 6},
      {"SPRDOPT", 10, 10, 0, 16}, {"xSPRDOPT", 10, 10, 0, 12},   {"WSPRD", 7, 7, 0, 8},
      {"WARRANT", 11, 11, 0, 5},
  };
  for (const auto& row : rows) {
    const Registration* function = find_function(row.name);
    ASSERT_NE(function, nullptr) << row.name;
    ASSERT_EQ(function->arguments, row.arguments) << row.name;
    std::vector<XLOPER> values(row.arguments, number(1));
    std::vector<XLOPER*> pointers;
    for (XLOPER& value : values) pointers.push_back(&value);
    const auto refused = [&](double selector) {
      values[row.selector - 1] = number(selector);
      const XLOPER* result = call_entry(function->entry, pointers.data(), pointers.size());
      return result->type == xltypeErr && result->value.error == 65535;
    };
    EXPECT_TRUE(refused(row.lowest - 1)) << row.name << " argument " << row.selector;
    EXPECT_FALSE(refused(row.lowest)) << row.name << " argument " << row.selector;
    if (row.highest == any) continue;
    EXPECT_FALSE(refused(row.highest)) << row.name << " argument " << row.selector;
    EXPECT_TRUE(refused(row.highest + 1)) << row.name << " argument " << row.selector;
  }
}

}  // namespace
}  // namespace kestran
