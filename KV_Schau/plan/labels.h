#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/plan/by_element.h"
#include "KV_Schau/plan/facts.h"
#include "KV_Schau/plan/graph.h"
#include "KV_Schau/plan/selection.h"

namespace schau::plan {

enum class Tone : std::uint8_t { name, plain, quiet, alert };

/// A line of a label.
struct TextLine {
  std::string text;  ///< UTF-8
  Tone tone = Tone::plain;
};

/// The texts beside the elements and for who points at them.
class Labels {
 public:
  /// `told_links` are the numbers of the links that are told and not drawn. A detailed plan has room for
  /// descriptions. All arguments must outlive this.
  Labels(const Facts& facts, const Graph& graph, const Selection& selection,
         const std::vector<std::uint32_t>& told_links, bool detailed);

  /// Name, description, station and area or the shares of the outflows, and links that are not drawn.
  [[nodiscard]] std::vector<TextLine> label_of(Element element) const;
  /// All that is known of an element and of what was folded into it, in lines.
  [[nodiscard]] std::string tip_of(Element element) const;
  /// The sources folded into an element.
  [[nodiscard]] std::span<const std::uint32_t> folded_into(Element element) const {
    return folded_.of(element);
  }
  /// The numbers of the findings in the lines of an element and of the sources folded into it.
  [[nodiscard]] std::span<const std::uint32_t> findings_of(Element element) const {
    return findings_.of(element);
  }

 private:
  void add_values(std::vector<TextLine>& label, Element element) const;
  void add_shares(std::vector<TextLine>& label, Element element) const;
  void add_missing(std::vector<TextLine>& label, Element element) const;
  void add_findings(std::string& tip, Element element) const;
  [[nodiscard]] double part_to(Element from, Element to) const;

  const Facts& facts_;
  const Graph& graph_;
  const std::vector<std::uint32_t>& told_links_;
  bool detailed_;
  ByElement folded_;
  ByElement findings_;
  ByElement told_;
  ByElement unknown_;
};

/// The name of an element as people read it.
std::string name_of(const Facts& facts, Element element);

/// The description of an element in the system file; may be empty.
std::string description_of(const Facts& facts, Element element);

/// "Transportstrecke", "Pegel" ...
std::string_view kind_words(char type);

/// An area with the digits of the result table; large ones with fewer, as single precision has no more:
/// 0.645 km², 13.045 km², 289384.1 km².
std::string short_area(double area);

}  // namespace schau::plan
