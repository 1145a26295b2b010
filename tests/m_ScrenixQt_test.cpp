#include "m_ScrenixQt/m_ScrenixQt.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "runtime/fixed_text.h"
#include "tests/child.h"
#include "tests/notices.h"

namespace m_ScrenixQt {
namespace {

using notices::message_box;
using notices::sent_by;

class Dialogs : public testing::Test {
 protected:
  Dialogs() { reset(); }

  static std::string item_text(const std::string& item, const std::string& text) {
    return notices::record("dialogitem_" + item + "_settext", text);
  }

  // What a question leaves in an answer of the given length, with two guards behind it.
  static std::string answer_of_length(std::size_t length) {
    std::string memory(length + 2, '#');
    sent_by([&] { ShowMessage("Frage?", "Weiter?", std::span(memory.data(), length)); });
    return memory;
  }
};

TEST_F(Dialogs, StateAtTheStart) {
  EXPECT_EQ(dialog_state.last_answer, 0);
  EXPECT_EQ(dialog_state.last_message_result, 0);
  EXPECT_EQ(dialog_state.auto_yes, 0);
  EXPECT_EQ(dialog_state.language.view(), "       ");
  EXPECT_EQ(dialog_state.keep_running, 1);
}

TEST_F(Dialogs, NoticeGoesOutWithoutACode) {
  EXPECT_EQ(sent_by([] { ShowMessage("KV_Akum", "Ergebnis: V.Akum"); }),
            message_box("KV_Akum", "Ergebnis: V.Akum"));
  EXPECT_EQ(dialog_state.last_message_result, 7);
}

TEST_F(Dialogs, NoticeLeavesTheLastAnswerAndTheAnswerText) {
  dialog_state.last_answer = 6;
  std::string answer = "alt";
  sent_by([&] { ShowMessage("KV_Akum: Fehler", "x", answer); });
  EXPECT_EQ(dialog_state.last_answer, 6);
  EXPECT_EQ(answer, "alt");
}

TEST_F(Dialogs, BlankTitleAndTextAreEmptyValues) {
  EXPECT_EQ(sent_by([] { ShowMessage("   ", "  "); }), message_box("", ""));
  EXPECT_EQ(sent_by([] { ShowMessage("", ""); }), message_box("", ""));
}

TEST_F(Dialogs, QuestionPreselectsNo) {
  EXPECT_EQ(sent_by([] { ShowMessage("Frage?", "Weiter?  "); }), message_box("Frage?", "Weiter?", "260"));
  EXPECT_EQ(dialog_state.last_answer, 7);
  EXPECT_EQ(dialog_state.last_message_result, 0);
}

TEST_F(Dialogs, QuestionAnswersNoAtEveryLength) {
  EXPECT_EQ(answer_of_length(0), "##");
  EXPECT_EQ(answer_of_length(1), "N##");
  EXPECT_EQ(answer_of_length(2), "No##");
  EXPECT_EQ(answer_of_length(3), "No ##");
  EXPECT_EQ(answer_of_length(10), "No        ##");
}

TEST_F(Dialogs, QuestionWithBlanksBehindItsTitleIsAQuestion) {
  EXPECT_EQ(sent_by([] { ShowMessage("Frage?     ", "Weiter?"); }), message_box("Frage?", "Weiter?", "260"));
}

TEST_F(Dialogs, OtherSpellingsAreNotices) {
  for (const std::string title : {"frage?", "FRAGE?", "Frage", " Frage?", "Frage??", "abbruch!!!",
                                  "Abbruch!!", "Abbruch!!!!", "Frage?\t"}) {
    SCOPED_TRACE(title);
    std::string answer = "alt";
    EXPECT_EQ(sent_by([&] { ShowMessage(title, "x", answer); }), message_box(title, "x"));
    EXPECT_EQ(answer, "alt");
  }
}

TEST_F(Dialogs, AutoYesAnswersWithoutAsking) {
  dialog_state.last_answer = 3;
  for (const std::int32_t flag : {1, 2, -1}) {
    dialog_state.auto_yes = flag;
    EXPECT_EQ(sent_by([] { ShowMessage("Frage?", "Weiter?"); }), "") << flag;
    EXPECT_EQ(dialog_state.last_answer, 3);
  }
  EXPECT_EQ(answer_of_length(0), "##");
  EXPECT_EQ(answer_of_length(1), "J##");
  EXPECT_EQ(answer_of_length(2), "Ja##");
  EXPECT_EQ(answer_of_length(10), "Ja        ##");
}

TEST_F(Dialogs, AutoYesShowsNoticesAllTheSame) {
  dialog_state.auto_yes = 1;
  EXPECT_EQ(sent_by([] { ShowMessage("KV_Akum", "x"); }), message_box("KV_Akum", "x"));
}

TEST_F(Dialogs, FatalMessageEndsTheProgramUnderTheFixedTitle) {
  for (const std::string_view title : {"Abbruch!!!", "Abbruch!!!   "}) {
    const child::Outcome outcome = child::run([&] { ShowMessage(title, "Speicher fehlt  "); });
    EXPECT_EQ(outcome.out,
              message_box("Schwerer Fehler: Nach <OK> erfolgt Programmabbruch!", "Speicher fehlt"));
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.exit_status, 0);
  }
}

TEST_F(Dialogs, FatalMessageKeepsItsResult) {
  const child::Outcome outcome = child::run([] {
    std::atexit(
        [] { std::fprintf(stderr, "%d %d", dialog_state.last_answer, dialog_state.last_message_result); });
    ShowMessage("Abbruch!!!", "x");
  });
  EXPECT_EQ(outcome.err, "7 0");
}

TEST_F(Dialogs, MessageAndStopEndsTheProgram) {
  const child::Outcome outcome = child::run([] { ShowMessageAndStop("KV_Akum: Fehler   ", "Ende.   "); });
  EXPECT_EQ(outcome.out, message_box("KV_Akum: Fehler", "Ende."));
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit_status, 0);
}

