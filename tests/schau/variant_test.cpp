// The files of a variant as a person sees them: lines, columns, encodings, names, numbers.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "KV_Schau/variant/encoding.h"
#include "KV_Schau/variant/names.h"
#include "KV_Schau/variant/numbers.h"
#include "KV_Schau/variant/records.h"
#include "KV_Schau/variant/shown_text.h"
#include "KV_Schau/variant/text_file.h"
#include "KV_Schau/variant/variant.h"
#include "m_strings/m_strings.h"
#include "runtime/edit_input.h"
#include "tests/dice.h"
#include "tests/schau/bed.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using namespace schau::variant;
using schau_test::Bed;
using ::testing::ElementsAre;

TextFile file_of(std::string_view bytes) {
  return TextFile::of_bytes(bytes, "datei");
}

std::vector<std::string> lines_of(std::string_view bytes) {
  const TextFile file = file_of(bytes);
  std::vector<std::string> lines;
  for (std::uint32_t number = 1; number <= file.line_count(); ++number) lines.emplace_back(file.line(number));
  return lines;
}

TEST(TextFile, CutsLinesAtAllThreeEnds) {
  EXPECT_THAT(lines_of(""), ElementsAre());
  EXPECT_THAT(lines_of("a\nbc\n"), ElementsAre("a", "bc"));
  EXPECT_THAT(lines_of("a\r\nbc"), ElementsAre("a", "bc"));
  EXPECT_THAT(lines_of("a\rbc\r"), ElementsAre("a", "bc"));
  EXPECT_THAT(lines_of("a\r\r\nb\n\nc"), ElementsAre("a", "", "b", "", "c"));
  EXPECT_THAT(lines_of("\n"), ElementsAre(""));
}

TEST(TextFile, TellsTheEndsOfItsLines) {
  const TextFile file = file_of("a\nb\r\nc\rd");
  EXPECT_EQ(file.line_end(1), LineEnd::lf);
  EXPECT_EQ(file.line_end(2), LineEnd::crlf);
  EXPECT_EQ(file.line_end(3), LineEnd::cr);
  EXPECT_EQ(file.line_end(4), LineEnd::none);
  for (const LineEnd end : {LineEnd::lf, LineEnd::crlf, LineEnd::cr, LineEnd::none})
    EXPECT_EQ(file.count_of(end), 1U);
  EXPECT_EQ(file_of("a\nb").count_of(LineEnd::lf), 1U);
  EXPECT_EQ(file_of("a\nb").count_of(LineEnd::none), 1U);
}

TEST(TextFile, CountsColumnsAsAnEditorDoes) {
  const TextFile utf8 = file_of("\xEF\xBB\xBFä€b\nab");
  EXPECT_EQ(utf8.encoding(), Encoding::utf_8);
  EXPECT_EQ(utf8.character_column(1, 1), 1U);
  EXPECT_EQ(utf8.character_column(1, 4), 1U);
  EXPECT_EQ(utf8.character_column(1, 6), 2U);
  EXPECT_EQ(utf8.character_column(1, 9), 3U);
  // Behind the line each column counts.
  EXPECT_EQ(utf8.character_column(2, 5), 5U);
  const TextFile bytes = file_of(
      "\xE4\x80"
      "b");
  EXPECT_EQ(bytes.encoding(), Encoding::windows_1252);
  EXPECT_EQ(bytes.character_column(1, 3), 3U);
}

TEST(TextFile, IsMissingOrUnreadable) {
  const test_files::TemporaryFolder folder;
  EXPECT_EQ(TextFile::read(folder.file("nichts"), "nichts").state(), FileState::missing);
  const TextFile place = TextFile::read(folder.path(), "ordner");
  EXPECT_EQ(place.state(), FileState::unreadable);
  EXPECT_EQ(place.fault(), "ist ein Ordner");
  EXPECT_EQ(place.line_count(), 0U);
  test_files::write_bytes(folder.file("da"), "x\n");
  EXPECT_TRUE(TextFile::read(folder.file("da"), "da").was_read());
}

TEST(TextFile, DoesNotWaitForAPipe) {
  const test_files::TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
  EXPECT_EQ(TextFile::read(folder.file("pipe"), "pipe").fault(), "ist keine gewöhnliche Datei");
}

