#include "addin/modern/results.h"

#include <new>

#include "addin/modern/excel12_call.h"

namespace kestran {

// The record, followed by the elements of an array, in one piece.
static XLOPER12* allocate(std::size_t records) {
  return static_cast<XLOPER12*>(::operator new(records * sizeof(XLOPER12), std::nothrow));
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
  XLOPER12* const record = allocate(1);
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

void EXCEL_STDCALL xlAutoFree12(XLOPER12* record) { discard(record); }

}  // namespace kestran
