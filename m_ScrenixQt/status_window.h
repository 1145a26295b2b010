#pragma once

namespace m_ScrenixQt {

/// Forgets all status windows, without a word to the library.
void forget_status_windows();

}  // namespace m_ScrenixQt
