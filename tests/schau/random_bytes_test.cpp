// Whatever bytes the files hold, the check comes to an end, and its output can be shown.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <ctime>
#include <limits>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/findings/json.h"
#include "KV_Schau/findings/text.h"
#include "KV_Schau/network/balance_view.h"
#include "KV_Schau/rules/rules.h"
#include "KV_Schau/variant/encoding.h"
#include "tests/dice.h"
#include "tests/schau/bed.h"
#include "tests/schau/clean_network.h"

namespace schau_test {
namespace {

constexpr std::array<FileId, 6> read_files = {FileId::sys, FileId::nfl, FileId::kfl,
                                              FileId::trs, FileId::ver, FileId::suppression};

// The places of all findings lie in their files, and all that is shown is UTF-8 without control characters.
std::size_t check_and_show(const Bed& bed) {
  const schau::variant::Variant variant = bed.variant();
  const schau::rules::Result result = schau::rules::check(variant);
  std::string out;
  for (const schau::findings::Finding& finding : result.findings) {
    EXPECT_LE(finding.place.line, variant.file(finding.place.file).line_count());
    EXPECT_GE(finding.place.column, 1U);
    out.clear();
    schau::findings::append_text(out, variant, finding);
    EXPECT_EQ(out.find_first_of("\x1B\x07\t\r"), std::string::npos) << out;
    EXPECT_NO_THROW(schau::findings::to_json(variant, finding).dump()) << out;
  }
  out = schau::network::text_of(variant, result.network, result.flow.balance, 20);
  EXPECT_FALSE(out.empty());
  EXPECT_NO_THROW(schau::network::to_json(variant, result.network, result.flow.balance).dump());
  return result.findings.size();
}

std::string random_bytes(Dice& dice, std::size_t count) {
  std::string bytes(count, '\0');
  for (char& byte : bytes) byte = static_cast<char>(dice.roll(256));
  return bytes;
}

TEST(RandomBytes, DoNoHarm) {
  Dice dice(3);
  for (int round = 0; round < 300; ++round) {
    Bed bed = Bed::empty();
    for (const FileId file : read_files) {
      bed.insert(file, 1, "");
      bed.set_bytes(file, random_bytes(dice, dice.roll(3000)));
    }
    check_and_show(bed);
  }
}

TEST(RandomBytes, FromTheWordsOfTheFilesDoNoHarm) {
  static const std::vector<std::string> words = {"N0010",
                                                 "T0010",
                                                 "V0010",
                                                 "K0010",
                                                 "B0010",
                                                 "P0010",
                                                 "Z0010",
                                                 "n0010",
                                                 "ENDE",
                                                 "ende",
                                                 "qkm",
                                                 "ha",
                                                 "qm",
                                                 "km\xB2",
                                                 "1.5",
                                                 "1,5",
                                                 "-2",
                                                 "9E99",
                                                 "\t",
                                                 "\r",
                                                 "\n",
                                                 "\r\n",
                                                 "\xA0",
                                                 "ö",
                                                 "\x84",
                                                 " ",
                                                 "     ",
                                                 "          ",
                                                 "                                   ",
                                                 std::string(1, '\0'),
                                                 "\xEF\xBB\xBF"};
  Dice dice(4);
  std::size_t findings = 0;
  for (int round = 0; round < 1000; ++round) {
    Bed bed = Bed::empty();
    for (const FileId file : read_files) {
      std::string bytes;
      for (std::size_t k = dice.roll(120); k > 0; --k) bytes += dice.pick(words);
      bed.insert(file, 1, "");
      bed.set_bytes(file, bytes);
    }
    findings += check_and_show(bed);
  }
  EXPECT_GT(findings, 1000U);
}

TEST(RandomBytes, InSoundFilesDoNoHarm) {
  Dice dice(5);
  for (int round = 0; round < 500; ++round) {
    CleanNetwork network = clean_network(dice, 20);
    for (const FileId file : {FileId::sys, FileId::nfl, FileId::kfl, FileId::trs, FileId::ver}) {
      std::string bytes = network.bed.bytes(file);
      for (std::size_t k = dice.roll(8); k > 0; --k)
        bytes[dice.roll(bytes.size())] = static_cast<char>(dice.roll(256));
      if (dice.one_in(5)) bytes.resize(dice.roll(bytes.size()));
      network.bed.set_bytes(file, bytes);
    }
    check_and_show(network.bed);
  }
}

TEST(RandomBytes, InOneLongLineDoNoHarm) {
  Dice dice(6);
  Bed bed;
  for (const FileId file : {FileId::sys, FileId::nfl, FileId::trs}) {
    std::string line = random_bytes(dice, 1'000'000);
    std::ranges::replace(line, '\n', ' ');
    std::ranges::replace(line, '\r', ' ');
    bed.lines(file).push_back(bed.lines(file).back() + line);
  }
  check_and_show(bed);
}

// Thousands of mistakes of one kind: the time may grow with their number, not with its square.

std::string numbered(char type, std::size_t number) {
  static constexpr std::string_view digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  std::string name(5, type);
  for (std::size_t place = 4; place > 0; --place, number /= digits.size())
    name[place] = digits[number % digits.size()];
  return name;
}

// A chain of reaches, each with an area.
Bed long_chain(std::size_t length) {
  Bed bed = Bed::empty();
  for (std::size_t i = 1; i <= length; ++i) {
    const std::string area = numbered('N', i);
    const std::string reach = numbered('T', i);
    const std::string above = numbered('T', i - 1);
    const std::string below = i == length ? "ENDE" : numbered('T', i + 1);
    bed.lines(FileId::sys).push_back(text_of({area, {}, {reach}}));
    std::vector<std::string_view> inflows = {area};
    if (i > 1) inflows.push_back(above);
    bed.lines(FileId::sys).push_back(text_of({reach, inflows, {below}}));
    bed.lines(FileId::nfl).push_back("   " + area + "  1.250 0.00");
    bed.lines(FileId::trs).push_back("   " + reach);
  }
  return bed;
}

struct ManyMistakes {
  std::string what;
  void (*make)(Bed& bed);
  std::size_t findings_for_each = 1;  ///< reach, at least
};

void PrintTo(const ManyMistakes& mistakes, std::ostream* out) {
  *out << mistakes.what;
}

void for_each_line(Bed& bed, FileId file, void (*change)(std::string& line)) {
  for (std::string& line : bed.lines(file)) change(line);
}

void make_loop(Bed& bed) {
  std::vector<std::string>& lines = bed.lines(FileId::sys);
  const std::string last = lines.back().substr(35, 5);
  lines.back().replace(63, 4, numbered('T', 1));
  lines.at(1).resize(49, ' ');
  lines.at(1) += last + "         " + numbered('T', 2);
  lines.push_back(text_of({"T0000", {"N0000"}, {"ENDE"}}));
}

const std::vector<ManyMistakes>& many_mistakes() {
  static const std::vector<ManyMistakes> list = {
      {"names_in_small_letters",
       [](Bed& bed) {
         for_each_line(bed, FileId::sys, [](std::string& line) { line[35] = line[35] == 'N' ? 'n' : 'T'; });
       }},
      {"shifted_lines",
       [](Bed& bed) { for_each_line(bed, FileId::sys, [](std::string& line) { line.insert(0, 1, ' '); }); }},
      {"unknown_links",
       [](Bed& bed) {
         for_each_line(bed, FileId::sys,
                       [](std::string& line) { line[67] = line[63] == 'T' ? '$' : line[67]; });
       }},
      {"system_upside_down",
       [](Bed& bed) {
         std::ranges::reverse(bed.lines(FileId::sys));
         bed.lines(FileId::sys).front().replace(63, 4, "T0001");
       }},
      {"misspelt_records",
       [](Bed& bed) {
         for_each_line(bed, FileId::nfl, [](std::string& line) { line[7] = line[7] == '0' ? 'O' : '$'; });
       }},
      {"no_records", [](Bed& bed) { bed.replace(FileId::nfl, {""}); }},
      {"commas",
       [](Bed& bed) { for_each_line(bed, FileId::nfl, [](std::string& line) { line[11] = ','; }); }},
      {"repeated_records",
       [](Bed& bed) {
         const std::vector<std::string> once = bed.lines(FileId::nfl);
         bed.lines(FileId::nfl).insert(bed.lines(FileId::nfl).end(), once.begin(), once.end());
         bed.lines(FileId::trs)
             .insert(bed.lines(FileId::trs).end(), bed.lines(FileId::trs).size(), "   T0001");
       }},
      // Each search but the first goes on behind the end of the file, over the unit there.
      {"records_in_reverse_before_a_unit",
       [](Bed& bed) {
         std::ranges::reverse(bed.lines(FileId::nfl));
         bed.lines(FileId::nfl).emplace_back("          ha");
       },
       0},
      {"one_name_for_all",
       [](Bed& bed) {
         for_each_line(bed, FileId::sys, [](std::string& line) { line.replace(36, 4, "0001"); });
       }},
      {"one_long_loop", make_loop, 0},
      {"odd_characters",
       [](Bed& bed) {
         for_each_line(bed, FileId::sys, [](std::string& line) { line.replace(16, 4, "Höhe\t"); });
         for_each_line(bed, FileId::nfl, [](std::string& line) { line += "\r\r"; });
         for_each_line(bed, FileId::trs, [](std::string& line) { line += "\t\xA0\x01"; });
       }},
  };
  return list;
}

class ManyMistakesTest : public ::testing::TestWithParam<ManyMistakes> {};

Bed with_mistakes(const ManyMistakes& mistakes, std::size_t length) {
  Bed bed = long_chain(length);
  mistakes.make(bed);
  return bed;
}

// Of the processor, at best, which other work on the machine lengthens least.
double seconds_to_check(const schau::variant::Variant& variant) {
  std::clock_t least = std::numeric_limits<std::clock_t>::max();
  for (int repetition = 0; repetition < 3; ++repetition) {
    const std::clock_t begin = std::clock();
    const schau::rules::Result result = schau::rules::check(variant);
    EXPECT_FALSE(result.findings.empty());
    least = std::min(least, std::clock() - begin);
  }
  return static_cast<double>(least) / CLOCKS_PER_SEC;
}

TEST_P(ManyMistakesTest, AreFoundAndShown) {
  constexpr std::size_t length = 2000;
  EXPECT_GE(check_and_show(with_mistakes(GetParam(), length)), length * GetParam().findings_for_each);
}

TEST_P(ManyMistakesTest, TakeTimeByTheirNumber) {
  constexpr std::size_t length = 10'000;
  constexpr std::size_t times = 4;
  const schau::variant::Variant few = with_mistakes(GetParam(), length).variant();
  const schau::variant::Variant more = with_mistakes(GetParam(), times * length).variant();
  // The square would be 16 times as much.
  EXPECT_LT(seconds_to_check(more), 2.2 * times * seconds_to_check(few) + 0.01);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ManyMistakesTest, ::testing::ValuesIn(many_mistakes()),
                         [](const auto& one) { return one.param.what; });

}  // namespace
}  // namespace schau_test
