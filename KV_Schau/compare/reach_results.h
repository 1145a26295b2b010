#pragma once

#include <vector>

#include "KV_Schau/compare/result_table.h"
#include "KV_Schau/network/flow.h"
#include "KV_Schau/network/network.h"
#include "KV_Schau/network/values.h"

namespace schau::compare {

/// A variant and what a run makes of it. The variant must outlive it.
struct Results {
  explicit Results(const variant::Variant& of_variant);

  const variant::Variant& variant;
  variant::Records records;
  network::Network network;
  std::vector<network::Element> order;
  std::vector<network::Taken> taken;
  /// By element: all upstream, and what has come since the last branching or basin.
  std::vector<network::Areas> total;
  std::vector<network::Areas> direct;

  [[nodiscard]] Sums sums(network::Element element) const;
};

}  // namespace schau::compare
