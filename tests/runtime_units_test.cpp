#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "runtime/cp1252.h"
#include "runtime/edit_output.h"
#include "runtime/host.h"
#include "runtime/read.h"
#include "runtime/units.h"
#include "runtime/write.h"
#include "tests/forwarding_host.h"
#include "tests/test_files.h"
#include "tests/test_host.h"

namespace {

namespace fs = std::filesystem;
using namespace runtime::literals;
using namespace std::string_view_literals;
using runtime::CloseStatus;
using runtime::OpenStatus;
using test_files::read_bytes;
using test_files::write_bytes;
using Records = std::vector<std::string>;

constexpr int test_unit = 100;
constexpr std::size_t whole_width = std::string_view::npos;

class Units : public testing::Test {
 protected:
  ~Units() override { runtime::close_all(); }

  [[nodiscard]] std::string file(std::string_view name) const { return folder_.file(name); }
  [[nodiscard]] std::string with_bytes(std::string_view bytes) const {
    write_bytes(file("file"), bytes);
    return file("file");
  }
  void open_with(std::string_view bytes) const {
    runtime::open(test_unit, with_bytes(bytes), OpenStatus::old);
  }

 private:
  test_files::TemporaryFolder folder_;
};

using UnitsDeathTest = Units;

// The next record, or "<end>".
std::string next_record(int unit = test_unit) {
  std::string_view record;
  if (!runtime::LineReader(unit, whole_width).next(record)) return "<end>";
  return std::string(record);
}

Records rest_of(int unit = test_unit) {
  Records records;
  std::string_view record;
  for (runtime::LineReader reader(unit, whole_width); reader.next(record);) records.emplace_back(record);
  return records;
}

// The plain way to cut records.
Records cut(std::string_view bytes) {
  Records records;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size());
    records.emplace_back(bytes.substr(0, end));
    bytes.remove_prefix(end);
    bytes.remove_prefix(bytes.starts_with("\r\n") ? 2 : std::min<std::size_t>(bytes.size(), 1));
  }
  return records;
}

// The bytes of a unit that `write` filled.
template <class Write>
std::string written(const std::string& path, Write write) {
  runtime::open(test_unit, path, OpenStatus::unknown);
  write();
  runtime::close(test_unit);
  return read_bytes(path);
}

TEST_F(Units, RecordsThatTheCompilerLaysOutAreTheSame) {
  const std::array<float, 12> reals = {0.0F,     -0.0F,     0.0625F, -0.0004F, 9999.999F,     -1000.5F,
                                       99999.9F, 123456.7F, 1.0E20F, -1.0E9F,  std::nanf(""), -INFINITY};
  const std::array<std::int32_t, 6> numbers = {0,    7,     -999,
                                               9999, 10000, std::numeric_limits<std::int32_t>::min()};
  for (const float real : reals) {
    for (const std::int32_t number : numbers) {
      const runtime::FixedText<5> name("T1");
      const std::string general = written(file("general"), [&] {
        const std::array<runtime::Value, 6> values{name, number, number, real, real, number};
        runtime::write(test_unit, runtime::format<"(2x,a,1x,'km ',2(i4,2x),f8.3,f11.0,i12.5,x)">, values);
      });
      const std::string laid_out = written(file("laid_out"), [&] {
        runtime::write<"(2x,a,1x,'km ',2(i4,2x),f8.3,f11.0,i12.5,x)">(test_unit, name, number, number, real,
                                                                      real, number);
      });
      EXPECT_EQ(laid_out, general);
    }
  }
}

// Records.

TEST_F(Units, ALineReaderReadsAsTheUnitDoes) {
  open_with("a long one\nb\n");
  runtime::LineReader reader(test_unit, 4);
  std::string_view record;
  EXPECT_EQ(reader.position().byte, 0U);
  ASSERT_TRUE(reader.next(record));
  EXPECT_EQ(record, "a lo");
  EXPECT_EQ(reader.position().byte, 11U);
  EXPECT_EQ(next_record(), "b");
  EXPECT_FALSE(reader.next(record));
  EXPECT_EQ(record, "a lo");
  runtime::backspace(test_unit);
  EXPECT_FALSE(reader.next(record));
}

TEST_F(Units, EndRecordsAtEveryKindOfLineEnd) {
  open_with("a\nb\r\nc\rd\n");
  EXPECT_EQ(rest_of(), (Records{"a", "b", "c", "d"}));
}

TEST_F(Units, TakeALastLineWithoutAnEnd) {
  open_with("a\nb");
  EXPECT_EQ(rest_of(), (Records{"a", "b"}));
}

TEST_F(Units, EmptyFileHasNoRecord) {
  open_with("");
  EXPECT_EQ(next_record(), "<end>");
}

