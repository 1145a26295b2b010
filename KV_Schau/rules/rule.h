#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "KV_Schau/findings/finding.h"
#include "KV_Schau/rules/context.h"

namespace schau::rules {

/// Takes the findings of one rule.
class Sink {
 public:
  Sink(const findings::Rule& rule, std::vector<findings::Finding>& findings)
      : rule_(rule), findings_(findings) {}
  void add(const variant::Place& place, std::string text, std::string hint = "") {
    findings_.push_back({&rule_, place, std::move(text), std::move(hint)});
  }

 private:
  const findings::Rule& rule_;
  std::vector<findings::Finding>& findings_;
};

/// A rule and the procedure that looks for it. Each costs no more than a walk over what it is about.
struct CheckedRule {
  findings::Rule rule;
  void (*check)(const Context& context, Sink& sink);
};

/// The families, each in a file of its own.
std::span<const CheckedRule> text_rules();
std::span<const CheckedRule> element_line_rules();
std::span<const CheckedRule> number_rules();
std::span<const CheckedRule> station_rules();
std::span<const CheckedRule> unit_rules();
std::span<const CheckedRule> table_rules();
std::span<const CheckedRule> network_rules();
std::span<const CheckedRule> surroundings_rules();

}  // namespace schau::rules
