#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "SCRENIX/SCRENIX.h"
#include "runtime/fixed_text.h"

/// The single place through which the computing code talks to the user.
namespace m_ScrenixQt {

/// Titles of the notices that the tools show.
inline constexpr std::string_view error_title = "KV_Akum: Fehler";
inline constexpr std::string_view program_title = "KV_Akum";

struct DialogState {
  std::int32_t last_answer = 0;          ///< code of the last question or fatal message
  std::int32_t last_message_result = 0;  ///< code of the last plain notice
  std::int32_t auto_yes = 0;             ///< not 0: questions are answered "Ja" without being shown
  runtime::FixedText<7> language;        ///< "DEUTSCH" or "ENGLISH"; blank without a main window
  std::int32_t keep_running = 1;         ///< 0 once the user has confirmed cancelling
};
extern DialogState dialog_state;

/// Shows a dialog whose kind the title decides (blank-padded, case matters):
/// "Frage?" is a question, whose answer "Ja" or "No" goes into `answer`, cut or padded with blanks to its
/// length (this build's message box always says no); "Abbruch!!!" shows the text as a fatal message and ends
/// the program quietly with exit status 0; any other title is a notice, which leaves `answer` alone.
void ShowMessage(std::string_view title, std::string_view text, std::span<char> answer = {});

/// Shows the dialog, without an answer, and ends the program quietly with exit status 0.
[[noreturn]] void ShowMessageAndStop(std::string_view title, std::string_view text);

/// Asks whether the run shall be cancelled, in the language of the main window. 0 when the user confirms,
/// which also clears `keep_running`; otherwise 1. In no language (blank or another word) nothing is asked.
std::int32_t AskCancel();

/// The length of a file name that the file chooser fills in.
inline constexpr std::size_t protocol_name_width = 500;

/// Asks whether the user wants to look at errors and warnings and returns the code of the answer. At a yes
/// the file chooser opens with the four arguments: its title, its filters, the name that it begins with and
/// fills in, and whether a file was chosen (a build without a chooser ends the program there). Otherwise name
/// and flag stay as they are.
std::int32_t AskViewProtocol(std::string_view title, std::span<const SCRENIX::FileFilter> filters,
                             std::span<char, protocol_name_width> chosen_name, bool& chosen);

inline constexpr std::int32_t most_status_windows = 99;
inline constexpr std::int32_t status_fields = 9;
inline constexpr std::size_t status_text_width = 10000;

/// Carries out an action on the status window `window` (1 .. 99); `field` is one of its texts (1 .. 9). A
/// text is kept, cut at 10000 characters, and sent to dialog item 10 * window + field. The action is a word
/// (blank-padded, case matters):
///   "INIT"     shows the window under the title `text`, its fields blank, with a button "Abbruch" (item
///              10 * window) that calls `AskCancel`;
///   "NEW"      gives the field a new text;
///   "APPEND"   adds a line to its text, after CR LF unless the field was blank;
///   "REFRESH"  sends its text again;
///   "DATUM1", "DATUM2", "UHR"  give the two date fields and the time field (fields 1, 2 and 3, whatever
///              `field` says) a new text;
///   "DESTROY"  closes the window and forgets its texts.
/// "INIT" and "DESTROY" do not look at `field`. A window need not be shown to keep texts. Another word, or a
/// window or field that does not exist, changes nothing.
void status_window(std::int32_t window, std::int32_t field, std::string_view action,
                   std::string_view text = {});

/// All 10000 characters of a field; none while nothing is kept for the window. The view stays valid until the
/// window's "DESTROY".
std::string_view status_text(std::int32_t window, std::int32_t field);

/// The library's handle of a status window; 0 while nothing is kept for it.
std::int32_t status_window_handle(std::int32_t window);

/// Puts the module back into its state at the start of the program. For tests.
void reset();

}  // namespace m_ScrenixQt
