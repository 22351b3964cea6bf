#include "addin/modern/spill.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

#include "addin/modern/excel12_call.h"
#include "functions/price_many.h"
#include "functions/texts.h"

namespace kestran {
namespace {

constexpr int answers_at_once = 64;
constexpr std::chrono::milliseconds patience(100);

using Block = Xloper12Reader::Block;

// An argument of the call for one of its answers: as it was given, all its cells, or one of them.
struct Picked {
  XLOPER12* record;
  const Block* cells;
  int place;  // of the one cell; -1 for all
};

struct PickedReader {
  using Given = Picked;

  static Holds holds(const Picked& given) {
    return given.cells != nullptr ? Holds::cells : Xloper12Reader::holds(given.record);
  }
  static double number(const Picked& given) { return Xloper12Reader::number(given.record); }
  static int error(const Picked& given) { return Xloper12Reader::error(given.record); }

  class Block {
   public:
    explicit Block(const Picked& given) : picked(given) {}
    bool ready() const { return picked.cells->ready(); }
    int rows() const { return one() ? 1 : picked.cells->rows(); }
    int columns() const { return one() ? 1 : picked.cells->columns(); }
    Holds holds(int i) const { return picked.cells->holds(one() ? picked.place : i); }
    double number(int i) const { return picked.cells->number(one() ? picked.place : i); }
    int error(int i) const { return picked.cells->error(one() ? picked.place : i); }
    const double* numbers() const { return picked.cells->numbers() + (one() ? picked.place * apart : 0); }
    static constexpr int apart = Xloper12Reader::Block::apart;

   private:
    bool one() const { return picked.place >= 0; }

    const Picked& picked;
  };
};

struct Shape {
  std::int64_t rows, columns;
};

// What is given, without having Excel make an array of it. Several areas are nothing that Excel makes one of.
Shape shape_of(const XLOPER12& given) {
  const AreaList12* areas = nullptr;
  switch (given.type) {
    case xltypeMulti:
      return {given.value.array.rows, given.value.array.columns};
    case xltypeSRef:
      areas = &given.value.sheet_reference;
      break;
    case xltypeRef:
      areas = given.value.reference.areas;
      break;
    default:
      break;
  }
  if (areas == nullptr || areas->count != 1) return {1, 1};
  const CellRectangle12& area = areas->area;
  return {std::int64_t{area.last_row} - area.first_row + 1,
          std::int64_t{area.last_column} - area.first_column + 1};
}

bool several(const Shape& shape) { return shape.rows > 1 || shape.columns > 1; }

// The shape of all blocks laid over each other.
Shape shape_of_answers(const Function& function, XLOPER12* const* given) {
  Shape all{1, 1};
  for (int i = 0; i < function.argument_count; ++i) {
    if (is_range(function.arguments[i].kind)) continue;
    const Shape shape = shape_of(*given[i]);
    all = {std::max(all.rows, shape.rows), std::max(all.columns, shape.columns)};
  }
  return all;
}

class Spill {
 public:
  Spill(const Function& called, XLOPER12* const* given, const Shape& shape)
      : function(called), rows(static_cast<int>(shape.rows)), columns(static_cast<int>(shape.columns)) {
    for (int i = 0; i < function.argument_count; ++i) {
      picked[i] = {given[i], nullptr, -1};
      if (Xloper12Reader::holds(given[i]) != Holds::cells) continue;
      blocks[i].emplace(given[i]);
      picked[i].cells = &*blocks[i];
      spread[i] = !is_range(function.arguments[i].kind);
    }
  }

  // Whether all cells that are to be spread could be read. To be asked first.
  bool ready() {
    for (int i = 0; i < function.argument_count; ++i)
      if (spread[i] && !blocks[i]->ready()) return false;
    find_results();
    return true;
  }

  // False when the user broke it off. Prices as many at once as are done in a fraction of the user's
  // patience.
  bool write(XLOPER12* answers) {
    const int deals = rows * columns / results;
    const int most_deals = std::max(1, answers_at_once / results);
    const bool numbers = function.frame.intake == Intake::scalars;
    auto asked = std::chrono::steady_clock::now();
    auto now = asked;
    int step = 1;
    for (int begin = 0; begin < deals;) {
      const int end = std::min(begin + step, deals);
      numbers ? write_numbers(begin, end, answers) : write_deal(begin, answers);
      begin = end;
      const auto before = std::exchange(now, std::chrono::steady_clock::now());
      if (numbers) step = now - before < patience / 8 ? std::min(2 * step, most_deals) : 1;
      if (now - asked < patience) continue;
      if (broken_off()) return false;
      asked = now;
    }
    return true;
  }

 private:
  // Where in the block of argument i its cell for an answer is; -1 outside.
  int place(int i, int answer) const {
    const Block& block = *blocks[i];
    const int row = block.rows() == 1 ? 0 : answer / columns;
    const int column = block.columns() == 1 ? 0 : answer % columns;
    return row < block.rows() && column < block.columns() ? row * block.columns() + column : -1;
  }

