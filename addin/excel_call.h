// Calls into Excel. Operands are built inline in the argument list of one call, in a small pool that every
// call empties, so nothing built here outlives the call it was built for.
#pragma once

#include "addin/excel_api.h"

namespace kestran {

/// The pool holds this many records; a constructor that finds it full gives null.
constexpr int temporary_records = 64;

/// Takes `bytes` from the pool, aligned for any record; null when they do not fit.
void* GetTempMemory(int bytes);
/// Empties the pool.
void FreeAllTempMemory();

/// New temporary operands: a number, a boolean, an integer, an error code, a missing argument. Null when the
/// pool is full.
XLOPER* TempNum(double number);
XLOPER* TempBool(int boolean);
XLOPER* TempInt(short integer);
XLOPER* TempErr(unsigned short code);
XLOPER* TempMissing();

/// Writes the length of a text (its low eight bits) over the placeholder that is its first character.
void write_text_length(char* text);

/// A text operand that points at `text`, which receives its length in place of the placeholder. The text is
/// not copied.
XLOPER* TempStr(char* text);

/// References to the active sheet, rows and columns counted from 0. Null also when Excel does not name the
/// sheet.
XLOPER* TempActiveRef(int first_row, int last_row, int first_column, int last_column);
XLOPER* TempActiveCell(int row, int column);
XLOPER* TempActiveRow(int row);
XLOPER* TempActiveColumn(int column);

/// Calls an Excel function with an array of operands, empties the pool and gives Excel's return code; 32
/// (failed) when there is no Excel.
int call_excel(int function, XLOPER* result, int count, XLOPER** operands);

/// The same with the operands listed: Excel(function, result, 2, first, second).
template <class... Operand>
int Excel(int function, XLOPER* result, int count, Operand*... operand) {
  XLOPER* operands[sizeof...(operand) + 1] = {operand..., nullptr};
  return call_excel(function, result, count, operands);
}

}  // namespace kestran
