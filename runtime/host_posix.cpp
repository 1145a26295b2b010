#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>

#include "runtime/host.h"

namespace runtime {
namespace {

std::error_code last_error() {
  return {errno, std::generic_category()};
}

FileKind kind_of_mode(mode_t mode) {
  if (S_ISREG(mode)) return FileKind::file;
  if (S_ISDIR(mode)) return FileKind::folder;
  return FileKind::other;
}

int flags_of(Access access) {
  switch (access) {
    case Access::read:
      return O_RDONLY;
    case Access::update:
      return O_RDWR;
    case Access::create:
      return O_RDWR | O_CREAT;
  }
  return O_RDONLY;
}

// A pipe opened for both would be its own reader: what nobody reads would count as written.
int flags_for(const std::string& path, Access access) {
  struct stat status {};
  const bool pipe = ::stat(path.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
  return pipe && access != Access::read ? O_WRONLY : flags_of(access);
}

// Repeats a call that a signal interrupted.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

class PosixHost final : public Host {
 public:
  [[nodiscard]] char separator() const override { return '/'; }
  [[nodiscard]] const char* line_end() const override { return "\n"; }

  FileKind kind_of(const std::string& path) override {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return FileKind::none;
    return kind_of_mode(status.st_mode);
  }

  int open(const std::string& path, Access access, std::error_code& reason) override {
    constexpr mode_t permissions = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    // O_NONBLOCK: a named pipe without a partner is refused instead of waited for.
    const int flags = flags_for(path, access) | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
    const int handle = uninterrupted([&] { return ::open(path.c_str(), flags, permissions); });
    if (handle < 0) {
      reason = last_error();
      return -1;
    }
    ::fcntl(handle, F_SETFL, ::fcntl(handle, F_GETFL) & ~O_NONBLOCK);
    return handle;
  }

  bool facts(int handle, FileFacts& facts, std::error_code& reason) override {
    struct stat status {};
    if (::fstat(handle, &status) != 0) {
      reason = last_error();
      return false;
    }
    facts.kind = kind_of_mode(status.st_mode);
    facts.size = static_cast<std::uint64_t>(std::max<off_t>(status.st_size, 0));
    facts.volume = status.st_dev;
    facts.number = status.st_ino;
    return true;
  }

  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) override {
    const ssize_t got = uninterrupted([&] { return ::read(handle, bytes, count); });
    if (got < 0) reason = last_error();
    return got;
  }

  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) override {
    const ssize_t put = uninterrupted([&] { return ::write(handle, bytes, count); });
    if (put < 0) reason = last_error();
    return put;
  }

  bool seek(int handle, std::uint64_t place, std::error_code& reason) override {
    if (::lseek(handle, static_cast<off_t>(place), SEEK_SET) >= 0) return true;
    reason = last_error();
    return false;
  }

  bool truncate(int handle, std::uint64_t size, std::error_code& reason) override {
    if (uninterrupted([&] { return ::ftruncate(handle, static_cast<off_t>(size)); }) == 0) return true;
    reason = last_error();
    return false;
  }

  bool close(int handle, std::error_code& reason) override {
    if (::close(handle) == 0 || errno == EINTR) return true;
    reason = last_error();
    return false;
  }

  bool remove(const std::string& path, std::error_code& reason) override {
    if (::unlink(path.c_str()) == 0) return true;
    reason = last_error();
    return false;
  }

  void run_command(const std::string& command_line) override {
    const pid_t child = ::fork();
    if (child == 0) {
      // The command asks nobody: without an input it cannot wait for one.
      const int nothing = ::open("/dev/null", O_RDWR);
      for (int stream = 0; stream <= 2; ++stream) ::dup2(nothing, stream);
      ::execl("/bin/sh", "sh", "-c", command_line.c_str(), static_cast<char*>(nullptr));
      ::_exit(127);
    }
    if (child > 0) {
      int status = 0;
      uninterrupted([&] { return ::waitpid(child, &status, 0); });
    }
  }

  std::int64_t clock_ticks() override {
    using Milliseconds = std::chrono::milliseconds;
    return std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
  }
  std::int64_t ticks_per_second() override { return 1000; }
};

Host* replacement_host = nullptr;

}  // namespace

Host& host() {
  static PosixHost machine;
  return replacement_host != nullptr ? *replacement_host : machine;
}

void set_host(Host* replacement) {
  replacement_host = replacement;
}

void advise_large_pages(void* memory, std::size_t bytes) {
#ifdef MADV_HUGEPAGE
  // Only whole pages can be advised on.
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  const std::size_t skipped = (page - reinterpret_cast<std::uintptr_t>(memory) % page) % page;
  if (bytes > skipped) ::madvise(static_cast<char*>(memory) + skipped, bytes - skipped, MADV_HUGEPAGE);
#endif
}

void prepare_process() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  // open() hands out the lowest free number: the loop ends with the first one past the standard streams.
  int handle = ::open("/dev/null", O_RDWR);
  while (handle >= 0 && handle <= standard_error_handle) handle = ::open("/dev/null", O_RDWR);
  if (handle >= 0) ::close(handle);
}

}  // namespace runtime
