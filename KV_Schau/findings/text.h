#pragma once

#include <string>
#include <string_view>

#include "KV_Schau/findings/finding.h"

namespace schau::findings {

/// The escape sequences around the parts of a text; all empty where there is no terminal.
struct Colours {
  std::string_view place;
  std::string_view error;
  std::string_view warning;
  std::string_view note;
  std::string_view mark;
  std::string_view off;
};

/// Without colours.
inline constexpr Colours no_colours{};
/// For a terminal.
inline constexpr Colours terminal_colours{"\x1B[1m",    "\x1B[1;31m", "\x1B[1;33m",
                                          "\x1B[1;36m", "\x1B[1;32m", "\x1B[0m"};

/// Appends a finding in the form that editors jump to, with its line and a mark under the characters that it
/// is about:
///
///     rausel.kfl:7:11: Fehler: Dezimalkomma in der Fläche "64,50" [dezimalkomma]
///         7 |    K0010  64,50 0.35
///           |           ^~~~~ gemeint: 64.50
///
/// The column counts characters as an editor does.
void append_text(std::string& out, const variant::Variant& variant, const Finding& finding,
                 const Colours& colours = no_colours);

/// "2 Fehler, 1 Warnung, 3 Hinweise".
std::string text_of(const Counts& counts);

}  // namespace schau::findings
