#include "KV_Schau/compare/result_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <deque>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <system_error>

#include "KV_Schau/csv/reader.h"
#include "KV_Schau/run/read_file.h"
#include "KV_Schau/run/table_output.h"
#include "KV_Schau/run/whole_file.h"
#include "KV_Schau/variant/encoding.h"

namespace schau::compare {
namespace {

using run::Number;
using variant::NameKey;

constexpr std::size_t number_count = 1 + sum_count;  // station and sums
constexpr std::string_view reach_title = "Strecke";
constexpr std::string_view reach_key = "strecke";

Number& number_of(ResultRow& row, std::size_t column) {
  return column == 0 ? row.station : row.sums.at(column - 1);
}

std::string extension_of(const std::string& argument) {
  std::string extension = std::filesystem::path(argument).extension().string();
  for (char& letter : extension) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return extension;
}

NameKey name_of(std::string_view utf8) {
  return variant::name_of(variant::utf8_to_windows_1252(utf8));
}

std::optional<Number> number_in(std::string text) {
  if (text == "NaN") return Number::not_a_number();
  if (!text.empty() && text.find_first_not_of('*') == std::string::npos) return Number::too_wide();
  std::ranges::replace(text, ',', '.');
  Number number;
  const char* const end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, number.value);
  if (fault != std::errc() || stop != end || text.empty()) return std::nullopt;
  return number;
}

[[noreturn]] void refuse(const std::string& shown, const std::string& reason) {
  throw run::FileFault(fmt::format("{}: {}", shown, reason));
}

// NAME.Akum.

void take_table(ResultTable& result, const std::string& bytes) {
  const run::Table table = run::parse_table(bytes);
  if (table.fault) refuse(result.shown, run::text_of(*table.fault, table.fault_line));
  for (const run::Reach& reach : table.reaches) {
    ResultRow& row = result.rows.emplace_back();
    row.name = reach.name;
    row.inflow = reach.inflow;
    row.line = static_cast<std::uint32_t>(reach.line);
    for (std::size_t k = 0; k < number_count; ++k)
      number_of(row, k) = run::number_columns().at(k).number(reach);
  }
}

// CSV.

class CsvTable {
 public:
  CsvTable(ResultTable& result, std::string_view bytes) : result_(result) {
    bytes.remove_prefix(variant::byte_order_mark_length(bytes));
    const char separator = bytes.substr(0, bytes.find('\n')).find(';') == std::string_view::npos ? ',' : ';';
    csv::Reader reader(bytes, separator, texts_);
    if (reader.next(fields_) != csv::Reader::Outcome::row) refuse(result.shown, "Die Datei ist leer");
    find_columns();
    while (true) {
      const csv::Reader::Outcome outcome = reader.next(fields_);
      if (outcome == csv::Reader::Outcome::end) return;
      if (outcome == csv::Reader::Outcome::bad_quotes || fields_.size() != width_)
        refuse(result.shown, fmt::format("Zeile {} ist keine Zeile der Ergebnistabelle", reader.line()));
      take_row(reader.line());
    }
  }

 private:
  std::size_t place_of(std::string_view title) {
    const auto found = std::ranges::find(fields_, title);
    if (found == fields_.end())
      refuse(result_.shown,
             fmt::format("Die Spalte \"{}\" fehlt; gelesen wird, was \"tabelle\" schreibt", title));
    return static_cast<std::size_t>(found - fields_.begin());
  }

  void find_columns() {
    width_ = fields_.size();
    name_ = place_of(reach_title);
    for (std::size_t k = 0; k < inflows_.size(); ++k)
      inflows_.at(k) = place_of(fmt::format("Zulauf {}", k + 1));
    for (std::size_t k = 0; k < number_count; ++k)
      numbers_.at(k) = place_of(run::number_columns().at(k).title);
  }

  void take_row(std::uint32_t line) {
    ResultRow& row = result_.rows.emplace_back();
    row.line = line;
    row.name = name_of(fields_[name_]);
    for (std::size_t k = 0; k < inflows_.size(); ++k) row.inflow.at(k) = name_of(fields_[inflows_.at(k)]);
    for (std::size_t k = 0; k < number_count; ++k) {
      const std::optional<Number> number = number_in(std::string(fields_[numbers_.at(k)]));
      if (!number)
        refuse(result_.shown, fmt::format("Zeile {} enthält eine unlesbare Zahl: {}", line,
                                          run::number_columns().at(k).title));
      number_of(row, k) = *number;
    }
  }

  ResultTable& result_;
  std::deque<std::string> texts_;
  std::vector<std::string_view> fields_;
  std::size_t width_ = 0;
  std::size_t name_ = 0;
  std::array<std::size_t, run::most_inflows> inflows_{};
  std::array<std::size_t, number_count> numbers_{};
};

// JSON.

std::optional<Number> number_in(const nlohmann::json& value) {
  if (value.is_number()) return Number{Number::Kind::number, value.get<double>()};
  return value.is_string() ? number_in(value.get<std::string>()) : std::nullopt;
}

void take_object(ResultRow& row, const nlohmann::json& object) {
  row.name = name_of(object.at(std::string(reach_key)).get<std::string>());
  std::size_t place = 0;
  for (const nlohmann::json& inflow : object.at("zulaeufe"))
    row.inflow.at(place++) = name_of(inflow.get<std::string>());
  for (std::size_t k = 0; k < number_count; ++k)
    number_of(row, k) = number_in(object.at(std::string(run::number_columns().at(k).key))).value();
}

void take_json(ResultTable& result, const std::string& bytes) {
  const nlohmann::json document = nlohmann::json::parse(bytes, nullptr, false);
  const bool has_rows =
      document.is_object() && document.contains("strecken") && document["strecken"].is_array();
  if (!has_rows) refuse(result.shown, "kein JSON, wie \"tabelle\" es schreibt");
  for (const nlohmann::json& object : document["strecken"]) {
    ResultRow& row = result.rows.emplace_back();
    row.line = static_cast<std::uint32_t>(result.rows.size());
    try {
      take_object(row, object);
    } catch (const std::exception&) {
      refuse(result.shown, fmt::format("Strecke {} ist nicht lesbar", result.rows.size()));
    }
  }
}

}  // namespace

bool is_result_name(const std::string& argument) {
  const std::string extension = extension_of(argument);
  return extension == ".akum" || extension == ".csv" || extension == ".json";
}

ResultTable read_result(const std::filesystem::path& file, const std::string& shown) {
  ResultTable result;
  result.shown = shown;
  const std::string bytes = run::read_file(file);
  const std::string extension = extension_of(file.string());
  if (extension == ".csv") {
    CsvTable(result, bytes);
  } else if (extension == ".json") {
    take_json(result, bytes);
  } else {
    take_table(result, bytes);
  }
  return result;
}

}  // namespace schau::compare
