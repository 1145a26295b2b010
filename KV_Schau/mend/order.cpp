#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <optional>
#include <utility>

#include "KV_Schau/mend/steps.h"

namespace schau::mend {
namespace {

using variant::NameKey;
namespace columns = variant::sys_columns;

constexpr std::uint32_t none = 0xFFFFFFFF;

struct Element {
  std::uint32_t line = 0;  // position in the list of lines
  std::array<std::uint32_t, 3> inflow{none, none, none};
  std::uint32_t missing = 0;  // inflows that do not stand before it
  bool is_end = false;
};

bool is_element(const Line& line) {
  return variant::is_element_line(line.text.substr(0, variant::sys_line_width));
}

NameKey name_of(const Line& line) {
  return variant::name_at(line.text.substr(0, variant::sys_line_width), columns::name.first);
}

class Sorter {
 public:
  explicit Sorter(const MendedFile& system) : lines_(system.lines) {
    for (std::uint32_t i = 0; i < lines_.size(); ++i) {
      if (is_element(lines_[i])) add_element(i);
    }
    for (Element& element : elements_) link(element);
  }

  // The line of the first element that stands before an inflow of it.
  [[nodiscard]] std::optional<std::uint32_t> first_fault() const {
    for (std::uint32_t i = 0; i < elements_.size(); ++i) {
      for (const std::uint32_t j : elements_[i].inflow) {
        if (j != none && j >= i) return lines_[elements_[i].line].old_number;
      }
    }
    return std::nullopt;
  }

  // Why the order is not clear; empty when it is.
  std::string sort() {
    if (has_repetitions_) return "Namen kommen mehrfach vor";
    count_missing();
    for (std::uint32_t i = 0, element = 0; i < lines_.size(); ++i) {
      if (element == elements_.size() || elements_[element].line != i) {
        sorted_.push_back(lines_[i]);
        continue;
      }
      meet(element++);
    }
    if (placed_ < elements_.size()) return "Elemente liegen in einem Kreis";
    const bool ends_inside = number_of_ends_ > 1 || (number_of_ends_ == 1 && !elements_[last_].is_end);
    return ends_inside ? "hinter dem Element mit ENDE stünden weitere" : "";
  }

  std::vector<Line>& sorted() { return sorted_; }
  [[nodiscard]] std::uint32_t moved() const { return moved_; }

 private:
  void add_element(std::uint32_t line) {
    const auto number = static_cast<std::uint32_t>(elements_.size());
    has_repetitions_ = !by_name_.try_emplace(name_of(lines_[line]), number).second || has_repetitions_;
    elements_.emplace_back();
    elements_.back().line = line;
    elements_.back().is_end = columns::outflow[0].of(lines_[line].text).substr(0, 4) == "ENDE" &&
                              variant::is_blank(variant::columns(lines_[line].text, 68, 68));
    number_of_ends_ += elements_.back().is_end ? 1 : 0;
  }

  void link(Element& element) {
    const std::string_view text = lines_[element.line].text;
    for (std::size_t k = 0; k < element.inflow.size(); ++k) {
      const auto found = by_name_.find(variant::name_at(text, columns::inflow.at(k).first));
      if (found != by_name_.end()) element.inflow.at(k) = found->second;
    }
  }

  void count_missing() {
    takers_begin_.assign(elements_.size() + 1, 0);
    for_each_inflow([&](std::uint32_t /*element*/, std::uint32_t inflow) { ++takers_begin_[inflow]; });
    for (std::size_t k = 1; k < takers_begin_.size(); ++k) takers_begin_[k] += takers_begin_[k - 1];
    takers_.resize(takers_begin_.back());
    for_each_inflow([&](std::uint32_t element, std::uint32_t inflow) {
      takers_[--takers_begin_[inflow]] = element;
      ++elements_[element].missing;
    });
    is_met_.assign(elements_.size(), false);
    sorted_.reserve(lines_.size());
  }

  template <class Take>
  void for_each_inflow(const Take& take) const {
    for (std::uint32_t i = static_cast<std::uint32_t>(elements_.size()); i-- > 0;) {
      for (const std::uint32_t j : elements_[i].inflow) {
        if (j != none) take(i, j);
      }
    }
  }

  // Places an element whose inflows all stand there, and behind it those that have waited for it.
  void meet(std::uint32_t element) {
    is_met_[element] = true;
    if (elements_[element].missing > 0) return;
    place(element, false);
    for (std::size_t next = 0; next < waited_.size();) place(waited_[next++], true);
    waited_.clear();
  }

  void place(std::uint32_t element, bool moved) {
    sorted_.push_back(lines_[elements_[element].line]);
    sorted_.back().moved = moved;
    moved_ += moved ? 1 : 0;
    last_ = element;
    ++placed_;
    for (std::uint32_t k = takers_begin_[element]; k < takers_begin_[element + 1]; ++k) {
      const std::uint32_t taker = takers_[k];
      if (--elements_[taker].missing == 0 && is_met_[taker]) waited_.push_back(taker);
    }
  }

  const std::vector<Line>& lines_;
  std::vector<Element> elements_;
  boost::unordered_flat_map<NameKey, std::uint32_t> by_name_;
  bool has_repetitions_ = false;
  std::uint32_t number_of_ends_ = 0;
  std::vector<std::uint32_t> takers_begin_;
  std::vector<std::uint32_t> takers_;
  std::vector<bool> is_met_;
  std::vector<std::uint32_t> waited_;
  std::vector<Line> sorted_;
  std::size_t placed_ = 0;
  std::uint32_t last_ = 0;
  std::uint32_t moved_ = 0;
};

}  // namespace

variant::NameIndex names_of(const MendedFile& system) {
  std::vector<NameKey> names(1, variant::blank_name);
  for (const Line& line : system.lines) {
    if (is_element(line)) names.push_back(name_of(line));
  }
  variant::NameIndex index;
  index.fill(names);
  return index;
}

void mend_order(MendedFile& system, Mended& mended) {
  Sorter sorter(system);
  const std::optional<std::uint32_t> fault = sorter.first_fault();
  if (!fault) return;
  const std::string reason = sorter.sort();
  if (!reason.empty()) {
    mended.left.push_back({variant::FileId::sys, *fault,
                           "Die Reihenfolge bleibt, obwohl das Element vor einem Zulauf steht: " + reason});
    return;
  }
  system.changed(Repair::order) = sorter.moved();
  system.lines = std::move(sorter.sorted());
}

}  // namespace schau::mend
