#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "KV_Schau/command.h"
#include "KV_Schau/picture.h"
#include "KV_Schau/plan/plan.h"
#include "KV_Schau/plan/svg.h"
#include "KV_Schau/rules/rules.h"
#include "KV_Schau/run/process.h"
#include "KV_Schau/run/whole_file.h"
#include "KV_Schau/terminal.h"
#include "KV_Schau/variant/encoding.h"
#include "KV_Schau/variant_argument.h"

namespace schau {
namespace {

struct Options {
  std::string variant;
  std::string file;
  std::string above;
  std::optional<std::uint32_t> levels;
  bool unfold_sources = false;
};
Options options;

void add_options(CLI::App& parser) {
  parser.add_option("VARIANTE", options.variant, "Pfad der Systemdatei, mit oder ohne \".sys\"")
      ->required()
      ->type_name("");
  parser
      .add_option("-o,--ausgabe", options.file,
                  "die Zeichnung: .svg, oder mit rsvg-convert auch .png oder .pdf")
      ->required()
      ->type_name("DATEI");
  parser.add_option("--oberhalb", options.above, "nur dieses Element und was in es fließt")
      ->type_name("ELEMENT");
  parser
      .add_option("--bis", options.levels, "nur so viele Ebenen aufwärts, vom Auslass oder von --oberhalb an")
      ->type_name("EBENEN");
  parser.add_flag(
      "--quellen", options.unfold_sources,
      fmt::format("auch ab {} Elementen jede Quelle für sich zeichnen, nicht als Zeichen an ihrem "
                  "Element",
                  plan::fold_from));
}

plan::Options what_to_draw(const variant::Variant& variant) {
  plan::Options what;
  what.unfold_sources = options.unfold_sources;
  what.levels = options.levels;
  if (options.above.empty()) return what;
  const std::string name = variant::utf8_to_windows_1252(options.above);
  what.above = name.size() <= variant::name_length ? variant.elements.last(variant::name_of(name)) : 0;
  if (what.above == 0) {
    throw UsageError{
        fmt::format("{} hat kein Element {}", variant.file(variant::FileId::sys).shown(), options.above)};
  }
  return what;
}

ExitStatus fail(std::string_view reason) {
  write_error(fmt::format("KV_Schau: {}.", reason));
  return ExitStatus::failed;
}

ExitStatus draw(const variant::Variant& variant) {
  const variant::TextFile& system = variant.file(variant::FileId::sys);
  if (!system.was_read()) return fail(fmt::format("{} ist nicht lesbar: {}", system.shown(), system.fault()));
  const plan::Options what = what_to_draw(variant);
  const rules::Result checked = rules::check(variant);
  const plan::Facts facts(variant, checked.network, checked.flow, checked.findings);
  const plan::Plan plan = plan::plan_of(facts, what);
  const std::string remark = write_picture(plan::to_svg(plan), {plan.width, plan.height}, options.file);
  if (!remark.empty()) write_error(fmt::format("{}: {}.", options.file, remark));
  const findings::Counts found = findings::count(checked.findings);
  return found.errors + found.warnings == 0 ? ExitStatus::clean : ExitStatus::findings;
}

ExitStatus run_command() {
  if (!names_picture(options.file)) {
    throw UsageError{
        fmt::format("Aus {} geht nicht hervor, was zu zeichnen ist: der Name endet auf .svg, .png "
                    "oder .pdf",
                    options.file)};
  }
  run::prepare_for_processes();
  run::end_on_signals();
  const auto resolved = variant_of(options.variant);
  if (const auto* const refusal = std::get_if<ExitStatus>(&resolved)) return *refusal;
  try {
    return draw(variant::read_variant(std::get<variant::VariantPath>(resolved)));
  } catch (const run::FileFault& fault) {
    return fail(fault.what());
  }
}

const Registration registration({.name = "plan",
                                 .description = "den Systemplan zeichnen: als SVG, PNG oder PDF",
                                 .rank = 34,
                                 .add_options = add_options,
                                 .run = run_command});

}  // namespace
}  // namespace schau
