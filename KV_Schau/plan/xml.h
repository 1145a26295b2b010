#pragma once

#include <string>
#include <string_view>

namespace schau::plan {

/// A text (UTF-8) as content or attribute of XML and HTML. What XML cannot hold becomes U+FFFD.
std::string escaped(std::string_view text);

}  // namespace schau::plan
