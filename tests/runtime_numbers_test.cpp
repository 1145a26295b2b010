#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/arithmetic.h"
#include "runtime/edit_input.h"
#include "runtime/edit_output.h"
#include "runtime/put_fields.h"

namespace {

using runtime::edit_double;
using runtime::edit_integer;
using runtime::edit_single;
using runtime::NumberState;

constexpr float single_infinity = std::numeric_limits<float>::infinity();

std::vector<std::string> vectors(const std::string& name) {
  std::ifstream file(std::string(KV_VECTORS_DIR "/") + name, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + name);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with('#')) lines.push_back(line);
  }
  return lines;
}

std::uint32_t bits_of(std::string_view hexadecimal) {
  return static_cast<std::uint32_t>(std::stoul(std::string(hexadecimal), nullptr, 16));
}

std::string edited(const std::string& notation, runtime::Value value) {
  const runtime::ParsedFormat parsed = runtime::parse_format(notation);
  EXPECT_TRUE(parsed.valid) << notation;
  return runtime::formatted(parsed.view(), {&value, 1});
}

std::string fixed(std::size_t width, std::size_t decimals, double value) {
  return edited("(f" + std::to_string(width) + "." + std::to_string(decimals) + ")", value);
}

// The text of an independent formatter, justified into its field.
std::string printed(std::size_t width, int decimals, double value) {
  std::array<char, 512> bytes{};
  const int size = std::snprintf(bytes.data(), bytes.size(), "%.*f", decimals, value);
  std::string text(bytes.data(), static_cast<std::size_t>(size));
  if (decimals == 0) text += '.';
  const std::size_t zero = text.find("0.");
  const bool leading_zero = zero == (std::signbit(value) ? 1U : 0U);
  if (text.size() > width && decimals > 0 && leading_zero) text.erase(zero, 1);
  if (text.size() > width) return std::string(width, '*');
  return std::string(width - text.size(), ' ') + text;
}

TEST(CheckedPairs, OfReading) {
  const std::vector<std::string> lines = vectors("f5_0-read.txt");
  ASSERT_GT(lines.size(), 1000U);
  for (const std::string& line : lines) {
    const std::size_t bar = line.rfind('|');
    const std::string field = line.substr(0, bar);
    const std::string wanted = line.substr(bar + 1);
    ASSERT_EQ(field.size(), 5U) << line;
    const runtime::SingleEdit edit = edit_single(field);
    if (wanted == "error") {
      EXPECT_EQ(edit.state, NumberState::bad) << line;
      continue;
    }
    EXPECT_EQ(std::bit_cast<std::uint32_t>(edit.value), bits_of(wanted)) << line;
    EXPECT_EQ(edit.state, std::isinf(edit.value) ? NumberState::out_of_range : NumberState::good) << line;
  }
}

TEST(CheckedPairs, OfWriting) {
  struct Layout {
    std::size_t width;
    std::size_t decimals;
  };
  constexpr std::array<Layout, 6> layouts = {{{8, 3}, {10, 3}, {11, 3}, {9, 3}, {10, 0}, {12, 3}}};
  const std::vector<std::string> lines = vectors("fw_d-write.txt");
  ASSERT_GT(lines.size(), 1000U);
  for (const std::string& line : lines) {
    const auto value = std::bit_cast<float>(bits_of(std::string_view(line).substr(0, 8)));
    std::string texts = line.substr(0, 8);
    for (const Layout& layout : layouts) texts += '|' + fixed(layout.width, layout.decimals, value);
    EXPECT_EQ(texts, line);
  }
}

