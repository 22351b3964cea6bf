// KESTRAN12 as today's Excel sees it: what it registers, what it answers in comparison with KESTRAN.xll, its
// arrays, its threads and its memory.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <utility>

#include "functions/catalogue.h"
#include "functions/describe.h"
#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/library.h"
#include "tests/case_files.h"
#include "tests/failing_new.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace kestran {
namespace {

struct Addin12 : testing::Test {
  Addin12() {
    reset_standin();
    EXPECT_EQ(load_addin(program_folder() + KESTRAN_ADDIN12), "");
  }
  ~Addin12() override {
    unload_addin();
    EXPECT_TRUE(standin().faults.empty()) << standin().faults.front();
    EXPECT_EQ(standin().accounting.arrays_handed_out, standin().accounting.arrays_freed);
    EXPECT_EQ(standin().accounting.texts_handed_out, standin().accounting.texts_freed);
  }
};

std::string answer(const std::string& formula) { return evaluate_line(formula).text; }

XLOPER12 number(double value) {
  XLOPER12 record;
  record.type = xltypeNum;
  record.value.number = value;
  return record;
}

// A European option with one argument replaced.
XLOPER12* price_with(std::size_t argument, const XLOPER12& value) {
  XLOPER12 values[8] = {number(100),  number(95), number(0.05), number(0.02),
                        number(0.25), number(90), number(1),    number(0)};
  values[argument] = value;
  XLOPER12* pointers[8];
  for (int i = 0; i < 8; ++i) pointers[i] = &values[i];
  return call_entry(find_function("EURO")->entry, pointers, 8);
}

void give_back(XLOPER12* record) {
  reinterpret_cast<void(EXCEL_STDCALL*)(XLOPER12*)>(standin().find_entry("xlAutoFree12"))(record);
}

TEST_F(Addin12, RegistersWhatTheOldAddinDoesWithHelpOnEveryArgument) {
  std::ifstream file(KESTRAN_TEST_DATA "/registration.tsv");
  std::size_t i = 0;
  for (std::string line; std::getline(file, line); ++i) {
    std::istringstream columns(line);
    std::string name, type, names, description;
    std::getline(columns, name, '\t');
    std::getline(columns, type, '\t');
    std::getline(columns, names, '\t');
    std::getline(columns, description, '\t');
    ASSERT_LT(i, standin().registrations.size());
    const Registration& one = standin().registrations[i];
    std::replace(type.begin(), type.end(), 'R', 'U');
    type[0] = 'Q';
    const std::vector<std::string> head(one.texts.begin(), one.texts.begin() + first_argument_text);
    EXPECT_EQ(head, (std::vector<std::string>{standin().library_path, name, type + "$", name, names, "1",
                                              "KESTRAN Add-In", "", "", description}));
    EXPECT_TRUE(one.thread_safe && one.wide) << name;
    const Function& function = *find_in_catalogue(name.c_str());
    ASSERT_EQ(one.texts.size(), first_argument_text + function.argument_count + 1u) << name;
    EXPECT_EQ(one.texts.back(), "") << name;
    for (std::size_t text = first_argument_text; text + 1 < one.texts.size(); ++text)
      EXPECT_GE(one.texts[text].size(), 4u) << name;
  }
  EXPECT_EQ(i, standin().registrations.size());
  const std::string& help = registered_text(*find_function("EURO"), first_argument_text + 6);
  EXPECT_EQ(help, "put or call: 0 put, 1 call, any other number: call");
}

// An array's first answer, or the answer itself.
std::string first_of(const std::string& text) {
  return text[0] == '{' ? text.substr(1, text.find_first_of(",;") - 1) : text;
}

TEST_F(Addin12, AnswersTheCaseFilesAsTheOldAddinDoes) {
  std::vector<std::string> wide, late;
  const std::vector<FormulaCase> cases = read_case_files();
  for (const FormulaCase& one : cases) wide.push_back(answer(one.formula));
  // Where cells are calculated only once a function asked for them, it is called again.
  standin().cells_come_late = true;
  for (const FormulaCase& one : cases) late.push_back(answer(one.formula));
  EXPECT_EQ(wide, late);
  unload_addin();
  EXPECT_TRUE(standin().faults.empty());
  EXPECT_GT(standin().accounting.results_freed, cases.size());

  reset_standin();
  ASSERT_EQ(load_addin(program_folder() + KESTRAN_ADDIN), "");
  int arrays = 0;
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const std::string old = answer(cases[i].formula);
    arrays += wide[i][0] == '{';
    if (wide[i][0] != '{' || old != "#VALUE!") {
      EXPECT_EQ(first_of(wide[i]), old) << cases[i].place;
    }
  }
  EXPECT_GT(arrays, 10);
}

