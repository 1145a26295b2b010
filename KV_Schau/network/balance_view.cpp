#include "KV_Schau/network/balance_view.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <vector>

#include "KV_Schau/variant/shown_text.h"

namespace schau::network {
namespace {

using variant::FileId;
using variant::Variant;

Areas difference(const Areas& left, const Areas& right) {
  return {left.natural - right.natural, left.canalised - right.canalised, left.impervious - right.impervious};
}

// At most 13 columns. A difference of rounding is none, and has no sign.
std::string number_words(double value) {
  if (std::isnan(value)) return "unbestimmt";
  if (std::isinf(value)) return value > 0 ? "unendlich" : "-unendlich";
  if (std::abs(value) >= 1e8) return fmt::format("{:.5e}", value);
  return fmt::format("{:.3f}", std::abs(value) < 1e-9 ? 0.0 : value);
}

std::string element_name(const Variant& variant, Element element) {
  return variant::shown(variant::text_of(variant.names[element]), variant.file(FileId::sys).encoding());
}

void append_row(std::string& out, std::string_view label, const Areas& areas) {
  fmt::format_to(std::back_inserter(out), "  {:<24}{:>14}{:>14}{:>14}{:>14}\n", label,
                 number_words(areas.natural), number_words(areas.canalised), number_words(areas.impervious),
                 number_words(areas.all()));
}

std::vector<Loss> largest(std::vector<Loss> losses, std::size_t most) {
  if (losses.size() <= most) return losses;
  const auto smaller = [](const Loss& left, const Loss& right) {
    return std::abs(left.areas.all()) > std::abs(right.areas.all());
  };
  std::nth_element(losses.begin(), losses.begin() + static_cast<std::ptrdiff_t>(most), losses.end(), smaller);
  losses.resize(most);
  std::ranges::sort(losses, {}, &Loss::element);
  return losses;
}

void append_without_record(std::string& out, const Variant& variant, const std::vector<Element>& elements) {
  constexpr std::size_t most = 10;
  if (elements.empty()) return;
  std::string names;
  for (std::size_t k = 0; k < std::min(most, elements.size()); ++k) {
    names += (k == 0 ? "" : ", ") + element_name(variant, elements[k]);
  }
  if (elements.size() > most) names += ", ...";
  fmt::format_to(std::back_inserter(out), "  nicht enthalten, da ohne Zeile in ihrer Datei: {} ({})\n",
                 elements.size(), names);
}

nlohmann::ordered_json number(double value) {
  if (std::isfinite(value)) return value;
  return nullptr;
}

nlohmann::ordered_json areas_json(const Areas& areas) {
  return {{"natuerlich", number(areas.natural)},
          {"kanalisiert", number(areas.canalised)},
          {"undurchlaessig", number(areas.impervious)}};
}

}  // namespace

std::string text_of(const Variant& variant, const Network& network, const Balance& balance,
                    std::size_t most_losses) {
  std::string out = "Bilanz [km²], in doppelter Genauigkeit (KV_Akum rechnet in einfacher)\n";
  fmt::format_to(std::back_inserter(out), "  {:<24}{:>14}{:>14}{:>14}{:>14}\n", "", "natürlich",
                 "kanalisiert", "undurchl.", "gesamt");
  append_row(out, "Quellen (N, K)", balance.sources);
  if (network.count() > 0)
    append_row(out, "am Auslass " + element_name(variant, network.outlet()), balance.outlet);
  append_row(out, "Differenz", difference(balance.sources, balance.outlet));
  const std::vector<Loss> shown_losses = largest(balance.losses, most_losses);
  Areas rest = difference(balance.sources, balance.outlet);
  for (const Loss& loss : shown_losses) {
    append_row(out, "  bei " + element_name(variant, loss.element), loss.areas);
    rest = difference(rest, loss.areas);
    fmt::format_to(std::back_inserter(out), "      {}:{}: {}\n", variant.file(FileId::sys).shown(),
                   variant.element_lines[loss.element], words_for(loss.reason));
  }
  const std::size_t others = balance.losses.size() - shown_losses.size();
  if (others > 0)
    append_row(out, others == 1 ? "  bei einem weiteren" : fmt::format("  bei {} weiteren", others), rest);
  append_without_record(out, variant, balance.without_record);
  return out;
}

nlohmann::ordered_json to_json(const Variant& variant, const Network& network, const Balance& balance) {
  nlohmann::ordered_json json;
  json["einheit"] = "km²";
  json["quellen"] = areas_json(balance.sources);
  json["auslass"] = areas_json(balance.outlet);
  if (network.count() > 0) json["auslass"]["element"] = element_name(variant, network.outlet());
  json["verluste"] = nlohmann::ordered_json::array();
  for (const Loss& loss : balance.losses) {
    nlohmann::ordered_json row = areas_json(loss.areas);
    row["element"] = element_name(variant, loss.element);
    row["datei"] = variant.file(FileId::sys).shown();
    row["zeile"] = variant.element_lines[loss.element];
    row["grund"] = words_for(loss.reason);
    json["verluste"].push_back(std::move(row));
  }
  json["ohne_zeile"] = nlohmann::ordered_json::array();
  for (const Element element : balance.without_record)
    json["ohne_zeile"].push_back(element_name(variant, element));
  return json;
}

}  // namespace schau::network
