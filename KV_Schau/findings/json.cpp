#include "KV_Schau/findings/json.h"

#include "KV_Schau/variant/shown_text.h"

namespace schau::findings {

nlohmann::ordered_json to_json(const variant::Variant& variant, const Finding& finding) {
  constexpr std::size_t longest_source = 500;
  const variant::TextFile& file = variant.file(finding.place.file);
  const variant::Place& place = finding.place;
  nlohmann::ordered_json json;
  json["regel"] = finding.rule->identifier;
  json["stufe"] = word_of(finding.rule->severity);
  json["datei"] = file.shown();
  json["zeile"] = place.line;
  if (place.line > 0) {
    json["spalte"] = file.character_column(place.line, place.column);
    json["byte_spalte"] = place.column;
    json["laenge"] = place.length;
  }
  json["text"] = finding.text;
  if (!finding.hint.empty()) json["hinweis"] = finding.hint;
  if (place.line > 0 && place.line <= file.line_count()) {
    json["quelle"] = variant::shown(file.line(place.line).substr(0, longest_source), file.encoding());
  }
  return json;
}

nlohmann::ordered_json to_json(const Counts& counts) {
  return {{"fehler", counts.errors}, {"warnungen", counts.warnings}, {"hinweise", counts.notes}};
}

}  // namespace schau::findings