TEST_F(Addin12, SpillsWhatASingleCellAnswersForEachOfThem) {
  const char* formulas[] = {
      "EURO({100;101;102},95,5%,2%,25%,90,1,0)",
      "EURO(100,95,5%,2%,25%,90,1,{0,1,2,3})",
      "EURO({100,\"x\",,#N/A,TRUE,-1},95,5%,2%,25%,90,1,0)",
      "EURO(100,95,5%,2%,25%,90,1,{0,1,2,3,4,5,6,7,8,0,1,2,3,4,5,6,7,8,0,1,2,3,4,5,6,7,8,0,1,2,3,4,5,6,7,8})",
      "EURO(#REF!,{1,#N/A},5%,2%,25%,90,1,0)",
      "EURO(,{1,2},5%,2%,25%,90,1,{0,9})",
      "EURO({100;\"x\";#N/A;103;},95,5%,2%,25%,90,1,{0,3,9,1.5,-1})",
      "EURO({100,101},95,5%,2%,25%,90,{1,0},{0;1;2.5})",
      "EURO({100;101},{95,96,97},5%,2%,25%,90,1,{0,1,2})",
      "AMERB({90;100;#DIV/0!},95,5%,2%,25%,90,{1;0;1},50,{0,1,2,3})",
      "SWAPTION({20,21},{1,1},{0.5,0.6},{0.05,0.05},25%,{20.7;#NUM!;},5%,0.45,1,{0,1,3,99},1)",
      "PPLUS(60,62,50,51,20,10,30%,28%,35%,33%,0.95,0.97,0.85,0.84,0.83,0.86,8,5%,0.5,1,{0,1,2},1,1)",
      "XCAP({20,20.5},{0.05,0.051},{0.3,0.29},{120,150},{1,2},25%,{21;#NUM!;\"\"},0.8,90,5%,1,0,25)",
      "SWAPTION({20,21},{1,1},{0.5,0.6},{0.05,0.05},25%,{20.7,#NUM!,},5%,0.45,1,0,1)",
      "BASCORR({100,102},{60,61},{0.3,0.28},{0.35,0.33},{0.5,0.3},{1,1},{0.25,0.5},{0.25,0.5},"
      "{0.9,0.6,0.6,0.6,0.6,0.9},{1;2;\"x\"})"};
  for (const std::string formula : formulas) {
    std::vector<Call> calls;
    const Evaluation all = evaluate_line(formula, &calls);
    ASSERT_EQ(calls.size(), 1u);
    ASSERT_NE(all.array, nullptr) << formula;
    const Function& function = *find_in_catalogue(calls[0].name.c_str());
    const auto columns = static_cast<std::size_t>(all.array->columns);
    for (std::size_t cell = 0; cell < all.array->cells.size(); ++cell) {
      // The same call with one cell in the place of several.
      std::string single = calls[0].name + "(";
      for (std::size_t i = 0; i < calls[0].given.size(); ++i) {
        const Block& given = calls[0].given[i];
        const bool braces = given.rows > 0;
        const bool one = given.cells.size() > 1 && !is_range(function.arguments[i].kind);
        const std::size_t row = given.rows > 1 ? cell / columns : 0;
        const std::size_t column = given.columns > 1 ? cell % columns : 0;
        const std::size_t place = one ? row * static_cast<std::size_t>(given.columns) + column : 0;
        std::string text;
        for (std::size_t k = place; k < (one ? place + 1 : given.cells.size()); ++k) {
          const Scalar& value = given.cells[k];
          if (k > place) text += given.rows > 1 ? ";" : ",";
          if (value.kind == Kind::text)
            text += '"' + value.text + '"';
          else if (value.kind != Kind::missing && value.kind != Kind::empty)
            text += printed(value);
        }
        single += (i > 0 ? "," : "") + (braces ? "{" + text + "}" : text);
      }
      EXPECT_EQ(answer(single + ")"), printed(all.array->cells[cell])) << single << ") of " << formula;
    }
  }
}

