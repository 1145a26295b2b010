#pragma once

#include <nlohmann/json.hpp>

#include "KV_Schau/findings/finding.h"

namespace schau::findings {

/// A finding as data: `regel`, `stufe`, `datei`, `zeile`, `spalte` (in characters), `byte_spalte` (as KV_Akum
/// counts), `laenge` (in bytes), `text`, `hinweis`, `quelle` (the line, without control characters). A
/// finding about a file as a whole has the line 0 and no columns.
nlohmann::ordered_json to_json(const variant::Variant& variant, const Finding& finding);

/// `fehler`, `warnungen`, `hinweise`.
nlohmann::ordered_json to_json(const Counts& counts);

}  // namespace schau::findings
