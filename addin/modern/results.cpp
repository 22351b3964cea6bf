#include "addin/modern/results.h"

#include <atomic>
#include <cstdint>
#include <new>

#include "addin/modern/excel12_call.h"

namespace kestran {

// A record that one call after the other takes, on a line of the processor's cache for itself.
struct alignas(64) Slot {
  XLOPER12 record;
  std::atomic<bool> taken;
};

constexpr std::size_t slot_count = 64;
static Slot slots[slot_count];

// Threads are told apart by their stacks. Two that meet at a slot do not disturb each other: one of them goes
// for memory.
static XLOPER12* take_slot() {
  const char here = 0;
  const auto stack = reinterpret_cast<std::uintptr_t>(&here) >> 16;
  Slot& slot = slots[(stack ^ stack >> 6) % slot_count];
  return slot.taken.exchange(true, std::memory_order_acquire) ? nullptr : &slot.record;
}

static bool leave_slot(const XLOPER12* record) {
  const std::size_t offset =
      reinterpret_cast<std::uintptr_t>(record) - reinterpret_cast<std::uintptr_t>(slots);
  if (offset >= sizeof slots) return false;
  slots[offset / sizeof(Slot)].taken.store(false, std::memory_order_release);
  return true;
}

// The record, followed by the elements of an array, in one piece.
static XLOPER12* allocate(std::size_t records) {
  try {
    return static_cast<XLOPER12*>(::operator new(records * sizeof(XLOPER12)));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void write_answer(const Answer& answer, XLOPER12& record) {
  if (answer.is_number()) {
    record.value.number = answer.number;
    record.type = xltypeNum;
  } else {
    record.value.error = answer.error;
    record.type = xltypeErr;
  }
}

XLOPER12* give(const Answer& answer) {
  XLOPER12* record = take_slot();
  if (record == nullptr) record = allocate(1);
  if (record == nullptr) return no_memory();
  write_answer(answer, *record);
  record->type |= xlbitDLLFree;
  return record;
}

XLOPER12* new_array(int rows, int columns) {
  XLOPER12* const record = allocate(1 + static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
  if (record == nullptr) return nullptr;
  record->value.array.elements = record + 1;
  record->value.array.rows = rows;
  record->value.array.columns = columns;
  record->type = xltypeMulti | xlbitDLLFree;
  return record;
}

// Written while the library is loaded, then only read.
static XLOPER12 refused = error_record(value_code);

XLOPER12* no_memory() { return &refused; }

void discard(XLOPER12* record) { ::operator delete(record); }

void EXCEL_STDCALL xlAutoFree12(XLOPER12* record) {
  if (!leave_slot(record)) discard(record);
}

}  // namespace kestran
