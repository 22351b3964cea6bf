#include "bench/cases.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>

#include "host/evaluate.h"
#include "host/excel_standin.h"

namespace kestran::bench {
namespace {

// The records of one call, ready to be passed again and again.
struct Call {
  void* entry = nullptr;
  std::vector<XLOPER> records;
  std::vector<std::vector<XLOPER>> blocks;
  std::vector<XLOPER*> pointers;
};

XLOPER number_record(double number) {
  XLOPER record;
  record.type = xltypeNum;
  record.value.number = number;
  return record;
}

std::shared_ptr<Call> prepare_call(const char* function, const std::vector<Argument>& arguments) {
  const auto call = std::make_shared<Call>();
  const Registration* const registered = find_function(function);
  if (registered == nullptr) return call;
  call->entry = registered->entry;
  call->blocks.reserve(arguments.size());
  for (const Argument& argument : arguments) {
    call->records.push_back(number_record(argument.cells[0]));
    if (argument.rows == 0) continue;
    std::vector<XLOPER>& block = call->blocks.emplace_back();
    for (double cell : argument.cells) block.push_back(number_record(cell));
    XLOPER& record = call->records.back();
    record.type = xltypeMulti;
    record.value.array.elements = block.data();
    record.value.array.rows = static_cast<std::uint16_t>(argument.rows);
    record.value.array.columns = static_cast<std::uint16_t>(block.size() / argument.rows);
  }
  call->records.resize(registered->arguments, number_record(0.0));
  for (XLOPER& record : call->records) call->pointers.push_back(&record);
  return call;
}

}  // namespace

std::deque<Case>& cases() {
  static std::deque<Case> all;
  return all;
}

const Side& model_of(const Case& option) {
  return *std::find_if(option.sides.begin(), option.sides.end(),
                       [](const Side& side) { return side.name == "model"; });
}

const Case* half_size_of(const Case& option) {
  const std::string& name = option.name;
  for (std::size_t at = name.find_first_of("/x"); at != std::string::npos;
       at = name.find_first_of("/x", at + 1)) {
    const std::size_t end = std::min(name.find_first_not_of("0123456789", at + 1), name.size());
    if (end == at + 1) continue;
    const int size = std::stoi(name.substr(at + 1, end - at - 1));
    const std::string half = name.substr(0, at + 1) + std::to_string(size / 2) + name.substr(end);
    for (const Case& other : cases())
      if (size % 2 == 0 && other.name == half) return &other;
  }
  return nullptr;
}

std::vector<double> drawn(double lowest, double highest, std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<double> numbers(count);
  for (double& number : numbers)
    number = lowest + (highest - lowest) * (static_cast<double>(random()) * 0x1p-32);
  return numbers;
}

Case& add_case(const std::string& name, double changing, double scale, Range range) {
  const auto seed = static_cast<unsigned>(cases().size());
  return cases().emplace_back(
      Case{name, drawn(changing * range.lowest, changing * range.highest, inputs, seed), scale, {}, "", 1.0});
}

void add_worksheet(Case& option, const char* function, const std::vector<Argument>& arguments,
                   std::size_t changing) {
  const std::shared_ptr<Call> call = prepare_call(function, arguments);
  const auto price = [call, changing](double number) {
    if (call->entry == nullptr) return std::numeric_limits<double>::quiet_NaN();
    call->records[changing].value.number = number;
    const XLOPER& result = *call_entry(call->entry, call->pointers.data(), call->pointers.size());
    return result.type == xltypeNum ? result.value.number : std::numeric_limits<double>::quiet_NaN();
  };
  add_side(option, "worksheet", 1e-12, price);
}

}  // namespace kestran::bench
