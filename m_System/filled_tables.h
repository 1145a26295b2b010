#pragma once

#include "m_System/m_System.h"

namespace m_System {

/// The system logic for those who fill it; all others see it const.
extern SystemLogic filled_tables;

}  // namespace m_System
