#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/edit_output.h"
#include "runtime/format.h"
#include "runtime/read_fields.h"

namespace {

using runtime::Edit;
using runtime::parse_format;
using runtime::Target;
using runtime::Value;

bool valid(std::string_view notation) {
  return parse_format(notation).valid;
}

// The elements as "T10 X2 A0 I5.3 F8.3 '...' /", one after the other.
std::string elements(std::string_view notation) {
  const runtime::ParsedFormat parsed = parse_format(notation);
  if (!parsed.valid) return "wrong";
  std::string text;
  for (const runtime::FormatItem& item : parsed.view().items) {
    if (!text.empty()) text += ' ';
    const std::string width = std::to_string(item.width);
    switch (item.edit) {
      case Edit::literal:
        text.append("'").append(parsed.view().literal(item)).append("'");
        break;
      case Edit::skip:
        text += 'X' + width;
        break;
      case Edit::tab:
        text += 'T' + width;
        break;
      case Edit::slash:
        text += '/';
        break;
      case Edit::text:
        text += 'A' + width;
        break;
      case Edit::integer:
        text += 'I' + width + '.' + std::to_string(item.decimals);
        break;
      case Edit::fixed:
        text += 'F' + width + '.' + std::to_string(item.decimals);
        break;
    }
  }
  return text;
}

TEST(Notation, HasEveryElement) {
  EXPECT_EQ(elements("(a)"), "A0");
  EXPECT_EQ(elements("(a5)"), "A5");
  EXPECT_EQ(elements("(i4)"), "I4.0");
  EXPECT_EQ(elements("(i0)"), "I0.0");
  EXPECT_EQ(elements("(i5.3)"), "I5.3");
  EXPECT_EQ(elements("(f8.3)"), "F8.3");
  EXPECT_EQ(elements("(f10.0)"), "F10.0");
  EXPECT_EQ(elements("(x)"), "X1");
  EXPECT_EQ(elements("(10x)"), "X10");
  EXPECT_EQ(elements("(t25)"), "T25");
  EXPECT_EQ(elements("(/)"), "/");
  EXPECT_EQ(elements("('text')"), "'text'");
}

TEST(Notation, CountsRepeat) {
  EXPECT_EQ(elements("(3a)"), "A0 A0 A0");
  EXPECT_EQ(elements("(2f5.0)"), "F5.0 F5.0");
  EXPECT_EQ(elements("(2i4,2/)"), "I4.0 I4.0 / /");
  EXPECT_EQ(elements("(2(a,1x),6i1)"), "A0 X1 A0 X1 I1.0 I1.0 I1.0 I1.0 I1.0 I1.0");
  EXPECT_EQ(elements("(a,2(f5.0,2(i1,x)))"), "A0 F5.0 I1.0 X1 I1.0 X1 F5.0 I1.0 X1 I1.0 X1");
  EXPECT_EQ(elements("((((a))))"), "A0");
}

TEST(Notation, CaseAndBlanksDoNotCount) {
  EXPECT_EQ(elements("( A , 2X , F8.3 , I4.2 , T9 , / )"), "A0 X2 F8.3 I4.2 T9 /");
  EXPECT_EQ(elements(" (a 5,f 8 . 3,i 4 . 2,t 9, 2 x, 2 (a))"), "A5 F8.3 I4.2 T9 X2 A0 A0");
  EXPECT_EQ(elements("(a) "), "A0");
}

TEST(Notation, QuotedTextsStandAsTheyAre) {
  EXPECT_EQ(elements("(' two  blanks ')"), "' two  blanks '");
  EXPECT_EQ(elements("('it''s')"), "'it's'");
  EXPECT_EQ(elements("('''')"), "'''");
  EXPECT_EQ(elements("('''a''''b''')"), "''a''b''");
  EXPECT_EQ(elements("('')"), "''");
  EXPECT_EQ(elements("('(a,/)','x')"), "'(a,/)' 'x'");
  EXPECT_EQ(elements("('größer')"),
            "'gr\xF6\xDF"
            "er'");
}

TEST(Notation, SlashesNeedNoCommas) {
  EXPECT_EQ(elements("(a/3x,'b'/)"), "A0 / X3 'b' /");
  EXPECT_EQ(elements("(a,/,a)"), "A0 / A0");
  EXPECT_EQ(elements("(a//a)"), "A0 / / A0");
  EXPECT_EQ(elements("('a'2/'b')"), "'a' / / 'b'");
}

TEST(Notation, RefusesWhatIsWrong) {
  for (const std::string_view wrong :
       {"",         "a",       "(",      ")",      "(a",      "a)",    "()",       "(a))",
        "(a)x",     "(,)",     "(a,)",   "(,a)",   "(a,,a)",  "(a a)", "(2x'b')",  "('a''b' 'c')",
        "('a)",     "('a",     "(b)",    "(q5)",   "(e10.3)", "(g0)",  "(a-1)",    "(-1x)",
        "(0x)",     "(0a)",    "(0(a))", "(a0)",   "(i)",     "(i.3)", "(i5.)",    "(i5.6)",
        "(f)",      "(f8)",    "(f.3)",  "(f8.)",  "(f0.3)",  "(t)",   "(t0)",     "(2t5)",
        "(3)",      "(2'a')",  "(2())",  "(a,())", "(a;a)",   "(\ta)", "(10000x)", "(99999999999999999999x)",
        "(f8.3.1)", "(\"a\")", "(a\n)"}) {
    EXPECT_FALSE(valid(wrong)) << wrong;
  }
  EXPECT_FALSE(valid(std::string_view("(a\0)", 4)));
}

TEST(Notation, RefusesMoreThanItsRoom) {
  EXPECT_TRUE(valid("(96a)"));
  EXPECT_FALSE(valid("(97a)"));
  EXPECT_FALSE(valid("(9999(9999(9999(a))))"));
  EXPECT_TRUE(valid("('" + std::string(1024, 'x') + "')"));
  EXPECT_FALSE(valid("('" + std::string(1025, 'x') + "')"));
  EXPECT_FALSE(valid("('\xCE\xB1')")) << "a character that the code page lacks";
}

TEST(Notation, RefusesBracketsNestedTooDeeply) {
  // The outer bracket and so many groups.
  const auto nested = [](std::size_t groups) {
    return std::string(groups + 1, '(').append("a").append(groups + 1, ')');
  };
  EXPECT_TRUE(valid(nested(20)));
  EXPECT_FALSE(valid(nested(21)));
  EXPECT_FALSE(valid(nested(1'000'000)));
}

TEST(Notation, IsTheSameAtCompileTime) {
  constexpr runtime::Format format = runtime::format<"(a,2(1x,f8.3),'ä',i0/)">;
  static_assert(format.items.size() == 8);
  static_assert(format.fields() == 4);
  EXPECT_EQ(format.field(0).edit, Edit::text);
  EXPECT_EQ(format.field(2).width, 8);
  EXPECT_EQ(format.field(3).edit, Edit::integer);
  EXPECT_EQ(format.literal(format.items[5]), "\xE4");
  EXPECT_EQ(elements("(a,2(1x,f8.3),'ä',i0/)"), "A0 X1 F8.3 X1 F8.3 '\xE4' I0.0 /");
}

std::string written(std::string_view notation, std::initializer_list<Value> values) {
  const runtime::ParsedFormat parsed = parse_format(notation);
  EXPECT_TRUE(parsed.valid) << notation;
  return runtime::formatted(parsed.view(), std::vector<Value>(values), "|");
}

TEST(Writing, Texts) {
  EXPECT_EQ(written("(a)", {"whole text "}), "whole text ");
  EXPECT_EQ(written("(a)", {""}), "");
  EXPECT_EQ(written("(a3)", {"abcde"}), "abc");
  EXPECT_EQ(written("(a3)", {"abc"}), "abc");
  EXPECT_EQ(written("(a5)", {"abc"}), "  abc");
  EXPECT_EQ(written("(a2)", {""}), "  ");
  EXPECT_EQ(written("(a)", {std::string(5000, 'x')}), std::string(5000, 'x'));
  EXPECT_EQ(written("(a)", {std::string("\0\xFC", 2)}), std::string("\0\xFC", 2));
}

TEST(Writing, WholeNumbers) {
  EXPECT_EQ(written("(i4)", {7}), "   7");
  EXPECT_EQ(written("(i4)", {-123}), "-123");
  EXPECT_EQ(written("(i4)", {-1234}), "****");
  EXPECT_EQ(written("(i4)", {12345}), "****");
  EXPECT_EQ(written("(i1)", {0}), "0");
  EXPECT_EQ(written("(i5.3)", {7}), "  007");
  EXPECT_EQ(written("(i5.3)", {-7}), " -007");
  EXPECT_EQ(written("(i3.3)", {-7}), "***");
  EXPECT_EQ(written("(i5.3)", {12345}), "12345");
  EXPECT_EQ(written("(i2.2)", {5}), "05");
  EXPECT_EQ(written("(i0)", {0}), "0");
  EXPECT_EQ(written("(i0)", {260}), "260");
  EXPECT_EQ(written("(i0)", {-260}), "-260");
  EXPECT_EQ(written("(i0.5)", {26}), "00026");
  EXPECT_EQ(written("(i11)", {std::numeric_limits<std::int32_t>::min()}), "-2147483648");
  EXPECT_EQ(written("(i0)", {std::numeric_limits<std::int64_t>::min()}), "-9223372036854775808");
  EXPECT_EQ(written("(i0)", {std::numeric_limits<std::int64_t>::max()}), "9223372036854775807");
}

TEST(Writing, Reals) {
  EXPECT_EQ(written("(f8.3)", {1.5F}), "   1.500");
  EXPECT_EQ(written("(f8.3)", {0.0625F}), "   0.062");
  EXPECT_EQ(written("(f10.0)", {123.0}), "      123.");
  EXPECT_EQ(written("(f8.3,f10.3)", {-0.0001F, 12345678.0F}), "  -0.000**********");
}

TEST(Writing, SkipsAndTabs) {
  EXPECT_EQ(written("(a,2x,a)", {"a", "b"}), "a  b");
  EXPECT_EQ(written("(2x,a)", {"a"}), "  a");
  EXPECT_EQ(written("(t5,a)", {"a"}), "    a");
  EXPECT_EQ(written("(a,t5,a)", {"abc", "x"}), "abc x");
  EXPECT_EQ(written("(a,t2,a,a)", {"abcde", "x", "y"}), "axyde");
  EXPECT_EQ(written("(a,t4,a)", {"abcde", "xyz"}), "abcxyz");
  EXPECT_EQ(written("(a,t1,a,t9,a)", {"abcde", "x", "z"}), "xbcde   z");
  EXPECT_EQ(written("('abc'/t2,a,t1,'q')", {"x"}), "abc|qx") << "a tab counts from the record's begin";
}

TEST(Writing, SkipsAtTheEndAreNotWritten) {
  EXPECT_EQ(written("(a,2x)", {"a"}), "a");
  EXPECT_EQ(written("(a,t20)", {"a"}), "a");
  EXPECT_EQ(written("(a,2x/a,3x/)", {"a", "b"}), "a|b|");
  EXPECT_EQ(written("(a,2x,'')", {"a"}), "a  ");
}

TEST(Writing, Slashes) {
  EXPECT_EQ(written("(a/a)", {"a", "b"}), "a|b");
  EXPECT_EQ(written("(a/)", {"a"}), "a|");
  EXPECT_EQ(written("(/a)", {"a"}), "|a");
  EXPECT_EQ(written("(2(a/))", {"a", "b"}), "a|b|");
  EXPECT_EQ(written("(//)", {}), "||");
}

TEST(Writing, StopsAtTheFirstFieldWithoutAValue) {
  EXPECT_EQ(written("(a,' of ',a,' in all'/)", {"1"}), "1 of ");
  EXPECT_EQ(written("('none: ',i5,'x')", {}), "none: ");
  EXPECT_EQ(written("(a/3x,a)", {"1"}), "1|");
  EXPECT_EQ(written("(a,2x,a)", {"1"}), "1");
  EXPECT_EQ(written("('all')", {}), "all");
}

TEST(Writing, MarksAFieldOfTheWrongKind) {
  EXPECT_EQ(written("(i4)", {"text"}), "****");
  EXPECT_EQ(written("(f8.3)", {5}), "********");
  EXPECT_EQ(written("(a5)", {5}), "*****");
  EXPECT_EQ(written("(a,i0)", {1.5, "x"}), "**");
  EXPECT_EQ(written("(i4)", {7, 8}), "   7") << "a value left over is not written";
}

TEST(Reading, TakesFieldsFromTheirColumns) {
  float area = -1;
  float sealing = -1;
  std::array<char, 5> name{};
  const auto& format = runtime::format<"(3X,A5,2X,2F5.0)">;
  EXPECT_TRUE(runtime::read_fields("K  K0001   1.5  .25", format,
                                   {Target(std::span<char>(name)), Target(area), Target(sealing)}));
  EXPECT_EQ(std::string(name.data(), 5), "K0001");
  EXPECT_EQ(area, 1.5F);
  EXPECT_EQ(sealing, 0.25F);
}

TEST(Reading, ColumnsPastTheEndAreBlanks) {
  float first = -1;
  float second = -1;
  EXPECT_TRUE(runtime::read_fields("          12", runtime::format<"(10X,2F5.0)">, {first, second}));
  EXPECT_EQ(first, 12.0F);
  EXPECT_EQ(second, 0.0F);
  EXPECT_TRUE(runtime::read_fields("", runtime::format<"(10X,2F5.0)">, {first, second}));
  EXPECT_EQ(first, 0.0F);
}

TEST(Reading, StoresTheValuesBeforeABadOne) {
  float first = -1;
  float second = -2;
  const auto& format = runtime::format<"(2F5.0)">;
  EXPECT_FALSE(runtime::read_fields("  1.5  x.5", format, {first, second}));
  EXPECT_EQ(first, 1.5F);
  EXPECT_EQ(second, -2.0F);
  EXPECT_FALSE(runtime::read_fields("  2,5  3.5", format, {first, second}));
  EXPECT_EQ(first, 1.5F);
  EXPECT_EQ(second, -2.0F);
}

TEST(Reading, ANumberBeyondItsRangeIsBad) {
  float single = -1;
  double real = -1;
  std::int32_t whole = -1;
  EXPECT_FALSE(runtime::read_fields(" 1E39", runtime::format<"(f5.0)">, {single}));
  EXPECT_EQ(single, -1.0F);
  EXPECT_TRUE(runtime::read_fields(" 1E39", runtime::format<"(f5.0)">, {real}));
  EXPECT_EQ(real, 1E39);
  EXPECT_FALSE(runtime::read_fields("2147483648", runtime::format<"(i10)">, {whole}));
  EXPECT_EQ(whole, -1);
  EXPECT_TRUE(runtime::read_fields("-2147483648", runtime::format<"(i11)">, {whole}));
  EXPECT_EQ(whole, std::numeric_limits<std::int32_t>::min());
}

TEST(Reading, AValueNeedsAFieldOfItsKind) {
  float single = -1;
  double real = -1;
  std::int32_t whole = -1;
  std::array<char, 5> text{};
  text.fill('-');
  for (const auto& format : {runtime::format<"(a)">, runtime::format<"(a5)">}) {
    EXPECT_FALSE(runtime::read_fields("12345", format, {single}));
    EXPECT_FALSE(runtime::read_fields("12345", format, {real}));
    EXPECT_FALSE(runtime::read_fields("12345", format, {whole}));
  }
  EXPECT_FALSE(runtime::read_fields("12345", runtime::format<"(i5)">, {single}));
  EXPECT_FALSE(runtime::read_fields("12345", runtime::format<"(i5)">, {real}));
  EXPECT_FALSE(runtime::read_fields("12345", runtime::format<"(f5.0)">, {whole}));
  EXPECT_FALSE(runtime::read_fields("12345", runtime::format<"(i5)">, {Target(std::span<char>(text))}));
  EXPECT_EQ(single, -1.0F);
  EXPECT_EQ(real, -1.0);
  EXPECT_EQ(whole, -1);
  EXPECT_EQ(std::string(text.data(), 5), "-----");
}

TEST(Reading, DecimalsStandInForAPoint) {
  double with_point = 0;
  double without = 0;
  EXPECT_TRUE(runtime::read_fields("1.23412345", runtime::format<"(2f5.2)">, {with_point, without}));
  EXPECT_EQ(with_point, 1.234);
  EXPECT_EQ(without, 123.45);
}

TEST(Reading, TabsGoToTheirColumn) {
  std::int32_t first = 0;
  std::int32_t second = 0;
  EXPECT_TRUE(runtime::read_fields("12345", runtime::format<"(t4,i2,t1,i2)">, {first, second}));
  EXPECT_EQ(first, 45);
  EXPECT_EQ(second, 12);
}

TEST(Reading, TextsAreCutFromTheLeftOrPadded) {
  std::array<char, 3> text{};
  const Target target{std::span<char>(text)};
  EXPECT_TRUE(runtime::read_fields("abcdef", runtime::format<"(a)">, {target}));
  EXPECT_EQ(std::string(text.data(), 3), "abc") << "as wide as the text itself";
  EXPECT_TRUE(runtime::read_fields("abcdef", runtime::format<"(a5)">, {target}));
  EXPECT_EQ(std::string(text.data(), 3), "cde") << "a wider field gives its last characters";
  EXPECT_TRUE(runtime::read_fields("abcdef", runtime::format<"(a2)">, {target}));
  EXPECT_EQ(std::string(text.data(), 3), "ab ");
  EXPECT_TRUE(runtime::read_fields("x", runtime::format<"(2x,a)">, {target}));
  EXPECT_EQ(std::string(text.data(), 3), "   ");
}

TEST(Reading, AFieldOfTheWrongKindIsBad) {
  float single = -1;
  std::int32_t whole = -1;
  std::array<char, 2> text = {'o', 'k'};
  EXPECT_FALSE(runtime::read_fields("    1", runtime::format<"(i5)">, {single}));
  EXPECT_FALSE(runtime::read_fields("    1", runtime::format<"(f5.0)">, {whole}));
  EXPECT_FALSE(runtime::read_fields("    1", runtime::format<"(f5.0)">, {Target(std::span<char>(text))}));
  EXPECT_EQ(single, -1.0F);
  EXPECT_EQ(whole, -1);
  EXPECT_EQ(std::string(text.data(), 2), "ok");
}

TEST(Reading, EndsWithTheLastVariable) {
  std::int32_t first = 0;
  EXPECT_TRUE(runtime::read_fields("12xx", runtime::format<"(2i2)">, {first}));
  EXPECT_EQ(first, 12);
}

}  // namespace
