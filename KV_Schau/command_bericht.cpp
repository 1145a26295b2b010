#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <variant>

#include "KV_Schau/command.h"
#include "KV_Schau/report/html.h"
#include "KV_Schau/report/report.h"
#include "KV_Schau/rules/rules.h"
#include "KV_Schau/run/whole_file.h"
#include "KV_Schau/terminal.h"
#include "KV_Schau/variant_argument.h"

namespace schau {
namespace {

struct Options {
  std::string variant;
  std::string file;
};
Options options;

void add_options(CLI::App& parser) {
  parser.add_option("VARIANTE", options.variant, "Pfad der Systemdatei, mit oder ohne \".sys\"")
      ->required()
      ->type_name("");
  parser.add_option("-o,--ausgabe", options.file, "die Seite, mit der Endung .html")
      ->required()
      ->type_name("DATEI");
}

ExitStatus fail(std::string_view reason) {
  write_error(fmt::format("KV_Schau: {}.", reason));
  return ExitStatus::failed;
}

ExitStatus write_report(const variant::Variant& variant) {
  const variant::TextFile& system = variant.file(variant::FileId::sys);
  if (!system.was_read()) return fail(fmt::format("{} ist nicht lesbar: {}", system.shown(), system.fault()));
  const rules::Result checked = rules::check(variant);
  const plan::Facts facts(variant, checked.network, checked.flow, checked.findings);
  const report::Report report = report::report_of(facts);
  run::WholeFile file(options.file);
  file.stream() << report::to_html(report);
  file.commit();
  return report.counts.errors + report.counts.warnings == 0 ? ExitStatus::clean : ExitStatus::findings;
}

ExitStatus run_command() {
  if (!options.file.ends_with(".html")) {
    throw UsageError{
        fmt::format("Die Seite braucht einen Namen mit der Endung .html, nicht {}", options.file)};
  }
  const auto resolved = variant_of(options.variant);
  if (const auto* const refusal = std::get_if<ExitStatus>(&resolved)) return *refusal;
  try {
    return write_report(variant::read_variant(std::get<variant::VariantPath>(resolved)));
  } catch (const run::FileFault& fault) {
    return fail(fault.what());
  }
}

const Registration registration(
    {.name = "bericht",
     .description = "einen Bericht als HTML-Seite schreiben: Bilanz, Befunde, Plan, Tabelle",
     .rank = 50,
     .add_options = add_options,
     .run = run_command});

}  // namespace
}  // namespace schau
