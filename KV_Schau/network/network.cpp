#include "KV_Schau/network/network.h"

#include <algorithm>
#include <cstddef>

namespace schau::network {
namespace {

using variant::NameKey;
using variant::Variant;
namespace columns = variant::sys_columns;

// Resolves the links of one element after the other. A name that only one element bears needs no search when
// the other end names the link, too: then an inflow tells whose outflow it is.
class Linker {
 public:
  Linker(const Variant& variant, Network& network)
      : variant_(variant), network_(network), outflow_names_(variant.names.size()) {}

  void run() {
    for (Element i = 1; i <= variant_.element_count(); ++i) read(i);
    for (Element i = 1; i <= variant_.element_count(); ++i) link_outflows(i);
    // Below the last element is nothing, whatever its first outflow is called.
    if (network_.count() > 0) network_.outflow[network_.outlet()][0] = 0;
    std::ranges::stable_sort(network_.unknown_links, {}, &UnknownLink::element);
  }

 private:
  void read(Element i) {
    const std::string_view line = variant_.element_line(i);
    Network::Given& given = network_.given[i];
    given.tag3 = !variant::is_blank(columns::tag3.of(line));
    given.tag7 = !variant::is_blank(columns::tag7.of(line));
    for (std::size_t k = 0; k < columns::outflow.size(); ++k) {
      outflow_names_[i][k] = variant::name_at(line, columns::outflow[k].first);
      given.outflow[k] = outflow_names_[i][k] != variant::blank_name;
    }
    for (std::size_t k = 0; k < columns::inflow.size(); ++k) {
      const NameKey name = variant::name_at(line, columns::inflow[k].first);
      given.inflow[k] = name != variant::blank_name;
      if (!given.inflow[k]) continue;
      const Element j = linked(i, name, columns::inflow[k], false);
      network_.inflow[i][k] = j;
      if (j != 0 && j <= i) note_outflow(j, i);
    }
  }

  void note_outflow(Element j, Element i) {
    for (std::size_t k = 0; k < columns::outflow.size(); ++k) {
      if (outflow_names_[j][k] == variant_.names[i]) network_.outflow[j][k] = i;
    }
  }

  void link_outflows(Element i) {
    for (std::size_t k = 0; k < columns::outflow.size(); ++k) {
      const bool is_linked = network_.outflow[i][k] != 0 && !variant_.elements.has_repetitions();
      if (!network_.given[i].outflow[k] || is_linked) continue;
      network_.outflow[i][k] = linked(i, outflow_names_[i][k], columns::outflow[k], true);
    }
  }

  // Most inflows stand a few lines above.
  [[nodiscard]] Element find(Element i, NameKey name) const {
    constexpr Element nearest = 4;
    if (!variant_.elements.has_repetitions()) {
      for (Element j = i > nearest ? i - nearest : 1; j < i; ++j) {
        if (variant_.names[j] == name) return j;
      }
    }
    return variant_.elements.last(name);
  }

  Element linked(Element i, NameKey name, variant::Span field, bool is_outflow) {
    const Element element = find(i, name);
    const bool is_end_marker = is_outflow && field.first == columns::outflow[0].first && variant_.has_end &&
                               i == variant_.element_count();
    if (element == 0 && !is_end_marker) network_.unknown_links.push_back({i, field, is_outflow, name});
    return element;
  }

  const Variant& variant_;
  Network& network_;
  std::vector<std::array<NameKey, 2>> outflow_names_;
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
  network.given.resize(variant.names.size());
  Linker(variant, network).run();
  return network;
}

}  // namespace schau::network
