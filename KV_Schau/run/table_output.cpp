#include "KV_Schau/run/table_output.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>
#include <span>
#include <string_view>
#include <utility>

#include "KV_Schau/variant/shown_text.h"

namespace schau::run {
namespace {

std::string shown_name(variant::NameKey name) {
  return variant::shown(variant::text_of(name), variant::Encoding::windows_1252);
}

constexpr std::array<NumberColumn, 8> columns = {{
    {"Station [km]", "station_km", 8, [](const Reach& reach) -> const Number& { return reach.station; }},
    {"natürliche Fläche direkt [km²]", "natuerlich_direkt_km2", 10,
     [](const Reach& reach) -> const Number& { return reach.natural.direct; }},
    {"natürliche Fläche gesamt [km²]", "natuerlich_gesamt_km2", 10,
     [](const Reach& reach) -> const Number& { return reach.natural.total; }},
    {"kanalisierte Fläche direkt [km²]", "kanalisiert_direkt_km2", 10,
     [](const Reach& reach) -> const Number& { return reach.canalised.direct; }},
    {"kanalisierte Fläche gesamt [km²]", "kanalisiert_gesamt_km2", 10,
     [](const Reach& reach) -> const Number& { return reach.canalised.total; }},
    {"undurchlässige Fläche direkt [km²]", "undurchlaessig_direkt_km2", 10,
     [](const Reach& reach) -> const Number& { return reach.impervious.direct; }},
    {"undurchlässige Fläche gesamt [km²]", "undurchlaessig_gesamt_km2", 10,
     [](const Reach& reach) -> const Number& { return reach.impervious.total; }},
    {"Gesamtfläche [km²]", "gesamt_km2", 11, [](const Reach& reach) -> const Number& { return reach.total; }},
}};

std::string text_in(const NumberColumn& column, const Reach& reach) {
  return text_of(column.number(reach), column.width);
}

// Text.

void append_heading(std::string& out, bool with_upstream) {
  fmt::format_to(std::back_inserter(out), "{:<7}  {:>8}  {:<17}  {:>21}  {:>21}  {:>21}  {:>11}", "Strecke",
                 "Station", "Zuläufe", "natürlich [km²]", "kanalisiert [km²]", "undurchlässig [km²]",
                 "gesamt");
  if (with_upstream)
    fmt::format_to(std::back_inserter(out), "  {:>7}  {:>8}  {:>13}", "Ordnung", "Elemente", "Einzugsgebiet");
  fmt::format_to(std::back_inserter(out),
                 "\n{:<7}  {:>8}  {:<17}  {:>10} {:>10}  {:>10} {:>10}  {:>10} {:>10}  {:>11}", "", "[km]",
                 "", "direkt", "gesamt", "direkt", "gesamt", "direkt", "gesamt", "[km²]");
  if (with_upstream)
    fmt::format_to(std::back_inserter(out), "  {:>7}  {:>8}  {:>13}", "", "oberhalb", "[km²]");
  out += '\n';
}

std::string inflows_of(const Reach& reach) {
  std::string names;
  for (const variant::NameKey name : reach.inflows())
    names.append(names.empty() ? "" : " ").append(shown_name(name));
  return names;
}

void append_row(std::string& out, const Reach& reach, const Upstream* upstream) {
  fmt::format_to(std::back_inserter(out), "{:<7}  {:>8}  {:<17}", shown_name(reach.name),
                 text_in(columns[0], reach), inflows_of(reach));
  for (std::size_t i = 1; i < columns.size(); ++i) {
    const NumberColumn& column = columns[i];
    fmt::format_to(std::back_inserter(out), "{}{:>{}}", i % 2 == 1 ? "  " : " ", text_in(column, reach),
                   column.width);
  }
  if (upstream != nullptr) {
    fmt::format_to(std::back_inserter(out), "  {:>7}  {:>8}  {:>13.3f}", upstream->stream_order,
                   upstream->elements, upstream->catchment);
  }
  out += '\n';
}

// Data.

// RFC 4180: a field with a separator, a quotation mark or a line end in it stands in quotation marks.
std::string csv_field(std::string_view text, const CsvForm& form) {
  const std::array<char, 4> special = {form.separator, '"', '\r', '\n'};
  if (text.find_first_of(std::string_view(special.data(), special.size())) == std::string_view::npos) {
    return std::string(text);
  }
  std::string field = "\"";
  for (const char character : text) field.append(character == '"' ? 2 : 1, character);
  return field + '"';
}

class CsvLine {
 public:
  CsvLine(std::string& out, const CsvForm& form) : out_(out), form_(form) {}