TEST_F(Dialogs, MessageAndStopEndsTheProgramAfterAQuestionToo) {
  const child::Outcome outcome = child::run([] { ShowMessageAndStop("Frage?  ", "Weiter?"); });
  EXPECT_EQ(outcome.out, message_box("Frage?", "Weiter?", "260"));
  EXPECT_EQ(outcome.exit_status, 0);
}

TEST_F(Dialogs, CancelIsNotAskedWithoutALanguage) {
  for (const std::string_view language :
       {"", "deutsch", "DEUTSC", "DEUTXCH", "XEUTSCH", "ENGLISC", "FRENCH"}) {
    SCOPED_TRACE(language);
    dialog_state.language = language;
    EXPECT_EQ(sent_by([] { EXPECT_EQ(AskCancel(), 1); }), "");
    EXPECT_EQ(dialog_state.keep_running, 1);
  }
}

TEST_F(Dialogs, CancelIsAskedInTheLanguage) {
  dialog_state.language = "DEUTSCH";
  EXPECT_EQ(sent_by([] { EXPECT_EQ(AskCancel(), 1); }),
            message_box("Abbruch?", "Wollen Sie den Programmablauf wirklich abbrechen ?", "4"));
  dialog_state.language = "ENGLISH";
  EXPECT_EQ(sent_by([] { EXPECT_EQ(AskCancel(), 1); }),
            message_box("Cancel?", "Are You shure to cancel program ?", "4"));
  EXPECT_EQ(dialog_state.keep_running, 1);
  EXPECT_EQ(dialog_state.last_answer, 0);
}

TEST_F(Dialogs, ProtocolIsNotViewedAfterANo) {
  runtime::FixedText<protocol_name_width> name("v.pkl");
  bool chosen = true;
  EXPECT_EQ(sent_by([&] { EXPECT_EQ(AskViewProtocol("Protokoll", {}, name.bytes, chosen), 7); }),
            message_box("Protokolldatei anschauen?", "Wollen Sie Fehler/Warnungen anschauen?", "4"));
  EXPECT_EQ(dialog_state.last_answer, 7);
  EXPECT_EQ(name, "v.pkl");
  EXPECT_TRUE(chosen);
}

TEST_F(Dialogs, NewGivesAStatusFieldItsText) {
  EXPECT_EQ(status_text(2, 5), "");
  EXPECT_EQ(status_window_handle(2), 0);
  EXPECT_EQ(sent_by([] { status_window(2, 5, "NEW", "liest V.sys  "); }), item_text("25", "liest V.sys"));
  EXPECT_EQ(status_text(2, 5), "liest V.sys" + std::string(10000 - 11, ' '));
  EXPECT_EQ(status_text(2, 4), std::string(10000, ' '));
  EXPECT_EQ(status_text(1, 5), "");
  EXPECT_EQ(status_window_handle(2), 1);
  sent_by([] { status_window(2, 5, "NEW  ", "x"); });
  EXPECT_EQ(runtime::trimmed(status_text(2, 5)), "x");
}

