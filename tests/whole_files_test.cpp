// Files that are written as new ones and take the place of the old ones when they are complete.

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <system_error>

#include "runtime/cp1252.h"
#include "runtime/host.h"
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
using runtime::OpenStatus;
using test_files::read_bytes;
using test_files::write_bytes;
using Names = std::set<std::string>;

constexpr int test_unit = 100;
constexpr std::string_view old_text = "of an earlier run\n";
constexpr std::string_view new_text = "new\n";

std::string fault_line(std::string_view operation, const std::string& path, std::string_view reason) {
  std::string line = "E/A-Fehler beim ";
  return line.append(operation).append(" von \"").append(path).append("\": ").append(reason).append("\n");
}

class WholeFiles : public testing::Test {
 protected:
  ~WholeFiles() override { runtime::close_all(); }

  [[nodiscard]] const fs::path& folder() const { return folder_.path(); }
  [[nodiscard]] std::string file(std::string_view name = "file") const { return folder_.file(name); }
  [[nodiscard]] Names names() const {
    Names names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder())) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }
  void put_old() const { write_bytes(file(), old_text); }

  static void begin(const std::string& path) {
    runtime::open(test_unit, path, OpenStatus::whole);
    runtime::write<"(a)">(test_unit, "new");
    runtime::flush(test_unit);
  }
  static void write_whole(const std::string& path) {
    begin(path);
    runtime::complete(test_unit);
  }
  // The same number is the same file: written where it stands.
  static std::uint64_t number_of(const std::string& path) {
    std::error_code reason;
    return runtime::host().look(path, reason).number;
  }
  [[nodiscard]] bool has_files_without_names() const {
    const int handle = open(folder().c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (handle >= 0) close(handle);
    return handle >= 0;
  }

 private:
  test_files::TemporaryFolder folder_;
};

using WholeFilesDeathTest = WholeFiles;

#define EXPECT_STOP(work, line) EXPECT_EXIT(work, testing::ExitedWithCode(0), testing::Eq(line))

TEST_F(WholeFiles, TheOldFileStandsUntilTheNewOneIsComplete) {
  put_old();
  begin(file());
  EXPECT_EQ(read_bytes(file()), old_text);
  runtime::complete(test_unit);
  EXPECT_EQ(read_bytes(file()), new_text);
  EXPECT_EQ(names(), Names{"file"});
}

TEST_F(WholeFiles, NothingStandsThereBeforeTheFirstOneIsComplete) {
  begin(file());
  EXPECT_FALSE(fs::exists(file()));
  runtime::complete(test_unit);
  EXPECT_EQ(read_bytes(file()), new_text);
  EXPECT_EQ(names(), Names{"file"});
}

TEST_F(WholeFiles, ACompleteFileStaysConnected) {
  write_whole(file());
  EXPECT_EQ(runtime::unit_of(file()), test_unit);
  EXPECT_FALSE(runtime::try_open(101, file(), OpenStatus::unknown));
  EXPECT_FALSE(runtime::try_open(101, file(), OpenStatus::whole));
  runtime::close_all();
  EXPECT_EQ(read_bytes(file()), new_text);
}

TEST_F(WholeFiles, ClosingCompletes) {
  put_old();
  begin(file());
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file()), new_text);
}

TEST_F(WholeFiles, AnIncompleteFileIsHeldByItsUnit) {
  begin(file());
  for (const OpenStatus status : {OpenStatus::whole, OpenStatus::unknown, OpenStatus::fresh}) {
    EXPECT_FALSE(runtime::try_open(101, file(), status));
  }
  runtime::complete(test_unit);
  EXPECT_EQ(read_bytes(file()), new_text);
}

// Whatever step goes wrong, the old file stays, nothing else stands beside it, and the run says so.

struct Step {
  const char* name;
  HostCall call;
  int nth;
  const char* operation;
};

