#include <algorithm>
#include <string>
#include <vector>

#include "m_files/m_files.h"
#include "m_files/module_state.h"
#include "runtime/command.h"
#include "runtime/cp1252.h"
#include "runtime/host.h"
#include "runtime/read.h"
#include "runtime/stop.h"
#include "runtime/units.h"

namespace m_files {

FileList file_list;

namespace {

using namespace runtime::literals;

constexpr int first_listing_unit = 100;
constexpr std::size_t longest_name = 200;
constexpr std::size_t shortest_file_line = 20;

std::string in_upper_case(std::string_view text) {
  std::string upper(text);
  to_upper(upper);
  return upper;
}

bool contains(std::string_view text, std::string_view piece) {
  return text.find(piece) != std::string_view::npos;
}

bool is_wildcard(char character) {
  return character == '*' || character == '?';
}

// Filters.

struct FilterPiece {
  std::size_t first = 1;  // columns in the filter
  std::size_t last = 0;
  std::size_t question_marks = 0;  // that stand directly before it
};

struct Filter {
  std::string given;  // without trailing blanks
  std::string upper;
  std::vector<FilterPiece> pieces;
};

std::size_t question_marks_before(std::string_view filter, std::size_t begin) {
  std::size_t count = 0;
  while (count < begin && filter[begin - 1 - count] == '?') ++count;
  return count;
}

Filter cut_at_wildcards(std::string_view given) {
  Filter filter{std::string(given), in_upper_case(given), {}};
  std::size_t begin = 0;
  while (begin < given.size()) {
    const auto end = static_cast<std::size_t>(
        std::find_if(given.begin() + static_cast<std::ptrdiff_t>(begin), given.end(), is_wildcard) -
        given.begin());
    if (end > begin) filter.pieces.push_back({begin + 1, end, question_marks_before(given, begin)});
    begin = end + 1;
  }
  return filter;
}

bool is_refused(std::string_view filter) {
  return contains(filter, "*?") || contains(filter, "?*");
}

// The columns of a name that a piece took.
struct Match {
  std::size_t first = 0;
  std::size_t last = 0;
};

std::optional<Match> match_piece(const Filter& filter, const FilterPiece& piece, std::string_view name) {
  const std::size_t length = piece.last - piece.first + 1;
  const std::string_view text = std::string_view(filter.upper).substr(piece.first - 1, length);
  const bool begins = piece.first == 1;
  const bool ends = piece.last == filter.upper.size();
  if (begins && !name.starts_with(std::string_view(filter.given).substr(0, length))) return std::nullopt;
  if (ends && !name.ends_with(text)) return std::nullopt;
  if (ends) return Match{name.size() - length + 1, name.size()};
  const std::size_t found = begins ? 0 : name.find(text);
  if (found == std::string_view::npos) return std::nullopt;
  return Match{found + 1, found + length};
}

bool matches(const Filter& filter, std::string_view name) {
  std::size_t previous_end = 0;
  for (const FilterPiece& piece : filter.pieces) {
    const std::optional<Match> match = match_piece(filter, piece, name);
    if (!match) return false;
    if (piece.question_marks > 0 && match->first != previous_end + piece.question_marks + 1) return false;
    previous_end = match->last;
  }
  return true;
}

// Listings.

bool names_the_directory(std::string_view line) {
  return contains(line, ":\\") && contains(in_upper_case(line), "VERZEICHNIS");
}

// Hands every name in the listing that matches the filter to `keep`.
template <class Keep>
void scan_listing(int unit, const Filter& filter, Keep keep) {
  std::size_t name_place = std::string_view::npos;
  std::string_view line;
  for (runtime::LineReader listing(unit, line_width); listing.next(line);) {
    line = runtime::trimmed(line);
    const bool folder = contains(line, "<DIR>");
    if (name_place == std::string_view::npos) {
      if (folder) name_place = line.find("..");
    } else if (!folder && line.size() >= shortest_file_line && !names_the_directory(line)) {
      const std::string_view name = line.substr(std::min(name_place, line.size()), longest_name);
      if (matches(filter, in_upper_case(name))) keep(name);
    }
  }
}

template <class Entry>
void allocate_or_stop(runtime::OneBased<Entry>& entries, std::int32_t count) {
  if (entries.allocate(count)) return;
  runtime::stop_on_allocation(__FILE__, __LINE__, static_cast<std::size_t>(count) * sizeof(Entry));
}

void allocate_list(FileList& list, std::int32_t count) {
  allocate_or_stop(list.names, count);
  allocate_or_stop(list.numbers, count);
}

void fill_file_list(int listing, const Filter& filter) {
  std::int32_t count = 0;
  scan_listing(listing, filter, [&](std::string_view) { ++count; });
  allocate_list(file_list, count);
  runtime::rewind(listing);
  std::int32_t entry = 0;
  scan_listing(listing, filter, [&](std::string_view name) { file_list.names.at(++entry) = name; });
}

bool open_listing(std::string_view path, int unit) {
  return runtime::is_folder(path) &&
         runtime::try_open(unit, std::string(path) + "\\files.lis", runtime::OpenStatus::unknown);
}

std::string listing_command(std::string_view path, std::string_view options) {
  std::string command = "dir>";
  return command.append(path).append("files.lis ").append(path).append(options);
}

// The suite's command interpreter lives where its separator does. Another one would not take the backslash of
// the redirection for a separator and write the listing into a file that nobody knows of.
bool has_the_suites_interpreter() {
  return runtime::host().separator() == '\\';
}

}  // namespace

void copy_file_list(const FileList& source, FileList& target) {
  if (&source == &target) return;
  allocate_list(target, source.names.size());
  for (std::int32_t i = 1; i <= source.names.size(); ++i) {
    target.names.at(i) = source.names.at(i);
    target.numbers.at(i) = source.numbers.at(i);
  }
}

void release_file_list(FileList& list) {
  list.names.release();
  list.numbers.release();
}

std::int32_t list_files(std::string_view path, std::string_view filter, ErrorText& error_text,
                        std::string_view options) {
  release_file_list(file_list);
  error_text = "";
  const Filter cut = cut_at_wildcards(runtime::trimmed(filter));
  if (is_refused(cut.upper)) {
    std::string refusal = " Der Filter \"";
    error_text = refusal.append(cut.upper).append(" ist unzulässig!"_w1252);
    return 0;
  }
  path = runtime::trimmed(path);
  if (has_the_suites_interpreter()) runtime::execute_command(listing_command(path, options));
  const int listing = free_unit(first_listing_unit);
  if (!open_listing(path, listing)) {
    std::string missing = "Pfad \"";
    error_text = missing.append(path).append("\" existiert nicht!");
    return 0;
  }
  fill_file_list(listing, cut);
  runtime::close(listing, runtime::CloseStatus::remove);
  return file_list.names.size();
}

}  // namespace m_files
