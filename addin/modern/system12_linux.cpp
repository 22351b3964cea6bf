#include <dlfcn.h>

#include "addin/modern/excel12_call.h"
#include "addin/modern/system12.h"

namespace kestran {

Excel12Function host_entry_point() {
  return reinterpret_cast<Excel12Function>(dlsym(RTLD_DEFAULT, "MdCallBack12"));
}

__attribute__((constructor)) static void attach() { find_excel12(); }

}  // namespace kestran