  void add(std::string_view text) {
    if (!std::exchange(first_, false)) out_ += form_.separator;
    out_ += csv_field(text, form_);
  }
  void add_number(std::string text) {
    std::ranges::replace(text, '.', form_.decimal_mark);
    add(text);
  }
  void end() { out_ += "\r\n"; }

 private:
  std::string& out_;
  const CsvForm& form_;
  bool first_ = true;
};

nlohmann::ordered_json json_number(const NumberColumn& column, const Reach& reach) {
  const Number& number = column.number(reach);
  if (std::isfinite(number.value)) return number.value;
  return text_in(column, reach);
}

}  // namespace

const std::array<NumberColumn, 8>& number_columns() {
  return columns;
}

std::string text_of(const Table& table, std::size_t most_rows, std::span<const Upstream> upstream) {
  const std::size_t count = table.reaches.size();
  const bool whole = most_rows == 0 || count <= most_rows;
  const std::size_t at_each_end = whole ? count : most_rows / 2;
  std::string out;
  append_heading(out, !upstream.empty());
  const auto append = [&](std::size_t i) {
    append_row(out, table.reaches[i], upstream.empty() ? nullptr : &upstream[i]);
  };
  for (std::size_t i = 0; i < at_each_end; ++i) append(i);
  if (whole) return out;
  fmt::format_to(std::back_inserter(out), "...      {} weitere Strecken; --tabelle zeigt alle\n",
                 count - 2 * at_each_end);
  for (std::size_t i = count - at_each_end; i < count; ++i) append(i);
  return out;
}

void append_csv_titles(std::string& out, const CsvForm& form, bool with_upstream) {
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
  if (form.byte_order_mark) out += byte_order_mark;
  CsvLine line(out, form);
  line.add("Strecke");
  line.add(columns.front().title);
  for (std::size_t i = 1; i <= most_inflows; ++i) line.add(fmt::format("Zulauf {}", i));
  for (const NumberColumn& column : std::span(columns).subspan(1)) line.add(column.title);
  if (with_upstream) {
    for (const std::string_view title : {"Ordnung", "Elemente oberhalb", "Einzugsgebiet [km²]"})
      line.add(title);
  }
  line.end();
}

void append_csv_row(std::string& out, const Reach& reach, const CsvForm& form, const Upstream* upstream) {
  CsvLine line(out, form);
  line.add(shown_name(reach.name));
  line.add_number(text_in(columns.front(), reach));
  for (const variant::NameKey inflow : reach.inflow) line.add(shown_name(inflow));
  for (const NumberColumn& column : std::span(columns).subspan(1)) line.add_number(text_in(column, reach));
  if (upstream != nullptr) {
    line.add(fmt::format("{}", upstream->stream_order));
    line.add(fmt::format("{}", upstream->elements));
    line.add_number(fmt::format("{:.3f}", upstream->catchment));
  }
  line.end();
}

void append_json_row(std::string& out, const Reach& reach, const Upstream* upstream) {
  nlohmann::ordered_json row;
  row["strecke"] = shown_name(reach.name);
  row[std::string(columns.front().key)] = json_number(columns.front(), reach);
  nlohmann::ordered_json& inflows = row["zulaeufe"] = nlohmann::ordered_json::array();
  for (const variant::NameKey inflow : reach.inflows()) inflows.push_back(shown_name(inflow));
  for (const NumberColumn& column : std::span(columns).subspan(1)) {
    row[std::string(column.key)] = json_number(column, reach);
  }
  if (upstream != nullptr) {
    constexpr double square_metres = 1e6;
    row["ordnung"] = upstream->stream_order;
    row["elemente_oberhalb"] = upstream->elements;
    row["einzugsgebiet_km2"] = std::round(upstream->catchment * square_metres) / square_metres;
  }
  out += row.dump();
}

}  // namespace schau::run
