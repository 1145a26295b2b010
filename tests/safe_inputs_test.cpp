// Files that a run reads: never written, cut or removed, read whole, and locked against another run.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "runtime/cp1252.h"
#include "runtime/host.h"
#include "runtime/read.h"
#include "runtime/stop.h"
#include "runtime/units.h"
#include "runtime/write.h"
#include "tests/child.h"
#include "tests/forwarding_host.h"
#include "tests/test_files.h"
#include "tests/test_host.h"

namespace {

namespace fs = std::filesystem;
using namespace runtime::literals;
using runtime::CloseStatus;
using runtime::OpenStatus;
using test_files::read_bytes;
using test_files::write_bytes;
using Records = std::vector<std::string>;

constexpr int test_unit = 100;
constexpr std::string_view network = "the network\n";

std::string fault_line(std::string_view operation, std::string_view path, std::string_view reason) {
  std::string line = "E/A-Fehler beim ";
  return line.append(operation).append(" von \"").append(path).append("\": ").append(reason).append("\n");
}

Records rest_of(int unit) {
  Records records;
  std::string_view record;
  for (runtime::LineReader reader(unit, std::string_view::npos); reader.next(record);) {
    records.emplace_back(record);
  }
  return records;
}

void read_and_close(const std::string& path) {
  runtime::open(test_unit, path, OpenStatus::input);
  rest_of(test_unit);
  runtime::close(test_unit);
}

#define EXPECT_STOP(work, line) EXPECT_EXIT(work, testing::ExitedWithCode(0), testing::Eq(line))

// A folder with "v.sys", under other names as well.
class SafeInputs : public testing::Test {
 protected:
  SafeInputs() {
    write_bytes("v.sys", network);
    fs::create_symlink("v.sys", "symbolic");
    fs::create_hard_link("v.sys", "hard");
  }
  ~SafeInputs() override { runtime::close_all(); }

  static void expect_untouched() {
    for (const char* name : {"v.sys", "symbolic", "hard"}) {
      ASSERT_TRUE(fs::exists(name)) << name;
      EXPECT_EQ(read_bytes(name), network) << name;
    }
    EXPECT_TRUE(fs::is_symlink("symbolic"));
    EXPECT_EQ(fs::hard_link_count("v.sys"), 2U);
  }

