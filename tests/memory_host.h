#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

#include "tests/forwarding_host.h"

/// Keeps files in memory, in one folder, so that thousands of small runs cost no disk. Standard output and
/// error are kept, too.
class MemoryHost final : public ForwardingHost {
 public:
  void put(const std::string& path, std::string_view bytes) { file_at(path).bytes = bytes; }
  /// The bytes of a file; none when there is no such file.
  [[nodiscard]] std::string bytes(const std::string& path) const {
    const auto file = files_.find(path);
    return file == files_.end() ? std::string() : file->second.bytes;
  }
  [[nodiscard]] const std::string& output() const { return output_; }
  void forget_output() { output_.clear(); }

  [[nodiscard]] char separator() const override { return '/'; }
  [[nodiscard]] const char* line_end() const override { return "\n"; }
  runtime::FileFacts look(const std::string& path, std::error_code& /*reason*/) override {
    const auto file = files_.find(path);
    return file == files_.end() ? runtime::FileFacts{} : facts_of(file->second);
  }
  int open(const std::string& path, runtime::Access access, std::error_code& reason) override {
    if (access != runtime::Access::create && !files_.contains(path)) {
      reason = std::make_error_code(std::errc::no_such_file_or_directory);
      return -1;
    }
    file_at(path);
    const int handle = ++last_handle_;
    handles_[handle] = {.path = path};
    return handle;
  }
  bool facts(int handle, runtime::FileFacts& facts, std::error_code& /*reason*/) override {
    facts = facts_of(file_of(handle));
    return true;
  }
  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& /*reason*/) override {
    std::size_t& place = handles_.at(handle).place;
    const std::string& all = file_of(handle).bytes;
    const std::size_t got = std::min(count, all.size() - std::min(place, all.size()));
    std::copy_n(all.data() + place, got, bytes);
    place += got;
    return static_cast<std::ptrdiff_t>(got);
  }
  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count,
                       std::error_code& /*reason*/) override {
    if (handle <= runtime::standard_error_handle) {
      output_.append(bytes, count);
    } else {
      std::size_t& place = handles_.at(handle).place;
      std::string& all = file_of(handle).bytes;
      all.resize(std::max(all.size(), place + count));
      std::copy_n(bytes, count, all.data() + place);
      place += count;
    }
    return static_cast<std::ptrdiff_t>(count);
  }
  bool seek(int handle, std::uint64_t place, std::error_code& /*reason*/) override {
    handles_.at(handle).place = static_cast<std::size_t>(place);
    return true;
  }
  bool truncate(int handle, std::uint64_t size, std::error_code& /*reason*/) override {
    file_of(handle).bytes.resize(static_cast<std::size_t>(size));
    return true;
  }
  bool close(int handle, std::error_code& /*reason*/) override { return handles_.erase(handle) == 1; }
  bool remove(const std::string& path, std::error_code& /*reason*/) override {
    return files_.erase(path) == 1;
  }
  runtime::Successor create_successor(const std::string& path, std::error_code& reason) override {
    const std::string own = path + ".neu";
    return {.handle = open(own, runtime::Access::create, reason), .path = own};
  }
  bool succeed(const runtime::Successor& successor, const std::string& path,
               std::error_code& /*reason*/) override {
    files_[path] = files_[successor.path];
    discard(successor);
    return true;
  }
  void discard(const runtime::Successor& successor) override {
    handles_.erase(successor.handle);
    files_.erase(successor.path);
  }
  bool lock(int /*handle*/, std::error_code& /*reason*/) override { return true; }
  void run_command(const std::string& /*command_line*/) override {}
  std::int64_t clock_ticks() override { return 0; }
  std::int64_t ticks_per_second() override { return 1; }

 private:
  struct File {
    std::string bytes{};
    std::uint64_t number = 0;
  };
  struct Handle {
    std::string path{};
    std::size_t place = 0;
  };

  static runtime::FileFacts facts_of(const File& file) {
    return {.kind = runtime::FileKind::file, .size = file.bytes.size(), .volume = 1, .number = file.number};
  }
  // The file under a path; a new one is made.
  File& file_at(const std::string& path) {
    File& file = files_[path];
    if (file.number == 0) file.number = ++last_number_;
    return file;
  }
  File& file_of(int handle) { return files_[handles_.at(handle).path]; }

  std::map<std::string, File> files_;
  std::map<int, Handle> handles_;
  std::uint64_t last_number_ = 0;
  int last_handle_ = 100;
  std::string output_;
};
