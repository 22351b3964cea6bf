#include "numerics/lanes.h"

#include <cstdlib>

namespace kestran {

#if defined(__wasm__)

int lanes() { return 2; }

#else

int lanes() {
  static const int chosen = [] {
    const int most = __builtin_cpu_supports("avx2") ? 4 : 2;
    const char* wanted = std::getenv("KESTRAN_LANES");
    if (wanted == nullptr || wanted[0] == '\0' || wanted[1] != '\0') return most;
    return wanted[0] == '1' ? 1 : wanted[0] == '2' ? 2 : most;
  }();
  return chosen;
}

#endif

}  // namespace kestran
