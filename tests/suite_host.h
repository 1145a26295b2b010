#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

#include "tests/forwarding_host.h"
#include "tests/test_files.h"

/// The suite's host, with its separator, command interpreter and clock. Files are the machine's own; a
/// command line is kept and answered with the prepared listing; the clock shows what the test sets.
class SuiteHost final : public ForwardingHost {
 public:
  std::vector<std::string> commands;
  std::string listing_file;  ///< where a command writes; nowhere while it is empty
  std::string listing;
  std::int64_t ticks = 0;
  std::int64_t rate = 1000;
  bool refuses_removal = false;
  std::string nameless_file;  ///< what the empty path stands for

  [[nodiscard]] char separator() const override { return '\\'; }
  runtime::FileFacts look(const std::string& path, std::error_code& reason) override {
    return ForwardingHost::look(machine_path(path), reason);
  }
  int open(const std::string& path, runtime::Access access, std::error_code& reason) override {
    return ForwardingHost::open(path.empty() ? nameless_file : machine_path(path), access, reason);
  }
  bool remove(const std::string& path, std::error_code& reason) override {
    if (!refuses_removal) return ForwardingHost::remove(machine_path(path), reason);
    reason = std::make_error_code(std::errc::permission_denied);
    return false;
  }
  void run_command(const std::string& command_line) override {
    commands.push_back(command_line);
    if (!listing_file.empty()) test_files::write_bytes(listing_file, listing);
  }
  std::int64_t clock_ticks() override { return ticks; }
  std::int64_t ticks_per_second() override { return rate; }

 private:
  static std::string machine_path(std::string path) {
    std::ranges::replace(path, '\\', '/');
    return path;
  }
};
