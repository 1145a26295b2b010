#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>

#include "runtime/arguments.h"
#include "runtime/array.h"
#include "runtime/command.h"
#include "runtime/cp1252.h"
#include "runtime/host.h"
#include "runtime/read.h"
#include "runtime/stop.h"
#include "runtime/units.h"
#include "runtime/write.h"
#include "tests/test_files.h"
#include "tests/test_host.h"

namespace {

using namespace runtime::literals;
using runtime::OpenStatus;
using test_files::read_bytes;

class StopDeathTest : public testing::Test {
 protected:
  ~StopDeathTest() override { runtime::close_all(); }
  [[nodiscard]] std::string file(std::string_view name) const { return folder_.file(name); }
  void write_two_files() const {
    runtime::open(100, file("one"), OpenStatus::unknown);
    runtime::write<"(a)">(100, "first");
    runtime::open(101, file("two"), OpenStatus::unknown);
    runtime::write_text(101, "second");
  }
  void expect_two_files() const {
    EXPECT_EQ(read_bytes(file("one")), "first\n");
    EXPECT_EQ(read_bytes(file("two")), "second\n");
  }

 private:
  test_files::TemporaryFolder folder_;
};

#define EXPECT_STOP(work, line) EXPECT_EXIT(work, testing::ExitedWithCode(0), testing::Eq(line))

TEST_F(StopDeathTest, WithoutATextWritesNothing) {
  EXPECT_STOP(
      {
        write_two_files();
        runtime::stop();
      },
      "");
  expect_two_files();
}

TEST_F(StopDeathTest, WithATextWritesOneLine) {
  EXPECT_STOP(
      {
        write_two_files();
        runtime::stop("SCRENIX rgb not implemented");
      },
      "STOP SCRENIX rgb not implemented\n");
  expect_two_files();
}

TEST_F(StopDeathTest, AfterAnIoErrorNamesOperationPathAndReason) {
  EXPECT_STOP(
      {
        write_two_files();
        runtime::stop_on_io_error("Öffnen"_w1252, "data\\var1.pkl",
                                  std::make_error_code(std::errc::permission_denied));
      },
      "E/A-Fehler beim \xD6"
      "ffnen von \"data\\var1.pkl\": Permission denied\n");
  expect_two_files();
}

TEST_F(StopDeathTest, AfterAFailedAllocationNamesPlaceAndBytes) {
  EXPECT_STOP(
      {
        write_two_files();
        runtime::stop_on_allocation("/source/KV_Akum/accumulation.cpp", 34, 4000);
      },
      "In file 'accumulation.cpp', around line 34: Error allocating 4000 bytes\n");
  expect_two_files();
}

TEST_F(StopDeathTest, ASourceFileMayComeWithoutItsFolder) {
  EXPECT_STOP(runtime::stop_on_allocation("accumulation.cpp", 34, 4000),
              "In file 'accumulation.cpp', around line 34: Error allocating 4000 bytes\n");
}

TEST_F(StopDeathTest, TellsEveryFileThatCannotBeCompleted) {
  TestHost host;
  const auto stop = [&] {
    write_two_files();
    host.fail(HostCall::write, 1, std::errc::no_space_on_device);
    runtime::stop();
  };
  EXPECT_STOP(stop(), "E/A-Fehler beim Schreiben von \"" + file("one") + "\": No space left on device\n");
  EXPECT_EQ(read_bytes(file("one")), "");
  EXPECT_EQ(read_bytes(file("two")), "second\n");
}

TEST_F(StopDeathTest, TellsALateLossOnClosing) {
  TestHost host;
  const auto stop = [&] {
    write_two_files();
    host.fail(HostCall::close, 2, std::errc::io_error);
    runtime::stop();
  };
  EXPECT_STOP(stop(), "E/A-Fehler beim Schreiben von \"" + file("two") + "\": Input/output error\n");
}

TEST_F(StopDeathTest, ClosedStandardErrorDoesNotHoldItUp) {
  EXPECT_STOP(
      {
        write_two_files();
        close(STDERR_FILENO);
        runtime::stop("unheard");
      },
      "");
  expect_two_files();
}

TEST_F(StopDeathTest, StandardOutputIsHandedOver) {
  testing::internal::CaptureStdout();
  EXPECT_STOP(
      {
        runtime::write_text(6, "\x01key\x02value\x03");
        runtime::stop();
      },
      "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "\x01key\x02value\x03");
}

TEST_F(StopDeathTest, AClosedStandardOutputIsTold) {
  EXPECT_STOP(
      {
        write_two_files();
        close(STDOUT_FILENO);
        runtime::write_text(6, "gone");
        runtime::flush(6);
        runtime::stop();
      },
      "E/A-Fehler beim Schreiben von \"Standardausgabe\": Bad file descriptor\n");
  expect_two_files();
}

// Makes standard output a pipe whose reader is gone.
void write_to_nobody() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) std::abort();
  close(ends[0]);
  dup2(ends[1], STDOUT_FILENO);
}

