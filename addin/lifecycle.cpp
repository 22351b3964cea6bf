#include "addin/lifecycle.h"

#include <cstring>

#include "addin/commands.h"
#include "addin/excel_call.h"
#include "addin/registration_table.h"

namespace kestran {

// Both are what Excel and the system said last; nothing is computed from them between calls.
static void* library_module = nullptr;
static XLOPER library_name;

constexpr double worksheet_menu_bar = 10.0;
constexpr short information = 2;  // kind of alert

// Part of the message shown when the add-in is added; they name the release, not this compilation, so that
// the same sources always give the same file.
constexpr char build_date[] = "Oct 31 2001";
constexpr char build_time[] = "15:12:35";

void on_process_attach(void* module) {
  library_module = module;
  prepare_tables();
}

XLOPER* ask_library_name() {
  library_name.type = xltypeNil;
  Excel(xlGetName, &library_name, 0);
  return &library_name;
}

void release_library_name() { Excel(xlFree, nullptr, 1, &library_name); }

template <int columns>
static int register_row(char* const (&row)[columns], XLOPER* registered) {
  XLOPER* operands[1 + columns] = {&library_name};
  for (int i = 0; i < columns; ++i) operands[1 + i] = TempStr(row[i]);
  return call_excel(xlfRegister, registered, 1 + columns, operands);
}

static void ask_for_menu(XLOPER& answer) {
  static char menu_name[] = " KESTRAN";
  answer.type = xltypeErr;
  Excel(xlfGetBar, &answer, 3, TempNum(worksheet_menu_bar), TempStr(menu_name), TempInt(0));
}

static void add_menu() {
  static char help_menu[] = " Help";
  constexpr int count = menu_rows * menu_columns;
  void* block = global_allocate(count * sizeof(XLOPER));
  if (block == nullptr) return;
  auto* elements = static_cast<XLOPER*>(global_lock(block));
  for (int i = 0; i < count; ++i) {
    elements[i].type = xltypeStr;
    elements[i].value.text = menu_table[i / menu_columns][i % menu_columns];
  }
  XLOPER menu;
  menu.type = xltypeMulti;
  menu.value.array.elements = elements;
  menu.value.array.rows = menu_rows;
  menu.value.array.columns = menu_columns;
  Excel(xlfAddMenu, nullptr, 3, TempNum(worksheet_menu_bar), &menu, TempStr(help_menu));
  global_unlock(block);
  global_free(block);
}

int EXCEL_STDCALL xlAutoOpen() {
  // Touches both modules as the add-in always has; the names are not needed further.
  char library_file[256];
  char program_file[256];
  module_file_name(module_handle("KESTRAN.xll"), library_file, sizeof library_file);
  module_file_name(module_handle(nullptr), program_file, sizeof program_file);

  ask_library_name();
  for (const auto& row : function_table) register_row(row, nullptr);
  for (const auto& row : command_table) register_row(row, nullptr);

  XLOPER menu;
  ask_for_menu(menu);
  if (menu.type == xltypeErr) add_menu();
  Excel(xlFree, nullptr, 2, &menu, &library_name);
  return 1;
}

int EXCEL_STDCALL xlAutoClose() {
  for (const auto& row : function_table) Excel(xlfSetName, nullptr, 1, TempStr(row[function_text]));
  for (const auto& row : command_table) Excel(xlfSetName, nullptr, 1, TempStr(row[function_text]));

  static char menu_name[] = " KESTRAN";
  XLOPER menu;
  ask_for_menu(menu);
  if (menu.type != xltypeErr) {
    Excel(xlfDeleteMenu, nullptr, 2, TempNum(worksheet_menu_bar), TempStr(menu_name));
    Excel(xlFree, nullptr, 1, &menu);
  }
  show_help(help_path(), help_quit);
  return 1;
}

XLOPER* EXCEL_STDCALL xlAutoRegister(XLOPER* name) {
  static XLOPER registered;
  registered.type = xltypeErr;
  registered.value.error = xlerrValue;
  if (name->type != xltypeStr || name->value.text == nullptr) return &registered;
  const auto length = static_cast<unsigned char>(name->value.text[0]);
  for (const auto& row : function_table) {
    const char* procedure = row[procedure_name];
    if (static_cast<unsigned char>(procedure[0]) != length) continue;
    if (std::memcmp(procedure + 1, name->value.text + 1, length) != 0) continue;
    ask_library_name();
    register_row(row, &registered);
    release_library_name();
    break;
  }
  return &registered;
}

static void inform(char* message) { Excel(xlcAlert, nullptr, 2, TempStr(message), TempInt(information)); }

int EXCEL_STDCALL xlAutoAdd() {
  char message[1 + 1024] = " ";
  format_text(message + 1, "Adding KESTRAN.XLL\n built on %s at %s \nThe Tarnwell Group (x40101, x40102)",
              build_date, build_time);
  inform(message);
  return 1;
}

int EXCEL_STDCALL xlAutoRemove() {
  static char message[] = " Removing KESTRAN.XLL ";
  inform(message);
  return 1;
}

XLOPER* EXCEL_STDCALL xlAddInManagerInfo(XLOPER* action) {
  static char product_name[] = "\7KESTRAN";
  static XLOPER answer;
  XLOPER number;
  number.type = xltypeNil;
  const int coerced = Excel(xlCoerce, &number, 2, action, TempInt(xltypeInt));
  if (coerced == xlretSuccess && number.type == xltypeInt && number.value.integer == 1) {
    answer.type = xltypeStr;
    answer.value.text = product_name;
  } else {
    answer.type = xltypeErr;
    answer.value.error = xlerrValue;
  }
  return &answer;
}

}  // namespace kestran
