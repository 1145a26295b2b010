#include <string>
#include <string_view>
#include <unordered_map>

#include "m_ScrenixQt/m_ScrenixQt.h"
#include "m_System/element_types.h"
#include "m_System/line_notes.h"
#include "m_System/m_System.h"
#include "m_System/name_index.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/read.h"

namespace m_System {
namespace {

using m_WLM_error::report;

void report_names(std::string_view code, const ElementName& first) {
  report(code, {.text1 = first.view()});
}

void report_names(std::string_view code, const ElementName& first, const ElementName& second) {
  report(code, {.text1 = first.view(), .text2 = second.view()});
}

// Formal stage: each element's own fields.

bool is_blank_or_type(const ElementName& name) {
  return name.first() == ' ' || is_element_type(name.first());
}

void check_letters(std::int32_t i) {
  const SystemLogic& logic = system_logic;
  if (!is_element_type(logic.type.at(i))) report_names("Y01", logic.name.at(i));
  for (std::int32_t k = 1; k <= inflow_slots; ++k) {
    const ElementName& inflow = logic.inflow_name.at(i).at(k);
    if (!is_blank_or_type(inflow)) report_names("Y02", inflow);
  }
  for (std::int32_t k = 1; k <= outflow_slots; ++k) {
    const ElementName& outflow = logic.outflow_name.at(i).at(k);
    if (!is_blank_or_type(outflow)) report_names("Y03", outflow);
  }
}

// How often each name that several elements bear has been met so far, under its first element.
using Repetitions = std::unordered_map<std::int32_t, std::int32_t>;

// One report for each earlier element of the same name.
void check_repeated_name(const NameIndex& names, std::int32_t i, Repetitions& repetitions) {
  const std::int32_t first = first_of_same_name(names, i);
  if (first == i) return;
  const ElementName& name = system_logic.name.at(i);
  const std::int32_t earlier = ++repetitions[first];
  for (std::int32_t report = 1; report <= earlier; ++report) {
    report_names("Y04", name);
    // Only a suppressed report gives 0; its repetitions would leave nothing either.
    if (m_WLM_error::ErrorLevel == 0) return;
  }
}

void check_inflow_fields(std::int32_t i) {
  const SystemLogic& logic = system_logic;
  const ElementName& name = logic.name.at(i);
  const auto& inflow = logic.inflow_name.at(i);
  if (type_of(logic.type.at(i)).is_source()) {
    for (std::int32_t k = 1; k <= inflow_slots; ++k) {
      if (!inflow.at(k).blank()) report_names("Y05", name);
    }
    return;
  }
  if (inflow.at(1).blank()) report_names("Y06", name);
  if (inflow.at(2).blank() && !inflow.at(3).blank()) report_names("Y07", name);
}

void check_one_outflow(const ElementName& name, bool first_given, bool second_given) {
  if (!first_given) report_names("Y08", name);
  if (second_given) report_names("Y09", name);
}

void check_two_outflows(const ElementName& name, const ElementType& type, bool first_given,
                        bool second_given) {
  if (first_given && !second_given) report_names("W02", name);
  if (!first_given && second_given) report_names("W01", name);
  if (!first_given && !second_given) report_names(type.fewest_outflows > 0 ? "Y10" : "W03", name);
}

void check_outflow_fields(std::int32_t i) {
  const SystemLogic& logic = system_logic;
  const ElementName& name = logic.name.at(i);
  const bool first_given = !logic.outflow_name.at(i).at(1).blank();
  const bool second_given = !logic.outflow_name.at(i).at(2).blank();
  const ElementType& type = type_of(logic.type.at(i));
  if (type.is_structure()) {
    check_two_outflows(name, type, first_given, second_given);
  } else if (type.most_outflows == 1) {
    check_one_outflow(name, first_given, second_given);
  }
}

void check_tags(std::int32_t i) {
  const SystemLogic& logic = system_logic;
  const bool tagged = type_of(logic.type.at(i)).is_structure() && !logic.tag3.at(i).blank();
  if (tagged && logic.tag7.at(i).blank()) report_names("Y12", logic.name.at(i));
}

void check_fields() {
  const NameIndex& names = element_names();
  Repetitions repetitions;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    check_letters(i);
    check_repeated_name(names, i, repetitions);
    check_inflow_fields(i);
    check_outflow_fields(i);
    check_tags(i);
  }
}

// Logical stage: the links between the elements.

bool has_outflow_to(std::int32_t element, std::int32_t target) {
  const auto& outflow = system_logic.outflow_index.at(element);
  return outflow.at(1) == target || outflow.at(2) == target;
}

bool has_inflow_from(std::int32_t element, std::int32_t source) {
  const auto& inflow = system_logic.inflow_index.at(element);
  return inflow.at(1) == source || inflow.at(2) == source || inflow.at(3) == source;
}

void check_inflow_link(std::int32_t i, std::int32_t k) {
  const SystemLogic& logic = system_logic;
  const ElementName& name = logic.name.at(i);
  const ElementName& inflow = logic.inflow_name.at(i).at(k);
  const std::int32_t j = logic.inflow_index.at(i).at(k);
  if (j == 0) {
    if (!inflow.blank()) report_names("Y21", inflow, name);
    return;
  }
  if (j >= i) report_names("Y23", inflow, name);
  if (!has_outflow_to(j, i)) report_names("Y25", name, logic.name.at(j));
  for (std::int32_t m = k + 1; m <= inflow_slots; ++m) {
    if (logic.inflow_index.at(i).at(m) == j) report_names("Y27", name, logic.name.at(j));
  }
}

void check_outflow_link(std::int32_t i, std::int32_t k) {
  const SystemLogic& logic = system_logic;
  const bool last = i == logic.element_count;
  const ElementName& name = logic.name.at(i);
  const ElementName& outflow = logic.outflow_name.at(i).at(k);
  const std::int32_t j = logic.outflow_index.at(i).at(k);
  if (j == 0) {
    if (!last && !outflow.blank()) report_names("Y22", outflow, name);
    return;
  }
  if (j <= i) report_names("Y24", outflow, name);
  if (!last && !has_inflow_from(j, i)) report_names("Y26", name, logic.name.at(j));
}

void check_links() {
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    for (std::int32_t k = 1; k <= inflow_slots; ++k) check_inflow_link(i, k);
    for (std::int32_t k = 1; k <= outflow_slots; ++k) check_outflow_link(i, k);
  }
}

bool stage_failed(std::string_view notice) {
  if (m_WLM_error::ErrorLevel < 2) return false;
  m_ScrenixQt::ShowMessage(m_ScrenixQt::error_title, notice);
  return true;
}

}  // namespace

void CheckSystemLogic() {
  check_fields();
  if (stage_failed("formale Fehler in der Systemdatei\r\n\r\nSiehe FEHLER.PKL")) return;
  check_links();
  stage_failed("Fehler in der Systemlogik\r\n\r\nSiehe FEHLER.PKL");
}

std::int32_t CheckDuplicateData(char kind, std::string_view file_name, int unit) {
  const LineNotes notes = note_lines(unit, kind, nullptr);
  runtime::rewind(unit);
  return report_duplicates(file_name, notes);
}

}  // namespace m_System
