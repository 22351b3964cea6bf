#include "bench/cases.h"

#include <cstdint>
#include <limits>
#include <memory>

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

Case& add_case(const std::string& name, double changing, double scale) {
  return cases().emplace_back(Case{name, changing, changing * 1.0001, scale, {}, ""});
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
