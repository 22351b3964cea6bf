#include <windows.h>

#include "addin/modern/excel12_call.h"
#include "addin/modern/system12.h"

namespace kestran {

Excel12Function host_entry_point() {
  const FARPROC found = GetProcAddress(GetModuleHandleW(nullptr), "MdCallBack12");
  return reinterpret_cast<Excel12Function>(reinterpret_cast<void*>(found));
}

bool is_file(const std::u16string& name) {
  const DWORD attributes = GetFileAttributesW(reinterpret_cast<const wchar_t*>(name.c_str()));
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace kestran

// What the C++ library keeps for exceptions without memory, which it would leave behind with each unloading.
namespace __gnu_cxx {
void __freeres();
}

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID program_ends) {
  if (reason == DLL_PROCESS_ATTACH) {
    DisableThreadLibraryCalls(module);
    kestran::find_excel12();
  }
  if (reason == DLL_PROCESS_DETACH && program_ends == nullptr) __gnu_cxx::__freeres();
  return TRUE;
}
