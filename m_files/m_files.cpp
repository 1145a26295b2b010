#include "m_files/m_files.h"

#include <string>

#include "m_files/module_state.h"
#include "runtime/command.h"
#include "runtime/units.h"
#include "runtime/upper_case.h"

namespace m_files {
namespace {

constexpr int first_deletion_unit = 100;
constexpr int first_list_unit = 500;

int past_standard_units(int unit) {
  return unit == 5 || unit == 6 ? 7 : unit;
}

std::optional<runtime::OpenStatus> open_status(std::string_view word) {
  std::string upper(word);
  to_upper(upper);
  if (runtime::equal_padded(upper, "NEW")) return runtime::OpenStatus::fresh;
  if (runtime::equal_padded(upper, "OLD")) return runtime::OpenStatus::old;
  if (runtime::equal_padded(upper, "UNKNOWN")) return runtime::OpenStatus::unknown;
  return std::nullopt;
}

}  // namespace

int free_unit(int start) {
  int unit = past_standard_units(start);
  while (runtime::is_connected(unit)) unit = past_standard_units(unit + 1);
  return unit;
}

std::int32_t open_checked(std::string_view file_name, std::string_view status_word, int& unit, int start) {
  unit = 0;
  const std::optional<runtime::OpenStatus> status = open_status(status_word);
  if (!status) return file_not_opened;
  if (*status == runtime::OpenStatus::fresh && runtime::is_regular_output(file_name)) {
    delete_file_if_exists(file_name);
  }
  const int opened = free_unit(start);
  if (!runtime::try_open(opened, file_name, *status)) return file_not_opened;
  unit = opened;
  return file_opened;
}

std::int32_t delete_file_if_exists(std::string_view file_name) {
  if (!runtime::file_exists(file_name)) return file_did_not_exist;
  if (const auto holder = runtime::unit_of(file_name)) {
    runtime::close(*holder, runtime::CloseStatus::remove);
    return file_deleted;
  }
  const int unit = free_unit(first_deletion_unit);
  runtime::open(unit, file_name, runtime::OpenStatus::unknown);
  runtime::close(unit, runtime::CloseStatus::remove);
  return file_deleted;
}

std::int32_t remove_list_file(std::string_view file_name) {
  const int unit = free_unit(first_list_unit);
  if (!runtime::try_open(unit, file_name, runtime::OpenStatus::unknown)) return list_file_not_removed;
  return runtime::try_close(unit, runtime::CloseStatus::remove) ? unit : list_file_not_removed;
}

void to_upper(std::span<char> text) {
  runtime::upper_case(text);
}

void find_in_win_ini(std::string_view search_text) {
  std::string command = "find>text.lis /i /n \"";
  command.append(search_text).append("\" %windir%\\win.ini");
  runtime::execute_command(command);
}

void reset() {
  release_file_list(file_list);
  forget_line_copy();
  forget_unit_dump();
}

}  // namespace m_files
