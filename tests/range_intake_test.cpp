// Ranges at and beyond their limits, memory that runs out, and cells that cannot be read: through the built
// add-in.
#include <gtest/gtest.h>

#include <string>

#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/library.h"

namespace kestran {
namespace {

struct RangeIntake : testing::Test {
  RangeIntake() {
    reset_standin();
    EXPECT_EQ(load_addin(program_folder() + KESTRAN_ADDIN), "");
  }
  ~RangeIntake() override {
    unload_addin();
    EXPECT_TRUE(standin().faults.empty());
    EXPECT_EQ(standin().accounting.arrays_handed_out, standin().accounting.arrays_freed);
  }
};

std::string cells(const std::string& cell, int count, char separator) {
  std::string block = "{" + cell;
  for (int i = 1; i < count; ++i) block += separator + cell;
  return block + "}";
}

std::string answer(const std::string& formula) { return evaluate_line(formula).text; }

std::string basket_formula(int count, char separator) {
  const auto range = [&](const std::string& cell) { return cells(cell, count, separator); };
  std::string matrix = "{";
  for (int row = 0; row < count; ++row)
    for (int column = 0; column < count; ++column)
      matrix += (column > 0 ? "," : row > 0 ? ";" : "") + std::string("1");
  return "BASVOL(" + range("10") + "," + range("0.25") + "," + range("0") + "," + range("1") + "," + matrix +
         "},2)";
}

TEST_F(RangeIntake, TakesUpTo256Cells) {
  for (char separator : {',', ';'}) {
    EXPECT_NEAR(std::stod(answer(basket_formula(256, separator))), 0.25, 1e-12);
    EXPECT_EQ(answer(basket_formula(257, separator)), "#VALUE!");
  }
  const auto strip = [](int months) {
    const auto range = [&](const std::string& cell) { return cells(cell, months, ';'); };
    return "ASTRIP(" + range("20") + "," + range("0.3") + "," + range("0.1") + "," + range("0.2") + "," +
           range("20") + ",0,20,0.05,1,0,0.2,1,0,1)";
  };
  EXPECT_GT(std::stod(answer(strip(256))), 0.5);
  EXPECT_EQ(answer(strip(257)), "#VALUE!");
}

TEST_F(RangeIntake, TakesUpTo32640Correlations) {
  const auto basket = [](int count, int correlations) {
    const auto range = [&](const std::string& cell) { return cells(cell, count, ';'); };
    return "BASVOLT(" + range("10") + "," + range("0.25") + "," + range("1") + "," + range("2") + "," +
           cells("1", correlations, ';') + ",2,0)";
  };
  EXPECT_NEAR(std::stod(answer(basket(256, 32640))), 0.25, 1e-12);
  EXPECT_EQ(answer(basket(256, 32639)), "#ERR(65535)");
  EXPECT_EQ(answer(basket(256, 32641)), "#ERR(65535)");
  EXPECT_EQ(answer(basket(257, 32640)), "#ERR(65535)");
}

TEST_F(RangeIntake, UnreadableCellsAreValueWhereverTheyStand) {
  const char* formulas[] = {
      "BASVOL({10,10},{0.25,0.25},{0,0},{1,1},{1,1;1,1},{2})",
      "BASVOLT({10,10},{0.25,0.25},{1,1},{2,2},{1},{2},{0})",
      "ASTRIP({20,21},{0.4,0.3},{0.1,0.2},{0.15,0.25},{21,20},{0},20,0.05,0.9,0,0.3,1,0,{1})",
      "XCAP({20,21},{0.05,0.05},{0.3,0.3},{120,150},{1,1},{0.25},20,0.8,90,0.05,1,0,{25})",
      "SWAPTION({20,21},{1,1},{0.5,0.6},{0.05,0.05},{0.25},20,0.05,0.45,1,0,{1})",
  };
  for (const char* formula : formulas) {
    EXPECT_NE(answer(formula), "#VALUE!") << formula;
    for (int code : {xlretUncalced, xlretFailed, xlretInvXloper}) {
      standin().next_coerce_code = code;
      EXPECT_EQ(answer(formula), "#VALUE!") << formula << " " << code;
    }
  }
}

}  // namespace
}  // namespace kestran
