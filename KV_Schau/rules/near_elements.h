#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered/unordered_flat_set.hpp>
#include <cstdint>
#include <vector>

#include "KV_Schau/network/network.h"
#include "KV_Schau/variant/variant.h"

namespace schau::rules {

/// Why a line that looks like an element is none.
enum class NearElementCause : std::uint8_t {
  utf8,               ///< characters of several bytes shift the columns
  z_element,          ///< the name begins with "Z", which the run passes over
  lower_case,         ///< the name or a link begins with a small letter
  end_in_lower_case,  ///< the end marker does
  digit,              ///< the name or a link begins with a digit
  foreign_letter,     ///< or with a letter that is no type
  shifted,            ///< the name or a link begins in another column
  gap,                ///< a blank inflow before one that is given
  unseen,             ///< a tab, a non-breaking blank or a control character stands where a blank must be
  other
};

/// A line of the system file that KV_Akum passes over although it looks like an element.
struct NearElement {
  std::uint32_t line = 0;
  std::uint32_t column = 0;  ///< of what is wrong, from 1
  std::uint32_t length = 0;
  std::uint32_t expected_column = 0;  ///< where a shifted text belongs
  NearElementCause cause = NearElementCause::other;
  variant::NameKey name = 0;  ///< the element that was meant, with a capital letter
};

/// Names that some line of the variant speaks of, although no element bears them.
using NameSet = boost::unordered_flat_set<variant::NameKey>;
NameSet names_without_element(const variant::Variant& variant, const network::Network& network);

struct NearElements {
  std::vector<NearElement> list;  ///< in file order
  /// Their positions in the list by the names that were meant.
  boost::unordered_flat_map<variant::NameKey, std::uint32_t> by_name;
};

/// Looks through the lines that are no elements, up to the end marker. A line looks like an element when a
/// name stands at or near the columns of the name and nothing but names behind it, or when a name that is
/// missing elsewhere stands in these columns. A word is a name when it has the form of one (a letter, digits)
/// or the variant speaks of it elsewhere.
NearElements find_near_elements(const variant::Variant& variant, const NameSet& missing_names);

/// True when a line in UTF-8 is an element, or another element, once its characters are single bytes.
bool is_element_in_windows_1252(std::string_view line);

}  // namespace schau::rules
