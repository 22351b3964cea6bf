// Calls into Excel 2007 and later. Everything here may be called on any of Excel's threads.
#pragma once

#include "addin/excel_api.h"
#include "addin/record_reader.h"

namespace kestran {

/// Looks up Excel's entry point, once, while the library is loaded and no other thread can be here. From then
/// on long calls can be broken off.
void find_excel12();

/// Calls an Excel function with an array of operands and gives Excel's return code; 32 (failed) when there is
/// no Excel, or one before 2007.
int call_excel12(int function, XLOPER12* result, int count, XLOPER12** operands);

/// The same with the operands listed.
template <class... Operand>
int Excel12(int function, XLOPER12* result, Operand*... operand) {
  XLOPER12* operands[sizeof...(operand) + 1] = {operand..., nullptr};
  return call_excel12(function, result, static_cast<int>(sizeof...(operand)), operands);
}

/// Whether the user pressed Escape. The break stays for Excel to see.
bool broken_off();

XLOPER12 number_record(double number);
XLOPER12 integer_record(int integer);
XLOPER12 boolean_record(bool value);
XLOPER12 error_record(int code);
/// A text operand that points at `text`, whose first character is its length.
XLOPER12 text_record(const char16_t* text);

struct Xloper12Interface {
  using Record = XLOPER12;

  static bool to_array(XLOPER12* given, XLOPER12& cells) {
    XLOPER12 wanted = integer_record(xltypeMulti);
    return Excel12(xlCoerce, &cells, given, &wanted) == xlretSuccess;
  }
  static void release(XLOPER12& cells) { Excel12(xlFree, nullptr, &cells); }
};

using Xloper12Reader = RecordReader<Xloper12Interface>;

}  // namespace kestran
