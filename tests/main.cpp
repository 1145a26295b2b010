// The beginning and the end of every test program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/exit_guard.h"

int main(int argument_count, char** arguments) {
  const ExitGuard guard;
  testing::InitGoogleMock(&argument_count, arguments);
  return RUN_ALL_TESTS();
}
