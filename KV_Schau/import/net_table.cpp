#include "KV_Schau/import/net_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <boost/unordered/unordered_flat_map.hpp>
#include <charconv>
#include <cmath>
#include <iterator>
#include <system_error>
#include <utility>

#include "KV_Schau/csv/reader.h"
#include "KV_Schau/import/drainage.h"
#include "KV_Schau/variant/encoding.h"
#include "KV_Schau/variant/shown_text.h"

namespace schau::imports {
namespace {

using variant::Encoding;
using variant::TextFile;

enum class Column : std::uint8_t { id, to, area, sealing, name, station, type, share, second_to };
constexpr std::array<std::string_view, 9> column_names = {
    "id", "nach", "flaeche_km2", "befestigung", "name", "station", "art", "anteil", "nach2"};
constexpr std::size_t needed_columns = 3;
constexpr std::size_t missing = static_cast<std::size_t>(-1);

// With more rows the five characters of a name could run out.
constexpr std::size_t most_rows = 7'000'000;

// What the result has room for in its column of stations.
constexpr double highest_station = 9999.9995;
constexpr double lowest_station = -999.9995;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string lower_case(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return lower;
}

bool is_ascii(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Digits with at most one point or comma, and an exponent.
std::optional<double> number_of(std::string_view text) {
  std::string digits(text.starts_with('+') ? text.substr(1) : text);
  std::ranges::replace(digits, ',', '.');
  if (digits.find_first_not_of("+-.0123456789eE") != std::string::npos) return std::nullopt;
  double number = 0.0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || stop != end || !std::isfinite(number)) return std::nullopt;
  return number;
}

class Reader {
 public:
  explicit Reader(const TextFile& file) : file_(file) {
    table_.shown = file.shown();
    table_.encoding = file.encoding();
  }

  NetTable run() {
    if (file_.encoding() == Encoding::utf_16) {
      table_.refuse(0, "Die Datei ist in UTF-16 geschrieben; bitte als UTF-8 oder Windows-1252 speichern");
      return std::move(table_);
    }
    text_ = file_.bytes();
    text_.remove_prefix(variant::byte_order_mark_length(text_));
    table_.separator = likely_separator();
    csv::Reader csv(text_, table_.separator, table_.texts);
    if (read_titles(csv)) read_rows(csv);
    if (table_.fault_count == 0) find_drainage(table_);
    std::ranges::stable_sort(table_.faults, {}, &Fault::line);
    return std::move(table_);
  }

 private:
  // The separator that finds most of the known titles in the first row.
  [[nodiscard]] char likely_separator() const {
    char best = ',';
    std::ptrdiff_t most = 0;
    for (const char separator : {',', ';', '\t'}) {
      std::deque<std::string> texts;
      csv::Reader csv(text_, separator, texts);
      std::vector<std::string_view> titles;
      if (csv.next(titles) != csv::Reader::Outcome::row) continue;
      const std::ptrdiff_t known =
          std::ranges::count_if(titles, [](std::string_view title) { return column_of(title) != missing; });
      if (known <= most) continue;
      most = known;
      best = separator;
    }
    return best;
  }

  static std::size_t column_of(std::string_view title) {
    const auto found = std::ranges::find(column_names, lower_case(trimmed(title)));
    return found == column_names.end() ? missing : static_cast<std::size_t>(found - column_names.begin());
  }

  bool read_titles(csv::Reader& csv) {
    if (csv.next(fields_) != csv::Reader::Outcome::row) {
      table_.refuse(csv.line(), "Die Datei hat keine Zeile mit Spaltennamen");
      return false;
    }
    places_.fill(missing);
    width_ = fields_.size();
    std::vector<std::string> titles;
    for (std::size_t place = 0; place < fields_.size(); ++place) {
      const std::size_t column = column_of(fields_[place]);
      titles.push_back(shown(trimmed(fields_[place])));
      if (column == missing) {
        table_.unread_columns.push_back(titles.back());
      } else if (places_[column] != missing) {
        table_.refuse(csv.line(), fmt::format("Die Spalte \"{}\" kommt zweimal vor", titles.back()));
      } else {
        places_[column] = place;
      }
    }
    for (std::size_t column = 0; column < needed_columns; ++column) {
      if (places_[column] != missing) continue;
      table_.refuse(csv.line(), fmt::format("Die Spalte \"{}\" fehlt; vorhanden: {}", column_names[column],
                                            fmt::join(titles, ", ")));
    }
    return table_.fault_count == 0;
  }

  void read_rows(csv::Reader& csv) {
    constexpr std::size_t usual_row = 32;
    table_.rows.reserve(std::min(text_.size() / usual_row, most_rows));
    while (true) {
      const csv::Reader::Outcome outcome = csv.next(fields_);
      if (outcome == csv::Reader::Outcome::end) break;
      if (outcome == csv::Reader::Outcome::bad_quotes) {
        table_.refuse(csv.line(),
                      "Ein Anführungszeichen schließt nicht, oder hinter dem schließenden steht Text");
        return;
      }
      if (table_.rows.size() == most_rows) {
        table_.refuse(csv.line(), fmt::format("Die Tabelle hat mehr als {} Zeilen", most_rows));
        return;
      }
      line_ = csv.line();
      read_row();
    }
    if (table_.rows.empty() && table_.fault_count == 0)
      table_.refuse(0, "Die Tabelle hat keine Zeile mit Daten");
  }

