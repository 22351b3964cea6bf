// How a worksheet function gets its arguments from a host's records: which are taken, what is refused and
// with which code.
//
// A host describes its records by a Reader:
//   Given                  one argument as the host hands it over
//   holds, number, error   of an argument
//   Block                  the cells behind an argument, made from it and released when it goes out of scope:
//                          ready() (false when they cannot be read now), rows(), columns(), and holds(i),
//                          number(i), error(i) of cell i, row after row. Where the numbers of cells stand in
//                          memory as they are, also numbers(), the first of them, and apart, the doubles from
//                          one to the next
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <type_traits>

#include "functions/catalogue.h"
#include "functions/processor_state.h"
#include "numerics/arrays.h"

namespace kestran {

/// What an argument or a cell holds. Text, logical values and whatever else is no number is `other`.
enum class Holds { number, error, nothing, cells, other };

constexpr int most_lines = 8;
constexpr int most_blocks = 9;

// Why an argument ends the call, or, remembered, will end it.
struct Refusal {
  int code = -1;
  Reason reason = Reason::none;
  int argument = -1;

  explicit operator bool() const { return code >= 0; }
  Answer answer() const { return Answer::failure(code, reason, argument); }
};
constexpr Refusal go_on;

// Numbers in memory of their own; null when there was none.
struct OwnedCells : Cells {
  OwnedCells() = default;
  ~OwnedCells() { free_dvector(values, 0, count - 1); }
  OwnedCells(const OwnedCells&) = delete;
  OwnedCells& operator=(const OwnedCells&) = delete;

  bool allocate(int cells) {
    values = dvector(0, cells - 1);
    count = cells;
    return values != nullptr;
  }
};

// The `apart` of a block; 0 where it does not say.
template <class Block, class = void>
constexpr int apart_in = 0;
template <class Block>
constexpr int apart_in<Block, std::void_t<decltype(Block::apart)>> = Block::apart;

// The arguments of one call, and what they turned out to be so far.
struct Taking {
  double numbers[most_arguments];
  Cells cells[most_arguments];

  int ranges = 0;        // rows, columns and matrices of several cells
  int singles = 0;       // numbers, and cells that hold one
  int standing = 0;      // the same that may stand for each cell of a range; not counted among the singles
  int shortest = 1;      // cells of the shortest row or column; 1 before the first
  Refusal remembered;    // the last error of a frame that reads on
  int passed_over = -1;  // a range that did not count, by its place
};

template <class Reader>
class FrameReader {
  using Given = typename Reader::Given;
  using Block = typename Reader::Block;

 public:
  static Answer evaluate(const Function& function, const Given* given) {
    return evaluate(function, given, function.compute);
  }

  // With compute(numbers, cells) in the place of the function's own.
  template <class Compute>
  static Answer evaluate(const Function& function, const Given* given, const Compute& compute) {
    const ProcessorState state;
    switch (function.frame.intake) {
      case Intake::scalars:
        return of_scalars(function, given, compute);
      case Intake::lines:
        return of_lines(function, given, compute);
      default:
        return of_blocks(function, given, compute);
    }
  }

  // Several results of one call by compute_all: answers[j] is that for selectors[j]. The argument that asks
  // for the result must be a number; which one does not matter.
  static void evaluate_results(const Function& function, const Given* given, const int* selectors,
                               int results, Answer* answers) {
    bool taken = false;
    const Answer refusal = evaluate(function, given, [&](const double* numbers, const Cells* cells) {
      function.compute_all(numbers, cells, selectors, results, answers);
      taken = true;
      return Answer(0.0);
    });
    if (!taken) std::fill_n(answers, results, refusal);
  }

 private:
  static std::int64_t count(const Block& block) { return std::int64_t{block.rows()} * block.columns(); }
  static bool is_one_line(const Block& block) { return block.rows() == 1 || block.columns() == 1; }

  // Copies all cells; false when one of them is not a number.
  static bool copy(const Block& block, double* numbers) {
    const auto cells = static_cast<int>(count(block));
    for (int i = 0; i < cells; ++i) {
      if (block.holds(i) != Holds::number) return false;
      numbers[i] = block.number(i);
    }
    return true;
  }

