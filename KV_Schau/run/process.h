#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace schau::run {

/// A program, its arguments and the folder in which it runs. It gets no input.
struct CommandLine {
  std::filesystem::path program;
  std::vector<std::string> arguments;
  std::filesystem::path folder;
};

/// How a program ended.
struct Ending {
  enum class Kind : std::uint8_t {
    exited,       ///< by itself, with `exit_status`
    crashed,      ///< by the signal `signal`
    not_started,  ///< for the `reason` that the system gives
    stopped       ///< by us
  };
  Kind kind = Kind::exited;
  int exit_status = 0;
  int signal = 0;
  std::string reason{};
};

/// Takes the next bytes of an output as they come.
using TakeBytes = std::function<void(std::string_view)>;
/// Asked every few milliseconds; true stops the program.
using WantsStop = std::function<bool()>;

/// Runs a program to its end and hands on what it writes on standard output and standard error. What is still
/// in the pipes when it ends is handed on too. When it is stopped, so is everything that it has started; what
/// holds its outputs open longer than it lives is stopped with its end. Several may run at once, each in a
/// thread of its own.
Ending run_process(const CommandLine& command, const TakeBytes& take_output, const TakeBytes& take_error,
                   const WantsStop& wants_stop);

/// Makes this process fit for running others, once at its start: the end of a program can be waited for, and
/// a reader of our own output that goes away is an error of the write and not our end.
void prepare_for_processes();

/// Asks for the end of all runs, from now on. Safe in a signal handler.
void request_end();
bool end_requested();
/// From now on an interrupt or a request to end (Ctrl+C, a termination signal) calls `request_end`.
void end_on_signals();

}  // namespace schau::run
