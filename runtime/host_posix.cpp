#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <limits>

#include "runtime/host.h"

namespace runtime {
namespace {

std::error_code last_error() {
  return {errno, std::generic_category()};
}

FileKind kind_of(mode_t mode) {
  if (S_ISREG(mode)) return FileKind::file;
  if (S_ISDIR(mode)) return FileKind::folder;
  return FileKind::other;
}

FileFacts facts_of(const struct stat& status) {
  return {.kind = kind_of(status.st_mode),
          .size = static_cast<std::uint64_t>(std::max<off_t>(status.st_size, 0)),
          .volume = status.st_dev,
          .number = status.st_ino,
          .linked = status.st_nlink > 1};
}

bool nothing_can_be_found() {
  return errno == ENOENT || errno == ENOTDIR || errno == EACCES || errno == ELOOP || errno == ENAMETOOLONG;
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

constexpr mode_t usual_permissions = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;

// Where a standard stream is closed the system hands its number out; a file there would take what is meant
// for the stream.
int open_above_standard_streams(const std::string& path, int flags) {
  const int handle =
      uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, usual_permissions); });
  if (handle < 0 || handle > standard_error_handle) return handle;
  const int above = ::fcntl(handle, F_DUPFD_CLOEXEC, standard_error_handle + 1);
  const int reason = errno;
  ::close(handle);
  if (above < 0 && (flags & O_EXCL) != 0) ::unlink(path.c_str());
  errno = reason;
  return above;
}

std::string folder_of(const std::string& path) {
  const std::size_t last = path.rfind('/');
  return last == std::string::npos ? "." : path.substr(0, last + 1);
}

// The n-th name beside a file for the one that is to take its place.
std::string own_name_beside(const std::string& path, int n) {
  std::string name(path);
  name.append(".").append(std::to_string(::getpid()));
  if (n > 0) name.append("-").append(std::to_string(n));
  return name.append(".neu");
}

// Takes the first such name that is free. On another machine, or before, another run may have had the same
// process number. Empty when no name can be taken.
template <class Take>
std::string take_own_name_beside(const std::string& path, Take take) {
  constexpr int most_names = 1000;
  for (int n = 0; n < most_names; ++n) {
    std::string name = own_name_beside(path, n);
    if (take(name)) return name;
    if (errno != EEXIST) break;
  }
  return {};
}

bool has_room_for_own_name(const std::string& path) {
  const std::string name = own_name_beside(path, 0);
  const std::size_t last = name.rfind('/');
  const std::size_t length = last == std::string::npos ? name.size() : name.size() - last - 1;
  const long most = ::pathconf(folder_of(path).c_str(), _PC_NAME_MAX);
  return most < 0 || length <= static_cast<std::size_t>(most);
}

// A file without a name can be given one by its place among the open files.
std::string place_of(int handle) {
  return "/proc/self/fd/" + std::to_string(handle);
}

// Leaves nothing behind when the process is killed; not every file system has such files.
int create_without_name([[maybe_unused]] const std::string& path) {
#ifdef O_TMPFILE
  const int handle = open_above_standard_streams(folder_of(path), O_RDWR | O_TMPFILE);
  if (handle >= 0 && ::access(place_of(handle).c_str(), F_OK) == 0) return handle;
  if (handle >= 0) ::close(handle);
#endif
  return -1;
}

Successor create_with_name(const std::string& path) {
  Successor successor;
  successor.path = take_own_name_beside(path, [&](const std::string& name) {
    successor.handle = open_above_standard_streams(name, O_RDWR | O_CREAT | O_EXCL);
    return successor.handle >= 0;
  });
  return successor;
}

