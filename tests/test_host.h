#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <system_error>

#include "tests/forwarding_host.h"

/// The calls of a host that a test can make fail.
enum class HostCall : std::uint8_t {
  open,
  facts,
  read,
  write,
  seek,
  truncate,
  close,
  remove,
  create_successor,
  succeed,
  lock
};
inline constexpr std::size_t host_calls = static_cast<std::size_t>(HostCall::lock) + 1;

/// Makes chosen calls fail. Calls are counted by kind, over all files, from 1. Writes to the standard streams
/// are neither counted nor made to fail.
class TestHost final : public ForwardingHost {
 public:
  /// The n-th call of that kind from now on fails; with `lasting` every later one too.
  void fail(HostCall call, int nth, std::errc reason, bool lasting = false) {
    Fault& fault = faults_[index(call)];
    fault = {.first = fault.calls + nth, .last = fault.calls + nth, .reason = reason, .calls = fault.calls};
    if (lasting) fault.last = std::numeric_limits<int>::max();
  }
  /// One read or write moves at most so many bytes.
  void limit_transfers(std::size_t bytes) { most_bytes_ = bytes; }
  /// How often that call was made.
  [[nodiscard]] int calls(HostCall call) const { return faults_[index(call)].calls; }

  int open(const std::string& path, runtime::Access access, std::error_code& reason) override {
    return fails(HostCall::open, reason) ? -1 : ForwardingHost::open(path, access, reason);
  }
  bool facts(int handle, runtime::FileFacts& facts, std::error_code& reason) override {
    return !fails(HostCall::facts, reason) && ForwardingHost::facts(handle, facts, reason);
  }
  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) override {
    if (fails(HostCall::read, reason)) return -1;
    return ForwardingHost::read(handle, bytes, std::min(count, most_bytes_), reason);
  }
  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) override {
    if (handle <= runtime::standard_error_handle) return ForwardingHost::write(handle, bytes, count, reason);
    if (fails(HostCall::write, reason)) return -1;
    return ForwardingHost::write(handle, bytes, std::min(count, most_bytes_), reason);
  }
  bool seek(int handle, std::uint64_t place, std::error_code& reason) override {
    return !fails(HostCall::seek, reason) && ForwardingHost::seek(handle, place, reason);
  }
  bool truncate(int handle, std::uint64_t size, std::error_code& reason) override {
    return !fails(HostCall::truncate, reason) && ForwardingHost::truncate(handle, size, reason);
  }
  // A close that fails has freed the handle all the same.
  bool close(int handle, std::error_code& reason) override {
    const bool closed = ForwardingHost::close(handle, reason);
    return !fails(HostCall::close, reason) && closed;
  }
  bool remove(const std::string& path, std::error_code& reason) override {
    return !fails(HostCall::remove, reason) && ForwardingHost::remove(path, reason);
  }
  runtime::Successor create_successor(const std::string& path, std::error_code& reason) override {
    if (fails(HostCall::create_successor, reason)) return {};
    return ForwardingHost::create_successor(path, reason);
  }
  // A new file that cannot take its place is gone.
  bool succeed(const runtime::Successor& successor, const std::string& path,
               std::error_code& reason) override {
    if (!fails(HostCall::succeed, reason)) return ForwardingHost::succeed(successor, path, reason);
    discard(successor);
    return false;
  }
  bool lock(int handle, std::error_code& reason) override {
    return !fails(HostCall::lock, reason) && ForwardingHost::lock(handle, reason);
  }

 private:
  struct Fault {
    int first = 0;
    int last = 0;
    std::errc reason{};
    int calls = 0;
  };

  static std::size_t index(HostCall call) { return static_cast<std::size_t>(call); }
  bool fails(HostCall call, std::error_code& reason) {
    Fault& fault = faults_[index(call)];
    ++fault.calls;
    if (fault.calls < fault.first || fault.calls > fault.last) return false;
    reason = std::make_error_code(fault.reason);
    return true;
  }

  std::array<Fault, host_calls> faults_{};
  std::size_t most_bytes_ = std::numeric_limits<std::size_t>::max();
};
