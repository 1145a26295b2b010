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
  look,
  open,
  facts,
  read,
  write,
  notice,  ///< a write to standard output
  seek,
  truncate,
  close,
  remove,
  create_successor,
  succeed,
  lock
};
inline constexpr std::size_t host_calls = static_cast<std::size_t>(HostCall::lock) + 1;

/// Makes chosen calls fail. Calls are counted by kind, over all files, from 1. Writes to standard error are
/// neither counted nor made to fail.
class TestHost final : public ForwardingHost {
 public:
  /// The n-th call of that kind from now on fails; with `lasting` every later one too.
  void fail(HostCall call, int nth, std::errc reason, bool lasting = false) {
    plan(call, nth, lasting) = {.kind = FaultKind::refused, .reason = reason};
  }
  /// The n-th read or write from now on moves at most so many bytes; 0 bytes read are the end of the file.
  void shorten(HostCall call, int nth, std::size_t bytes) {
    plan(call, nth, false) = {.kind = FaultKind::shortened, .bytes = bytes};
  }
  /// One read or write moves at most so many bytes.
  void limit_transfers(std::size_t bytes) { most_bytes_ = bytes; }
  /// How often that call was made.
  [[nodiscard]] int calls(HostCall call) const { return calls_[static_cast<std::size_t>(call)].made; }

  runtime::FileFacts look(const std::string& path, std::error_code& reason) override {
    return fails(HostCall::look, reason) ? runtime::FileFacts{} : ForwardingHost::look(path, reason);
  }
  int open(const std::string& path, runtime::Access access, std::error_code& reason) override {
    return fails(HostCall::open, reason) ? -1 : ForwardingHost::open(path, access, reason);
  }
  bool facts(int handle, runtime::FileFacts& facts, std::error_code& reason) override {
    return !fails(HostCall::facts, reason) && ForwardingHost::facts(handle, facts, reason);
  }
  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) override {
    const Fault fault = next(HostCall::read);
    if (fails(fault, reason)) return -1;
    const std::size_t most = most_of(fault, count);
    return most == 0 ? 0 : ForwardingHost::read(handle, bytes, most, reason);
  }
  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) override {
    if (handle == runtime::standard_error_handle) return ForwardingHost::write(handle, bytes, count, reason);
    const bool shown = handle == runtime::standard_output_handle;
    const Fault fault = next(shown ? HostCall::notice : HostCall::write);
    if (fails(fault, reason)) return -1;
    return ForwardingHost::write(handle, bytes, most_of(fault, count), reason);
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
  enum class FaultKind : std::uint8_t { none, refused, shortened };
  struct Fault {
    FaultKind kind = FaultKind::none;
    std::errc reason{};
    std::size_t bytes = 0;
  };
  struct Calls {
    int made = 0;
    int first = 0;
    int last = 0;
    Fault fault;
  };

  Calls& of(HostCall call) { return calls_[static_cast<std::size_t>(call)]; }
  Fault& plan(HostCall call, int nth, bool lasting) {
    Calls& calls = of(call);
    calls.first = calls.made + nth;
    calls.last = lasting ? std::numeric_limits<int>::max() : calls.first;
    return calls.fault;
  }
  Fault next(HostCall call) {
    Calls& calls = of(call);
    ++calls.made;
    return calls.made < calls.first || calls.made > calls.last ? Fault{} : calls.fault;
  }
  static bool fails(const Fault& fault, std::error_code& reason) {
    if (fault.kind != FaultKind::refused) return false;
    reason = std::make_error_code(fault.reason);
    return true;
  }
  bool fails(HostCall call, std::error_code& reason) { return fails(next(call), reason); }
  [[nodiscard]] std::size_t most_of(const Fault& fault, std::size_t count) const {
    return std::min({count, most_bytes_, fault.kind == FaultKind::shortened ? fault.bytes : count});
  }

  std::array<Calls, host_calls> calls_{};
  std::size_t most_bytes_ = std::numeric_limits<std::size_t>::max();
};
