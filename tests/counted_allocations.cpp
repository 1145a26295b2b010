#include "tests/counted_allocations.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

bool counting = false;
int made = 0;
int first = 0;
int last = 0;

bool is_refused() {
  if (!counting) return false;
  ++made;
  if (made < first || made > last) return false;
  errno = ENOMEM;
  return true;
}

}  // namespace

namespace counted_allocations {

void begin(int first_refused, int last_refused) {
  made = 0;
  first = first_refused;
  last = last_refused;
  counting = true;
}

int end() {
  counting = false;
  return made;
}

}  // namespace counted_allocations

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" {
void* __real_malloc(std::size_t bytes);
void* __real_calloc(std::size_t count, std::size_t bytes);
void* __wrap_malloc(std::size_t bytes) {
  return is_refused() ? nullptr : __real_malloc(bytes);
}
void* __wrap_calloc(std::size_t count, std::size_t bytes) {
  return is_refused() ? nullptr : __real_calloc(count, bytes);
}
}

void* operator new(std::size_t bytes) {
  void* const memory = is_refused() ? nullptr : __real_malloc(std::max<std::size_t>(bytes, 1));
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*bytes*/) noexcept {
  std::free(memory);
}
