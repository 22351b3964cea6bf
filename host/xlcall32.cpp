// XLCALL32.DLL for a host that is not Excel: hands every call on to the running program.
#include <windows.h>

#include <cstdarg>

#include "addin/excel_api.h"

namespace kestran {

static int call_host(int function, XLOPER* result, int count, XLOPER** operands) {
  using Host = int(EXCEL_CDECL*)(int, XLOPER*, int, XLOPER**);
  static void* const found =
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(nullptr), "host_excel4v"));
  return found == nullptr ? xlretFailed : reinterpret_cast<Host>(found)(function, result, count, operands);
}

extern "C" __declspec(dllexport) int EXCEL_STDCALL
    Excel4v(int function, XLOPER* result, int count, XLOPER** operands) {
  return call_host(function, result, count, operands);
}

extern "C" __declspec(dllexport) int EXCEL_CDECL Excel4(int function, XLOPER* result, int count, ...) {
  XLOPER* operands[max_operands] = {};
  va_list given;
  va_start(given, count);
  for (int i = 0; i < count && i < max_operands; ++i) operands[i] = va_arg(given, XLOPER*);
  va_end(given);
  return call_host(function, result, count, operands);
}

}  // namespace kestran
