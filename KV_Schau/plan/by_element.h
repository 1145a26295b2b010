#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "KV_Schau/network/network.h"

namespace schau::plan {

using network::Element;

/// Numbers 0, 1, 2 ... filed under elements (counting sort), those of one element in their order.
class ByElement {
 public:
  ByElement() = default;
  /// `element_of` tells the element (0 .. element_count) of each number below `number_count`.
  template <class ElementOf>
  ByElement(Element element_count, std::size_t number_count, const ElementOf& element_of) {
    begins_.assign(std::size_t{element_count} + 2, 0);
    const auto count = static_cast<std::uint32_t>(number_count);
    for (std::uint32_t number = 0; number < count; ++number) ++begins_[element_of(number) + 1];
    for (std::size_t i = 1; i < begins_.size(); ++i) begins_[i] += begins_[i - 1];
    std::vector<std::uint32_t> next = begins_;
    numbers_.resize(count);
    for (std::uint32_t number = 0; number < count; ++number) numbers_[next[element_of(number)]++] = number;
  }

  [[nodiscard]] std::span<const std::uint32_t> of(Element element) const {
    return std::span(numbers_).subspan(begins_[element], begins_[element + 1] - begins_[element]);
  }

 private:
  std::vector<std::uint32_t> numbers_;
  std::vector<std::uint32_t> begins_;
};

}  // namespace schau::plan