TEST_F(Units, CountEmptyRecords) {
  open_with("\n\r\n\r\r\n\n\r");
  EXPECT_EQ(rest_of(), (Records{"", "", "", "", "", ""}));
}

TEST_F(Units, KeepEveryByteOfARecord) {
  open_with("a\0b\t\x80\xFF \x1A\n\0\n"sv);
  EXPECT_EQ(rest_of(), (Records{std::string("a\0b\t\x80\xFF \x1A", 8), std::string("\0", 1)}));
}

TEST_F(Units, TakeVeryLongRecords) {
  const std::string longer(3'000'000, 'x');
  open_with(longer + "\r\n" + longer + "y");
  std::string_view record;
  ASSERT_TRUE(runtime::LineReader(test_unit, 200).next(record));
  EXPECT_EQ(record, longer.substr(0, 200));
  EXPECT_EQ(next_record(), longer + "y");
  EXPECT_EQ(next_record(), "<end>");
}

TEST_F(Units, CutARecordAtTheWidth) {
  open_with("abcdef\nab\n");
  std::string_view record;
  ASSERT_TRUE(runtime::LineReader(test_unit, 3).next(record));
  EXPECT_EQ(record, "abc");
  ASSERT_TRUE(runtime::LineReader(test_unit, 3).next(record));
  EXPECT_EQ(record, "ab");
}

TEST_F(Units, CutRandomBytesAsThePlainWayDoes) {
  std::mt19937 random(7);
  std::uniform_int_distribution<std::size_t> length(0, 40);
  std::uniform_int_distribution<std::size_t> character(0, 5);
  for (int i = 0; i < 500; ++i) {
    std::string bytes;
    for (std::size_t n = length(random); n > 0; --n) bytes += "ab\n\r\n\r"[character(random)];
    open_with(bytes);
    const Records wanted = cut(bytes);
    EXPECT_EQ(rest_of(), wanted);
    // Back one record after the other, each read once more.
    runtime::backspace(test_unit);
    for (std::size_t k = wanted.size(); k > 0; --k) {
      runtime::backspace(test_unit);
      ASSERT_EQ(next_record(), wanted[k - 1]) << "record " << k;
      runtime::backspace(test_unit);
    }
    runtime::backspace(test_unit);
    EXPECT_EQ(rest_of(), wanted);
    runtime::rewind(test_unit);
    EXPECT_EQ(rest_of(), wanted);
    runtime::close(test_unit);
  }
}

TEST_F(Units, PositionsBringRecordsBack) {
  open_with("a\r\nb\rc\nd");
  runtime::LineReader reader(test_unit, whole_width);
  std::string_view record;
  std::vector<runtime::RecordPosition> positions;
  do {
    positions.push_back(reader.position());
  } while (reader.next(record));
  ASSERT_EQ(positions.size(), 5U);
  for (std::size_t i = 4; i > 0; --i) {
    reader.go_to(positions[i - 1]);
    EXPECT_EQ(next_record(), std::string(1, "abcd"[i - 1]));
  }
  reader.go_to({1000});
  EXPECT_EQ(next_record(), "<end>");
}

TEST_F(Units, ALoneCarriageReturnIsSeenInEveryPlace) {
  for (const std::size_t size : {3U, 33U, 300000U, 600001U}) {
    for (const std::size_t place : {std::size_t{1}, size / 2, size - 2}) {
      std::string bytes(size, 'a');
      bytes[place] = '\r';
      open_with(bytes);
      EXPECT_EQ(next_record().size(), place) << size;
      EXPECT_EQ(next_record().size(), size - place - 1) << size;
      runtime::close(test_unit);
    }
  }
}

TEST_F(Units, RestIsTheUnreadTextWithItsLineEnds) {
  open_with("a\r\nb\rc");
  EXPECT_EQ(runtime::LineReader(test_unit, whole_width).rest(), "a\r\nb\rc");
  EXPECT_EQ(next_record(), "a");
  EXPECT_EQ(runtime::LineReader(test_unit, whole_width).rest(), "b\rc");
  EXPECT_EQ(rest_of(), (Records{"b", "c"}));
  EXPECT_EQ(runtime::LineReader(test_unit, whole_width).rest(), "");
}

// The end of the file.

TEST_F(Units, EndOfFileLeavesTheReceiverAsItWas) {
  open_with("1\n");
  std::string_view record = "before";
  next_record();
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(runtime::LineReader(test_unit, whole_width).next(record));
  }
  EXPECT_EQ(record, "before");
}

TEST_F(Units, BackspaceAfterTheEndGoesBeforeTheEnd) {
  open_with("a\nb\n");
  rest_of();
  runtime::backspace(test_unit);
  EXPECT_EQ(next_record(), "<end>");
  runtime::backspace(test_unit);
  runtime::backspace(test_unit);
  EXPECT_EQ(next_record(), "b");
}

