#pragma once

#include <string_view>

namespace schau::plan {

/// The width of a text (UTF-8) in the widest of the usual sans-serif typefaces, as a multiple of the type
/// size: what is given so much room fits, whatever typeface the reader's machine has.
double text_width(std::string_view text, bool bold = false);

}  // namespace schau::plan
