#include "m_strings/m_strings.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "runtime/cp1252.h"
#include "runtime/read.h"
#include "runtime/units.h"
#include "tests/test_files.h"
#include "tests/test_host.h"
#include "tests/unit_watch.h"

namespace m_strings {
namespace {

using namespace runtime::literals;
using testing::ElementsAre;
using testing::ExitedWithCode;

std::string upper(std::string_view text) {
  std::string changed(text);
  ToUpper(changed);
  return changed;
}

float parsed(std::string text) {
  return ParseReal(text);
}

std::string int_text(std::int32_t width, std::int32_t value, char fill, std::size_t length) {
  std::string text(length, '#');
  IntToText(width, value, fill, text);
  return text;
}
std::string int_text(std::int32_t width, std::int32_t value, char fill) {
  return int_text(width, value, fill, static_cast<std::size_t>(width));
}

std::string hours_text(float hours, std::string_view layout) {
  Text20 text("as it was");
  HoursToText(text, hours, layout);
  return std::string(text.trimmed());
}

std::string real_text(float value, std::string_view format, std::int32_t decimal_comma = 0) {
  Text20 text("as it was");
  RealToText(text, value, format, decimal_comma);
  return std::string(text.view());
}

std::string fixed_text(std::int32_t width, char alignment, float value, std::int32_t decimals) {
  std::string text(static_cast<std::size_t>(width), '#');
  RealToFixedText(width, alignment, value, decimals, text);
  return text;
}

constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();

// Characters.

TEST(ToUpper, ConvertsLettersAndUmlauts) {
  EXPECT_EQ(upper("abcdefghijklmnopqrstuvwxyz"), "ABCDEFGHIJKLMNOPQRSTUVWXYZ");
  EXPECT_EQ(upper("äöü"_w1252), "ÄÖÜ"_w1252);
}

TEST(ToUpper, LeavesEverythingElse) {
  EXPECT_EQ(upper("ß é 12 {|} @  "_w1252), "ß é 12 {|} @  "_w1252);
  EXPECT_EQ(upper(""), "");
}

TEST(ClassifyField, BlankFields) {
  EXPECT_EQ(ClassifyField(""), 'B');
  EXPECT_EQ(ClassifyField("     "), 'B');
}

TEST(ClassifyField, WholeNumbers) {
  EXPECT_EQ(ClassifyField("12"), 'I');
  EXPECT_EQ(ClassifyField("  +12 "), 'I');
  EXPECT_EQ(ClassifyField("1 2"), 'I');
}

TEST(ClassifyField, LoneSignIsAWholeNumber) {
  EXPECT_EQ(ClassifyField("  -  "), 'I');
  EXPECT_EQ(ClassifyField("+"), 'I');
}

TEST(ClassifyField, OneDecimalCharacterMakesAReal) {
  EXPECT_EQ(ClassifyField("+3."), 'R');
  EXPECT_EQ(ClassifyField("."), 'R');
  EXPECT_EQ(ClassifyField(" -1 . 5"), 'R');
}

TEST(ClassifyField, EverythingElseIsText) {
  EXPECT_EQ(ClassifyField("1.2.3"), 'C');
  EXPECT_EQ(ClassifyField("1E5"), 'C');
  EXPECT_EQ(ClassifyField("--1"), 'C');
  EXPECT_EQ(ClassifyField("5-"), 'C');
  EXPECT_EQ(ClassifyField("\t"), 'C');
}

TEST(ClassifyField, TakesAnotherDecimalCharacter) {
  EXPECT_EQ(ClassifyField("1,5", ','), 'R');
  EXPECT_EQ(ClassifyField("1,5"), 'C');
  EXPECT_EQ(ClassifyField("1.5", ','), 'C');
}

// Numbers in texts.

TEST(ParseReal, DecimalCommaNeedsTheFlag) {
  std::string text = "1,5";
  std::int32_t flag = 0;
  EXPECT_EQ(ParseReal(text, &flag), 1.5F);
  EXPECT_EQ(flag, 1);
  EXPECT_EQ(text, "1.5");
  EXPECT_EQ(parsed("1,5"), 1.0F);
}

TEST(ParseReal, FlagIsNotCleared) {
  std::string text = "1.5";
  std::int32_t flag = 1;
  EXPECT_EQ(ParseReal(text, &flag), 1.5F);
  EXPECT_EQ(flag, 1);
  flag = 0;
  EXPECT_EQ(ParseReal(text, &flag), 1.5F);
  EXPECT_EQ(flag, 0);
}

TEST(ParseReal, ExponentTurnsTheTextIntoUpperCase) {
  std::string text = "2.5e1";
  EXPECT_EQ(ParseReal(text), 25.0F);
  EXPECT_EQ(text, "2.5E1");
  EXPECT_EQ(parsed("25E-1"), 25.0F * (1.0F / 10.0F));
}

TEST(ParseReal, ExponentThatCannotBeReadIsZero) {
  EXPECT_EQ(parsed("2.5e1.5"), 2.5F);
  EXPECT_EQ(parsed("2.5Ex"), 2.5F);
}

TEST(ParseReal, ExponentIsReadFromFiveColumns) {
  EXPECT_EQ(parsed("2E     3"), 2.0F);
  EXPECT_EQ(parsed("2E    3"), 2.0F * 1000.0F);
  EXPECT_EQ(parsed("2E000010"), 2.0F * 10.0F);
}

TEST(ParseReal, TextWithoutADigitIsZero) {
  EXPECT_EQ(parsed(""), 0.0F);
  EXPECT_EQ(parsed("    "), 0.0F);
  EXPECT_EQ(parsed("keine"), 0.0F);
}

TEST(ParseReal, CharacterBeforeTheFirstDigitDecides) {
  EXPECT_EQ(parsed("x-5"), -5.0F);
  EXPECT_EQ(parsed("-.5"), 0.5F);
  EXPECT_EQ(parsed(".5"), 0.5F);
  EXPECT_EQ(parsed("- 5"), 5.0F);
  EXPECT_EQ(parsed("abc7"), 7.0F);
}

TEST(ParseReal, DigitRunEndsAtTheFirstOtherCharacter) {
  EXPECT_EQ(parsed("1 2"), 1.0F);
  EXPECT_EQ(parsed("1-2"), 1.0F);
  EXPECT_EQ(parsed("1.5.7"), 1.5F);
  EXPECT_EQ(parsed(".5.7"), 0.5F);
}

TEST(ParseReal, SumsInSinglePrecision) {
  EXPECT_EQ(parsed("0.12"), 1.0F * 0.1F + 2.0F * (1.0F / 100.0F));
  EXPECT_EQ(parsed("12345678"), 12345678.0F);
  // 33562550 is rounded to 33562552 before the last digit comes in.
  EXPECT_EQ(parsed("33562554"), 33562556.0F);
}

TEST(ParseReal, MultipliesFractionDigitsByPowersOfTen) {
  // A digit divided by the power would be another number here.
  EXPECT_EQ(parsed("0.005"), 5.0F * (1.0F / 1000.0F));
  EXPECT_NE(parsed("0.005"), 5.0F / 1000.0F);
  EXPECT_EQ(parsed("0.0005"), 5.0F * (1.0F / 10000.0F));
  EXPECT_NE(parsed("0.0005"), 5.0F / 10000.0F);
}

TEST(DecimalsAfterPoint, CountsUpToTheTrimmedLength) {
  EXPECT_EQ(DecimalsAfterPoint("12.345  "), 3);
  EXPECT_EQ(DecimalsAfterPoint("12."), 0);
  EXPECT_EQ(DecimalsAfterPoint("12"), 0);
  EXPECT_EQ(DecimalsAfterPoint("1.2.3"), 3);
  EXPECT_EQ(DecimalsAfterPoint(""), 0);
}

std::vector<double> tokens(std::string_view line) {
  std::array<double, 21> numbers{};
  const std::int32_t count = NumberTokens8(line, numbers, "steuer");
  return {numbers.begin(), numbers.begin() + count};
}

TEST(NumberTokens, PicksTheNumbersOutOfALine) {
  EXPECT_THAT(tokens(" 12  7.5,-3 Stunden=.25; "), ElementsAre(12.0, 7.5, -3.0, 0.25));
  EXPECT_THAT(tokens("1-2--3"), ElementsAre(1.0, -2.0, -3.0));
}

TEST(NumberTokens, TakesExponents) {
  EXPECT_THAT(tokens("2e3 5E-1"), ElementsAre(2000.0, static_cast<double>(5.0F * (1.0F / 10.0F))));
}

TEST(NumberTokens, WhatHoldsNoDigitIsNoNumber) {
  EXPECT_THAT(tokens("keine . - e .e"), ElementsAre());
  EXPECT_THAT(tokens(""), ElementsAre());
}

TEST(NumberTokens, SecondPointDoesNotPartNumbers) {
  EXPECT_THAT(tokens("1.5.99"), ElementsAre(1.5));
}

TEST(NumberTokens, NumbersWithoutAPlaceAreDropped) {
  std::array<float, 2> numbers{};
  EXPECT_EQ(NumberTokens4("1 2 3", numbers, "STEUER"), 2);
  EXPECT_THAT(numbers, ElementsAre(1.0F, 2.0F));
}

TEST(NumberTokens, PlacesWithoutANumberStay) {
  std::array<float, 3> numbers{7.0F, 8.0F, 9.0F};
  EXPECT_EQ(NumberTokens4("1", numbers, "steuer  "), 1);
  EXPECT_THAT(numbers, ElementsAre(1.0F, 8.0F, 9.0F));
}

TEST(NumberTokensDeathTest, OtherCallersStopTheProgram) {
  std::array<double, 1> eight{};
  std::array<float, 1> four{};
  EXPECT_EXIT(NumberTokens8("1", eight, "Steuer  "), ExitedWithCode(0),
              "^STOP m_strings z8strng: called_by not implemented for the caller: Steuer\n$");
  EXPECT_EXIT(NumberTokens4("1", four, "lesen"), ExitedWithCode(0),
              "^STOP m_strings z4strng: called_by not implemented for the caller: lesen\n$");
}

// The old code page.

constexpr std::string_view plain_lines = "first\nsecond\n";
constexpr std::string_view lines_of_the_old_code_page = "first\nGr\x94\xE1\nthird\n";

TEST(ContainsOemUmlauts, ReadsTheFileAndIsZeroFoundOrNot) {
  const test_files::WorkingFolder folder;
  for (const std::string_view lines : {plain_lines, lines_of_the_old_code_page}) {
    test_files::write_bytes("a.txt", lines);
    TestHost host;
    EXPECT_EQ(ContainsOemUmlauts("a.txt"), 0);
    EXPECT_GT(host.calls(HostCall::read), 0);
  }
}

TEST(ContainsOemUmlauts, ReadsAndRewindsAGivenUnit) {
  const test_files::WorkingFolder folder;
  for (const std::string_view lines : {plain_lines, lines_of_the_old_code_page}) {
    test_files::write_bytes("a.txt", lines);
    TestHost host;
    runtime::open(120, "a.txt", runtime::OpenStatus::old);
    EXPECT_EQ(ContainsOemUmlauts("a.txt", 120), 0);
    EXPECT_GT(host.calls(HostCall::read), 0);
    for (int pass = 0; pass < 2; ++pass) {
      std::string_view line;
      ASSERT_TRUE(runtime::LineReader(120, 80).next(line));
      EXPECT_EQ(line, "first");
      EXPECT_EQ(ContainsOemUmlauts("a.txt", 120), 0);
    }
    runtime::close(120);
  }
}

TEST(ContainsOemUmlauts, TakesAUnitFrom101) {
  const test_files::WorkingFolder folder;
  test_files::write_bytes("a.txt", plain_lines);
  const UnitWatch watch;
  ContainsOemUmlauts("a.txt");
  EXPECT_THAT(watch.units, ElementsAre(101));
}

TEST(ContainsOemUmlauts, ClosesItsOwnUnit) {
  const test_files::WorkingFolder folder;
  test_files::write_bytes("held.txt", "x\n");
  test_files::write_bytes("a.txt", "x\n");
  runtime::open(101, "held.txt", runtime::OpenStatus::old);
  ContainsOemUmlauts("a.txt");
  EXPECT_TRUE(runtime::is_connected(101));
  EXPECT_FALSE(runtime::is_connected(102));
  runtime::close(101);
}

// Paths.

testing::Matcher<PathParts> parts(std::int32_t separator, std::int32_t extension, std::int32_t length) {
  return testing::AllOf(testing::Field("last_separator", &PathParts::last_separator, separator),
                        testing::Field("extension", &PathParts::extension, extension),
                        testing::Field("length", &PathParts::length, length));
}

TEST(SplitPath, FindsTheThreePositions) {
  EXPECT_THAT(SplitPath("D:\\MODELL\\VAR1.SYS  "), parts(10, 15, 18));
  EXPECT_THAT(SplitPath("VAR1.SYS"), parts(0, 5, 8));
  EXPECT_THAT(SplitPath("D:\\A.B\\C"), parts(7, 9, 8));
  EXPECT_THAT(SplitPath("D:\\A\\"), parts(5, 6, 5));
  EXPECT_THAT(SplitPath("A.B.C"), parts(0, 4, 5));
  EXPECT_THAT(SplitPath(""), parts(0, 1, 0));
}

TEST(SplitPath, AppendsANewExtension) {
  std::string path;
  const SplitPathOptions options{
      .new_extension = "pkl ", .prefix = "x_ ", .suffix = "_neu", .new_path = &path};
  EXPECT_THAT(SplitPath("d:\\modell\\var1", options), parts(10, 21, 24));
  EXPECT_EQ(path, "D:\\MODELL\\x_VAR1_neu.pkl");
}

TEST(SplitPath, NewBaseNameIsCutAtFiftyCharacters) {
  std::string path;
  const SplitPathOptions options{.new_extension = "SYS", .new_path = &path};
  SplitPath(std::string(60, 'A'), options);
  EXPECT_EQ(path, std::string(50, 'A') + ".SYS");
}

TEST(SplitPath, KeepsAnExtensionThatIsThere) {
  std::string path;
  const SplitPathOptions options{.new_extension = "pkl", .new_path = &path};
  EXPECT_THAT(SplitPath("var1.sys", options), parts(0, 5, 8));
  EXPECT_EQ(path, "VAR1.SYS");
}

TEST(SplitPath, GivesThePathInUpperCaseWithoutANewExtension) {
  std::string path;
  const SplitPathOptions options{.new_path = &path};
  SplitPath("var1", options);
  EXPECT_EQ(path, "VAR1");
}

TEST(SplitPath, AsksWhetherTheFileExists) {
  const test_files::WorkingFolder folder;
  test_files::write_bytes("VAR1", "");
  test_files::write_bytes("VAR1.SYS", "");
  std::filesystem::create_directory("D");
  bool exists = false;
  SplitPath("var1", {.exists = &exists});
  EXPECT_TRUE(exists);
  SplitPath("var1", {.new_extension = "SYS", .exists = &exists});
  EXPECT_TRUE(exists);
  SplitPath("var1", {.new_extension = "TRS", .exists = &exists});
  EXPECT_FALSE(exists);
  exists = true;
  SplitPath("d\\", {.exists = &exists});
  EXPECT_FALSE(exists);
}

// Numbers to text.

TEST(IntToText, FillsOnTheLeft) {
  EXPECT_EQ(int_text(2, 99, ' '), "99");
  EXPECT_EQ(int_text(2, -9, ' '), "-9");
  EXPECT_EQ(int_text(5, 42, ' '), "   42");
  EXPECT_EQ(int_text(5, 42, '.'), "...42");
  EXPECT_EQ(int_text(3, 0, ' '), "  0");
  EXPECT_EQ(int_text(4, 7, '0'), "0007");
}

TEST(IntToText, SignStandsBeforeTheDigitsOrFirst) {
  EXPECT_EQ(int_text(5, -42, ' '), "  -42");
  EXPECT_EQ(int_text(5, -42, '.'), "..-42");
  EXPECT_EQ(int_text(4, -7, '0'), "-007");
}

TEST(IntToText, OverflowShowsTheSign) {
  EXPECT_EQ(int_text(2, 100, ' '), "**");
  EXPECT_EQ(int_text(2, -10, ' '), "++");
  EXPECT_EQ(int_text(1, -1, ' '), "+");
  EXPECT_EQ(int_text(9, largest, ' '), "*********");
  EXPECT_EQ(int_text(10, smallest, ' '), "++++++++++");
}

TEST(IntToText, FillNStaysLeft) {
  EXPECT_EQ(int_text(5, 42, 'N'), "42   ");
  EXPECT_EQ(int_text(5, -42, 'N'), "-42  ");
  EXPECT_EQ(int_text(2, 42, 'N'), "42");
}

TEST(IntToText, TouchesTheFieldOnly) {
  EXPECT_EQ(int_text(2, 7, '0', 4), "07##");
  EXPECT_EQ(int_text(2, 100, '0', 4), "**##");
  EXPECT_EQ(int_text(0, 7, ' ', 2), "##");
  EXPECT_EQ(int_text(-1, 7, ' ', 2), "##");
}

TEST(IntToText, ShortTextIsTheWidth) {
  EXPECT_EQ(int_text(8, 7, ' ', 3), "  7");
  EXPECT_EQ(int_text(8, 1234, ' ', 3), "***");
}

TEST(IntToText, DigitsAreExactInTheWidthsOfTheSuite) {
  for (std::int32_t value = 0; value < 10000; ++value) {
    const std::string digits = std::to_string(value);
    ASSERT_EQ(int_text(4, value, '0'), std::string(4 - digits.size(), '0') + digits);
  }
}

TEST(IntToText, SmallSummandLiftsNinesBehindADigit) {
  EXPECT_EQ(int_text(6, 19998, ' '), " 19998");
  EXPECT_EQ(int_text(6, 19999, ' '), " 20000");
  EXPECT_EQ(int_text(6, 99999, ' '), " 99999");
}

TEST(IntToText, DigitsComeFromTheSinglePrecisionValue) {
  EXPECT_EQ(int_text(9, 123456789, ' '), "123456792");
  EXPECT_EQ(int_text(11, smallest, ' '), "-2147483648");
}

TEST(IntToText, ValuesBesideAPowerOfTenFitOrShowTheOverflow) {
  for (std::int32_t width = 1; width <= 10; ++width) {
    const float power = std::pow(10.0F, static_cast<float>(width));
    const float below = std::nextafter(power, 0.0F);
    if (below >= 2147483648.0F) break;
    const auto value = static_cast<std::int32_t>(below);
    EXPECT_EQ(int_text(width, value, ' ').find('*'), std::string::npos) << value;
    EXPECT_EQ(int_text(width + 1, -value, ' ').find('-'), 0U) << value;
  }
}

TEST(HoursToText, WholeHours) {
  EXPECT_EQ(hours_text(2.4F, "hh"), "2");
  EXPECT_EQ(hours_text(2.5F, "hh"), "3");
  EXPECT_EQ(hours_text(-2.5F, "hh"), "-3");
  EXPECT_EQ(hours_text(123456.0F, "hh  "), "123456");
}

TEST(HoursToText, MinutesAreRounded) {
  EXPECT_EQ(hours_text(1.5F, "hhmm"), "1:30");
  EXPECT_EQ(hours_text(0.125F, "hhmm"), "0:08");
  EXPECT_EQ(hours_text(25.0F, "hhmm"), "25:00");
}

TEST(HoursToText, SecondsAreRoundedAndMinutesCut) {
  EXPECT_EQ(hours_text(1.5F, "hhmmss"), "1:30:00");
  EXPECT_EQ(hours_text(0.125F, "hhmmss"), "0:07:30");
  EXPECT_EQ(hours_text(2.0F + 1.0F / 1024.0F, "hhmmss"), "2:00:04");
}

TEST(HoursToText, NothingIsCarried) {
  EXPECT_EQ(hours_text(1.9999F, "hhmm"), "1:60");
  EXPECT_EQ(hours_text(0.99999F, "hhmmss"), "0:59:60");
}

TEST(HoursToText, NegativeMinutesKeepTheirSign) {
  EXPECT_EQ(hours_text(-1.125F, "hhmm"), "-1:-8");
  EXPECT_EQ(hours_text(-1.5F, "hhmm"), "-1:++");
}

TEST(HoursToText, AnotherWordLeavesTheText) {
  EXPECT_EQ(hours_text(1.5F, "HHMM"), "as it was");
  EXPECT_EQ(hours_text(1.5F, ""), "as it was");
}

TEST(HoursToText, DurationsWithoutAnEndStayInRange) {
  EXPECT_EQ(hours_text(std::numeric_limits<float>::infinity(), "hh"), "2147483647");
  EXPECT_EQ(hours_text(1e20F, "hhmm"), "2147483647:00");
}

TEST(FillText, FillsTheFirstCharacters) {
  std::string text = "abcdef";
  FillText(text, 3, '.');
  EXPECT_EQ(text, "...def");
  FillText(text, 4);
  EXPECT_EQ(text, "    ef");
}

TEST(FillText, LeavesTheTextWithoutALength) {
  std::string text = "abc";
  FillText(text, 0, '.');
  FillText(text, -2, '.');
  EXPECT_EQ(text, "abc");
  FillText(text, 9, '.');
  EXPECT_EQ(text, "...");
}

TEST(RealToText, WritesInTheFormat) {
  EXPECT_EQ(real_text(2.5F, "(f8.3)"), "   2.500            ");
  EXPECT_EQ(real_text(2.5F, "(2x,F5.1)"), "    2.5             ");
}

TEST(RealToText, AnIMakesAWholeNumber) {
  EXPECT_EQ(real_text(2.5F, "(i4)"), "   3                ");
  EXPECT_EQ(real_text(-2.5F, "(I4.3)"), "-003                ");
  EXPECT_EQ(real_text(1e20F, "(i12)"), "  2147483647        ");
}

TEST(RealToText, PointsBecomeCommas) {
  EXPECT_EQ(real_text(2.5F, "(f6.2)", 1), "  2,50              ");
  EXPECT_EQ(real_text(2.5F, "(f6.2)", 0), "  2.50              ");
  EXPECT_EQ(real_text(2.5F, "('Nr. ',f6.2)", -1), "Nr,   2,50          ");
}

TEST(RealToText, WhatCannotBeWrittenShowsAsAsterisks) {
  const std::string asterisks(20, '*');
  EXPECT_EQ(real_text(2.5F, "f6.2"), asterisks);
  EXPECT_EQ(real_text(2.5F, ""), asterisks);
  EXPECT_EQ(real_text(2.5F, "(f21.2)"), asterisks);
  EXPECT_EQ(real_text(1234.5F, "(f5.2)"), "*****               ");
}

TEST(IntToText20, LeftAligned) {
  EXPECT_EQ(IntToText20(42).view(), "42                  ");
  EXPECT_EQ(IntToText20(0).trimmed(), "0");
  EXPECT_EQ(IntToText20(smallest).trimmed(), "-2147483648");
}

TEST(LongToText20, LeftAligned) {
  EXPECT_EQ(LongToText20(-42).view(), "-42                 ");
  EXPECT_EQ(LongToText20(std::numeric_limits<std::int64_t>::min()).view(), "-9223372036854775808");
}

TEST(RealToFixedText, Aligns) {
  EXPECT_EQ(fixed_text(6, 'R', 0.254F, 2), "  0.25");
  EXPECT_EQ(fixed_text(6, 'L', 0.254F, 2), "0.25  ");
  EXPECT_EQ(fixed_text(6, 'r', 0.254F, 2), "0.25  ");
  EXPECT_EQ(fixed_text(8, 'R', -12.5F, 1), "   -12.5");
}

TEST(RealToFixedText, LeavesTheZeroOutWithoutRoom) {
  EXPECT_EQ(fixed_text(3, 'R', 0.0F, 2), ".00");
  EXPECT_EQ(fixed_text(4, 'R', 0.0F, 2), "0.00");
  EXPECT_EQ(fixed_text(3, 'R', 0.25F, 2), ".25");
}

TEST(RealToFixedText, NegativeValuesNeedRoomForSignAndZero) {
  EXPECT_EQ(fixed_text(4, 'R', -1.5F, 2), "****");
  EXPECT_EQ(fixed_text(5, 'R', -1.5F, 2), "-1.50");
  EXPECT_EQ(fixed_text(3, 'R', -0.25F, 2), "***");
  EXPECT_EQ(fixed_text(4, 'R', -0.25F, 2), "****");
  EXPECT_EQ(fixed_text(5, 'R', -0.25F, 2), "-0.25");
  EXPECT_EQ(fixed_text(5, 'R', -0.001F, 2), "-0.00");
}

TEST(RealToFixedText, NegativeZeroHasNoSign) {
  EXPECT_EQ(fixed_text(5, 'L', -0.0F, 2), "0.00 ");
  EXPECT_EQ(fixed_text(3, 'R', -0.0F, 2), ".00");
}

TEST(RealToFixedText, PointStandsLastWithoutDecimals) {
  EXPECT_EQ(fixed_text(3, 'L', 7.0F, 0), "7. ");
  EXPECT_EQ(fixed_text(3, 'L', 7.0F, -2), "7. ");
}

TEST(RealToFixedText, LeadingZerosOfTheDecimals) {
  EXPECT_EQ(fixed_text(8, 'L', 0.002F, 4), "0.0020  ");
  EXPECT_EQ(fixed_text(7, 'L', 12.03F, 2), "12.03  ");
}

TEST(RealToFixedText, TooWideShowsAsAsterisks) {
  EXPECT_EQ(fixed_text(3, 'R', 1234.0F, 0), "***");
  EXPECT_EQ(fixed_text(4, 'R', 1234.0F, 0), "****");
  EXPECT_EQ(fixed_text(5, 'R', 1234.0F, 0), "1234.");
  EXPECT_EQ(fixed_text(3, 'R', 0.5F, 3), "***");
  EXPECT_EQ(fixed_text(5, 'R', std::numeric_limits<float>::infinity(), 1), "*****");
  EXPECT_EQ(fixed_text(5, 'R', std::numeric_limits<float>::quiet_NaN(), 1), "*****");
}

TEST(RealToFixedText, RoundsHalvesAwayFromZero) {
  EXPECT_EQ(fixed_text(5, 'L', 0.125F, 2), "0.13 ");
  EXPECT_EQ(fixed_text(5, 'L', 2.5F, 0), "3.   ");
  EXPECT_EQ(fixed_text(5, 'L', -2.5F, 0), "-3.  ");
}

TEST(RealToFixedText, ScalesInSinglePrecision) {
  // 1.005 is 1.00499999523 in single precision; its product with 100 rounds to 100.5.
  EXPECT_EQ(fixed_text(5, 'L', 1.005F, 2), "1.01 ");
}

TEST(RealToFixedText, LargeValuesKeepTheirDigits) {
  EXPECT_EQ(fixed_text(13, 'L', 1e10F, 0), "10000000000. ");
}

TEST(RealToFixedText, TouchesTheFieldOnly) {
  std::string text = "######";
  RealToFixedText(4, 'R', 0.5F, 1, text);
  EXPECT_EQ(text, " 0.5##");
  RealToFixedText(0, 'R', 0.5F, 1, text);
  EXPECT_EQ(text, " 0.5##");
  RealToFixedText(9, 'R', 0.5F, 1, text);
  EXPECT_EQ(text, "   0.5");
}

}  // namespace
}  // namespace m_strings
