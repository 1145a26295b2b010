#pragma once

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

// Work that may end the process, done in a child of the test program.

namespace child {

/// Exit status of a child whose work came back instead of ending the process.
inline constexpr int came_back = 77;

struct Outcome {
  int exit_status = -1;  ///< -1 when a signal ended the child
  std::string out;       ///< all bytes of standard output
  std::string err;       ///< all bytes of standard error
};

inline std::string bytes_of(std::FILE* file) {
  std::string bytes;
  std::rewind(file);
  for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) {
    bytes += static_cast<char>(byte);
  }
  std::fclose(file);
  return bytes;
}

/// Does the work in a child and waits for its end.
template <class Work>
Outcome run(const Work& work) {
  std::FILE* const out = std::tmpfile();
  std::FILE* const err = std::tmpfile();
  std::fflush(nullptr);
  const pid_t id = out == nullptr || err == nullptr ? -1 : fork();
  if (id < 0) std::abort();
  if (id == 0) {
    dup2(fileno(out), STDOUT_FILENO);
    dup2(fileno(err), STDERR_FILENO);
    work();
    std::exit(came_back);
  }
  int status = 0;
  waitpid(id, &status, 0);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, bytes_of(out), bytes_of(err)};
}

}  // namespace child