TEST(ReadingReals, FollowsEveryForm) {
  EXPECT_EQ(edit_single("").value, 0.0F);
  EXPECT_EQ(edit_single("     ").value, 0.0F);
  EXPECT_EQ(edit_single(" 1 2 . 5 ").value, 12.5F);
  EXPECT_EQ(edit_single("1.5E2").value, 150.0F);
  EXPECT_EQ(edit_single("1.5d 2").value, 150.0F);
  EXPECT_EQ(edit_single("1.5+2").value, 150.0F);
  EXPECT_EQ(edit_single("15-1").value, 1.5F);
  EXPECT_EQ(edit_single("1e+02").value, 100.0F);
  EXPECT_EQ(edit_single("E2").value, 0.0F);
  EXPECT_EQ(edit_single(".").value, 0.0F);
  EXPECT_EQ(edit_single("5.").value, 5.0F);
  EXPECT_EQ(edit_single("1E-60").value, 0.0F);
  EXPECT_EQ(edit_single("1E-60").state, NumberState::good);
  EXPECT_EQ(edit_single("0E99").value, 0.0F);
  EXPECT_EQ(edit_single("0E99").state, NumberState::good);
  for (const std::string_view zero : {"", "  ", "-", "+", ".", "+.", "E2", "0", "000", "0E9"}) {
    EXPECT_EQ(edit_single(zero).state, NumberState::good) << zero;
    EXPECT_EQ(std::bit_cast<std::uint32_t>(edit_single(zero).value), 0U) << zero;
  }
}

TEST(ReadingReals, AnExponentWithoutDigitsBeforeItIsAZeroThatKeepsItsSign) {
  for (const std::string_view zero : {"E2", "+E2", "+-1", "++4", ".+2", "D-9"}) {
    EXPECT_EQ(edit_single(zero).state, NumberState::good) << zero;
    EXPECT_EQ(std::bit_cast<std::uint32_t>(edit_single(zero).value), 0U) << zero;
  }
  for (const std::string_view zero : {"-E2", "--1", "-+4", "-.D2", "-0", "-.0"}) {
    EXPECT_EQ(edit_single(zero).state, NumberState::good) << zero;
    EXPECT_EQ(std::bit_cast<std::uint32_t>(edit_single(zero).value), 0x80000000U) << zero;
  }
}

TEST(ReadingReals, RefusesEverythingElse) {
  for (const std::string_view field :
       {"x",   "1x",       "x1",  "1,5", "1.5.",  "..",     "1\t",  "\t",    "---1", "--",       "--.",
        "1-",  "1+",       "1E",  "1E+", "1E1.5", "1E 1E1", "E",    "1EE1",  "1ED1", "1 E +- 1", "Inf",
        "inf", "Infinity", "NaN", "nan", "0x10",  "1e5x",   "\xA0", "1'000", "$1",   "1/2",      "*****"}) {
    EXPECT_EQ(edit_single(field).state, NumberState::bad) << field;
    EXPECT_EQ(edit_single(field).value, 0.0F) << field;
    EXPECT_EQ(edit_double(field).state, NumberState::bad) << field;
    EXPECT_EQ(edit_double(field).value, 0.0) << field;
  }
  EXPECT_EQ(edit_single(std::string_view("1\0", 2)).state, NumberState::bad);
  EXPECT_EQ(edit_single(std::string_view("\0", 1)).state, NumberState::bad);
}

TEST(ReadingReals, KnowsTheEndsOfTheRange) {
  EXPECT_EQ(edit_single("3.4028235E38").value, std::numeric_limits<float>::max());
  EXPECT_EQ(edit_single("3.4028235E38").state, NumberState::good);
  EXPECT_EQ(edit_single("3.4028236E38").state, NumberState::out_of_range);
  EXPECT_EQ(edit_single("1E39").value, single_infinity);
  EXPECT_EQ(edit_single("-1E39").value, -single_infinity);
  EXPECT_EQ(edit_single("-1E999999999999").state, NumberState::out_of_range);
  EXPECT_EQ(edit_single("1E-999999999999").value, 0.0F);
  EXPECT_EQ(edit_single("1E-45").value, std::numeric_limits<float>::denorm_min());
  EXPECT_EQ(edit_double("1E39").value, 1E39);
  EXPECT_EQ(edit_double("1E309").state, NumberState::out_of_range);
}