  // In steps of four: there may be 65,536 cells.
  static bool are_numbers(const Block& block) {
    const auto cells = static_cast<int>(count(block));
    const auto is_number = [&](int i) { return block.holds(i) == Holds::number; };
    int i = 0;
    for (; i + 3 < cells; i += 4)
      if (!is_number(i) || !is_number(i + 1) || !is_number(i + 2) || !is_number(i + 3)) return false;
    for (; i < cells; ++i)
      if (!is_number(i)) return false;
    return true;
  }

  template <class Compute>
  static Answer of_scalars(const Function& function, const Given* given, const Compute& compute) {
    double numbers[most_arguments];
    Refusal last_error;
    int missing = -1;
    for (int i = 0; i < function.argument_count; ++i) {
      switch (Reader::holds(given[i])) {
        case Holds::number:
          numbers[i] = Reader::number(given[i]);
          break;
        case Holds::nothing:
          missing = missing < 0 ? i : missing;
          break;
        case Holds::error:
          last_error = {Reader::error(given[i]), Reason::error_value, i};
          break;
        case Holds::cells: {
          const Block block(given[i]);
          if (!block.ready()) return Answer::failure(value_code, Reason::unreadable, i);
          if (count(block) != 1) return Answer::failure(value_code, Reason::several_cells, i);
          const Holds found = block.holds(0);
          if (found == Holds::number)
            numbers[i] = block.number(0);
          else if (found == Holds::nothing)
            missing = missing < 0 ? i : missing;
          else if (found == Holds::error)
            last_error = {block.error(0), Reason::error_value, i};
          else
            last_error = {value_code, Reason::no_number, i};
          break;
        }
        case Holds::other:
          last_error = {value_code, Reason::no_number, i};
      }
    }
    if (last_error) return last_error.answer();
    if (missing >= 0) return Answer::failure(missing_code, Reason::missing, missing);
    return compute(numbers, nullptr);
  }

  // A number is wanted and is not there.
  static Refusal no_number(const Given& given) {
    const Holds held = Reader::holds(given);
    if (held == Holds::error) return {Reader::error(given), Reason::error_value};
    return {value_code, held == Holds::nothing ? Reason::missing : Reason::no_number};
  }

  // The readers of one argument each: go_on, or what ends the call at once.

  // A number, a cell, or a row or column of at most 256 cells. A block of several rows and columns is passed
  // over without counting.
  static Refusal take_line(const Given& given, ParameterKind kind, Cells& line, Taking& taking) {
    const Holds held = Reader::holds(given);
    if (held == Holds::number) {
      line.values[0] = Reader::number(given);
      line.count = 1;
    } else if (held != Holds::cells) {
      return no_number(given);
    } else {
      const Block block(given);
      if (!block.ready()) return {value_code, Reason::unreadable};
      if (count(block) > range_cells) return {value_code, Reason::too_many_cells};
      if (!is_one_line(block)) return go_on;
      if (!copy(block, line.values)) return {value_code, Reason::bad_cell};
      line.count = static_cast<int>(count(block));
    }
    if (line.count > 1) {
      taking.shortest = taking.ranges == 0 ? line.count : std::min(taking.shortest, line.count);
      ++taking.ranges;
    } else {
      ++(kind == ParameterKind::line_or_number ? taking.standing : taking.singles);
    }
    return go_on;
  }

  // A number, or a row or column, of which the first cell is taken.
  static Refusal take_first(const Given& given, FirstCell rule, double& number, Taking& taking) {
    const Holds held = Reader::holds(given);
    if (held == Holds::number) {
      number = Reader::number(given);
      ++taking.singles;
      return go_on;
    }
    if (held != Holds::cells) return no_number(given);
    const Block block(given);
    if (!block.ready()) return {value_code, Reason::unreadable};
    if (!is_one_line(block)) return {value_code, Reason::rows_and_columns};
    const Holds first = block.holds(0);
    if (first == Holds::number) {
      number = block.number(0);
      ++taking.singles;
      return go_on;
    }
    if (rule == FirstCell::uncounted) return go_on;
    if (rule == FirstCell::error_passed_on && first == Holds::error)
      return {block.error(0), Reason::error_value};
    return {value_code, Reason::bad_cell};
  }

