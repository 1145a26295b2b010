// The network: the fields of its elements, the links between them, loops, and where area is lost.

#include "KV_Schau/network/network.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "KV_Schau/network/order.h"
#include "KV_Schau/rules/rule.h"
#include "m_System/element_types.h"

namespace schau::rules {
namespace {

using findings::Severity;
using variant::FileId;
using variant::NameKey;
using variant::Place;
using variant::Span;
namespace columns = variant::sys_columns;

Place place_of_field(const Context& context, Element element, Span field) {
  return {FileId::sys, context.variant.element_lines[element], field.first, field.width()};
}

Place place_of(const Context& context, Element element) {
  return variant::place_of_element(context.variant, element);
}

std::string line_of(const Context& context, Element element) {
  return line_words(context.variant.element_lines[element]);
}

// Fields.

void check_repeated_names(const Context& context, Sink& sink) {
  if (!context.variant.elements.has_repetitions()) return;
  for (Element i = 1; i <= context.network.count(); ++i) {
    const Element first = context.variant.elements.first(context.variant.names[i]);
    if (first == i || first == 0) continue;
    sink.add(place_of(context, i), fmt::format("Der Name {} ist schon in {} vergeben", name_of(context, i),
                                               line_of(context, first)));
  }
}

void check_inflows_of_sources(const Context& context, Sink& sink) {
  for (const Element i : context.noteworthy) {
    if (!m_System::type_of(context.variant.type(i)).is_source()) continue;
    for (std::size_t k = 0; k < columns::inflow.size(); ++k) {
      if (!context.network.given[i].inflow[k]) continue;
      sink.add(place_of_field(context, i, columns::inflow[k]),
               fmt::format("{} ist eine Quelle und darf keinen Zulauf haben", name_of(context, i)));
    }
  }
}

void check_missing_inflows(const Context& context, Sink& sink) {
  for (const Element i : context.noteworthy) {
    if (m_System::type_of(context.variant.type(i)).is_source()) continue;
    if (context.network.given[i].inflow[0]) continue;
    sink.add(place_of_field(context, i, columns::inflow[0]),
             fmt::format("{} hat keinen Zulauf", name_of(context, i)));
  }
}

bool is_structure(const Context& context, Element i) {
  return m_System::type_of(context.variant.type(i)).is_structure();
}

void check_missing_outflows(const Context& context, Sink& sink) {
  for (const Element i : context.noteworthy) {
    const auto& given = context.network.given[i].outflow;
    const bool is_branching = context.variant.type(i) == 'V';
    const bool is_missing = !given[0] && (!is_branching || !given[1]);
    if (!is_missing || (is_structure(context, i) && !is_branching)) continue;
    sink.add(place_of_field(context, i, columns::outflow[0]),
             fmt::format("{} hat keinen Ablauf", name_of(context, i)));
  }
}

void check_second_outflows(const Context& context, Sink& sink) {
  for (const Element i : context.noteworthy) {
    if (is_structure(context, i) || !context.network.given[i].outflow[1]) continue;
    sink.add(place_of_field(context, i, columns::outflow[1]),
             fmt::format("{} darf nur einen Ablauf haben", name_of(context, i)));
  }
}

void check_tags(const Context& context, Sink& sink) {
  for (const Element i : context.noteworthy) {
    const network::Network::Given& given = context.network.given[i];
    if (!is_structure(context, i) || !given.tag3 || given.tag7) continue;
    sink.add(place_of_field(context, i, columns::tag7),
             fmt::format("{} hat in den Spalten 4 bis 6 eine Kennung, aber keine in den Spalten 8 bis 14; "
                         "KV_Akum meldet Y12",
                         name_of(context, i)));
  }
}

// "; dabei gehen 3.200 km² verloren"; nothing when no area is lost there.
std::string loss_words(const Context& context, Element i) {
  const std::vector<network::Loss>& losses = context.flow.balance.losses;
  const auto loss = std::ranges::lower_bound(losses, i, {}, &network::Loss::element);
  if (loss == losses.end() || loss->element != i) return "";
  return fmt::format("; dabei gehen {} verloren", area_words(loss->areas.all()));
}

void check_first_outflow_missing(const Context& context, Sink& sink) {
  for (const Element i : context.noteworthy) {
    const auto& given = context.network.given[i].outflow;
    if (!is_structure(context, i) || given[0] || !given[1]) continue;
    sink.add(place_of_field(context, i, columns::outflow[0]),
             fmt::format("{} hat keinen ersten Ablauf{}", name_of(context, i), loss_words(context, i)));
  }
}

void check_second_outflow_missing(const Context& context, Sink& sink) {
  for (const Element i : context.noteworthy) {
    const auto& given = context.network.given[i].outflow;
    if (!is_structure(context, i) || !given[0] || given[1]) continue;
    sink.add(place_of_field(context, i, columns::outflow[1]),
             fmt::format("{} hat keinen zweiten Ablauf{}", name_of(context, i), loss_words(context, i)));
  }
}

void check_basins_without_outflow(const Context& context, Sink& sink) {
  for (const Element i : context.noteworthy) {
    const auto& given = context.network.given[i].outflow;
    if (context.variant.type(i) != 'B' || given[0] || given[1]) continue;
    sink.add(place_of_field(context, i, columns::outflow[0]),
             fmt::format("Das Becken {} hat keinen Ablauf{}", name_of(context, i), loss_words(context, i)));
  }
}

// Links.

// Links that one end names alone, by the end that does not: the other ends are what a misspelt name was meant
// to be.
class OneSidedLinks {
 public:
  explicit OneSidedLinks(const Context& context) {
    const network::Network& network = context.network;
    for (const Element i : context.noteworthy) {
      for (const Element j : network.inflow[i]) {
        if (j != 0 && !network.names_outflow(j, i)) outflow_wanted_.push_back({j, i});
      }
      for (const Element k : network.outflow[i]) {
        if (k != 0 && !network.names_inflow(k, i)) inflow_wanted_.push_back({k, i});
      }
    }
    std::ranges::sort(outflow_wanted_);
    std::ranges::sort(inflow_wanted_);
  }

