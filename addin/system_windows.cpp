#include <windows.h>

#include <cstdarg>

#include "addin/lifecycle.h"
#include "addin/system.h"

namespace kestran {

// Excel's library, which lies beside Excel's program: by its bare name Windows would also look for it in the
// current folder, a workbook's perhaps, and along PATH.
static HMODULE load_xlcall32() {
  constexpr wchar_t name[] = L"XLCALL32.DLL";
  HMODULE const loaded = GetModuleHandleW(name);
  if (loaded != nullptr) return loaded;
  wchar_t path[MAX_PATH + sizeof name / sizeof *name];
  DWORD end = GetModuleFileNameW(nullptr, path, MAX_PATH);
  if (end >= MAX_PATH) return nullptr;
  while (end > 0 && path[end - 1] != L'\\') --end;
  if (end == 0) return nullptr;
  lstrcpyW(path + end, name);
  return LoadLibraryW(path);
}

static FARPROC find_in_xlcall32(const char* name) {
  HMODULE const library = load_xlcall32();
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
  const DWORD length = GetModuleFileNameA(static_cast<HMODULE>(module), buffer, static_cast<DWORD>(size));
  buffer[size - 1] = '\0';  // Windows XP leaves a name that it cuts without an end
  return static_cast<int>(length);
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

// What the C++ library keeps for exceptions without memory, which it would leave behind with each unloading.
namespace __gnu_cxx {
void __freeres();
}

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID program_ends) {
  if (reason == DLL_PROCESS_ATTACH) kestran::on_process_attach(module);
  if (reason == DLL_PROCESS_DETACH && program_ends == nullptr) __gnu_cxx::__freeres();
  return TRUE;
}