  // Where along one side only the result changes, a deal is what lies along it, and its results come from one
  // pass; else each answer is a deal with one result.
  void find_results() {
    const int asks_at = function.result_argument;
    if (asks_at < 0 || !spread[asks_at] || function.compute_all == nullptr) return;
    const Block& asking = *blocks[asks_at];
    const bool across = asking.rows() == 1 && asking.columns() == columns;
    const bool along_rows = asking.columns() == 1 && asking.rows() == rows;
    const int count = across ? columns : rows;
    if (across == along_rows || count > most_results) return;
    for (int i = 0; i < function.argument_count; ++i)
      if (i != asks_at && spread[i] && (across ? blocks[i]->columns() : blocks[i]->rows()) > 1) return;
    for (int j = 0; j < count; ++j) {
      if (asking.holds(j) != Holds::number || std::isnan(asking.number(j))) return;
      selectors[j] = truncate_to_int(asking.number(j));
    }
    results = count;
    down = along_rows;
  }

  int answer_of(int deal, int result) const {
    return down ? result * columns + deal : deal * results + result;
  }

  // By the rules of the frame, whatever the cells hold.
  void write_deal(int deal, XLOPER12* answers) {
    bool outside = false;
    for (int i = 0; i < function.argument_count; ++i) {
      if (!spread[i]) continue;
      picked[i].place = place(i, answer_of(deal, 0));
      outside = outside || picked[i].place < 0;
    }
    Answer priced[most_results];
    if (outside)
      std::fill_n(priced, results, Answer::failure(xlerrNA, Reason::none));
    else if (results == 1)
      priced[0] = FrameReader<PickedReader>::evaluate(function, picked);
    else
      FrameReader<PickedReader>::evaluate_results(function, picked, selectors, results, priced);
    for (int j = 0; j < results; ++j) write_answer(priced[j], answers[answer_of(deal, j)]);
  }

  // Several deals of a function that takes numbers alone. Those for which an argument is no number go the
  // way of write_deal, which knows why.
  void write_numbers(int begin, int end, XLOPER12* answers) {
    double numbers[most_arguments][answers_at_once];
    Column given[most_arguments];
    bool whole[answers_at_once];
    Answer priced[answers_at_once];
    const int asks_at = results > 1 ? function.result_argument : -1;
    std::fill(whole, whole + answers_at_once, true);
    for (int i = 0; i < function.argument_count; ++i) {
      given[i] = {numbers[i], spread[i] ? 1 : 0};
      if (i == asks_at) continue;
      for (int k = 0; k < (spread[i] ? end - begin : 1); ++k) {
        const bool is_number = take_number(i, answer_of(begin + k, 0), numbers[i][k]);
        if (spread[i])
          whole[k] = whole[k] && is_number;
        else if (!is_number)
          std::fill(whole, whole + answers_at_once, false);
      }
    }
    price_many(function, given, static_cast<std::size_t>(end - begin), asks_at < 0 ? nullptr : selectors,
               results, priced);
    for (int k = 0; k < end - begin; ++k) {
      if (!whole[k]) write_deal(begin + k, answers);
      for (int j = 0; whole[k] && j < results; ++j)
        write_answer(priced[k * results + j], answers[answer_of(begin + k, j)]);
    }
  }

  // A number that is not one (NaN) has its own way through the rules, too, and stands for whatever is none.
  bool take_number(int i, int answer, double& number) const {
    number = std::numeric_limits<double>::quiet_NaN();
    if (!spread[i]) {
      if (PickedReader::holds(picked[i]) == Holds::number) number = PickedReader::number(picked[i]);
    } else {
      const int cell = place(i, answer);
      if (cell >= 0 && blocks[i]->holds(cell) == Holds::number) number = blocks[i]->number(cell);
    }
    return !std::isnan(number);
  }

  const Function& function;
  int rows, columns;
  std::optional<Block> blocks[most_arguments];
  bool spread[most_arguments] = {};
  Picked picked[most_arguments];
  int selectors[most_results];
  int results = 1;    // of each deal
  bool down = false;  // where a deal's results stand below each other
};

}  // namespace

bool wants_array(const Function& function, XLOPER12* const* given) {
  std::uint32_t types = 0;
  for (int i = 0; i < function.argument_count; ++i) types |= given[i]->type;
  if ((types & (xltypeSRef | xltypeRef | xltypeMulti)) == 0) return false;  // as most calls
  for (int i = 0; i < function.argument_count; ++i)
    if (Xloper12Reader::holds(given[i]) == Holds::cells && !is_range(function.arguments[i].kind) &&
        several(shape_of(*given[i])))
      return true;
  return false;
}

XLOPER12* spill(const Function& function, XLOPER12* const* given) {
  const Shape shape = shape_of_answers(function, given);
  // Either alone may be 2^32 where a reference makes no sense.
  if (shape.rows > most_answers || shape.columns > most_answers / shape.rows)
    return give(Answer::failure(value_code, Reason::too_many_cells));
  Spill call(function, given, shape);
  if (!call.ready()) return give(Answer::failure(value_code, Reason::unreadable));
  XLOPER12* const result = new_array(static_cast<int>(shape.rows), static_cast<int>(shape.columns));
  if (result == nullptr) return no_memory();
  if (call.write(result->value.array.elements)) return result;
  discard(result);
  return give(Answer::failure(value_code, Reason::unreadable));
}

}  // namespace kestran
