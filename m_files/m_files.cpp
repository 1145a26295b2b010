#include "m_files.h"

#include "units.h"

namespace m_files {
namespace {

int past_standard_units(int unit) {
  return unit == 5 || unit == 6 ? 7 : unit;
}

}  // namespace

int free_unit(int start) {
  int unit = past_standard_units(start);
  while (runtime::is_connected(unit)) unit = past_standard_units(unit + 1);
  return unit;
}

std::int32_t delete_file_if_exists(std::string_view file_name) {
  if (!runtime::file_exists(file_name)) return file_did_not_exist;
  if (const auto holder = runtime::unit_of(file_name)) {
    runtime::close(*holder, runtime::CloseStatus::remove);
    return file_deleted;
  }
  const int unit = free_unit(100);
  runtime::open(unit, file_name, runtime::OpenStatus::unknown);
  runtime::close(unit, runtime::CloseStatus::remove);
  return file_deleted;
}

}  // namespace m_files
