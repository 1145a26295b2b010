// A test program that does not reach its end has failed, although the code under test ends it with the exit
// status 0.

#include <gtest/gtest.h>

#include <string>

#include "tests/child.h"

namespace {

constexpr const char* early_end = "The test program was ended before its last test.\n";

child::Outcome run_sample(const std::string& test) {
  const std::string filter = "--gtest_filter=Sample." + test;
  return child::run([&] { execl(KV_SAMPLE, KV_SAMPLE, filter.c_str(), nullptr); });
}

TEST(ExitGuard, FailsAProgramThatATestStops) {
  const child::Outcome outcome = run_sample("IsStopped");
  EXPECT_EQ(outcome.exit_status, EXIT_FAILURE);
  EXPECT_EQ(outcome.err, early_end);
}

TEST(ExitGuard, LeavesAProgramAloneThatComesToItsEnd) {
  const child::Outcome outcome = run_sample("Passes");
  EXPECT_EQ(outcome.exit_status, EXIT_SUCCESS) << outcome.out;
  EXPECT_EQ(outcome.err, "");
}

TEST(ExitGuard, FailsAReplayerThatAnInputStops) {
  const child::Outcome outcome =
      child::run([] { execl(KV_STOPPED_REPLAYER, KV_STOPPED_REPLAYER, KV_SAMPLE, nullptr); });
  EXPECT_EQ(outcome.exit_status, EXIT_FAILURE);
  EXPECT_EQ(outcome.err, early_end);
}

}  // namespace
