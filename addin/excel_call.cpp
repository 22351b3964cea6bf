#include "addin/excel_call.h"

#include "addin/system.h"

namespace kestran {

constexpr int pool_bytes = temporary_records * static_cast<int>(sizeof(XLOPER));
alignas(XLOPER) static unsigned char TempMemory[pool_bytes];
static int pool_offset = 0;

void* GetTempMemory(int bytes) {
  if (bytes < 0 || bytes > pool_bytes - pool_offset) return nullptr;
  void* memory = TempMemory + pool_offset;
  constexpr int alignment = alignof(XLOPER);
  pool_offset = (pool_offset + bytes + alignment - 1) / alignment * alignment;
  return memory;
}

void FreeAllTempMemory() { pool_offset = 0; }

static XLOPER* new_record(std::uint16_t type) {
  auto* record = static_cast<XLOPER*>(GetTempMemory(static_cast<int>(sizeof(XLOPER))));
  if (record != nullptr) record->type = type;
  return record;
}

XLOPER* TempNum(double number) {
  XLOPER* record = new_record(xltypeNum);
  if (record != nullptr) record->value.number = number;
  return record;
}

XLOPER* TempStr(char* text) {
  XLOPER* record = new_record(xltypeStr);
  if (record == nullptr) return nullptr;
  write_text_length(text);
  record->value.text = text;
  return record;
}

XLOPER* TempBool(int boolean) {
  XLOPER* record = new_record(xltypeBool);
  if (record != nullptr) record->value.boolean = boolean != 0 ? 1 : 0;
  return record;
}

XLOPER* TempInt(short integer) {
  XLOPER* record = new_record(xltypeInt);
  if (record != nullptr) record->value.integer = integer;
  return record;
}

XLOPER* TempErr(unsigned short code) {
  XLOPER* record = new_record(xltypeErr);
  if (record != nullptr) record->value.error = code;
  return record;
}

XLOPER* TempMissing() { return new_record(xltypeMissing); }

XLOPER* TempActiveRef(int first_row, int last_row, int first_column, int last_column) {
  XLOPER* record = new_record(xltypeNil);
  auto* areas = static_cast<AreaList*>(GetTempMemory(static_cast<int>(sizeof(AreaList))));
  if (record == nullptr || areas == nullptr) return nullptr;
  static const Excel4Function excel4 = find_excel4();
  if (excel4 == nullptr || excel4(xlSheetId, record, 0) != xlretSuccess) return nullptr;
  areas->count = 1;
  areas->area.first_row = static_cast<std::uint16_t>(first_row);
  areas->area.last_row = static_cast<std::uint16_t>(last_row);
  areas->area.first_column = static_cast<std::uint8_t>(first_column);
  areas->area.last_column = static_cast<std::uint8_t>(last_column);
  record->value.reference.areas = areas;
  record->type = xltypeRef;
  return record;
}

XLOPER* TempActiveCell(int row, int column) { return TempActiveRef(row, row, column, column); }
XLOPER* TempActiveRow(int row) { return TempActiveRef(row, row, 0, 255); }
XLOPER* TempActiveColumn(int column) { return TempActiveRef(0, 16383, column, column); }

void write_text_length(char* text) { text[0] = static_cast<char>(text_length(text + 1)); }

int call_excel(int function, XLOPER* result, int count, XLOPER** operands) {
  static const Excel4vFunction excel4v = find_excel4v();
  const int code = excel4v == nullptr ? xlretFailed : excel4v(function, result, count, operands);
  FreeAllTempMemory();
  return code;
}

}  // namespace kestran
