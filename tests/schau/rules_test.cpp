// Each rule on a minimal mistake, at its exact place, and not on the clean twin.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "KV_Schau/rules/rules.h"
#include "tests/schau/bed.h"
#include "tests/schau/rule_cases.h"

namespace schau_test {

void PrintTo(const RuleCase& one, std::ostream* out) {
  *out << one.rule << ": " << one.what;
}

namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::vector<RuleCase> all_cases() {
  std::vector<RuleCase> cases;
  for (const auto family : {text_cases, element_line_cases, number_cases, station_cases, unit_cases,
                            table_cases, network_cases, surroundings_cases}) {
    for (RuleCase& one : family()) cases.push_back(std::move(one));
  }
  return cases;
}

std::vector<std::string> places_of(const std::vector<schau::findings::Finding>& found) {
  std::vector<std::string> places;
  places.reserve(found.size());
  for (const schau::findings::Finding& finding : found) places.push_back(place_words(finding.place));
  return places;
}

TEST(Bed, HoldsNothingToFind) {
  EXPECT_THAT(all_findings(Bed()), IsEmpty());
}

TEST(Rules, AllHaveACase) {
  std::set<std::string> tested;
  for (const RuleCase& one : all_cases()) tested.insert(std::string(one.rule));
  for (const schau::findings::Rule* rule : schau::rules::all_rules()) {
    EXPECT_TRUE(tested.contains(std::string(rule->identifier))) << rule->identifier;
  }
}

TEST(Rules, HaveIdentifiersOfTheirOwn) {
  std::set<std::string_view> identifiers;
  for (const schau::findings::Rule* rule : schau::rules::all_rules()) {
    EXPECT_TRUE(identifiers.insert(rule->identifier).second) << rule->identifier;
    EXPECT_EQ(schau::rules::rule_named(rule->identifier), rule);
    EXPECT_EQ(rule->identifier.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"),
              std::string_view::npos)
        << rule->identifier;
    EXPECT_FALSE(rule->explanation.empty() || rule->explanation.ends_with('.')) << rule->identifier;
  }
  EXPECT_EQ(schau::rules::rule_named("gibt-es-nicht"), nullptr);
}

class RuleTest : public ::testing::TestWithParam<RuleCase> {};

TEST_P(RuleTest, IsFoundAtItsPlace) {
  const RuleCase& one = GetParam();
  Bed bed;
  one.make(bed);
  const std::vector<schau::findings::Finding> found = findings_of(bed, one.rule);
  EXPECT_EQ(places_of(found), one.places);
  if (found.empty()) return;
  EXPECT_THAT(found.front().text, HasSubstr(one.text));
  EXPECT_THAT(found.front().hint, HasSubstr(one.hint));
}

TEST_P(RuleTest, IsNotFoundOnTheCleanTwin) {
  const RuleCase& one = GetParam();
  Bed bed;
  one.make_clean(bed);
  EXPECT_THAT(places_of(findings_of(bed, one.rule)), IsEmpty());
}

TEST_P(RuleTest, IsSilentWhenSwitchedOff) {
  const RuleCase& one = GetParam();
  Bed bed;
  one.make(bed);
  const schau::variant::Variant variant = bed.variant();
  for (const auto& finding : schau::rules::check(variant, {schau::rules::rule_named(one.rule)}).findings) {
    EXPECT_NE(finding.rule->identifier, one.rule);
  }
}

std::string test_name(const ::testing::TestParamInfo<RuleCase>& info) {
  std::string name(info.param.rule);
  name.append("_").append(info.param.what);
  std::replace_if(
      name.begin(), name.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Cases, RuleTest, ::testing::ValuesIn(all_cases()), test_name);

}  // namespace
}  // namespace schau_test