  // A square block, which is released when the call ends, and a copy of its numbers where there must be one.
  struct SquareBlock {
    std::optional<Block> block;
    OwnedCells copied;
    double single;
  };

  // A number, a cell, or a square block with a row for each cell of the ranges so far.
  static Refusal take_square(const Given& given, SquareBlock& square, Cells& matrix, Taking& taking) {
    const Holds held = Reader::holds(given);
    if (held == Holds::number) {
      square.single = Reader::number(given);
      matrix = {&square.single, 1};
      ++taking.singles;
      return go_on;
    }
    if (held != Holds::cells) return no_number(given);
    const Block& block = square.block.emplace(given);
    if (!block.ready()) return {value_code, Reason::unreadable};
    if (block.rows() != taking.shortest || block.columns() != taking.shortest)
      return {value_code, Reason::not_square};
    const auto cells = static_cast<int>(count(block));
    constexpr int apart = apart_in<Block>;
    if constexpr (apart > 0) {
      if (!are_numbers(block)) return {value_code, Reason::bad_cell};
      matrix = {const_cast<double*>(block.numbers()), cells, apart};
    } else {
      if (!square.copied.allocate(cells)) return {value_code, Reason::no_memory};
      if (!copy(block, square.copied.values)) return {value_code, Reason::bad_cell};
      matrix = square.copied;
    }
    ++(cells == 1 ? taking.singles : taking.ranges);
    return go_on;
  }

  // In a frame of blocks an argument that is no number does not count, but lets the reading go on. True when
  // the argument was dealt with.
  static bool take_plain(const Given& given, double& number, Taking& taking) {
    const Holds held = Reader::holds(given);
    if (held == Holds::cells) return false;
    if (held == Holds::number) {
      number = Reader::number(given);
      ++taking.singles;
    } else {
      taking.remembered = no_number(given);
    }
    return true;
  }

  // A number, a cell, or a block of any shape of at most `capacity` cells.
  static Refusal take_block(const Given& given, int capacity, OwnedCells& cells, Taking& taking) {
    if (Reader::holds(given) == Holds::nothing) return {value_code, Reason::missing};
    double number = 0.0;
    if (take_plain(given, number, taking)) {
      if (!cells.allocate(1)) return {value_code, Reason::no_memory};
      cells.values[0] = number;
      return go_on;
    }
    const Block block(given);
    if (!block.ready()) return {value_code, Reason::unreadable};
    if (count(block) > capacity)
      return taking.remembered ? taking.remembered : Refusal{missing_code, Reason::too_many_cells};
    if (!cells.allocate(static_cast<int>(count(block)))) return {value_code, Reason::no_memory};
    if (!copy(block, cells.values)) return {value_code, Reason::bad_cell};
    ++taking.singles;
    return go_on;
  }

  // The same for an argument that must be a single number or cell.
  static Refusal take_cell(const Given& given, double& number, Taking& taking) {
    if (Reader::holds(given) == Holds::nothing) return {value_code, Reason::missing};
    if (take_plain(given, number, taking)) return go_on;
    const Block block(given);
    if (!block.ready()) return {value_code, Reason::unreadable};
    if (count(block) != 1) return {value_code, Reason::several_cells};
    if (!copy(block, &number)) return {value_code, Reason::bad_cell};
    ++taking.singles;
    return go_on;
  }