// Makes standard input a pipe with these bytes.
void read_from_a_pipe(std::string_view bytes) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0 || write(ends[1], bytes.data(), bytes.size()) < 0) std::abort();
  close(ends[1]);
  dup2(ends[0], STDIN_FILENO);
}

TEST_F(StopDeathTest, StandardInputMayBeAPipe) {
  testing::internal::CaptureStdout();
  EXPECT_STOP(
      {
        read_from_a_pipe("first\nsecond\n");
        std::string_view record;
        for (runtime::LineReader reader(5, 80); reader.next(record);) runtime::write<"(a)">(6, record);
        runtime::stop();
      },
      "");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "first\nsecond\n");
}

// In a process of its own.
TEST_F(StopDeathTest, FilesDoNotTakeTheNumbersOfStandardStreams) {
  EXPECT_STOP(
      {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        write_two_files();
        runtime::write_text(6, "no foreign bytes");
        runtime::flush(6);
        runtime::stop("no foreign line");
      },
      "");
  expect_two_files();
}

// Which of the standard streams are closed, a bit each.
unsigned closed_streams() {
  unsigned closed = 0;
  for (int stream = 0; stream <= 2; ++stream) {
    if (fcntl(stream, F_GETFD) < 0) closed |= 1U << static_cast<unsigned>(stream);
  }
  return closed;
}

// Whatever is closed at the start, no file stands where a stream would.
TEST_F(StopDeathTest, EveryFileStandsAboveTheStandardStreams) {
  for (unsigned closed = 0; closed < 8; ++closed) {
    EXPECT_STOP(
        {
          for (int stream = 0; stream <= 2; ++stream) {
            if ((closed >> static_cast<unsigned>(stream) & 1U) != 0) close(stream);
          }
          const unsigned before = closed_streams();
          std::error_code reason;
          const int opened = runtime::host().open(file("opened"), runtime::Access::create, reason);
          const runtime::Successor successor = runtime::host().create_successor(file("whole"), reason);
          _exit(opened > 2 && successor.handle > 2 && closed_streams() == before ? 0 : 1);
        },
        "");
  }
}

// Makes standard output a pipe that is full and does not wait.
int write_to_a_full_pipe() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0 || fcntl(ends[1], F_SETFL, O_NONBLOCK) != 0) std::abort();
  const std::string kilobyte(1024, 'x');
  while (write(ends[1], kilobyte.data(), kilobyte.size()) > 0) continue;
  dup2(ends[1], STDOUT_FILENO);
  close(ends[1]);
  return ends[0];
}

