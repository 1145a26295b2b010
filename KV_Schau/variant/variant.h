#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/variant/names.h"
#include "KV_Schau/variant/path.h"
#include "KV_Schau/variant/text_file.h"

/// The files of a variant as a person sees them, and what KV_Akum takes from them.
namespace schau::variant {

/// The files that a finding can lie in: those of the variant in the order in which a run reads them, then
/// those around it.
enum class FileId : std::uint8_t { sys, nfl, kfl, trs, ver, suppression, result, protocol };
inline constexpr std::size_t file_count = 8;

/// The file with the records of the elements of a type; nothing for types without one.
std::optional<FileId> data_file_of(char type);
/// The type whose records a data file holds.
char type_of_file(FileId file);
/// The files with records of elements.
inline constexpr std::array<FileId, 4> data_files = {FileId::nfl, FileId::kfl, FileId::trs, FileId::ver};

/// Where something stands. Columns are those of KV_Akum: bytes, from 1.
struct Place {
  FileId file = FileId::sys;
  std::uint32_t line = 0;    ///< from 1; 0: the file as a whole
  std::uint32_t column = 1;  ///< of the first byte
  std::uint32_t length = 0;  ///< in bytes; 0: nothing is marked but the column

  bool operator==(const Place&) const = default;
};

/// Columns of a line, from 1, both included.
struct Span {
  std::uint32_t first = 0;
  std::uint32_t last = 0;

  [[nodiscard]] std::uint32_t width() const { return last - first + 1; }
  [[nodiscard]] std::string_view of(std::string_view line) const { return columns(line, first, last); }
};

/// Columns of an element line.
namespace sys_columns {
inline constexpr Span tag3{4, 6};
inline constexpr Span tag7{8, 14};
inline constexpr Span name{36, 40};
inline constexpr std::array<Span, 3> inflow = {{{44, 48}, {50, 54}, {56, 60}}};
inline constexpr std::array<Span, 2> outflow = {{{64, 68}, {70, 74}}};
/// What stands behind is not read.
inline constexpr std::uint32_t last_read = 74;
}  // namespace sys_columns

/// Columns of a record in a data file.
namespace data_columns {
inline constexpr Span name{4, 8};
inline constexpr Span area{11, 15};
inline constexpr Span sealing{16, 20};
inline constexpr Span unit{11, 15};
inline constexpr Span code{11, 14};
inline constexpr Span share{16, 20};
inline constexpr Span station{11, 18};
/// A reach whose line is not blank here is of kind 2: its station stands in the next line.
inline constexpr Span profile{57, 66};
/// KV_Akum cuts lines of data files here.
inline constexpr std::uint32_t line_width = 500;
}  // namespace data_columns

/// KV_Akum cuts lines of the system file here.
inline constexpr std::uint32_t sys_line_width = 100;

/// True when KV_Akum takes the line for an element.
bool is_element_line(std::string_view line);

/// A line of a data file whose name columns hold the name of an element, of whatever type.
struct DataLine {
  std::uint32_t line = 0;
  std::uint32_t element = 0;  ///< the first of that name
};

/// What lies around the inputs of a variant.
struct Surroundings {
  bool result = false;    ///< an old result
  bool protocol = false;  ///< an old protocol
  /// The target when the result's name is a symbolic link.
  std::optional<std::string> result_link;
  /// The name of the input or suppression list that is the same file as the result.
  std::optional<std::string> result_is_input;
  /// The name of an input that is younger than the old result.
  std::optional<std::string> younger_input;
};

struct Variant {
  VariantPath path;
  std::array<TextFile, file_count> files;  ///< by `FileId`; result and protocol are not read
  Surroundings surroundings;

  /// The elements in system order, from 1 (entry 0 is not used), up to the one that ends the system.
  std::vector<NameKey> names;
  std::vector<std::uint32_t> element_lines;  ///< line in the system file, by element
  /// The lines behind the end marker that KV_Akum counts as elements but does not store.
  std::vector<std::uint32_t> lines_behind_end;
  /// True when the last element has the end marker.
  bool has_end = false;
  NameIndex elements;

  /// By data file (in the order of `data_files`), in file order.
  std::array<std::vector<DataLine>, 4> data_lines;
  /// The other lines of the data files that are not blank: headings, unit lines, stations, misspelt records.
  std::array<std::vector<std::uint32_t>, 4> other_lines;

  [[nodiscard]] const TextFile& file(FileId id) const { return files[static_cast<std::size_t>(id)]; }
  [[nodiscard]] std::uint32_t element_count() const { return static_cast<std::uint32_t>(names.size()) - 1; }
  [[nodiscard]] char type(std::uint32_t element) const { return letter_of(names[element]); }
  [[nodiscard]] std::string_view element_line(std::uint32_t element) const {
    return file(FileId::sys).line(element_lines[element]);
  }
  [[nodiscard]] const std::vector<DataLine>& lines_of(FileId data_file) const {
    return data_lines[static_cast<std::size_t>(data_file) - 1];
  }
  [[nodiscard]] const std::vector<std::uint32_t>& other_lines_of(FileId data_file) const {
    return other_lines[static_cast<std::size_t>(data_file) - 1];
  }
};

/// Where a file of a variant lies.
std::filesystem::path path_of(const VariantPath& path, FileId file);

/// Reads all files of a variant. What is missing or cannot be read shows in the states of the files.
Variant read_variant(const VariantPath& path);

/// Finds elements and records in files that are there already: their `files` and `path` are given.
void take_in(Variant& variant);

/// The name of an element in its line of the system file. `element` is 1 .. `element_count()`.
Place place_of_element(const Variant& variant, std::uint32_t element);

/// The first place of an element's name in a file of the variant; nothing when no line bears it. Goes through
/// the file: for many names see `find_records` in "KV_Schau/variant/records.h".
std::optional<Place> find_name(const Variant& variant, FileId file, NameKey name);

}  // namespace schau::variant
