#include "addin/system_wasm.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "addin/arity.h"
#include "addin/commands.h"
#include "addin/lifecycle.h"
#include "addin/system.h"

#define RECORD XLOPER

namespace kestran {

extern "C" {
// The host program's.
int Excel4(int function, XLOPER* result, int count, ...);
int Excel4v(int function, XLOPER* result, int count, XLOPER** operands);

#define FUNCTION(name, function, frame, pointers, description, names) XLOPER* name(PARAMETERS_##pointers);
#include "functions/function_list.h"
}

Excel4Function find_excel4() { return Excel4; }
Excel4vFunction find_excel4v() { return Excel4v; }

static char own_handle;
static char program_handle;

void* module_handle(const char* name) { return name == nullptr ? &program_handle : &own_handle; }

int module_file_name(void*, char* buffer, int size) {
  return std::snprintf(buffer, static_cast<std::size_t>(size), "kestran.wasm");
}

bool ends_folder(char character) { return character == '/'; }

void* global_allocate(std::size_t bytes) { return std::malloc(bytes); }
void* global_lock(void* block) { return block; }
void global_unlock(void*) {}
void global_free(void* block) { std::free(block); }

int text_length(const char* text) { return static_cast<int>(std::strlen(text)); }

int format_text(char* buffer, const char* format, ...) {
  va_list values;
  va_start(values, format);
  const int length = std::vsnprintf(buffer, 1024, format, values);
  va_end(values);
  return length;
}

void show_help(const char*, unsigned) {}

void* find_export(const char* name) {
  struct Export {
    const char* name;
    void* address;
  };
#define EXPORT(name) \
  { #name, reinterpret_cast < void*>(&name) }
  static const Export exports[] = {
#define FUNCTION(name, function, frame, pointers, description, names) EXPORT(name),
#include "functions/function_list.h"
      EXPORT(xlAutoOpen), EXPORT(xlAutoClose), EXPORT(KESTRAN_Help), EXPORT(KESTRAN_Exit)};
#undef EXPORT
  for (const Export& one : exports)
    if (std::strcmp(one.name, name) == 0) return one.address;
  return nullptr;
}

__attribute__((constructor)) static void attach() { on_process_attach(&own_handle); }

}  // namespace kestran
