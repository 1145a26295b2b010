#pragma once

#include <array>

namespace m_System {

/// The letters that an element's name can begin with.
inline constexpr std::array<bool, 256> element_types = [] {
  std::array<bool, 256> types{};
  for (const char letter : {'N', 'K', 'E', 'T', 'V', 'B', 'P'})
    types[static_cast<unsigned char>(letter)] = true;
  return types;
}();

inline bool is_element_type(char letter) {
  return element_types[static_cast<unsigned char>(letter)];
}

}  // namespace m_System
