#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "tests/dice.h"
#include "tests/schau/bed.h"
#include "tests/schau/clean_network.h"

namespace schau_test {

/// Where a mistake was planted, and the rules of which one must name it.
struct Planted {
  FileId file = FileId::sys;
  std::size_t line = 0;  ///< 0: the file as a whole
  std::vector<std::string_view> rules;
};

/// A kind of mistake. Nothing is planted when the network has no place for it.
struct Mistake {
  std::string_view family;
  std::string_view what;
  std::optional<Planted> (*plant)(CleanNetwork& network, Dice& dice);
};

/// All kinds, by the families of the rules.
const std::vector<Mistake>& mistakes();

}  // namespace schau_test
