#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstddef>
#include <string>
#include <variant>

#include "KV_Schau/command.h"
#include "KV_Schau/compare/comparison.h"
#include "KV_Schau/compare/view.h"
#include "KV_Schau/rules/rules.h"
#include "KV_Schau/run/whole_file.h"
#include "KV_Schau/terminal.h"
#include "KV_Schau/variant/shown_text.h"
#include "KV_Schau/variant/variant.h"
#include "KV_Schau/variant_argument.h"

namespace schau {
namespace {

struct Options {
  std::string older;
  std::string newer;
  double tolerance = compare::default_tolerance;
  bool json = false;
  bool all = false;
};
Options options;

void add_options(CLI::App& parser) {
  parser
      .add_option("ALT", options.older, "Variante oder Ergebnis (.Akum, .csv, .json), womit verglichen wird")
      ->required()
      ->type_name("");
  parser.add_option("NEU", options.newer, "Variante oder Ergebnis, das verglichen wird")
      ->required()
      ->type_name("");
  parser
      .add_option("--toleranz", options.tolerance,
                  "Unterschiede der Ergebnisse bis zu so vielen km² zählen nicht; sonst 0.001")
      ->type_name("KM2");
  CLI::Option* const json = parser.add_flag("--json", options.json, "als JSON, vollständig");
  parser.add_flag("--alle", options.all, "alle Unterschiede zeigen, nicht nur die größten")->excludes(json);
  parser.footer(
      "Zwischen Varianten: Elemente, die hinzugekommen, entfallen oder anders verbunden sind, geänderte\n"
      "Eingaben, und welche Strecken dadurch andere Summen haben, mit den Ursachen. Die Summen werden aus "
      "den\n"
      "Eingabedateien berechnet; alte Ergebnisse liest der Vergleich nicht. Gleich ist ein Element, das\n"
      "gleich heißt. Die Reihenfolge in der Systemdatei und die der Zuläufe ist kein Unterschied.\n"
      "Zwischen Ergebnissen, wie KV_Akum oder \"tabelle --csv\" und \"tabelle --json\" sie schreiben: die\n"
      "Zeilen der Strecken.\n"
      "Exit-Status: 0 gleich, 1 verschieden, 3 eine Datei fehlt oder ist nicht lesbar, 64 falscher Aufruf.");
}

void show(const compare::Comparison& comparison) {
  constexpr std::size_t most = 20;
  const compare::Tell tell = [](std::string_view part) { write_out(part); };
  if (options.json) {
    compare::tell_json(comparison, tell);
  } else {
    compare::tell_text(comparison, options.all ? 0 : most, tell);
  }
}

ExitStatus status_of(const compare::Comparison& comparison) {
  return comparison.is_equal() ? ExitStatus::clean : ExitStatus::findings;
}

ExitStatus fail(std::string_view reason) {
  write_error(fmt::format("KV_Schau: {}.", reason));
  return ExitStatus::failed;
}

// A variant that a run would refuse has no results of its own.
void warn_of_errors(const variant::Variant& variant) {
  const std::size_t errors = findings::count(rules::check(variant).findings).errors;
  if (errors == 0) return;
  write_error(fmt::format(
      "{}: Warnung: {} Fehler; verglichen wird, was die Dateien ergäben. Näheres: KV_Schau pruefen {}",
      variant.path.shown, errors, variant.path.shown));
}

// Nothing of a file that cannot be read may pass for a difference.
const variant::TextFile* unreadable_file(const variant::Variant& variant) {
  for (const variant::TextFile& file : variant.files) {
    if (file.state() == variant::FileState::unreadable) return &file;
  }
  return nullptr;
}

ExitStatus compare_variants() {
  const auto old_path = variant_of(options.older);
  if (const auto* const refusal = std::get_if<ExitStatus>(&old_path)) return *refusal;
  const auto new_path = variant_of(options.newer);
  if (const auto* const refusal = std::get_if<ExitStatus>(&new_path)) return *refusal;
  const variant::Variant older = variant::read_variant(std::get<variant::VariantPath>(old_path));
  const variant::Variant newer = variant::read_variant(std::get<variant::VariantPath>(new_path));
  for (const variant::Variant* const variant : {&older, &newer}) {
    if (const variant::TextFile* const file = unreadable_file(*variant))
      return fail(fmt::format("{} ist nicht lesbar: {}", file->shown(), file->fault()));
    warn_of_errors(*variant);
  }
  const compare::Comparison comparison = compare::compare(older, newer, options.tolerance);
  show(comparison);
  return status_of(comparison);
}

ExitStatus compare_results() {
  try {
    const compare::ResultTable older =
        compare::read_result(options.older, variant::shown_utf8(options.older));
    const compare::ResultTable newer =
        compare::read_result(options.newer, variant::shown_utf8(options.newer));
    const compare::Comparison comparison = compare::compare(older, newer, options.tolerance);
    show(comparison);
    return status_of(comparison);
  } catch (const run::FileFault& fault) {
    return fail(fault.what());
  }
}

ExitStatus run_command() {
  if (!(options.tolerance >= 0.0) || std::isinf(options.tolerance))
    throw UsageError{"--toleranz ist eine Fläche in km², 0 oder mehr"};
  const bool old_is_result = compare::is_result_name(options.older);
  const bool new_is_result = compare::is_result_name(options.newer);
  if (old_is_result != new_is_result)
    throw UsageError{"Verglichen werden zwei Varianten oder zwei Ergebnisse, nicht das eine mit dem anderen"};
  return old_is_result ? compare_results() : compare_variants();
}

const Registration registration(
    {.name = "vergleichen",
     .description = "zeigt, worin sich zwei Varianten oder Ergebnisse unterscheiden",
     .rank = 40,
     .add_options = add_options,
     .run = run_command});

}  // namespace
}  // namespace schau