  void read_row() {
    if (fields_.size() != width_) {
      return refuse(
          fmt::format("{} statt {} Felder; ein Feld, in dem das Trennzeichen vorkommt, muss in "
                      "Anführungszeichen stehen",
                      fields_.size(), width_));
    }
    Row row;
    row.line = line_;
    row.id = text_in(Column::id);
    row.to_id = text_in(Column::to);
    row.second_to_id = text_in(Column::second_to);
    row.name = text_in(Column::name);
    if (row.id.empty()) refuse("id fehlt");
    const bool type_is_good = read_type(row);
    row.area = read_area(row);
    row.sealing = number_in(Column::sealing, 0.0, 1.0).value_or(0.0);
    row.station = number_in(Column::station, lowest_station, highest_station);
    row.share = number_in(Column::share, 0.0, 100.0).value_or(100.0);
    if (type_is_good) check(row);
    table_.rows.push_back(row);
  }

  [[nodiscard]] std::string_view field(Column column) const {
    const std::size_t place = places_[static_cast<std::size_t>(column)];
    return place == missing ? std::string_view() : trimmed(fields_[place]);
  }

  // In UTF-8.
  std::string_view text_in(Column column) {
    const std::string_view text = field(column);
    if (file_.encoding() == Encoding::utf_8 || is_ascii(text)) return text;
    return table_.texts.emplace_back(shown(text));
  }

  [[nodiscard]] std::string shown(std::string_view text) const {
    return variant::shown(text, file_.encoding());
  }

  void refuse(std::string text) { table_.refuse(line_, std::move(text)); }

  static std::string_view name_of(Column column) { return column_names[static_cast<std::size_t>(column)]; }

  bool read_type(Row& row) {
    constexpr std::string_view types = "NKETVBP";
    const std::string_view text = field(Column::type);
    if (text.empty()) return true;
    const char letter = static_cast<char>(
        text.front() >= 'a' && text.front() <= 'z' ? text.front() - 'a' + 'A' : text.front());
    row.type = letter;
    if (text.size() == 1 && types.find(letter) != std::string_view::npos) return true;
    refuse(fmt::format("art \"{}\" gibt es nicht; möglich sind N, K, E, T, V, B und P", shown(text)));
    return false;
  }

  // Only what is no area of its own can go without one.
  double read_area(const Row& row) {
    const bool may_be_blank = !field(Column::type).empty() && row.type != 'N' && row.type != 'K';
    if (field(Column::area).empty()) {
      if (!may_be_blank) refuse("flaeche_km2 fehlt");
      return 0.0;
    }
    return number_in(Column::area, 0.0, 1e30).value_or(0.0);
  }

  std::optional<double> number_in(Column column, double lowest, double highest) {
    const std::string_view text = field(column);
    if (text.empty()) return std::nullopt;
    const std::optional<double> number = number_of(text);
    if (!number) {
      refuse(fmt::format("{} \"{}\" ist keine Zahl", name_of(column), shown(text)));
      return std::nullopt;
    }
    note_decimal_mark(text);
    if (*number >= lowest && *number <= highest) return number;
    refuse(column == Column::area
               ? fmt::format("flaeche_km2 {} ist {}", shown(text), *number < 0 ? "negativ" : "zu groß")
               : fmt::format("{} {} liegt nicht zwischen {} und {}", name_of(column), shown(text), lowest,
                             highest));
    return std::nullopt;
  }

  // 1.234 beside 1,5 may be a thousand: a table has one decimal mark.
  void note_decimal_mark(std::string_view text) {
    if (text.find(',') != std::string_view::npos && comma_line_ == 0) {
      comma_line_ = line_;
      table_.has_decimal_comma = true;
      if (point_line_ != 0) refuse_marks();
    }
    if (text.find('.') != std::string_view::npos && point_line_ == 0) {
      point_line_ = line_;
      if (comma_line_ != 0) refuse_marks();
    }
  }

  void refuse_marks() {
    refuse(
        fmt::format("Dezimalkomma (Zeile {}) und Punkt (Zeile {}) in einer Tabelle: der Punkt könnte "
                    "Tausender trennen",
                    comma_line_, point_line_));
  }

  // What contradicts itself within a row.
  void check(const Row& row) {
    const bool has_share = !field(Column::share).empty();
    const bool has_second = !row.second_to_id.empty();
    const bool may_branch = row.type == 'T' || row.type == 'V' || row.type == 'B';
    if (row.type == 'E' && row.area > 0)
      refuse("Eine Quelle ohne Fläche (art E) kann kein flaeche_km2 haben");
    if (row.type == 'N' && row.sealing > 0)
      refuse("Eine natürliche Fläche (art N) kann kein befestigung haben; gemeint ist wohl art K");
    if (has_second && !may_branch)
      refuse(fmt::format("Ein Element der art {} kann kein nach2 haben", row.type));
    if (has_second && row.to_id.empty()) refuse("nach2 ohne nach");
    if (has_second && row.to_id == row.second_to_id) refuse("nach und nach2 sind dasselbe Element");
    if (row.type == 'B') {
      if (has_share)
        refuse("Ein Becken (art B) kann kein anteil haben: es gibt seine Fläche ganz an nach2 ab");
    } else if (has_second && may_branch && !has_share) {
      refuse("anteil fehlt: wie viel Prozent der Fläche gehen an nach, der Rest an nach2?");
    } else if (!has_second && row.share != 100.0) {
      refuse("anteil ohne nach2: der Rest der Fläche ginge verloren");
    }
  }

  const TextFile& file_;
  NetTable table_;
  std::string_view text_;
  std::vector<std::string_view> fields_;
  std::array<std::size_t, column_names.size()> places_{};
  std::size_t width_ = 0;
  std::uint32_t line_ = 0;
  std::uint32_t comma_line_ = 0;
  std::uint32_t point_line_ = 0;
};

}  // namespace

void NetTable::refuse(std::uint32_t line, std::string text) {
  if (++fault_count <= most_faults) faults.push_back({line, std::move(text)});
}

NetTable read_net_table(const TextFile& file) {
  return Reader(file).run();
}

}  // namespace schau::imports
