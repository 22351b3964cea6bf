// The add-in in a program that is not Excel: every call into Excel fails, and nothing crashes. Prints what
// failed.
#if defined(_WIN32)
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <cstdio>
#include <initializer_list>

#include "addin/excel_api.h"

using namespace kestran;

static void* load(const char* path) {
#if defined(_WIN32)
  return LoadLibraryA(path);
#else
  return dlopen(path, RTLD_NOW);
#endif
}

static void* find(void* library, const char* name) {
#if defined(_WIN32)
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
#else
  return dlsym(library, name);
#endif
}

static int failures = 0;

static void expect(bool holds, const char* what) {
  if (holds) return;
  std::printf("failed: %s\n", what);
  ++failures;
}

int main(int, char** arguments) {
  void* library = load(arguments[1]);
  expect(library != nullptr, "the add-in loads");
  if (library == nullptr) return 1;
  for (const char* name :
       {"xlAutoOpen", "xlAutoAdd", "KESTRAN_Help", "KESTRAN_Exit", "xlAutoRemove", "xlAutoClose"})
    expect(reinterpret_cast<int(EXCEL_STDCALL*)()>(find(library, name))() == 1, name);

  XLOPER cell;
  cell.type = xltypeNum;
  cell.value.number = 1.0;
  XLOPER one = cell;
  const XLOPER* answer =
      reinterpret_cast<XLOPER*(EXCEL_STDCALL*)(XLOPER*)>(find(library, "xlAddInManagerInfo"))(&one);
  expect(answer->type == xltypeErr && answer->value.error == xlerrValue, "no name without coercion");

  using WilcoxSpread = XLOPER*(EXCEL_STDCALL*)(XLOPER*, XLOPER*, XLOPER*, XLOPER*, XLOPER*, XLOPER*, XLOPER*);
  const auto price = reinterpret_cast<WilcoxSpread>(find(library, "WSPRD"));
  expect(price(&one, &one, &one, &one, &one, &one, &one)->type == xltypeNum, "numbers still price");
  XLOPER range;
  range.type = xltypeMulti;
  range.value.array.elements = &cell;
  range.value.array.rows = range.value.array.columns = 1;
  answer = price(&one, &one, &one, &range, &one, &one, &one);
  expect(answer->type == xltypeErr && answer->value.error == xlerrValue, "cells cannot be read");
  std::printf(failures == 0 ? "no host: passed\n" : "no host: failed\n");
  return failures;
}
