#pragma once

#include <fcntl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

// Work that may end the process, done in a child of the test program.

namespace child {

/// Exit status of a child whose work came back instead of ending the process.
inline constexpr int came_back = 77;

struct Outcome {
  int exit_status = -1;  ///< -1 when a signal or the timeout ended the child
  std::string ending;    ///< how it ended, in words
  std::string out;       ///< all bytes of standard output
  std::string err;       ///< all bytes of standard error
};

namespace details {

inline std::string bytes_of(std::FILE* file) {
  std::string bytes;
  std::rewind(file);
  for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) {
    bytes += static_cast<char>(byte);
  }
  std::fclose(file);
  return bytes;
}

// Waits for the child and tells its end; one that has none within the time is killed.
inline void wait_for(pid_t id, std::chrono::seconds timeout, Outcome& outcome) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  int status = 0;
  while (waitpid(id, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > end) {
      kill(id, SIGKILL);
      waitpid(id, &status, 0);
      outcome.ending = "no end after " + std::to_string(timeout.count()) + " s";
      return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  if (WIFEXITED(status)) {
    outcome.exit_status = WEXITSTATUS(status);
    outcome.ending = "exit status " + std::to_string(outcome.exit_status);
  } else {
    outcome.ending = "signal " + std::to_string(WTERMSIG(status));
  }
}

}  // namespace details

/// Does the work in a child that has no input and waits for its end; it is killed after the timeout.
template <class Work>
Outcome run(const Work& work, std::chrono::seconds timeout = std::chrono::seconds(20)) {
  std::FILE* const out = std::tmpfile();
  std::FILE* const err = std::tmpfile();
  std::fflush(nullptr);
  const pid_t id = out == nullptr || err == nullptr ? -1 : fork();
  if (id < 0) std::abort();
  if (id == 0) {
    dup2(open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    dup2(fileno(out), STDOUT_FILENO);
    dup2(fileno(err), STDERR_FILENO);
    for (std::FILE* const file : {out, err}) fcntl(fileno(file), F_SETFD, FD_CLOEXEC);
    work();
    std::exit(came_back);
  }
  Outcome outcome;
  details::wait_for(id, timeout, outcome);
  outcome.out = details::bytes_of(out);
  outcome.err = details::bytes_of(err);
  return outcome;
}

}  // namespace child