TEST_F(Addin12, LaysBlocksOverEachOtherAsExcelDoes) {
  const std::string a = answer("EURO(100,95,5%,2%,25%,90,1,0)"), b = answer("EURO(100,95,5%,2%,25%,90,1,1)");
  const std::string c = answer("EURO(101,95,5%,2%,25%,90,1,0)"), d = answer("EURO(101,95,5%,2%,25%,90,1,1)");
  const std::pair<std::string, std::string> rows[] = {
      {"EURO({100;101},95,5%,2%,25%,90,1,{0,1})", "{" + a + "," + b + ";" + c + "," + d + "}"},
      {"EURO({100,101},95,5%,2%,25%,90,1,{0,0,1})", "{" + a + "," + c + ",#N/A}"},
      {"EURO({100,101;101,100},95,5%,2%,25%,90,1,{0;1;0})",
       "{" + a + "," + c + ";" + d + "," + b + ";#N/A,#N/A}"},
      {"EURO({100},95,5%,2%,25%,90,1,{0})", a},
      {"EURO({100;101},95,5%,2%,25%,90,1,0)*1", "{" + a + ";" + c + "}"},
      {"1*EURO({100,101},95,5%,2%,25%,90,1,0)", "{" + a + "," + c + "}"},
      {"EURO({1,2;3,4},95,5%,2%,25%,90,1,0)*0+EURO({1,2,3},95,5%,2%,25%,90,1,0)*0", "{0,0,#N/A;0,0,#N/A}"},
      {"EURO({1;2;3},95,5%,2%,25%,90,1,0)*0+EURO({1,2;3,4},95,5%,2%,25%,90,1,0)*0", "{0,0;0,0;#N/A,#N/A}"},
      {"1-EURO({1,2},95,5%,2%,25%,90,1,{1;\"x\"})*0", "{1,1;#VALUE!,#VALUE!}"},
  };
  for (const auto& [formula, expected] : rows) EXPECT_EQ(answer(formula), expected) << formula;
}

TEST_F(Addin12, RefusesMoreCellsThanAColumnHasAndUnreadableOnes) {
  XLOPER12 sheet;
  sheet.type = xltypeSRef;
  XLOPER12 impossible = sheet, code = sheet;
  constexpr int least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
  sheet.value.sheet_reference = {1, {0, 1048575, 0, 1}};
  impossible.value.sheet_reference = {1, {least, most, least, most}};
  code.type = xltypeErr;
  code.value.error = -1;
  for (const XLOPER12& value : {sheet, impossible, code}) {
    XLOPER12* refused = price_with(0, value);
    EXPECT_EQ(refused->type, xltypeErr | xlbitDLLFree);
    EXPECT_EQ(refused->value.error, xlerrValue);
    give_back(refused);
  }
  standin().next_coerce_code = xlretFailed;
  EXPECT_EQ(answer("EURO({100,101},95,5%,2%,25%,90,1,0)"), "#VALUE!");
}

TEST_F(Addin12, LongCallsCanBeBrokenOff) {
  const auto implied = [](const char* steps) {
    return answer("IMPVOLAB(9.569667,100,100,5%,5%,2,365.25,0," + std::string(steps) + ",1E-6)");
  };
  const std::string usual = implied("1000");
  EXPECT_EQ(usual.substr(0, 5), "0.250");
  standin().user_breaks = true;
  EXPECT_EQ(implied("1000"), "nan");
  EXPECT_EQ(implied("200"), "0.24999999519677849");
  standin().user_breaks = false;
  EXPECT_EQ(implied("1000"), usual);
}

