#pragma once

#include "m_Bauwerke/m_Bauwerke.h"

namespace m_Bauwerke {

/// The tables for those who fill them; all others see them const.
extern BranchingTables filled_tables;

}  // namespace m_Bauwerke
