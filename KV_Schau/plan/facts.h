#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "KV_Schau/findings/finding.h"
#include "KV_Schau/network/flow.h"
#include "KV_Schau/network/network.h"
#include "KV_Schau/network/values.h"
#include "KV_Schau/variant/records.h"
#include "KV_Schau/variant/variant.h"

/// The system plan of a variant: the main stem straight, tributaries from the side, as hydrologists draw it.
/// From the network to a tree of its links (river.h), to rows and lanes (lanes.h), to places on a sheet
/// (sheet.h), to all that is to be drawn (plan.h), to SVG (svg.h).
namespace schau::plan {

using network::Element;

/// What is known of a variant. What it refers to must outlive it.
struct Facts {
  Facts(const variant::Variant& shown_variant, const network::Network& shown_network,
        const network::Flow& shown_flow, const std::vector<findings::Finding>& shown_findings);

  const variant::Variant& variant;
  const network::Network& network;
  const network::Flow& flow;
  const std::vector<findings::Finding>& findings;
  variant::Records records;
  std::vector<network::Taken> taken;
  /// By finding: the element whose line it lies in; 0 for none.
  std::vector<Element> element_of_finding;
};

/// A source: an element of type N, K or E.
bool is_source(const variant::Variant& variant, Element element);

/// The station (km) of a reach of kind 2; nothing for all others.
std::optional<double> station_of(const Facts& facts, Element element);

/// The degree of sealing of all that drains into an element: impervious by total area. Nothing without area.
std::optional<double> sealing_of(const network::Areas& areas);

}  // namespace schau::plan