TEST_F(StopDeathTest, AFullPipeIsWaitedFor) {
  const std::string notice(200'000, 'n');
  EXPECT_STOP(
      {
        const int reader = write_to_a_full_pipe();
        std::size_t got = 0;
        std::thread front_end([&] {
          std::this_thread::sleep_for(std::chrono::milliseconds(50));
          std::array<char, 4096> bytes{};
          for (ssize_t count = 1; count > 0;) {
            count = read(reader, bytes.data(), bytes.size());
            got += static_cast<std::size_t>(
                std::count(bytes.begin(), bytes.begin() + std::max<ssize_t>(count, 0), 'n'));
          }
        });
        runtime::write_text(6, notice);
        runtime::flush(6);
        close(STDOUT_FILENO);
        front_end.join();
        runtime::stop(std::to_string(got));
      },
      "STOP 200000\n");
}

TEST_F(StopDeathTest, PreparedProcessOutlivesAReaderThatGoesAway) {
  EXPECT_STOP(
      {
        write_to_nobody();
        runtime::prepare_process();
        write_two_files();
        runtime::write_text(6, "unheard");
        runtime::flush(6);
        runtime::stop();
      },
      "E/A-Fehler beim Schreiben von \"Standardausgabe\": Broken pipe\n");
  expect_two_files();
}

TEST(Arguments, AreCountedWithoutTheProgram) {
  const char* const values[] = {"KV_Akum", "data\\var1", "", "\xFC"};
  runtime::set_arguments(4, values);
  EXPECT_EQ(runtime::argument_count(), 3);
  EXPECT_EQ(runtime::argument(1), "data\\var1");
  EXPECT_EQ(runtime::argument(2), "");
  EXPECT_EQ(runtime::argument(3), "\xFC");
  EXPECT_EQ(runtime::argument(0), "");
  EXPECT_EQ(runtime::argument(4), "");
  EXPECT_EQ(runtime::argument(-1), "");
}

TEST(Arguments, MayBeMissing) {
  const char* const values[] = {"KV_Akum"};
  runtime::set_arguments(1, values);
  EXPECT_EQ(runtime::argument_count(), 0);
  runtime::set_arguments(0, values);
  EXPECT_EQ(runtime::argument_count(), 0);
  EXPECT_EQ(runtime::argument(1), "");
}

TEST(Command, RunsInTheInterpreterAndWaits) {
  const test_files::TemporaryFolder folder;
  runtime::execute_command("echo \"a b\" > '" + folder.file("list") + "'; cat >> '" + folder.file("list") +
                           "'");
  EXPECT_EQ(read_bytes(folder.file("list")), "a b\n") << "and it has nothing to read";
}

TEST(Command, ThatFailsIsNotExamined) {
  testing::internal::CaptureStderr();
  runtime::execute_command("exit 3");
  runtime::execute_command("no-such-command-anywhere");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Table, CountsFromOne) {
  runtime::OneBased<int> table;
  EXPECT_EQ(table.size(), 0);
  ASSERT_TRUE(table.allocate(3, 7));
  table.at(1) = 1;
  table.at(3) = 3;
  EXPECT_EQ(table.at(1), 1);
  EXPECT_EQ(table.at(2), 7);
  EXPECT_EQ(table.at(3), 3);
  EXPECT_TRUE(table.holds(1));
  EXPECT_TRUE(table.holds(3));
  EXPECT_FALSE(table.holds(0));
  EXPECT_FALSE(table.holds(4));
  EXPECT_EQ(table.at_or_zero(0), 0);
  EXPECT_EQ(table.at_or_zero(2), 7);
  EXPECT_EQ(table.at_or_zero(4), 0);
  table.release();
  EXPECT_EQ(table.at_or_zero(1), 0);
}

TEST(Table, TakesNoEntriesToo) {
  runtime::OneBased<double> table;
  EXPECT_TRUE(table.allocate(0));
  EXPECT_EQ(table.size(), 0);
  EXPECT_TRUE(table.allocate(-5));
  EXPECT_EQ(table.size(), 0);
}

TEST(Table, IsEmptyWhenTheMemoryIsNotThere) {
  runtime::OneBased<double> table;
  ASSERT_TRUE(table.allocate(100, 1.5));
  runtime::limit_allocations(1000);
  EXPECT_FALSE(table.allocate(126));
  EXPECT_EQ(table.size(), 0);
  EXPECT_EQ(table.at_or_zero(1), 0.0);
  EXPECT_TRUE(table.allocate(125, 2.5));
  EXPECT_EQ(table.at(125), 2.5);
  runtime::unlimit_allocations();
  EXPECT_TRUE(table.allocate(126));
}

TEST(Table, KeepsItsSlotsApart) {
  runtime::OneBased<runtime::Slots<short, 3>> table;
  ASSERT_TRUE(table.allocate(2));
  table.at(1).at(3) = 13;
  table.at(2).at(1) = 21;
  EXPECT_EQ(table.at(1).at(3), 13);
  EXPECT_EQ(table.at(2).at(1), 21);
  EXPECT_EQ(table.at(1).at(1), 0);
}

TEST(Clock, GoesForward) {
  EXPECT_GT(runtime::host().ticks_per_second(), 0);
  const auto before = runtime::host().clock_ticks();
  EXPECT_GE(runtime::host().clock_ticks(), before);
}

}  // namespace
