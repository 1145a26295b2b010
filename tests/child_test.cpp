// The children in which the tests do what may end a process.

#include "tests/child.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdio>

namespace {

TEST(Child, TellsItsExitStatusAndWhatItWrote) {
  const child::Outcome outcome = child::run([] {
    std::fputs("out", stdout);
    std::fputs("err", stderr);
    std::exit(3);
  });
  EXPECT_EQ(outcome.exit_status, 3);
  EXPECT_EQ(outcome.ending, "exit status 3");
  EXPECT_EQ(outcome.out, "out");
  EXPECT_EQ(outcome.err, "err");
}

TEST(Child, TellsThatItsWorkCameBack) {
  EXPECT_EQ(child::run([] {}).exit_status, child::came_back);
}

TEST(Child, TellsTheSignalThatEndedIt) {
  const child::Outcome outcome = child::run([] { raise(SIGTERM); });
  EXPECT_EQ(outcome.exit_status, -1);
  EXPECT_EQ(outcome.ending, "signal 15");
}

TEST(Child, IsKilledAfterTheTimeout) {
  const child::Outcome outcome = child::run([] { pause(); }, std::chrono::seconds(0));
  EXPECT_EQ(outcome.exit_status, -1);
  EXPECT_EQ(outcome.ending, "no end after 0 s");
}

TEST(Child, HasNoInput) {
  EXPECT_EQ(child::run([] { std::exit(std::getchar() == EOF ? 0 : 1); }).exit_status, 0);
}

}  // namespace
