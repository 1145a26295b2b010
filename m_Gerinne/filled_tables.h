#pragma once

#include "m_Gerinne/m_Gerinne.h"

namespace m_Gerinne {

/// The tables for those who fill them; all others see them const.
extern ReachTables filled_tables;

}  // namespace m_Gerinne