 private:
  test_files::WorkingFolder folder_;
};

using SafeInputsDeathTest = SafeInputs;

void write_to(const std::string& path, OpenStatus status) {
  runtime::open(101, path, status);
  runtime::write<"(a)">(101, "a result");
  runtime::close(101);
}

void expect_writing_refused(const std::string& name, OpenStatus status) {
  EXPECT_STOP(write_to(name, status), fault_line("Schreiben", name, "Operation not permitted"));
}

TEST_F(SafeInputsDeathTest, AreNotWrittenUnderAnyName) {
  runtime::protect("v.sys");
  for (const std::string name : {"v.sys", "./v.sys", "symbolic", "hard"}) {
    SCOPED_TRACE(name);
    expect_writing_refused(name, OpenStatus::unknown);
    expect_writing_refused(name, OpenStatus::old);
    expect_untouched();
  }
}

TEST_F(SafeInputsDeathTest, AreNotCutWithoutAWrite) {
  runtime::protect("v.sys");
  EXPECT_STOP(
      {
        runtime::open(101, "hard", OpenStatus::unknown);
        runtime::end_file(101);
      },
      fault_line("Schreiben", "hard", "Operation not permitted"));
  expect_untouched();
}

TEST_F(SafeInputsDeathTest, AreNotReplacedByWholeFiles) {
  runtime::protect("v.sys");
  // What has other names is written where it stands, and so refused by the first write.
  for (const std::string name : {"v.sys", "./v.sys", "symbolic", "hard"}) {
    expect_writing_refused(name, OpenStatus::whole);
    expect_untouched();
  }
  fs::remove("hard");
  EXPECT_STOP(write_to("v.sys", OpenStatus::whole),
              fault_line("Öffnen"_w1252, "v.sys", "Operation not permitted"));
  EXPECT_EQ(read_bytes("v.sys"), network);
}

TEST_F(SafeInputs, AreNotRemoved) {
  runtime::protect("v.sys");
  for (const char* name : {"v.sys", "symbolic", "hard"}) {
    ASSERT_TRUE(runtime::try_open(101, name, OpenStatus::unknown));
    std::error_code reason;
    EXPECT_FALSE(runtime::try_close(101, CloseStatus::remove, reason));
    EXPECT_EQ(reason, std::errc::operation_not_permitted);
    EXPECT_FALSE(runtime::is_connected(101));
    expect_untouched();
  }
}

void expect_safe_once_read(const char* name) {
  EXPECT_STOP(
      {
        read_and_close(name);
        write_to("v.sys", OpenStatus::unknown);
      },
      fault_line("Schreiben", "v.sys", "Operation not permitted"));
}

TEST_F(SafeInputsDeathTest, AFileThatWasReadIsSafe) {
  for (const char* name : {"v.sys", "symbolic", "hard"}) {
    expect_safe_once_read(name);
    expect_untouched();
  }
}

TEST_F(SafeInputsDeathTest, AFileThatIsReadIsHeld) {
  runtime::open(test_unit, "v.sys", OpenStatus::input);
  EXPECT_STOP(write_to("hard", OpenStatus::unknown),
              fault_line("Öffnen"_w1252, "hard", "Device or resource busy"));
  EXPECT_STOP(runtime::write<"(a)">(test_unit, "x"),
              fault_line("Schreiben", "v.sys", "Operation not permitted"));
  expect_untouched();
}

// The name of the result, cut to its width, may be that of an input.
TEST_F(SafeInputsDeathTest, ACutNameIsKnown) {
  const std::string name(200, 'v');
  write_bytes(name, network);
  runtime::protect(name);
  EXPECT_STOP(write_to(std::string(200, 'v'), OpenStatus::whole),
              fault_line("Öffnen"_w1252, name, "Operation not permitted"));
  EXPECT_EQ(read_bytes(name), network);
}

TEST_F(SafeInputsDeathTest, BackslashesLeadToTheSameFile) {
  fs::create_directory("data");
  write_bytes("data/v.sys", network);
  runtime::protect("data\\v.sys");
  EXPECT_STOP(write_to("data\\v.sys", OpenStatus::unknown),
              fault_line("Schreiben", "data/v.sys", "Operation not permitted"));
  EXPECT_STOP(write_to("data/v.sys", OpenStatus::whole),
              fault_line("Öffnen"_w1252, "data/v.sys", "Operation not permitted"));
  EXPECT_EQ(read_bytes("data/v.sys"), network);
}

TEST_F(SafeInputs, OtherFilesAreWritten) {
  runtime::protect("v.sys");
  runtime::protect("missing");
  runtime::protect("/dev/null");
  for (const char* name : {"missing", "other", "/dev/null"}) write_to(name, OpenStatus::unknown);
  EXPECT_EQ(read_bytes("missing"), "a result\n");
  EXPECT_EQ(read_bytes("other"), "a result\n");
  expect_untouched();
}

TEST_F(SafeInputs, AreFreeAgainWhenAllIsClosed) {
  runtime::protect("v.sys");
  runtime::close_all();
  write_to("hard", OpenStatus::unknown);
  EXPECT_EQ(read_bytes("v.sys"), "a result\n");
}

// Opening an input.

class OpenedForReading final : public ForwardingHost {
 public:
  std::vector<runtime::Access> accesses;
  int open(const std::string& path, runtime::Access access, std::error_code& reason) override {
    accesses.push_back(access);
    return ForwardingHost::open(path, access, reason);
  }
};

TEST_F(SafeInputs, AreOpenedForReadingOnly) {
  OpenedForReading host;
  read_and_close("v.sys");
  runtime::lock("v.sys");
  EXPECT_EQ(host.accesses, (std::vector{runtime::Access::read, runtime::Access::read}));
}

TEST_F(SafeInputs, MustBeFiles) {
  fs::create_directory("folder");
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  fs::create_symlink("/dev/zero", "zeros");
  for (const char* name : {"missing", "folder", "pipe", "zeros", "/dev/zero"}) {
    EXPECT_FALSE(runtime::try_open(test_unit, name, OpenStatus::input)) << name;
  }
  EXPECT_FALSE(fs::exists("missing"));
}

// Something else is put there between the look and the opening.
class Exchanged final : public ForwardingHost {
 public:
  int open(const std::string& /*path*/, runtime::Access access, std::error_code& reason) override {
    return ForwardingHost::open("/dev/zero", access, reason);
  }
};

TEST_F(SafeInputs, AreLookedAtOnceMoreWhenTheyAreOpen) {
  Exchanged host;
  std::error_code reason;
  EXPECT_FALSE(runtime::try_open(test_unit, "v.sys", OpenStatus::input, reason));
  EXPECT_EQ(reason, std::errc::invalid_argument);
}

// Read whole.

// Does something before the n-th reading from a file.
class BeforeReading final : public ForwardingHost {
 public:
  BeforeReading(int nth, std::function<void()> work) : left_(nth), work_(std::move(work)) {}
  std::ptrdiff_t read(int handle, char* bytes, std::size_t count, std::error_code& reason) override {
    if (--left_ == 0) work_();
    return ForwardingHost::read(handle, bytes, count, reason);
  }

