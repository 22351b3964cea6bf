// Only what the stand-in needs: the module's program is a page.
#include <cstdarg>

#include "addin/system_wasm.h"
#include "host/excel_standin.h"
#include "host/library.h"

namespace kestran {

std::string default_library() { return "kestran.wasm"; }

void* open_library(const std::string&, std::string&) {
  static char handle;
  return &handle;
}

void* find_symbol(void*, const char* name) { return find_export(name); }

void close_library(void*) {}

std::string full_path(const std::string& path) { return path; }

extern "C" {

int Excel4v(int function, XLOPER* result, int count, XLOPER** operands) {
  return call_standin(function, result, count, operands);
}

int Excel4(int function, XLOPER* result, int count, ...) {
  XLOPER* operands[max_operands] = {};
  va_list given;
  va_start(given, count);
  for (int i = 0; i < count && i < max_operands; ++i) operands[i] = va_arg(given, XLOPER*);
  va_end(given);
  return call_standin(function, result, count, operands);
}
}

}  // namespace kestran