class WholeFilesStepDeathTest : public WholeFiles, public testing::WithParamInterface<Step> {
 protected:
  void expect_old_file(const Names& wanted) {
    const Step& step = GetParam();
    TestHost host;
    const auto write = [&] {
      host.fail(step.call, step.nth, std::errc::io_error);
      write_whole(file());
    };
    const std::string operation(step.operation);
    EXPECT_STOP(write(), fault_line(operation, file(), "Input/output error"));
    EXPECT_EQ(names(), wanted);
  }
};

TEST_P(WholeFilesStepDeathTest, LeavesTheOldFile) {
  put_old();
  expect_old_file({"file"});
  EXPECT_EQ(read_bytes(file()), old_text);
}

TEST_P(WholeFilesStepDeathTest, LeavesNothingWhereNothingWas) {
  expect_old_file({});
}

constexpr const char* opening =
    "\xD6"
    "ffnen";

INSTANTIATE_TEST_SUITE_P(
    Steps, WholeFilesStepDeathTest,
    testing::Values(Step{"look", HostCall::look, 1,
                         "Pr\xFC"
                         "fen"},
                    Step{"create_successor", HostCall::create_successor, 1, opening},
                    Step{"facts_of_the_new_one", HostCall::facts, 1, opening},
                    Step{"facts_before_the_first_write", HostCall::facts, 2, "Schreiben"},
                    Step{"seek", HostCall::seek, 1, "Schreiben"},
                    Step{"write", HostCall::write, 1, "Schreiben"},
                    Step{"succeed", HostCall::succeed, 1, "Schreiben"}),
    [](const testing::TestParamInfo<Step>& step) { return std::string(step.param.name); });

TEST_F(WholeFilesDeathTest, AnOldFileThatCannotBeTriedStays) {
  put_old();
  TestHost host;
  host.fail(HostCall::open, 1, std::errc::too_many_files_open);
  EXPECT_STOP(write_whole(file()), fault_line(opening, file(), "Too many open files"));
  EXPECT_EQ(read_bytes(file()), old_text);
  EXPECT_EQ(names(), Names{"file"});
}

