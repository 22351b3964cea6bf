// The part of Excel's C API that the add-ins and their hosts use: the value records XLOPER and, since Excel
// 2007, XLOPER12, the codes of value types, errors and functions, and the calling conventions. Declared here
// from the published interface, so that nothing but a compiler is needed to build.
#pragma once

#include <cstdint>

// Excel calls entry points as stdcall in 32-bit Windows; elsewhere there is one convention only.
#if defined(_WIN32) && !defined(_WIN64)
#define EXCEL_STDCALL __stdcall
#define EXCEL_CDECL __cdecl
#else
#define EXCEL_STDCALL
#define EXCEL_CDECL
#endif

namespace kestran {

struct CellRectangle {
  std::uint16_t first_row, last_row;
  std::uint8_t first_column, last_column;
};

struct AreaList {
  std::uint16_t count;
  CellRectangle area;  // the first of `count`
};

// Excel's value record. `type` says which member of `value` holds.
struct XLOPER {
  union {
    double number;
    char* text;  // counted: the first byte is the length of what follows
    std::uint16_t boolean;
    std::uint16_t error;
    std::int16_t integer;
    AreaList sheet_reference;  // an area of the active sheet
    struct {
      AreaList* areas;
      std::uintptr_t sheet;
    } reference;
    struct {
      XLOPER* elements;  // row after row
      std::uint16_t rows, columns;
    } array;
  } value;
  std::uint16_t type;
};

static_assert(sizeof(CellRectangle) == 6 && sizeof(AreaList) == 8, "Excel's layout");
static_assert(sizeof(XLOPER) == (sizeof(void*) == 4 ? 16 : 24), "Excel's layout");

struct CellRectangle12 {
  std::int32_t first_row, last_row, first_column, last_column;
};

struct AreaList12 {
  std::uint16_t count;
  CellRectangle12 area;  // the first of `count`
};

// The value record of Excel 2007 and later: wide texts, a million rows. Its members have the names of
// XLOPER's, so that what reads one record reads the other.
struct XLOPER12 {
  union {
    double number;
    char16_t* text;  // counted: the first character is the length of what follows
    std::int32_t boolean;
    std::int32_t error;
    std::int32_t integer;
    AreaList12 sheet_reference;
    struct {
      AreaList12* areas;
      std::uintptr_t sheet;
    } reference;
    struct {
      XLOPER12* elements;
      std::int32_t rows, columns;
    } array;
  } value;
  std::uint32_t type;
};

static_assert(sizeof(AreaList12) == 20 && sizeof(XLOPER12) == 32, "Excel's layout");

constexpr std::uint16_t xltypeNum = 1;
constexpr std::uint16_t xltypeStr = 2;
constexpr std::uint16_t xltypeBool = 4;
constexpr std::uint16_t xltypeRef = 8;
constexpr std::uint16_t xltypeErr = 16;
constexpr std::uint16_t xltypeMulti = 64;
constexpr std::uint16_t xltypeMissing = 128;
constexpr std::uint16_t xltypeNil = 256;
constexpr std::uint16_t xltypeSRef = 1024;
constexpr std::uint16_t xltypeInt = 2048;
constexpr std::uint16_t xlbitDLLFree = 0x4000;  // in a result: Excel gives it back to xlAutoFree12

constexpr std::uint16_t xlerrNull = 0;
constexpr std::uint16_t xlerrDiv0 = 7;
constexpr std::uint16_t xlerrValue = 15;
constexpr std::uint16_t xlerrRef = 23;
constexpr std::uint16_t xlerrName = 29;
constexpr std::uint16_t xlerrNum = 36;
constexpr std::uint16_t xlerrNA = 42;

constexpr int xlretSuccess = 0;
constexpr int xlretInvXlfn = 2;
constexpr int xlretInvCount = 4;
constexpr int xlretInvXloper = 8;
constexpr int xlretFailed = 32;
constexpr int xlretUncalced = 64;
constexpr int xlretNotThreadSafe = 128;

constexpr int xlfSetName = 88;
constexpr int xlfRegister = 149;
constexpr int xlfAddMenu = 152;
constexpr int xlfDeleteMenu = 158;
constexpr int xlfGetBar = 182;
constexpr int xlfUnregister = 201;
constexpr int xlfRegisterId = 267;
constexpr int xlFree = 0x4000;
constexpr int xlAbort = 0x4001;
constexpr int xlCoerce = 0x4002;
constexpr int xlSheetId = 0x4004;
constexpr int xlGetName = 0x4009;
constexpr int xlcAlert = 0x8076;

// Excel accepts at most this many operands in one call and arguments in one function; with XLOPER12 more.
constexpr int max_operands = 30;
constexpr int max_operands12 = 255;

using Excel4Function = int(EXCEL_CDECL*)(int function, XLOPER* result, int count, ...);
using Excel4vFunction = int(EXCEL_STDCALL*)(int function, XLOPER* result, int count, XLOPER** operands);

// What Excel 2007 and later export for add-ins, by the name of MdCallBack12.
using Excel12Function = int(EXCEL_STDCALL*)(int function, int count, XLOPER12** operands, XLOPER12* result);

}  // namespace kestran
