// A test program for the test of the exit guard: each of its cases is run alone, in a process of its own.

#include <gtest/gtest.h>

#include "runtime/stop.h"
#include "tests/child.h"

namespace {

TEST(Sample, Passes) {
  EXPECT_EQ(child::run([] { runtime::stop(); }).exit_status, 0);
}

TEST(Sample, IsStopped) {
  runtime::stop();
}

}  // namespace
