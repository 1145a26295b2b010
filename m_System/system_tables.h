#pragma once

#include <cstdint>

namespace m_System {

/// `AllocateSystemTables` without its blanks, for a reader that writes every text itself: the texts hold zero
/// bytes until they are written or blanked.
std::int32_t allocate_unfilled_tables();

/// Blanks the texts of the positions from `first` to the end of every table, and all marks.
void blank_texts_from(std::int32_t first);

}  // namespace m_System
