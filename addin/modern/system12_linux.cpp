#include <dlfcn.h>

#include <filesystem>

#include "addin/modern/excel12_call.h"
#include "addin/modern/system12.h"

namespace kestran {

Excel12Function host_entry_point() {
  return reinterpret_cast<Excel12Function>(dlsym(RTLD_DEFAULT, "MdCallBack12"));
}

bool is_file(const std::u16string& name) {
  try {
    return std::filesystem::is_regular_file(name);
  } catch (const std::exception&) {  // no characters, or not to be looked at
    return false;
  }
}

__attribute__((constructor)) static void attach() { find_excel12(); }

}  // namespace kestran
