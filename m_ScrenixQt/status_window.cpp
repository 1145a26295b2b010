#include "m_ScrenixQt/status_window.h"

#include <array>
#include <map>
#include <string>

#include "SCRENIX/SCRENIX.h"
#include "m_ScrenixQt/m_ScrenixQt.h"
#include "runtime/array.h"
#include "runtime/fixed_text.h"

namespace m_ScrenixQt {
namespace {

struct StatusWindowEntry {
  runtime::Slots<runtime::FixedText<status_text_width>, status_fields> texts;
  std::int32_t handle = 0;
};

std::map<std::int32_t, StatusWindowEntry> status_windows;

struct NamedField {
  std::string_view name;
  std::int32_t field;
};
constexpr std::array<NamedField, 3> date_and_time_fields = {{{"DATUM1", 1}, {"DATUM2", 2}, {"UHR", 3}}};

bool is_field(std::int32_t field) {
  return field >= 1 && field <= status_fields;
}

std::int32_t item_of(std::int32_t window, std::int32_t field) {
  return 10 * window + field;
}

void send_field(std::int32_t window, std::int32_t field) {
  StatusWindowEntry& entry = status_windows[window];
  SCRENIX::update_dialog_item_s(item_of(window, field), SCRENIX::ItemAction::set,
                                {{SCRENIX::Property::text, entry.texts.at(field).view()}});
  SCRENIX::process_events();
  entry.handle = SCRENIX::current_window_handle();
}

void set_field(std::int32_t window, std::int32_t field, std::string_view text) {
  status_windows[window].texts.at(field) = text;
  send_field(window, field);
}

void append_to_field(std::int32_t window, std::int32_t field, std::string_view text) {
  std::string lines(status_windows[window].texts.at(field).trimmed());
  if (!lines.empty()) lines += "\r\n";
  set_field(window, field, lines.append(text));
}

void show_window(std::int32_t window, std::string_view title) {
  const std::int32_t cancel_button = item_of(window, 0);
  SCRENIX::set_dialog_item(cancel_button, SCRENIX::ItemAction::set, {{SCRENIX::Property::text, "Abbruch"}});
  SCRENIX::set_item_action(cancel_button, AskCancel);
  SCRENIX::dialog_box(window, SCRENIX::DialogMode::modeless, {{SCRENIX::Property::title, title}});
  StatusWindowEntry& entry = status_windows[window];
  for (auto& text : entry.texts.values) text = "";
  entry.handle = SCRENIX::current_window_handle();
}

void close_window(std::int32_t window) {
  status_windows.erase(window);
  SCRENIX::remove_dialog_box(window);
}

}  // namespace

void status_window(std::int32_t window, std::int32_t field, std::string_view action, std::string_view text) {
  if (window < 1 || window > most_status_windows) return;
  const std::string_view word = runtime::trimmed(action);
  if (word == "INIT") return show_window(window, text);
  if (word == "DESTROY") return close_window(window);
  for (const NamedField& named : date_and_time_fields) {
    if (word == named.name) return set_field(window, named.field, text);
  }
  if (!is_field(field)) return;
  if (word == "NEW") set_field(window, field, text);
  if (word == "APPEND") append_to_field(window, field, text);
  if (word == "REFRESH") send_field(window, field);
}

std::string_view status_text(std::int32_t window, std::int32_t field) {
  const auto found = status_windows.find(window);
  if (found == status_windows.end() || !is_field(field)) return {};
  return found->second.texts.at(field).view();
}

std::int32_t status_window_handle(std::int32_t window) {
  const auto found = status_windows.find(window);
  return found == status_windows.end() ? 0 : found->second.handle;
}

void forget_status_windows() {
  status_windows.clear();
}

}  // namespace m_ScrenixQt
