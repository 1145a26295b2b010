#include <fmt/format.h>

#include <cstdint>
#include <string_view>

#include "KV_Schau/run/process_host.h"

namespace schau::run::host {
namespace {

// The system ends a program with the number of the exception as its status; errors begin there.
constexpr std::uint32_t first_exception = 0xC000'0000;

// Empty for one that says nothing.
std::string_view meaning_of_exception(std::uint32_t exception) {
  switch (exception) {
    case 0xC000'0005:
      return "unzulässiger Speicherzugriff";
    case 0xC000'0094:
    case 0xC000'0095:
      return "unzulässige Rechnung";
    case 0xC000'001D:
      return "unzulässiger Befehl";
    case 0xC000'00FD:
      return "der Stapelspeicher reicht nicht";
    case 0xC000'0135:
      return "eine Programmbibliothek fehlt";
    case 0xC000'013A:
      return "von außen beendet";
    default:
      return {};
  }
}

}  // namespace

std::optional<int> signal_of(int status) {
  if (static_cast<std::uint32_t>(status) < first_exception) return std::nullopt;
  return status;
}

std::string shown_signal(int signal) {
  const auto exception = static_cast<std::uint32_t>(signal);
  const std::string_view meaning = meaning_of_exception(exception);
  return fmt::format("Ausnahme 0x{:08X}{}{}", exception, meaning.empty() ? "" : ": ", meaning);
}

void prepare_signals() {}

}  // namespace schau::run::host
