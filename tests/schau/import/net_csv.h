#pragma once

#include <string>

#include "KV_Schau/variant/variant.h"

/// Tables of a network as a geographic information system would export them, made from a variant.
namespace net_csv {

struct Form {
  char separator = ',';
  bool decimal_comma = false;
  /// Areas stand in the row of the reach below them, branchings in that of the reach above, where there is
  /// one only.
  bool folded = false;
  /// What stands before an element's name to make its id.
  std::string id_prefix = "";
};

/// A row for each element but the gauges: what drains into one drains into the element below it.
std::string of_variant(const schau::variant::Variant& variant, const Form& form);

}  // namespace net_csv
