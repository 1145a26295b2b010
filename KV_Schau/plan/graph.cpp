#include "KV_Schau/plan/graph.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace schau::plan {
namespace {

std::uint8_t slot_of(const network::Network& network, Element from, Element to) {
  const auto& outflow = network.outflow[from];
  for (std::size_t k = 0; k < outflow.size(); ++k) {
    if (outflow[k] == to) return static_cast<std::uint8_t>(k);
  }
  return Link::unnamed;
}

double usable_area(double area) {
  return std::isfinite(area) ? std::max(area, 0.0) : 0.0;
}

}  // namespace

Graph graph_of(const Facts& facts) {
  const network::Network& network = facts.network;
  Graph graph;
  const auto add = [&](Element from, Element to, bool named_below) {
    Link link{from, to, slot_of(network, from, to), named_below};
    if (named_below) link.part = network::part_passed_on(facts.variant, network, facts.taken, from, to);
    link.area = usable_area(link.part * facts.flow.total[from].all());
    graph.links.push_back(link);
  };
  for (Element i = 1; i <= network.count(); ++i) {
    const auto& inflow = network.inflow[i];
    for (std::size_t k = 0; k < inflow.size(); ++k) {
      const bool is_repeated = std::find(inflow.begin(), inflow.begin() + static_cast<std::ptrdiff_t>(k),
                                         inflow[k]) != inflow.begin() + static_cast<std::ptrdiff_t>(k);
      if (inflow[k] != 0 && !is_repeated) add(inflow[k], i, true);
    }
    const auto& outflow = network.outflow[i];
    for (std::size_t k = 0; k < outflow.size(); ++k) {
      const Element to = outflow[k];
      if (to == 0 || (k == 1 && to == outflow[0]) || network.names_inflow(to, i)) continue;
      add(i, to, false);
    }
  }
  graph.count = network.count();
  graph.into =
      ByElement(graph.count, graph.links.size(), [&](auto number) { return graph.links[number].to; });
  graph.out_of =
      ByElement(graph.count, graph.links.size(), [&](auto number) { return graph.links[number].from; });
  return graph;
}

}  // namespace schau::plan