TEST_F(Addin12, LongArraysCanBeBrokenOff) {
  std::string prices = "{100";
  for (int i = 0; i < 600; ++i) prices += ",100";
  const std::string long_call = "AMERB(" + prices + "},100,5%,5%,25%,365.25,0,3000,0)";
  standin().user_breaks = true;
  EXPECT_EQ(first_of(answer(long_call)), "#VALUE!");
  EXPECT_TRUE(standin().user_breaks) << "the wish is Excel's to clear";
  EXPECT_EQ(answer("EURO({100,100},95,5%,2%,25%,90,1,0)")[0], '{');
}

#if !defined(_WIN32)  // where the add-in has an allocator of its own
TEST_F(Addin12, WithoutMemoryAnswersValue) {
  XLOPER12* const held = price_with(0, number(100));  // the thread's own record
  std::vector<XLOPER12> cells(2, number(100));
  XLOPER12 array;
  array.type = xltypeMulti;
  array.value.array.elements = cells.data();
  array.value.array.rows = 1;
  array.value.array.columns = 2;
  for (const XLOPER12& value : {number(100), array}) {
    int failing = 0;
    bool kept = false;
    for (bool failed = true; failed;) {
      fail_new(++failing);
      XLOPER12* const record = price_with(0, value);
      failed = new_failed();
      const bool free = (record->type & xlbitDLLFree) != 0;
      const bool refused = (record->type & xltypeErr) != 0;
      EXPECT_TRUE(failed || !refused) << failing;
      EXPECT_TRUE(!refused || record->value.error == xlerrValue) << failing;
      kept = kept || !free;
      if (free) give_back(record);
    }
    EXPECT_GT(failing, 1);
    EXPECT_TRUE(kept) << "a record that Excel does not give back";
  }
  give_back(held);
  EXPECT_EQ(answer("EURO(100,95,5%,2%,25%,90,1,0)"), "8.14303821049409");
  EXPECT_EQ(answer("EURO({100,100},95,5%,2%,25%,90,1,0)"), "{8.14303821049409,8.14303821049409}");
  standin().out_of_memory = false;
}
#endif

// A folder with a copy of the add-in, under a name that no code page has, for as long as it lives.
struct CopyElsewhere {
  explicit CopyElsewhere(const std::string& name) : top(std::filesystem::u8path(program_folder() + name)) {
    std::filesystem::create_directories(top / "bits");
    file = top / "bits" / KESTRAN_ADDIN12;
    std::filesystem::copy_file(program_folder() + KESTRAN_ADDIN12, file);
  }
  ~CopyElsewhere() { std::filesystem::remove_all(top); }

  void load() {
    std::string error;
#if defined(_WIN32)
    standin().library = LoadLibraryW(file.c_str());
#else
    standin().library = open_library(file.string(), error);
#endif
    ASSERT_NE(standin().library, nullptr) << error;
    attach_addin(file.u8string(), [library = standin().library](const char* procedure) {
      return find_symbol(library, procedure);
    });
  }

  std::filesystem::path top, file;
};

TEST(Addin12Files, OpenFromAnyFolderWithTheReferenceBesideThem) {
  CopyElsewhere copy("\xC3\x96l \xD0\x96 \xF0\x9D\x84\x9E\xF0\x90\x80\x80 \xC2\x80\xE0\xA0\x80");
  const std::string found = "/%C3%96l%20%D0%96%20%F0%9D%84%9E%F0%90%80%80%20%C2%80%E0%A0%80/";
  const std::pair<const char*, const char*> places[] = {{"", nullptr},
                                                        {"reference", "reference/EURO.html!0"},
                                                        {"bits/reference", "bits/reference/EURO.html!0"}};
  for (const auto& [folder, page] : places) {
    if (page != nullptr) {
      std::filesystem::create_directories(copy.top / folder);
      std::ofstream(copy.top / folder / "index.html") << "a page";
    }
    reset_standin();
    copy.load();
    EXPECT_EQ(answer("EURO(100,95,5%,2%,25%,90,1,0)"), "8.14303821049409");
    const std::string topic = registered_text(*find_function("EURO"), help_topic_text);
    unload_addin();
    EXPECT_TRUE(standin().faults.empty() && standin().alerts.empty());
    if (page == nullptr) {
      EXPECT_EQ(topic, "");
    } else {
      const std::string top = copy.top.generic_string().substr(0, 3);
      EXPECT_EQ(topic.rfind((top[0] == '/' ? "file://" : "file:///") + top, 0), 0u) << topic;
      const std::string end = found + page;
      EXPECT_EQ(topic.substr(topic.size() - std::min(topic.size(), end.size())), end);
    }
  }
}

