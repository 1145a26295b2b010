#pragma once

#include <string>
#include <string_view>

namespace schau::run {

/// Bytes that KV_Akum wrote, as UTF-8 for people: Windows-1252, but the variant's name as the host spells it.
/// Control characters become visible signs; CR LF and LF become line feeds; blank lines at the end are
/// dropped.
std::string shown_output(std::string_view bytes, std::string_view variant_name);

/// The same as one line: the lines joined with blanks.
std::string shown_line(std::string_view bytes, std::string_view variant_name);

}  // namespace schau::run
