#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>

#include "runtime/host.h"

/// Stands in for the host in use as long as it lives and forwards every call to it. The hosts of the tests
/// are made of it and change what they are there for.
class ForwardingHost : public runtime::Host {
 public:
  ForwardingHost() : below_(runtime::host()) { runtime::set_host(this); }
  ForwardingHost(const ForwardingHost&) = delete;
  ForwardingHost& operator=(const ForwardingHost&) = delete;
  ForwardingHost(ForwardingHost&&) = delete;
  ForwardingHost& operator=(ForwardingHost&&) = delete;
  ~ForwardingHost() override { runtime::set_host(&below_); }

  [[nodiscard]] char separator() const override { return below_.separator(); }
  [[nodiscard]] const char* line_end() const override { return below_.line_end(); }
  runtime::FileFacts look(const std::string& path, std::error_code& reason) override {
    return below_.look(path, reason);
  }
  int open(const std::string& path, runtime::Access access, std::error_code& reason) override {
    return below_.open(path, access, reason);
  }
  bool facts(int handle, runtime::FileFacts& facts, std::error_code& reason) override {
    return below_.facts(handle, facts, reason);
  }
  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) override {
    return below_.read(handle, bytes, count, reason);
  }
  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) override {
    return below_.write(handle, bytes, count, reason);
  }
  bool seek(int handle, std::uint64_t place, std::error_code& reason) override {
    return below_.seek(handle, place, reason);
  }
  bool truncate(int handle, std::uint64_t size, std::error_code& reason) override {
    return below_.truncate(handle, size, reason);
  }
  bool close(int handle, std::error_code& reason) override { return below_.close(handle, reason); }
  bool remove(const std::string& path, std::error_code& reason) override {
    return below_.remove(path, reason);
  }
  runtime::Successor create_successor(const std::string& path, std::error_code& reason) override {
    return below_.create_successor(path, reason);
  }
  bool succeed(const runtime::Successor& successor, const std::string& path,
               std::error_code& reason) override {
    return below_.succeed(successor, path, reason);
  }
  void discard(const runtime::Successor& successor) override { below_.discard(successor); }
  bool lock(int handle, std::error_code& reason) override { return below_.lock(handle, reason); }
  void run_command(const std::string& command_line) override { below_.run_command(command_line); }
  std::int64_t clock_ticks() override { return below_.clock_ticks(); }
  std::int64_t ticks_per_second() override { return below_.ticks_per_second(); }

 private:
  runtime::Host& below_;
};
