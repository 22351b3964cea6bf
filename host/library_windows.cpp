#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <vector>

#include "host/excel_standin.h"
#include "host/library.h"

namespace kestran {

std::string default_library() { return program_folder() + "KESTRAN.xll"; }

void* open_library(const std::string& path, std::string& error) {
  HMODULE library = LoadLibraryA(path.c_str());
  if (library == nullptr)
    error = path + ": cannot be loaded, Windows error " + std::to_string(GetLastError());
  return library;
}

void* find_symbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void close_library(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }

std::string full_path(const std::string& path) {
  char resolved[MAX_PATH];
  const DWORD length = GetFullPathNameA(path.c_str(), MAX_PATH, resolved, nullptr);
  return length == 0 || length >= MAX_PATH ? path : resolved;
}

std::string program_folder() {
  char path[MAX_PATH];
  const DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return "";
  const std::string program(path, length);
  return program.substr(0, program.rfind('\\') + 1);
}

bool input_is_terminal() { return _isatty(_fileno(stdin)) != 0; }

// The compiler here has no std::thread.
struct Share {
  const std::function<void(int)>* work;
  int number;
};

static DWORD WINAPI do_share(void* share) {
  const auto& one = *static_cast<const Share*>(share);
  (*one.work)(one.number);
  return 0;
}

void run_threads(int count, const std::function<void(int)>& work) {
  std::vector<Share> shares;
  for (int i = 0; i < count; ++i) shares.push_back({&work, i});
  std::vector<HANDLE> others;
  others.reserve(static_cast<std::size_t>(count));
  for (int i = 1; i < count; ++i) {
    HANDLE const other = CreateThread(nullptr, 0, do_share, &shares[static_cast<std::size_t>(i)], 0, nullptr);
    if (other == nullptr) break;
    others.push_back(other);
  }
  work(0);
  for (HANDLE other : others) {
    WaitForSingleObject(other, INFINITE);
    CloseHandle(other);
  }
}

void prepare_streams() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
}

// XLCALL32.DLL beside the program hands the add-in's calls on to this. The convention of C keeps its exported
// name free of decoration.
extern "C" __declspec(dllexport) int EXCEL_CDECL
    host_excel4v(int function, XLOPER* result, int count, XLOPER** operands) {
  return call_standin(function, result, count, operands);
}

// Add-ins of Excel 2007 and later find this in the program itself.
extern "C" __declspec(dllexport) int EXCEL_STDCALL
    MdCallBack12(int function, int count, XLOPER12** operands, XLOPER12* result) {
  return call_standin(function, result, count, operands);
}

}  // namespace kestran
