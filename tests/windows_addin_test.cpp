// What only Windows can show of KESTRAN.xll: what it exports and imports, how it is marked, and that its
// entry points bear the stacks and the processor state with which Excel calls them.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <set>

#include "host/evaluate.h"
#include "host/excel_standin.h"
#include "host/library.h"
#include "tests/case_files.h"

namespace kestran {
namespace {

// A library in memory.
struct Image {
  explicit Image(const char* file) : base(reinterpret_cast<char*>(GetModuleHandleA(file))) {
    EXPECT_NE(base, nullptr);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  }

  template <class Record>
  Record* directory(int index) const {
    return reinterpret_cast<Record*>(base + headers->OptionalHeader.DataDirectory[index].VirtualAddress);
  }

  std::set<std::string> exports() const {
    const auto* list = directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
    const auto* names = reinterpret_cast<const DWORD*>(base + list->AddressOfNames);
    std::set<std::string> found;
    for (DWORD i = 0; i < list->NumberOfNames; ++i) found.insert(base + names[i]);
    return found;
  }

  std::set<std::string> imports() const {
    std::set<std::string> found;
    for (const auto* library = directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
         library->Name != 0; ++library)
      found.insert(base + library->Name);
    return found;
  }

  char* base;
  const IMAGE_NT_HEADERS* headers;
};

struct LoadedAddin {
  LoadedAddin() {
    reset_standin();
    EXPECT_EQ(load_addin(program_folder() + KESTRAN_ADDIN), "");
  }
  ~LoadedAddin() { unload_addin(); }
};

struct WindowsAddin : testing::Test, LoadedAddin, Image {
  WindowsAddin() : Image(KESTRAN_ADDIN) {}
};

TEST_F(WindowsAddin, ExportsPlainNamesOnly) {
  std::set<std::string> expected = {"xlAutoOpen", "xlAutoClose",  "xlAutoRegister",
                                    "xlAutoAdd",  "xlAutoRemove", "xlAddInManagerInfo"};
  for (const Registration& registration : standin().registrations)
    expected.insert(registered_text(registration, 1));
  EXPECT_EQ(expected.size(), 89u);
  EXPECT_EQ(exports(), expected);
}

TEST_F(WindowsAddin, ImportsFromSystemLibrariesOnly) {
  for (const std::string& name : imports())
    EXPECT_TRUE(name == "KERNEL32.dll" || name == "USER32.dll" || name == "msvcrt.dll") << name;
  EXPECT_GE(imports().size(), 2u);
}

// Moved in memory, anywhere where there is room; no data is run, no code written; no handler on the stack is
// believed.
void expect_hardened(const Image& image) {
  const auto& file = image.headers->FileHeader;
  const auto& how = image.headers->OptionalHeader;
  constexpr int high_entropy = 0x20;
  const int marks = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT |
                    (sizeof(void*) == 8 ? high_entropy : IMAGE_DLLCHARACTERISTICS_NO_SEH);
  EXPECT_EQ(how.DllCharacteristics, marks);
  EXPECT_FALSE(file.Characteristics & IMAGE_FILE_RELOCS_STRIPPED);
  EXPECT_NE(how.DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC].Size, 0u);
  EXPECT_EQ(file.PointerToSymbolTable, 0u);
  const IMAGE_SECTION_HEADER* const sections = IMAGE_FIRST_SECTION(image.headers);
  for (int i = 0; i < file.NumberOfSections; ++i)
    EXPECT_FALSE((sections[i].Characteristics & IMAGE_SCN_MEM_EXECUTE) &&
                 (sections[i].Characteristics & IMAGE_SCN_MEM_WRITE))
        << sections[i].Name;
}

TEST_F(WindowsAddin, IsHardened) { expect_hardened(*this); }

// The second add-in, which is built as the first is.
TEST(WindowsAddin12, ExportsPlainNamesImportsFromSystemLibrariesOnlyAndIsHardened) {
  reset_standin();
  ASSERT_EQ(load_addin(program_folder() + KESTRAN_ADDIN12), "");
  const Image image(KESTRAN_ADDIN12);
  std::set<std::string> expected = {"xlAutoOpen", "xlAutoClose", "xlAutoFree12", "xlAddInManagerInfo12"};
  for (const Registration& registration : standin().registrations)
    expected.insert(registered_text(registration, procedure_text));
  EXPECT_EQ(expected.size(), 85u);
  EXPECT_EQ(image.exports(), expected);
  for (const std::string& name : image.imports())
    EXPECT_TRUE(name == "KERNEL32.dll" || name == "msvcrt.dll") << name;
  expect_hardened(image);
  unload_addin();
}

TEST_F(WindowsAddin, TellsItsVersion) {
  const HRSRC version =
      FindResourceA(reinterpret_cast<HMODULE>(base), MAKEINTRESOURCEA(1), MAKEINTRESOURCEA(16));
  ASSERT_NE(version, nullptr);
  const auto* words =
      static_cast<const WORD*>(LockResource(LoadResource(reinterpret_cast<HMODULE>(base), version)));
  // VS_FIXEDFILEINFO follows the block's head and its key "VS_VERSION_INFO".
  const auto* info = reinterpret_cast<const VS_FIXEDFILEINFO*>(words + 20);
  ASSERT_EQ(info->dwSignature, 0xFEEF04BDu);
  EXPECT_EQ(info->dwFileVersionMS >> 16, 1u);
}

// Where Windows shows help in earnest: the add-in's import of WinHelpA is pointed at a recorder.
HelpCall last_help;
BOOL WINAPI record_help(HWND, LPCSTR path, UINT command, ULONG_PTR) {
  last_help.path = path;
  last_help.command = command;
  return TRUE;
}

TEST_F(WindowsAddin, HelpLiesBesideTheLibrary) {
  void* const real = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("USER32.dll"), "WinHelpA"));
  void** import = nullptr;
  for (const auto* library = directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
       library->Name != 0; ++library)
    for (auto** slot = reinterpret_cast<void**>(base + library->FirstThunk); *slot != nullptr; ++slot)
      if (*slot == real) import = slot;
  ASSERT_NE(import, nullptr);
  DWORD protection = 0;
  ASSERT_TRUE(VirtualProtect(import, sizeof *import, PAGE_READWRITE, &protection));
  *import = reinterpret_cast<void*>(&record_help);

  EXPECT_TRUE(run_command("KESTRAN_Help"));
  EXPECT_EQ(last_help.path, program_folder() + "Kestran.hlp");
  EXPECT_EQ(last_help.command, 11u);
  reinterpret_cast<int(EXCEL_STDCALL*)()>(standin().find_entry("xlAutoClose"))();
  EXPECT_EQ(last_help.path, program_folder() + "Kestran.hlp");
  EXPECT_EQ(last_help.command, 2u);
  *import = real;
}

