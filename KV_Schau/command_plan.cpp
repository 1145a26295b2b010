#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <string>
#include <variant>

#include "KV_Schau/command.h"
#include "KV_Schau/plan/plan.h"
#include "KV_Schau/plan/svg.h"
#include "KV_Schau/rules/rules.h"
#include "KV_Schau/run/whole_file.h"
#include "KV_Schau/terminal.h"
#include "KV_Schau/variant_argument.h"

namespace schau {
namespace {

struct Options {
  std::string variant;
  std::string file;
  std::string above;
  std::uint32_t levels = 0;
  bool unfold_sources = false;
};
Options options;

void add_options(CLI::App& parser) {
  parser.add_option("VARIANTE", options.variant, "Pfad der Systemdatei, mit oder ohne \".sys\"")
      ->required()
      ->type_name("");
  parser.add_option("-o,--ausgabe", options.file, "die Datei")->required()->type_name("DATEI");
  parser.add_option("--oberhalb", options.above, "nur, was in dieses Element fließt")->type_name("ELEMENT");
  parser.add_flag("--quellen", options.unfold_sources, "");
}

ExitStatus run() {
  const auto resolved = variant_of(options.variant);
  if (const auto* const refusal = std::get_if<ExitStatus>(&resolved)) return *refusal;
  const variant::Variant variant = variant::read_variant(std::get<variant::VariantPath>(resolved));
  const rules::Result checked = rules::check(variant);
  const plan::Facts facts(variant, checked.network, checked.flow, checked.findings);
  plan::Options what;
  what.unfold_sources = options.unfold_sources;
  if (!options.above.empty()) what.above = variant.elements.first(variant::name_of(options.above));
  run::WholeFile file(options.file);
  file.stream() << plan::to_svg(plan::plan_of(facts, what));
  file.commit();
  return ExitStatus::clean;
}

const Registration registration({.name = "plan",
                                 .description = "zeichnet den Systemplan einer Variante",
                                 .rank = 40,
                                 .add_options = add_options,
                                 .run = run});

}  // namespace
}  // namespace schau
