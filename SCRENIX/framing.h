#pragma once

#include <string_view>

namespace SCRENIX {

/// Sends one record to the front-end: the key as it is, the value without its trailing blanks.
void write_record(std::string_view key, std::string_view value);

}  // namespace SCRENIX
