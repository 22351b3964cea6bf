// What Excel calls when the add-in is loaded, opened, listed and closed.
#pragma once

#include "addin/excel_api.h"
#include "addin/system.h"

namespace kestran {

/// The library's load hook: keeps its handle and makes the texts of the tables counted strings.
void on_process_attach(void* module);

extern "C" {
/// Registers the functions and commands and adds the menu unless it is there. Always 1.
KESTRAN_EXPORT int EXCEL_STDCALL xlAutoOpen();
/// Deletes the functions' names, removes the menu and closes help. Always 1.
KESTRAN_EXPORT int EXCEL_STDCALL xlAutoClose();
/// Registers one function by its name and answers what Excel said of it; #VALUE! for an unknown name.
KESTRAN_EXPORT XLOPER* EXCEL_STDCALL xlAutoRegister(XLOPER* name);
/// Tell the user that the add-in manager added or removed the add-in. Always 1.
KESTRAN_EXPORT int EXCEL_STDCALL xlAutoAdd();
KESTRAN_EXPORT int EXCEL_STDCALL xlAutoRemove();
/// The add-in's name for action 1; #VALUE! for any other action.
KESTRAN_EXPORT XLOPER* EXCEL_STDCALL xlAddInManagerInfo(XLOPER* action);
}

/// Asks Excel for the library's name, the first operand of every registration, into the record given back.
XLOPER* ask_library_name();
void release_library_name();

}  // namespace kestran
