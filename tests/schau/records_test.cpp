#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "KV_Schau/run/records.h"

namespace {

using schau::run::is_error;
using schau::run::Notice;
using schau::run::NoticeReader;
using testing::ElementsAre;
using testing::IsEmpty;

// A notice in one word for each of its parts.
using Told = std::tuple<Notice::Kind, std::string, std::string, bool>;

std::vector<Told> notices_of(const std::vector<std::string_view>& pieces) {
  std::vector<Told> notices;
  NoticeReader reader([&](const Notice& notice) {
    notices.emplace_back(notice.kind, notice.title, notice.text, notice.complete);
  });
  for (const std::string_view piece : pieces) reader.feed(piece);
  reader.finish();
  return notices;
}

constexpr std::string_view two_boxes =
    "\x01messagebox_button_0_settitle\x02KV_Akum: Fehler\x03"
    "\x01messagebox_button_0\x02"
    "Die Datei a.sys liegt nicht vor!\r\nAbbruch!\x03"
    "\x01messagebox_button_260_settitle\x02\x03"
    "\x01messagebox_button_260\x02Weiter?\x03";

const Told first_box{Notice::Kind::message, "KV_Akum: Fehler", "Die Datei a.sys liegt nicht vor!\r\nAbbruch!",
                     true};
const Told second_box{Notice::Kind::message, "", "Weiter?", true};

TEST(Records, BecomeNoticesOfTitleAndText) {
  EXPECT_THAT(notices_of({two_boxes}), ElementsAre(first_box, second_box));
}

TEST(Records, MayBeCutByThePipeAtEveryByte) {
  for (std::size_t cut = 0; cut <= two_boxes.size(); ++cut) {
    EXPECT_THAT(notices_of({two_boxes.substr(0, cut), two_boxes.substr(cut)}),
                ElementsAre(first_box, second_box))
        << cut;
  }
  std::vector<std::string_view> bytes;
  for (std::size_t i = 0; i < two_boxes.size(); ++i) bytes.push_back(two_boxes.substr(i, 1));
  EXPECT_THAT(notices_of(bytes), ElementsAre(first_box, second_box));
}

TEST(Records, AreHandedOnAtTheirLastByteAndNotLater) {
  std::vector<std::string> texts;
  NoticeReader reader([&](const Notice& notice) { texts.push_back(notice.text); });
  const std::size_t end_of_first = two_boxes.find("\x03\x01messagebox_button_260");
  reader.feed(two_boxes.substr(0, end_of_first));
  EXPECT_THAT(texts, IsEmpty());
  reader.feed(two_boxes.substr(end_of_first, 1));
  EXPECT_THAT(texts, ElementsAre(std::get<2>(first_box)));
}

// Whatever the output ends with: complete notices stay complete, and of the rest no byte is lost.
TEST(Records, MayBeBrokenOffAtEveryByte) {
  const std::string title_key = "messagebox_button_0_settitle";
  const std::string title = "KV_Akum";
  const std::string text_key = "messagebox_button_0";
  const std::string text = "Ergebnis: a.Akum";
  const std::string output =
      "\x01" + title_key + "\x02" + title + "\x03\x01" + text_key + "\x02" + text + "\x03";

  const auto broken_off = [&](std::size_t end) {
    return notices_of({std::string_view(output).substr(0, end)});
  };
  std::size_t end = 0;
  EXPECT_THAT(broken_off(end++), IsEmpty());
  EXPECT_THAT(broken_off(end++), IsEmpty());
  for (std::size_t bytes = 1; bytes <= title_key.size(); ++bytes) {
    EXPECT_THAT(broken_off(end++),
                ElementsAre(Told{Notice::Kind::unframed, "", title_key.substr(0, bytes), true}));
  }
  for (std::size_t bytes = 0; bytes <= title.size(); ++bytes) {
    EXPECT_THAT(broken_off(end++),
                ElementsAre(Told{Notice::Kind::message, title.substr(0, bytes), "", false}));
  }
  const Told title_alone{Notice::Kind::message, title, "", false};
  EXPECT_THAT(broken_off(end++), ElementsAre(title_alone));
  EXPECT_THAT(broken_off(end++), ElementsAre(title_alone));
  for (std::size_t bytes = 1; bytes <= text_key.size(); ++bytes) {
    EXPECT_THAT(broken_off(end++),
                ElementsAre(Told{Notice::Kind::unframed, "", text_key.substr(0, bytes), true}, title_alone));
  }
  for (std::size_t bytes = 0; bytes <= text.size(); ++bytes) {
    EXPECT_THAT(broken_off(end++),
                ElementsAre(Told{Notice::Kind::message, title, text.substr(0, bytes), false}));
  }
  EXPECT_THAT(broken_off(end), ElementsAre(Told{Notice::Kind::message, title, text, true}));
  EXPECT_EQ(end, output.size());
}

TEST(Records, BeginAnewWhereOneIsBrokenOffInside) {
  EXPECT_THAT(notices_of({"\x01messagebox_button_0\x02halb\x01messagebox_button_0\x02ganz\x03"}),
              ElementsAre(Told{Notice::Kind::message, "", "halb", false},
                          Told{Notice::Kind::message, "", "ganz", true}));
  EXPECT_THAT(notices_of({"\x01message\x01messagebox_button_0\x02ganz\x03"}),
              ElementsAre(Told{Notice::Kind::unframed, "", "message", true},
                          Told{Notice::Kind::message, "", "ganz", true}));
  // Half a title is not the title of the next text.
  EXPECT_THAT(notices_of({"\x01messagebox_button_0_settitle\x02KV_\x01messagebox_button_0\x02ganz\x03"}),
              ElementsAre(Told{Notice::Kind::message, "KV_", "", false},
                          Told{Notice::Kind::message, "", "ganz", true}));
}

TEST(Records, OfWindowsAndBytesOutsideAreKeptInTheirOrder) {
  EXPECT_THAT(notices_of({"davor\x01varpath\x02"
                          "C:\\M\x02"
                          "1\x03"
                          "danach\n\x02\x03"}),
              ElementsAre(Told{Notice::Kind::unframed, "", "davor", true},
                          Told{Notice::Kind::window, "varpath",
                               "C:\\M\x02"
                               "1",
                               true},
                          Told{Notice::Kind::unframed, "", "danach\n\x02\x03", true}));
}

TEST(Records, OfErrorsAreKnownByTheirTitle) {
  EXPECT_TRUE(is_error({.title = "KV_Akum: Fehler", .text = "x"}));
  EXPECT_TRUE(is_error({.title = "Schwerer Fehler: Nach <OK> erfolgt Programmabbruch!"}));
  EXPECT_FALSE(is_error({.title = "KV_Akum", .text = "Ergebnis: Fehler.Akum"}));
  EXPECT_FALSE(is_error({.kind = Notice::Kind::window, .title = "KV_Akum: Fehler"}));
}

}  // namespace
