#include <fmt/format.h>
#include <sys/wait.h>

#include <csignal>
#include <string_view>

#include "KV_Schau/run/process_host.h"

namespace schau::run::host {
namespace {

// Empty for one that says nothing.
std::string_view meaning_of_signal(int signal) {
  switch (signal) {
    case SIGSEGV:
    case SIGBUS:
      return "unzulässiger Speicherzugriff";
    case SIGABRT:
      return "Abbruch durch das Programm selbst";
    case SIGFPE:
      return "unzulässige Rechnung";
    case SIGILL:
      return "unzulässiger Befehl";
    case SIGXCPU:
      return "die zulässige Rechenzeit ist überschritten";
    case SIGKILL:
    case SIGTERM:
      return "von außen beendet";
    default:
      return {};
  }
}

}  // namespace

std::optional<int> signal_of(int status) {
  if (!WIFSIGNALED(status)) return std::nullopt;
  return WTERMSIG(status);
}

std::string shown_signal(int signal) {
  const std::string_view meaning = meaning_of_signal(signal);
  return fmt::format("Signal {}{}{}", signal, meaning.empty() ? "" : ": ", meaning);
}

void prepare_signals() {
  std::signal(SIGPIPE, SIG_IGN);
  // A caller that ignores the ends of its own children hands that on.
  std::signal(SIGCHLD, SIG_DFL);
}

}  // namespace schau::run::host
