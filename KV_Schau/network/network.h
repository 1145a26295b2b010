#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "KV_Schau/variant/variant.h"

/// The elements of a variant as a graph. Elements count from 1 in system order; 0 is no element.
namespace schau::network {

using Element = std::uint32_t;

/// A link field with a name that no element bears.
struct UnknownLink {
  Element element = 0;
  variant::Span field;
  bool is_outflow = false;
  variant::NameKey name = 0;
};

/// The links as KV_Akum resolves them: a name that several elements bear leads to the last of them.
struct Network {
  /// By element (entry 0 is not used): the elements named in its fields; 0 for a blank or unknown name.
  std::vector<std::array<Element, 3>> inflow;
  std::vector<std::array<Element, 2>> outflow;
  /// By element: which of its fields are not blank.
  struct Given {
    std::array<bool, 3> inflow{};
    std::array<bool, 2> outflow{};
    bool tag3 = false;
    bool tag7 = false;
  };
  std::vector<Given> given;
  /// In system order; the end marker of the last element is no name.
  std::vector<UnknownLink> unknown_links;

  [[nodiscard]] Element count() const { return static_cast<Element>(inflow.size()) - 1; }
  /// The last element; 0 without elements.
  [[nodiscard]] Element outlet() const { return count(); }
  [[nodiscard]] bool names_inflow(Element element, Element inflow_element) const;
  [[nodiscard]] bool names_outflow(Element element, Element outflow_element) const;
};

Network link(const variant::Variant& variant);

}  // namespace schau::network
