#include "KV_Schau/rules/near_elements.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "KV_Schau/rules/unseen.h"
#include "KV_Schau/variant/encoding.h"
#include "m_System/element_types.h"

namespace schau::rules {
namespace {

using variant::FileId;
using variant::NameKey;
using variant::Variant;
namespace columns = variant::sys_columns;
using Cause = NearElementCause;

bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

bool is_lower(char character) {
  return character >= 'a' && character <= 'z';
}

char upper(char character) {
  return is_lower(character) ? static_cast<char>(character - 'a' + 'A') : character;
}

std::string upper(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char character) { return upper(character); });
  return result;
}

// A word of a line: what stands between blanks and characters that nobody sees.
struct Word {
  std::string_view text;
  std::uint32_t column = 0;  // from 1
};

bool is_gap(char character) {
  return character == ' ' || is_unseen(character);
}

constexpr std::size_t most_words = 24;

// The words of a line from a column on; no more than an element line can have.
std::vector<Word> words_from(std::string_view line, std::uint32_t first_column) {
  std::vector<Word> words;
  for (std::size_t place = 0; place < line.size() && words.size() < most_words;) {
    if (is_gap(line[place])) {
      ++place;
      continue;
    }
    std::size_t end = place;
    while (end < line.size() && !is_gap(line[end])) ++end;
    const auto column = static_cast<std::uint32_t>(place) + 1;
    if (column >= first_column) words.push_back({line.substr(place, end - place), column});
    place = end;
  }
  return words;
}

bool is_end_word(std::string_view text) {
  return upper(text) == "ENDE";
}

// A letter and behind it letters and digits, at least one digit; another digit may stand for the letter.
bool has_form_of_name(std::string_view text) {
  if (text.size() < 2 || text.size() > variant::name_length) return false;
  const auto is_letter_or_digit = [](char character) {
    return is_digit(character) || (upper(character) >= 'A' && upper(character) <= 'Z');
  };
  const std::string_view rest = text.substr(1);
  return std::ranges::all_of(text, is_letter_or_digit) && std::ranges::any_of(rest, is_digit);
}

// Analyses lines one by one.
class Finder {
 public:
  Finder(const Variant& variant, const NameSet& missing_names) : variant_(variant), missing_(missing_names) {}

  std::optional<NearElement> examine(std::uint32_t number, std::string_view line) const {
    constexpr std::uint32_t first_column = 17;
    const bool has_tab = line.find('\t') != std::string_view::npos;
    const std::vector<Word> words = split_names(words_from(line, has_tab ? 1 : first_column));
    const std::optional<std::size_t> name = position_of_name(words, line);
    if (!name) return std::nullopt;
    NearElement found = cause_of(words, *name, line);
    found.line = number;
    found.name = variant::name_of(upper(words[*name].text));
    return found;
  }

 private:
  [[nodiscard]] bool is_known(std::string_view text) const {
    const NameKey name = variant::name_of(upper(text));
    return text.size() <= variant::name_length &&
           (variant_.elements.first(name) != 0 || missing_.contains(name));
  }
  [[nodiscard]] bool is_name(std::string_view text) const { return has_form_of_name(text) || is_known(text); }

  // Two names without a blank between them are two words.
  [[nodiscard]] std::vector<Word> split_names(const std::vector<Word>& words) const {
    std::vector<Word> result;
    for (const Word& word : words) {
      const std::string_view first = word.text.substr(0, variant::name_length);
      const std::string_view second = word.text.substr(first.size());
      if (second.size() == variant::name_length && is_name(first) && is_name(second)) {
        result.push_back({first, word.column});
        result.push_back({second, word.column + static_cast<std::uint32_t>(first.size())});
      } else {
        result.push_back(word);
      }
    }
    return result;
  }

  // The word nearest to the columns of the name that can be one and has nothing but names behind it. A tab
  // can have moved it anywhere.
  [[nodiscard]] std::optional<std::size_t> position_of_name(const std::vector<Word>& words,
                                                            std::string_view line) const {
    constexpr std::uint32_t farthest = 7;
    const bool has_tab = line.find('\t') != std::string_view::npos;
    const auto distance = [](const Word& word) {
      return word.column > columns::name.first ? word.column - columns::name.first
                                               : columns::name.first - word.column;
    };
    std::optional<std::size_t> best;
    for (std::size_t k = 0; k < words.size(); ++k) {
      if (!has_tab && distance(words[k]) > farthest) continue;
      if (best && distance(words[k]) >= distance(words[*best])) continue;
      if (is_missed(words[k]) || (is_name(words[k].text) && has_only_names_behind(words, k))) best = k;
    }
    return best;
  }

  // In the columns of the name stands one that the variant speaks of elsewhere, and that nobody bears.
  [[nodiscard]] bool is_missed(const Word& word) const {
    return word.column == columns::name.first && missing_.contains(variant::name_of(word.text));
  }

  // At least one link; the name itself must not be borne by an element already. Numbers alone are no names:
  // one of the words must be a name beyond doubt.
  [[nodiscard]] bool has_only_names_behind(const std::vector<Word>& words, std::size_t name) const {
    constexpr std::uint32_t last_column = columns::last_read + 2;
    if (variant_.elements.first(variant::name_of(upper(words[name].text))) != 0) return false;
    bool any_sure = is_sure_name(words[name].text);
    std::size_t links = 0;
    for (std::size_t k = name + 1; k < words.size() && words[k].column <= last_column; ++k, ++links) {
      const bool is_end = is_end_word(words[k].text);
      if (!is_end && !is_name(words[k].text)) return false;
      any_sure = any_sure || is_end || is_sure_name(words[k].text);
    }
    return links > 0 && any_sure;
  }
  [[nodiscard]] bool is_sure_name(std::string_view text) const {
    return m_System::is_element_type(upper(text.front())) || is_known(text);
  }

