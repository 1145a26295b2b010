#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace schau::variant {

/// The five bytes of an element's name as one number, padded with blanks. Equal names are equal numbers.
using NameKey = std::uint64_t;

inline constexpr std::size_t name_length = 5;

/// The key of the name that begins in a column (from 1) of a line; what the line lacks is blank.
inline NameKey name_at(std::string_view line, std::size_t column) {
  NameKey key = 0;
  for (std::size_t i = column - 1; i < column - 1 + name_length; ++i) {
    key = key << 8U | static_cast<unsigned char>(i < line.size() ? line[i] : ' ');
  }
  return key;
}

/// The key of a text, cut or padded to five bytes.
inline NameKey name_of(std::string_view text) {
  return name_at(text, 1);
}

inline constexpr NameKey blank_name = 0x2020202020;

/// The first byte of the name: the letter of its type.
inline char letter_of(NameKey name) {
  return static_cast<char>(name >> 32U);
}

/// The five bytes of a name, without the blanks at the end when `trim` is set.
std::string text_of(NameKey name, bool trim = true);

/// Elements by name. Blank names are no names.
class NameIndex {
 public:
  /// Indexes the names of the elements 1 .. names.size() - 1; `names[0]` is not used.
  void fill(const std::vector<NameKey>& names);

  /// The first element of a name; 0 when there is none.
  [[nodiscard]] std::uint32_t first(NameKey name) const {
    const auto found = first_.find(name);
    return found == first_.end() ? 0 : found->second;
  }
  /// The last element of a name: links go to it. 0 when there is none.
  [[nodiscard]] std::uint32_t last(NameKey name) const {
    if (!last_of_repeated_.empty()) {
      const auto repeated = last_of_repeated_.find(name);
      if (repeated != last_of_repeated_.end()) return repeated->second;
    }
    return first(name);
  }
  /// True when several elements bear one name.
  [[nodiscard]] bool has_repetitions() const { return !last_of_repeated_.empty(); }

 private:
  using Map = boost::unordered_flat_map<NameKey, std::uint32_t>;
  Map first_;
  Map last_of_repeated_;
};

/// What a misspelt name may have been meant to be, among given names.
///
/// A name is filed under what is left of it when one of its five characters is taken away (deletion
/// neighbourhood: Bocek, Hunt and Stiller, Fast Similarity Search in Large Dictionaries, 2007): two names one
/// change apart - another, an additional, a missing character, two neighbours exchanged - meet there. So a
/// question costs a few look-ups, however many names there are.
class SimilarNames {
 public:
  /// Repeated names count once, blank ones do not count.
  explicit SimilarNames(std::vector<NameKey> names);

  /// The name that differs in nothing but the case of letters and in digits that look like letters (0 and O,
  /// 1 and I, 5 and S, 8 and B, 2 and Z), or else the only one that is one change apart; 0 when there is none
  /// or when there are several, as a guess among them would mislead.
  [[nodiscard]] NameKey meant_by(NameKey name) const;

 private:
  // A short form and the position of the name that it stands for.
  struct Filed {
    NameKey form = 0;
    std::uint32_t name = 0;
  };
  [[nodiscard]] NameKey look_alike(NameKey name) const;
  [[nodiscard]] NameKey one_change_apart(NameKey name) const;

  std::vector<NameKey> names_;
  std::vector<Filed> look_alikes_;
  std::vector<Filed> shortened_;
};

/// The least number of changes (another, an additional, a missing character, two neighbours exchanged) from
/// one name to the other: the Damerau-Levenshtein distance in its restricted form.
std::size_t changes_between(NameKey left, NameKey right);

}  // namespace schau::variant
