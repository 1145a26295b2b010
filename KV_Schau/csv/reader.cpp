#include "KV_Schau/csv/reader.h"

#include <algorithm>
#include <boost/range/iterator_range_core.hpp>
#include <boost/spirit/home/x3.hpp>
#include <vector>

namespace schau::csv {
namespace {

namespace x3 = boost::spirit::x3;

using Piece = boost::iterator_range<std::string_view::const_iterator>;

std::string_view view_of(const Piece& piece) {
  return {piece.begin(), piece.end()};
}

// CR LF is one end.
std::uint32_t count_line_ends(std::string_view text) {
  std::uint32_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_first_of_two = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if ((text[i] == '\n' || text[i] == '\r') && !is_first_of_two) ++count;
  }
  return count;
}

bool is_blank(const std::vector<std::string_view>& fields) {
  return std::ranges::all_of(fields, [](std::string_view field) {
    return field.find_first_not_of(" \t") == std::string_view::npos;
  });
}

}  // namespace

Reader::Reader(std::string_view text, char separator, std::deque<std::string>& texts)
    : rest_(text), stops_(std::string("\r\n") + separator), texts_(texts) {}

Reader::Outcome Reader::next(std::vector<std::string_view>& fields) {
  const auto quoted = x3::raw['"' >> *(~x3::char_('"') | "\"\"") >> '"'];
  const auto plain = x3::raw[!x3::lit('"') >> *~x3::char_(stops_)];
  const auto row = (quoted | plain) % x3::char_(stops_.back());
  do {
    if (rest_.empty()) return Outcome::end;
    std::vector<Piece> pieces;
    auto place = rest_.begin();
    if (!x3::parse(place, rest_.end(), row >> (x3::eol | x3::eoi), pieces)) {
      line_ = next_line_;
      return Outcome::bad_quotes;
    }
    const auto length = static_cast<std::size_t>(place - rest_.begin());
    line_ = next_line_;
    next_line_ += count_line_ends(rest_.substr(0, length));
    rest_.remove_prefix(length);
    fields.clear();
    for (const Piece& piece : pieces) fields.push_back(unquoted(view_of(piece)));
  } while (is_blank(fields));
  return Outcome::row;
}

std::string_view Reader::unquoted(std::string_view field) {
  if (!field.starts_with('"')) return field;
  field = field.substr(1, field.size() - 2);
  if (field.find('"') == std::string_view::npos) return field;
  std::string& text = texts_.emplace_back();
  for (std::size_t i = 0; i < field.size(); ++i) {
    text += field[i];
    if (field[i] == '"') ++i;
  }
  return text;
}

}  // namespace schau::csv