TEST_F(Addin12, TellsOnceHowManyFunctionsAreNotThere) {
  standin().find_entry = [real = standin().find_entry](const char* name) {
    return std::strcmp(name, "HEAT") == 0 || std::strcmp(name, "EURO") == 0 ? nullptr : real(name);
  };
  EXPECT_EQ(reinterpret_cast<int(EXCEL_STDCALL*)()>(standin().find_entry("xlAutoOpen"))(), 1);
  ASSERT_EQ(standin().alerts.size(), 1u);
  EXPECT_EQ(standin().alerts[0].text.find("2 of the 81 KESTRAN functions"), 0u);
  EXPECT_EQ(standin().faults.size(), 2u);
  standin().faults.clear();
}

// Calls of all functions with numbers, cells and arrays on eight threads; those of a fast one as many times
// as KESTRAN_ROUNDS says. Each cell comes late, so that functions are called again.
using Addin12Threads = Addin12;

TEST_F(Addin12Threads, AnswerAsOneThreadDoes) {
  constexpr int threads = 8;
  const char* const given = std::getenv("KESTRAN_ROUNDS");
  const int rounds = given == nullptr ? 1 : std::atoi(given);
  std::vector<std::string> formulas, expected;
  for (int f = 0; f < catalogue_size; ++f) formulas.push_back(example_formula(catalogue[f]));
  for (const FormulaCase& one : read_case_files()) formulas.push_back(one.formula);
  const std::size_t slow = formulas.size();
  for (const char* price : {"100", "{100}", "{100,101,102}", "{100;\"x\"}"})
    for (int strike = 70; strike < 130; ++strike)
      formulas.push_back("EURO(" + std::string(price) + "," + std::to_string(strike) + ",5%,2%,25%,90,1,0)");
  for (const std::string& formula : formulas) expected.push_back(answer(formula));

  standin().cells_come_late = true;
  std::vector<Worker> workers(threads);
  std::vector<int> wrong(threads);
  run_threads(threads, [&](int thread) {
    workers[static_cast<std::size_t>(thread)].begin();
    for (int round = 0; round < rounds; ++round) {
      const std::size_t first = round == 0 ? 0 : slow;
      const std::size_t count = formulas.size() - first;
      for (std::size_t i = 0; i < count; ++i) {
        const std::size_t one = first + (i * 7 + static_cast<std::size_t>(thread) * 13) % count;
        wrong[static_cast<std::size_t>(thread)] += answer(formulas[one]) != expected[one];
      }
    }
    Worker::end();
  });
  for (Worker& worker : workers) worker.join();
  EXPECT_EQ(wrong, std::vector<int>(threads, 0));
  const std::size_t calls = slow + (formulas.size() - slow) * static_cast<std::size_t>(rounds);
  EXPECT_GT(standin().accounting.results_freed, calls * threads) << "with those that were called again";
}

