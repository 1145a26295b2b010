#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/findings/finding.h"
#include "KV_Schau/network/flow.h"
#include "KV_Schau/network/network.h"
#include "KV_Schau/variant/variant.h"

/// What a run takes from a variant without a word, rule by rule.
namespace schau::rules {

/// All rules, family by family. They live as long as the program.
std::vector<const findings::Rule*> all_rules();

/// The rule of an identifier; null when there is none.
const findings::Rule* rule_named(std::string_view identifier);

/// What came of a check.
struct Result {
  std::vector<findings::Finding> findings;  ///< in the order of their places
  network::Network network;
  network::Flow flow;
};

/// Checks a variant by all rules but those switched off.
Result check(const variant::Variant& variant, const std::vector<const findings::Rule*>& without = {});

}  // namespace schau::rules