TEST(Encoding, IsToldFromTheBytes) {
  EXPECT_EQ(encoding_of("nur ASCII"), Encoding::windows_1252);
  EXPECT_EQ(encoding_of("\xFC"
                        "ber"),
            Encoding::windows_1252);
  EXPECT_EQ(encoding_of("über €"), Encoding::utf_8);
  EXPECT_EQ(encoding_of("über \xFC"), Encoding::windows_1252);
  EXPECT_EQ(encoding_of(std::string_view("\xFF\xFEN\0", 4)), Encoding::utf_16);
  EXPECT_EQ(encoding_of(std::string_view("\0N\0a\0m\0e", 8)), Encoding::utf_16);
  EXPECT_EQ(encoding_of(std::string_view("Name mit einem \0", 16)), Encoding::windows_1252);
}

TEST(Encoding, TurnsUtf8IntoSingleBytes) {
  EXPECT_EQ(utf8_to_windows_1252("Höhe in m², 5 €"), "H\xF6he in m\xB2, 5 \x80");
  EXPECT_EQ(utf8_to_windows_1252("\xFC Ω"), "\xFC ?");
}

TEST(Names, AreFiveBytes) {
  EXPECT_EQ(text_of(name_at("   T1", 4)), "T1");
  EXPECT_EQ(text_of(name_at("   T1", 4), false), "T1   ");
  EXPECT_EQ(name_of("T1"), name_of("T1   "));
  EXPECT_EQ(name_at("abc", 9), blank_name);
  EXPECT_EQ(letter_of(name_of("V0010")), 'V');
}

TEST(Names, AreFoundFirstAndLast) {
  NameIndex index;
  index.fill({blank_name, name_of("T1"), name_of("T2"), blank_name, name_of("T1")});
  EXPECT_EQ(index.first(name_of("T1")), 1U);
  EXPECT_EQ(index.last(name_of("T1")), 4U);
  EXPECT_EQ(index.last(name_of("T2")), 2U);
  EXPECT_EQ(index.first(name_of("T3")), 0U);
  EXPECT_EQ(index.first(blank_name), 0U);
  EXPECT_TRUE(index.has_repetitions());
}

TEST(Names, DifferBySoManyChanges) {
  EXPECT_EQ(changes_between(name_of("T0010"), name_of("T0010")), 0U);
  EXPECT_EQ(changes_between(name_of("T0010"), name_of("T0020")), 1U);
  EXPECT_EQ(changes_between(name_of("T0010"), name_of("T0100")), 1U);
  EXPECT_EQ(changes_between(name_of("T10"), name_of("T010")), 1U);
  EXPECT_EQ(changes_between(name_of("T10"), name_of("T1")), 1U);
  EXPECT_EQ(changes_between(name_of("T0010"), name_of("N0099")), 3U);
}

std::string meant(const std::vector<std::string>& names, std::string_view name) {
  std::vector<NameKey> keys(names.size());
  std::ranges::transform(names, keys.begin(), [](const std::string& one) { return name_of(one); });
  const NameKey found = SimilarNames(keys).meant_by(name_of(name));
  return found == 0 ? "" : text_of(found);
}

TEST(Names, AreGuessedOnlyWhenItIsClear) {
  EXPECT_EQ(meant({"N0010", "N0030"}, "N0O30"), "N0030");
  EXPECT_EQ(meant({"N0010", "N0030"}, "n0010"), "N0010");
  EXPECT_EQ(meant({"N0010", "N0050"}, "N0011"), "N0010");
  EXPECT_EQ(meant({"N0010", "N0050"}, "N0100"), "N0010");
  EXPECT_EQ(meant({"N10", "N0050"}, "N110"), "N10");
  EXPECT_EQ(meant({"N0010", "N0020"}, "N0030"), "");
  EXPECT_EQ(meant({"N0010", "N0020"}, "K0777"), "");
  EXPECT_EQ(meant({"N0010", "N0010"}, "N0011"), "N0010");
  EXPECT_EQ(meant({"N0010"}, "N0010"), "");
  EXPECT_EQ(meant({}, "N0010"), "");
}