TEST_F(Dialogs, StatusFieldIsCutAtTenThousandCharacters) {
  const std::string kept(10000, 'a');
  EXPECT_EQ(sent_by([&] { status_window(1, 9, "NEW", kept + "b"); }), item_text("19", kept));
  EXPECT_EQ(status_text(1, 9), kept);
  sent_by([] { status_window(1, 9, "APPEND", "c"); });
  EXPECT_EQ(status_text(1, 9), kept);
}

TEST_F(Dialogs, AppendAddsALine) {
  EXPECT_EQ(sent_by([] { status_window(1, 4, "APPEND", "a"); }), item_text("14", "a"));
  EXPECT_EQ(sent_by([] { status_window(1, 4, "APPEND", "b"); }), item_text("14", "a\r\nb"));
}

TEST_F(Dialogs, RefreshSendsTheTextAgain) {
  sent_by([] { status_window(1, 4, "NEW", "a"); });
  EXPECT_EQ(sent_by([] { status_window(1, 4, "REFRESH"); }), item_text("14", "a"));
  EXPECT_EQ(sent_by([] { status_window(99, 9, "REFRESH"); }), item_text("999", ""));
}

TEST_F(Dialogs, DatesAndTimeHaveTheirFields) {
  EXPECT_EQ(sent_by([] { status_window(1, 9, "DATUM1", "01.11.2003"); }), item_text("11", "01.11.2003"));
  EXPECT_EQ(sent_by([] { status_window(1, 0, "DATUM2", "31.10.2004"); }), item_text("12", "31.10.2004"));
  EXPECT_EQ(sent_by([] { status_window(1, 0, "UHR", "12:00"); }), item_text("13", "12:00"));
  EXPECT_EQ(runtime::trimmed(status_text(1, 3)), "12:00");
}

TEST_F(Dialogs, InitShowsABlankWindowWithACancelButton) {
  sent_by([] { status_window(1, 9, "NEW", "alt"); });
  EXPECT_EQ(sent_by([] { status_window(1, 0, "INIT", "KV_Akum "); }),
            item_text("10", "Abbruch") + notices::record("dialogbox_1_setmode", "modeless") +
                notices::record("dialogbox_1_settitle", "KV_Akum"));
  EXPECT_EQ(status_text(1, 9), std::string(10000, ' '));
  EXPECT_EQ(status_window_handle(1), 1);
}

TEST_F(Dialogs, DestroyForgetsTheWindow) {
  sent_by([] {
    status_window(1, 9, "NEW", "alt");
    status_window(2, 9, "NEW", "bleibt");
  });
  EXPECT_EQ(sent_by([] { status_window(1, 0, "DESTROY"); }), "");
  EXPECT_EQ(status_text(1, 9), "");
  EXPECT_EQ(status_window_handle(1), 0);
  EXPECT_EQ(runtime::trimmed(status_text(2, 9)), "bleibt");
}

TEST_F(Dialogs, StatusWindowOutsideItsRangesChangesNothing) {
  for (const std::int32_t window : {INT32_MIN, -1, 0, 100, INT32_MAX}) {
    for (const std::string_view action : {"INIT", "NEW", "UHR", "DESTROY"}) {
      EXPECT_EQ(sent_by([&] { status_window(window, 1, action, "x"); }), "");
    }
    EXPECT_EQ(status_text(window, 1), "");
  }
  for (const std::int32_t field : {INT32_MIN, -1, 0, 10, INT32_MAX}) {
    for (const std::string_view action : {"NEW", "APPEND", "REFRESH"}) {
      EXPECT_EQ(sent_by([&] { status_window(1, field, action, "x"); }), "");
    }
  }
  for (const std::string_view action : {"", "new", "NEU", "Abbruch"}) {
    EXPECT_EQ(sent_by([&] { status_window(1, 1, action, "x"); }), "");
  }
  EXPECT_EQ(status_window_handle(1), 0);
  sent_by([] { status_window(1, 1, "NEW", "x"); });
  EXPECT_EQ(status_text(1, 0), "");
  EXPECT_EQ(status_text(1, 10), "");
}

}  // namespace
}  // namespace m_ScrenixQt
