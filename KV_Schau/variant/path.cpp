#include "KV_Schau/variant/path.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>
#include <vector>

#include "KV_Schau/variant/shown_text.h"

namespace schau::variant {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view system_extension = ".sys";
constexpr std::array<std::string_view, 6> other_extensions = {".nfl", ".kfl",  ".trs",
                                                              ".ver", ".Akum", ".pkl"};

bool exists(const std::string& path) {
  std::error_code ignored;
  return fs::exists(path, ignored);
}

bool is_folder(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(path, ignored);
}

bool ends_with_system_extension(const std::string& argument) {
  return argument.ends_with(system_extension) && !exists(argument + std::string(system_extension));
}

std::string without_end(const std::string& text, std::string_view end) {
  return text.substr(0, text.size() - end.size());
}

std::string lower_case(std::string text) {
  for (char& letter : text) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return text;
}

// The names of the files of a folder that a test holds for, in order, at most five.
template <class Test>
std::vector<std::string> files_of(const fs::path& folder, const Test& test) {
  constexpr std::size_t most = 5;
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::string name = entry->path().filename().string();
    if (test(name)) names.push_back(std::move(name));
  }
  std::ranges::sort(names);
  if (names.size() > most) {
    names.resize(most);
    names.emplace_back("...");
  }
  for (std::string& name : names) name = shown_utf8(name);
  return names;
}

std::string joined(const std::vector<std::string>& names) {
  return fmt::format("{}", fmt::join(names, ", "));
}

Refusal of_folder(const std::string& argument) {
  const auto is_system = [](const std::string& name) { return name.ends_with(system_extension); };
  const std::vector<std::string> systems = files_of(argument, is_system);
  return {Refusal::Kind::missing, fmt::format("\"{}\" ist ein Ordner, keine Variante", shown_utf8(argument)),
          systems.empty() ? "Der Ordner enthält keine Systemdatei (*.sys)"
                          : fmt::format("Darin liegen: {}", joined(systems))};
}

Refusal of_missing_name(const std::string& argument) {
  return {Refusal::Kind::unusable, fmt::format("\"{}\" nennt keine Variante", shown_utf8(argument)),
          "Anzugeben ist der Pfad der Systemdatei, mit oder ohne \".sys\""};
}

Refusal of_blank(const std::string& name) {
  std::string suggestion = name;
  std::ranges::replace(suggestion, ' ', '_');
  return {Refusal::Kind::unusable,
          fmt::format("Der Variantenname \"{}\" enthält ein Leerzeichen; KV_Akum würde ihn dort abschneiden",
                      shown_utf8(name)),
          fmt::format(
              "Die Dateien der Variante umbenennen, etwa in \"{}.*\" (Ordner dürfen Leerzeichen enthalten)",
              shown_utf8(suggestion))};
}

Refusal of_length(const std::string& name) {
  return {
      Refusal::Kind::unusable,
      fmt::format("Der Variantenname \"{}\" hat {} Zeichen (Bytes); mit mehr als {} schneidet KV_Akum den "
                  "Namen des Protokolls ab",
                  shown_utf8(name), name.size(), longest_name),
      "Die Dateien der Variante kürzer benennen (die Länge der Ordnernamen ist gleichgültig)"};
}

// What a path that leads to no system file may have been meant to be; empty when nothing comes to mind.
std::string meant_path(const std::string& base, const fs::path& folder, const std::string& name) {
  for (const std::string_view extension : other_extensions) {
    if (!base.ends_with(extension)) continue;
    const std::string bare = without_end(base, extension);
    if (exists(bare + std::string(system_extension)))
      return fmt::format("Gemeint ist wohl \"{}\"", shown_utf8(bare));
  }
  std::string slashes = base;
  std::ranges::replace(slashes, '\\', '/');
  if (slashes != base && exists(slashes + std::string(system_extension))) {
    return fmt::format("Ordner werden hier durch Schrägstriche getrennt: \"{}\"", shown_utf8(slashes));
  }
  const std::string wanted = lower_case(name + std::string(system_extension));
  const auto same_letters = [&](const std::string& file) { return lower_case(file) == wanted; };
  const std::vector<std::string> other_case = files_of(folder, same_letters);
  if (!other_case.empty()) {
    return fmt::format("Groß- und Kleinschreibung zählt; vorhanden ist: {}", joined(other_case));
  }
  const auto is_system = [](const std::string& file) { return file.ends_with(system_extension); };
  const std::vector<std::string> systems = files_of(folder, is_system);
  return systems.empty() ? "" : fmt::format("Im selben Ordner liegen: {}", joined(systems));
}

}  // namespace

std::variant<VariantPath, Refusal> resolve_new(const std::string& argument) {
  const std::string base =
      ends_with_system_extension(argument) ? without_end(argument, system_extension) : argument;
  const fs::path path(base);
  const std::string name = path.filename().string();
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  if (name.empty()) return of_missing_name(argument);
  if (name.find(' ') != std::string::npos) return of_blank(name);
  if (name.size() > longest_name) return of_length(name);
  return VariantPath{folder, name, shown_utf8(base)};
}

std::variant<VariantPath, Refusal> resolve(const std::string& argument) {
  const std::string base =
      ends_with_system_extension(argument) ? without_end(argument, system_extension) : argument;
  const std::string system_file = base + std::string(system_extension);
  if (!argument.empty() && !exists(system_file) && is_folder(argument)) return of_folder(argument);
  auto resolved = resolve_new(argument);
  const auto* const variant = std::get_if<VariantPath>(&resolved);
  if (variant == nullptr || exists(system_file)) return resolved;
  return Refusal{Refusal::Kind::missing,
                 fmt::format("Die Datei \"{}\" gibt es nicht", shown_utf8(system_file)),
                 meant_path(base, variant->folder, variant->name)};
}

}  // namespace schau::variant
