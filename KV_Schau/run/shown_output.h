#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace schau::run {

/// Lines that KV_Akum wrote, as UTF-8 for people: Windows-1252, but the variant's name as the host spells it.
/// Control characters become visible signs; blank lines are left out.
std::vector<std::string> shown_lines(std::string_view bytes, std::string_view variant_name);

/// The same as one line, joined with blanks.
std::string shown_line(std::string_view bytes, std::string_view variant_name);

}  // namespace schau::run