// The numbers of KV_Akum's own procedures, over many random fields.
TEST(Numbers, AreReadAsInARun) {
  static constexpr std::string_view characters = "  0123456789..,+-Ee";
  Dice dice(5);
  for (int round = 0; round < 200000; ++round) {
    std::string field(4 + dice.roll(5), ' ');
    for (char& character : field) character = characters[dice.roll(characters.size())];
    const ReadNumber area = read_area_field(field);
    const runtime::SingleEdit single = runtime::edit_single(field);
    ASSERT_EQ(static_cast<int>(area.state), static_cast<int>(single.state)) << field;
    ASSERT_EQ(static_cast<float>(area.value), single.value) << field;
    std::string text = field;
    const float loose = m_strings::ParseReal(text);
    const ReadNumber number = read_loose_field(field);
    if (number.state == ReadNumber::State::out_of_range) {
      ASSERT_FALSE(std::isfinite(loose)) << field;
    } else {
      ASSERT_NEAR(number.value, loose, 1e-37 + std::abs(number.value) * 1e-5) << field;
    }
  }
}

TEST(Shown, MakesEverythingVisible) {
  EXPECT_EQ(shown("\xE4\x80\xA0\x81", Encoding::windows_1252), "ä€␣�");
  EXPECT_EQ(shown("a\tb\x1B[31m\x7F", Encoding::windows_1252), "a→b␛[31m␡");
  EXPECT_EQ(shown(std::string_view("\0\r", 2), Encoding::windows_1252), "␀␍");
  EXPECT_EQ(shown("ä\xC3", Encoding::utf_8), "ä�");
  const std::string right_to_left = {'\xE2', '\x80', '\xAE'};
  EXPECT_EQ(shown_utf8(right_to_left + "txt"), "�txt");
}

std::string with_mark(std::string_view bytes, std::size_t column, std::size_t count) {
  const TextFile file = file_of(bytes);
  const ShownLine line = show_line(file, 1, column, count);
  return line.text + "|" + std::string(line.begin, ' ') + std::string(line.length, '^');
}

TEST(ShownLine, HasItsMarkUnderTheCharacters) {
  EXPECT_EQ(with_mark("abcdef", 3, 2), "abcdef|  ^^");
  EXPECT_EQ(with_mark("\xFC\xE4"
                      "bc",
                      2, 1),
            "üäbc| ^");
  // In UTF-8 a column of KV_Akum's may lie inside a character.
  EXPECT_EQ(with_mark("üäbc", 3, 2), "üäbc| ^");
  EXPECT_EQ(with_mark("üäbc", 4, 1), "üäbc| ^");
  EXPECT_EQ(with_mark("üäbc", 5, 2), "üäbc|  ^^");
  EXPECT_EQ(with_mark("a\tbc", 3, 1), "a→      bc|        ^");
  EXPECT_EQ(with_mark("a\tbc", 2, 1), "a→      bc| ^^^^^^^");
  EXPECT_EQ(with_mark("ab", 5, 3), "ab|    ^^^");
  EXPECT_EQ(with_mark("ab", 2, 3), "ab| ^^^");
  EXPECT_EQ(with_mark("\n", 1, 0), "|^");
  EXPECT_EQ(with_mark("\xEF\xBB\xBF"
                      "aä",
                      4, 1),
            "aä|^");
  EXPECT_EQ(with_mark("\xEF\xBB\xBF"
                      "aä",
                      1, 3),
            "aä|^");
}

TEST(ShownLine, OfALongLineIsAPart) {
  const std::string bytes = std::string(300, 'a') + "XYZ" + std::string(300, 'b');
  const ShownLine line = show_line(file_of(bytes), 1, 301, 3);
  EXPECT_TRUE(line.text.starts_with("…aaa"));
  EXPECT_TRUE(line.text.ends_with("bbb…"));
  EXPECT_LT(line.text.size(), 200U);
  EXPECT_EQ(line.text.substr(line.begin + std::string("…").size() - 1, 3), "XYZ");
  EXPECT_EQ(line.length, 3U);
}

