// How Windows loads the add-ins into a program that is not Excel, and lets go of them. Prints what failed.
//   windows_loading       the add-ins and the XLCALL32.DLL of ..\\bin
//   windows_loading MS    ends in the midst of calculation after so many milliseconds, with the exit code 42
#include <process.h>
#include <windows.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <type_traits>

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
  HMODULE const first = load<Record>(folder, "first"), second = load<Record>(elsewhere, "copy elsewhere");
  expect(first != second, "two copies");
  const auto help = find<int(EXCEL_STDCALL*)()>(second, "KESTRAN_Help");
  expect(help == nullptr || help() == 1, "help of the copy");
  FreeLibrary(first);
  expect(std::fabs(euro<Record>(second) - 8.14303821049409) < 1e-13, "the copy left prices");
  FreeLibrary(second);
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
  SIZE_T memory[2];
  DWORD handles[2];
  for (int part : {0, 1}) {
    for (int i = 0; i < 100 + 800 * part; ++i) FreeLibrary(load<Record>(folder, "often"));
    memory[part] = committed();
    GetProcessHandleCount(GetCurrentProcess(), &handles[part]);
  }
  expect(handles[1] == handles[0], "handles are given back");
  expect(memory[1] < memory[0] + 64 * 1024, "memory is given back");
}

template <class Record>
static DWORD WINAPI calculate(void* library) {
  for (;;) euro<Record>(static_cast<HMODULE>(library));
}

static void end_amidst(const std::wstring& folder, int after) {
  CreateThread(nullptr, 0, calculate<XLOPER>, load<XLOPER>(folder, "any Excel"), 0, nullptr);
  HMODULE const modern = load<XLOPER12>(folder, "Excel 2007");
  for (int i = 0; i < 3; ++i) CreateThread(nullptr, 0, calculate<XLOPER12>, modern, 0, nullptr);
  Sleep(static_cast<DWORD>(after));
  ExitProcess(42);
}

// A library of Excel's name in the current folder, where Windows would find it, is not Excel's.
static void look_for_excel(const std::wstring& folder) {
  SetCurrentDirectoryW(folder.c_str());
  HMODULE const addin = load<XLOPER>(folder, "beside another XLCALL32.DLL");
  expect(GetModuleHandleW(L"XLCALL32.DLL") == nullptr, "XLCALL32.DLL of the current folder is left alone");
  expect(LoadLibraryW(L"XLCALL32.DLL") != nullptr, "by its bare name it is found");
  FreeLibrary(addin);
}

static void load_elsewhere(const std::wstring& folder) {
  std::wstring elsewhere = L"\\\\?\\" + folder;
  for (int i = 0; i < 8; ++i) {
    elsewhere += L"\u00D6l \u0416 \U0001D11E " + std::wstring(30, L'x') + L'\\';
    CreateDirectoryW(elsewhere.c_str(), nullptr);
  }
  expect(elsewhere.size() > 260, "a long name");
  load_copies<XLOPER>(folder, elsewhere);
  load_copies<XLOPER12>(folder, elsewhere);
}

int main(int count, char** arguments) {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring program = path;
  const std::wstring folder = program.substr(0, program.rfind(L"\\loading\\")) + L"\\bin\\";
  if (count == 2) end_amidst(folder, std::atoi(arguments[1]));

  look_for_excel(folder);
  load_elsewhere(folder);
  load_often<XLOPER>(folder);
  load_often<XLOPER12>(folder);
  for (int after = 0; after < 150; after += 15) {
    const auto code =
        _wspawnl(_P_WAIT, program.c_str(), L"windows_loading", std::to_wstring(after).c_str(), nullptr);
    expect(code == 42, "end in the midst of calculation: code " + std::to_string(code));
  }
  std::printf(failures == 0 ? "loading: passed\n" : "loading: failed\n");
  return failures;
}
