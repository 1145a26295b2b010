#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/findings/finding.h"
#include "KV_Schau/rules/rules.h"
#include "KV_Schau/variant/variant.h"

/// Variants in memory for the tests of KV_Schau.
namespace schau_test {

using schau::variant::FileId;

/// The text of a source file (UTF-8) in Windows-1252.
std::string bytes_of(std::string_view text);

/// A line of a system file. Links that are not given are blank.
struct SystemLine {
  std::string_view name;
  std::vector<std::string_view> inflows = {};
  std::vector<std::string_view> outflows = {};
  std::string_view tag3 = {};
  std::string_view tag7 = {};
  std::string_view description = {};
};
std::string text_of(const SystemLine& line);

/// The files of a variant as lists of lines. Lines and columns count from 1; texts are bytes of the file.
class Bed {
 public:
  /// A small network with every kind of file, in which there is nothing to find.
  Bed();

  /// The same without any line.
  static Bed empty();

  std::vector<std::string>& lines(FileId file) { return lines_[static_cast<std::size_t>(file)]; }
  [[nodiscard]] const std::vector<std::string>& lines(FileId file) const {
    return lines_[static_cast<std::size_t>(file)];
  }
  std::string& line(FileId file, std::size_t number) { return lines(file).at(number - 1); }

  /// Writes over the columns from `column` on.
  void put(FileId file, std::size_t number, std::size_t column, std::string_view text);
  /// Puts a line before the one of that number; behind the last with its number plus one.
  void insert(FileId file, std::size_t number, std::string_view text);
  void erase(FileId file, std::size_t number);
  void replace(FileId file, std::vector<std::string> lines_of_file) {
    lines(file) = std::move(lines_of_file);
  }
  /// The file is not there.
  void remove(FileId file) { missing_[static_cast<std::size_t>(file)] = true; }
  /// A folder stands in its place.
  void make_folder(FileId file) { folder_[static_cast<std::size_t>(file)] = true; }
  /// The bytes of a file, instead of its lines.
  void set_bytes(FileId file, std::string bytes);

  schau::variant::Surroundings surroundings;
  std::string name = "netz";

  /// The variant as if it had been read.
  [[nodiscard]] schau::variant::Variant variant() const;
  /// The bytes of a file.
  [[nodiscard]] std::string bytes(FileId file) const;
  [[nodiscard]] bool is_missing(FileId file) const { return missing_[static_cast<std::size_t>(file)]; }

 private:
  std::array<std::vector<std::string>, schau::variant::file_count> lines_;
  std::array<std::string, schau::variant::file_count> raw_bytes_;
  std::array<bool, schau::variant::file_count> missing_{};
  std::array<bool, schau::variant::file_count> folder_{};
};

/// The extension of a file without its point; "ex" of the suppression list.
std::string_view extension_of(FileId file);

/// A finding for comparison: `kfl:3:11+5` (file, line, KV_Akum's column, length in bytes).
std::string place_words(const schau::variant::Place& place);

/// The findings of one rule.
std::vector<schau::findings::Finding> findings_of(const Bed& bed, std::string_view rule);
/// All findings, `rule kfl:3:11+5` each.
std::vector<std::string> all_findings(const Bed& bed);

}  // namespace schau_test
