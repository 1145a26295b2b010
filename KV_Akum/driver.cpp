#include <array>
#include <string>

#include "KV_Akum/KV_Akum.h"
#include "SCRENIX/SCRENIX.h"
#include "m_Bauwerke/m_Bauwerke.h"
#include "m_Einleiter/m_Einleiter.h"
#include "m_Gerinne/m_Gerinne.h"
#include "m_ScrenixQt/m_ScrenixQt.h"
#include "m_System/m_System.h"
#include "m_WLM_error/m_WLM_error.h"
#include "m_strings/m_strings.h"
#include "runtime/cp1252.h"
#include "runtime/paths.h"
#include "runtime/stop.h"
#include "runtime/units.h"

namespace KV_Akum {
namespace {

using namespace runtime::literals;

constexpr std::array<SCRENIX::FileFilter, 1> sys_filter = {{{"SYS-Dateien", "*.sys;*.sys"}}};

[[noreturn]] void refuse(std::string_view notice) {
  m_ScrenixQt::ShowMessage(m_ScrenixQt::error_title, notice);
  runtime::stop();
}

// Asks the user for a variant; one that was chosen is not tested for existence.
void choose_variant() {
  VariantName& name = variant_list.VariantNames.at(1);
  if (ChooseVariantFile("KV_Akum: Auswahl der Variante über SYS-Datei"_w1252, sys_filter, name.bytes)) return;
  refuse("Es wurde keine SYS-Datei ausgewählt!\r\nAbbruch!"_w1252);
}

void require_system_file(const std::string& name) {
  const std::string file = name + ".sys";
  if (!runtime::file_exists(file)) refuse("Die Datei " + file + " liegt nicht vor!\r\nAbbruch!");
  runtime::keep_beside(file);
}

// No output of the run may be one of its inputs, and no other run may write the same outputs.
void secure_inputs(const std::string& name) {
  for (const std::string_view extension : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
    runtime::protect(m_System::file_name_of(name, extension).view());
  }
  runtime::protect("fehlercode.ex");
  runtime::lock(m_System::file_name_of(name, ".sys").view());
}

void start_protocol(const std::string& name) {
  const std::string label = "KARVOS " + std::string(variant_list.ProgramLabel.view());
  m_WLM_error::report("INIT", {.text1 = name + ".pkl", .text2 = label});
}

}  // namespace

bool ChooseVariantFile(std::string_view title, std::span<const SCRENIX::FileFilter> filters,
                       std::span<char> chosen_name) {
  return SCRENIX::get_open_file_name(title, filters, chosen_name);
}

void ReadAllInputs(std::string_view variant_name) {
  m_System::ReadSystemFile(variant_name);
  if (m_WLM_error::ErrorLevel > 1) return;
  if (m_System::system_logic.count('N') > 0) m_Einleiter::ReadNaturalAreas(variant_name);
  if (m_System::system_logic.count('K') > 0) m_Einleiter::ReadCanalisedAreas(variant_name);
  if (m_System::system_logic.count('T') > 0) m_Gerinne::ReadReaches(variant_name);
  if (m_System::system_logic.count('V') > 0) m_Bauwerke::ReadBranchings(variant_name);
}

void ProgramDriver() {
  StartUp();
  if (variant_list.VariantCount == 0) choose_variant();
  const std::string name(variant_list.VariantNames.at(1).trimmed());
  if (variant_list.VariantCount != 0) require_system_file(name);
  // Every program of the suite takes its variant's path apart; this one needs none of the parts.
  m_strings::SplitPath(variant_list.VariantNames.at(1).view());
  secure_inputs(name);
  start_protocol(name);
  ReadAllInputs(name);
  if (m_WLM_error::ErrorLevel < 2) AccumulateAreas(name);
  m_ScrenixQt::ShowMessage(m_ScrenixQt::program_title, "Ergebnis: " + name + ".Akum");
}

}  // namespace KV_Akum
