#pragma once

#include "m_System/m_System.h"

namespace m_System {

/// Opens a file of the variant that must exist, on a free unit from 100, and tests it for the old DOS code
/// page. Returns the unit, or 0 when the reader must give up: the user has been told then and the run's level
/// is what the dispatcher returned for level 3.
int open_input_file(const FileName& file_name);

}  // namespace m_System
