#pragma once

#include <cstdint>
#include <string_view>

#include "runtime/array.h"
#include "runtime/fixed_text.h"

/// The catchment areas of the source elements and their degree of sealing ("Befestigungsgrad").
namespace m_Einleiter {

/// The tables by source number: the count of N and K elements up to and including the element, in system
/// order, from 1. An element that no file supplies keeps 0.0.
struct SourceTables {
  std::int32_t natural_count = 0;    ///< N elements
  std::int32_t canalised_count = 0;  ///< K elements
  std::int32_t E_count = 0;          ///< E elements
  std::int32_t source_count = 0;     ///< N and K elements together
  runtime::OneBased<float> area;     ///< km²
  runtime::OneBased<float> sealing;  ///< fraction, 0 .. 1; greater values are reported and kept
  float unit_factor = 1.0F;          ///< turns the value read into km²; kept from file to file
  runtime::FixedText<3> unit_name{"qkm"};
};
extern const SourceTables& source_tables;

/// Copies the counts from the system logic and allocates both tables, zeroed. Returns 0, or
/// `m_WLM_error::allocation_failed`.
std::int32_t AllocateSourceTables();

/// Reads `NAME.nfl` into the entries of the N elements and allocates the tables. Faults go to the dispatcher
/// and to the run's ErrorLevel.
void ReadNaturalAreas(std::string_view variant_name);

/// Reads `NAME.kfl` into the entries of the K elements; the unit that `NAME.nfl` left in force holds until a
/// unit line of its own. Allocates the tables only when no N element has made the other reader do so.
void ReadCanalisedAreas(std::string_view variant_name);

/// Puts the module back into its state at the start of the program. For tests.
void reset();

}  // namespace m_Einleiter
