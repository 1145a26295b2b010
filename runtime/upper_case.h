#pragma once

#include <algorithm>
#include <span>
#include <string_view>

#include "runtime/cp1252.h"
#include "runtime/fixed_text.h"

namespace runtime {

/// Turns a .. z, ä, ö and ü into upper case, in place, up to the trimmed length. Everything else stays, ß
/// too.
inline void upper_case(std::span<char> text) {
  using namespace literals;
  constexpr std::string_view lower = "abcdefghijklmnopqrstuvwxyzäöü"_w1252;
  constexpr std::string_view upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZÄÖÜ"_w1252;
  const std::size_t length = trimmed_length({text.data(), text.size()});
  for (char& character : text.first(length)) {
    const std::size_t place = lower.find(character);
    if (place != std::string_view::npos) character = upper[place];
  }
}

}  // namespace runtime