TEST_F(Units, BackspaceAfterTheLastRecordGoesBeforeIt) {
  open_with("a\nb");
  next_record();
  next_record();
  runtime::backspace(test_unit);
  EXPECT_EQ(next_record(), "b");
}

TEST_F(Units, BackspaceAtTheBeginStaysThere) {
  open_with("a\nb\n");
  runtime::backspace(test_unit);
  EXPECT_EQ(next_record(), "a");
}

TEST_F(Units, RewindMakesReadingPossibleAgain) {
  open_with("a\n");
  rest_of();
  runtime::rewind(test_unit);
  EXPECT_EQ(rest_of(), Records{"a"});
}

// Opening.

TEST_F(Units, StatusOldNeedsAFile) {
  EXPECT_FALSE(runtime::try_open(test_unit, file("missing"), OpenStatus::old));
  EXPECT_FALSE(runtime::is_connected(test_unit));
  EXPECT_FALSE(fs::exists(file("missing")));
  fs::create_directory(file("folder"));
  EXPECT_FALSE(runtime::try_open(test_unit, file("folder"), OpenStatus::old));
  EXPECT_FALSE(runtime::try_open(test_unit, "/dev/null", OpenStatus::old));
  EXPECT_TRUE(runtime::try_open(test_unit, with_bytes("a"), OpenStatus::old));
  EXPECT_TRUE(runtime::is_connected(test_unit));
}

TEST_F(Units, StatusUnknownCreatesOrKeeps) {
  runtime::open(test_unit, file("new"), OpenStatus::unknown);
  EXPECT_EQ(read_bytes(file("new")), "");
  runtime::open(101, with_bytes("kept\n"), OpenStatus::unknown);
  EXPECT_EQ(next_record(101), "kept");
  runtime::close(101);
  EXPECT_EQ(read_bytes(file("file")), "kept\n");
}

TEST_F(Units, StatusFreshNeedsNoFile) {
  EXPECT_FALSE(runtime::try_open(test_unit, with_bytes("kept"), OpenStatus::fresh));
  EXPECT_EQ(read_bytes(file("file")), "kept");
  EXPECT_TRUE(runtime::try_open(test_unit, file("new"), OpenStatus::fresh));
  EXPECT_TRUE(fs::exists(file("new")));
}

TEST_F(Units, AUnitHoldsOneFile) {
  open_with("a");
  EXPECT_FALSE(runtime::try_open(test_unit, file("other"), OpenStatus::unknown));
  EXPECT_FALSE(fs::exists(file("other")));
  EXPECT_EQ(next_record(), "a");
  EXPECT_FALSE(runtime::try_open(6, file("other"), OpenStatus::unknown));
  EXPECT_FALSE(runtime::try_open(5, file("other"), OpenStatus::unknown));
}

TEST_F(Units, NumbersBeyondTheUnitsAreRefused) {
  constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
  for (const int unit : {-1, 1'000'000, largest, -largest}) {
    std::error_code reason;
    EXPECT_FALSE(runtime::try_open(unit, file("new"), OpenStatus::unknown, reason)) << unit;
    EXPECT_EQ(reason, std::errc::argument_out_of_domain) << unit;
  }
  EXPECT_FALSE(fs::exists(file("new")));
  EXPECT_TRUE(runtime::try_open(999'999, file("new"), OpenStatus::unknown));
  EXPECT_TRUE(runtime::try_open(0, file("other"), OpenStatus::unknown));
}

TEST_F(Units, AFileIsHeldByOneUnit) {
  open_with("a");
  fs::create_symlink(file("file"), file("symbolic"));
  fs::create_hard_link(file("file"), file("hard"));
  for (const char* name : {"file", "symbolic", "hard"}) {
    EXPECT_FALSE(runtime::try_open(101, file(name), OpenStatus::old)) << name;
    EXPECT_FALSE(runtime::try_open(101, file(name), OpenStatus::unknown)) << name;
    EXPECT_FALSE(runtime::is_connected(101)) << name;
    EXPECT_EQ(runtime::unit_of(file(name)), test_unit) << name;
  }
  EXPECT_EQ(next_record(), "a");
  runtime::close(test_unit);
  EXPECT_TRUE(runtime::try_open(101, file("hard"), OpenStatus::old));
}

TEST_F(Units, AFileTriedTwiceKeepsItsBytes) {
  runtime::open(test_unit, file("new"), OpenStatus::unknown);
  runtime::write<"(a)">(test_unit, "first");
  EXPECT_FALSE(runtime::try_open(101, file("new"), OpenStatus::unknown));
  runtime::write<"(a)">(test_unit, "second");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("new")), "first\nsecond\n");
}

