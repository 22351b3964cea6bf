// Loaded before a program, makes an allocation fail: LD_PRELOAD=... KESTRAN_FAILS=17 for the 17th, 17+ for
// the later ones too. How many there were goes to the descriptor KESTRAN_TELLS in the end. Within the process
// fail_allocation() says which.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
}

namespace {

enum class Of { malloc, operator_new };
std::atomic<long> seen{0}, failing{0};  // 0: none
bool later_too = false;
Of counted = Of::malloc;

bool fails(Of kind) {
  if (failing <= 0 || kind != counted) return false;
  const long place = ++seen;
  return place == failing || (later_too && place > failing);
}

[[gnu::constructor]] void begin() {
  const char* const place = std::getenv("KESTRAN_FAILS");
  if (place == nullptr) return;
  later_too = std::strchr(place, '+') != nullptr;
  failing = std::atol(place);
}

[[gnu::destructor]] void end() {
  failing = 0;
  if (std::getenv("KESTRAN_TELLS") != nullptr)
    dprintf(std::atoi(std::getenv("KESTRAN_TELLS")), "%ld", seen.load());
}

void* new_memory(std::size_t size) {
  for (;;) {
    void* const memory = fails(Of::operator_new) ? nullptr : std::malloc(size > 0 ? size : 1);
    if (memory != nullptr || std::get_new_handler() == nullptr) return memory;
    std::get_new_handler()();
  }
}

}  // namespace

extern "C" {
/// The allocation of that place fails, counted from now among all or among those by `new`; 0 for none. Gives
/// how many there were since the last time.
long fail_allocation(long place, int by_new) {
  failing = 0;
  counted = by_new != 0 ? Of::operator_new : Of::malloc;
  const long before = seen.exchange(0);
  failing = place;
  return before;
}

void* malloc(std::size_t size) { return fails(Of::malloc) ? nullptr : __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) {
  return fails(Of::malloc) ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* old, std::size_t size) { return fails(Of::malloc) ? nullptr : __libc_realloc(old, size); }
}

void* operator new(std::size_t size) {
  void* const memory = new_memory(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return new_memory(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return new_memory(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
