// How Windows loads the add-ins into a program that is not Excel, and lets go of them. Prints what failed.
//   windows_loading       the add-ins and the XLCALL32.DLL of ..\\bin
//   windows_loading MS    ends in the midst of calculation after so many milliseconds, with the exit code 42
#include <windows.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <vector>

#include "addin/excel_api.h"

using namespace kestran;

static int failures = 0;

static void expect(bool holds, const std::string& what) {
  if (holds) return;
  std::printf("failed: %s\n", what.c_str());
  ++failures;
}

template <class Record>
static constexpr const wchar_t* file = std::is_same_v<Record, XLOPER> ? L"KESTRAN.xll" : L"KESTRAN12.xll";

template <class Function>
static Function find(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

template <class Record>
static double euro(HMODULE library) {
  using Function =
      Record*(EXCEL_STDCALL*)(Record*, Record*, Record*, Record*, Record*, Record*, Record*, Record*);
  constexpr double numbers[] = {100, 95, 0.05, 0.02, 0.25, 90, 1, 0};
  Record given[8];
  for (int i = 0; i < 8; ++i) {
    given[i].type = xltypeNum;
    given[i].value.number = numbers[i];
  }
  Record* const answer = find<Function>(library, "EURO")(&given[0], &given[1], &given[2], &given[3],
                                                         &given[4], &given[5], &given[6], &given[7]);
  const double price = answer->value.number;
  if ((answer->type & xlbitDLLFree) != 0)
    find<void(EXCEL_STDCALL*)(Record*)>(library, "xlAutoFree12")(answer);
  return price;
}

template <class Record>
static HMODULE load(const std::wstring& folder, const std::string& where) {
  HMODULE const library = LoadLibraryW((folder + file<Record>).c_str());
  expect(library != nullptr, where + ": loads");
  if (library == nullptr) ExitProcess(1);
  expect(find<int(EXCEL_STDCALL*)()>(library, "xlAutoOpen")() == 1, where + ": opens");
  expect(std::fabs(euro<Record>(library) - 8.14303821049409) < 1e-13, where + ": prices");
  return library;
}

template <class Record>
static void load_copies(const std::wstring& folder, const std::wstring& elsewhere) {
  expect(CopyFileW((folder + file<Record>).c_str(), (elsewhere + file<Record>).c_str(), FALSE) != 0,
         "a copy in a long folder");
  HMODULE const first = load<Record>(folder, "first");
  HMODULE const second = load<Record>(elsewhere, "copy in a long folder that no code page has");
  expect(first != second, "two copies");
  const auto help = find<int(EXCEL_STDCALL*)()>(second, "KESTRAN_Help");
  expect(help == nullptr || help() == 1, "help of the copy");
  expect(euro<Record>(first) == euro<Record>(second), "the copies agree");
  FreeLibrary(first);
  expect(std::fabs(euro<Record>(second) - 8.14303821049409) < 1e-13, "the copy left prices");
  FreeLibrary(second);
  DeleteFileW((elsewhere + file<Record>).c_str());
}

static SIZE_T committed() {
  SIZE_T bytes = 0;
  MEMORY_BASIC_INFORMATION part;
  for (char* place = nullptr; VirtualQuery(place, &part, sizeof part) != 0;
       place = static_cast<char*>(part.BaseAddress) + part.RegionSize)
    if (part.State == MEM_COMMIT) bytes += part.RegionSize;
  return bytes;
}

template <class Record>
static void load_often(const std::wstring& folder) {
  SIZE_T memory = 0;
  DWORD handles = 0, handles_before = 0;
  for (int i = 0; i < 1000; ++i) {
    if (i == 100) {
      memory = committed();
      GetProcessHandleCount(GetCurrentProcess(), &handles_before);
    }
    FreeLibrary(load<Record>(folder, "load " + std::to_string(i)));
  }
  GetProcessHandleCount(GetCurrentProcess(), &handles);
  const SIZE_T grown = committed() - memory;
  std::printf("900 loads: %ld bytes, %ld handles\n", static_cast<long>(grown),
              static_cast<long>(handles) - static_cast<long>(handles_before));
  expect(handles == handles_before, "handles are given back");
  expect(static_cast<long>(grown) < 64 * 1024, "memory is given back");
}

template <class Record>
static DWORD WINAPI calculate(void* library) {
  for (;;) euro<Record>(static_cast<HMODULE>(library));
}

static void end_amidst(const std::wstring& folder, int after) {
  void* const old = load<XLOPER>(folder, "any Excel");
  void* const modern = load<XLOPER12>(folder, "Excel 2007");
  CreateThread(nullptr, 0, calculate<XLOPER>, old, 0, nullptr);
  for (int i = 0; i < 3; ++i) CreateThread(nullptr, 0, calculate<XLOPER12>, modern, 0, nullptr);
  Sleep(static_cast<DWORD>(after));
  ExitProcess(42);
}

// A program that hangs is ended here.
static void end_programs(const std::wstring& program) {
  for (int after = 0; after < 150; after += 13) {
    std::wstring line = L"windows_loading " + std::to_wstring(after);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION child = {};
    expect(CreateProcessW(program.c_str(), &line[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                          &child) != 0,
           "a program starts");
    const bool ended = WaitForSingleObject(child.hProcess, 30000) == WAIT_OBJECT_0;
    DWORD code = 0;
    GetExitCodeProcess(child.hProcess, &code);
    if (!ended) TerminateProcess(child.hProcess, 1);
    expect(ended && code == 42, "end in the midst of calculation after " + std::to_string(after) +
                                    " ms: code " + std::to_string(code));
    CloseHandle(child.hProcess);
    CloseHandle(child.hThread);
  }
}

// A library of Excel's name in the current folder, where Windows would find it, is not Excel's.
static void look_for_excel(const std::wstring& folder) {
  expect(SetCurrentDirectoryW(folder.c_str()) != 0 &&
             SearchPathW(nullptr, L"XLCALL32.DLL", nullptr, 0, nullptr, nullptr) != 0,
         "XLCALL32.DLL is in the current folder");
  HMODULE const addin = load<XLOPER>(folder, "beside another XLCALL32.DLL");
  expect(GetModuleHandleW(L"XLCALL32.DLL") == nullptr, "XLCALL32.DLL of the current folder is left alone");
  HMODULE const planted = LoadLibraryW(L"XLCALL32.DLL");
  expect(planted != nullptr, "by its bare name it is found");
  FreeLibrary(planted);
  FreeLibrary(addin);
}

static void load_elsewhere(const std::wstring& folder) {
  std::wstring elsewhere = L"\\\\?\\" + folder;
  std::vector<std::wstring> made;
  for (int i = 0; i < 8; ++i) {
    elsewhere += L"\u00D6l \u0416 \U0001D11E " + std::wstring(30, L'x') + L'\\';
    made.push_back(elsewhere);
    CreateDirectoryW(elsewhere.c_str(), nullptr);
  }
  expect(elsewhere.size() > 260, "a long name");
  load_copies<XLOPER>(folder, elsewhere);
  load_copies<XLOPER12>(folder, elsewhere);
  for (; !made.empty(); made.pop_back()) RemoveDirectoryW(made.back().c_str());
}

int main(int count, char** arguments) {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring program = path;
  GetFullPathNameW((program + L"\\..\\..\\bin\\").c_str(), MAX_PATH, path, nullptr);
  const std::wstring folder = path;
  if (count == 2) end_amidst(folder, std::atoi(arguments[1]));

  look_for_excel(folder);
  load_elsewhere(folder);
  load_often<XLOPER>(folder);
  load_often<XLOPER12>(folder);
  end_programs(program);
  std::printf(failures == 0 ? "loading: passed\n" : "loading: failed\n");
  return failures;
}
