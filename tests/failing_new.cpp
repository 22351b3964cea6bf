#include "tests/failing_new.h"

#include <cstdlib>
#include <new>

namespace kestran {

static int allocations_until_failure = 0;
static bool failed = false;

void fail_new(int n) {
  failed = false;
  allocations_until_failure = n;
}

bool new_failed() {
  allocations_until_failure = 0;
  return failed;
}

}  // namespace kestran

void* operator new(std::size_t size) {
  const bool fails = kestran::allocations_until_failure > 0 && --kestran::allocations_until_failure == 0;
  void* const memory = fails ? nullptr : std::malloc(size > 0 ? size : 1);
  if (fails) kestran::failed = true;
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