void set_x87_control_word(unsigned short word) { __asm__ volatile("fldcw %0" : : "m"(word)); }

TEST_F(WindowsAddin, NumbersDoNotDependOnTheProcessorState) {
  for (const FormulaCase& one : read_case_files()) {
    const std::string usual = evaluate_line(one.formula).text;
    constexpr unsigned short words[] = {0x027F, 0x007F};
    for (const unsigned short word : words) {
      set_x87_control_word(word);
      const std::string answer = evaluate_line(one.formula).text;
      set_x87_control_word(0x037F);
      EXPECT_EQ(answer, usual) << one.place << " with control word " << std::hex << word;
    }
  }
}

#if defined(__i386__)
// Calls an entry with its arguments on a stack that lies `offset` bytes off a 16-byte boundary. `left`
// receives how many bytes of arguments the entry left on the stack.
__attribute__((noinline)) void* call_off_boundary(void* entry, void* const* arguments, int count, int offset,
                                                  int* left) {
  void* result;
  int remaining;
  __asm__ volatile(
      "movl %%esp, %%edi\n\t"
      "andl $-16, %%esp\n\t"
      "subl %%eax, %%esp\n\t"
      "movl %%esp, %%ebx\n"
      "1:\n\t"
      "testl %%ecx, %%ecx\n\t"
      "jz 2f\n\t"
      "pushl -4(%%esi,%%ecx,4)\n\t"
      "decl %%ecx\n\t"
      "jmp 1b\n"
      "2:\n\t"
      "call *%%edx\n\t"
      "subl %%esp, %%ebx\n\t"
      "movl %%edi, %%esp"
      : "=a"(result), "=b"(remaining), "+c"(count), "+d"(entry)
      : "0"(offset), "S"(arguments)
      : "edi", "memory", "cc");
  *left = remaining;
  return result;
}

// A copy of a result, which goes back where the add-in wants it.
template <class Record>
Record taken(const Registration& function, Record* result) {
  const Record copy = *result;
  if (function.wide && (copy.type & xlbitDLLFree) != 0)
    reinterpret_cast<void(EXCEL_STDCALL*)(Record*)>(function.take_back)(result);
  return copy;
}

template <class Record>
void expect_any_stack() {
  for (const Registration& registration : standin().registrations) {
    if (is_command(registration)) continue;
    Record one;
    one.type = xltypeNum;
    one.value.number = 1.0;
    const std::vector<Record*> arguments(registration.arguments, &one);
    const auto count = static_cast<int>(registration.arguments);
    const Record expected =
        taken(registration, call_entry(registration.entry, arguments.data(), arguments.size()));
    for (int offset : {0, 4, 8, 12}) {
      int left = -1;
      void* const given = call_off_boundary(
          registration.entry, reinterpret_cast<void* const*>(arguments.data()), count, offset, &left);
      const Record result = taken(registration, static_cast<Record*>(given));
      EXPECT_EQ(left, 0) << registered_name(registration) << " at " << offset;
      EXPECT_EQ(result.type, expected.type);
      EXPECT_EQ(std::memcmp(&result.value, &expected.value, (expected.type & xltypeNum) != 0 ? 8 : 2), 0)
          << registered_name(registration) << " at " << offset;
    }
  }
}

TEST_F(WindowsAddin, EntriesBearAnyStackAndPopTheirArguments) {
  expect_any_stack<XLOPER>();
  unload_addin();
  reset_standin();
  ASSERT_EQ(load_addin(program_folder() + KESTRAN_ADDIN12), "");
  expect_any_stack<XLOPER12>();
}
#endif

}  // namespace
}  // namespace kestran
