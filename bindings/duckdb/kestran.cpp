// The worksheet functions as scalar functions of DuckDB, over its C interface for extensions. A refused call
// gives NULL; the function of the same name with _refusal behind it says why.
#include <algorithm>
#include <cstdint>
#include <exception>
#include <limits>
#include <string>
#include <vector>

#include "functions/explain.h"

#define DUCKDB_EXTENSION_NAME kestran
#include "duckdb_extension.h"

DUCKDB_EXTENSION_EXTERN

namespace kestran {
namespace {

constexpr double empty = std::numeric_limits<double>::quiet_NaN();

// How deep the type of an argument is: 0 for DOUBLE, 1 for DOUBLE[], 2 for DOUBLE[][].
int depth_of(ParameterKind kind) {
  if (kind == ParameterKind::square) return 2;
  return is_range(kind) ? 1 : 0;
}

// Values of one type, some of which may be NULL.
template <class Value>
struct Values {
  const Value* values = nullptr;
  const std::uint64_t* valid = nullptr;

  void read(duckdb_vector vector) {
    values = static_cast<const Value*>(duckdb_vector_get_data(vector));
    valid = duckdb_vector_get_validity(vector);
  }
  bool null(idx_t k) const { return valid != nullptr && (valid[k / 64] >> k % 64 & 1) == 0; }
};

// One argument of a chunk of rows. A NULL is an argument left out or an empty cell, a list without cells a
// single empty one. Rows of a block that are shorter than others end in empty cells.
class ChunkArgument {
 public:
  void read(duckdb_vector vector, int depth_of_type) {
    depth = depth_of_type;
    if (depth > 0) lists[0].read(vector);
    if (depth > 0) vector = duckdb_list_vector_get_child(vector);
    if (depth > 1) lists[1].read(vector);
    if (depth > 1) vector = duckdb_list_vector_get_child(vector);
    numbers.read(vector);
  }

  // Lives until the next row's.
  Operand operand(idx_t row) {
    if (depth == 0) return {numbers.null(row) ? &empty : numbers.values + row};
    if (lists[0].null(row)) return {&empty};
    cells.clear();
    const duckdb_list_entry& list = lists[0].values[row];
    const idx_t rows = depth == 1 ? 1 : list.length;
    const idx_t columns = depth == 1 ? list.length : longest_of(list);
    for (idx_t i = 0; i < rows; ++i) add(depth == 1 ? list : row_of(list, i), columns);
    if (cells.empty()) return {&empty, 1, 1};
    if (cells.size() > most_cells) return {&empty, 1, 0};
    return {cells.data(), static_cast<int>(rows), static_cast<int>(columns)};
  }

 private:
  // More than any function takes; a list of more counts as cells that cannot be read.
  static constexpr std::size_t most_cells = 1 << 20;

  duckdb_list_entry row_of(const duckdb_list_entry& block, idx_t i) const {
    return lists[1].null(block.offset + i) ? duckdb_list_entry{0, 0} : lists[1].values[block.offset + i];
  }
  idx_t longest_of(const duckdb_list_entry& block) const {
    idx_t longest = 0;
    for (idx_t i = 0; i < block.length; ++i) longest = std::max(longest, idx_t{row_of(block, i).length});
    return longest;
  }
  void add(const duckdb_list_entry& list, idx_t columns) {
    for (idx_t i = 0; i < columns && cells.size() <= most_cells; ++i)
      cells.push_back(i < list.length && !numbers.null(list.offset + i) ? numbers.values[list.offset + i]
                                                                        : empty);
  }

