#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// A library that is loaded before the system's own and lets one call of a program fail. The test that starts
/// the program says which by a file in memory, whose path is in an environment variable.
namespace faulty_calls {

inline constexpr const char* plan_variable = "KV_FAULTY_CALLS";

/// The system's calls that a test can make fail.
enum class Call : std::uint8_t {
  open,
  stat,
  lstat,
  fstat,
  access,
  read,
  write,
  notice,  ///< a write to standard output
  seek,
  truncate,
  close,
  unlink,
  link,
  rename,
  change_rights,
  lock,
  allocation
};
inline constexpr std::size_t calls = static_cast<std::size_t>(Call::allocation) + 1;

/// What stands in the file. Calls are counted by kind, from 1.
struct Plan {
  std::size_t call = 0;  ///< the kind that fails
  int first = 0;         ///< the first one that does; 0: none
  int last = 0;
  bool in_part = false;  ///< a read or write moves only some of the bytes
  int number = 0;        ///< of the reason (errno), or the bytes that are moved
  std::array<int, calls> made{};
};

}  // namespace faulty_calls
