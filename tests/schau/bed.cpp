#include "tests/schau/bed.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "KV_Schau/variant/encoding.h"
#include "KV_Schau/variant/text_file.h"

namespace schau_test {
namespace {

using schau::variant::TextFile;
using schau::variant::Variant;

void put_into(std::string& line, std::size_t column, std::string_view text) {
  if (line.size() < column - 1 + text.size()) line.resize(column - 1 + text.size(), ' ');
  std::copy(text.begin(), text.end(), line.begin() + static_cast<std::ptrdiff_t>(column) - 1);
}

std::vector<std::string> all_bytes_of(const std::vector<std::string_view>& texts) {
  std::vector<std::string> lines;
  for (const std::string_view text : texts) lines.push_back(bytes_of(text));
  return lines;
}

}  // namespace

std::string bytes_of(std::string_view text) {
  return schau::variant::utf8_to_windows_1252(text);
}

std::string text_of(const SystemLine& line) {
  static constexpr std::array<std::size_t, 3> inflow_columns = {44, 50, 56};
  static constexpr std::array<std::size_t, 2> outflow_columns = {64, 70};
  std::string text;
  if (!line.tag3.empty()) put_into(text, 4, line.tag3);
  if (!line.tag7.empty()) put_into(text, 8, line.tag7);
  if (!line.description.empty()) put_into(text, 17, line.description);
  put_into(text, 36, line.name);
  for (std::size_t k = 0; k < line.inflows.size(); ++k) put_into(text, inflow_columns.at(k), line.inflows[k]);
  for (std::size_t k = 0; k < line.outflows.size(); ++k)
    put_into(text, outflow_columns.at(k), line.outflows[k]);
  return text;
}

Bed::Bed() {
  replace(FileId::sys, {
                           bytes_of("Systemlogik des Prüfnetzes"),
                           "                Bezeichnung        <Name>  Einl. 1-3           Ausl. 1-2",
                           text_of({"N0010", {}, {"T0010"}}),
                           text_of({"K0010", {}, {"T0010"}}),
                           text_of({"T0010", {"N0010", "K0010"}, {"V0010"}}),
                           text_of({"V0010", {"T0010"}, {"T0020", "T0030"}, "BW", "V-01"}),
                           text_of({"T0020", {"V0010"}, {"T0040"}}),
                           text_of({"T0030", {"V0010"}, {"T0040"}}),
                           text_of({"N0020", {}, {"T0040"}}),
                           text_of({"T0040", {"T0020", "T0030", "N0020"}, {"P0010"}}),
                           text_of({"P0010", {"T0040"}, {"T0050"}}),
                           text_of({"T0050", {"P0010"}, {"ENDE"}}),
                       });
  replace(FileId::nfl, all_bytes_of({
                           "   Name   Areal Bef.",
                           "          qkm",
                           "   N0010  12.40 0.00",
                           "          ha",
                           "   N0020  250.0 0.00",
                       }));
  replace(FileId::kfl, all_bytes_of({
                           "   Name   Areal Bef.",
                           "          ha",
                           "   K0010  64.50 0.35",
                       }));
  replace(FileId::trs, all_bytes_of({
                           "   Name       km                                        Profil",
                           "   T0010    21.700                                      Profil 1",
                           "            18.250",
                           "   T0020    18.250                                      Profil 2",
                           "            12.900",
                           "   T0030    18.250                                      Profil 3",
                           "            12.500",
                           "   T0040    12.500                                      Profil 4",
                           "             9.475",
                           "   T0050     9.475                                      Profil 5",
                           "             6.125",
                       }));
  replace(FileId::ver, all_bytes_of({
                           "   Name   Ken. Anteil",
                           "   V0010     1  65.0",
                       }));
  for (const FileId file : {FileId::suppression, FileId::result, FileId::protocol}) remove(file);
}

Bed Bed::empty() {
  Bed bed;
  for (auto& lines : bed.lines_) lines.clear();
  return bed;
}

void Bed::put(FileId file, std::size_t number, std::size_t column, std::string_view text) {
  put_into(line(file, number), column, text);
}

void Bed::insert(FileId file, std::size_t number, std::string_view text) {
  lines(file).insert(lines(file).begin() + static_cast<std::ptrdiff_t>(number - 1), std::string(text));
  missing_[static_cast<std::size_t>(file)] = false;
}

void Bed::erase(FileId file, std::size_t number) {
  lines(file).erase(lines(file).begin() + static_cast<std::ptrdiff_t>(number) - 1);
}

void Bed::set_bytes(FileId file, std::string bytes) {
  raw_bytes_[static_cast<std::size_t>(file)] = std::move(bytes);
  lines(file).clear();
}

std::string Bed::bytes(FileId file) const {
  std::string bytes = raw_bytes_[static_cast<std::size_t>(file)];
  for (const std::string& line : lines(file)) bytes += line + "\n";
  return bytes;
}

Variant Bed::variant() const {
  Variant variant;
  variant.path = {".", name, name};
  variant.surroundings = surroundings;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const auto file = static_cast<FileId>(i);
    const std::string shown =
        file == FileId::suppression ? "fehlercode.ex" : name + "." + std::string(extension_of(file));
    variant.files[i] = missing_[i] ? TextFile::named(shown) : TextFile::of_bytes(bytes(file), shown);
    if (folder_[i]) variant.files[i] = TextFile::read(std::filesystem::temp_directory_path(), shown);
  }
  schau::variant::take_in(variant);
  return variant;
}

std::string_view extension_of(FileId file) {
  static constexpr std::array<std::string_view, schau::variant::file_count> extensions = {
      "sys", "nfl", "kfl", "trs", "ver", "ex", "Akum", "pkl"};
  return extensions.at(static_cast<std::size_t>(file));
}

std::string place_words(const schau::variant::Place& place) {
  std::string file(extension_of(place.file));
  if (place.line == 0) return file;
  return file + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + "+" +
         std::to_string(place.length);
}

std::vector<schau::findings::Finding> findings_of(const Bed& bed, std::string_view rule) {
  if (schau::rules::rule_named(rule) == nullptr) throw std::runtime_error("no rule " + std::string(rule));
  const schau::variant::Variant variant = bed.variant();
  std::vector<schau::findings::Finding> found = schau::rules::check(variant).findings;
  std::erase_if(found, [&](const auto& finding) { return finding.rule->identifier != rule; });
  return found;
}

std::vector<std::string> all_findings(const Bed& bed) {
  const schau::variant::Variant variant = bed.variant();
  std::vector<std::string> words;
  for (const schau::findings::Finding& finding : schau::rules::check(variant).findings) {
    words.push_back(std::string(finding.rule->identifier) + " " + place_words(finding.place));
  }
  return words;
}

}  // namespace schau_test
