#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <variant>

#include "KV_Schau/command.h"
#include "KV_Schau/compare/comparison.h"
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
  std::string older;
};
Options options;

void add_options(CLI::App& parser) {
  parser.add_option("VARIANTE", options.variant, "Pfad der Systemdatei, mit oder ohne \".sys\"")
      ->required()
      ->type_name("");
  parser.add_option("-o,--ausgabe", options.file, "die Seite, mit der Endung .html")
      ->required()
      ->type_name("DATEI");
  parser
      .add_option("--gegen", options.older,
                  "eine ältere Variante: was anders ist, steht auf der Seite, im Plan und in der Tabelle")
      ->type_name("ALT");
}

ExitStatus fail(std::string_view reason) {
  write_error(fmt::format("KV_Schau: {}.", reason));
  return ExitStatus::failed;
}

// Nothing of a file that cannot be read may pass for what is in it.
const variant::TextFile* unreadable_file(const variant::Variant& variant) {
  for (const variant::TextFile& file : variant.files) {
    if (file.state() == variant::FileState::unreadable) return &file;
  }
  return nullptr;
}

ExitStatus write_report(const variant::Variant& variant, const std::optional<variant::Variant>& older) {
  for (const variant::Variant* const one : {&variant, older ? &*older : &variant}) {
    if (const variant::TextFile* const file = unreadable_file(*one))
      return fail(fmt::format("{} ist nicht lesbar: {}", file->shown(), file->fault()));
  }
  const rules::Result checked = rules::check(variant);
  const plan::Facts facts(variant, checked.network, checked.flow, checked.findings);
  report::Report report = report::report_of(facts);
  if (older) report::add_comparison(report, compare::compare(*older, variant));
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
  std::optional<variant::Variant> older;
  if (!options.older.empty()) {
    const auto old_path = variant_of(options.older);
    if (const auto* const refusal = std::get_if<ExitStatus>(&old_path)) return *refusal;
    older = variant::read_variant(std::get<variant::VariantPath>(old_path));
  }
  try {
    return write_report(variant::read_variant(std::get<variant::VariantPath>(resolved)), older);
  } catch (const run::FileFault& fault) {
    return fail(fault.what());
  }
}

const Registration registration(
    {.name = "bericht",
     .description = "einen Bericht als HTML-Seite schreiben: Bilanz, Befunde, Plan, Tabelle",
     .rank = 36,
     .add_options = add_options,
     .run = run_command});

}  // namespace
}  // namespace schau
