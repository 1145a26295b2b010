#pragma once

#include "m_info/m_info.h"

namespace m_info {

/// The state of the module for those who fill it; all others see it const.
extern RuntimeProtocol filled_protocol;
extern CheckList filled_check_list;

}  // namespace m_info
