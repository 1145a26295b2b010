#include "KV_Schau/network/upstream.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>

#include "m_System/element_types.h"

namespace schau::network {
namespace {

void add(Weights& sum, const Weights& weights) {
  for (std::size_t k = 0; k < sum.size(); ++k) sum.at(k) += weights.at(k);
}

// The inflows of an element that stand before it in the order, each once.
class Inflows {
 public:
  Inflows(const Network& network, const std::vector<Element>& order) : network_(network) {
    position_.assign(network.count() + 1, 0);
    for (std::uint32_t k = 0; k < order.size(); ++k) position_[order[k]] = k + 1;
  }

  template <class Take>
  void for_each(Element i, const Take& take) const {
    const std::array<Element, 3>& inflow = network_.inflow[i];
    for (auto slot = inflow.begin(); slot != inflow.end(); ++slot) {
      const bool counts = *slot != 0 && position_[*slot] < position_[i];
      if (counts && std::find(inflow.begin(), slot, *slot) == slot) take(*slot);
    }
  }

 private:
  const Network& network_;
  std::vector<std::uint32_t> position_;
};

// The small graph of branchings and of the places where reaches below branchings meet. Nodes count from 1, in
// the direction of flow; 0 is none.
struct SmallGraph {
  using Node = std::uint32_t;
  static constexpr std::uint32_t no_branching = 0xFFFFFFFF;

  struct Inputs {
    std::array<Node, 3> nodes{};
    std::uint32_t branching = no_branching;  // its number, in the order of the nodes
  };
  std::vector<Inputs> nodes{Inputs{}};
  std::vector<Node> branchings;  // their nodes
  std::vector<Weights> weights;  // of what a branching alone brings, by its number
};

class Contraction {
 public:
  Contraction(const Network& network, const std::vector<Element>& order, const std::vector<Weights>& weights)
      : inflows_(network, order), sums_(weights), node_(weights.size(), 0) {
    find_branchings(order);
    for (const Element i : order) visit(i);
  }

  [[nodiscard]] const SmallGraph& graph() const { return graph_; }
  // The sum of the tree above an element, up to the branchings.
  std::vector<Weights>& sums() { return sums_; }
  // The node that has the branchings upstream of an element; for a branching, itself included.
  [[nodiscard]] SmallGraph::Node node_of(Element i) const { return node_[i]; }
  [[nodiscard]] bool is_branching(Element i) const { return outflows_[i] > 1; }

 private:
  void find_branchings(const std::vector<Element>& order) {
    outflows_.assign(node_.size(), 0);
    for (const Element i : order) {
      inflows_.for_each(
          i, [&](Element j) { outflows_[j] = static_cast<std::uint8_t>(std::min(2, outflows_[j] + 1)); });
    }
  }

  void visit(Element i) {
    std::array<SmallGraph::Node, 3> nodes{};
    std::size_t count = 0;
    inflows_.for_each(i, [&](Element j) {
      if (!is_branching(j)) add(sums_[i], sums_[j]);
      const SmallGraph::Node node = node_[j];
      if (node == 0 || std::find(nodes.begin(), nodes.begin() + count, node) != nodes.begin() + count) return;
      nodes.at(count++) = node;
    });
    const bool branches = is_branching(i);
    if (count <= 1 && !branches) {
      node_[i] = nodes[0];
      return;
    }
    node_[i] = static_cast<SmallGraph::Node>(graph_.nodes.size());
    graph_.nodes.push_back({nodes, SmallGraph::no_branching});
    if (!branches) return;
    graph_.nodes.back().branching = static_cast<std::uint32_t>(graph_.branchings.size());
    graph_.branchings.push_back(node_[i]);
    graph_.weights.push_back(sums_[i]);
  }

  Inflows inflows_;
  std::vector<Weights> sums_;
  std::vector<SmallGraph::Node> node_;
  std::vector<std::uint8_t> outflows_;  // 2 for more
  SmallGraph graph_;
};

// For each node the sum of the weights of the branchings upstream, itself included.
class BranchingSums {
 public:
  explicit BranchingSums(const SmallGraph& graph)
      : graph_(graph), sums_(graph.nodes.size()), bits_(graph.nodes.size(), 0) {
    for (std::size_t first = 0; first < graph.branchings.size(); first += batch) add_batch(first);
  }

  [[nodiscard]] const Weights& of(SmallGraph::Node node) const { return sums_[node]; }

 private:
  static constexpr std::size_t batch = 64;
  static constexpr std::size_t bits_a_byte = 8;
  static constexpr std::size_t byte_values = 256;
  static constexpr std::size_t bytes = batch / bits_a_byte;

