#pragma once

#include <string>
#include <string_view>

#include "KV_Schau/variant/encoding.h"
#include "KV_Schau/variant/text_file.h"

namespace schau::variant {

/// Bytes of a file as UTF-8 for people, decoded as an editor would. Control characters become visible signs
/// (a tab "→", the others their control pictures), so that no file can talk to the terminal; a byte that is
/// no character becomes U+FFFD.
std::string shown(std::string_view bytes, Encoding encoding);

/// The same of a text that is UTF-8 already, such as a path.
std::string shown_utf8(std::string_view text);

/// A line for people: each character takes one place, but a tab goes on to the next multiple of 8.
struct ShownLine {
  std::string text;        ///< cut at both ends around the marked place when the line is long ("…")
  std::size_t begin = 0;   ///< the places before the marked text
  std::size_t length = 0;  ///< the places of the marked text; at least 1
};

/// Shows a line of a file with a mark from a byte column (from 1) on over so many bytes. The mark may lie
/// behind the line's end.
ShownLine show_line(const TextFile& file, std::uint32_t line, std::size_t byte_column,
                    std::size_t byte_count);

}  // namespace schau::variant
