#include "KV_Schau/command.h"

#include <algorithm>

namespace schau {
namespace {

std::vector<Command>& registered() {
  static std::vector<Command> list;
  return list;
}

}  // namespace

Registration::Registration(const Command& command) {
  registered().push_back(command);
}

std::vector<Command> commands() {
  std::vector<Command> list = registered();
  std::ranges::stable_sort(list, {}, &Command::rank);
  return list;
}

CLI::Option* add_variants(CLI::App& parser, std::vector<std::string>& variants) {
  return parser
      .add_option("VARIANTE", variants,
                  "Pfad der Systemdatei, mit oder ohne \".sys\"; es können mehrere angegeben werden")
      ->required()
      ->type_name("");
}

}  // namespace schau
