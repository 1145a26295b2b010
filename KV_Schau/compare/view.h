#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "KV_Schau/compare/comparison.h"

namespace schau::compare {

/// Takes the next part of a text.
using Tell = std::function<void(std::string_view part)>;

/// A comparison as German text, for people. Of each kind of change at most so many are shown, those with the
/// largest effects; 0: all.
void tell_text(const Comparison& comparison, std::size_t most, const Tell& tell);

/// The same as JSON, whole: `alt`, `neu`, `toleranz_km2`, `gleich`, the lists `hinzugekommen`, `entfallen`,
/// `anders_verbunden` and `eingaben` with the place and the links or values of each change, and `ergebnisse`
/// with the sums of each reach (keys as those of the command "tabelle") and its causes.
void tell_json(const Comparison& comparison, const Tell& tell);

}  // namespace schau::compare
