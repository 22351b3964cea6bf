#include <dlfcn.h>
#include <stdlib.h>
#include <sys/auxv.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <thread>
#include <vector>

#include "host/excel_standin.h"
#include "host/library.h"

namespace kestran {

std::string default_library() {
  const std::string name = "libkestran_addin.so";
  const std::string beside = program_folder() + name;
  const std::string installed = program_folder() + "../lib/kestran/" + name;
  return access(beside.c_str(), F_OK) != 0 && access(installed.c_str(), F_OK) == 0 ? installed : beside;
}

void* open_library(const std::string& path, std::string& error) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) error = dlerror();
  return library;
}

void* find_symbol(void* library, const char* name) { return dlsym(library, name); }

void close_library(void* library) { dlclose(library); }

std::string full_path(const std::string& path) {
  char resolved[PATH_MAX];
  return realpath(path.c_str(), resolved) == nullptr ? path : resolved;
}

std::string program_folder() {
  char path[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  // Without /proc, what the program was started as.
  const std::string program = length > 0 ? std::string(path, static_cast<std::size_t>(length))
                                         : reinterpret_cast<const char*>(getauxval(AT_EXECFN));
  return program.substr(0, program.rfind('/') + 1);
}

bool input_is_terminal() { return isatty(STDIN_FILENO) != 0; }

void run_threads(int count, const std::function<void(int)>& work) {
  std::vector<std::thread> others;
  try {
    for (int i = 1; i < count; ++i) others.emplace_back(work, i);
  } catch (const std::exception&) {
    // No more threads, or no memory for them.
  }
  work(0);
  for (std::thread& other : others) other.join();
}

void prepare_streams() { std::signal(SIGXFSZ, SIG_IGN); }

// What an add-in looks up in the program that loaded it.
extern "C" {

__attribute__((visibility("default"))) int Excel4v(int function, XLOPER* result, int count,
                                                   XLOPER** operands) {
  return call_standin(function, result, count, operands);
}

__attribute__((visibility("default"))) int Excel4(int function, XLOPER* result, int count, ...) {
  XLOPER* operands[max_operands] = {};
  va_list given;
  va_start(given, count);
  for (int i = 0; i < count && i < max_operands; ++i) operands[i] = va_arg(given, XLOPER*);
  va_end(given);
  return call_standin(function, result, count, operands);
}

__attribute__((visibility("default"))) int MdCallBack12(int function, int count, XLOPER12** operands,
                                                        XLOPER12* result) {
  return call_standin(function, result, count, operands);
}

__attribute__((visibility("default"))) int WinHelpA(void*, const char* path, unsigned command,
                                                    std::uintptr_t) {
  constexpr unsigned help_finder = 11;
  const std::string file = path == nullptr ? "" : path;
  standin().help_calls.push_back({file, command});
  if (command == help_finder) std::fprintf(stderr, "help: %s\n", file.c_str());
  return 1;
}
}

}  // namespace kestran