TEST_F(Units, DevicesCanBeHeldTwice) {
  EXPECT_TRUE(runtime::try_open(test_unit, "/dev/null", OpenStatus::unknown));
  EXPECT_TRUE(runtime::try_open(101, "/dev/null", OpenStatus::unknown));
  runtime::write<"(a)">(test_unit, "gone");
  runtime::close(test_unit);
}

// Files whose numbers are all the same, each on a volume of its own.
class VolumesOfOneFile final : public ForwardingHost {
 public:
  runtime::FileFacts look(const std::string& path, std::error_code& reason) override {
    return moved(ForwardingHost::look(path, reason));
  }
  bool facts(int handle, runtime::FileFacts& facts, std::error_code& reason) override {
    const bool known = ForwardingHost::facts(handle, facts, reason);
    facts = moved(facts);
    return known;
  }

 private:
  static runtime::FileFacts moved(runtime::FileFacts facts) {
    facts.volume = std::exchange(facts.number, 1);
    return facts;
  }
};

TEST_F(Units, FilesOfTwoVolumesAreTwoFiles) {
  const VolumesOfOneFile host;
  write_bytes(file("other"), "b");
  open_with("a");
  EXPECT_TRUE(runtime::try_open(101, file("other"), OpenStatus::old));
  EXPECT_EQ(runtime::unit_of(file("other")), 101);
  EXPECT_EQ(runtime::unit_of(file("file")), test_unit);
}

TEST_F(Units, AFolderIsNoFile) {
  fs::create_directory(file("folder"));
  EXPECT_FALSE(runtime::try_open(test_unit, file("folder"), OpenStatus::unknown));
  EXPECT_FALSE(runtime::try_open(test_unit, file("folder"), OpenStatus::fresh));
  EXPECT_FALSE(runtime::try_open(test_unit, file("nowhere/file"), OpenStatus::unknown));
}

TEST_F(Units, BelowAFileNothingCanBeFound) {
  std::error_code reason;
  EXPECT_EQ(runtime::host().look(with_bytes("a") + "/b", reason).kind, runtime::FileKind::none);
  EXPECT_FALSE(reason) << reason.message();
}

TEST_F(Units, LinksThatTurnInACircleAreRefused) {
  fs::create_symlink(file("two"), file("one"));
  fs::create_symlink(file("one"), file("two"));
  for (const OpenStatus status : {OpenStatus::old, OpenStatus::unknown, OpenStatus::fresh}) {
    EXPECT_FALSE(runtime::try_open(test_unit, file("one"), status));
  }
  EXPECT_FALSE(runtime::file_exists(file("one")));
}

TEST_F(Units, APipeWithoutAPartnerIsRefusedAtOnce) {
  ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
  EXPECT_TRUE(runtime::file_exists(file("pipe")));
  EXPECT_FALSE(runtime::is_regular_output(file("pipe")));
  for (const OpenStatus status : {OpenStatus::old, OpenStatus::unknown, OpenStatus::fresh}) {
    EXPECT_FALSE(runtime::try_open(test_unit, file("pipe"), status));
  }
}

TEST_F(Units, APipeIsOpenedForReadingWithoutWaiting) {
  ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
  std::error_code reason;
  const int reader = runtime::host().open(file("pipe"), runtime::Access::read, reason);
  ASSERT_GE(reader, 0) << reason.message();
  char byte = 0;
  EXPECT_EQ(read(reader, &byte, 1), 0) << "nobody writes";
  EXPECT_EQ(write(reader, &byte, 1), -1) << "opened for reading only";
  close(reader);
}

TEST_F(Units, APipeWithAReaderGetsTheRecords) {
  ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
  const int reader = open(file("pipe").c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  runtime::open(test_unit, file("pipe"), OpenStatus::unknown);
  runtime::write<"(a)">(test_unit, "through the pipe");
  runtime::close(test_unit);
  std::array<char, 64> bytes{};
  const ssize_t got = read(reader, bytes.data(), bytes.size());
  ASSERT_GT(got, 0);
  EXPECT_EQ(std::string(bytes.data(), static_cast<std::size_t>(got)), "through the pipe\n");
  EXPECT_EQ(read(reader, bytes.data(), bytes.size()), 0);
  close(reader);
}

// Writing.

TEST_F(Units, WriteRecordsAndFormats) {
  runtime::open(test_unit, file("new"), OpenStatus::unknown);
  runtime::write<"(a)">(test_unit, "größer"_w1252);
  runtime::write<"(a,2x,f8.3/)">(test_unit, "T0001", 1.5F);
  runtime::write<"(a)">(test_unit, "");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("new")),
            "gr\xF6\xDF"
            "er\nT0001     1.500\n\n\n");
}