TEST(Variant, FindsElementsUpToTheEndMarker) {
  const Variant variant = Bed().variant();
  EXPECT_EQ(variant.element_count(), 10U);
  EXPECT_EQ(text_of(variant.names[1]), "N0010");
  EXPECT_EQ(variant.element_lines[10], 12U);
  EXPECT_TRUE(variant.has_end);
  EXPECT_EQ(schau_test::place_words(place_of_element(variant, 4)), "sys:6:36+5");
}

TEST(Variant, FindsNamesInFiles) {
  const Variant variant = Bed().variant();
  const auto place = [&](FileId file, std::string_view name) {
    const std::optional<Place> found = find_name(variant, file, name_of(name));
    return found ? schau_test::place_words(*found) : "";
  };
  EXPECT_EQ(place(FileId::sys, "T0020"), "sys:7:36+5");
  EXPECT_EQ(place(FileId::trs, "T0020"), "trs:4:4+5");
  EXPECT_EQ(place(FileId::nfl, "T0020"), "");
  EXPECT_EQ(place(FileId::nfl, "N9999"), "");
  EXPECT_EQ(place(FileId::result, "N0010"), "");
}

TEST(Variant, ReadsWhatLiesInAFolder) {
  const test_files::TemporaryFolder folder;
  const Bed bed;
  for (const FileId file : {FileId::sys, FileId::nfl, FileId::trs}) {
    test_files::write_bytes(folder.file("netz." + std::string(schau_test::extension_of(file))),
                            bed.bytes(file));
  }
  test_files::write_bytes(folder.file("netz.Akum"), "alt");
  fs::last_write_time(folder.file("netz.Akum"), fs::file_time_type::clock::now() - std::chrono::hours(1));
  test_files::write_bytes(folder.file("fehlercode.ex"), "Y01");
  const Variant variant = read_variant({folder.path(), "netz", "a/b/netz"});
  EXPECT_EQ(variant.element_count(), 10U);
  EXPECT_EQ(variant.file(FileId::kfl).state(), FileState::missing);
  EXPECT_EQ(variant.file(FileId::kfl).shown(), "a/b/netz.kfl");
  EXPECT_EQ(variant.file(FileId::suppression).shown(), "a/b/fehlercode.ex");
  EXPECT_TRUE(variant.file(FileId::suppression).was_read());
  EXPECT_TRUE(variant.surroundings.result);
  EXPECT_FALSE(variant.surroundings.protocol);
  EXPECT_EQ(variant.surroundings.younger_input, "a/b/netz.sys");
  EXPECT_EQ(variant.surroundings.result_link, std::nullopt);
}

TEST(Variant, KnowsAResultThatIsALink) {
  const test_files::TemporaryFolder folder;
  test_files::write_bytes(folder.file("netz.sys"), Bed().bytes(FileId::sys));
  fs::create_symlink("anderswo", folder.file("netz.Akum"));
  EXPECT_EQ(read_variant({folder.path(), "netz", "netz"}).surroundings.result_link, "anderswo");
  fs::remove(folder.file("netz.Akum"));
  fs::create_hard_link(folder.file("netz.sys"), folder.file("netz.Akum"));
  const Surroundings around = read_variant({folder.path(), "netz", "netz"}).surroundings;
  EXPECT_EQ(around.result_is_input, "netz.sys");
  EXPECT_EQ(around.result_link, std::nullopt);
}

TEST(Records, AreSearchedInSystemOrderWithOneRewind) {
  Bed bed;
  bed.replace(FileId::nfl, {"   N0020    2.0", "          ha", "   N0010    1.0", "   N0020    3.0"});
  const Variant variant = bed.variant();
  const Records records = find_records(variant);
  EXPECT_EQ(records.line[1], 3U);
  EXPECT_EQ(records.line[7], 4U);
  EXPECT_EQ(records.unit[1], AreaUnit::ha);
  EXPECT_EQ(records.inherited_unit, AreaUnit::ha);
  EXPECT_EQ(schau_test::place_words(place_of_record(variant, records, 7).value()), "nfl:4:4+5");
  EXPECT_EQ(place_of_record(variant, records, 9), std::nullopt);
}

}  // namespace
