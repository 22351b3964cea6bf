// The catalogue of functions against the worksheet, and calls that no stand-in for Excel can make.
#include "functions/catalogue.h"

#include <gtest/gtest.h>
#include <immintrin.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "functions/intake.h"
#include "functions/number_text.h"
#include "functions/refused_number.h"
#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/library.h"
#include "numerics/arrays.h"
#include "tests/case_files.h"

#if !defined(_WIN32)
#include <thread>
#endif

namespace kestran {
namespace {

constexpr double empty = std::numeric_limits<double>::quiet_NaN();

struct Given {
  std::vector<double> values;
  int rows = 0;
  int columns = 0;
};

struct Call {
  const Function* function = nullptr;
  std::vector<Given> given;

  Answer priced() const {
    std::vector<Operand> operands;
    for (const Given& one : given) operands.push_back({one.values.data(), one.rows, one.columns});
    return price(*function, operands.data());
  }
  std::string formula() const {
    const auto number = [](double value) -> std::string {
      if (!std::isnan(value)) return exact_number(value);
      const int code = refusal_code(value);
      return code < 0 ? "" : code == no_number_code ? "\"text\"" : error_name(code);
    };
    std::string text = function->name + std::string("(");
    for (const Given& one : given) {
      if (&one != given.data()) text += ',';
      if (one.rows == 0) text += number(one.values[0]);
      for (int i = 0; i < one.rows * one.columns; ++i)
        text += (i == 0                 ? "{"
                 : i % one.columns == 0 ? ";"
                                        : ",") +
                number(one.values[static_cast<std::size_t>(i)]);
      if (one.rows > 0) text += '}';
    }
    return text + ")";
  }
};

// The arguments of NAME(...), which are numbers, divisions of them, or blocks of plain numbers.
std::vector<Given> arguments_of(const std::string& formula) {
  std::vector<Given> list;
  std::string text;
  bool in_block = false;
  for (std::size_t i = formula.find('(') + 1; i < formula.size(); ++i) {
    const char character = formula[i];
    const bool ends = i + 1 == formula.size() || (character == ',' && !in_block);
    if (character == '{') {
      in_block = true;
      list.push_back({{}, 1, 0});
    } else if (in_block && (character == ',' || character == ';' || character == '}')) {
      Given& block = list.back();
      block.values.push_back(std::stod(text));
      text.clear();
      block.rows += character == ';';
      in_block = character != '}';
      block.columns = static_cast<int>(block.values.size()) / block.rows;
    } else if (!ends) {
      text += character;
    } else if (!text.empty()) {
      list.push_back({{std::stod(evaluate_line(text).text)}});
      text.clear();
    }
  }
  return list;
}

std::string shown(const Answer& answer) {
  if (answer.is_number()) return exact_number(answer.number);
  return answer.error == missing_code ? "#ERR(65535)" : error_name(answer.error);
}

struct Catalogue : testing::Test {
  Catalogue() {
    reset_standin();
    EXPECT_EQ(load_addin(program_folder() + KESTRAN_ADDIN), "");
    for (const FormulaCase& one : read_case_files()) {
      if (one.place.rfind("examples.cases", 0) != 0) continue;
      const Function* function = find_in_catalogue(one.formula.substr(0, one.formula.find('(')).c_str());
      EXPECT_NE(function, nullptr) << one.formula;
      if (function != nullptr) examples.push_back({function, arguments_of(one.formula)});
    }
  }
  ~Catalogue() override { unload_addin(); }