TEST_F(Units, TextWithoutAnEndStaysInTheRecord) {
  runtime::open(test_unit, file("new"), OpenStatus::unknown);
  runtime::write_text(test_unit, "a");
  runtime::write_text(test_unit, "b");
  runtime::write<"(a)">(test_unit, "c");
  runtime::write_text(test_unit, "d");
  runtime::write<"(i2)">(test_unit, 5);
  runtime::write_text(test_unit, "open");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("new")), "abc\nd 5\nopen\n");
}

TEST_F(Units, MuchTextIsHandedOverOnItsWay) {
  runtime::open(test_unit, file("new"), OpenStatus::unknown);
  const std::string text(3'000'000, 'x');
  runtime::write_text(test_unit, text);
  EXPECT_EQ(fs::file_size(file("new")), text.size());
  runtime::close(test_unit);
  EXPECT_EQ(fs::file_size(file("new")), text.size() + 1);
}

TEST_F(Units, WritingCutsTheFileAtTheCurrentRecord) {
  open_with("a\nb\nc\nd\n");
  next_record();
  next_record();
  runtime::write<"(a)">(test_unit, "x");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("file")), "a\nb\nx\n");
}

TEST_F(Units, WritingAtTheBeginReplacesEverything) {
  runtime::open(test_unit, with_bytes("a long old line\nanother\n"), OpenStatus::unknown);
  runtime::write<"(a)">(test_unit, "x");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("file")), "x\n");
}

TEST_F(Units, WithoutAWriteTheFileIsUntouched) {
  runtime::open(test_unit, with_bytes("a\r\nb"), OpenStatus::unknown);
  rest_of();
  runtime::rewind(test_unit);
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("file")), "a\r\nb");
}

TEST_F(Units, AppendAfterTheEnd) {
  open_with("a\nb\n");
  rest_of();
  runtime::backspace(test_unit);
  runtime::write<"(a)">(test_unit, "c");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("file")), "a\nb\nc\n");
}

TEST_F(Units, AppendEndsALastLineThatHadNoEnd) {
  open_with("a\nb");
  rest_of();
  runtime::backspace(test_unit);
  runtime::write<"(a)">(test_unit, "c");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("file")), "a\nb\nc\n");
}

TEST_F(Units, EndFileCutsWithoutAWrite) {
  open_with("a\nb\nc\n");
  next_record();
  runtime::end_file(test_unit);
  EXPECT_EQ(next_record(), "<end>");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("file")), "a\n");
}

TEST_F(Units, EndFileBehindAWriteKeepsIt) {
  open_with("a\nb\n");
  runtime::write<"(a)">(test_unit, "c");
  runtime::flush(test_unit);
  runtime::end_file(test_unit);
  runtime::write<"(a)">(test_unit, "d");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("file")), "c\nd\n");
}

TEST_F(Units, ReadBackWhatWasWritten) {
  runtime::open(test_unit, file("new"), OpenStatus::fresh);
  runtime::write<"(a)">(test_unit, "a");
  runtime::write_text(test_unit, "b");
  runtime::rewind(test_unit);
  EXPECT_EQ(rest_of(), (Records{"a", "b"}));
}

TEST_F(Units, ReadBackWhatWasWrittenBehindWhatWasRead) {
  open_with("a\nb\n");
  EXPECT_EQ(next_record(), "a");
  runtime::write<"(a)">(test_unit, "c");
  runtime::rewind(test_unit);
  EXPECT_EQ(rest_of(), (Records{"a", "c"}));
}

TEST_F(Units, ReadingBehindAWriteMeetsTheEnd) {
  open_with("a\nb\n");
  runtime::write<"(a)">(test_unit, "x");
  EXPECT_EQ(runtime::LineReader(test_unit, whole_width).rest(), "");
  EXPECT_EQ(next_record(), "<end>");
  runtime::backspace(test_unit);
  EXPECT_EQ(next_record(), "<end>");
  runtime::backspace(test_unit);
  runtime::backspace(test_unit);
  EXPECT_EQ(next_record(), "x");
}

TEST_F(Units, BackspaceAfterAWriteGoesBeforeTheRecord) {
  runtime::open(test_unit, file("new"), OpenStatus::fresh);
  runtime::write<"(a)">(test_unit, "a");
  runtime::write<"(a)">(test_unit, "b");
  runtime::backspace(test_unit);
  EXPECT_EQ(next_record(), "b");
  runtime::backspace(test_unit);
  runtime::write<"(a)">(test_unit, "c");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("new")), "a\nc\n");
}

