#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "runtime/host.h"
#include "tests/test_files.h"

/// What the tests of the suite's services stand on: an empty working folder and a host with the suite's
/// command interpreter and clock.
namespace suite_host {

/// A new folder that is the working folder while this lives.
class WorkingFolder {
 public:
  WorkingFolder() : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder_.path());
  }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  WorkingFolder(WorkingFolder&&) = delete;
  WorkingFolder& operator=(WorkingFolder&&) = delete;
  ~WorkingFolder() { std::filesystem::current_path(before_); }

 private:
  test_files::TemporaryFolder folder_;
  std::filesystem::path before_;
};

/// Stands in for the machine's host as long as it lives. Files are the machine's own; a command line is kept
/// and answered with the prepared listing; the clock shows what the test sets.
class SuiteHost final : public runtime::Host {
 public:
  SuiteHost() : machine_(runtime::host()) { runtime::set_host(this); }
  SuiteHost(const SuiteHost&) = delete;
  SuiteHost& operator=(const SuiteHost&) = delete;
  SuiteHost(SuiteHost&&) = delete;
  SuiteHost& operator=(SuiteHost&&) = delete;
  ~SuiteHost() override { runtime::set_host(nullptr); }

  std::vector<std::string> commands;
  std::string listing_file;  ///< where a command writes; nowhere while it is empty
  std::string listing;
  std::int64_t ticks = 0;
  std::int64_t rate = 1000;
  bool refuses_removal = false;
  std::string nameless_file;  ///< what the empty path stands for

  [[nodiscard]] char separator() const override { return machine_.separator(); }
  [[nodiscard]] const char* line_end() const override { return machine_.line_end(); }
  runtime::FileKind kind_of(const std::string& path) override { return machine_.kind_of(path); }
  int open(const std::string& path, runtime::Access access, std::error_code& reason) override {
    return machine_.open(path.empty() ? nameless_file : path, access, reason);
  }
  bool facts(int handle, runtime::FileFacts& facts, std::error_code& reason) override {
    return machine_.facts(handle, facts, reason);
  }
  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) override {
    return machine_.read(handle, bytes, count, reason);
  }
  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) override {
    return machine_.write(handle, bytes, count, reason);
  }
  bool seek(int handle, std::uint64_t place, std::error_code& reason) override {
    return machine_.seek(handle, place, reason);
  }
  bool truncate(int handle, std::uint64_t size, std::error_code& reason) override {
    return machine_.truncate(handle, size, reason);
  }
  bool close(int handle, std::error_code& reason) override { return machine_.close(handle, reason); }
  bool remove(const std::string& path, std::error_code& reason) override {
    if (!refuses_removal) return machine_.remove(path, reason);
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
  runtime::Host& machine_;
};

}  // namespace suite_host
