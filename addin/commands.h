// The two macro commands of the KESTRAN menu.
#pragma once

#include "addin/excel_api.h"
#include "addin/system.h"

namespace kestran {

extern "C" {
/// Opens the help file that lies beside the library, or tells that the library's own file name cannot be
/// read. Always 1.
KESTRAN_EXPORT int EXCEL_STDCALL KESTRAN_Help();
/// Unregisters every function and command and closes the add-in; gives the result of xlAutoClose.
KESTRAN_EXPORT int EXCEL_STDCALL KESTRAN_Exit();
}

/// Path of the help file that the last KESTRAN_Help opened; empty before.
const char* help_path();

/// Writes the path of the help file beside the library whose file name is `module_name` (at most 255
/// characters) into `path`, which has room for help_path_size characters. A folder of more than 245
/// characters leaves only its first 245 characters.
void write_help_path(const char* module_name, char* path);
constexpr int help_path_size = 268;

}  // namespace kestran
