#pragma once

#include "m_Einleiter/m_Einleiter.h"

namespace m_Einleiter {

/// The tables for those who fill them; all others see them const.
extern SourceTables filled_tables;

}  // namespace m_Einleiter