TEST_F(WholeFilesDeathTest, AFullDiskInTheMiddleOfALargeFileLeavesTheOldOne) {
  put_old();
  TestHost host;
  const auto write = [&] {
    runtime::open(test_unit, file(), OpenStatus::whole);
    host.fail(HostCall::write, 2, std::errc::no_space_on_device, true);
    for (int i = 0; i < 100'000; ++i) runtime::write<"(a)">(test_unit, "a record of a large file");
    runtime::complete(test_unit);
  };
  EXPECT_STOP(write(), fault_line("Schreiben", file(), "No space left on device"));
  EXPECT_EQ(read_bytes(file()), old_text);
  EXPECT_EQ(names(), Names{"file"});
}

// A full disk. Says when it is to close another handle than the one that was opened.
class FullDisk final : public ForwardingHost {
 public:
  int open(const std::string& path, runtime::Access access, std::error_code& reason) override {
    return opened_ = ForwardingHost::open(path, access, reason);
  }
  std::ptrdiff_t write(int handle, const char* bytes, std::size_t count, std::error_code& reason) override {
    if (handle != opened_) return ForwardingHost::write(handle, bytes, count, reason);
    reason = std::make_error_code(std::errc::no_space_on_device);
    return -1;
  }
  bool close(int handle, std::error_code& reason) override {
    if (handle != opened_) std::fputs("another handle\n", stderr);
    return ForwardingHost::close(handle, reason);
  }

 private:
  int opened_ = -1;
};

TEST_F(WholeFilesDeathTest, WhatIsGivenUpIsClosedOnce) {
  const auto write = [&] {
    const FullDisk host;
    runtime::open(test_unit, file(), OpenStatus::fresh);
    runtime::write<"(a)">(test_unit, "a");
    runtime::complete(test_unit);
  };
  EXPECT_STOP(write(), fault_line("Schreiben", file(), "No space left on device"));
}

TEST_F(WholeFilesDeathTest, AFolderThatComesInBetweenIsNotReplaced) {
  const auto write = [&] {
    begin(file());
    fs::create_directory(file());
    runtime::complete(test_unit);
  };
  EXPECT_STOP(write(), fault_line("Schreiben", file(), "Is a directory"));
  EXPECT_EQ(names(), Names{"file"});
  EXPECT_TRUE(fs::is_directory(file()));
}

TEST_F(WholeFilesDeathTest, AFolderThatGoesAwayIsTold) {
  fs::create_directory(file("folder"));
  const auto write = [&] {
    begin(file("folder/file"));
    fs::remove_all(file("folder"));
    runtime::complete(test_unit);
  };
  EXPECT_STOP(write(), fault_line("Schreiben", file("folder/file"), "No such file or directory"));
  EXPECT_EQ(names(), Names{});
}

TEST_F(WholeFilesDeathTest, AnEarlyEndGivesTheNewFileUp) {
  put_old();
  const auto write = [&] {
    begin(file());
    runtime::stop();
  };
  EXPECT_STOP(write(), "");
  EXPECT_EQ(read_bytes(file()), old_text);
  EXPECT_EQ(names(), Names{"file"});
}

TEST_F(WholeFiles, AKillLeavesTheOldFile) {
  put_old();
  const child::Outcome outcome = child::run([&] {
    begin(file());
    raise(SIGKILL);
  });
  EXPECT_EQ(outcome.ending, "signal 9");
  EXPECT_EQ(read_bytes(file()), old_text);
  if (!has_files_without_names()) GTEST_SKIP() << "here every file needs a name";
  EXPECT_EQ(names(), Names{"file"});
}

// Rights.

void set_mode(const std::string& path, mode_t mode) {
  ASSERT_EQ(chmod(path.c_str(), mode), 0);
}

struct stat status_of(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status;
}

TEST_F(WholeFiles, TheRightsOfTheOldFileAreKept) {
  for (const mode_t mode : {mode_t{0600}, mode_t{0640}, mode_t{0666}, mode_t{0777}}) {
    put_old();
    set_mode(file(), mode);
    write_whole(file());
    runtime::close_all();
    EXPECT_EQ(status_of(file()).st_mode & 07777U, mode);
  }
}

TEST_F(WholeFiles, ANewFileHasTheUsualRights) {
  const mode_t before = umask(027);
  write_whole(file());
  umask(before);
  EXPECT_EQ(status_of(file()).st_mode & 07777U, 0640U);
}

constexpr uid_t somebody = 1234;
constexpr gid_t some_group = 4321;

TEST_F(WholeFiles, TheOwnerOfTheOldFileIsKept) {
  put_old();
  if (chown(file().c_str(), somebody, some_group) != 0) GTEST_SKIP() << "only the superuser gives files away";
  write_whole(file());
  EXPECT_EQ(read_bytes(file()), new_text);
  EXPECT_EQ(status_of(file()).st_uid, somebody);
  EXPECT_EQ(status_of(file()).st_gid, some_group);
}

// Writes the whole file as a user who may not do everything.
child::Outcome write_as_ordinary_user(const std::string& path) {
  return child::run([&] {
    if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(some_group) != 0 || setuid(somebody) != 0)) {
      _exit(125);
    }
    runtime::open(test_unit, path, OpenStatus::whole);
    runtime::write<"(a)">(test_unit, "new");
    runtime::complete(test_unit);
    runtime::stop();
  });
}

void expect_quiet_end(const child::Outcome& outcome) {
  EXPECT_EQ(outcome.ending, "exit status 0");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(WholeFiles, AFileWhoseOwnerCannotBeKeptIsWrittenWhereItStands) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser has files of several users";
  put_old();
  set_mode(file(), 0666);
  set_mode(folder(), 0777);
  const std::uint64_t number = number_of(file());
  expect_quiet_end(write_as_ordinary_user(file()));
  EXPECT_EQ(read_bytes(file()), new_text);
  EXPECT_EQ(number_of(file()), number);
  EXPECT_EQ(status_of(file()).st_uid, 0U);
  EXPECT_EQ(names(), Names{"file"});
}