  std::vector<Call> examples;
};

TEST_F(Catalogue, PricesAndRefusesAsTheWorksheetDoes) {
  const Given replacements[] = {{{empty}},
                                {{-1.0}},
                                {{0.5}},
                                {{12.9}},
                                {{1e300}},
                                {{1.0}, 1, 1},
                                {{empty}, 1, 1},
                                {{2.0, 3.0}, 1, 2},
                                {{2.0, 3.0, 4.0, 5.0}, 4, 1},
                                {{2.0, empty, 4.0}, 1, 3},
                                {{refused_number(36)}},
                                {{refused_number(42)}, 1, 1},
                                {{refused_number(no_number_code)}},
                                {{refused_number(no_number_code)}, 1, 1},
                                {{2.0, refused_number(42), 4.0}, 1, 3},
                                {{1.0, 0.5, 0.5, 1.0}, 2, 2}};
  int compared = 0;
  for (const Call& example : examples) {
    EXPECT_EQ(shown(example.priced()), evaluate_line(example.formula()).text) << example.formula();
    for (std::size_t i = 0; i < example.given.size(); ++i)
      for (const Given& replacement : replacements) {
        Call call = example;
        call.given[i] = replacement;
        EXPECT_EQ(shown(call.priced()), evaluate_line(call.formula()).text) << call.formula();
        ++compared;
      }
  }
  EXPECT_GT(compared, 5000);
}

TEST(RefusedNumbers, KeepTheirCodeAsFloatsAndThroughArithmetic) {
  for (int code : {0, value_code, 42, no_number_code, missing_code}) {
    const double refused = refused_number(code);
    for (double copy : {refused, -refused, refused + 1.0, static_cast<double>(static_cast<float>(refused))})
      EXPECT_EQ(refusal_code(copy), code);
  }
  for (double none : {0.0, -1.0, empty, std::nan("1"), std::numeric_limits<double>::infinity()})
    EXPECT_EQ(refusal_code(none), -1) << none;
}

TEST_F(Catalogue, NumbersAloneAreOperandsWithoutRanges) {
  for (const Call& example : examples) {
    std::vector<double> numbers;
    std::vector<Operand> operands;
    for (const Given& one : example.given) numbers.push_back(one.values[0]);
    for (const double& number : numbers) operands.push_back({&number});
    const auto same = [&] {
      const Answer answer = price(*example.function, numbers.data());
      const Answer expected = price(*example.function, operands.data());
      EXPECT_EQ(shown(answer), shown(expected)) << example.function->name;
      EXPECT_EQ(answer.reason, expected.reason) << example.function->name;
    };
    same();
    for (double instead : {empty, refused_number(42), refused_number(no_number_code)}) {
      numbers.back() = instead;
      same();
    }
  }
}

TEST_F(Catalogue, NamesEveryArgumentAsTheRegistrationDoes) {
  for (int i = 0; i < catalogue_size; ++i) {
    const Function& function = catalogue[i];
    std::string registered = registered_text(*find_function(function.name), 4) + ",";
    std::string names;
    for (char character : registered)
      if (character != ' ') names += character;
    std::string listed;
    for (int k = 0; k < function.argument_count; ++k) listed += function.arguments[k].name + std::string(",");
    EXPECT_EQ(listed, names) << function.name;
    EXPECT_EQ(find_in_catalogue(function.name), &function);
  }
  EXPECT_EQ(find_in_catalogue("eurO"), find_in_catalogue("EURO"));
  for (const char* unknown : {"", "EUR", "EUROS"}) EXPECT_EQ(find_in_catalogue(unknown), nullptr) << unknown;
}

TEST_F(Catalogue, GivesTheSameBitsUnderEveryProcessorState) {
  constexpr unsigned usual = 0x1F80;
  constexpr unsigned flush_to_zero = 0x8040, down = 0x2000, up = 0x4000, chop = 0x6000, traps = 0x1F80;
  for (const Call& example : examples) {
    const std::string expected = shown(example.priced());
    const std::string formula = example.formula();
    for (unsigned state : {usual | flush_to_zero, usual | down, usual | up, usual | chop, usual & ~traps}) {
      _mm_setcsr(state);
      const Answer answer = example.priced();
      const unsigned left = _mm_getcsr();
      _mm_setcsr(usual);
      EXPECT_EQ(shown(answer), expected) << formula << " in state " << state;
      EXPECT_EQ(left & ~0x3Fu, state & ~0x3Fu) << formula;
    }
    // Through the entry point, whose number the stand-in prints only after the state is the usual one again.
    const Registration* entry = find_function(example.function->name);
    if (example.function->takes_ranges) continue;
    std::vector<XLOPER> records(entry->arguments);
    std::vector<XLOPER*> pointers;
    for (std::size_t i = 0; i < records.size(); ++i) {
      records[i].type = xltypeNum;
      records[i].value.number = example.given[i].values[0];
      pointers.push_back(&records[i]);
    }
    _mm_setcsr(usual | flush_to_zero | up);
    const XLOPER* result = call_entry(entry->entry, pointers.data(), pointers.size());
    _mm_setcsr(usual);
    EXPECT_EQ(exact_number(result->value.number), expected) << formula;
  }
}

#if !defined(_WIN32)  // whose compiler here has no std::thread
TEST_F(Catalogue, PricesInSeveralThreads) {
  std::vector<std::string> expected;
  for (const Call& example : examples) expected.push_back(shown(example.priced()));
  std::vector<int> wrong(4, 0);
  std::vector<std::thread> threads;
  for (int& count : wrong)
    threads.emplace_back([&] {
      for (int pass = 0; pass < 20; ++pass)
        for (std::size_t i = 0; i < examples.size(); ++i) count += shown(examples[i].priced()) != expected[i];
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4, 0));
}
#endif

TEST_F(Catalogue, BlocksThatFindNoMemoryAreRefusedAndMatricesNeedNone) {
  for (const Call& example : examples) {
    const std::string name = example.function->name;
    const bool blocks = example.function->frame.intake == Intake::blocks;
    if (name.find("BASVOL") == std::string::npos || !example.function->takes_ranges) continue;
    const std::string expected = blocks ? "#VALUE!" : shown(example.priced());
    testing::internal::CaptureStderr();
    set_allocation_limit(1);
    EXPECT_EQ(shown(example.priced()), expected) << name;
    set_allocation_limit(0);
    EXPECT_EQ(testing::internal::GetCapturedStderr().empty(), !blocks) << name;
  }
}

// A host whose every argument claims a block of this many ones.
struct Claim {
  int rows, columns;
};
struct ClaimReader {
  using Given = Claim;
  static Holds holds(const Claim&) { return Holds::cells; }
  static double number(const Claim&) { return 1.0; }
  static int error(const Claim&) { return value_code; }
  struct Block {
    Claim claim;
    explicit Block(const Claim& given) : claim(given) {}
    bool ready() const { return true; }
    int rows() const { return claim.rows; }
    int columns() const { return claim.columns; }
    Holds holds(int) const { return Holds::number; }
    double number(int) const { return 1.0; }
    int error(int) const { return value_code; }
  };
};

TEST(Intake, BlocksBeyondAnySheetAreRefused) {
  const struct {
    const char* name;
    int code;
  } rows[] = {{"EURO", value_code},      {"CMPASN", value_code},   {"BASVOL", value_code},
              {"ASTRIP", value_code},    {"SWAPTION", value_code}, {"XCAP", value_code},
              {"BASVOLT", missing_code}, {"BASCORR", missing_code}};
  // 65536 x 65536 and 2^31 - 1 squared wrap to 0 and 1 in 32 bits.
  for (int edge : {65535, 65536, std::numeric_limits<int>::max()})
    for (const auto& row : rows) {
      const std::vector<Claim> claims(most_arguments, Claim{edge, edge});
      const Answer answer = FrameReader<ClaimReader>::evaluate(*find_in_catalogue(row.name), claims.data());
      EXPECT_EQ(answer.error, row.code) << row.name << " with " << edge << " rows and columns";
    }
}

}  // namespace
}  // namespace kestran
