#pragma once

#include "KV_Schau/import/net_table.h"

namespace schau::imports {

/// Links the rows of a table by their ids and finds `upstream`, `outlets` and `order`. Adds the faults of the
/// network: an id that is given twice, a target that is none, loops. Linear in the rows.
void find_drainage(NetTable& table);

}  // namespace schau::imports