TEST(ReadingReals, RoundsFromEveryDigit) {
  // Half way between two single-precision neighbours, decided by a digit far behind.
  const std::string tie = "16777217";
  EXPECT_EQ(edit_single(tie).value, 16777216.0F);
  EXPECT_EQ(edit_single(tie + "." + std::string(2000, '0')).value, 16777216.0F);
  EXPECT_EQ(edit_single(tie + "." + std::string(2000, '0') + "1").value, 16777218.0F);
  EXPECT_EQ(edit_single(std::string(3000, '0') + "12.5").value, 12.5F);
  EXPECT_EQ(edit_single("." + std::string(3000, '0') + "125E3002").value, 12.5F);
  EXPECT_EQ(edit_single("125" + std::string(3000, '0') + "E-3001").value, 12.5F);
}

TEST(ReadingReals, DecimalsCountOnlyWithoutAPoint) {
  EXPECT_EQ(edit_single("12345", 2).value, 123.45F);
  EXPECT_EQ(edit_single("1234.", 2).value, 1234.0F);
  EXPECT_EQ(edit_single("5E1", 2).value, 0.5F);
  EXPECT_EQ(edit_single("", 2).value, 0.0F);
  EXPECT_EQ(edit_single("1234567", 10).value, 1.234567E-4F);
  EXPECT_EQ(edit_single("1234567", 11).value, 1.234567E-5F);
  EXPECT_EQ(edit_single("1234567", 40).value, 1.234567E-34F);
}

TEST(ReadingReals, AgreesWithTheLibraryOnRandomFields) {
  std::mt19937 random(20210517);
  std::uniform_int_distribution<int> length(1, 12);
  std::uniform_int_distribution<std::size_t> character(0, 14);
  constexpr std::string_view alphabet = "0123456789.0-E5";
  int good = 0;
  for (int i = 0; i < 300000; ++i) {
    std::string field;
    for (int n = length(random); n > 0; --n) field += alphabet[character(random)];
    const runtime::SingleEdit edit = edit_single(field);
    char* end = nullptr;
    const float wanted = std::strtof(field.c_str(), &end);
    // The library knows fewer forms; where it takes the whole field, both must agree.
    if (end != field.c_str() + field.size()) continue;
    ++good;
    EXPECT_EQ(std::bit_cast<std::uint32_t>(edit.value), std::bit_cast<std::uint32_t>(wanted)) << field;
    EXPECT_EQ(edit.state, std::isinf(wanted) ? NumberState::out_of_range : NumberState::good) << field;
  }
  EXPECT_GT(good, 50000);
}

TEST(ReadingReals, ReadsBackWhatRandomBitsPrint) {
  std::mt19937 random(8);
  std::array<char, 64> text{};
  for (int i = 0; i < 200000; ++i) {
    const auto bits = static_cast<std::uint32_t>(random());
    const auto value = std::bit_cast<float>(bits);
    if (!std::isfinite(value)) continue;
    std::snprintf(text.data(), text.size(), "%.9g", static_cast<double>(value));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(edit_single(text.data()).value), bits) << text.data();
    EXPECT_EQ(edit_double(text.data()).value, std::strtod(text.data(), nullptr)) << text.data();
  }
}

