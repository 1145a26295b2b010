#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "KV_Schau/command.h"
#include "KV_Schau/network/network.h"
#include "KV_Schau/network/order.h"
#include "KV_Schau/network/upstream.h"
#include "KV_Schau/network/values.h"
#include "KV_Schau/run/read_file.h"
#include "KV_Schau/run/run.h"
#include "KV_Schau/run/table_output.h"
#include "KV_Schau/run/whole_file.h"
#include "KV_Schau/terminal.h"
#include "KV_Schau/variant/records.h"
#include "KV_Schau/variant_argument.h"

namespace schau {
namespace {

namespace fs = std::filesystem;
using variant::FileId;

struct Options {
  std::string variant;
  bool csv = false;
  bool json = false;
  bool german = false;
  bool more = false;
  std::string file;
};
Options options;

void add_options(CLI::App& parser) {
  parser.add_option("VARIANTE", options.variant, "Pfad der Systemdatei, mit oder ohne \".sys\"")
      ->required()
      ->type_name("");
  CLI::Option* const csv = parser.add_flag("--csv", options.csv, "als CSV nach RFC 4180");
  parser.add_flag("--json", options.json, "als JSON")->excludes(csv);
  parser
      .add_flag("--deutsch", options.german,
                "CSV mit Semikolon, Dezimalkomma und BOM, wie deutsche Tabellenprogramme es nehmen")
      ->needs(csv);
  parser.add_flag("--mehr", options.more,
                  "dazu Ordnung nach Strahler, Zahl der Elemente oberhalb und das Einzugsgebiet, in dem jede "
                  "Fläche einmal zählt, wie auch immer Verzweigungen teilen");
  parser.add_option("-o,--ausgabe", options.file, "in eine Datei statt auf die Standardausgabe")
      ->type_name("DATEI");
}

using Write = std::function<void(std::string_view)>;

// A table and, when it is wanted, what lies upstream of each reach.
struct Shown {
  const run::Table& table;
  std::vector<run::Upstream> upstream;

