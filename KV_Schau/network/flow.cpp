#include "KV_Schau/network/flow.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "m_System/element_types.h"

namespace schau::network {
namespace {

using m_System::OwnArea;
using m_System::PassesOn;

void add(Areas& sum, const Areas& areas, double fraction) {
  sum.natural += fraction * areas.natural;
  sum.canalised += fraction * areas.canalised;
  sum.impervious += fraction * areas.impervious;
}

Areas own_areas(OwnArea kind, const Taken& taken) {
  if (kind == OwnArea::natural) return {taken.value, 0.0, 0.0};
  if (kind == OwnArea::canalised) return {0.0, taken.value, taken.value * taken.fraction};
  return {};
}

// Losses below a square millimetre are rounding.
bool shows(const Areas& areas) {
  constexpr double least = 1e-12;
  return std::abs(areas.natural) > least || std::abs(areas.canalised) > least ||
         std::abs(areas.impervious) > least || std::isnan(areas.all());
}

class Accumulation {
 public:
  Accumulation(const variant::Variant& variant, const Network& network, const std::vector<Taken>& taken)
      : variant_(variant), network_(network), taken_(taken) {
    flow_.total.resize(network.count() + 1);
    passed_on_.assign(network.count() + 1, 0.0);
    visited_.assign(network.count() + 1, false);
  }

  Flow run(const std::vector<Element>& order) {
    for (const Element i : order) visit(i);
    if (network_.count() > 0) flow_.balance.outlet = flow_.total[network_.outlet()];
    for (Element i = 1; i <= network_.count(); ++i) note_loss(i);
    return std::move(flow_);
  }

 private:
  void visit(Element i) {
    const m_System::ElementType& type = m_System::type_of(variant_.type(i));
    if (type.is_source()) {
      flow_.total[i] = own_areas(type.own_area, taken_[i]);
      add(flow_.balance.sources, flow_.total[i], 1.0);
    } else {
      for (const Element j : network_.inflow[i]) {
        if (j != 0) take_in(i, j);
      }
    }
    visited_[i] = true;
  }

  void take_in(Element i, Element j) {
    if (!visited_[j]) return;
    const double fraction = fraction_to(i, j);
    add(flow_.total[i], flow_.total[j], fraction);
    passed_on_[j] += fraction;
  }

  [[nodiscard]] double fraction_to(Element i, Element j) const {
    return part_passed_on(variant_, network_, taken_, j, i);
  }

  void note_loss(Element i) {
    constexpr double rounding = 1e-9;
    const double left = (i == network_.outlet() ? 0.0 : 1.0) - passed_on_[i];
    if (std::abs(left) < rounding) return;
    Areas lost;
    add(lost, flow_.total[i], left);
    if (shows(lost))
      flow_.balance.losses.push_back({i, left < 0 ? LossReason::counted_twice : reason(i), lost});
  }

  [[nodiscard]] LossReason reason(Element i) const {
    const auto& outflow = network_.outflow[i];
    const PassesOn passes_on = m_System::type_of(variant_.type(i)).passes_on;
    if (is_taken_before_visited(i)) return LossReason::in_loop;
    if (passes_on == PassesOn::totals_to_second && outflow[1] == 0) {
      return outflow[0] == 0 ? LossReason::basin_without_outflow : LossReason::basin_first_outflow;
    }
    if (passes_on != PassesOn::divided_totals) return LossReason::not_taken;
    if (taken_[i].value != 1.0) {
      return outflow[1] == 0 ? LossReason::other_code_first_outflow : LossReason::not_taken;
    }
    if (outflow[0] == outflow[1]) return LossReason::one_element_twice;
    if (outflow[1] == 0) return LossReason::no_second_outflow;
    return outflow[0] == 0 ? LossReason::no_first_outflow : LossReason::not_taken;
  }

  // A link that leads back: the element above had no sum yet when the one below was summed.
  [[nodiscard]] bool is_taken_before_visited(Element i) const {
    for (const Element k : network_.outflow[i]) {
      if (k != 0 && network_.names_inflow(k, i) && fraction_to(k, i) != 0.0 && passed_on_[i] == 0.0)
        return true;
    }
    return false;
  }

  const variant::Variant& variant_;
  const Network& network_;
  const std::vector<Taken>& taken_;
  Flow flow_;
  std::vector<double> passed_on_;
  std::vector<bool> visited_;
};

}  // namespace

std::string_view words_for(LossReason reason) {
  static constexpr std::array<std::string_view, 9> words = {
      "Becken ohne Ablauf",
      "Becken ohne zweiten Ablauf: an den ersten gibt es nichts ab",
      "Kennziffer ungleich 1, aber kein zweiter Ablauf: der erste bekommt nichts",
      "der Anteil des fehlenden ersten Ablaufs",
      "der Rest, der dem fehlenden zweiten Ablauf zukäme",
      "beide Abläufe sind dasselbe Element, das nur den ersten Teil erhält",
      "kein Element nimmt es als Zulauf auf",
      "im Kreis geführt",
      "mehrfach aufgenommen"};
  return words[static_cast<std::size_t>(reason)];
}

double part_passed_on(const variant::Variant& variant, const Network& network,
                      const std::vector<Taken>& taken, Element from, Element to) {
  const auto& outflow = network.outflow[from];
  switch (m_System::type_of(variant.type(from)).passes_on) {
    case PassesOn::everything:
      return 1.0;
    case PassesOn::totals_to_second:
      return outflow[1] == to ? 1.0 : 0.0;
    case PassesOn::divided_totals:
      break;
  }
  if (taken[from].value != 1.0) return outflow[1] == to ? 1.0 : 0.0;
  if (outflow[0] == to) return taken[from].fraction;
  return outflow[1] == to ? 1.0 - taken[from].fraction : 0.0;
}

Flow accumulate(const variant::Variant& variant, const Network& network, const std::vector<Element>& order,
                const variant::Records& records, const std::vector<Taken>& taken) {
  Flow flow = Accumulation(variant, network, taken).run(order);
  for (Element i = 1; i <= network.count(); ++i) {
    const bool has_area = m_System::type_of(variant.type(i)).own_area != OwnArea::none;
    if (has_area && records.line[i] == 0) flow.balance.without_record.push_back(i);
  }
  return flow;
}

}  // namespace schau::network