  // The sums of all sets of eight branchings in turn.
  void fill_tables(std::size_t first) {
    for (std::size_t byte = 0; byte < bytes; ++byte) {
      for (std::size_t value = 1; value < byte_values; ++value) {
        const auto lowest = static_cast<std::size_t>(std::countr_zero(value));
        const std::size_t branching = first + byte * bits_a_byte + lowest;
        Weights sum = table_[byte][value & (value - 1)];
        if (branching < graph_.weights.size()) add(sum, graph_.weights[branching]);
        table_[byte][value] = sum;
      }
    }
  }

  // Nodes before the first branching of the batch have none of it upstream.
  void add_batch(std::size_t first) {
    fill_tables(first);
    const std::size_t first_node = graph_.branchings[first];
    std::fill(bits_.begin(), bits_.begin() + static_cast<std::ptrdiff_t>(first_node), 0);
    for (std::size_t node = first_node; node < graph_.nodes.size(); ++node) {
      const SmallGraph::Inputs& inputs = graph_.nodes[node];
      std::uint64_t set = bits_[inputs.nodes[0]] | bits_[inputs.nodes[1]] | bits_[inputs.nodes[2]];
      const std::size_t number = inputs.branching - first;
      if (inputs.branching != SmallGraph::no_branching && number < batch) set |= std::uint64_t{1} << number;
      bits_[node] = set;
      for (std::size_t byte = 0; set != 0; ++byte, set >>= bits_a_byte) {
        add(sums_[node], table_[byte][set & (byte_values - 1)]);
      }
    }
  }

  const SmallGraph& graph_;
  std::vector<Weights> sums_;
  std::vector<std::uint64_t> bits_;
  std::array<std::array<Weights, byte_values>, bytes> table_{};
};

// The streams of the highest order that come to a place.
struct Streams {
  std::uint32_t order = 0;
  Element origin = 0;    // where a stream of that order begins; 0 when nothing is known of it
  bool several = false;  // streams of that order with different origins

  void take(const Streams& other) {
    if (other.order > order) {
      *this = other;
    } else if (other.order == order) {
      several = several || other.several || (order > 0 && other.origin != origin);
      if (origin == 0) origin = other.origin;
    }
  }

  // What goes on from a place where streams become one.
  void join_at(Element i) {
    if (several) *this = {order + 1, i, false};
  }
};

// A reach is a stream. What comes to a branching is one stream too, which begins there if no reach lies
// above.
Streams streams_below(char type, Element i, Streams streams) {
  if (type == 'P') return streams;
  streams.join_at(i);
  const bool begins = type == 'T' && streams.order == 0;
  if (begins) streams.order = 1;
  if (streams.origin == 0 && (begins || m_System::type_of(type).is_structure())) streams.origin = i;
  return streams;
}

std::vector<std::uint32_t> stream_orders(const variant::Variant& variant, const std::vector<Element>& order,
                                         const Inflows& inflows) {
  std::vector<Streams> streams(variant.element_count() + 1);
  for (const Element i : order) {
    Streams come;
    inflows.for_each(i, [&](Element j) { come.take(streams[j]); });
    streams[i] = streams_below(variant.type(i), i, come);
  }
  std::vector<std::uint32_t> orders(streams.size());
  std::ranges::transform(streams, orders.begin(), &Streams::order);
  return orders;
}

}  // namespace

std::vector<Weights> upstream_sums(const Network& network, const std::vector<Element>& order,
                                   const std::vector<Weights>& weights) {
  Contraction contraction(network, order, weights);
  const BranchingSums branchings(contraction.graph());
  std::vector<Weights> sums = std::move(contraction.sums());
  for (Element i = 1; i <= network.count(); ++i) {
    // What a branching brings itself is among the branchings upstream of it.
    if (contraction.is_branching(i)) sums[i] = {};
    add(sums[i], branchings.of(contraction.node_of(i)));
  }
  return sums;
}

std::vector<Upstream> look_upstream(const variant::Variant& variant, const Network& network,
                                    const std::vector<Element>& order, const std::vector<Taken>& taken) {
  std::vector<Weights> weights(network.count() + 1);
  for (Element i = 1; i <= network.count(); ++i) {
    const bool has_area = m_System::type_of(variant.type(i)).own_area != m_System::OwnArea::none;
    weights[i] = {has_area ? taken[i].value : 0.0, 1.0};
  }
  const std::vector<Weights> sums = upstream_sums(network, order, weights);
  const std::vector<std::uint32_t> orders = stream_orders(variant, order, Inflows(network, order));
  std::vector<Upstream> upstream(sums.size());
  for (Element i = 1; i <= network.count(); ++i) {
    upstream[i] = {orders[i], static_cast<std::uint32_t>(sums[i][1]) - 1, sums[i][0]};
  }
  return upstream;
}

}  // namespace schau::network