  int depth = 0;
  Values<double> numbers;
  Values<duckdb_list_entry> lists[2];
  std::vector<double> cells;
};

// Hands each row of a chunk to give(row, function, operands, answer).
template <class Give>
void price_chunk(duckdb_function_info info, duckdb_data_chunk chunk, Give give) {
  const Function& function = *static_cast<const Function*>(duckdb_scalar_function_get_extra_info(info));
  const auto given = static_cast<int>(duckdb_data_chunk_get_column_count(chunk));
  static constexpr double main_result = 0.0;
  try {
    ChunkArgument arguments[most_arguments];
    Operand operands[most_arguments];
    operands[function.argument_count - 1] = {&main_result};
    for (int i = 0; i < given; ++i)
      arguments[i].read(duckdb_data_chunk_get_vector(chunk, static_cast<idx_t>(i)),
                        depth_of(function.arguments[i].kind));
    for (idx_t row = 0; row < duckdb_data_chunk_get_size(chunk); ++row) {
      for (int i = 0; i < given; ++i) operands[i] = arguments[i].operand(row);
      give(row, function, operands, price(function, operands));
    }
  } catch (const std::exception&) {
    duckdb_scalar_function_set_error(info, "out of memory");
  }
}

void set_null(duckdb_vector result, idx_t row) {
  duckdb_vector_ensure_validity_writable(result);
  duckdb_validity_set_row_invalid(duckdb_vector_get_validity(result), row);
}

void give_numbers(duckdb_function_info info, duckdb_data_chunk chunk, duckdb_vector result) {
  auto* numbers = static_cast<double*>(duckdb_vector_get_data(result));
  price_chunk(info, chunk, [&](idx_t row, const Function&, const Operand*, const Answer& answer) {
    if (!answer.is_number()) return set_null(result, row);
    numbers[row] = answer.number;
  });
}

void give_refusals(duckdb_function_info info, duckdb_data_chunk chunk, duckdb_vector result) {
  price_chunk(info, chunk,
              [&](idx_t row, const Function& function, const Operand* given, const Answer& answer) {
                if (answer.is_number()) return set_null(result, row);
                const std::string words = refusal_text(function, given, answer);
                duckdb_vector_assign_string_element_len(result, row, words.data(), words.size());
              });
}

struct Types {
  duckdb_logical_type number = duckdb_create_logical_type(DUCKDB_TYPE_DOUBLE);
  duckdb_logical_type line = duckdb_create_list_type(number);
  duckdb_logical_type block = duckdb_create_list_type(line);
  duckdb_logical_type text = duckdb_create_logical_type(DUCKDB_TYPE_VARCHAR);

  Types() = default;
  Types(const Types&) = delete;
  Types& operator=(const Types&) = delete;
  ~Types() {
    for (duckdb_logical_type* type : {&number, &line, &block, &text}) duckdb_destroy_logical_type(type);
  }
  duckdb_logical_type of(ParameterKind kind) const {
    const duckdb_logical_type types[] = {number, line, block};
    return types[depth_of(kind)];
  }
};

// Where the argument that asks for the result is the last, there is a form without it, for result 0.
bool add(duckdb_connection connection, const Function& function, const std::string& name, const Types& types,
         duckdb_logical_type result, duckdb_scalar_function_t run) {
  const int count = function.argument_count;
  const bool last_may_miss = result_argument(function) == count - 1;
  duckdb_scalar_function_set set = duckdb_create_scalar_function_set(name.c_str());
  bool added = true;
  for (int taken = last_may_miss ? count - 1 : count; taken <= count; ++taken) {
    duckdb_scalar_function form = duckdb_create_scalar_function();
    duckdb_scalar_function_set_name(form, name.c_str());
    for (int i = 0; i < taken; ++i)
      duckdb_scalar_function_add_parameter(form, types.of(function.arguments[i].kind));
    duckdb_scalar_function_set_return_type(form, result);
    duckdb_scalar_function_set_special_handling(form);
    duckdb_scalar_function_set_extra_info(form, const_cast<Function*>(&function), nullptr);
    duckdb_scalar_function_set_function(form, run);
    added = added && duckdb_add_scalar_function_to_set(set, form) == DuckDBSuccess;
    duckdb_destroy_scalar_function(&form);
  }
  added = added && duckdb_register_scalar_function_set(connection, set) == DuckDBSuccess;
  duckdb_destroy_scalar_function_set(&set);
  return added;
}

}  // namespace
}  // namespace kestran

DUCKDB_EXTENSION_ENTRYPOINT(duckdb_connection connection, duckdb_extension_info info,
                            duckdb_extension_access* access) {
  using namespace kestran;
  const Types types;
  try {
    for (int i = 0; i < catalogue_size; ++i) {
      const Function& function = catalogue[i];
      const std::string name = function.name;
      if (add(connection, function, name, types, types.number, give_numbers) &&
          add(connection, function, name + "_refusal", types, types.text, give_refusals))
        continue;
      access->set_error(info, ("kestran: the function " + name + " cannot be added").c_str());
      return false;
    }
    return true;
  } catch (const std::exception&) {
    access->set_error(info, "kestran: out of memory");
    return false;
  }
}
