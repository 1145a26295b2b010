#include "KV_Schau/run/table.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "runtime/cp1252.h"

namespace schau::run {
namespace {

using namespace runtime::literals;

constexpr std::string_view title_end = ": akkumulierte Flächen [qkm]"_w1252;
constexpr std::size_t heading_lines = 6;
constexpr std::size_t row_width = 99;

struct Columns {
  std::size_t first;
  std::size_t last;
};

constexpr Columns name_columns{1, 5};
constexpr Columns station_columns{8, 15};
constexpr Columns inflow_columns{18, 22};
constexpr std::array<Columns, 5> gaps = {{{6, 7}, {16, 17}, {43, 44}, {65, 66}, {87, 88}}};

std::string_view cut(std::string_view line, Columns columns) {
  line = line.substr(std::min(columns.first - 1, line.size()));
  return line.substr(0, columns.last - columns.first + 1);
}

bool is_blank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

std::optional<Number> number_in(std::string_view line, Columns columns) {
  std::string_view text = cut(line, columns);
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.empty()) return std::nullopt;
  if (text.find_first_not_of('*') == std::string_view::npos) return Number::too_wide();
  if (text == "NaN") return Number::not_a_number();
  Number number;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number.value);
  if (fault != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

bool is_row(std::string_view line) {
  return line.size() == row_width && !is_blank(cut(line, name_columns)) &&
         std::ranges::all_of(gaps, [&](Columns gap) { return is_blank(cut(line, gap)); });
}

bool is_further_inflow(std::string_view line) {
  return line.size() >= inflow_columns.first && line.size() <= inflow_columns.last &&
         is_blank(line.substr(0, inflow_columns.first - 1));
}

class TableParser {
 public:
  explicit TableParser(std::string_view bytes) : rest_(bytes) {}

  Table parse() {
    read_heading();
    while (!table_.fault && !rest_.empty()) {
      const std::string_view line = next_line();
      if (!table_.fault) read_line(line);
    }
    return std::move(table_);
  }

 private:
  // The next line without its end; one without an end is a fault.
  std::string_view next_line() {
    ++table_.line_count;
    const std::size_t end = rest_.find('\n');
    if (end == std::string_view::npos) {
      set_fault(TableFault::line_cut);
      return {};
    }
    std::string_view line = rest_.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    rest_.remove_prefix(end + 1);
    return line;
  }

  void set_fault(TableFault fault) {
    if (table_.fault) return;
    table_.fault = fault;
    table_.fault_line = table_.line_count;
  }

  void read_heading() {
    std::array<std::string_view, heading_lines> lines;
    for (std::string_view& line : lines) {
      if (!table_.fault) line = next_line();
    }
    if (table_.fault) return;
    if (!lines.front().ends_with(title_end) || !lines[1].empty() ||
        lines.back() != std::string(row_width, '-')) {
      return set_fault(TableFault::no_heading);
    }
    table_.variant = lines.front().substr(0, lines.front().size() - title_end.size());
  }

  void read_line(std::string_view line) {
    if (is_further_inflow(line)) return read_further_inflow(line);
    if (!is_row(line)) return set_fault(TableFault::not_a_row);
    read_row(line);
  }

  void read_row(std::string_view line) {
    Reach reach;
    reach.name = variant::name_at(line, name_columns.first);
    reach.line = table_.line_count;
    const bool good =
        read(line, station_columns, reach.station) &&  //
        read(line, {23, 32}, reach.natural.direct) && read(line, {33, 42}, reach.natural.total) &&
        read(line, {45, 54}, reach.canalised.direct) && read(line, {55, 64}, reach.canalised.total) &&
        read(line, {67, 76}, reach.impervious.direct) && read(line, {77, 86}, reach.impervious.total) &&
        read(line, {89, 99}, reach.total);
    if (!good) return set_fault(TableFault::bad_number);
    reach.inflow.front() = variant::name_at(line, inflow_columns.first);
    if (reach.inflow.front() != variant::blank_name) reach.inflow_count = 1;
    table_.reaches.push_back(reach);
  }

  static bool read(std::string_view line, Columns columns, Number& target) {
    const std::optional<Number> number = number_in(line, columns);
    if (number) target = *number;
    return number.has_value();
  }

  // The first one stands in the line of the reach, blank when there is none.
  void read_further_inflow(std::string_view line) {
    if (table_.reaches.empty()) return set_fault(TableFault::inflow_without_reach);
    Reach& reach = table_.reaches.back();
    const std::size_t place = std::max<std::size_t>(reach.inflow_count, 1);
    if (place == most_inflows) return set_fault(TableFault::inflow_without_reach);
    reach.inflow[place] = variant::name_at(line, inflow_columns.first);
    reach.inflow_count = place + 1;
  }

  std::string_view rest_;
  Table table_;
};

}  // namespace

Table parse_table(std::string_view bytes) {
  return TableParser(bytes).parse();
}

std::string text_of(TableFault fault, std::size_t line) {
  switch (fault) {
    case TableFault::no_heading:
      return "Das Ergebnis beginnt nicht mit den Kopfzeilen der Ergebnistabelle";
    case TableFault::line_cut:
      return fmt::format("Das Ergebnis bricht in Zeile {} ab", line);
    case TableFault::not_a_row:
      return fmt::format("Zeile {} des Ergebnisses ist keine Zeile der Ergebnistabelle", line);
    case TableFault::bad_number:
      return fmt::format("Zeile {} des Ergebnisses enthält eine unlesbare Zahl", line);
    case TableFault::inflow_without_reach:
      break;
  }
  return fmt::format("Zeile {} des Ergebnisses nennt einen Zulauf, der zu keiner Strecke gehört", line);
}

std::string text_of(const Number& number, std::size_t columns) {
  switch (number.kind) {
    case Number::Kind::too_wide:
      return std::string(columns, '*');
    case Number::Kind::not_a_number:
      return "NaN";
    case Number::Kind::number:
      break;
  }
  if (std::isinf(number.value)) return number.value < 0 ? "-Infinity" : "Infinity";
  return fmt::format("{:.3f}", number.value);
}

}  // namespace schau::run
