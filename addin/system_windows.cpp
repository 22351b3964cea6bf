#include <windows.h>

#include <cstdarg>

#include "addin/lifecycle.h"
#include "addin/system.h"

namespace kestran {

static FARPROC find_in_xlcall32(const char* name) {
  HMODULE library = GetModuleHandleA("XLCALL32.DLL");
  if (library == nullptr) library = LoadLibraryA("XLCALL32.DLL");
  return library == nullptr ? nullptr : GetProcAddress(library, name);
}

Excel4Function find_excel4() {
  return reinterpret_cast<Excel4Function>(reinterpret_cast<void*>(find_in_xlcall32("Excel4")));
}

Excel4vFunction find_excel4v() {
  return reinterpret_cast<Excel4vFunction>(reinterpret_cast<void*>(find_in_xlcall32("Excel4v")));
}

void* module_handle(const char* name) { return GetModuleHandleA(name); }

int module_file_name(void* module, char* buffer, int size) {
  return static_cast<int>(GetModuleFileNameA(static_cast<HMODULE>(module), buffer, static_cast<DWORD>(size)));
}

bool ends_folder(char character) { return character == '\\' || character == ':'; }

void* global_allocate(std::size_t bytes) { return GlobalAlloc(GMEM_MOVEABLE, bytes); }
void* global_lock(void* block) { return GlobalLock(block); }
void global_unlock(void* block) { GlobalUnlock(block); }
void global_free(void* block) { GlobalFree(block); }

int text_length(const char* text) { return lstrlenA(text); }

int format_text(char* buffer, const char* format, ...) {
  va_list values;
  va_start(values, format);
  const int length = wvsprintfA(buffer, format, values);
  va_end(values);
  return length;
}

void show_help(const char* path, unsigned command) { WinHelpA(nullptr, path, command, 0); }

}  // namespace kestran

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) kestran::on_process_attach(module);
  return TRUE;
}
