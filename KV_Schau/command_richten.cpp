#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "KV_Schau/command.h"
#include "KV_Schau/mend/diff.h"
#include "KV_Schau/mend/mend.h"
#include "KV_Schau/run/whole_file.h"
#include "KV_Schau/terminal.h"
#include "KV_Schau/variant/variant.h"
#include "KV_Schau/variant_argument.h"

namespace schau {
namespace {

struct Options {
  std::string variant;
  bool write = false;
  bool replace_older = false;
};
Options options;

void add_options(CLI::App& parser) {
  parser.add_option("VARIANTE", options.variant, "Pfad der Systemdatei, mit oder ohne \".sys\"")
      ->required()
      ->type_name("");
  CLI::Option* const write =
      parser.add_flag("--schreiben", options.write,
                      "die gerichteten Dateien schreiben; die alten bleiben als NAME.sys~ usw.");
  parser
      .add_flag("--sicherung-ersetzen", options.replace_older,
                "dabei auch ältere Dateien NAME.sys~ usw. mit anderem Inhalt ersetzen")
      ->needs(write);
  parser.footer(
      "Richtet, was nur eine Bedeutung hat, und zeigt zuerst, was sich ändert:\n"
      "  UTF-8 in Windows-1252, gemischte und doppelte Zeilenenden, Leerzeichen am Zeilenende,\n"
      "  Tabulatoren, wenn eine Schrittweite alles in seine Spalten bringt, Dezimalkommas in Zahlenfeldern,\n"
      "  Elemente, die vor ihren Zuläufen stehen: gleich hinter den letzten davon, alle anderen bleiben.\n"
      "Was auch anders gemeint sein könnte, bleibt stehen.\n"
      "Exit-Status: 0 nichts zu richten oder alles geschrieben, 1 es gibt etwas zu richten, 3 eine Datei "
      "fehlt,\n"
      "ist nicht lesbar oder nicht zu schreiben, 64 falscher Aufruf.");
}

ExitStatus fail(std::string_view reason) {
  write_error(fmt::format("KV_Schau: {}.", reason));
  return ExitStatus::failed;
}

void show(const mend::Mended& mended, const variant::Variant& variant) {
  const mend::DiffColours& colours = use_colours() ? mend::terminal_colours : mend::no_colours;
  std::string out;
  for (const mend::MendedFile& file : mended.files)
    mend::append_diff(out, file, variant.file(file.id), colours);
  for (const mend::MendedFile& file : mended.files) {
    if (file.is_changed()) out += fmt::format("{}: {}\n", variant.file(file.id).shown(), mend::summary(file));
  }
  for (const mend::Left& left : mended.left) {
    const std::string line = left.line == 0 ? "" : fmt::format("{}:", left.line);
    out += fmt::format("{}:{} Hinweis: {}\n", variant.file(left.file).shown(), line, left.text);
  }
  write_out(out);
}

ExitStatus write_files(const mend::Mended& mended, const variant::Variant& variant) {
  try {
    const std::vector<std::string> names = mend::write(mended, variant, options.replace_older);
    write_out(fmt::format("geschrieben: {}\n", fmt::join(names, ", ")));
  } catch (const run::FileFault& fault) {
    return fail(fault.what());
  }
  return ExitStatus::clean;
}

ExitStatus run_command() {
  const auto resolved = variant_of(options.variant);
  if (const auto* const refusal = std::get_if<ExitStatus>(&resolved)) return *refusal;
  const variant::Variant variant = variant::read_variant(std::get<variant::VariantPath>(resolved));
  for (const variant::TextFile& file : variant.files) {
    if (file.state() == variant::FileState::unreadable)
      return fail(fmt::format("{} ist nicht lesbar: {}", file.shown(), file.fault()));
  }
  const mend::Mended mended = mend::mend(variant);
  show(mended, variant);
  if (!mended.is_changed()) {
    write_out(fmt::format("{}: nichts zu richten\n", variant.path.shown));
    return ExitStatus::clean;
  }
  if (options.write) return write_files(mended, variant);
  write_out(
      fmt::format("Nichts geschrieben; das tut \"KV_Schau richten {} --schreiben\"\n", variant.path.shown));
  return ExitStatus::findings;
}

const Registration registration(
    {.name = "richten",
     .description = "behebt, was an den Dateien einer Variante eindeutig falsch ist",
     .rank = 60,
     .add_options = add_options,
     .run = run_command});

}  // namespace
}  // namespace schau
