#include <algorithm>
#include <string>

#include "m_ScrenixQt/m_ScrenixQt.h"
#include "m_System/m_System.h"
#include "m_System/record_search.h"
#include "m_WLM_error/m_WLM_error.h"
#include "m_files/m_files.h"
#include "m_strings/m_strings.h"
#include "runtime/cp1252.h"
#include "runtime/units.h"

namespace m_System {
namespace {

using namespace runtime::literals;

void give_up(const std::string& notice) {
  m_ScrenixQt::ShowMessage(m_ScrenixQt::error_title, notice);
  m_WLM_error::report("ErrorLevel", {.int1 = 3});
}

}  // namespace

FileName file_name_of(std::string_view variant_name, std::string_view extension) {
  return FileName(std::string(runtime::trimmed(variant_name)).append(extension));
}

int OpenInputFile(const FileName& file_name) {
  const int unit = m_files::free_unit(100);
  const std::string file = "Die Datei " + std::string(file_name.trimmed());
  if (!runtime::try_open(unit, file_name.trimmed(), runtime::OpenStatus::old)) {
    give_up(file + " existiert nicht.");
    return 0;
  }
  if (m_strings::ContainsOemUmlauts(file_name.view(), unit) > 0) {
    give_up(file + std::string(" enhält ASCII-Code.\r\nUpdate mit KARVOS_upd!"_w1252));
    return 0;
  }
  return unit;
}

RecordSearch OpenCompanionFile(const FileName& file_name, char kind, LineMark mark_of) {
  RecordSearch search{.unit = OpenInputFile(file_name), .mark_of = mark_of};
  if (search.unit == 0) return {};
  const std::int32_t level = CheckDuplicateData(kind, file_name.view(), search);
  m_WLM_error::ErrorLevel = std::max(m_WLM_error::ErrorLevel, level);
  if (m_WLM_error::ErrorLevel <= 1) return search;
  runtime::close(search.unit);
  return {};
}

bool ReadyToRead(int unit, std::int32_t allocation_status) {
  m_WLM_error::ErrorLevel = std::max(m_WLM_error::ErrorLevel, allocation_status);
  if (m_WLM_error::ErrorLevel <= 1 && system_logic.element_count > 0) return true;
  runtime::close(unit);
  return false;
}

}  // namespace m_System
