#include <dlfcn.h>
#include <stdlib.h>
#include <unistd.h>

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "addin/lifecycle.h"
#include "addin/system.h"

namespace kestran {

Excel4Function find_excel4() { return reinterpret_cast<Excel4Function>(dlsym(RTLD_DEFAULT, "Excel4")); }

Excel4vFunction find_excel4v() { return reinterpret_cast<Excel4vFunction>(dlsym(RTLD_DEFAULT, "Excel4v")); }

// Any address of this library serves as its handle, any other as the host program's.
static char own_handle;
static char program_handle;

void* module_handle(const char* name) { return name == nullptr ? &program_handle : &own_handle; }

int module_file_name(void* module, char* buffer, int size) {
  char path[PATH_MAX];
  if (module == &own_handle) {
    Dl_info library;
    if (dladdr(&own_handle, &library) == 0 || realpath(library.dli_fname, path) == nullptr) return 0;
  } else {
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    if (length < 0) return 0;
    path[length] = '\0';
  }
  const int length = std::snprintf(buffer, static_cast<std::size_t>(size), "%s", path);
  return length < size ? length : size - 1;
}

bool ends_folder(char character) { return character == '/'; }

void* global_allocate(std::size_t bytes) { return malloc(bytes); }
void* global_lock(void* block) { return block; }
void global_unlock(void*) {}
void global_free(void* block) { free(block); }

int text_length(const char* text) { return static_cast<int>(std::strlen(text)); }

int format_text(char* buffer, const char* format, ...) {
  va_list values;
  va_start(values, format);
  const int length = std::vsnprintf(buffer, 1024, format, values);
  va_end(values);
  return length;
}

void show_help(const char* path, unsigned command) {
  using HelpFunction = int (*)(void* owner, const char* path, unsigned command, std::uintptr_t data);
  const auto help = reinterpret_cast<HelpFunction>(dlsym(RTLD_DEFAULT, "WinHelpA"));
  if (help != nullptr) help(nullptr, path, command, 0);
}

__attribute__((constructor)) static void attach() { on_process_attach(&own_handle); }

}  // namespace kestran
