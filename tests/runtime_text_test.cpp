#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "runtime/cp1252.h"
#include "runtime/fixed_text.h"

namespace {

using namespace runtime::literals;
using namespace std::string_view_literals;
using runtime::FixedText;

TEST(Trimmed, LosesTrailingBlanksOnly) {
  EXPECT_EQ(runtime::trimmed(" a b  "), " a b");
  EXPECT_EQ(runtime::trimmed("    "), "");
  EXPECT_EQ(runtime::trimmed(""), "");
}

TEST(Trimmed, TabsAndNulsAreCharacters) {
  EXPECT_EQ(runtime::trimmed("a\t "), "a\t");
  EXPECT_EQ(runtime::trimmed("a\0 "sv), "a\0"sv);
  EXPECT_EQ(runtime::trimmed_length("a\xA0 "), 2U);
  EXPECT_FALSE(runtime::is_blank(" \t"));
  EXPECT_TRUE(runtime::is_blank("  "));
  EXPECT_TRUE(runtime::is_blank(""));
}

TEST(EqualPadded, PadsTheShorterSide) {
  EXPECT_TRUE(runtime::equal_padded("A00", "A00    "));
  EXPECT_TRUE(runtime::equal_padded("", "   "));
  EXPECT_FALSE(runtime::equal_padded("A00", " A00"));
  EXPECT_FALSE(runtime::equal_padded("A00", "A0"));
  EXPECT_FALSE(runtime::equal_padded("A00", "A00\0"sv));
}

TEST(FixedText, IsBlankAtTheBeginning) {
  const FixedText<5> text;
  EXPECT_EQ(text.view(), "     ");
  EXPECT_TRUE(text.blank());
  EXPECT_EQ(text.trimmed(), "");
}

TEST(FixedText, CutsAndPads) {
  FixedText<5> text("N");
  EXPECT_EQ(text.view(), "N    ");
  text = "N1234567";
  EXPECT_EQ(text.view(), "N1234");
  EXPECT_EQ(text.first(), 'N');
  text = "";
  EXPECT_EQ(text.view(), "     ");
}

TEST(FixedText, KeepsEveryByte) {
  const FixedText<6> text("\0\t\xFC\x7F"sv);
  EXPECT_EQ(text.view(), "\0\t\xFC\x7F  "sv);
  EXPECT_EQ(text.trimmed(), "\0\t\xFC\x7F"sv);
}

TEST(FixedText, ComparesPaddedAndByBytes) {
  EXPECT_EQ(FixedText<5>("T1"), FixedText<5>("T1   "));
  EXPECT_EQ(FixedText<5>("T1"), "T1"sv);
  EXPECT_EQ(FixedText<5>("T1"), "T1        "sv);
  EXPECT_NE(FixedText<5>("T1"), FixedText<5>("t1"));
  EXPECT_NE(FixedText<5>("T1"), "T1\t"sv);
  EXPECT_NE(FixedText<5>("T1\0"sv), FixedText<5>("T1"));
}

// Short texts are compared as one number, long ones byte by byte: both must see the last character.
template <std::size_t N>
void expect_every_character_counts() {
  const std::string name(N, 'x');
  for (std::size_t i = 0; i < N; ++i) {
    std::string other = name;
    other[i] = 'y';
    EXPECT_NE(FixedText<N>(name), FixedText<N>(other)) << N << " characters, place " << i;
    std::string blank(N, ' ');
    EXPECT_TRUE(FixedText<N>(blank).blank());
    blank[i] = '.';
    EXPECT_FALSE(FixedText<N>(blank).blank()) << N << " characters, place " << i;
  }
}

TEST(FixedText, EveryCharacterCounts) {
  expect_every_character_counts<1>();
  expect_every_character_counts<5>();
  expect_every_character_counts<7>();
  expect_every_character_counts<8>();
  expect_every_character_counts<9>();
  expect_every_character_counts<200>();
}

TEST(Columns, AreBlankPastTheEndOfTheRecord) {
  const std::string_view record = "K  N0001   ab";
  EXPECT_EQ((runtime::columns<4, 8>(record).view()), "N0001");
  EXPECT_EQ((runtime::columns<1, 1>(record).view()), "K");
  EXPECT_EQ((runtime::columns<12, 16>(record).view()), "ab   ");
  EXPECT_EQ((runtime::columns<13, 13>(record).view()), "b");
  EXPECT_EQ((runtime::columns<14, 18>(record).view()), "     ");
  EXPECT_EQ((runtime::columns<200, 201>(record).view()), "  ");
  EXPECT_EQ((runtime::columns<1, 3>("").view()), "   ");
}

TEST(WindowsBytes, AreSingleBytesOfTheGermanLetters) {
  EXPECT_EQ("äöüÄÖÜß"_w1252, "\xE4\xF6\xFC\xC4\xD6\xDC\xDF");
  EXPECT_EQ("größer als 5 µg/m³ § °"_w1252,
            "gr\xF6\xDF"
            "er als 5 \xB5g/m\xB3 \xA7 \xB0");
  EXPECT_EQ("plain 'ASCII'"_w1252, "plain 'ASCII'");
  EXPECT_EQ(""_w1252, "");
}

TEST(WindowsBytes, HoldTheUpperControlsOfTheCodePage) {
  EXPECT_EQ("€‚ƒ„…†‡ˆ‰Š‹ŒŽ"_w1252, "\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E");
  EXPECT_EQ("‘’“”•–—˜™š›œžŸ"_w1252, "\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F");
}

TEST(WindowsBytes, ArePlainForEveryLatinLetter) {
  for (char32_t code_point = 0; code_point < 0x80; ++code_point) {
    EXPECT_EQ(runtime::cp1252_byte(code_point), static_cast<int>(code_point));
  }
  for (char32_t code_point = 0xA0; code_point <= 0xFF; ++code_point) {
    EXPECT_EQ(runtime::cp1252_byte(code_point), static_cast<int>(code_point));
  }
  // The controls between, the two quarters of the table that stay empty, and what lies outside.
  for (const std::uint32_t missing :
       {0x80U, 0x81U, 0x8DU, 0x8FU, 0x90U, 0x9DU, 0x9FU, 0x100U, 0x391U, 0x20ADU, 0xFFFDU}) {
    EXPECT_EQ(runtime::cp1252_byte(static_cast<char32_t>(missing)), -1) << missing;
  }
}

TEST(WindowsBytes, AreShownAsUtf8) {
  EXPECT_EQ(runtime::to_utf8("\xE4\xF6\xFC\xC4\xD6\xDC\xDF, plain"), "äöüÄÖÜß, plain");
  // Both ends of the bytes that lie where the code points do, and bytes of the table between.
  EXPECT_EQ(runtime::to_utf8("\x7F\xA0\xBF\xC0\xFF"), "\x7F\xC2\xA0\xC2\xBF\xC3\x80\xC3\xBF");
  EXPECT_EQ(runtime::to_utf8("\x80\x83\x8A\x9F"), "€ƒŠŸ");
  EXPECT_EQ(runtime::to_utf8(std::string_view("a\0b", 3)), std::string_view("a\0b", 3));
  EXPECT_EQ(runtime::to_utf8(""), "");
}

TEST(WindowsBytes, AreTheReplacementCharacterWhereTheCodePageHasNone) {
  for (const char* undefined : {"\x81", "\x8D", "\x8F", "\x90", "\x9D"}) {
    EXPECT_EQ(runtime::to_utf8(undefined), "\xEF\xBF\xBD");
  }
}

TEST(WindowsBytes, ComeBackFromUtf8) {
  for (int byte = 0; byte < 256; ++byte) {
    const char32_t code_point = runtime::cp1252_code_point(static_cast<unsigned char>(byte));
    if (code_point == 0xFFFD) continue;
    EXPECT_EQ(runtime::cp1252_byte(code_point), byte);
    const std::string utf8 = runtime::to_utf8(std::string(1, static_cast<char>(byte)));
    EXPECT_EQ(runtime::decode_utf8(utf8).code_point, code_point);
    EXPECT_EQ(runtime::decode_utf8(utf8).size, utf8.size());
  }
}

TEST(WindowsBytes, NothingDecodesToNothing) {
  EXPECT_EQ(runtime::decode_utf8("").size, 0U);
}

bool converts(std::string_view utf8) {
  runtime::Cp1252Text<16> text;
  text.append(utf8);
  return text.valid;
}

TEST(WindowsBytes, RefuseWhatTheCodePageLacksAndMalformedText) {
  EXPECT_TRUE(converts("\xC3\xA4"));
  EXPECT_FALSE(converts("\xCE\xB1"));          // a Greek letter
  EXPECT_FALSE(converts("\xE4"));              // a byte of another code page
  EXPECT_FALSE(converts("\xC3"));              // cut off
  EXPECT_FALSE(converts("\xE2\x82"));          // cut off
  EXPECT_FALSE(converts("\xC3("));             // no continuation
  EXPECT_FALSE(converts("\x80"));              // a continuation alone
  EXPECT_FALSE(converts("\xC1\xA1"));          // longer than needed
  EXPECT_FALSE(converts("\xE0\x83\xA4"));      // longer than needed
  EXPECT_FALSE(converts("\xF0\x9F\x98\x80"));  // beyond three bytes
}

TEST(WindowsBytes, StopAtTheCapacity) {
  runtime::Cp1252Text<3> text;
  text.append("äöü");
  EXPECT_TRUE(text.valid);
  EXPECT_EQ(text.view(), "\xE4\xF6\xFC");
  text.append("x");
  EXPECT_FALSE(text.valid);
}

}  // namespace
