#include "m_ScrenixQt.h"

#include "SCRENIX.h"
#include "fixed_text.h"
#include "stop.h"

namespace m_ScrenixQt {
namespace {

constexpr std::int32_t button_ok = 0;
constexpr std::int32_t buttons_yes_no = 4;
constexpr std::int32_t second_button_default = 256;
constexpr std::string_view fatal_title = "Schwerer Fehler: Nach <OK> erfolgt Programmabbruch!";

bool asked_yes(std::string_view title, std::string_view text) {
  if (dialog_state.auto_yes != 0) return true;
  dialog_state.last_answer = SCRENIX::message_box(title, text, buttons_yes_no + second_button_default);
  return dialog_state.last_answer == SCRENIX::answer_yes;
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

}  // namespace m_ScrenixQt
