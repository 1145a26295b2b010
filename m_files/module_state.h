#pragma once

namespace m_files {

/// The longest line that is copied or listed.
inline constexpr int line_width = 500;

/// Forgets the line copy that is under way; its files stay open.
void forget_line_copy();

/// Forgets the unit of the dump file, which stays open.
void forget_unit_dump();

}  // namespace m_files
