#include "tests/faulty_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>

namespace {

using faulty_calls::Call;
using faulty_calls::Plan;

Plan* plan = nullptr;

// The system's own call of that name.
template <class Function>
Function next(Function /*of_the_kind*/, const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// The program begins behind this; what its start needs is neither counted nor refused.
__attribute__((constructor)) void find_the_plan() {
  const char* const path = std::getenv(faulty_calls::plan_variable);
  if (path == nullptr) return;
  const int file = next(&::open, "open")(path, O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  void* const memory = mmap(nullptr, sizeof(Plan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  next(&::close, "close")(file);
  if (memory != MAP_FAILED) plan = static_cast<Plan*>(memory);
}

// Whether this call is one that fails.
bool is_chosen(Call call) {
  if (plan == nullptr) return false;
  const auto kind = static_cast<std::size_t>(call);
  const int made = ++plan->made[kind];
  return plan->call == kind && made >= plan->first && made <= plan->last;
}

bool is_refused(Call call) {
  if (!is_chosen(call)) return false;
  errno = plan->number;
  return true;
}

// A transfer of bytes, which may also be made in part.
template <class Transfer>
ssize_t transferred(Call call, std::size_t count, Transfer transfer) {
  if (!is_chosen(call)) return transfer(count);
  if (plan->in_part) return transfer(std::min(count, static_cast<std::size_t>(plan->number)));
  errno = plan->number;
  return -1;
}

}  // namespace

// The names and their parameters are the system's.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl50-cpp,cert-dcl51-cpp)
extern "C" {

// For the counting of reached lines, which is written at the end of a run (tests/coverage_exit.cpp).
void let_calls_succeed() {
  plan = nullptr;
}

void* __libc_malloc(std::size_t bytes);
void* __libc_calloc(std::size_t count, std::size_t bytes);

int open(const char* path, int flags, ...) {
  if (is_refused(Call::open)) return -1;
  std::va_list arguments;
  va_start(arguments, flags);
  const auto rights = va_arg(arguments, mode_t);
  va_end(arguments);
  return next(&open, "open")(path, flags, rights);
}

int stat(const char* __restrict path, struct stat* __restrict status) noexcept {
  return is_refused(Call::stat) ? -1 : next(&stat, "stat")(path, status);
}

int lstat(const char* __restrict path, struct stat* __restrict status) noexcept {
  return is_refused(Call::lstat) ? -1 : next(&lstat, "lstat")(path, status);
}

int fstat(int handle, struct stat* status) noexcept {
  return is_refused(Call::fstat) ? -1 : next(&fstat, "fstat")(handle, status);
}

int access(const char* path, int mode) noexcept {
  return is_refused(Call::access) ? -1 : next(&access, "access")(path, mode);
}

ssize_t read(int handle, void* bytes, std::size_t count) {
  return transferred(Call::read, count,
                     [&](std::size_t most) { return next(&read, "read")(handle, bytes, most); });
}

ssize_t write(int handle, const void* bytes, std::size_t count) {
  const auto transfer = [&](std::size_t most) { return next(&write, "write")(handle, bytes, most); };
  if (handle == STDERR_FILENO) return transfer(count);
  return transferred(handle == STDOUT_FILENO ? Call::notice : Call::write, count, transfer);
}

off_t lseek(int handle, off_t place, int whence) noexcept {
  return is_refused(Call::seek) ? -1 : next(&lseek, "lseek")(handle, place, whence);
}

int ftruncate(int handle, off_t size) noexcept {
  return is_refused(Call::truncate) ? -1 : next(&ftruncate, "ftruncate")(handle, size);
}

// A close that fails has freed the handle all the same.
int close(int handle) {
  const int result = next(&close, "close")(handle);
  return is_refused(Call::close) ? -1 : result;
}

int unlink(const char* path) noexcept {
  return is_refused(Call::unlink) ? -1 : next(&unlink, "unlink")(path);
}

int linkat(int from_folder, const char* from, int to_folder, const char* to, int flags) noexcept {
  return is_refused(Call::link) ? -1 : next(&linkat, "linkat")(from_folder, from, to_folder, to, flags);
}

int rename(const char* from, const char* to) noexcept {
  return is_refused(Call::rename) ? -1 : next(&rename, "rename")(from, to);
}

int fchmod(int handle, mode_t rights) noexcept {
  return is_refused(Call::change_rights) ? -1 : next(&fchmod, "fchmod")(handle, rights);
}

int flock(int handle, int operation) noexcept {
  return is_refused(Call::lock) ? -1 : next(&flock, "flock")(handle, operation);
}

void* malloc(std::size_t bytes) {
  return is_refused(Call::allocation) ? nullptr : __libc_malloc(bytes);
}

void* calloc(std::size_t count, std::size_t bytes) {
  return is_refused(Call::allocation) ? nullptr : __libc_calloc(count, bytes);
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl50-cpp,cert-dcl51-cpp)