class ReadOnlyFolder : public WholeFiles {
 protected:
  void close_folder() const { set_mode(folder(), 0555); }
};

TEST_F(ReadOnlyFolder, TheOldFileIsWrittenWhereItStands) {
  put_old();
  set_mode(file(), 0666);
  const std::uint64_t number = number_of(file());
  close_folder();
  expect_quiet_end(write_as_ordinary_user(file()));
  EXPECT_EQ(read_bytes(file()), new_text);
  EXPECT_EQ(number_of(file()), number);
}

TEST_F(ReadOnlyFolder, ANewFileIsRefused) {
  close_folder();
  EXPECT_EQ(write_as_ordinary_user(file()).err, fault_line(opening, file(), "Permission denied"));
  EXPECT_EQ(names(), Names{});
}

TEST_F(WholeFiles, AnOldFileThatMayOnlyBeReadIsNotReplaced) {
  put_old();
  set_mode(file(), 0444);
  set_mode(folder(), 0777);
  EXPECT_EQ(write_as_ordinary_user(file()).err, fault_line(opening, file(), "Permission denied"));
  EXPECT_EQ(read_bytes(file()), old_text);
  EXPECT_EQ(names(), Names{"file"});
}

// What stands there is more than a file of its own.

TEST_F(WholeFiles, ALinkStaysALink) {
  put_old();
  fs::create_symlink("file", file("link"));
  write_whole(file("link"));
  EXPECT_TRUE(fs::is_symlink(file("link")));
  EXPECT_EQ(read_bytes(file()), new_text);
  EXPECT_EQ(names(), (Names{"file", "link"}));
}

TEST_F(WholeFiles, WhereALinkLeadsNowhereTheFileIsCreated) {
  fs::create_symlink("target", file("link"));
  write_whole(file("link"));
  EXPECT_TRUE(fs::is_symlink(file("link")));
  EXPECT_EQ(read_bytes(file("target")), new_text);
  EXPECT_EQ(names(), (Names{"link", "target"}));
}

TEST_F(WholeFiles, AFileWithTwoNamesStaysOneFile) {
  put_old();
  fs::create_hard_link(file(), file("other"));
  write_whole(file());
  EXPECT_EQ(read_bytes(file("other")), new_text);
  EXPECT_EQ(number_of(file("other")), number_of(file()));
  EXPECT_EQ(names(), (Names{"file", "other"}));
}

