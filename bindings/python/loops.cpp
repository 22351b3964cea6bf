#include "bindings/python/loops.h"

#include <immintrin.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>
#include <new>

#include "functions/in_parts.h"
#include "functions/price_many.h"
#include "functions/refused_number.h"

namespace kestran {
namespace {

// Below this a thread costs more than it saves with a short formula.
constexpr std::size_t rows_per_thread = 64;
constexpr std::size_t answers_at_once = 512;

std::atomic<int> threads_wanted{1};

double& number_at(char* place) { return *reinterpret_cast<double*>(place); }

double result_of(const Answer& answer) {
  return answer.is_number() ? answer.number : refused_number(answer.error);
}

// NumPy warns of what the processor's flags say; those that models raise on the way to a number are not news.
class ProcessorFlags {
 public:
  ProcessorFlags() : callers(_mm_getcsr()) {}
  ~ProcessorFlags() { _mm_setcsr(callers); }
  ProcessorFlags(const ProcessorFlags&) = delete;
  ProcessorFlags& operator=(const ProcessorFlags&) = delete;

 private:
  unsigned callers;
};

int threads_for(std::size_t rows) {
  return static_cast<int>(std::min<std::size_t>(static_cast<std::size_t>(loop_threads()),
                                                (rows + rows_per_thread - 1) / rows_per_thread));
}

// How many cells of a line are looked at: one more than any function takes.
std::ptrdiff_t cells_taken(const Argument& argument, std::ptrdiff_t cells) {
  const int most = argument.kind == ParameterKind::square ? range_cells : correlation_cells;
  return std::min<std::ptrdiff_t>(cells, most + 1);
}

bool is_empty_cell(double cell) { return cell != cell && refusal_code(cell) < 0; }

// A row of cells without the empty ones at its end, which fill up a shorter row of an array.
int used_cells(const double* cells, std::ptrdiff_t count) {
  while (count > 1 && is_empty_cell(cells[count - 1])) --count;
  return static_cast<int>(count);
}

// The same for a block: rows and columns of empty cells at the end go, and the rest moves together.
int used_square(double* cells, int rows, int columns) {
  int used = std::min(rows, columns);
  const auto is_empty = [&](int line) {
    for (int k = 0; k < used; ++k)
      if (!is_empty_cell(cells[line * columns + k]) || !is_empty_cell(cells[k * columns + line]))
        return false;
    return true;
  };
  if (rows != columns) return 0;
  while (used > 1 && is_empty(used - 1)) --used;
  for (int i = 1; i < used; ++i) std::copy_n(cells + i * columns, used, cells + i * used);
  return used;
}

}  // namespace

void set_loop_threads(int threads) { threads_wanted = threads; }

int loop_threads() { return threads_wanted; }

int core_dimensions(const Argument& argument) {
  if (argument.kind == ParameterKind::square) return 2;
  return is_range(argument.kind) ? 1 : 0;
}

std::size_t call_room(const Function& function, const std::ptrdiff_t* sizes) {
  std::ptrdiff_t room = 0;
  for (int i = 0; i < function.argument_count; ++i) {
    std::ptrdiff_t cells = 1;
    for (int k = core_dimensions(function.arguments[i]); k > 0; --k)
      cells *= cells_taken(function.arguments[i], *sizes++);
    room += std::max<std::ptrdiff_t>(cells, 1);
  }
  return static_cast<std::size_t>(room);
}

void take_call(const Function& function, char* const* arrays, const std::ptrdiff_t* sizes,
               const std::ptrdiff_t* strides, double* room, Operand* given) {
  for (int i = 0; i < function.argument_count; ++i) {
    const Argument& argument = function.arguments[i];
    const int dimensions = core_dimensions(argument);
    const std::ptrdiff_t rows = dimensions == 2 ? cells_taken(argument, sizes[0]) : 1;
    const std::ptrdiff_t columns = dimensions == 0 ? 1 : cells_taken(argument, sizes[dimensions - 1]);
    const std::ptrdiff_t down = dimensions == 2 ? strides[0] : 0;
    const std::ptrdiff_t across = dimensions == 0 ? 0 : strides[dimensions - 1];
    sizes += dimensions;
    strides += dimensions;
    double* const cells = room;
    for (std::ptrdiff_t row = 0; row < rows; ++row)
      for (std::ptrdiff_t column = 0; column < columns; ++column)
        *room++ = number_at(arrays[i] + row * down + column * across);
    given[i] = {cells, static_cast<int>(rows), static_cast<int>(columns)};
    if (dimensions == 1) given[i].columns = used_cells(cells, columns);
    if (dimensions == 2) {
      const int used = used_square(cells, given[i].rows, given[i].columns);
      if (used > 0) given[i].rows = given[i].columns = used;
    }
    // One cell is a number; none is an argument left out.
    if (room == cells) *room++ = std::numeric_limits<double>::quiet_NaN();
    if (room - cells == 1 || given[i].rows * given[i].columns == 1) given[i] = {cells};
  }
}

void number_loop(char** arrays, const std::ptrdiff_t* sizes, const std::ptrdiff_t* strides, void* data) {
  const Function& function = *static_cast<const Function*>(data);
  const int count = function.argument_count;
  const auto rows = static_cast<std::size_t>(sizes[0]);
  const ProcessorFlags flags;
  in_parts(rows, threads_for(rows), [&](std::size_t first, std::size_t last) {
    Answer answers[answers_at_once];
    Column columns[most_arguments];
    for (std::size_t begin = first; begin < last; begin += answers_at_once) {
      const std::size_t deals = std::min(answers_at_once, last - begin);
      for (int i = 0; i < count; ++i)
        columns[i] = {&number_at(arrays[i] + static_cast<std::ptrdiff_t>(begin) * strides[i]),
                      strides[i] / static_cast<std::ptrdiff_t>(sizeof(double))};
      price_many(function, columns, deals, nullptr, 1, answers);
      for (std::size_t k = 0; k < deals; ++k)
        number_at(arrays[count] + static_cast<std::ptrdiff_t>(begin + k) * strides[count]) =
            result_of(answers[k]);
    }
  });
}

void range_loop(char** arrays, const std::ptrdiff_t* sizes, const std::ptrdiff_t* strides, void* data) {
  const Function& function = *static_cast<const Function*>(data);
  const int count = function.argument_count;
  const auto rows = static_cast<std::size_t>(sizes[0]);
  const std::size_t room = call_room(function, sizes + 1);
  const ProcessorFlags flags;
  in_parts(rows, threads_for(rows), [&](std::size_t first, std::size_t last) {
    const std::unique_ptr<double[]> cells(new (std::nothrow) double[room]);
    Operand given[most_arguments];
    char* of_row[most_arguments];
    for (std::size_t row = first; row < last; ++row) {
      const auto k = static_cast<std::ptrdiff_t>(row);
      double& result = number_at(arrays[count] + k * strides[count]);
      if (cells == nullptr) {
        result = refused_number(value_code);
        continue;
      }
      for (int i = 0; i < count; ++i) of_row[i] = arrays[i] + k * strides[i];
      take_call(function, of_row, sizes + 1, strides + count + 1, cells.get(), given);
      result = result_of(price(function, given));
    }
  });
}

void code_loop(char** arrays, const std::ptrdiff_t* sizes, const std::ptrdiff_t* strides, void*) {
  for (std::ptrdiff_t k = 0; k < sizes[0]; ++k)
    *reinterpret_cast<int*>(arrays[1] + k * strides[1]) = refusal_code(number_at(arrays[0] + k * strides[0]));
}

}  // namespace kestran
