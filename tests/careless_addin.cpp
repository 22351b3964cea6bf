// An add-in that opens well and, when it is closed, keeps a text that the host lent it.
#include "addin/excel_api.h"
#include "addin/system.h"

using namespace kestran;

extern "C" {
int EXCEL_STDCALL Excel4v(int function, XLOPER* result, int count, XLOPER** operands);
KESTRAN_EXPORT int EXCEL_STDCALL xlAutoOpen() { return 1; }
KESTRAN_EXPORT int EXCEL_STDCALL xlAutoClose() {
  XLOPER name;
  return Excel4v(xlGetName, &name, 0, nullptr) == xlretSuccess;
}
}