TEST_F(Units, ARewoundUnitLosesWhatItWroteBefore) {
  runtime::open(test_unit, file("new"), OpenStatus::fresh);
  for (int i = 0; i < 10; ++i) runtime::write<"(a)">(test_unit, "an old record");
  runtime::rewind(test_unit);
  runtime::write<"(a)">(test_unit, "new");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("new")), "new\n");
}

TEST_F(Units, ARecordThatIsOpenEndsWhenItIsReadBack) {
  runtime::open(test_unit, file("new"), OpenStatus::fresh);
  runtime::write_text(test_unit, "open");
  runtime::rewind(test_unit);
  EXPECT_EQ(read_bytes(file("new")), "open\n");
  EXPECT_EQ(next_record(), "open");
  runtime::write<"(a)">(test_unit, "next");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("new")), "open\nnext\n");
}

TEST_F(Units, FlushHandsOverWhatIsWritten) {
  runtime::open(test_unit, file("new"), OpenStatus::fresh);
  runtime::write<"(a)">(test_unit, "a");
  runtime::write_text(test_unit, "b");
  runtime::flush(test_unit);
  EXPECT_EQ(read_bytes(file("new")), "a\nb");
  runtime::write<"(a)">(test_unit, "c");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("new")), "a\nbc\n");
}

TEST_F(Units, LargeFilesComeOutWhole) {
  runtime::open(test_unit, file("new"), OpenStatus::fresh);
  std::string wanted;
  for (int i = 0; i < 100'000; ++i) {
    runtime::write<"(i8,a)">(test_unit, i, " record");
    std::string number = std::to_string(i);
    wanted += std::string(8 - number.size(), ' ') + number + " record\n";
  }
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("new")), wanted);
}

TEST_F(Units, CloseWithRemoveDeletesTheFile) {
  const TestHost host;
  open_with("a");
  runtime::close(test_unit, CloseStatus::remove);
  EXPECT_EQ(host.calls(HostCall::close), 1);
  EXPECT_FALSE(fs::exists(file("file")));
  EXPECT_FALSE(runtime::is_connected(test_unit));
}

TEST_F(Units, ACompleteFileIsClosedOnce) {
  TestHost host;
  runtime::open(test_unit, file("new"), OpenStatus::unknown);
  runtime::write<"(a)">(test_unit, "a");
  runtime::complete(test_unit);
  EXPECT_EQ(read_bytes(file("new")), "a\n");
  EXPECT_EQ(host.calls(HostCall::close), 1);
  runtime::close(test_unit);
  EXPECT_EQ(host.calls(HostCall::close), 1);
}

TEST_F(Units, ACompleteResultCanBeRemoved) {
  runtime::open(test_unit, file("new"), OpenStatus::whole);
  runtime::write<"(a)">(test_unit, "a");
  runtime::complete(test_unit);
  EXPECT_EQ(read_bytes(file("new")), "a\n");
  runtime::close(test_unit, CloseStatus::remove);
  EXPECT_FALSE(fs::exists(file("new")));
}

TEST_F(Units, ClosingAFreeOrAStandardUnitDoesNothing) {
  runtime::close(test_unit);
  runtime::close(6, CloseStatus::remove);
  EXPECT_TRUE(runtime::try_close(test_unit, CloseStatus::keep));
  EXPECT_FALSE(runtime::is_connected(test_unit));
  EXPECT_TRUE(runtime::is_connected(6));
  EXPECT_EQ(runtime::connected_path(6), "");
  EXPECT_EQ(runtime::connected_path(test_unit), std::nullopt);
}

TEST_F(Units, CloseAllCompletesEveryFile) {
  for (int unit = 100; unit < 120; ++unit) {
    runtime::open(unit, file(std::to_string(unit)), OpenStatus::fresh);
    runtime::write_text(unit, "record of " + std::to_string(unit));
  }
  runtime::close_all();
  for (int unit = 100; unit < 120; ++unit) {
    EXPECT_FALSE(runtime::is_connected(unit));
    EXPECT_EQ(read_bytes(file(std::to_string(unit))), "record of " + std::to_string(unit) + "\n");
  }
  EXPECT_TRUE(runtime::is_connected(6));
}

TEST_F(Units, AFileThatMayOnlyBeReadIsRead) {
  TestHost host;
  host.fail(HostCall::open, 1, std::errc::permission_denied);
  open_with("a\n");
  EXPECT_EQ(next_record(), "a");
}

// Faults of the host.

TEST_F(Units, ShortTransfersAreCarriedOn) {
  TestHost host;
  host.limit_transfers(3);
  open_with("first record\r\nsecond\n");
  EXPECT_EQ(rest_of(), (Records{"first record", "second"}));
  runtime::backspace(test_unit);
  runtime::write<"(a)">(test_unit, "a third record");
  runtime::close(test_unit);
  EXPECT_EQ(read_bytes(file("file")), "first record\r\nsecond\na third record\n");
  EXPECT_GT(host.calls(HostCall::write), 4);
}

