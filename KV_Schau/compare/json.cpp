#include <cmath>
#include <nlohmann/json.hpp>
#include <span>
#include <utility>

#include "KV_Schau/compare/view.h"
#include "KV_Schau/compare/words.h"
#include "KV_Schau/run/table_output.h"

namespace schau::compare {
namespace {

using nlohmann::ordered_json;

constexpr std::size_t piece_size = std::size_t{1} << 18U;

std::string dumped(const ordered_json& json) {
  return json.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

// What JSON has no number for stands as text.
ordered_json json_number(double value) {
  if (std::isfinite(value)) return value;
  return run::text_of({run::Number::Kind::number, value});
}

ordered_json json_number(const run::Number& number) {
  if (number.kind == run::Number::Kind::number) return json_number(number.value);
  return run::text_of(number);
}

ordered_json json_names(const Links& links) {
  ordered_json names = ordered_json::array();
  for (const variant::NameKey name : links) {
    if (name != variant::blank_name) names.push_back(shown(name));
  }
  return names;
}

std::string_view key_of(Input input) {
  static constexpr std::array<std::string_view, 5> keys = {"flaeche_km2", "befestigungsgrad", "kennziffer",
                                                           "anteil", "station_km"};
  return keys.at(static_cast<std::size_t>(input));
}

void put_place(ordered_json& json, std::string_view key, const std::optional<variant::Place>& place,
               const std::array<std::string, variant::file_count>& files) {
  if (!place) return;
  json[std::string(key)] = {{"datei", files.at(static_cast<std::size_t>(place->file))},
                            {"zeile", place->line}};
}

ordered_json json_of(const Comparison& comparison, const Change& change) {
  ordered_json json;
  json["element"] = shown(change.name);
  if (change.kind == ChangeKind::input) {
    json["groesse"] = key_of(change.input);
    json["alt"] = json_number(change.before);
    json["neu"] = json_number(change.after);
  } else {
    const std::string links = change.links_are_inflows ? "zulaeufe" : "ablaeufe";
    if (change.kind != ChangeKind::added) json[links + "_alt"] = json_names(change.old_links);
    if (change.kind != ChangeKind::gone) json[links + "_neu"] = json_names(change.new_links);
  }
  json["wirkung_km2"] = json_number(change.effect);
  put_place(json, "stelle_alt", change.old_place, comparison.old_files);
  put_place(json, "stelle_neu", change.new_place, comparison.new_files);
  return json;
}

ordered_json json_of(const Sums& sums) {
  ordered_json json;
  for (std::size_t k = 0; k < sum_count; ++k)
    json[std::string(run::number_columns().at(k + 1).key)] = json_number(sums.at(k));
  return json;
}

std::string_view word_of(ChangeKind kind) {
  static constexpr std::array<std::string_view, 4> words = {"hinzugekommen", "entfallen", "anders_verbunden",
                                                            "eingabe"};
  return words.at(static_cast<std::size_t>(kind));
}

ordered_json json_of(const Comparison& comparison, const ReachChange& reach) {
  ordered_json json;
  json["strecke"] = shown(reach.name);
  json["groesste_aenderung_km2"] = json_number(reach.effect);
  json["alt"] = json_of(reach.before);
  json["neu"] = json_of(reach.after);
  if (!comparison.is_of_variants) return json;
  json["ursachen"] = ordered_json::array();
  for (const std::uint32_t position : reach.causes) {
    const Change& change = comparison.changes[position];
    ordered_json cause = {{"element", shown(change.name)}, {"aenderung", word_of(change.kind)}};
    if (change.kind == ChangeKind::input) cause["groesse"] = key_of(change.input);
    json["ursachen"].push_back(std::move(cause));
  }
  json["weitere_ursachen"] = reach.has_more_causes;
  return json;
}

// Writes lists row by row: there may be a million rows.
class JsonWriter {
 public:
  JsonWriter(const Comparison& comparison, const Tell& tell) : comparison_(comparison), tell_(tell) {}

  void run() {
    const ordered_json head = {{"alt", comparison_.old_shown},
                               {"neu", comparison_.new_shown},
                               {"toleranz_km2", comparison_.tolerance},
                               {"gleich", comparison_.is_equal()}};
    out_ = dumped(head);
    out_.pop_back();
    write_changes("hinzugekommen", ChangeKind::added);
    write_changes("entfallen", ChangeKind::gone);
    write_changes("anders_verbunden", ChangeKind::moved);
    write_changes("eingaben", ChangeKind::input);
    begin_list("ergebnisse");
    for (const ReachChange& reach : comparison_.reaches) write_row(json_of(comparison_, reach));
    out_ += "]}\n";
    tell_(out_);
  }

 private:
  void begin_list(std::string_view name) {
    out_.append(",\n\"").append(name).append("\":[");
    is_first_ = true;
  }

  void write_changes(std::string_view name, ChangeKind kind) {
    begin_list(name);
    for (const Change& change : comparison_.changes) {
      if (change.kind == kind) write_row(json_of(comparison_, change));
    }
    out_ += "]";
  }

  void write_row(const ordered_json& row) {
    out_.append(std::exchange(is_first_, false) ? "\n" : ",\n").append(dumped(row));
    if (out_.size() < piece_size) return;
    tell_(out_);
    out_.clear();
  }

  const Comparison& comparison_;
  const Tell& tell_;
  std::string out_;
  bool is_first_ = true;
};

}  // namespace

void tell_json(const Comparison& comparison, const Tell& tell) {
  JsonWriter(comparison, tell).run();
}

}  // namespace schau::compare
