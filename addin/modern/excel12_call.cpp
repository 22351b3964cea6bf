#include "addin/modern/excel12_call.h"

#include "addin/modern/system12.h"
#include "functions/still_wanted.h"

namespace kestran {

// Written while the library is loaded, then only read.
static Excel12Function excel12 = nullptr;

static bool not_broken_off() { return !broken_off(); }

void find_excel12() {
  excel12 = host_entry_point();
  still_wanted = not_broken_off;
}

int call_excel12(int function, XLOPER12* result, int count, XLOPER12** operands) {
  return excel12 == nullptr ? xlretFailed : excel12(function, count, operands, result);
}

bool broken_off() {
  XLOPER12 keep = boolean_record(true);
  XLOPER12 answer = boolean_record(false);
  return Excel12(xlAbort, &answer, &keep) == xlretSuccess && answer.type == xltypeBool &&
         answer.value.boolean != 0;
}

XLOPER12 number_record(double number) {
  XLOPER12 record;
  record.value.number = number;
  record.type = xltypeNum;
  return record;
}

XLOPER12 integer_record(int integer) {
  XLOPER12 record;
  record.value.integer = integer;
  record.type = xltypeInt;
  return record;
}

XLOPER12 boolean_record(bool value) {
  XLOPER12 record;
  record.value.boolean = value ? 1 : 0;
  record.type = xltypeBool;
  return record;
}

XLOPER12 error_record(int code) {
  XLOPER12 record;
  record.value.error = code;
  record.type = xltypeErr;
  return record;
}

XLOPER12 text_record(const char16_t* text) {
  XLOPER12 record;
  record.value.text = const_cast<char16_t*>(text);  // Excel reads it only
  record.type = xltypeStr;
  return record;
}

}  // namespace kestran
