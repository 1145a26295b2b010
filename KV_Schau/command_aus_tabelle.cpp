#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>
#include <system_error>
#include <variant>
#include <vector>

#include "KV_Schau/command.h"
#include "KV_Schau/import/import.h"
#include "KV_Schau/run/whole_file.h"
#include "KV_Schau/terminal.h"
#include "KV_Schau/variant/path.h"
#include "KV_Schau/variant/shown_text.h"
#include "KV_Schau/variant/text_file.h"

namespace schau {
namespace {

namespace fs = std::filesystem;
using imports::Import;
using variant::TextFile;

struct Options {
  std::string table;
  std::string variant;
  bool join_outlets = false;
  bool overwrite = false;
};
Options options;

void add_options(CLI::App& parser) {
  parser.add_option("TABELLE", options.table, "die Tabelle des Netzes, etwa netz.csv")
      ->required()
      ->type_name("");
  parser.add_option("-o,--ausgabe", options.variant, "Pfad der neuen Variante, mit oder ohne \".sys\"")
      ->required()
      ->type_name("VARIANTE");
  parser.add_flag("--auslass", options.join_outlets, "mehrere Auslässe unten in einem Pegel zusammenführen");
  parser.add_flag("--ueberschreiben", options.overwrite, "vorhandene Dateien der Variante ersetzen");
  parser.footer(
      "Die erste Zeile der Tabelle nennt die Spalten, jede weitere beschreibt ein Element:\n"
      "  id           wie das Element in der Tabelle heißt\n"
      "  nach         die id, in die es entwässert; leer am Auslass\n"
      "  flaeche_km2  seine eigene Fläche, ohne die oberhalb\n"
      "und, wo vorhanden:\n"
      "  befestigung  Befestigungsgrad der Fläche, 0 bis 1; über 0 wird sie kanalisiert (K)\n"
      "  name         Bezeichnung; in die Systemdatei kommen davon 17 Zeichen\n"
      "  station      Station einer Transportstrecke [km]\n"
      "  art          N, K, E, T, V, B oder P; leer: eine Transportstrecke (T) mit ihrer Fläche\n"
      "  anteil       Prozent der Fläche, die an nach gehen; der Rest geht an nach2\n"
      "  nach2        das zweite Ziel einer Verzweigung oder eines Beckens\n"
      "Trennzeichen (Komma, Semikolon, Tabulator), Dezimalkomma und Zeichensatz (UTF-8, Windows-1252) werden "
      "erkannt.\n"
      "Elemente, deren id kein Name mit fünf Zeichen ist, bekommen einen; NAME.namen.csv nennt alle.\n"
      "Exit-Status: 0 geschrieben, 1 geschrieben, mit Rundungen über 0.1 %, 2 die Tabelle hat Fehler, 3 eine "
      "Datei\n"
      "ist nicht lesbar oder nicht zu schreiben, 64 falscher Aufruf. Bei 2, 3 und 64 wird nichts "
      "geschrieben.");
}

ExitStatus fail(std::string_view reason) {
  write_error(fmt::format("KV_Schau: {}.", reason));
  return ExitStatus::failed;
}

void require_free_place(const variant::VariantPath& path) {
  const std::vector<std::string> standing = imports::standing_files(path);
  if (standing.empty() || options.overwrite) return;
  throw UsageError{fmt::format("Schon vorhanden: {}; mit --ueberschreiben werden die Dateien ersetzt",
                               fmt::join(standing, ", "))};
}

// With --ueberschreiben, too, the table itself stays.
void require_other_file(const variant::VariantPath& path) {
  for (const imports::VariantText::File& file : imports::VariantText().files) {
    std::error_code ignored;
    if (!fs::equivalent(options.table, path.folder / (path.name + std::string(file.extension)), ignored))
      continue;
    throw UsageError{fmt::format("{} ist selbst eine Datei der neuen Variante", options.table)};
  }
}

ExitStatus write(const Import& import, const variant::VariantPath& path) {
  try {
    const std::vector<std::string> names = imports::write_files(import, path);
    write_out(imports::text_of(import, path.shown));
    write_out(fmt::format("  geschrieben: {}\n", fmt::join(names, ", ")));
  } catch (const run::FileFault& fault) {
    return fail(fault.what());
  }
  return import.text.roundings.empty() ? ExitStatus::clean : ExitStatus::findings;
}

ExitStatus run_command() {
  const auto resolved = variant::resolve_new(options.variant);
  if (const auto* const refusal = std::get_if<variant::Refusal>(&resolved))
    throw UsageError{fmt::format("{}. {}", refusal->reason, refusal->way_out)};
  const auto& path = std::get<variant::VariantPath>(resolved);
  require_free_place(path);
  require_other_file(path);
  const std::string shown = variant::shown_utf8(options.table);
  const TextFile file = TextFile::read(options.table, shown);
  if (file.state() == variant::FileState::missing)
    return fail(fmt::format("Die Datei {} gibt es nicht", shown));
  if (!file.was_read()) return fail(fmt::format("{} ist nicht lesbar: {}", shown, file.fault()));
  const Import import = imports::import_table(file, options.join_outlets);
  if (import.was_taken()) return write(import, path);
  write_error(imports::faults_text(import.table) + "KV_Schau: Nichts geschrieben.");
  return ExitStatus::no_result;
}

const Registration registration({.name = "aus-tabelle",
                                 .description = "macht aus der Tabelle eines Flussnetzes eine Variante",
                                 .rank = 70,
                                 .add_options = add_options,
                                 .run = run_command});

}  // namespace
}  // namespace schau
