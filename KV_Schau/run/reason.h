#pragma once

#include <string>
#include <system_error>

namespace schau::run {

/// The system's reason in German where it is one of the usual ones, else in the system's own words.
std::string reason_of(const std::error_code& fault);

}  // namespace schau::run
