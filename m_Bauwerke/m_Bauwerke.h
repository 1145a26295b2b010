#pragma once

#include <cstdint>
#include <string_view>

#include "runtime/array.h"

/// The structures ("Bauwerke"): the branchings.
namespace m_Bauwerke {

/// The tables by branching number: the count of V elements up to and including the element, in system order,
/// from 1. A branching whose line was not read keeps code 0 and share 0.0.
struct BranchingTables {
  std::int32_t branching_count = 0;
  std::int32_t B_count = 0;              ///< B elements
  runtime::OneBased<std::int32_t> code;  ///< K; 1 to 3 are known to the suite, above 3 is reported
  runtime::OneBased<float> share;        ///< fraction that takes the first outflow (the file gives per cent)
};
extern const BranchingTables& branching_tables;

/// Copies the counts from the system logic and allocates the tables, zeroed. Returns 0, or
/// `m_WLM_error::allocation_failed`.
std::int32_t AllocateBranchingTables();

/// Reads `NAME.ver`. Faults go to the dispatcher and to the run's ErrorLevel.
void ReadBranchings(std::string_view variant_name);

/// Puts the module back into its state at the start of the program. For tests.
void reset();

}  // namespace m_Bauwerke
