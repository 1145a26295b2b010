#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "KV_Schau/run/protocol.h"
#include "m_WLM_error/catalogue/entry.h"
#include "m_WLM_error/m_WLM_error.h"
#include "runtime/cp1252.h"
#include "runtime/edit_output.h"
#include "tests/test_files.h"

namespace {

namespace catalogue = m_WLM_error::catalogue;
using m_WLM_error::MessageArguments;
using m_WLM_error::MessageDispatcher;
using schau::run::Argument;
using schau::run::Level;
using schau::run::Message;
using schau::run::parse_protocol;
using schau::run::Protocol;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Name = Argument::Name;

std::string german(std::string_view utf8) {
  runtime::Cp1252Text<400> text;
  text.append(utf8);
  return std::string(text.view());
}

const MessageArguments usual_arguments{.text1 = "Tx 10",
                                       .text2 = "zweiter  Text",
                                       .text3 = "QQ : Q",
                                       .int1 = 17,
                                       .int2 = -222,
                                       .int3 = 33333,
                                       .real1 = 4.5F,
                                       .real2 = -88.5F};

// A call of the dispatcher that selects one entry of the catalogue.
struct Call {
  const catalogue::Entry* entry = nullptr;
  std::vector<catalogue::Entry> rows;
  MessageArguments arguments;
};

void PrintTo(const Call& call, std::ostream* out) {
  *out << call.entry->code << " " << call.entry->condition_word;
}

std::vector<Call> all_calls() {
  std::vector<Call> calls;
  for (const catalogue::Group* group : catalogue::groups()) {
    for (const catalogue::Entry& row : group->entries) {
      if (row.continues) {
        calls.back().rows.push_back(row);
        continue;
      }
      Call call{&row, {row}, usual_arguments};
      if (!row.condition_word.empty()) {
        (row.condition == catalogue::text2 ? call.arguments.text2 : call.arguments.text3) =
            row.condition_word;
      }
      calls.push_back(call);
    }
  }
  return calls;
}

std::string printed_number(const runtime::FormatItem& item, const runtime::Value& value) {
  const std::span<const runtime::FormatItem> field(&item, 1);
  const runtime::Format format{field, {}, runtime::columns_of(field), 0};
  const std::string text = runtime::formatted(format, std::span(&value, 1));
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string printed(const runtime::FormatItem& item, catalogue::Argument argument,
                    const MessageArguments& arguments) {
  switch (argument) {
    case catalogue::text1:
      return std::string(*arguments.text1);
    case catalogue::text2:
      return std::string(*arguments.text2);
    case catalogue::text3:
      return std::string(*arguments.text3);
    case catalogue::int1:
      return printed_number(item, *arguments.int1);
    case catalogue::int2:
      return printed_number(item, *arguments.int2);
    case catalogue::int3:
      return printed_number(item, *arguments.int3);
    case catalogue::real1:
      return printed_number(item, *arguments.real1);
    case catalogue::real2:
      break;
  }
  return printed_number(item, *arguments.real2);
}

using Values = std::map<Name, std::string>;

// What a reader can know of the call: the arguments that its rows print, and the word that chose the variant.
Values expected_values(const Call& call) {
  Values values;
  for (const catalogue::Entry& row : call.rows) {
    for (std::size_t i = 0; i < row.argument_count; ++i) {
      const runtime::FormatItem& item = row.format.field(i + (row.continues ? 0 : 1));
      values.emplace(static_cast<Name>(row.arguments[i]), printed(item, row.arguments[i], call.arguments));
    }
  }
  if (!call.entry->condition_word.empty()) {
    values.emplace(static_cast<Name>(call.entry->condition), call.entry->condition_word);
  }
  return values;
}

Values values_of(const Message& message) {
  Values values;
  for (const Argument& argument : message.arguments) values.emplace(argument.name, argument.text);
  return values;
}

Level expected_level(catalogue::Level level) {
  if (level == catalogue::level_from_int1) return Level::open;
  return level == catalogue::note ? Level::note : Level::error;
}

class ProtocolReader : public testing::Test {
 protected:
  void SetUp() override { start(); }
  void TearDown() override {
    MessageDispatcher("FINALE");
    m_WLM_error::reset();
  }

  void start() const {
    m_WLM_error::reset();
    MessageDispatcher("INIT", {.text1 = file(), .text2 = "KARVOS"});
  }
  // The protocol of all calls since the start.
  [[nodiscard]] std::string bytes() const {
    MessageDispatcher("FINALE");
    return test_files::read_bytes(file());
  }
  [[nodiscard]] Protocol protocol() const { return parse_protocol(bytes()); }

 private:
  [[nodiscard]] std::string file() const { return folder_.file("v.pkl"); }

  test_files::TemporaryFolder folder_;
};

void expect_message(const Message& message, const Call& call) {
  EXPECT_EQ(message.kind, Message::Kind::entry);
  EXPECT_EQ(message.code, call.entry->code);
  EXPECT_EQ(message.level, expected_level(call.entry->level));
  EXPECT_EQ(values_of(message), expected_values(call));
  EXPECT_THAT(message.arguments, SizeIs(expected_values(call).size()));
  EXPECT_TRUE(message.complete);
}

TEST_F(ProtocolReader, UnderstandsEveryEntryOfTheCatalogue) {
  ASSERT_FALSE(all_calls().empty());
  for (const Call& call : all_calls()) {
    SCOPED_TRACE(testing::PrintToString(call));
    start();
    MessageDispatcher(call.entry->code, call.arguments);
    const Protocol read = protocol();
    EXPECT_TRUE(read.has_header);
    EXPECT_EQ(read.label, "KARVOS");
    EXPECT_TRUE(read.complete);
    ASSERT_THAT(read.messages, SizeIs(1));
    expect_message(read.messages.front(), call);
    EXPECT_EQ(read.messages.front().line, 2U);
    EXPECT_EQ(read.messages.front().line_count, read.line_count - 1);
  }
}

// All entries in one protocol, in any order: where one ends, the next begins.
TEST_F(ProtocolReader, TellsNeighboursApart) {
  std::mt19937 dice(11);
  for (int round = 0; round < 20; ++round) {
    std::vector<Call> calls = all_calls();
    std::ranges::shuffle(calls, dice);
    start();
    for (const Call& call : calls) MessageDispatcher(call.entry->code, call.arguments);
    const Protocol read = protocol();
    ASSERT_THAT(read.messages, SizeIs(calls.size()));
    std::size_t line = 2;
    for (std::size_t i = 0; i < calls.size(); ++i) {
      SCOPED_TRACE(testing::PrintToString(calls[i]));
      expect_message(read.messages[i], calls[i]);
      EXPECT_EQ(read.messages[i].line, line);
      line += read.messages[i].line_count;
    }
    EXPECT_EQ(line, read.line_count + 1);
  }
}

TEST_F(ProtocolReader, TakesArgumentsThatAreEmptyLongOrLookLikeTexts) {
  for (const std::string& text : {std::string(), std::string(1000, 'x'),
                                  std::string("Y04 Das Element ............................. : K17"),
                                  std::string(" führt ein Blank"), std::string("\t"), german("Öä€")}) {
    start();
    MessageDispatcher("Y04", {.text1 = text});
    MessageDispatcher("A00", {.text1 = text, .text2 = text});
    const Protocol read = protocol();
    ASSERT_THAT(read.messages, SizeIs(2)) << text;
    EXPECT_EQ(read.messages[0].argument(Name::text1), text);
    EXPECT_EQ(read.messages[1].argument(Name::text1), text);
    EXPECT_EQ(read.messages[1].argument(Name::text2), text);
  }
}

TEST_F(ProtocolReader, KeepsNumbersThatDoNotFitAndThatAreNone) {
  MessageDispatcher("Y00", {.text1 = "T", .int1 = 123456});
  MessageDispatcher("F03", {.text1 = "f", .text2 = "e", .real1 = 123456789.0F});
  MessageDispatcher("F03", {.text1 = "f", .text2 = "e", .real1 = std::numeric_limits<float>::quiet_NaN()});
  MessageDispatcher("F03", {.text1 = "f", .text2 = "e", .real1 = -std::numeric_limits<float>::infinity()});
  MessageDispatcher("W06", {.real1 = 123.0F});
  const Protocol read = protocol();
  ASSERT_THAT(read.messages, SizeIs(5));
  EXPECT_EQ(read.messages[0].argument(Name::int1), "*****");
  EXPECT_EQ(read.messages[1].argument(Name::real1), "*********");
  EXPECT_EQ(read.messages[2].argument(Name::real1), "NaN");
  EXPECT_EQ(read.messages[3].argument(Name::real1), "-Infinity");
  EXPECT_EQ(read.messages[4].argument(Name::real1), "123.");
}

TEST_F(ProtocolReader, TakesTheClosingLineOfACappedWarningAsPartOfTheFifth) {
  for (int i = 0; i < 7; ++i) MessageDispatcher("W01", {.text1 = "V0001"});
  for (int i = 0; i < 5; ++i) MessageDispatcher("W02", {.text1 = "V0002"});
  MessageDispatcher("W03", {.text1 = "B0001"});
  const Protocol read = protocol();
  ASSERT_THAT(read.messages, SizeIs(11));
  for (std::size_t i = 0; i < read.messages.size(); ++i) {
    EXPECT_EQ(read.messages[i].more_follow, i == 4 || i == 9) << i;
    EXPECT_EQ(read.messages[i].code, i < 5 ? "W01" : (i < 10 ? "W02" : "W03"));
  }
  EXPECT_EQ(read.messages[4].line_count, 3U);
  EXPECT_EQ(read.messages[5].line, 13U);
}

TEST_F(ProtocolReader, UnderstandsCodesThatTheirGroupDoesNotKnow) {
  MessageDispatcher("Y12", {.text1 = "K0017"});
  MessageDispatcher("W12", {.text1 = "a -Kommentar bei b nicht definiert!"});
  MessageDispatcher("mnn99");
  const Protocol read = protocol();
  ASSERT_THAT(read.messages, SizeIs(3));
  for (const Message& message : read.messages) EXPECT_EQ(message.kind, Message::Kind::undefined);
  EXPECT_EQ(read.messages[0].code, "Y12");
  EXPECT_EQ(read.messages[0].level, Level::error);
  EXPECT_EQ(read.messages[0].argument(Name::text1), "K0017");
  EXPECT_EQ(read.messages[1].code, "W12");
  EXPECT_EQ(read.messages[1].level, Level::note);
  EXPECT_EQ(read.messages[1].argument(Name::text1), "a -Kommentar bei b nicht definiert!");
  EXPECT_EQ(read.messages[2].code, "mnn99");
  EXPECT_EQ(read.messages[2].argument(Name::text1), "");
}

TEST_F(ProtocolReader, KnowsListLinesByTheirHeadingWhereverTheyStand) {
  const auto reach = [](std::string_view name, float value) {
    MessageDispatcher("T30", {.text1 = name, .real1 = value, .real2 = 103.0625F});
  };
  MessageDispatcher("ZW0", {.text1 = "Struktur A", .text2 = "erste"});
  reach("T0001", 1.5F);
  MessageDispatcher("ZW0", {.text1 = "Struktur A", .text2 = "  zweite"});
  MessageDispatcher("Y04", {.text1 = "K17"});
  reach("T0002", 2.5F);
  MessageDispatcher("ZW0", {.text1 = "Struktur B", .text2 = "dritte"});
  MessageDispatcher("ZW0", {.text1 = "Struktur B", .text2 = "vierte"});

  const Protocol read = protocol();
  std::vector<std::string> told;
  for (const Message& message : read.messages) {
    told.push_back(message.code);
    for (const Argument& argument : message.arguments) told.back() += "|" + argument.text;
  }
  EXPECT_THAT(told, ElementsAre("ZW0|Struktur A|erste", "T30|T0001|1.500|103.062", "ZW0|Struktur A|  zweite",
                                "Y04|K17", "T30|T0002|2.500|103.062", "ZW0|Struktur B|dritte",
                                "ZW0|Struktur B|vierte"));
}

TEST_F(ProtocolReader, NumbersTheLinesOfMessages) {
  MessageDispatcher("A00", {.text1 = "v.nfl", .text2 = "N0030"});
  MessageDispatcher("Y12", {.text1 = "N0040"});
  MessageDispatcher("Y04", {.text1 = "N0050"});
  const Protocol read = protocol();
  ASSERT_THAT(read.messages, SizeIs(3));
  EXPECT_EQ(read.messages[0].line, 2U);
  EXPECT_EQ(read.messages[1].line, 5U);
  EXPECT_EQ(read.messages[2].line, 6U);
  EXPECT_EQ(read.messages[0].text,
            " In der Tabelle .......................... : v.nfl\n"
            "    fehlt das Element ....................... : N0030\n"
            "    (evtl. fehlerhafter Datensatz)");
}

TEST(Protocol, WithoutAnythingHasNoMessages) {
  EXPECT_FALSE(parse_protocol("").has_header);
  EXPECT_THAT(parse_protocol("").messages, IsEmpty());
  const Protocol header_only = parse_protocol(german("Prüfprotokoll: KARVOS\r\n"));
  EXPECT_TRUE(header_only.has_header);
  EXPECT_TRUE(header_only.complete);
  EXPECT_THAT(header_only.messages, IsEmpty());
}

TEST(Protocol, MayHaveTheLineEndsOfAnotherSystem) {
  const Protocol read =
      parse_protocol(german("Prüfprotokoll: KARVOS\r\nY04 Das Element ............................. : K17\r\n"
                            "    ist in der Systemlogik mehrfach definiert !\r\n"));
  ASSERT_THAT(read.messages, SizeIs(1));
  EXPECT_EQ(read.messages[0].argument(Name::text1), "K17");
  EXPECT_TRUE(read.complete);
}

TEST(Protocol, TakesOnlyNumbersForNumbers) {
  const auto kind_of = [](const std::string& text) {
    return parse_protocol(german("Prüfprotokoll: KARVOS\n" + text)).messages.front().kind;
  };
  const auto kind_with_real = [&](const std::string& field) {
    return kind_of(
        "E12 Die Ganglinie ........................... : g\n"
        "    hat ein anderes Zeitintervall (min) ..... : " +
        field + "\n    als die Berechnung (min) ................ :     2.500\n");
  };
  const auto kind_with_integer = [&](const std::string& field) {
    return kind_of("Y00 Mit ..................................... : " + field +
                   "\n    angesprochenen Systemelementen ist die \n"
                   "    zulässige Anzahl beim Systemelement ..... : T0010\n    überschritten !\n");
  };
  for (const char* const number :
       {"    1.500", "    -.500", "      NaN", "      Inf", " Infinity", "*********"})
    EXPECT_EQ(kind_with_real(number), Message::Kind::entry) << number;
  for (const char* const none :
       {"    1,500", "    1.5.0", "   1x.500", "        .", "     1500", "         "})
    EXPECT_EQ(kind_with_real(none), Message::Kind::unknown) << none;
  for (const char* const number : {"    0", "   -7", "12345", "*****"})
    EXPECT_EQ(kind_with_integer(number), Message::Kind::entry) << number;
  for (const char* const none : {"  1.5", "   1x", "    -", "     "})
    EXPECT_EQ(kind_with_integer(none), Message::Kind::unknown) << none;
}

TEST(Protocol, TakesOnlyWholeLinesForUndefinedCodes) {
  for (const char* const line :
       {"Y12-Kommentar bei K0017 nicht definiert", "Y12-Kommentar bei nicht definiert!",
        "Y12-Kommentar zu K0017 nicht definiert!", "9-Kommentar bei K17 nicht definiert!"}) {
    const Protocol read = parse_protocol(german("Prüfprotokoll: KARVOS\n") + line + "\n");
    ASSERT_THAT(read.messages, SizeIs(1));
    EXPECT_EQ(read.messages[0].kind, Message::Kind::unknown) << line;
  }
}

TEST(Protocol, KeepsLinesThatNoEntryWrites) {
  const Protocol read =
      parse_protocol(german("Prüfprotokoll: KARVOS\n"
                            "Y04 Das Element ............................. : K17\n"
                            "    eine andere zweite Zeile\n"
                            "H01 gibt es nicht\n"
                            "A99     Datenbank-Fehler: Kontakt zu TRM Wasser aufnehmen!\n"
                            "H01-Kommentar bei K17 nicht definiert!\n"));
  ASSERT_THAT(read.messages, SizeIs(3));
  EXPECT_EQ(read.messages[0].kind, Message::Kind::unknown);
  EXPECT_EQ(read.messages[0].text,
            "Y04 Das Element ............................. : K17\n    eine andere zweite Zeile\n"
            "H01 gibt es nicht");
  EXPECT_EQ(read.messages[0].line_count, 3U);
  EXPECT_EQ(read.messages[1].code, "A99");
  EXPECT_EQ(read.messages[2].kind, Message::Kind::unknown);
  EXPECT_EQ(read.messages[2].level, Level::open);
}

// A protocol that a crash broke off: the code is known as soon as it stands there, complete is only the
// whole.
TEST(Protocol, MayBeBrokenOffAtEveryByte) {
  const std::string whole = german(
      "Prüfprotokoll: KARVOS\n"
      "A14 In der Tabelle ........................ : v.kfl\n"
      "    ist das Element ....................... : K0010\n"
      "    mehrfach aufgeführt.\n");
  const std::size_t begin = whole.find("A14");
  for (std::size_t end = begin; end < whole.size(); ++end) {
    const Protocol read = parse_protocol(std::string_view(whole).substr(0, end));
    if (end == begin) {
      EXPECT_TRUE(read.complete);
      EXPECT_THAT(read.messages, IsEmpty());
      continue;
    }
    EXPECT_FALSE(read.complete) << end;
    ASSERT_THAT(read.messages, SizeIs(1)) << end;
    EXPECT_FALSE(read.messages[0].complete) << end;
    EXPECT_EQ(read.messages[0].code, end < begin + 3 ? "" : "A14") << end;
  }
  const Protocol read = parse_protocol(whole);
  EXPECT_TRUE(read.complete);
  ASSERT_THAT(read.messages, SizeIs(1));
  EXPECT_EQ(read.messages[0].argument(Name::text2), "K0010");
}

double seconds_to_read(std::size_t messages) {
  std::string bytes = german("Prüfprotokoll: KARVOS\n");
  for (std::size_t i = 0; i < messages; ++i) {
    bytes += german(
        "Y04 Das Element ............................. : K0017\n"
        "    ist in der Systemlogik mehrfach definiert !\n");
  }
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_THAT(parse_protocol(bytes).messages, SizeIs(messages));
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

TEST(Protocol, OfManyMessagesTakesTimeInProportion) {
  const double few = std::max(seconds_to_read(20'000), seconds_to_read(20'000));
  EXPECT_LT(seconds_to_read(200'000), 30 * few);
}

}  // namespace
