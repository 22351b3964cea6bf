#include "addin/commands.h"

#include <algorithm>
#include <cstring>

#include "addin/excel_call.h"
#include "addin/lifecycle.h"
#include "addin/registration_table.h"

namespace kestran {

static char help_file_path[help_path_size];

const char* help_path() { return help_file_path; }

void write_help_path(const char* module_name, char* path) {
  int folder_end = 0;
  for (int i = 0; module_name[i] != '\0'; ++i)
    if (ends_folder(module_name[i])) folder_end = i;
  std::memset(path, 0, help_path_size);
  std::memcpy(path, module_name, static_cast<std::size_t>(std::min(folder_end, 244)) + 1);
  std::strcpy(path + folder_end + 1, "Kestran.hlp");
}

int EXCEL_STDCALL KESTRAN_Help() {
  char module_name[256];
  if (module_file_name(module_handle("kestran.xll"), module_name, 255) > 0) {
    write_help_path(module_name, help_file_path);
    show_help(help_file_path, help_finder);
  } else {
    static char message[] =
        " Could not found the help file for Kestran.\nPlease contact the Tarnwell Group x40102 or x40101\n";
    Excel(xlcAlert, nullptr, 2, TempStr(message), TempInt(2));
  }
  return 1;
}

static void unregister(XLOPER* library, char* procedure) {
  XLOPER id;
  id.type = xltypeNil;
  Excel(xlfRegisterId, &id, 2, library, TempStr(procedure));
  Excel(xlfUnregister, nullptr, 1, &id);
}

int EXCEL_STDCALL KESTRAN_Exit() {
  XLOPER* library = ask_library_name();
  for (const auto& row : function_table) unregister(library, row[procedure_name]);
  for (const auto& row : command_table) unregister(library, row[procedure_name]);
  release_library_name();
  return xlAutoClose();
}

}  // namespace kestran
