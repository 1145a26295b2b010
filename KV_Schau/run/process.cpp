#include "KV_Schau/run/process.h"

#include <array>
#include <atomic>
#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/process/args.hpp>
#include <boost/process/async.hpp>
#include <boost/process/async_pipe.hpp>
#include <boost/process/child.hpp>
#include <boost/process/exe.hpp>
#include <boost/process/group.hpp>
#include <boost/process/io.hpp>
#include <boost/process/start_dir.hpp>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>

#include "KV_Schau/run/process_host.h"
#include "KV_Schau/run/reason.h"

namespace schau::run {
namespace {

namespace asio = boost::asio;
namespace process = boost::process;
using std::chrono::milliseconds;

constexpr milliseconds between_looks{10};
constexpr milliseconds until_the_end_is_seen{1};
// What a program has written before its end is in the pipes already.
constexpr milliseconds for_the_rest{200};

// A program that is started inherits the open ends of pipes: one at a time, so that none holds those of
// another.
std::mutex& starting() {
  static std::mutex one_at_a_time;
  return one_at_a_time;
}

// One output of the program, read piece by piece as long as it is open.
class OutputReader {
 public:
  OutputReader(asio::io_context& context, const TakeBytes& take) : pipe_(context), take_(take) {}

  process::async_pipe& pipe() { return pipe_; }
  [[nodiscard]] bool ended() const { return ended_; }

  void read() {
    const auto take_and_go_on = [this](const boost::system::error_code& fault, std::size_t count) {
      if (count > 0) take_({bytes_.data(), count});
      ended_ = static_cast<bool>(fault);
      if (!ended_) read();
    };
    pipe_.async_read_some(asio::buffer(bytes_), take_and_go_on);
  }

 private:
  process::async_pipe pipe_;
  const TakeBytes& take_;
  std::array<char, std::size_t{1} << 16U> bytes_{};
  bool ended_ = false;
};

// As the host takes them.
std::vector<std::filesystem::path::string_type> native_texts(const std::vector<std::string>& texts) {
  std::vector<std::filesystem::path::string_type> native;
  for (const std::string& text : texts) native.push_back(std::filesystem::path(text).native());
  return native;
}

class Supervision {
 public:
  /// Starts the program; throws what the system says when it cannot be.
  Supervision(const CommandLine& command, const TakeBytes& take_output, const TakeBytes& take_error)
      : output_(context_, take_output),
        error_(context_, take_error),
        child_(process::exe = command.program.native(), process::args = native_texts(command.arguments),
               process::start_dir = command.folder.native(),
               process::std_in<process::null, process::std_out> output_.pipe(),
               process::std_err > error_.pipe(), group_) {}

  Ending wait(const WantsStop& wants_stop) {
    output_.read();
    error_.read();
    std::error_code ignored;
    while (child_.running(ignored)) {
      if (wants_stop()) return stop();
      read_for(between_looks);
      if (outputs_ended()) std::this_thread::sleep_for(until_the_end_is_seen);
    }
    read_for(for_the_rest);
    if (!outputs_ended()) {
      stop_all();
      read_for(for_the_rest);
    }
    return ending_of(child_.native_exit_code(), child_.exit_code());
  }

 private:
  [[nodiscard]] bool outputs_ended() const { return output_.ended() && error_.ended(); }

  void read_for(milliseconds time) {
    context_.restart();
    context_.run_for(time);
  }

  void stop_all() {
    std::error_code ignored;
    group_.terminate(ignored);
  }

  Ending stop() {
    stop_all();
    std::error_code ignored;
    child_.wait(ignored);
    read_for(for_the_rest);
    return {.kind = Ending::Kind::stopped};
  }

  static Ending ending_of(int status, int exit_status) {
    if (const std::optional<int> signal = host::signal_of(status)) {
      return {.kind = Ending::Kind::crashed, .signal = *signal};
    }
    return {.kind = Ending::Kind::exited, .exit_status = exit_status};
  }

  asio::io_context context_;
  OutputReader output_;
  OutputReader error_;
  process::group group_;
  process::child child_;
};

Ending not_started(const std::error_code& fault) {
  return {.kind = Ending::Kind::not_started, .reason = reason_of(fault)};
}

std::atomic<bool> end_is_requested = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

extern "C" void end_on_signal(int /*signal*/) {
  request_end();
}

}  // namespace

Ending run_process(const CommandLine& command, const TakeBytes& take_output, const TakeBytes& take_error,
                   const WantsStop& wants_stop) {
  // The starter does not look whether it came into the folder.
  std::error_code ignored;
  if (!std::filesystem::is_directory(command.folder, ignored)) {
    return not_started(std::make_error_code(std::errc::not_a_directory));
  }
  std::optional<Supervision> supervision;
  try {
    const std::lock_guard<std::mutex> alone(starting());
    supervision.emplace(command, take_output, take_error);
  } catch (const std::system_error& fault) {
    return not_started(fault.code());
  } catch (const boost::system::system_error& fault) {
    return not_started(fault.code());
  }
  return supervision->wait(wants_stop);
}

void prepare_for_processes() {
  host::prepare_signals();
}

void request_end() {
  end_is_requested = true;
}

bool end_requested() {
  return end_is_requested;
}

void end_on_signals() {
  std::signal(SIGINT, end_on_signal);
  std::signal(SIGTERM, end_on_signal);
}

}  // namespace schau::run
