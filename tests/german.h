#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "runtime/cp1252.h"

/// The text in the bytes that the program writes.
inline std::string german(std::string_view utf8) {
  runtime::Cp1252Text<500> text;
  text.append(utf8);
  if (!text.valid) throw std::runtime_error("not in Windows-1252");
  return std::string(text.view());
}
