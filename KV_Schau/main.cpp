#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/command.h"
#include "KV_Schau/exit_status.h"
#include "KV_Schau/host.h"
#include "KV_Schau/terminal.h"

namespace schau {
namespace {

constexpr std::string_view help_flags = "-h,--help,--hilfe";
constexpr std::string_view version_flag = "--version";

// The library's own words in German.
std::shared_ptr<CLI::Formatter> german_formatter() {
  auto formatter = std::make_shared<CLI::Formatter>();
  formatter->label("Usage", "Aufruf");
  formatter->label("OPTIONS", "OPTIONEN");
  formatter->label("SUBCOMMAND", "BEFEHL");
  formatter->label("SUBCOMMANDS", "BEFEHL");
  formatter->label("Positionals", "Angaben");
  formatter->label("REQUIRED", "");
  formatter->column_width(28);
  return formatter;
}

void make_german(CLI::App& parser) {
  parser.option_defaults()->group("Optionen");
  parser.set_help_flag(std::string(help_flags), "diese Hilfe zeigen");
  parser.formatter(german_formatter());
}

void add_commands(CLI::App& parser) {
  for (const Command& command : commands()) {
    CLI::App* const subcommand =
        parser.add_subcommand(std::string(command.name), std::string(command.description));
    subcommand->group("Befehle");
    make_german(*subcommand);
    command.add_options(*subcommand);
  }
}

bool is_command(std::string_view word) {
  return std::ranges::any_of(commands(), [&](const Command& command) { return command.name == word; });
}

bool asks_about_program(std::string_view word) {
  return word == "-h" || word == "--help" || word == "--hilfe" || word == version_flag;
}

// Puts the default command before arguments that name none.
std::vector<std::string> complete_arguments(std::vector<std::string> arguments) {
  if (arguments.empty() || is_command(arguments.front()) || asks_about_program(arguments.front()))
    return arguments;
  for (const Command& command : commands()) {
    if (command.is_default) arguments.insert(arguments.begin(), std::string(command.name));
  }
  return arguments;
}

// The name of an option or argument with which the library's texts begin.
std::string subject_of(const CLI::ParseError& error) {
  const std::string text = error.what();
  return text.substr(0, std::min(text.find(" is required"), text.find(": ")));
}

std::string reason_of(const CLI::ParseError& error, const CLI::App& parser) {
  const std::string text = error.what();
  switch (static_cast<CLI::ExitCodes>(error.get_exit_code())) {
    case CLI::ExitCodes::RequiredError:
      return text.starts_with("A subcommand") ? "Es fehlt ein Befehl"
                                              : fmt::format("Es fehlt: {}", subject_of(error));
    case CLI::ExitCodes::ExtrasError:
      return fmt::format("Unbekannte Angabe: {}", fmt::join(parser.remaining(true), " "));
    case CLI::ExitCodes::ArgumentMismatch:
      return fmt::format("Die Option {} braucht einen Wert", subject_of(error));
    case CLI::ExitCodes::ConversionError: {
      constexpr std::string_view beginning = "Could not convert: ";
      const bool usual = text.starts_with(beginning);
      return fmt::format("Unzulässiger Wert: {}", usual ? text.substr(beginning.size()) : subject_of(error));
    }
    case CLI::ExitCodes::ValidationError:
      return fmt::format("Unzulässiger Wert: {}", text);
    default:
      return fmt::format("Die Angaben passen nicht zusammen: {}", text);
  }
}

ExitStatus refuse(std::string_view reason, const CLI::App& parser) {
  std::string program = "KV_Schau";
  for (const CLI::App* subcommand : parser.get_subcommands()) program += " " + subcommand->get_name();
  write_error(fmt::format("KV_Schau: {}.", reason));
  write_error(fmt::format("Hilfe: {} --help", program));
  return ExitStatus::usage;
}

ExitStatus run_command(const CLI::App& parser) {
  for (const Command& command : commands()) {
    if (parser.got_subcommand(std::string(command.name))) return command.run();
  }
  return ExitStatus::clean;
}

// Help that was asked for goes to standard output.
ExitStatus show_help(CLI::App& parser) {
  const std::vector<CLI::App*> chosen = parser.get_subcommands();
  const CLI::App& asked = chosen.empty() ? parser : *chosen.front();
  const std::string help = asked.help(chosen.empty() ? "" : "KV_Schau");
  write_out(help.ends_with('\n') ? help : help + "\n");
  return ExitStatus::clean;
}

ExitStatus run(std::vector<std::string> arguments) {
  CLI::App parser("KV_Schau prüft Varianten für KV_Akum, rechnet sie und zeigt, was dabei herauskommt.",
                  "KV_Schau");
  make_german(parser);
  parser.set_version_flag(std::string(version_flag), "KV_Schau " KV_VERSION "\n", "die Version zeigen");
  parser.require_subcommand(1);
  parser.footer(
      "KV_Schau BEFEHL --help zeigt die Optionen eines Befehls.\n"
      "Exit-Status: 0 ohne Befund, 1 Ergebnis mit Befunden, 2 kein Ergebnis wegen Befunden,\n"
      "3 kein Ergebnis wegen einer Datei, des Datenträgers oder KV_Akum selbst, 64 falscher Aufruf;\n"
      "bei mehreren Varianten der höchste.");
  add_commands(parser);
  arguments = complete_arguments(std::move(arguments));
  std::ranges::reverse(arguments);  // as the library wants them
  try {
    parser.parse(arguments);
    return run_command(parser);
  } catch (const CLI::CallForHelp&) {
    return show_help(parser);
  } catch (const CLI::CallForVersion& version) {
    write_out(version.what());
    return ExitStatus::clean;
  } catch (const CLI::ParseError& error) {
    return refuse(reason_of(error, parser), parser);
  } catch (const UsageError& error) {
    return refuse(error.text, parser);
  }
}

ExitStatus run_and_finish(std::vector<std::string> arguments) {
  ExitStatus status = ExitStatus::failed;
  try {
    status = run(std::move(arguments));
  } catch (const std::bad_alloc&) {
    write_error("KV_Schau: Der Arbeitsspeicher reicht nicht.");
  } catch (const std::exception& fault) {
    write_error(fmt::format("KV_Schau: Abbruch wegen eines Fehlers im Programm: {}", fault.what()));
  }
  if (finish_output()) return status;
  write_error("KV_Schau: Die Ausgabe konnte nicht vollständig geschrieben werden.");
  return worse(status, ExitStatus::failed);
}

}  // namespace
}  // namespace schau

int main(int argc, char** argv) {
  schau::host::prepare_streams();
  return static_cast<int>(schau::run_and_finish(schau::host::arguments(argc, argv)));
}
