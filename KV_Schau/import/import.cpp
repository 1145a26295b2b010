#include "KV_Schau/import/import.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "KV_Schau/run/whole_file.h"

namespace schau::imports {
namespace {

namespace fs = std::filesystem;

void refuse_several_outlets(NetTable& table) {
  constexpr std::size_t most_shown = 10;
  std::vector<std::string> outlets;
  for (const std::uint32_t row : table.outlets) {
    if (outlets.size() == most_shown) {
      outlets.emplace_back("...");
      break;
    }
    outlets.push_back(fmt::format("{} (Zeile {})", table.rows[row].id, table.rows[row].line));
  }
  table.refuse(
      table.rows[table.outlets[1]].line,
      fmt::format("{} Auslässe (nach ist leer): {}; ein Netz hat einen, oder --auslass führt sie zusammen",
                  table.outlets.size(), fmt::join(outlets, ", ")));
}

// Faults that show only while the text is written.
void refuse_wide_areas(Import& import) {
  if (import.text.too_wide.empty()) return;
  for (const std::uint32_t row : import.text.too_wide) {
    import.table.refuse(import.table.rows[row].line,
                        fmt::format("flaeche_km2 {} ist zu groß: in fünf Spalten stehen höchstens 99999 km²",
                                    import.table.rows[row].area));
  }
  import.elements.clear();
  import.text = {};
}

}  // namespace

Import import_table(const variant::TextFile& file, bool join_outlets) {
  Import import;
  import.table = read_net_table(file);
  if (!import.was_taken()) return import;
  if (import.table.outlets.size() > 1 && !join_outlets) {
    refuse_several_outlets(import.table);
    return import;
  }
  import.elements = build(import.table);
  import.text = variant_text(import.table, import.elements);
  refuse_wide_areas(import);
  return import;
}

std::vector<std::string> standing_files(const variant::VariantPath& path) {
  std::vector<std::string> names;
  for (const VariantText::File& file : VariantText().files) {
    std::error_code ignored;
    const std::string extension(file.extension);
    if (fs::exists(path.folder / (path.name + extension), ignored)) names.push_back(path.shown + extension);
  }
  return names;
}

std::vector<std::string> write_files(const Import& import, const variant::VariantPath& path) {
  std::vector<std::unique_ptr<run::WholeFile>> files;
  std::vector<std::string> names;
  for (const VariantText::File& file : import.text.files) {
    if (file.bytes.empty()) continue;
    const std::string extension(file.extension);
    files.push_back(std::make_unique<run::WholeFile>(path.folder / (path.name + extension)));
    files.back()->stream() << file.bytes;
    names.push_back(path.shown + extension);
  }
  run::commit_all(files);
  return names;
}

}  // namespace schau::imports