// The name that a file without one has got beside the path; empty when it cannot have any.
std::string give_name_beside(const std::string& path, int handle) {
  const std::string place = place_of(handle);
  return take_own_name_beside(path, [&](const std::string& name) {
    return ::linkat(AT_FDCWD, place.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
  });
}

// Whoever may read or write the old file may do so with the new one. False when that cannot be had.
bool take_over_rights(int handle, const std::string& path) {
  constexpr mode_t rights = S_IRWXU | S_IRWXG | S_IRWXO;
  struct stat old {};
  struct stat status {};
  if (::stat(path.c_str(), &old) != 0) return errno == ENOENT;
  if (::fstat(handle, &status) != 0) return false;
  const bool same_owner = old.st_uid == status.st_uid && old.st_gid == status.st_gid;
  if (!same_owner && ::fchown(handle, old.st_uid, old.st_gid) != 0) return false;
  return ::fchmod(handle, old.st_mode & rights) == 0;
}

bool waited_for_room(int handle) {
  pollfd wanted{.fd = handle, .events = POLLOUT, .revents = 0};
  return uninterrupted([&] { return ::poll(&wanted, 1, -1); }) == 1;
}

class PosixHost final : public Host {
 public:
  [[nodiscard]] char separator() const override { return '/'; }
  [[nodiscard]] const char* line_end() const override { return "\n"; }

  FileFacts look(const std::string& path, std::error_code& reason) override {
    struct stat status {};
    FileFacts facts;
    if (::stat(path.c_str(), &status) == 0) {
      facts = facts_of(status);
    } else if (!nothing_can_be_found()) {
      reason = last_error();
    }
    if (::lstat(path.c_str(), &status) == 0) {
      if (S_ISLNK(status.st_mode)) facts.linked = true;
    } else if (!nothing_can_be_found()) {
      reason = last_error();
    }
    return facts;
  }

  int open(const std::string& path, Access access, std::error_code& reason) override {
    // O_NONBLOCK: a named pipe without a partner is refused instead of waited for.
    const int handle = open_above_standard_streams(path, flags_for(path, access) | O_NONBLOCK | O_NOCTTY);
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
    facts = facts_of(status);
    return true;
  }

  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) override {
    const ssize_t got = uninterrupted([&] { return ::read(handle, bytes, count); });
    if (got < 0) reason = last_error();
    return got;
  }

  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) override {
    ssize_t put = 0;
    do {
      put = uninterrupted([&] { return ::write(handle, bytes, count); });
    } while (put < 0 && (errno == EAGAIN || errno == EWOULDBLOCK) && waited_for_room(handle));
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

  Successor create_successor(const std::string& path, std::error_code& reason) override {
    if (!has_room_for_own_name(path)) {
      reason = std::make_error_code(std::errc::filename_too_long);
      return {};
    }
    Successor successor{.handle = create_without_name(path), .path = {}};
    if (successor.handle < 0) successor = create_with_name(path);
    if (successor.handle < 0) {
      reason = last_error();
      return {};
    }
    if (!take_over_rights(successor.handle, path)) {
      reason = std::make_error_code(std::errc::operation_not_permitted);
      discard(successor);
      return {};
    }
    return successor;
  }

  bool succeed(const Successor& successor, const std::string& path, std::error_code& reason) override {
    const std::string given = successor.path.empty() ? give_name_beside(path, successor.handle) : "";
    const std::string& name = successor.path.empty() ? given : successor.path;
    if (name.empty()) {
      reason = last_error();
      discard(successor);
      return false;
    }
    if (close(successor.handle, reason)) {
      if (::rename(name.c_str(), path.c_str()) == 0) return true;
      reason = last_error();
    }
    ::unlink(name.c_str());
    return false;
  }

  void discard(const Successor& successor) override {
    std::error_code ignored;
    close(successor.handle, ignored);
    if (!successor.path.empty()) remove(successor.path, ignored);
  }

  bool lock(int handle, std::error_code& reason) override {
    if (uninterrupted([&] { return ::flock(handle, LOCK_EX | LOCK_NB); }) == 0 || errno != EWOULDBLOCK) {
      return true;
    }
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

std::span<const char* const> path_arguments(int count, const char* const* values) {
  return {values, static_cast<std::size_t>(std::max(count, 0))};
}

void advise_large_pages(void* memory, std::size_t bytes) {
#ifdef MADV_HUGEPAGE
  // Only whole pages can be advised on.
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  const std::size_t skipped = (page - reinterpret_cast<std::uintptr_t>(memory) % page) % page;
  ::madvise(static_cast<char*>(memory) + skipped, bytes - skipped, MADV_HUGEPAGE);
#endif
}

void prepare_process() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
#ifdef __GLIBC__
  // Memory that is given back serves the next file or table; fresh pages would have to be cleared first.
  ::mallopt(M_MMAP_MAX, 0);
  ::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
#endif
}

}  // namespace runtime