  // The element that names i as its outflow (or inflow) without being named, when it is the only one or its
  // name is nearly the given one; 0 when there is none.
  [[nodiscard]] Element partner(const Context& context, Element i, NameKey name, bool is_outflow) const {
    const std::vector<Link>& links = is_outflow ? outflow_wanted_ : inflow_wanted_;
    const auto begin = std::ranges::lower_bound(links, i, {}, &Link::first);
    const std::span<const Link> own(begin, std::ranges::upper_bound(begin, links.end(), i, {}, &Link::first));
    for (const Link& link : own) {
      if (variant::changes_between(context.variant.names[link.second], name) <= 2) return link.second;
    }
    return own.size() == 1 ? own.front().second : 0;
  }

 private:
  using Link = std::pair<Element, Element>;
  std::vector<Link> outflow_wanted_;
  std::vector<Link> inflow_wanted_;
};

std::string hint_for_unknown(const Context& context, const OneSidedLinks& one_sided,
                             const network::UnknownLink& link) {
  const auto near = context.near_elements.by_name.find(link.name);
  if (near != context.near_elements.by_name.end()) {
    return fmt::format("KV_Akum überliest {}", line_words(context.near_elements.list[near->second].line));
  }
  const Element partner = one_sided.partner(context, link.element, link.name, link.is_outflow);
  const NameKey meant = partner != 0 ? context.variant.names[partner] : context.meant_by(link.name);
  return meant == 0 ? "" : fmt::format("meinten Sie {}?", name_of(context, meant));
}

void check_unknown_links(const Context& context, Sink& sink, bool outflows) {
  const std::vector<network::UnknownLink>& links = context.network.unknown_links;
  if (links.empty()) return;
  const OneSidedLinks one_sided(context);
  for (const network::UnknownLink& link : links) {
    const bool is_exempt = link.is_outflow && link.element == context.network.outlet();
    if (link.is_outflow != outflows || is_exempt) continue;
    sink.add(place_of_field(context, link.element, link.field),
             fmt::format("Der {} {} von {} ist kein Element", outflows ? "Ablauf" : "Zulauf",
                         name_of(context, link.name), name_of(context, link.element)),
             hint_for_unknown(context, one_sided, link));
  }
}

void check_unknown_inflows(const Context& context, Sink& sink) {
  check_unknown_links(context, sink, false);
}
void check_unknown_outflows(const Context& context, Sink& sink) {
  check_unknown_links(context, sink, true);
}

template <class Report>
void for_each_inflow(const Context& context, const Report& report) {
  for (const Element i : context.noteworthy) {
    for (std::size_t k = 0; k < columns::inflow.size(); ++k) {
      const Element j = context.network.inflow[i][k];
      if (j != 0) report(i, j, k);
    }
  }
}

template <class Report>
void for_each_outflow(const Context& context, const Report& report) {
  for (const Element i : context.noteworthy) {
    for (std::size_t k = 0; k < columns::outflow.size(); ++k) {
      const Element j = context.network.outflow[i][k];
      if (j != 0) report(i, j, k);
    }
  }
}

void check_later_inflows(const Context& context, Sink& sink) {
  for_each_inflow(context, [&](Element i, Element j, std::size_t k) {
    if (j < i) return;
    const std::string where = j == i ? "ist das Element selbst" : "steht erst in " + line_of(context, j);
    sink.add(place_of_field(context, i, columns::inflow[k]),
             fmt::format("Der Zulauf {} von {} {}; ein Zulauf muss vor seinem Element stehen",
                         name_of(context, j), name_of(context, i), where));
  });
}

void check_earlier_outflows(const Context& context, Sink& sink) {
  for_each_outflow(context, [&](Element i, Element j, std::size_t k) {
    if (j > i) return;
    const std::string where = j == i ? "ist das Element selbst" : "steht schon in " + line_of(context, j);
    sink.add(place_of_field(context, i, columns::outflow[k]),
             fmt::format("Der Ablauf {} von {} {}; ein Ablauf muss hinter seinem Element stehen",
                         name_of(context, j), name_of(context, i), where));
  });
}

void check_one_sided_inflows(const Context& context, Sink& sink) {
  for_each_inflow(context, [&](Element i, Element j, std::size_t k) {
    if (context.network.names_outflow(j, i)) return;
    const std::string text =
        j == context.network.outlet()
            ? fmt::format("{} ist das letzte Element und damit der Auslass; es kann nicht Zulauf von {} sein",
                          name_of(context, j), name_of(context, i))
            : fmt::format("{} ist hier Zulauf von {}, nennt es in {} aber nicht als Ablauf",
                          name_of(context, j), name_of(context, i), line_of(context, j));
    sink.add(place_of_field(context, i, columns::inflow[k]), text);
  });
}

void check_one_sided_outflows(const Context& context, Sink& sink) {
  for_each_outflow(context, [&](Element i, Element j, std::size_t k) {
    if (i == context.network.outlet() || context.network.names_inflow(j, i)) return;
    sink.add(place_of_field(context, i, columns::outflow[k]),
             fmt::format("{} ist hier Ablauf von {}, nennt es in {} aber nicht als Zulauf",
                         name_of(context, j), name_of(context, i), line_of(context, j)));
  });
}

void check_repeated_inflows(const Context& context, Sink& sink) {
  for_each_inflow(context, [&](Element i, Element j, std::size_t k) {
    const auto& inflow = context.network.inflow[i];
    const auto end = inflow.begin() + static_cast<std::ptrdiff_t>(k);
    if (std::find(inflow.begin(), end, j) == end) return;
    sink.add(place_of_field(context, i, columns::inflow[k]),
             fmt::format("{} ist mehr als einmal Zulauf von {}", name_of(context, j), name_of(context, i)));
  });
}

// Loops and dead ends.

std::string list_of_names(const Context& context, const std::vector<Element>& elements) {
  constexpr std::size_t most = 50;
  std::string list;
  for (std::size_t k = 0; k < std::min(most, elements.size()); ++k)
    list += name_of(context, elements[k]) + " -> ";
  if (elements.size() > most) list += fmt::format("... ({} weitere) -> ", elements.size() - most);
  return list + name_of(context, elements.front());
}

void check_loops(const Context& context, Sink& sink) {
  for (const std::vector<Element>& loop : network::loops(context.network)) {
    sink.add(
        place_of(context, loop.front()),
        fmt::format("{} fließt im Kreis: {}", name_of(context, loop.front()), list_of_names(context, loop)));
  }
}

void check_dead_ends(const Context& context, Sink& sink) {
  for (const network::DeadEnd& part : network::dead_ends(context.network, context.order)) {
    const bool is_basin_without_outflow = context.variant.type(part.end) == 'B' &&
                                          context.network.outflow[part.end] == std::array<Element, 2>{};
    if (part.in_loop || is_basin_without_outflow || part.elements.size() < 2) continue;
    sink.add(place_of(context, part.end),
             fmt::format("Von {} führt kein Weg zum Auslass {}: {} Elemente mit {} enden hier",
                         name_of(context, part.end), name_of(context, context.network.outlet()),
                         part.elements.size(), area_words(context.flow.total[part.end].all())));
  }
}

// Outflows that get nothing.

bool passes_to_second_only(const Context& context, Element i) {
  const m_System::PassesOn passes_on = m_System::type_of(context.variant.type(i)).passes_on;
  if (passes_on == m_System::PassesOn::totals_to_second) return true;
  return passes_on == m_System::PassesOn::divided_totals && context.taken[i].value != 1.0;
}

void check_dry_outflows(const Context& context, Sink& sink) {
  for (const Element i : context.noteworthy) {
    const auto& outflow = context.network.outflow[i];
    if (outflow[0] == 0 || outflow[1] == 0 || outflow[0] == outflow[1] || !passes_to_second_only(context, i))
      continue;
    const std::string why = context.variant.type(i) == 'B'
                                ? "ein Becken gibt alles an den zweiten Ablauf ab"
                                : fmt::format("mit der Kennziffer {} geht alles an den zweiten Ablauf",
                                              number_words(context.taken[i].value));
    sink.add(place_of_field(context, i, columns::outflow[0]),
             fmt::format("{} erhält von {} keine Fläche: {}, {}", name_of(context, outflow[0]),
                         name_of(context, i), why, name_of(context, outflow[1])));
  }
}

void check_equal_outflows(const Context& context, Sink& sink) {
  for (const Element i : context.noteworthy) {
    const auto& outflow = context.network.outflow[i];
    if (outflow[0] == 0 || outflow[0] != outflow[1] || passes_to_second_only(context, i)) continue;
    if (!is_structure(context, i)) continue;
    sink.add(place_of_field(context, i, columns::outflow[1]),
             fmt::format("Beide Abläufe von {} sind {}, das nur den ersten Teil erhält{}",
                         name_of(context, i), name_of(context, outflow[0]), loss_words(context, i)));
  }
}

constexpr std::array<CheckedRule, 20> rules = {{
    {{"name-doppelt", Severity::error, "Zwei Elemente gleichen Namens: KV_Akum meldet Y04"},
     check_repeated_names},
    {{"quelle-mit-zulauf", Severity::error, "N, K oder E mit Zulauf: KV_Akum meldet Y05"},
     check_inflows_of_sources},
    {{"zulauf-fehlt", Severity::error, "T, V, B oder P ohne ersten Zulauf: KV_Akum meldet Y06"},
     check_missing_inflows},
    {{"ablauf-fehlt", Severity::error, "Element ohne Ablauf: KV_Akum meldet Y08 oder Y10"},
     check_missing_outflows},
    {{"ablauf-zuviel", Severity::error, "N, K, E, T oder P mit zwei Abläufen: KV_Akum meldet Y09"},
     check_second_outflows},
    {{"kennung-fehlt", Severity::error, "V oder B mit erster, aber ohne zweite Kennung: KV_Akum meldet Y12"},
     check_tags},
    {{"erster-ablauf-fehlt", Severity::warning, "V oder B ohne ersten Ablauf: KV_Akum warnt mit W01"},
     check_first_outflow_missing},
    {{"zweiter-ablauf-fehlt", Severity::warning,
      "V oder B ohne zweiten Ablauf, an den ein Becken alles abgibt: KV_Akum warnt mit W02"},
     check_second_outflow_missing},
    {{"becken-ohne-ablauf", Severity::warning, "Becken ohne Ablauf: KV_Akum warnt mit W03"},
     check_basins_without_outflow},
    {{"zulauf-unbekannt", Severity::error, "Zulauf, den es nicht gibt: KV_Akum meldet Y21"},
     check_unknown_inflows},
    {{"ablauf-unbekannt", Severity::error, "Ablauf, den es nicht gibt: KV_Akum meldet Y22"},
     check_unknown_outflows},
    {{"zulauf-spaeter", Severity::error, "Zulauf, der erst hinter seinem Element steht: KV_Akum meldet Y23"},
     check_later_inflows},
    {{"ablauf-frueher", Severity::error, "Ablauf, der schon vor seinem Element steht: KV_Akum meldet Y24"},
     check_earlier_outflows},
    {{"zulauf-einseitig", Severity::error,
      "Zulauf, der das Element nicht als Ablauf nennt: KV_Akum meldet Y25"},
     check_one_sided_inflows},
    {{"ablauf-einseitig", Severity::error,
      "Ablauf, der das Element nicht als Zulauf nennt: KV_Akum meldet Y26"},
     check_one_sided_outflows},
    {{"zulauf-doppelt", Severity::error, "Derselbe Zulauf zweimal: KV_Akum meldet Y27"},
     check_repeated_inflows},
    {{"kreis", Severity::error, "Elemente, die im Kreis fließen"}, check_loops},
    {{"kein-weg-zum-auslass", Severity::error, "Teil des Netzes, der den Auslass nicht erreicht"},
     check_dead_ends},
    {{"erster-ablauf-leer", Severity::note,
      "Erster Ablauf eines Beckens oder einer Verzweigung mit anderer Kennziffer als 1: erhält nichts"},
     check_dry_outflows},
    {{"ablaeufe-gleich", Severity::warning,
      "Beide Abläufe einer Verzweigung sind dasselbe Element: es erhält nur den ersten Teil"},
     check_equal_outflows},
}};

}  // namespace

std::span<const CheckedRule> network_rules() {
  return rules;
}

}  // namespace schau::rules
