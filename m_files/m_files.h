#pragma once

#include <cstdint>
#include <string_view>

/// File handling shared by all tools of the suite.
namespace m_files {

/// The first unit number at or above `start` that is not connected. 5 and 6, standard input and output, are
/// never handed out.
int free_unit(int start);

/// Status of `delete_file_if_exists`.
inline constexpr std::int32_t file_deleted = 0;
inline constexpr std::int32_t file_did_not_exist = 1;

/// Deletes a file; trailing blanks of the name do not count. A file that a unit holds is closed with it.
/// Returns `file_deleted` or `file_did_not_exist`. A file that cannot be opened ends the program with an
/// I/O error.
std::int32_t delete_file_if_exists(std::string_view file_name);

}  // namespace m_files