TEST_F(Units, FaultsOfOpeningAreToldToWhoAsks) {
  TestHost host;
  host.fail(HostCall::open, 1, std::errc::too_many_files_open, true);
  EXPECT_FALSE(runtime::try_open(test_unit, with_bytes("a"), OpenStatus::old));
  EXPECT_FALSE(runtime::try_open(test_unit, file("new"), OpenStatus::unknown));
  EXPECT_FALSE(runtime::try_open(test_unit, file("new"), OpenStatus::fresh));
  host.fail(HostCall::open, 1000, std::errc::io_error);
  host.fail(HostCall::facts, 1, std::errc::io_error);
  EXPECT_FALSE(runtime::try_open(test_unit, file("file"), OpenStatus::old));
  EXPECT_EQ(host.calls(HostCall::close), 1) << "what was opened is closed again";
  EXPECT_FALSE(runtime::is_connected(test_unit));
}

TEST_F(Units, FaultsOfClosingAreToldToWhoAsks) {
  TestHost host;
  runtime::open(test_unit, file("new"), OpenStatus::unknown);
  runtime::write<"(a)">(test_unit, "a");
  host.fail(HostCall::write, 1, std::errc::no_space_on_device);
  EXPECT_FALSE(runtime::try_close(test_unit, CloseStatus::keep));
  EXPECT_FALSE(runtime::is_connected(test_unit));
  open_with("a");
  host.fail(HostCall::remove, 1, std::errc::permission_denied);
  EXPECT_FALSE(runtime::try_close(test_unit, CloseStatus::remove));
  EXPECT_FALSE(runtime::is_connected(test_unit));
  EXPECT_TRUE(fs::exists(file("file")));
}

// The one line on standard error, and the quiet end of the program.
std::string fault_line(std::string_view operation, const std::string& path, std::string_view reason) {
  std::string line = "E/A-Fehler beim ";
  return line.append(operation).append(" von \"").append(path).append("\": ").append(reason).append("\n");
}

#define EXPECT_STOP(work, line) EXPECT_EXIT(work, testing::ExitedWithCode(0), testing::Eq(line))

TEST_F(UnitsDeathTest, OpeningWithoutAskingEndsTheProgram) {
  EXPECT_STOP(runtime::open(test_unit, file("missing"), OpenStatus::old),
              fault_line("Öffnen"_w1252, file("missing"), "No such file or directory"));
  fs::create_directory(file("folder"));
  EXPECT_STOP(runtime::open(test_unit, file("folder"), OpenStatus::old),
              fault_line("Öffnen"_w1252, file("folder"), "Is a directory"));
  EXPECT_STOP(runtime::open(test_unit, file("folder"), OpenStatus::unknown),
              fault_line("Öffnen"_w1252, file("folder"), "Is a directory"));
  EXPECT_STOP(runtime::open(test_unit, with_bytes("a"), OpenStatus::fresh),
              fault_line("Öffnen"_w1252, file("file"), "File exists"));
  EXPECT_STOP(runtime::open(test_unit, file("no/where"), OpenStatus::unknown),
              fault_line("Öffnen"_w1252, file("no/where"), "No such file or directory"));
}

TEST_F(UnitsDeathTest, AFileOnTwoUnitsEndsTheProgram) {
  open_with("a");
  EXPECT_STOP(runtime::open(101, file("file"), OpenStatus::unknown),
              fault_line("Öffnen"_w1252, file("file"), "Device or resource busy"));
  EXPECT_STOP(runtime::open(test_unit, file("other"), OpenStatus::unknown),
              fault_line("Öffnen"_w1252, file("other"), "Device or resource busy"));
}

TEST_F(UnitsDeathTest, AFreeUnitCannotBeUsed) {
  EXPECT_STOP(runtime::LineReader(77, whole_width), fault_line("Lesen", "Einheit 77", "Bad file descriptor"));
  EXPECT_STOP(runtime::write<"(a)">(77, ""), fault_line("Schreiben", "Einheit 77", "Bad file descriptor"));
  EXPECT_STOP(runtime::rewind(77), fault_line("Zurückspulen"_w1252, "Einheit 77", "Bad file descriptor"));
  EXPECT_STOP(runtime::backspace(77), fault_line("Zurücksetzen"_w1252, "Einheit 77", "Bad file descriptor"));
}

