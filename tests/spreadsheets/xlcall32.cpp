// Stands between Gnumeric's loader of add-ins and the built add-in, unchanged. The loader opens the library
// xlcall32 in its folder and hands it a callback, to which calls into Excel go; the add-in finds Excel4 and
// Excel4v here. What the loader lacks is done here: arrays of cells, menus and names.
#include <cstdarg>
#include <cstring>
#include <string>
#include <vector>

#include "addin/excel_api.h"

namespace kestran {
namespace {

Excel4vFunction loader = nullptr;

// An array of the cells behind an operand. Nobody but the add-in's own call reads it, while its operands
// last: texts stay where they are.
int to_array(const XLOPER& given, XLOPER& result) {
  const bool several = given.type == xltypeMulti;
  const std::uint16_t rows = several ? given.value.array.rows : 1;
  const std::uint16_t columns = several ? given.value.array.columns : 1;
  const int count = rows * columns;
  auto* cells = new XLOPER[static_cast<std::size_t>(count)];
  for (int i = 0; i < count; ++i) {
    cells[i] = several ? given.value.array.elements[i] : given;
    if (cells[i].type == xltypeMissing) cells[i].type = xltypeNil;  // an empty cell
  }
  result.type = xltypeMulti;
  result.value.array = {cells, rows, columns};
  return xlretSuccess;
}

void release(XLOPER& value) {
  if (value.type == xltypeMulti)
    delete[] value.value.array.elements;
  else
    loader(xlFree, nullptr, 1, std::vector<XLOPER*>{&value}.data());
}

XLOPER counted(std::string& text) {
  text.insert(text.begin(), static_cast<char>(text.size()));
  XLOPER record;
  record.type = xltypeStr;
  record.value.text = text.data();
  return record;
}

// A function, and once more by the name that files of Excel have. The loader reads 30 arguments whatever the
// type text says.
int enrol(XLOPER* result, int count, XLOPER** operands) {
  constexpr int type_text = 2, name = 3, kind = 5;
  if (std::strncmp(operands[kind]->value.text + 1, "2", 1) == 0) return xlretSuccess;  // a command
  std::string types(1 + max_operands, 'R');
  const char* own = operands[name]->value.text;
  std::string alias = "_xll." + std::string(own + 1, static_cast<unsigned char>(own[0]));
  XLOPER types_record = counted(types);
  XLOPER alias_record = counted(alias);
  std::vector<XLOPER*> changed(operands, operands + count);
  changed[type_text] = &types_record;
  const int code = loader(xlfRegister, result, count, changed.data());
  changed[name] = &alias_record;
  return code == xlretSuccess ? loader(xlfRegister, nullptr, count, changed.data()) : code;
}

}  // namespace
}  // namespace kestran

using namespace kestran;

extern "C" {

void register_actual_excel4v(void* callback) { loader = reinterpret_cast<Excel4vFunction>(callback); }

int Excel4v(int function, XLOPER* result, int count, XLOPER** operands) {
  switch (function) {
    case xlCoerce:
      return to_array(*operands[0], *result);
    case xlFree:
      for (int i = 0; i < count; ++i) release(*operands[i]);
      return xlretSuccess;
    case xlfRegister:
      return enrol(result, count, operands);
    case xlfGetBar:  // the menu is there: nothing to add
      result->type = xltypeNum;
      result->value.number = 1.0;
      return xlretSuccess;
    case xlfDeleteMenu:
    case xlfSetName:
      return xlretSuccess;
    default:
      return loader(function, result, count, operands);
  }
}

int Excel4(int function, XLOPER* result, int count, ...) {
  XLOPER* operands[max_operands];
  va_list list;
  va_start(list, count);
  for (int i = 0; i < count; ++i) operands[i] = va_arg(list, XLOPER*);
  va_end(list);
  return Excel4v(function, result, count, operands);
}

int XLCallVer() { return 0x500; }
}
