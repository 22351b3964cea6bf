// Everything the add-in asks of the operating system. system_windows.cpp, system_linux.cpp and
// system_wasm.cpp implement it; no other file of the add-in knows which system it runs on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "addin/excel_api.h"

#if defined(_WIN32)
#define KESTRAN_EXPORT __declspec(dllexport)
#else
#define KESTRAN_EXPORT __attribute__((visibility("default")))
#endif

namespace kestran {

/// Excel's own two entry points: from the XLCALL32.DLL that is loaded or lies beside the host program,
/// on Linux from the running process. Null without a host.
Excel4Function find_excel4();
Excel4vFunction find_excel4v();

/// Handle of a loaded module; a null name means the program that hosts the add-in. Null when there is none.
/// On Linux every name means this library.
void* module_handle(const char* name);

/// File name with path of a module, cut to `size` characters with its end mark; the length written, 0 when it
/// cannot be read.
int module_file_name(void* module, char* buffer, int size);

/// True for the characters that end the folder part of a file name.
bool ends_folder(char character);

/// Movable global memory: allocated blocks are locked for their address. Null when there is no memory.
void* global_allocate(std::size_t bytes);
void* global_lock(void* block);
void global_unlock(void* block);
void global_free(void* block);

/// Length of a zero-terminated text.
int text_length(const char* text);

/// Formats into a buffer of at least 1024 characters (%s and %d); the length written.
int format_text(char* buffer, const char* format, ...);

constexpr unsigned help_quit = 2;
constexpr unsigned help_finder = 11;

/// Asks the help system to show or close a help file. On Linux the host may offer a function of the Windows
/// name (WinHelpA); without one nothing happens.
void show_help(const char* path, unsigned command);

}  // namespace kestran