// What Excel's documented limits forbid, tried with one of the add-in's entries.
TEST_F(Addin12, TheStandinRefusesWhatTodaysExcelWould) {
  const auto enter = [](const char* type, const std::string& help) {
    std::vector<std::unique_ptr<char[]>> memory;
    std::vector<XLOPER12> records;
    for (const std::string& text : {standin().library_path, std::string("EURO"), std::string(type),
                                    std::string("MINE"), std::string("a,b"), std::string("1"), help})
      records.push_back(make_record<XLOPER12>(text_scalar(text), memory.emplace_back()));
    std::vector<XLOPER12*> operands;
    for (XLOPER12& record : records) operands.push_back(&record);
    XLOPER12 result;
    call_standin(xlfRegister, &result, static_cast<int>(operands.size()), operands.data());
    const bool entered = result.type == xltypeNum && standin().faults.empty();
    standin().faults.clear();
    return entered;
  };
  const std::pair<const char*, bool> rows[] = {{"QUU$", true},   {"UQQ#", true},  {"QQU", true},
                                               {"QUU$#", false}, {"Q$UU", false}, {"RRR", false},
                                               {"QU$", false},   {"$", false}};
  for (const auto& [type, taken] : rows) EXPECT_EQ(enter(type, "help"), taken) << type;
  EXPECT_TRUE(enter("QUU$", std::string(255, 'x')));
  EXPECT_FALSE(enter("QUU$", std::string(256, 'x')));

  // On a further thread only what is not the worksheet's; a break may be looked at, not cleared.
  Worker worker;
  XLOPER12 name = number(1.0), looked = number(1.0), clear;
  clear.type = xltypeBool;
  clear.value.boolean = 0;
  XLOPER12* operands[] = {&clear};
  worker.begin();
  EXPECT_EQ(call_standin(xlAbort, &looked, 0, operands), xlretSuccess);
  EXPECT_EQ(call_standin(xlAbort, &looked, 1, operands), xlretNotThreadSafe);
  operands[0] = &name;
  EXPECT_EQ(call_standin(xlfSetName, &looked, 1, operands), xlretNotThreadSafe);
  Worker::end();
  worker.join();
  EXPECT_EQ(standin().faults.size(), 1u);
  standin().faults.clear();
}

// One of the two add-ins in a process.
struct Loaded {
  std::string path;
  void* library;
  std::function<void*(const char*)> find_entry;

  // The stand-in serves one at a time.
  void change_places() {
    std::swap(path, standin().library_path);
    std::swap(library, standin().library);
    std::swap(find_entry, standin().find_entry);
  }
};

void load_beside_the_program(const char* file) { ASSERT_EQ(load_addin(program_folder() + file), ""); }

TEST(Addins, OfTwoAtOnceTheLaterRegistrationWins) {
  CopyElsewhere copy("second copy");
  struct {
    const char* what;
    std::function<void()> load;
    bool wide;
    std::size_t commands;
  } const old{"KESTRAN", [] { load_beside_the_program(KESTRAN_ADDIN); }, false, 2},
      modern{"KESTRAN12", [] { load_beside_the_program(KESTRAN_ADDIN12); }, true, 0},
      again{"a copy of KESTRAN12", [&copy] { copy.load(); }, true, 0};
  const std::pair<decltype(&old), decltype(&old)> pairs[] = {
      {&old, &modern}, {&modern, &old}, {&modern, &again}, {&again, &modern}, {&old, &again}};
  for (const auto& [earlier, later] : pairs) {
    SCOPED_TRACE(std::string(earlier->what) + ", then " + later->what);
    reset_standin();
    Loaded first{};
    earlier->load();
    EXPECT_EQ(standin().registrations.size(), static_cast<std::size_t>(catalogue_size) + earlier->commands);
    first.change_places();
    later->load();
    EXPECT_EQ(standin().registrations.size(),
              static_cast<std::size_t>(catalogue_size) + earlier->commands + later->commands);
    EXPECT_EQ(find_function("EURO")->wide, later->wide);
    EXPECT_EQ(find_function("EURO")->texts[0], standin().library_path);
    EXPECT_EQ(answer("EURO({100},95,5%,2%,25%,90,1,0)"), "8.14303821049409");
    unload_addin();  // the later one
    first.change_places();
    unload_addin();
    EXPECT_TRUE(standin().faults.empty()) << standin().faults.front();
    EXPECT_EQ(find_function("EURO"), nullptr);
  }
}

TEST_F(Addin12, AnswersTheAddInManager) {
  const auto info =
      reinterpret_cast<XLOPER12*(EXCEL_STDCALL*)(XLOPER12*)>(standin().find_entry("xlAddInManagerInfo12"));
  XLOPER12 one = number(1.0), two = number(2.0);
  ASSERT_EQ(info(&one)->type, xltypeStr);
  Scalar name;
  ASSERT_TRUE(read_scalar(*info(&one), name));
  EXPECT_EQ(name.text, "KESTRAN option pricing, on all processors");
  EXPECT_EQ(info(&two)->type, xltypeErr);
}

}  // namespace
}  // namespace kestran
