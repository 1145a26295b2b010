#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "tests/schau/bed.h"

namespace schau_test {

/// A mistake and what a rule has to say about it.
struct RuleCase {
  std::string_view rule;
  std::string_view what;  ///< the mistake, in words
  std::function<void(Bed&)> make;
  std::vector<std::string> places;  ///< of all findings of the rule, see `place_words`
  std::string_view text = {};       ///< a part of the first finding's text, UTF-8
  std::string_view hint = {};       ///< a part of its hint
  /// Makes the clean twin when it is not the plain bed.
  std::function<void(Bed&)> make_clean = [](Bed&) {};
};

void PrintTo(const RuleCase& one, std::ostream* out);

/// The cases by families, in files of their own.
std::vector<RuleCase> text_cases();
std::vector<RuleCase> element_line_cases();
std::vector<RuleCase> number_cases();
std::vector<RuleCase> station_cases();
std::vector<RuleCase> unit_cases();
std::vector<RuleCase> table_cases();
std::vector<RuleCase> network_cases();
std::vector<RuleCase> surroundings_cases();

}  // namespace schau_test
