#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/exit_status.h"

namespace schau {

/// A subcommand of the program. Each lives in a file of its own and adds itself with a `Registration`.
struct Command {
  std::string_view name;
  std::string_view description;
  int rank = 0;             ///< its place in the help
  bool is_default = false;  ///< meant when an argument stands where a subcommand is expected
  /// Adds the options to the subcommand's parser and returns nothing else; what they set lives as long as the
  /// program.
  void (*add_options)(CLI::App& parser) = nullptr;
  ExitStatus (*run)() = nullptr;
};

class Registration {
 public:
  explicit Registration(const Command& command);
};

/// All subcommands in the order of their ranks.
std::vector<Command> commands();

/// Adds the list of variants: at least one.
CLI::Option* add_variants(CLI::App& parser, std::vector<std::string>& variants);

/// A wrong use that shows only while a command runs; ends the program with a German line on standard error
/// and `ExitStatus::usage`.
struct UsageError {
  std::string text;
};

}  // namespace schau
