#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/dice.h"
#include "tests/schau/bed.h"

namespace schau_test {

/// An element of a random network and where it stands. Lines count from 1; 0 is none.
struct PlacedElement {
  char type = ' ';
  std::string name;
  std::vector<std::size_t> inflows;   ///< positions in the list
  std::vector<std::size_t> outflows;  ///< the same
  std::size_t sys_line = 0;
  std::size_t record_line = 0;   ///< in the data file of its type
  std::size_t station_line = 0;  ///< of a reach of kind 2
  std::size_t unit_line = 0;     ///< of an area: the last unit line above it
};

/// A random network with all types of elements, in which nothing is wrong: at most hints about the dry first
/// outflows of basins and of branchings of codes 2 and 3. Areas are between 0.5 and 50 km², stations fall.
struct CleanNetwork {
  Bed bed;
  std::vector<PlacedElement> elements;

  /// The positions of the elements that a test holds for.
  template <class Test>
  [[nodiscard]] std::vector<std::size_t> where(const Test& test) const {
    std::vector<std::size_t> positions;
    for (std::size_t i = 0; i < elements.size(); ++i) {
      if (test(elements[i])) positions.push_back(i);
    }
    return positions;
  }
};

CleanNetwork clean_network(Dice& dice, std::size_t least_elements);

}  // namespace schau_test