TEST_F(UnitsDeathTest, FaultsOfReadingEndTheProgram) {
  TestHost host;
  const auto read_after = [&](HostCall call, int nth) {
    open_with("some\nrecords\n");
    host.fail(call, nth, std::errc::io_error);
    rest_of();
  };
  const std::string line = fault_line("Lesen", file("file"), "Input/output error");
  EXPECT_STOP(read_after(HostCall::read, 1), line);
  EXPECT_STOP(read_after(HostCall::read, 2), line);
  EXPECT_STOP(read_after(HostCall::seek, 1), line);
  EXPECT_STOP(read_after(HostCall::facts, 1), line);
}

TEST_F(UnitsDeathTest, FaultsOfWritingEndTheProgram) {
  TestHost host;
  const auto write_after = [&](HostCall call) {
    open_with("some\nrecords\n");
    next_record();
    host.fail(call, 1, std::errc::io_error);
    runtime::write<"(a)">(test_unit, "x");
    runtime::flush(test_unit);
  };
  const std::string line = fault_line("Schreiben", file("file"), "Input/output error");
  EXPECT_STOP(write_after(HostCall::facts), line);
  EXPECT_STOP(write_after(HostCall::truncate), line);
  EXPECT_STOP(write_after(HostCall::seek), line);
  EXPECT_STOP(write_after(HostCall::write), line);
}

TEST_F(UnitsDeathTest, AFileThatMayOnlyBeReadRefusesTheWrite) {
  TestHost host;
  const auto write = [&] {
    host.fail(HostCall::open, 1, std::errc::permission_denied);
    open_with("kept\n");
    runtime::write<"(a)">(test_unit, "x");
  };
  EXPECT_STOP(write(), fault_line("Schreiben", file("file"), "Permission denied"));
  EXPECT_EQ(read_bytes(file("file")), "kept\n");
}

// A full disk is told once, and the other files are whole.
TEST_F(UnitsDeathTest, AFullDiskIsToldOnce) {
  TestHost host;
  const auto write = [&](void (*into)(int unit)) {
    runtime::open(101, file("whole"), OpenStatus::unknown);
    runtime::write<"(a)">(101, "complete");
    runtime::open(test_unit, file("cut"), OpenStatus::unknown);
    host.limit_transfers(4);
    host.fail(HostCall::write, 3, std::errc::no_space_on_device);
    into(test_unit);
  };
  const std::string line = fault_line("Schreiben", file("cut"), "No space left on device");
  EXPECT_STOP(write([](int unit) {
                runtime::write<"(a)">(unit, "one two three");
                runtime::flush(unit);
              }),
              line);
  EXPECT_EQ(read_bytes(file("whole")), "complete\n");
  EXPECT_EQ(read_bytes(file("cut")), "one two ");
  EXPECT_STOP(write([](int unit) {
                runtime::write_text(unit, "one two three");
                runtime::flush(unit);
              }),
              line);
  EXPECT_EQ(read_bytes(file("whole")), "complete\n");
  EXPECT_EQ(read_bytes(file("cut")), "one two ");
}

TEST_F(UnitsDeathTest, ADiskThatStaysFullIsToldOnce) {
  TestHost host;
  const auto write = [&] {
    runtime::open(test_unit, file("cut"), OpenStatus::unknown);
    host.fail(HostCall::write, 1, std::errc::no_space_on_device, true);
    runtime::write_text(test_unit, "text");
    runtime::flush(test_unit);
  };
  EXPECT_STOP(write(), fault_line("Schreiben", file("cut"), "No space left on device"));
}

TEST_F(UnitsDeathTest, AFullDiskIsMetInTheMiddleOfALargeFile) {
  TestHost host;
  const auto write = [&] {
    runtime::open(test_unit, file("cut"), OpenStatus::unknown);
    host.fail(HostCall::write, 2, std::errc::no_space_on_device, true);
    for (int i = 0; i < 100'000; ++i) runtime::write<"(a)">(test_unit, "a record of a large file");
    runtime::write<"(a)">(test_unit, "not reached");
  };
  EXPECT_STOP(write(), fault_line("Schreiben", file("cut"), "No space left on device"));
}

TEST_F(UnitsDeathTest, FaultsOfClosingEndTheProgram) {
  TestHost host;
  const auto close_after = [&](HostCall call, CloseStatus status) {
    open_with("old\n");
    runtime::write<"(a)">(test_unit, "x");
    host.fail(call, 1, std::errc::no_space_on_device);
    runtime::close(test_unit, status);
  };
  EXPECT_STOP(close_after(HostCall::write, CloseStatus::keep),
              fault_line("Schließen"_w1252, file("file"), "No space left on device"));
  EXPECT_STOP(close_after(HostCall::close, CloseStatus::keep),
              fault_line("Schließen"_w1252, file("file"), "No space left on device"));
  EXPECT_STOP(close_after(HostCall::remove, CloseStatus::remove),
              fault_line("Löschen"_w1252, file("file"), "No space left on device"));
}

}  // namespace
