#include "KV_Schau/variant/names.h"

#include <algorithm>
#include <array>
#include <boost/sort/spreadsort/integer_sort.hpp>
#include <span>
#include <utility>

namespace schau::variant {
namespace {

constexpr unsigned byte_bits = 8;

char character_of(NameKey name, std::size_t place) {
  return static_cast<char>(name >> (byte_bits * (name_length - 1 - place)));
}

// A letter that looks like a digit becomes that digit, behind the letter of the type.
char looks_like(char character, std::size_t place) {
  const bool lower = character >= 'a' && character <= 'z';
  const char upper = lower ? static_cast<char>(character - 'a' + 'A') : character;
  if (place == 0) return upper;
  constexpr std::string_view letters = "OILSBZ";
  constexpr std::string_view digits = "011582";
  const std::size_t found = letters.find(upper);
  return found == std::string_view::npos ? upper : digits[found];
}

NameKey look_alike_form(NameKey name) {
  NameKey form = 0;
  for (std::size_t place = 0; place < name_length; ++place) {
    form = form << byte_bits | static_cast<unsigned char>(looks_like(character_of(name, place), place));
  }
  return form;
}

// The name without the character at a place.
NameKey shortened(NameKey name, std::size_t place) {
  const std::size_t bits_behind = byte_bits * (name_length - 1 - place);
  const NameKey behind = name & ((NameKey{1} << bits_behind) - 1);
  return name >> (bits_behind + byte_bits) << bits_behind | behind;
}

template <class Filed>
void sort_by_form(std::vector<Filed>& filed) {
  boost::sort::spreadsort::integer_sort(
      filed.begin(), filed.end(), [](const Filed& entry, unsigned shift) { return entry.form >> shift; },
      [](const Filed& left, const Filed& right) { return left.form < right.form; });
}

template <class Filed>
std::span<const Filed> filed_under(const std::vector<Filed>& filed, NameKey form) {
  const auto begin = std::ranges::lower_bound(filed, form, {}, &Filed::form);
  return {begin, std::ranges::upper_bound(begin, filed.end(), form, {}, &Filed::form)};
}

}  // namespace

std::string text_of(NameKey name, bool trim) {
  std::string text;
  for (std::size_t place = 0; place < name_length; ++place) text += character_of(name, place);
  if (trim) text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

void NameIndex::fill(const std::vector<NameKey>& names) {
  first_.clear();
  last_of_repeated_.clear();
  first_.reserve(names.size());
  for (std::uint32_t i = 1; i < names.size(); ++i) {
    if (names[i] == blank_name) continue;
    if (!first_.try_emplace(names[i], i).second) last_of_repeated_[names[i]] = i;
  }
}

SimilarNames::SimilarNames(std::vector<NameKey> names) : names_(std::move(names)) {
  std::erase(names_, blank_name);
  std::ranges::sort(names_);
  names_.erase(std::unique(names_.begin(), names_.end()), names_.end());
  look_alikes_.reserve(names_.size());
  shortened_.reserve(names_.size() * name_length);
  for (std::uint32_t i = 0; i < names_.size(); ++i) {
    look_alikes_.push_back({look_alike_form(names_[i]), i});
    for (std::size_t place = 0; place < name_length; ++place) {
      shortened_.push_back({shortened(names_[i], place), i});
    }
  }
  sort_by_form(look_alikes_);
  sort_by_form(shortened_);
}

NameKey SimilarNames::look_alike(NameKey name) const {
  for (const Filed& entry : filed_under(look_alikes_, look_alike_form(name))) {
    if (names_[entry.name] != name) return names_[entry.name];
  }
  return 0;
}

NameKey SimilarNames::one_change_apart(NameKey name) const {
  NameKey found = 0;
  for (std::size_t place = 0; place < name_length; ++place) {
    for (const Filed& entry : filed_under(shortened_, shortened(name, place))) {
      const NameKey candidate = names_[entry.name];
      if (candidate == name || candidate == found || changes_between(candidate, name) > 1) continue;
      if (found != 0) return 0;
      found = candidate;
    }
  }
  return found;
}

NameKey SimilarNames::meant_by(NameKey name) const {
  const NameKey alike = look_alike(name);
  return alike != 0 ? alike : one_change_apart(name);
}

std::size_t changes_between(NameKey left, NameKey right) {
  const std::string from = text_of(left);
  const std::string to = text_of(right);
  std::array<std::array<std::size_t, name_length + 1>, name_length + 1> changes{};
  for (std::size_t i = 0; i <= from.size(); ++i) changes[i][0] = i;
  for (std::size_t k = 0; k <= to.size(); ++k) changes[0][k] = k;
  for (std::size_t i = 1; i <= from.size(); ++i) {
    for (std::size_t k = 1; k <= to.size(); ++k) {
      const std::size_t other = changes[i - 1][k - 1] + (from[i - 1] == to[k - 1] ? 0 : 1);
      changes[i][k] = std::min({other, changes[i - 1][k] + 1, changes[i][k - 1] + 1});
      const bool exchanged = i > 1 && k > 1 && from[i - 1] == to[k - 2] && from[i - 2] == to[k - 1];
      if (exchanged) changes[i][k] = std::min(changes[i][k], changes[i - 2][k - 2] + 1);
    }
  }
  return changes[from.size()][to.size()];
}

}  // namespace schau::variant
