#pragma once

#include <string>

#include "KV_Schau/report/report.h"

namespace schau::report {

/// A report as one HTML page that needs nothing else, not even a network: sorted and searched, zoomed and lit
/// up by its own script. Texts from files are escaped wherever they stand.
std::string to_html(const Report& report);

}  // namespace schau::report
