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

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    DisableThreadLibraryCalls(module);
    kestran::find_excel12();
  }
  return TRUE;
}
