#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

#include "KV_Schau/network/flow.h"

namespace schau::network {

/// The balance as a German table: sources, outlet, difference, and where it stays, each with the place of its
/// element. At most so many losses are listed, the largest; the others are summed up in one line.
std::string text_of(const variant::Variant& variant, const Network& network, const Balance& balance,
                    std::size_t most_losses);

/// `einheit`, `quellen`, `auslass` (with `element`), `verluste` (a list with `element`, `datei`, `zeile`,
/// `grund`), `ohne_zeile` (names), areas as `natuerlich`, `kanalisiert`, `undurchlaessig`.
nlohmann::ordered_json to_json(const variant::Variant& variant, const Network& network,
                               const Balance& balance);

}  // namespace schau::network
