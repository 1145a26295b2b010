#include "KV_Schau/variant/variant.h"

#include <algorithm>
#include <system_error>

#include "KV_Schau/variant/shown_text.h"
#include "m_System/element_types.h"

namespace schau::variant {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, file_count> extensions = {".sys", ".nfl", ".kfl",  ".trs",
                                                                 ".ver", "",     ".Akum", ".pkl"};
constexpr std::string_view suppression_list = "fehlercode.ex";

std::string file_name(const VariantPath& path, FileId file) {
  if (file == FileId::suppression) return std::string(suppression_list);
  return path.name + std::string(extensions[static_cast<std::size_t>(file)]);
}

// The name of a file in texts: as the variant was given.
std::string shown_name(const VariantPath& path, FileId file) {
  if (file != FileId::suppression)
    return path.shown + std::string(extensions[static_cast<std::size_t>(file)]);
  const std::string folder = path.shown.substr(0, path.shown.size() - shown_utf8(path.name).size());
  return folder + std::string(suppression_list);
}

bool is_input(FileId file) {
  return file != FileId::result && file != FileId::protocol;
}

Surroundings look_around(const VariantPath& path) {
  Surroundings around;
  std::error_code error;
  const fs::path result = path_of(path, FileId::result);
  around.result = fs::exists(result, error);
  around.protocol = fs::exists(path_of(path, FileId::protocol), error);
  if (fs::is_symlink(result, error))
    around.result_link = shown_utf8(fs::read_symlink(result, error).string());
  if (!around.result) return around;
  const fs::file_time_type written = fs::last_write_time(result, error);
  for (std::size_t i = 0; i < file_count; ++i) {
    const auto file = static_cast<FileId>(i);
    const fs::path input = path_of(path, file);
    if (!is_input(file) || !fs::exists(input, error)) continue;
    if (fs::equivalent(result, input, error)) around.result_is_input = shown_name(path, file);
    if (file == FileId::suppression || around.younger_input) continue;
    if (fs::last_write_time(input, error) > written && !error) around.younger_input = shown_name(path, file);
  }
  return around;
}

bool holds_type(std::string_view line, std::uint32_t column) {
  return line.size() >= column && m_System::is_element_type(line[column - 1]);
}

bool is_type_or_blank(std::string_view line, Span span) {
  return holds_type(line, span.first) || is_blank(span.of(line));
}

bool ends_system(std::string_view line) {
  return sys_columns::outflow[0].of(line).substr(0, 4) == "ENDE" && is_blank(columns(line, 68, 68));
}

void find_elements(Variant& variant) {
  variant.names.assign(1, blank_name);
  variant.element_lines.assign(1, 0);
  const TextFile& file = variant.file(FileId::sys);
  constexpr std::size_t usual_line = 68;
  variant.names.reserve(file.bytes().size() / usual_line);
  variant.element_lines.reserve(file.bytes().size() / usual_line);
  for (std::uint32_t number = 1; number <= file.line_count(); ++number) {
    const std::string_view line = file.line(number).substr(0, sys_line_width);
    if (!is_element_line(line)) continue;
    if (variant.has_end) {
      variant.lines_behind_end.push_back(number);
      continue;
    }
    variant.names.push_back(name_at(line, sys_columns::name.first));
    variant.element_lines.push_back(number);
    variant.has_end = ends_system(line);
  }
}

// Looks names of records up. Mostly the next one belongs to the next element of the file's type.
class RecordNames {
 public:
  RecordNames(const Variant& variant, char type) : variant_(variant), type_(type) {}

  std::uint32_t find(NameKey name) {
    const std::uint32_t next = next_of_type();
    const bool is_next = next != 0 && variant_.names[next] == name && !variant_.elements.has_repetitions();
    const std::uint32_t element = is_next ? next : variant_.elements.first(name);
    if (element != 0 && variant_.type(element) == type_) last_ = element;
    return element;
  }

 private:
  [[nodiscard]] std::uint32_t next_of_type() const {
    constexpr std::uint32_t farthest = 16;
    const std::uint32_t end = std::min(variant_.element_count(), last_ + farthest);
    for (std::uint32_t i = last_ + 1; i <= end; ++i) {
      if (variant_.type(i) == type_) return i;
    }
    return 0;
  }

  const Variant& variant_;
  char type_;
  std::uint32_t last_ = 0;
};

void find_data_lines(Variant& variant, FileId id) {
  const TextFile& file = variant.file(id);
  RecordNames names(variant, type_of_file(id));
  std::vector<DataLine>& records = variant.data_lines[static_cast<std::size_t>(id) - 1];
  std::vector<std::uint32_t>& others = variant.other_lines[static_cast<std::size_t>(id) - 1];
  for (std::uint32_t number = 1; number <= file.line_count(); ++number) {
    const std::string_view line = file.line(number);
    const NameKey name = name_at(line, data_columns::name.first);
    const std::uint32_t element = name == blank_name ? 0 : names.find(name);
    if (element != 0) {
      records.push_back({number, element});
    } else if (!is_blank(line)) {
      others.push_back(number);
    }
  }
}

}  // namespace

std::optional<FileId> data_file_of(char type) {
  for (const FileId file : data_files) {
    if (type_of_file(file) == type) return file;
  }
  return std::nullopt;
}

char type_of_file(FileId file) {
  constexpr std::string_view types = " NKTV";
  const auto position = static_cast<std::size_t>(file);
  return position < types.size() ? types[position] : ' ';
}

// A blank first column of an inflow asks for blanks up to the end of the third inflow.
bool is_element_line(std::string_view line) {
  constexpr std::uint32_t last_inflow = sys_columns::inflow[2].last;
  if (!holds_type(line, sys_columns::name.first)) return false;
  for (const Span inflow : sys_columns::inflow) {
    if (!is_type_or_blank(line, {inflow.first, last_inflow})) return false;
  }
  return std::ranges::all_of(sys_columns::outflow,
                             [&](Span outflow) { return is_type_or_blank(line, outflow); });
}

fs::path path_of(const VariantPath& path, FileId file) {
  return path.folder / file_name(path, file);
}

Variant read_variant(const VariantPath& path) {
  Variant variant;
  variant.path = path;
  for (std::size_t i = 0; i < file_count; ++i) {
    const auto file = static_cast<FileId>(i);
    variant.files[i] = is_input(file) ? TextFile::read(path_of(path, file), shown_name(path, file))
                                      : TextFile::named(shown_name(path, file));
  }
  variant.surroundings = look_around(path);
  take_in(variant);
  return variant;
}

void take_in(Variant& variant) {
  find_elements(variant);
  variant.elements.fill(variant.names);
  for (const FileId file : data_files) find_data_lines(variant, file);
}

Place place_of_element(const Variant& variant, std::uint32_t element) {
  return {FileId::sys, variant.element_lines[element], sys_columns::name.first, sys_columns::name.width()};
}

std::optional<Place> find_name(const Variant& variant, FileId file, NameKey name) {
  const std::uint32_t element = variant.elements.first(name);
  if (element == 0) return std::nullopt;
  if (file == FileId::sys) return place_of_element(variant, element);
  if (std::ranges::find(data_files, file) == data_files.end()) return std::nullopt;
  const std::vector<DataLine>& lines = variant.lines_of(file);
  const auto found = std::ranges::find(lines, element, &DataLine::element);
  if (found == lines.end()) return std::nullopt;
  return Place{file, found->line, data_columns::name.first, data_columns::name.width()};
}

}  // namespace schau::variant