  [[nodiscard]] const run::Upstream* upstream_of(std::size_t reach) const {
    return upstream.empty() ? nullptr : &upstream[reach];
  }
};

// Writes one row after the other, in pieces of a useful size.
void write_rows(const Shown& shown, const Write& write,
                const std::function<void(std::string&, std::size_t)>& append_row) {
  constexpr std::size_t piece_size = std::size_t{1} << 18U;
  std::string piece;
  for (std::size_t i = 0; i < shown.table.reaches.size(); ++i) {
    append_row(piece, i);
    if (piece.size() < piece_size) continue;
    write(piece);
    piece.clear();
  }
  write(piece);
}

void write_csv(const Shown& shown, const Write& write) {
  const run::CsvForm& form = options.german ? run::german_csv : run::plain_csv;
  std::string titles;
  run::append_csv_titles(titles, form, options.more);
  write(titles);
  write_rows(shown, write, [&](std::string& out, std::size_t i) {
    run::append_csv_row(out, shown.table.reaches[i], form, shown.upstream_of(i));
  });
}

void write_json(const Shown& shown, const variant::Variant& variant, const Write& write) {
  const auto quoted = [](const std::string& text) { return nlohmann::json(text).dump(); };
  write(fmt::format("{{\"variante\": {},\n \"datei\": {},\n \"strecken\": [", quoted(variant.path.shown),
                    quoted(variant.file(FileId::result).shown())));
  std::string_view before = "\n  ";
  write_rows(shown, write, [&](std::string& out, std::size_t i) {
    out += std::exchange(before, ",\n  ");
    run::append_json_row(out, shown.table.reaches[i], shown.upstream_of(i));
  });
  write("\n ]}\n");
}

void write_table(const Shown& shown, const variant::Variant& variant, const Write& write) {
  if (options.json) return write_json(shown, variant, write);
  if (options.csv) return write_csv(shown, write);
  write(run::text_of(shown.table, 0, shown.upstream));
}

void write_to_file(const Shown& shown, const variant::Variant& variant) {
  run::WholeFile file(options.file);
  write_table(shown, variant, [&](std::string_view bytes) { file.stream() << bytes; });
  file.commit();
}

ExitStatus fail(std::string_view reason) {
  write_error(fmt::format("KV_Schau: {}.", reason));
  return ExitStatus::failed;
}

// What speaks against the table, although it is whole.
ExitStatus warn(const run::Table& table, const variant::Variant& variant) {
  ExitStatus status = ExitStatus::clean;
  const std::string& shown = variant.file(FileId::result).shown();
  const auto tell = [&](const std::string& warning) {
    write_error(fmt::format("{}: Warnung: {}.", shown, warning));
    status = ExitStatus::findings;
  };
  if (variant.surroundings.younger_input) {
    tell(fmt::format("{} ist jünger als das Ergebnis; bitte neu rechnen",
                     *variant.surroundings.younger_input));
  }
  if (const std::string fault = run::fault_of_table(table, variant); !fault.empty()) tell(fault);
  return status;
}

std::vector<run::Upstream> upstream_of_reaches(const run::Table& table, const variant::Variant& variant) {
  const network::Network network = network::link(variant);
  const std::vector<network::Upstream> upstream =
      network::look_upstream(variant, network, network::flow_order(network),
                             network::take_values(variant, variant::find_records(variant)));
  std::vector<run::Upstream> reaches;
  for (const run::Reach& reach : table.reaches) {
    const network::Upstream& found = upstream[variant.elements.first(reach.name)];
    reaches.push_back({found.stream_order, found.elements, found.catchment});
  }
  return reaches;
}

ExitStatus show(const variant::Variant& variant) {
  const std::string& shown = variant.file(FileId::result).shown();
  if (!variant.surroundings.result) {
    return fail(fmt::format("{} gibt es nicht; das Ergebnis entsteht mit \"KV_Schau rechnen {}\"", shown,
                            variant.path.shown));
  }
  const run::Table table =
      run::parse_table(run::read_file(variant.path.folder / (variant.path.name + ".Akum")));
  if (table.fault) return fail(fmt::format("{}: {}", shown, run::text_of(*table.fault, table.fault_line)));
  Shown shown_table{table, {}};
  if (options.more) {
    // What lies upstream of a reach of another network cannot be told.
    if (const std::string fault = run::fault_of_table(table, variant); !fault.empty())
      return fail(fmt::format("{}: {}; für --mehr bitte neu rechnen", shown, fault));
    shown_table.upstream = upstream_of_reaches(table, variant);
  }
  if (options.file.empty()) {
    write_table(shown_table, variant, [](std::string_view bytes) { write_out(bytes); });
  } else {
    write_to_file(shown_table, variant);
  }
  return warn(table, variant);
}

// A file of the variant that the output would destroy.
void require_other_file(const variant::Variant& variant) {
  for (const variant::TextFile& file : variant.files) {
    std::error_code ignored;
    if (!fs::equivalent(options.file, variant.path.folder / fs::path(file.shown()).filename(), ignored))
      continue;
    throw UsageError{
        fmt::format("{} ist eine Datei der Variante und wird nicht überschrieben", options.file)};
  }
}

ExitStatus run_command() {
  const auto resolved = variant_of(options.variant);
  if (const auto* const refusal = std::get_if<ExitStatus>(&resolved)) return *refusal;
  const variant::Variant variant = variant::read_variant(std::get<variant::VariantPath>(resolved));
  if (!options.file.empty()) require_other_file(variant);
  try {
    return show(variant);
  } catch (const run::FileFault& fault) {
    return fail(fault.what());
  }
}

const Registration registration({.name = "tabelle",
                                 .description = "das letzte Ergebnis ausgeben: als Text, CSV oder JSON",
                                 .rank = 30,
                                 .add_options = add_options,
                                 .run = run_command});

}  // namespace
}  // namespace schau
