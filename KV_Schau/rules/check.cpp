#include <algorithm>
#include <array>
#include <utility>

#include "KV_Schau/rules/rule.h"
#include "KV_Schau/rules/rules.h"

namespace schau::rules {
namespace {

using findings::Rule;
using Family = std::span<const CheckedRule> (*)();

constexpr std::array<Family, 8> families = {text_rules,    element_line_rules, number_rules,
                                            station_rules, unit_rules,         table_rules,
                                            network_rules, surroundings_rules};

}  // namespace

std::vector<const Rule*> all_rules() {
  std::vector<const Rule*> rules;
  for (const Family family : families) {
    for (const CheckedRule& row : family()) rules.push_back(&row.rule);
  }
  return rules;
}

const Rule* rule_named(std::string_view identifier) {
  const std::vector<const Rule*> rules = all_rules();
  const auto found = std::ranges::find(rules, identifier, &Rule::identifier);
  return found == rules.end() ? nullptr : *found;
}

Result check(const variant::Variant& variant, const std::vector<const Rule*>& without) {
  Context context(variant);
  Result result;
  for (const Family family : families) {
    for (const CheckedRule& row : family()) {
      if (std::ranges::find(without, &row.rule) != without.end()) continue;
      Sink sink(row.rule, result.findings);
      row.check(context, sink);
    }
  }
  findings::sort_by_place(result.findings);
  result.network = std::move(context.network);
  result.flow = std::move(context.flow);
  return result;
}

}  // namespace schau::rules
