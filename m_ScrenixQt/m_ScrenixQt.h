#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/// The single place through which the computing code talks to the user.
namespace m_ScrenixQt {

/// Titles of the notices that the tools show.
inline constexpr std::string_view error_title = "KV_Akum: Fehler";
inline constexpr std::string_view program_title = "KV_Akum";

struct DialogState {
  std::int32_t last_answer = 0;          ///< code of the last question or fatal message
  std::int32_t last_message_result = 0;  ///< code of the last plain notice
  std::int32_t auto_yes = 0;             ///< not 0: questions are answered "Ja" without being shown
};
extern DialogState dialog_state;

/// Shows a dialog whose kind the title decides (blank-padded, case matters):
/// "Frage?" is a question, whose answer "Ja" or "No" goes into `answer`, cut or padded with blanks to its
/// length (this build's message box always says no); "Abbruch!!!" shows the text as a fatal message and ends
/// the program quietly with exit status 0; any other title is a notice, which leaves `answer` alone.
void ShowMessage(std::string_view title, std::string_view text, std::span<char> answer = {});

/// Shows the dialog, without an answer, and ends the program quietly with exit status 0.
[[noreturn]] void ShowMessageAndStop(std::string_view title, std::string_view text);

}  // namespace m_ScrenixQt
