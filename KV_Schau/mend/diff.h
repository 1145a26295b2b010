#pragma once

#include <string>

#include "KV_Schau/mend/mend.h"

namespace schau::mend {

/// The escape sequences around the parts of a difference; all empty where there is no terminal.
struct DiffColours {
  std::string_view heading;
  std::string_view place;
  std::string_view removed;
  std::string_view added;
  std::string_view off;
};
inline constexpr DiffColours no_colours{};
inline constexpr DiffColours terminal_colours{"\x1B[1m", "\x1B[36m", "\x1B[31m", "\x1B[32m", "\x1B[0m"};

/// Appends how a file changes, as a unified diff with three lines around each change, for people: UTF-8,
/// control characters visible. Lines that change in nothing that can be seen (encoding, line ends) are no
/// change here. Nothing when there is none. Linear in the lines.
void append_diff(std::string& out, const MendedFile& file, const variant::TextFile& old,
                 const DiffColours& colours);

/// What was mended in a file: "2 Zeilen mit Dezimalkomma, 1 Zeile von UTF-8 in Windows-1252". Empty when
/// nothing was.
std::string summary(const MendedFile& file);

}  // namespace schau::mend