 private:
  int left_;
  std::function<void()> work_;
};

std::string numbered_records(int count) {
  std::string bytes;
  for (int i = 0; i < count; ++i) bytes += "record " + std::to_string(i) + "\n";
  return bytes;
}

void expect_reading_told(const std::string& name) {
  EXPECT_STOP(read_and_close(name), fault_line("Lesen", name, "Input/output error"));
}

TEST_F(SafeInputsDeathTest, AFileThatIsCutWhileItIsReadIsTold) {
  constexpr int many = 100'000;
  const std::string bytes = numbered_records(many);
  for (const std::size_t kept : {std::size_t{0}, bytes.size() / 2, bytes.size() - 1}) {
    SCOPED_TRACE(kept);
    write_bytes("large", bytes);
    const BeforeReading host(2, [&] { fs::resize_file("large", kept); });
    expect_reading_told("large");
  }
}

// A share that drops gives the end of the file instead of its bytes.
TEST_F(SafeInputsDeathTest, AFileThatEndsBeforeItsSizeIsTold) {
  for (const int nth : {1, 2, 3}) {
    TestHost host;
    host.limit_transfers(5);
    host.shorten(HostCall::read, nth, 0);
    expect_reading_told("v.sys");
  }
}

TEST_F(SafeInputs, AFileThatGrowsIsReadToItsEnd) {
  const std::string bytes = numbered_records(1000);
  write_bytes("growing", bytes);
  const BeforeReading host(2, [&] { write_bytes("growing", bytes + numbered_records(100'000)); });
  runtime::open(test_unit, "growing", OpenStatus::input);
  const Records records = rest_of(test_unit);
  ASSERT_EQ(records.size(), 101'000U);
  EXPECT_EQ(records.back(), "record 99999");
}

TEST_F(SafeInputs, ShortReadsAreCarriedOn) {
  TestHost host;
  host.limit_transfers(5);
  runtime::open(test_unit, "v.sys", OpenStatus::input);
  EXPECT_EQ(rest_of(test_unit), Records{"the network"});
}

// The lock.

// Another run, which holds the lock while this lives.
class OtherRun {
 public:
  explicit OtherRun(const char* path) : handle_(open(path, O_RDONLY | O_CLOEXEC)) {
    EXPECT_EQ(flock(handle_, LOCK_EX | LOCK_NB), 0);
  }
  OtherRun(const OtherRun&) = delete;
  OtherRun& operator=(const OtherRun&) = delete;
  OtherRun(OtherRun&&) = delete;
  OtherRun& operator=(OtherRun&&) = delete;
  ~OtherRun() { close(handle_); }

 private:
  int handle_;
};

bool is_locked(const char* path) {
  const int handle = open(path, O_RDONLY | O_CLOEXEC);
  const bool locked = flock(handle, LOCK_EX | LOCK_NB) != 0;
  close(handle);
  return locked;
}

TEST_F(SafeInputsDeathTest, TheSecondRunEnds) {
  const std::string line = "Resource temporarily unavailable";
  for (const char* name : {"v.sys", "symbolic", "hard"}) {
    const OtherRun other(name);
    EXPECT_STOP(runtime::lock("v.sys"), fault_line("Sperren", "v.sys", line));
    EXPECT_STOP(runtime::lock("hard"), fault_line("Sperren", "hard", line));
  }
  EXPECT_STOP(
      {
        runtime::lock("v.sys");
        runtime::stop();
      },
      "");
}

TEST_F(SafeInputs, TheLockLastsUntilAllIsClosed) {
  runtime::lock("v.sys");
  EXPECT_TRUE(is_locked("hard"));
  read_and_close("v.sys");
  EXPECT_TRUE(is_locked("v.sys"));
  runtime::close_all();
  EXPECT_FALSE(is_locked("v.sys"));
}

class ClosedHandles final : public ForwardingHost {
 public:
  std::vector<int> handles;
  bool close(int handle, std::error_code& reason) override {
    handles.push_back(handle);
    return ForwardingHost::close(handle, reason);
  }
};

// Its handle could be another file's by then.
TEST_F(SafeInputs, TheLockIsFreedOnce) {
  ClosedHandles host;
  runtime::lock("v.sys");
  runtime::close_all();
  runtime::close_all();
  EXPECT_EQ(host.handles.size(), 1U);
}

TEST_F(SafeInputs, AnEarlyEndFreesTheLock) {
  for (const int signal : {0, SIGKILL}) {
    child::run([&] {
      runtime::lock("v.sys");
      if (signal != 0) raise(signal);
      runtime::stop();
    });
    EXPECT_FALSE(is_locked("v.sys"));
  }
}

TEST_F(SafeInputs, AnotherLockFreesTheFirst) {
  write_bytes("w.sys", network);
  runtime::lock("v.sys");
  runtime::lock("w.sys");
  EXPECT_FALSE(is_locked("v.sys"));
  EXPECT_TRUE(is_locked("w.sys"));
}

TEST_F(SafeInputs, WhatCannotBeLockedIsFree) {
  fs::create_directory("folder");
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  for (const char* name : {"missing", "folder", "pipe", "/dev/null"}) runtime::lock(name);
  TestHost host;
  host.fail(HostCall::open, 1, std::errc::permission_denied);
  runtime::lock("v.sys");
  EXPECT_FALSE(is_locked("v.sys"));
}

}  // namespace
