#include "KV_Schau/compare/reach_results.h"

#include "KV_Schau/network/order.h"
#include "m_System/element_types.h"

namespace schau::compare {
namespace {

using m_System::PassesOn;
using network::Areas;
using network::Element;

// Branchings and basins pass on nothing that is direct.
std::vector<Areas> direct_areas(const Results& results) {
  std::vector<Areas> direct(results.total.size());
  std::vector<bool> is_visited(results.total.size(), false);
  for (const Element i : results.order) {
    is_visited[i] = true;
    if (m_System::type_of(results.variant.type(i)).is_source()) {
      direct[i] = results.total[i];
      continue;
    }
    for (const Element j : results.network.inflow[i]) {
      const bool passes_on = m_System::type_of(results.variant.type(j)).passes_on == PassesOn::everything;
      if (j == 0 || !is_visited[j] || !passes_on) continue;
      direct[i].natural += direct[j].natural;
      direct[i].canalised += direct[j].canalised;
      direct[i].impervious += direct[j].impervious;
    }
  }
  return direct;
}

run::Number number(double value) {
  return {run::Number::Kind::number, value};
}

}  // namespace

Results::Results(const variant::Variant& of_variant)
    : variant(of_variant),
      records(variant::find_records(of_variant)),
      network(network::link(of_variant)),
      order(network::flow_order(network)),
      taken(network::take_values(of_variant, records)),
      total(network::accumulate(of_variant, network, order, records, taken).total),
      direct(direct_areas(*this)) {}

Sums Results::sums(Element i) const {
  return {number(direct[i].natural),  number(total[i].natural),     number(direct[i].canalised),
          number(total[i].canalised), number(direct[i].impervious), number(total[i].impervious),
          number(total[i].all())};
}

}  // namespace schau::compare
