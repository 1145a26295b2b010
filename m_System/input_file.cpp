#include "m_System/input_file.h"

#include <string>

#include "m_ScrenixQt/m_ScrenixQt.h"
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

int open_input_file(const FileName& file_name) {
  const int unit = m_files::free_unit(100);
  const std::string file = "Die Datei " + std::string(file_name.trimmed());
  if (!runtime::try_open(unit, file_name.trimmed(), runtime::OpenStatus::input)) {
    give_up(file + " existiert nicht.");
    return 0;
  }
  if (m_strings::ContainsOemUmlauts(file_name.view(), unit) > 0) {
    give_up(file + std::string(" enhält ASCII-Code.\r\nUpdate mit KARVOS_upd!"_w1252));
    return 0;
  }
  return unit;
}

}  // namespace m_System