TEST_F(WholeFiles, ADeviceIsWrittenTo) {
  write_whole("/dev/null");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(WholeFiles, APipeGetsTheRecords) {
  ASSERT_EQ(mkfifo(file().c_str(), 0600), 0);
  const int reader = open(file().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  write_whole(file());
  std::array<char, 64> bytes{};
  const ssize_t got = read(reader, bytes.data(), bytes.size());
  ASSERT_GT(got, 0);
  EXPECT_EQ(std::string_view(bytes.data(), static_cast<std::size_t>(got)), new_text);
  close(reader);
  EXPECT_TRUE(fs::is_fifo(file()));
}

TEST_F(WholeFiles, AFolderIsRefused) {
  fs::create_directory(file());
  EXPECT_FALSE(runtime::try_open(test_unit, file(), OpenStatus::whole));
  EXPECT_FALSE(runtime::try_open(test_unit, file("nowhere/file"), OpenStatus::whole));
  EXPECT_EQ(names(), Names{"file"});
}

// Names.

TEST_F(WholeFiles, ANameTooLongForASecondFileIsWrittenWhereItStands) {
  const std::string name(255, 'x');
  write_whole(file(name));
  runtime::close_all();
  EXPECT_EQ(read_bytes(file(name)), new_text);
  write_bytes(file(name), old_text);
  const std::uint64_t number = number_of(file(name));
  write_whole(file(name));
  EXPECT_EQ(read_bytes(file(name)), new_text);
  EXPECT_EQ(number_of(file(name)), number);
  EXPECT_EQ(names(), Names{name});
}

// A run of the same process number on another machine, or one that was killed.
TEST_F(WholeFiles, TheNewFileOfAnotherRunIsLeftAlone) {
  const std::string number = std::to_string(getpid());
  const Names others = {"file." + number + ".neu", "file." + number + "-1.neu"};
  for (const std::string& other : others) write_bytes(file(other), "of another run\n");
  put_old();
  write_whole(file());
  EXPECT_EQ(read_bytes(file()), new_text);
  Names wanted = others;
  wanted.insert("file");
  EXPECT_EQ(names(), wanted);
  for (const std::string& other : others) EXPECT_EQ(read_bytes(file(other)), "of another run\n");
}

// Several processes.

class Signal {
 public:
  Signal() {
    if (pipe(ends_.data()) != 0) throw std::system_error(errno, std::generic_category());
  }
  void give() const { EXPECT_EQ(::write(ends_[1], "x", 1), 1); }
  void wait() const {
    char byte = 0;
    if (::read(ends_[0], &byte, 1) != 1) _exit(125);
  }

 private:
  std::array<int, 2> ends_{};
};

TEST_F(WholeFiles, TwoProcessesEachLeaveAWholeFile) {
  put_old();
  const Signal begun;
  const Signal go_on;
  // Not from a thread: a sanitizer would look for it in the child.
  const pid_t other = fork();
  ASSERT_GE(other, 0);
  if (other == 0) {
    runtime::open(test_unit, file(), OpenStatus::whole);
    for (int i = 0; i < 30'000; ++i) runtime::write<"(a)">(test_unit, "of the other");
    begun.give();
    go_on.wait();
    runtime::complete(test_unit);
    runtime::stop();
  }
  begun.wait();
  write_whole(file());
  EXPECT_EQ(read_bytes(file()), new_text);
  go_on.give();
  int status = -1;
  EXPECT_EQ(waitpid(other, &status, 0), other);
  EXPECT_EQ(status, 0);
  std::string wanted;
  for (int i = 0; i < 30'000; ++i) wanted += "of the other\n";
  EXPECT_EQ(read_bytes(file()), wanted);
  EXPECT_EQ(names(), Names{"file"});
}

// The system gives the number of a file that is gone to the next new one.
class ReusedNumbers final : public ForwardingHost {
 public:
  std::map<std::string, std::uint64_t> numbers;
  std::uint64_t number_of_opened = 0;

  runtime::FileFacts look(const std::string& path, std::error_code& reason) override {
    runtime::FileFacts facts = ForwardingHost::look(path, reason);
    if (numbers.contains(path)) facts.number = numbers[path];
    return facts;
  }
  bool facts(int handle, runtime::FileFacts& facts, std::error_code& reason) override {
    const bool known = ForwardingHost::facts(handle, facts, reason);
    if (number_of_opened != 0) facts.number = number_of_opened;
    return known;
  }
};

TEST_F(WholeFiles, TheNumberOfAFileThatIsGoneIsThatOfANewOne) {
  ReusedNumbers host;
  host.number_of_opened = 7;
  write_whole(file("listing"));
  runtime::protect(file("listing"));
  // Another run has put its own listing there; the number is free again.
  host.numbers[file("listing")] = 8;
  host.numbers[file("result")] = 7;
  for (const OpenStatus status : {OpenStatus::whole, OpenStatus::unknown}) {
    std::error_code reason;
    EXPECT_TRUE(runtime::try_open(101, file("result"), status, reason)) << reason.message();
    runtime::write<"(a)">(101, "new");
    runtime::close(101);
    EXPECT_EQ(read_bytes(file("result")), new_text);
  }
}

// Two sets of tables in one folder: what is to be complete is complete, whatever the other unit does.
TEST_F(WholeFiles, TwoFilesAtOnce) {
  runtime::open(101, file("second"), OpenStatus::whole);
  write_whole(file());
  runtime::write<"(a)">(101, "second");
  EXPECT_EQ(names(), Names{"file"});
  runtime::complete(101);
  EXPECT_EQ(read_bytes(file("second")), "second\n");
}

}  // namespace