  template <class Compute>
  static Answer of_lines(const Function& function, const Given* given, const Compute& compute) {
    double storage[most_lines][range_cells];
    SquareBlock square;
    Taking taking;
    int lines = 0;
    int ranges = 0;
    for (int i = 0; i < function.argument_count; ++i) {
      const ParameterKind kind = function.arguments[i].kind;
      const int counted = taking.ranges + taking.singles + taking.standing;
      Refusal refusal;
      ranges += is_range(kind);
      if (kind == ParameterKind::square) {
        refusal = take_square(given[i], square, taking.cells[i], taking);
      } else if (is_range(kind)) {
        taking.cells[i].values = storage[lines++];
        refusal = take_line(given[i], kind, taking.cells[i], taking);
      } else {
        refusal = take_first(given[i], function.frame.first_cell, taking.numbers[i], taking);
      }
      if (refusal) return Answer::failure(refusal.code, refusal.reason, i);
      if (taking.ranges + taking.singles + taking.standing == counted) taking.passed_over = i;
    }
    const bool several =
        taking.ranges + taking.standing == ranges && taking.singles == function.argument_count - ranges;
    const bool one_each = function.frame.singles == Singles::priced &&
                          taking.singles + taking.standing == function.argument_count;
    if (!several && !one_each) return misfit(function, taking);
    const int longer = fit_lines(function, taking);
    if (longer >= 0) return Answer::failure(value_code, Reason::length, longer);
    return compute(taking.numbers, taking.cells);
  }

  // Arguments that are all in order but not of one kind: the reason why not.
  static Answer misfit(const Function& function, const Taking& taking) {
    const int over = taking.passed_over;
    if (over >= 0) {
      const bool range = is_range(function.arguments[over].kind);
      return Answer::failure(value_code, range ? Reason::rows_and_columns : Reason::bad_cell, over);
    }
    for (int i = 0; i < function.argument_count && taking.ranges > 0; ++i)
      if (function.arguments[i].kind != ParameterKind::line_or_number &&
          is_range(function.arguments[i].kind) && taking.cells[i].count == 1)
        return Answer::failure(value_code, Reason::beside_ranges, i);
    return Answer::failure(value_code, Reason::single_strip);
  }

  // Gives each row and column the number of cells that the function uses, and -1; or the place of one whose
  // length does not fit.
  static int fit_lines(const Function& function, Taking& taking) {
    int first = 0;
    int last = 1;
    int longest = 1;
    for (int i = 0; i < function.argument_count; ++i) {
      if (!is_line(function.arguments[i].kind)) continue;
      const int count = taking.cells[i].count;
      if (count > 1) last = count;
      if (count > 1 && first == 0) first = count;
      longest = std::max(longest, count);
    }
    const Length length = function.frame.length;
    const int cells = length == Length::last ? last : taking.shortest;
    const bool refused = taking.shortest < cells || (length == Length::equal && longest > taking.shortest);
    for (int i = 0; i < function.argument_count; ++i) {
      if (!is_line(function.arguments[i].kind)) continue;
      Cells& line = taking.cells[i];
      if (refused) {
        if (line.count > 1 && (length == Length::last ? line.count < cells : line.count != first)) return i;
        continue;
      }
      if (line.count == 1) std::fill_n(line.values, cells, line.values[0]);
      line.count = cells;
    }
    return -1;
  }

  template <class Compute>
  static Answer of_blocks(const Function& function, const Given* given, const Compute& compute) {
    OwnedCells blocks[most_blocks];
    Taking taking;
    int used = 0;
    for (int i = 0; i < function.argument_count; ++i) {
      const ParameterKind kind = function.arguments[i].kind;
      Refusal refusal;
      if (is_range(kind)) {
        OwnedCells& block = blocks[used++];
        refusal = take_block(given[i], kind == ParameterKind::triangle ? correlation_cells : range_cells,
                             block, taking);
        taking.cells[i] = block;
      } else {
        refusal = take_cell(given[i], taking.numbers[i], taking);
      }
      if (taking.remembered && taking.remembered.argument < 0) taking.remembered.argument = i;
      if (refusal)
        return Answer::failure(refusal.code, refusal.reason, refusal.argument < 0 ? i : refusal.argument);
    }
    if (taking.remembered) return taking.remembered.answer();
    return compute(taking.numbers, taking.cells);
  }
};

}  // namespace kestran
