#pragma once

/// Whether the sanitizers are built in. They ask for memory, handles and time of their own.
#ifdef KV_SANITIZED
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif
