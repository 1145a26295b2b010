#include "KV_Schau/network/network.h"

#include <algorithm>
#include <cstddef>

namespace schau::network {
namespace {

using variant::NameKey;
using variant::Variant;
namespace columns = variant::sys_columns;

// Fills the links of one element after the other.
class Linker {
 public:
  Linker(const Variant& variant, Network& network) : variant_(variant), network_(network) {}

  void link(Element i) {
    const std::string_view line = variant_.element_line(i);
    for (std::size_t k = 0; k < columns::inflow.size(); ++k) {
      network_.inflow[i][k] = linked(i, line, columns::inflow[k], false);
    }
    for (std::size_t k = 0; k < columns::outflow.size(); ++k) {
      network_.outflow[i][k] = linked(i, line, columns::outflow[k], true);
    }
    // Below the last element is nothing, whatever its first outflow is called.
    if (i == variant_.element_count()) network_.outflow[i][0] = 0;
  }

 private:
  Element linked(Element i, std::string_view line, variant::Span field, bool is_outflow) {
    const NameKey name = variant::name_at(line, field.first);
    if (name == variant::blank_name) return 0;
    const Element element = variant_.elements.last(name);
    const bool is_end_marker = is_outflow && field.first == columns::outflow[0].first && variant_.has_end &&
                               i == variant_.element_count();
    if (element == 0 && !is_end_marker) network_.unknown_links.push_back({i, field, is_outflow, name});
    return element;
  }

  const Variant& variant_;
  Network& network_;
};

}  // namespace

bool Network::names_inflow(Element element, Element inflow_element) const {
  return std::ranges::find(inflow[element], inflow_element) != inflow[element].end();
}

bool Network::names_outflow(Element element, Element outflow_element) const {
  return std::ranges::find(outflow[element], outflow_element) != outflow[element].end();
}

Network link(const Variant& variant) {
  Network network;
  network.inflow.resize(variant.names.size());
  network.outflow.resize(variant.names.size());
  Linker linker(variant, network);
  for (Element i = 1; i <= variant.element_count(); ++i) linker.link(i);
  return network;
}

}  // namespace schau::network