TEST(ReadingWholeNumbers, FollowsEveryForm) {
  EXPECT_EQ(edit_integer("").value, 0);
  EXPECT_EQ(edit_integer("   ").state, NumberState::good);
  EXPECT_EQ(edit_integer(" 1 2 ").value, 12);
  EXPECT_EQ(edit_integer("+7").value, 7);
  EXPECT_EQ(edit_integer("- 7").value, -7);
  EXPECT_EQ(edit_integer("2147483647").value, std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(edit_integer("-2147483648").value, std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(edit_integer("-2147483648").state, NumberState::good);
  for (const std::string_view beyond : {"2147483648", "-2147483649", "99999999999999999999999999999999"}) {
    EXPECT_EQ(edit_integer(beyond).state, NumberState::out_of_range) << beyond;
  }
  for (const std::string_view bad : {"x", "1.", "1.5", "-", "+", "--1", "1-", "1E2", "\t", ","}) {
    EXPECT_EQ(edit_integer(bad).state, NumberState::bad) << bad;
  }
}

TEST(WritingReals, RoundsExactlyWithTiesToEven) {
  EXPECT_EQ(fixed(8, 3, 0.0625), "   0.062");
  EXPECT_EQ(fixed(8, 3, 0.1875), "   0.188");
  EXPECT_EQ(fixed(8, 3, 0.0005F), "   0.001") << "a little above the tie in single precision";
  EXPECT_EQ(fixed(5, 0, 0.5), "   0.");
  EXPECT_EQ(fixed(5, 0, 1.5), "   2.");
  EXPECT_EQ(fixed(5, 0, 2.5), "   2.");
  EXPECT_EQ(fixed(6, 1, 0.25), "   0.2");
  EXPECT_EQ(fixed(8, 3, 9.9996), "  10.000");
}

TEST(WritingReals, KeepsTheMinusOfAValueThatRoundsToZero) {
  EXPECT_EQ(fixed(8, 3, -0.0), "  -0.000");
  EXPECT_EQ(fixed(8, 3, -0.0001), "  -0.000");
  EXPECT_EQ(fixed(4, 0, -0.3), " -0.");
}

TEST(WritingReals, DropsTheZeroBeforeThePointWhenItMust) {
  EXPECT_EQ(fixed(4, 3, 0.5), ".500");
  EXPECT_EQ(fixed(5, 3, -0.5), "-.500");
  EXPECT_EQ(fixed(5, 3, 0.5), "0.500");
  EXPECT_EQ(fixed(4, 3, -0.5), "****");
  EXPECT_EQ(fixed(3, 3, 0.5), "***");
  EXPECT_EQ(fixed(4, 3, 10.5), "****");
  EXPECT_EQ(fixed(2, 0, 0.0), "0.");
  EXPECT_EQ(fixed(1, 0, 0.0), "*");
}

TEST(WritingReals, ShowsWhatIsNotFinite) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(fixed(10, 3, infinity), "  Infinity");
  EXPECT_EQ(fixed(8, 3, infinity), "Infinity");
  EXPECT_EQ(fixed(7, 3, infinity), "    Inf");
  EXPECT_EQ(fixed(3, 3, infinity), "Inf");
  EXPECT_EQ(fixed(2, 1, infinity), "**");
  EXPECT_EQ(fixed(9, 3, -infinity), "-Infinity");
  EXPECT_EQ(fixed(8, 3, -infinity), "    -Inf");
  EXPECT_EQ(fixed(4, 3, -infinity), "-Inf");
  EXPECT_EQ(fixed(3, 2, -infinity), "***");
  EXPECT_EQ(fixed(8, 3, nan), "     NaN");
  EXPECT_EQ(fixed(3, 2, nan), "NaN");
  EXPECT_EQ(fixed(2, 1, nan), "**");
}

TEST(WritingReals, TakesEveryWidthAndTheLargestValues) {
  EXPECT_EQ(fixed(400, 2, std::numeric_limits<double>::max()),
            printed(400, 2, std::numeric_limits<double>::max()));
  EXPECT_EQ(fixed(8, 3, std::numeric_limits<double>::max()), "********");
  EXPECT_EQ(fixed(60, 50, std::numeric_limits<double>::denorm_min()),
            printed(60, 50, std::numeric_limits<double>::denorm_min()));
  EXPECT_EQ(fixed(9999, 9000, 0.1).size(), 9999U);
}

TEST(WritingReals, AgreesWithTheLibraryOnRandomBits) {
  std::mt19937 random(42);
  std::uniform_int_distribution<int> width(1, 24);
  std::uniform_int_distribution<int> decimals(0, 12);
  for (int i = 0; i < 300000; ++i) {
    const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (!std::isfinite(value)) continue;
    const auto w = static_cast<std::size_t>(width(random));
    const int d = decimals(random);
    ASSERT_EQ(fixed(w, static_cast<std::size_t>(d), value), printed(w, d, value)) << std::hexfloat << value;
  }
}

TEST(WritingReals, AgreesWithTheLibraryOnValuesOfEveryday) {
  std::mt19937 random(43);
  std::uniform_int_distribution<int> eighths(-40'000'000, 40'000'000);
  std::uniform_real_distribution<double> area(-1000.0, 100000.0);
  std::uniform_int_distribution<int> decimals(0, 9);
  for (int i = 0; i < 200000; ++i) {
    const int d = decimals(random);
    // Sixteenths are ties again and again.
    const double tie = eighths(random) / 16.0;
    ASSERT_EQ(fixed(20, static_cast<std::size_t>(d), tie), printed(20, d, tie)) << tie;
    const double real = area(random);
    ASSERT_EQ(fixed(10, static_cast<std::size_t>(d), real), printed(10, d, real)) << std::hexfloat << real;
    const auto single = static_cast<float>(real);
    ASSERT_EQ(fixed(10, 3, single), printed(10, 3, single)) << std::hexfloat << single;
  }
}

TEST(WritingWholeNumbers, TakesEveryWidth) {
  for (const std::int32_t value : {0, 7, -7, INT32_MAX, INT32_MIN}) {
    const std::string digits = std::to_string(value);
    for (std::size_t width = 1; width <= 40; ++width) {
      const std::string expected =
          digits.size() > width ? std::string(width, '*') : std::string(width - digits.size(), ' ') + digits;
      EXPECT_EQ(edited("(i" + std::to_string(width) + ")", value), expected);
    }
  }
}

TEST(IntegerPower, SquaresFromTheLowBit) {
  EXPECT_EQ(runtime::integer_power(10.0F, 0), 1.0F);
  EXPECT_EQ(runtime::integer_power(10.0F, 1), 10.0F);
  EXPECT_EQ(runtime::integer_power(10.0F, 10), 1E10F);
  EXPECT_EQ(runtime::integer_power(-2.0F, 3), -8.0F);
  EXPECT_EQ(runtime::integer_power(2.0F, -3), 0.125F);
  EXPECT_EQ(runtime::integer_power(10.0F, -2), 1.0F / 100.0F);
  EXPECT_EQ(runtime::integer_power(0.0F, 0), 1.0F);
}

TEST(IntegerPower, RoundsInThatOrder) {
  float square = 10.0F;
  float power = 1.0F;
  // 38 is 2 + 4 + 32.
  for (int bit = 1; bit <= 5; ++bit) {
    square *= square;
    if (bit != 3 && bit != 4) power *= square;
  }
  EXPECT_EQ(runtime::integer_power(10.0F, 38), power);
  EXPECT_EQ(runtime::integer_power(10.0F, -38), 1.0F / power);
}

TEST(IntegerPower, StaysDefinedAtTheEnds) {
  EXPECT_EQ(runtime::integer_power(10.0F, 39), single_infinity);
  EXPECT_EQ(runtime::integer_power(10.0F, -60), 0.0F);
  EXPECT_EQ(runtime::integer_power(0.0F, -1), single_infinity);
  EXPECT_EQ(runtime::integer_power(1.0F, std::numeric_limits<std::int32_t>::max()), 1.0F);
  EXPECT_EQ(runtime::integer_power(1.0F, std::numeric_limits<std::int32_t>::min()), 1.0F);
  EXPECT_EQ(runtime::integer_power(2.0F, std::numeric_limits<std::int32_t>::min()), 0.0F);
  EXPECT_EQ(runtime::integer_power(-1.0F, std::numeric_limits<std::int32_t>::max()), -1.0F);
}

TEST(NearestInteger, RoundsHalvesAwayFromZero) {
  EXPECT_EQ(runtime::nearest_integer(0.5), 1);
  EXPECT_EQ(runtime::nearest_integer(-0.5), -1);
  EXPECT_EQ(runtime::nearest_integer(1.5), 2);
  EXPECT_EQ(runtime::nearest_integer(2.5), 3);
  EXPECT_EQ(runtime::nearest_integer(-2.5), -3);
  EXPECT_EQ(runtime::nearest_integer(2.4999), 2);
  EXPECT_EQ(runtime::nearest_integer(0.49999999999999994), 0);
  EXPECT_EQ(runtime::nearest_integer(-0.2), 0);
}

TEST(NearestInteger, StaysInTheRange) {
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(runtime::nearest_integer(2147483646.5), most);
  EXPECT_EQ(runtime::nearest_integer(2147483646.4), most - 1);
  EXPECT_EQ(runtime::nearest_integer(2147483648.0), most);
  EXPECT_EQ(runtime::nearest_integer(1E300), most);
  EXPECT_EQ(runtime::nearest_integer(-2147483648.4), least);
  EXPECT_EQ(runtime::nearest_integer(-1E300), least);
  EXPECT_EQ(runtime::nearest_integer(std::numeric_limits<double>::infinity()), most);
  EXPECT_EQ(runtime::nearest_integer(-std::numeric_limits<double>::infinity()), least);
  EXPECT_EQ(runtime::nearest_integer(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(TruncatedInteger, CutsTowardZeroInTheRange) {
  EXPECT_EQ(runtime::truncated_integer(2.999), 2);
  EXPECT_EQ(runtime::truncated_integer(-2.999), -2);
  EXPECT_EQ(runtime::truncated_integer(1E300), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(runtime::truncated_integer(-1E300), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(runtime::truncated_integer(std::numeric_limits<double>::quiet_NaN()), 0);
}

// Layouts that the compiler knows.

template <std::size_t width, std::size_t decimals>
std::string known_fixed(float value) {
  std::array<char, width> text{};
  const char* const end = runtime::detail::put_fixed<width, decimals>(text.data(), value);
  return {text.data(), static_cast<std::size_t>(end - text.data())};
}

std::string integer_text(std::size_t width, std::size_t minimum, std::int32_t value) {
  return edited("(i" + std::to_string(width) + "." + std::to_string(minimum) + ")", value);
}

template <std::size_t width, std::size_t minimum>
std::string known_integer(std::int32_t value) {
  std::array<char, width> text{};
  const char* const end = runtime::detail::put_integer<width, minimum>(text.data(), value);
  return {text.data(), static_cast<std::size_t>(end - text.data())};
}

template <std::size_t width, int decimals>
void expect_printed(float value) {
  EXPECT_EQ((known_fixed<width, std::size_t{decimals}>(value)), printed(width, decimals, value)) << value;
}

void expect_known_layouts(float value) {
  expect_printed<6, 2>(value);
  expect_printed<7, 3>(value);
  expect_printed<8, 3>(value);
  expect_printed<10, 3>(value);
  expect_printed<11, 3>(value);
  expect_printed<14, 1>(value);
  expect_printed<9, 7>(value);
}

TEST(KnownLayout, HoldsTiesLimitsAndSigns) {
  for (const float value :
       {0.0F,      -0.0F,     0.0005F,    0.0625F,    0.1875F,     0.9995F,     1.0F,
        9.9995F,   999.9995F, 9999.999F,  9999.9995F, 10000.0F,    99999.99F,   99999.995F,
        100000.0F, 999999.9F, 1000000.0F, 9999999.0F, 10000000.0F, 16777216.0F, 1.0E9F,
        -0.0001F,  -1.5F,     -9999.5F,   -99999.9F,  1.0E-38F,    3.0E38F}) {
    expect_known_layouts(value);
  }
}

TEST(KnownLayout, IsThatOfTheCLibrary) {
  std::mt19937 random(20240229);
  for (int i = 0; i < 200000; ++i) {
    const auto exponent = static_cast<int>(random() % 40) - 14;
    expect_known_layouts(std::ldexp(static_cast<float>(random() % 16777216), exponent - 12));
  }
}

TEST(KnownLayout, OfWholeNumbersIsTheGeneralOne) {
  std::vector<std::int32_t> values = {0, -1, std::numeric_limits<std::int32_t>::max(),
                                      std::numeric_limits<std::int32_t>::min()};
  for (std::int32_t power = 1; power <= 100000000; power *= 10) {
    for (const std::int32_t value : {power - 1, power, power + 1, 5 * power, -power}) values.push_back(value);
  }
  for (const std::int32_t value : values) {
    EXPECT_EQ((known_integer<4, 0>(value)), integer_text(4, 0, value)) << value;
    EXPECT_EQ((known_integer<8, 0>(value)), integer_text(8, 0, value)) << value;
    EXPECT_EQ((known_integer<6, 3>(value)), integer_text(6, 3, value)) << value;
    EXPECT_EQ((known_integer<12, 5>(value)), integer_text(12, 5, value)) << value;
  }
}

}  // namespace
