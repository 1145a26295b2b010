#include "m_ScrenixQt/m_ScrenixQt.h"

#include "SCRENIX/SCRENIX.h"
#include "m_ScrenixQt/status_window.h"
#include "runtime/fixed_text.h"
#include "runtime/stop.h"

namespace m_ScrenixQt {
namespace {

constexpr std::int32_t button_ok = 0;
constexpr std::int32_t buttons_yes_no = 4;
constexpr std::int32_t second_button_default = 256;
constexpr std::string_view fatal_title = "Schwerer Fehler: Nach <OK> erfolgt Programmabbruch!";

bool asked_yes(std::string_view title, std::string_view text) {
  if (dialog_state.auto_yes != 0) return true;
  const std::int32_t buttons = SCRENIX::add_flags_2(buttons_yes_no, second_button_default);
  dialog_state.last_answer = SCRENIX::message_box(title, text, buttons);
  return dialog_state.last_answer == SCRENIX::answer_yes;
}

std::int32_t confirm_cancel(std::string_view title, std::string_view text) {
  if (SCRENIX::message_box(title, text, buttons_yes_no) != SCRENIX::answer_yes) return 1;
  dialog_state.keep_running = 0;
  return 0;
}

}  // namespace

DialogState dialog_state;

void ShowMessage(std::string_view title, std::string_view text, std::span<char> answer) {
  if (runtime::equal_padded(title, "Frage?")) {
    const std::string_view reply = asked_yes(title, text) ? "Ja" : "No";
    runtime::assign_padded(answer.data(), answer.size(), reply);
  } else if (runtime::equal_padded(title, "Abbruch!!!")) {
    dialog_state.last_answer = SCRENIX::message_box(fatal_title, text, button_ok);
    runtime::stop();
  } else {
    dialog_state.last_message_result = SCRENIX::message_box(title, text);
  }
}

void ShowMessageAndStop(std::string_view title, std::string_view text) {
  ShowMessage(runtime::trimmed(title), runtime::trimmed(text));
  runtime::stop();
}

std::int32_t AskCancel() {
  if (dialog_state.language == "DEUTSCH") {
    return confirm_cancel("Abbruch?", "Wollen Sie den Programmablauf wirklich abbrechen ?");
  }
  if (dialog_state.language == "ENGLISH") {
    return confirm_cancel("Cancel?", "Are You shure to cancel program ?");
  }
  return 1;
}

std::int32_t AskViewProtocol(std::string_view title, std::span<const SCRENIX::FileFilter> filters,
                             std::span<char, protocol_name_width> chosen_name, bool& chosen) {
  dialog_state.last_answer = SCRENIX::message_box("Protokolldatei anschauen?",
                                                  "Wollen Sie Fehler/Warnungen anschauen?", buttons_yes_no);
  if (dialog_state.last_answer == SCRENIX::answer_yes) {
    chosen = SCRENIX::get_open_file_name(title, filters, chosen_name);
  }
  return dialog_state.last_answer;
}

void reset() {
  dialog_state = DialogState();
  forget_status_windows();
}

}  // namespace m_ScrenixQt
