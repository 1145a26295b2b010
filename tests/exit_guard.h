#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

/// Watches over the end of a test program. The code under test may end a run quietly with exit status 0, and
/// a test program that it ends in this way would count as passed. While a guard lives, the process that made
/// it leaves with a failure and a line on standard error, whatever status it leaves with; the `main` of every
/// test program holds one until its last test is done. A child that the process forks may leave as it likes.
class ExitGuard {
 public:
  ExitGuard() {
    watched() = getpid();
    std::atexit(refuse_early_end);
  }
  ExitGuard(const ExitGuard&) = delete;
  ExitGuard& operator=(const ExitGuard&) = delete;
  ExitGuard(ExitGuard&&) = delete;
  ExitGuard& operator=(ExitGuard&&) = delete;
  ~ExitGuard() { watched() = 0; }

 private:
  // The process that must not leave; 0: none.
  static pid_t& watched() {
    static pid_t process = 0;
    return process;
  }
  static void refuse_early_end() {
    if (watched() != getpid()) return;
    std::fputs("The test program was ended before its last test.\n", stderr);
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
  }
};
