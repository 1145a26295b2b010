#include "tests/schau/import/net_csv.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <vector>

#include "KV_Schau/network/network.h"
#include "KV_Schau/network/values.h"
#include "KV_Schau/variant/records.h"

namespace net_csv {
namespace {

using schau::network::Element;
using schau::variant::Variant;

class TableWriter {
 public:
  TableWriter(const Variant& variant, const Form& form)
      : variant_(variant),
        form_(form),
        network_(schau::network::link(variant)),
        taken_(schau::network::take_values(variant, schau::variant::find_records(variant))) {}

  std::string run() {
    write_row({"Art", "ID", "Nach", "FLAECHE_KM2", "Befestigung", "station", "anteil", "nach2", "bemerkung"});
    for (Element i = 1; i <= network_.count(); ++i) {
      if (variant_.type(i) == 'P' || is_folded_area(i) || is_folded_branching(i)) continue;
      write_element(i);
    }
    return out_;
  }

 private:
  void write_element(Element i) {
    const char type = variant_.type(i);
    const bool is_area = type == 'N' || type == 'K';
    const Element area = is_area ? i : folded_area_of(i);
    const Element branching = type == 'V' ? i : folded_branching_of(i);
    std::string fields_type = form_.folded && type == 'T' ? "" : std::string(1, type);
    const Element giver = branching != 0 ? branching : i;
    std::string to = id_below(giver, 0);
    std::string second_to = id_below(giver, 1);
    if (to.empty()) std::swap(to, second_to);
    if (to == second_to) second_to.clear();
    const bool is_divided = branching != 0 && !second_to.empty();
    // A branching whose arms end in one element divides nothing.
    if (type == 'V' && !is_divided) fields_type = "P";
    const double share = taken_[branching].value == 1.0 ? taken_[branching].fraction * 100.0 : 0.0;
    write_row({fields_type, id(i), to,
               area == 0 ? (fields_type.empty() ? "0" : "") : number(taken_[area].value),
               area != 0 && variant_.type(area) == 'K' ? number(taken_[area].fraction) : "",
               type == 'T' ? number(taken_[i].value) : "", is_divided ? number(share) : "", second_to, "x"});
  }

  [[nodiscard]] std::string id(Element i) const {
    return form_.id_prefix + schau::variant::text_of(variant_.names[i]);
  }

  [[nodiscard]] std::string id_below(Element i, std::size_t outflow) const {
    Element below = network_.outflow[i].at(outflow);
    while (below != 0 && variant_.type(below) == 'P') below = network_.outflow[below][0];
    if (below == 0) return "";
    if (is_folded_branching(below)) below = network_.inflow[below][0];
    return id(below);
  }

  [[nodiscard]] Element folded_area_of(Element i) const {
    if (!form_.folded || variant_.type(i) != 'T') return 0;
    Element area = 0;
    for (const Element j : network_.inflow[i]) {
      if (j == 0 || (variant_.type(j) != 'N' && variant_.type(j) != 'K')) continue;
      if (area != 0) return 0;
      area = j;
    }
    // A canalised area without sealing would come back as a natural one.
    const bool comes_back =
        area != 0 && taken_[area].value > 0.0 && (variant_.type(area) == 'N' || taken_[area].fraction > 0.0);
    return comes_back ? area : 0;
  }

  [[nodiscard]] bool is_folded_area(Element i) const {
    const Element below = network_.outflow[i][0];
    return below != 0 && folded_area_of(below) == i;
  }

  [[nodiscard]] Element folded_branching_of(Element i) const {
    if (!form_.folded || variant_.type(i) != 'T') return 0;
    const Element below = network_.outflow[i][0];
    if (below == 0 || variant_.type(below) != 'V') return 0;
    const auto& inflow = network_.inflow[below];
    const auto& outflow = network_.outflow[below];
    return inflow[1] == 0 && outflow[0] != 0 && outflow[1] != 0 ? below : 0;
  }

  [[nodiscard]] bool is_folded_branching(Element i) const {
    const Element above = network_.inflow[i][0];
    return above != 0 && folded_branching_of(above) == i;
  }

  [[nodiscard]] std::string number(double value) const {
    std::string text = fmt::format("{}", value);
    if (form_.decimal_comma) std::ranges::replace(text, '.', ',');
    return text.find(form_.separator) == std::string::npos ? text : "\"" + text + "\"";
  }

  void write_row(const std::vector<std::string>& fields) {
    out_ += fmt::format("{}\r\n", fmt::join(fields, std::string(1, form_.separator)));
  }

  const Variant& variant_;
  const Form& form_;
  schau::network::Network network_;
  std::vector<schau::network::Taken> taken_;
  std::string out_;
};

}  // namespace

std::string of_variant(const Variant& variant, const Form& form) {
  return TableWriter(variant, form).run();
}

}  // namespace net_csv