  static NearElement marked(const Word& word, Cause cause, std::uint32_t expected = 0) {
    return {0, word.column, static_cast<std::uint32_t>(word.text.size()), expected, cause, 0};
  }

  // A word in other columns than it should be; tabs before it are the reason.
  static NearElement shifted(const Word& word, std::uint32_t expected, std::string_view line) {
    std::size_t tab = line.substr(0, word.column).rfind('\t');
    if (tab == std::string_view::npos) return marked(word, Cause::shifted, expected);
    while (tab > 0 && line[tab - 1] == '\t') --tab;
    return marked({line.substr(tab, 1), column_at(tab)}, Cause::unseen);
  }

  static NearElement cause_of(const std::vector<Word>& words, std::size_t name, std::string_view line) {
    if (is_element_in_windows_1252(line)) return marked(words[name], Cause::utf8);
    if (words[name].column != columns::name.first) return shifted(words[name], columns::name.first, line);
    const char letter = words[name].text.front();
    if (letter == 'Z' || letter == 'z') return marked(words[name], Cause::z_element);
    if (const std::optional<Cause> cause = cause_of_letter(letter)) return marked(words[name], *cause);
    for (std::size_t k = name + 1; k < words.size() && words[k].column <= columns::last_read; ++k) {
      if (const std::optional<NearElement> found = cause_of_link(words[k], line)) return *found;
    }
    return cause_between(words, name, line);
  }

  static std::optional<Cause> cause_of_letter(char letter) {
    if (m_System::is_element_type(letter)) return std::nullopt;
    if (is_digit(letter)) return Cause::digit;
    return is_lower(letter) ? Cause::lower_case : Cause::foreign_letter;
  }

  static std::optional<NearElement> cause_of_link(const Word& word, std::string_view line) {
    constexpr std::array<std::uint32_t, 5> link_columns = {
        columns::inflow[0].first, columns::inflow[1].first, columns::inflow[2].first,
        columns::outflow[0].first, columns::outflow[1].first};
    const auto distance = [&](std::uint32_t column) {
      return column > word.column ? column - word.column : word.column - column;
    };
    const std::uint32_t expected = *std::ranges::min_element(link_columns, {}, distance);
    if (word.column != expected) return shifted(word, expected, line);
    if (is_lower(word.text.front()) && is_end_word(word.text)) return marked(word, Cause::end_in_lower_case);
    const std::optional<Cause> cause = cause_of_letter(word.text.front());
    if (!cause) return std::nullopt;
    return marked(word, *cause);
  }

  static std::uint32_t column_at(std::size_t place) { return static_cast<std::uint32_t>(place) + 1; }

  // Every name is in order: an inflow is missing on the left, or something unseen stands in a blank field.
  static NearElement cause_between(const std::vector<Word>& words, std::size_t name, std::string_view line) {
    for (const variant::Span inflow : columns::inflow) {
      if (!variant::is_blank(inflow.of(line))) continue;
      for (std::size_t k = name + 1; k < words.size(); ++k) {
        const bool is_later_inflow =
            words[k].column > inflow.last && words[k].column <= columns::inflow[2].first;
        if (is_later_inflow) return marked(words[k], Cause::gap, inflow.first);
      }
    }
    for (std::size_t place = columns::name.last; place < line.size(); ++place) {
      if (is_unseen(line[place])) return marked({line.substr(place, 1), column_at(place)}, Cause::unseen);
    }
    return marked(words[name], Cause::other);
  }

  const Variant& variant_;
  const NameSet& missing_;
};

// Lines that begin like a record: the name of an element of the file's type.
void add_missing_records(const Variant& variant, FileId id, NameSet& names) {
  for (const std::uint32_t number : variant.other_lines_of(id)) {
    const std::string_view line = variant.file(id).line(number);
    const std::string_view text = variant::without_blanks(variant::data_columns::name.of(line));
    if (text.empty() || upper(text.front()) != variant::type_of_file(id) || !has_form_of_name(text)) continue;
    const NameKey name = variant::name_of(upper(text));
    if (variant.elements.first(name) == 0) names.insert(name);
  }
}

}  // namespace

NameSet names_without_element(const Variant& variant, const network::Network& network) {
  NameSet names;
  for (const network::UnknownLink& link : network.unknown_links) names.insert(link.name);
  for (const FileId file : variant::data_files) add_missing_records(variant, file, names);
  return names;
}

NearElements find_near_elements(const Variant& variant, const NameSet& missing_names) {
  NearElements found;
  const variant::TextFile& file = variant.file(FileId::sys);
  if (file.encoding() == variant::Encoding::utf_16) return found;
  const Finder finder(variant, missing_names);
  const std::uint32_t last = variant.has_end ? variant.element_lines.back() : file.line_count();
  std::size_t next_element = 1;
  for (std::uint32_t number = 1; number <= last; ++number) {
    if (next_element < variant.element_lines.size() && variant.element_lines[next_element] == number) {
      ++next_element;
      continue;
    }
    const std::string_view line = file.line(number).substr(0, variant::sys_line_width);
    const std::optional<NearElement> element = finder.examine(number, line);
    if (!element) continue;
    found.by_name.try_emplace(element->name, static_cast<std::uint32_t>(found.list.size()));
    found.list.push_back(*element);
  }
  return found;
}

bool is_element_in_windows_1252(std::string_view line) {
  if (!variant::has_utf8_characters(line)) return false;
  return variant::is_element_line(variant::utf8_to_windows_1252(line));
}

}  // namespace schau::rules
