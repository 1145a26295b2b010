#pragma once

#include <cstdint>
#include <string_view>

#include "runtime/array.h"

/// The transport reaches ("Gerinne").
namespace m_Gerinne {

/// The tables by reach number: the count of T elements up to and including the element, in system order,
/// from 1. A reach whose line was not read keeps kind 0 and values 0.0.
struct ReachTables {
  std::int32_t reach_count = 0;
  runtime::OneBased<std::int32_t> kind;    ///< 1: no entry in columns 57-66 of its line; 2: with one
  runtime::OneBased<float> first_value;    ///< columns 11-18 of its line; 0.0 for kind 1
  runtime::OneBased<float> station_value;  ///< columns 11-18 of the line below; 0.0 for kind 1
};
extern const ReachTables& reach_tables;

/// Copies the count from the system logic and allocates the tables, zeroed. Returns 0, or
/// `m_WLM_error::allocation_failed`.
std::int32_t AllocateReachTables();

/// Reads `NAME.trs`. Faults go to the dispatcher and to the run's ErrorLevel; a text in the number columns is
/// no fault, it gives the number that `m_strings::ParseReal` finds in it.
void ReadReaches(std::string_view variant_name);

/// Puts the module back into its state at the start of the program. For tests.
void reset();

}  // namespace m_Gerinne
