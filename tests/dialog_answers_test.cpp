// The dialog layer with a window library that answers: a message box and a file chooser of the test's own
// stand in the place of the built-in ones.

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SCRENIX/SCRENIX.h"
#include "m_ScrenixQt/m_ScrenixQt.h"
#include "runtime/fixed_text.h"

namespace {

struct ShownBox {
  std::string title;
  std::string text;
  std::optional<std::int32_t> buttons;
};
struct ShownChooser {
  std::string title;
  std::vector<std::string> descriptions;
  std::string name;  // as it stood before the choice
};

std::int32_t next_answer = SCRENIX::answer_yes;
std::vector<ShownBox> shown_boxes;
bool next_choice = true;
std::vector<ShownChooser> shown_choosers;

}  // namespace

namespace SCRENIX {

std::int32_t message_box(std::string_view title, std::string_view text,
                         std::optional<std::int32_t> button_code) {
  shown_boxes.push_back({std::string(title), std::string(text), button_code});
  return next_answer;
}

bool get_open_file_name(std::string_view title, std::span<const FileFilter> filters,
                        std::span<char> chosen_name) {
  shown_choosers.push_back({std::string(title), {}, std::string(chosen_name.begin(), chosen_name.end())});
  for (const FileFilter& filter : filters) {
    shown_choosers.back().descriptions.emplace_back(filter.description);
  }
  runtime::assign_padded(chosen_name.data(), chosen_name.size(), "name");
  return next_choice;
}

}  // namespace SCRENIX

namespace m_ScrenixQt {
namespace {

class Answers : public testing::Test {
 protected:
  Answers() {
    reset();
    next_answer = SCRENIX::answer_yes;
    shown_boxes.clear();
    next_choice = true;
    shown_choosers.clear();
  }
};

TEST_F(Answers, YesIsJaAtEveryLength) {
  for (const std::string_view expected : {"", "J", "Ja", "Ja ", "Ja        "}) {
    std::string answer(expected.size(), '#');
    ShowMessage("Frage?", "Weiter?", answer);
    EXPECT_EQ(answer, expected);
  }
  EXPECT_EQ(shown_boxes.size(), 5U);
  EXPECT_EQ(shown_boxes.front().buttons, 260);
  EXPECT_EQ(dialog_state.last_answer, 6);
}

TEST_F(Answers, EveryCodeButYesIsNo) {
  for (const std::int32_t code : {-6, 0, 1, 2, 5, 7}) {
    next_answer = code;
    std::string answer = "##";
    ShowMessage("Frage?", "Weiter?", answer);
    EXPECT_EQ(answer, "No");
    EXPECT_EQ(dialog_state.last_answer, code);
  }
}

TEST_F(Answers, NoticeHasNoButtonCode) {
  next_answer = 1;
  ShowMessage("KV_Akum", "x");
  EXPECT_EQ(shown_boxes.back().buttons, std::nullopt);
  EXPECT_EQ(dialog_state.last_message_result, 1);
  EXPECT_EQ(dialog_state.last_answer, 0);
}

TEST_F(Answers, ConfirmedCancelClearsKeepRunning) {
  for (const std::string_view language : {"DEUTSCH", "ENGLISH"}) {
    reset();
    dialog_state.language = language;
    EXPECT_EQ(AskCancel(), 0);
    EXPECT_EQ(dialog_state.keep_running, 0);
  }
  ASSERT_EQ(shown_boxes.size(), 2U);
  EXPECT_EQ(shown_boxes[0].title.size(), 8U);
  EXPECT_EQ(shown_boxes[0].text.size(), 50U);
  EXPECT_EQ(shown_boxes[0].buttons, 4);
  EXPECT_EQ(shown_boxes[1].title.size(), 7U);
  EXPECT_EQ(shown_boxes[1].text.size(), 33U);
}

TEST_F(Answers, RefusedCancelKeepsRunning) {
  dialog_state.language = "DEUTSCH";
  next_answer = 2;
  EXPECT_EQ(AskCancel(), 1);
  EXPECT_EQ(dialog_state.keep_running, 1);
}

TEST_F(Answers, NoLanguageAsksNothing) {
  EXPECT_EQ(AskCancel(), 1);
  EXPECT_TRUE(shown_boxes.empty());
  EXPECT_EQ(dialog_state.keep_running, 1);
}

TEST_F(Answers, ViewingTheProtocolOpensTheFileChooser) {
  constexpr SCRENIX::FileFilter filters[] = {{"Protokolle", "*.pkl"}};
  runtime::FixedText<protocol_name_width> name("v.pkl");
  bool chosen = false;
  EXPECT_EQ(AskViewProtocol("Protokoll", filters, name.bytes, chosen), 6);
  EXPECT_EQ(dialog_state.last_answer, 6);
  ASSERT_EQ(shown_boxes.size(), 1U);
  EXPECT_EQ(shown_boxes[0].title.size(), 25U);
  EXPECT_EQ(shown_boxes[0].text.size(), 38U);
  ASSERT_EQ(shown_choosers.size(), 1U);
  EXPECT_EQ(shown_choosers[0].title, "Protokoll");
  EXPECT_EQ(shown_choosers[0].descriptions, std::vector<std::string>{"Protokolle"});
  EXPECT_EQ(shown_choosers[0].name, "v.pkl" + std::string(495, ' '));
  EXPECT_EQ(name, "name");
  EXPECT_TRUE(chosen);
}

TEST_F(Answers, ViewingTheProtocolTellsThatNoneWasChosen) {
  next_choice = false;
  runtime::FixedText<protocol_name_width> name;
  bool chosen = true;
  EXPECT_EQ(AskViewProtocol("Protokoll", {}, name.bytes, chosen), 6);
  EXPECT_FALSE(chosen);
}

TEST_F(Answers, NotViewingTheProtocolOpensNothing) {
  next_answer = 2;
  runtime::FixedText<protocol_name_width> name;
  bool chosen = true;
  EXPECT_EQ(AskViewProtocol("Protokoll", {}, name.bytes, chosen), 2);
  EXPECT_TRUE(chosen);
  EXPECT_EQ(dialog_state.last_answer, 2);
  EXPECT_TRUE(shown_choosers.empty());
}

}  // namespace
}  // namespace m_ScrenixQt
