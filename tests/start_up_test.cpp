#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "KV_Akum/KV_Akum.h"
#include "runtime/arguments.h"

namespace {

using KV_Akum::CommandLineText;
using KV_Akum::StartUp;
using KV_Akum::variant_list;
using testing::ElementsAre;

class StartUpTest : public testing::Test {
 protected:
  void SetUp() override { KV_Akum::reset(); }
  void TearDown() override {
    runtime::set_arguments(0, nullptr);
    KV_Akum::reset();
  }

  void command_line(std::vector<std::string> arguments) {
    arguments_ = std::move(arguments);
    pointers_ = {"KV_Akum"};
    for (const std::string& argument : arguments_) pointers_.push_back(argument.c_str());
    runtime::set_arguments(static_cast<int>(pointers_.size()), pointers_.data());
  }

  // The names found, without their padding.
  static std::vector<std::string> names() {
    std::vector<std::string> found;
    for (std::int32_t i = 1; i <= variant_list.VariantCount; ++i) {
      const auto name = variant_list.VariantNames.at(i).trimmed();
      EXPECT_EQ(static_cast<std::size_t>(variant_list.VariantNameLengths.at(i)), name.size());
      found.emplace_back(name);
    }
    return found;
  }

  std::vector<std::string> names_of(std::vector<std::string> arguments) {
    command_line(std::move(arguments));
    StartUp();
    return names();
  }

 private:
  std::vector<std::string> arguments_;
  std::vector<const char*> pointers_;
};

TEST_F(StartUpTest, StartsWithoutNames) {
  names_of({"A", "B"});
  KV_Akum::reset();
  EXPECT_EQ(variant_list.VariantCount, 0);
  EXPECT_EQ(variant_list.VariantNames.at(1).trimmed(), "");
  EXPECT_EQ(variant_list.VariantNameLengths.at(2), 0);
}

TEST_F(StartUpTest, KeepsEveryWordOfTheCommandLine) {
  EXPECT_THAT(names_of({"A", "B"}), ElementsAre("A", "B"));
  EXPECT_THAT(names_of({"A B"}), ElementsAre("A", "B"));
  EXPECT_THAT(names_of({"var1"}), ElementsAre("var1"));
}

TEST_F(StartUpTest, CutsAtSlashesAndNotAtBackslashes) {
  EXPECT_THAT(names_of({"C:/data/var1"}), ElementsAre("C:", "data", "var1"));
  EXPECT_THAT(names_of({"C:\\data\\var1"}), ElementsAre("C:\\data\\var1"));
  EXPECT_THAT(names_of({"a/b c"}), ElementsAre("a", "b", "c"));
}

TEST_F(StartUpTest, TwoSeparatorsGiveAnEmptyName) {
  EXPECT_THAT(names_of({"A  B"}), ElementsAre("A", "", "B"));
  EXPECT_THAT(names_of({"A /B"}), ElementsAre("A", "", "B"));
  EXPECT_THAT(names_of({"/A"}), ElementsAre("", "A"));
  EXPECT_THAT(names_of({" A"}), ElementsAre("", "A"));
}

TEST_F(StartUpTest, ASeparatorAtTheEndStaysInItsName) {
  EXPECT_THAT(names_of({"V/"}), ElementsAre("V/"));
  EXPECT_THAT(names_of({"A//"}), ElementsAre("A", "/"));
  EXPECT_THAT(names_of({"/"}), ElementsAre("/"));
  EXPECT_THAT(names_of({"A "}), ElementsAre("A"));
}

TEST_F(StartUpTest, TakesTenNamesAndRefusesEleven) {
  EXPECT_THAT(names_of({"1/2/3/4/5/6/7/8/9/10"}),
              ElementsAre("1", "2", "3", "4", "5", "6", "7", "8", "9", "10"));
  EXPECT_THAT(names_of({"1/2/3/4/5/6/7/8/9/10/"}),
              ElementsAre("1", "2", "3", "4", "5", "6", "7", "8", "9", "10/"));
  command_line({"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"});
  StartUp();
  EXPECT_EQ(variant_list.VariantCount, -999);
  for (std::int32_t i = 1; i <= KV_Akum::most_variants; ++i) {
    EXPECT_TRUE(variant_list.VariantNames.at(i).blank()) << i;
  }
}

TEST_F(StartUpTest, AnEmptyCommandLineHasNoNames) {
  EXPECT_THAT(names_of({}), ElementsAre());
  EXPECT_EQ(variant_list.VariantCount, 0);
  EXPECT_THAT(names_of({"", "  "}), ElementsAre());
  EXPECT_EQ(variant_list.VariantCount, 0);
}

TEST_F(StartUpTest, ForgetsTheNamesOfAnEarlierCall) {
  names_of({"A", "B"});
  names_of({"C"});
  EXPECT_EQ(variant_list.VariantNames.at(1).trimmed(), "C");
  EXPECT_TRUE(variant_list.VariantNames.at(2).blank());
}

TEST_F(StartUpTest, CutsANameAt200Characters) {
  const std::string name(199, 'x');
  EXPECT_THAT(names_of({name + "abc"}), ElementsAre(name + "a"));
  EXPECT_THAT(names_of({name + "abc", "next"}), ElementsAre(name + "a", "next"));
}

TEST_F(StartUpTest, CutsTheCommandLineAt256Characters) {
  EXPECT_THAT(names_of({std::string(150, 'a'), std::string(104, 'b') + "cd"}),
              ElementsAre(std::string(150, 'a'), std::string(104, 'b') + "c"));
  EXPECT_THAT(names_of({std::string(300, 'a'), "b"}), ElementsAre(std::string(200, 'a')));
  // The blank that would stand in column 256 has no word behind it.
  EXPECT_THAT(names_of({std::string(100, 'a'), std::string(154, 'b'), "c"}),
              ElementsAre(std::string(100, 'a'), std::string(154, 'b')));
}

TEST_F(StartUpTest, JoinsTheArgumentsWithSingleBlanks) {
  command_line({"", "A  ", "", " B"});
  EXPECT_EQ(CommandLineText().trimmed(), "A  B");
  command_line({"A", "B", "C"});
  EXPECT_EQ(CommandLineText().trimmed(), "A B C");
  command_line({});
  EXPECT_TRUE(CommandLineText().blank());
}

TEST_F(StartUpTest, AWholeLineIsOneName) {
  command_line({"A B/C"});
  StartUp(std::nullopt, true);
  EXPECT_THAT(names(), ElementsAre("A B/C"));

  command_line({std::string(250, 'a')});
  StartUp(std::nullopt, true);
  EXPECT_EQ(variant_list.VariantCount, 1);
  EXPECT_EQ(variant_list.VariantNames.at(1).view(), std::string(200, 'a'));
  EXPECT_EQ(variant_list.VariantNameLengths.at(1), 250);

  command_line({" "});
  StartUp(std::nullopt, true);
  EXPECT_EQ(variant_list.VariantCount, 0);
}

TEST_F(StartUpTest, CutsAtOtherSeparators) {
  command_line({"a,b;c/d e"});
  StartUp(",;");
  EXPECT_THAT(names(), ElementsAre("a", "b", "c/d e"));
}

TEST_F(StartUpTest, ASingleBlankSplitsIntoWords) {
  command_line({"  a/b   c "});
  StartUp(" ");
  EXPECT_THAT(names(), ElementsAre("a/b", "c"));
}

TEST_F(StartUpTest, TheProgramHasNoLabel) {
  names_of({"A"});
  EXPECT_EQ(variant_list.ProgramLabel.view(), "     ");
}

}  // namespace
