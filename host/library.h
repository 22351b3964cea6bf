// What the host needs of the operating system: loading an add-in, finding its entry points, files and
// streams.
#pragma once

#include <functional>
#include <string>

namespace kestran {

/// The add-in that is used when no other is named, with its path: beside the program or, once installed,
/// where the system keeps what belongs to it.
std::string default_library();

/// Loads a library by its full path; null when it cannot be loaded, with the reason in `error`.
void* open_library(const std::string& path, std::string& error);

/// Address of an exported function; null when there is none of that name.
void* find_symbol(void* library, const char* name);

void close_library(void* library);

/// The full path a file name stands for, also when there is no such file.
std::string full_path(const std::string& path);

/// Folder of the running program, with the separator at its end; empty when the system does not tell.
std::string program_folder();

/// Whether someone types the input.
bool input_is_terminal();

/// Does `work` on `count` threads at once, this one among them, which are numbered from 0. Where the system
/// has no more threads, fewer do it.
void run_threads(int count, const std::function<void(int)>& work);

/// Makes input and output pass every byte as it is, and a file that grows beyond its limit one that cannot be
/// written, like one on a full disk.
void prepare_streams();

}  // namespace kestran
