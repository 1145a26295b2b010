// A variant as an ordinary path, and why a path names none.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <variant>

#include "KV_Schau/variant/path.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using schau::variant::Refusal;
using schau::variant::resolve;
using schau::variant::VariantPath;
using ::testing::HasSubstr;

class PathTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(folder_.path() / "mit Leerzeichen");
    make("rausel.sys");
    make("mit Leerzeichen/rausel.sys");
  }
  void make(const std::string& name) { test_files::write_bytes(folder_.path() / name, ""); }
  [[nodiscard]] std::string at(const std::string& name) const { return folder_.file(name); }

  static std::string quoted(std::string text, const std::string& name) {
    return text.append("\"").append(name).append("\"");
  }

  static VariantPath accepted(const std::string& argument) {
    const auto resolved = resolve(argument);
    if (const auto* refusal = std::get_if<Refusal>(&resolved)) ADD_FAILURE() << refusal->reason;
    return std::holds_alternative<VariantPath>(resolved) ? std::get<VariantPath>(resolved) : VariantPath();
  }
  static Refusal refused(const std::string& argument) {
    const auto resolved = resolve(argument);
    if (std::holds_alternative<VariantPath>(resolved)) ADD_FAILURE() << argument << " was accepted";
    return std::holds_alternative<Refusal>(resolved) ? std::get<Refusal>(resolved) : Refusal();
  }

  test_files::TemporaryFolder folder_;
};

TEST_F(PathTest, TakesAPathWithAndWithoutTheExtension) {
  for (const std::string& argument : {at("rausel"), at("rausel.sys")}) {
    const VariantPath path = accepted(argument);
    EXPECT_EQ(path.folder, folder_.path());
    EXPECT_EQ(path.name, "rausel");
    EXPECT_EQ(path.shown, at("rausel"));
  }
}

TEST_F(PathTest, TakesANameInTheCurrentFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_.path());
  const VariantPath path = accepted("rausel");
  EXPECT_EQ(path.folder, ".");
  EXPECT_EQ(path.shown, "rausel");
  EXPECT_EQ(accepted("./mit Leerzeichen/../rausel").name, "rausel");
  fs::current_path(before);
}

TEST_F(PathTest, TakesFoldersWithBlanksAndOfAnyLength) {
  EXPECT_EQ(accepted(at("mit Leerzeichen/rausel")).folder, folder_.path() / "mit Leerzeichen");
  const std::string folder(150, 'o');
  fs::create_directories(folder_.path() / folder / folder);
  make(folder + "/" + folder + "/rausel.sys");
  EXPECT_EQ(accepted(at(folder + "/" + folder + "/rausel")).name, "rausel");
}

TEST_F(PathTest, PrefersANameThatHasTheExtensionItself) {
  make("rausel.sys.sys");
  EXPECT_EQ(accepted(at("rausel.sys")).name, "rausel.sys");
}

TEST_F(PathTest, RefusesANameWithABlank) {
  make("var 1.sys");
  const Refusal refusal = refused(at("var 1"));
  EXPECT_EQ(refusal.kind, Refusal::Kind::unusable);
  EXPECT_THAT(refusal.reason, HasSubstr("\"var 1\" enthält ein Leerzeichen"));
  EXPECT_THAT(refusal.way_out, HasSubstr("\"var_1.*\""));
}

TEST_F(PathTest, RefusesANameThatIsTooLong) {
  make(std::string(116, 'n') + ".sys");
  make(std::string(117, 'n') + ".sys");
  EXPECT_EQ(accepted(at(std::string(116, 'n'))).name.size(), 116U);
  const Refusal refusal = refused(at(std::string(117, 'n')));
  EXPECT_EQ(refusal.kind, Refusal::Kind::unusable);
  EXPECT_THAT(refusal.reason, HasSubstr("117 Zeichen (Bytes); mit mehr als 116"));
  EXPECT_THAT(refusal.way_out, HasSubstr("kürzer"));
}

TEST_F(PathTest, RefusesAPathThatEndsInASeparator) {
  EXPECT_EQ(refused("").kind, Refusal::Kind::unusable);
  EXPECT_THAT(refused(at("nichts/")).reason, HasSubstr("nennt keine Variante"));
}

TEST_F(PathTest, SaysWhatLiesInAFolder) {
  const Refusal refusal = refused(at("mit Leerzeichen"));
  EXPECT_EQ(refusal.kind, Refusal::Kind::missing);
  EXPECT_THAT(refusal.reason, HasSubstr("ist ein Ordner"));
  EXPECT_EQ(refusal.way_out, "Darin liegen: rausel.sys");
  fs::create_directory(folder_.path() / "leer");
  EXPECT_THAT(refused(at("leer")).way_out, HasSubstr("keine Systemdatei"));
}

TEST_F(PathTest, SaysWhatAMissingFileMayHaveBeenMeantToBe) {
  EXPECT_EQ(refused(at("rausel.kfl")).way_out, quoted("Gemeint ist wohl ", at("rausel")));
  EXPECT_THAT(refused(at("RAUSEL")).way_out,
              HasSubstr("Groß- und Kleinschreibung zählt; vorhanden ist: rausel.sys"));
  EXPECT_EQ(refused(at("anders")).way_out, "Im selben Ordner liegen: rausel.sys");
  EXPECT_THAT(refused(folder_.path().string() + "\\rausel").way_out, HasSubstr(quoted("", at("rausel"))));
  EXPECT_EQ(refused(at("anders")).kind, Refusal::Kind::missing);
  EXPECT_EQ(refused("/gibt/es/nicht").way_out, "");
}

TEST_F(PathTest, NamesNoMoreThanFiveFiles) {
  for (const char* name : {"a", "b", "c", "d", "e"}) make(std::string(name) + ".sys");
  EXPECT_EQ(refused(at("anders")).way_out, "Im selben Ordner liegen: a.sys, b.sys, c.sys, d.sys, e.sys, ...");
}

TEST_F(PathTest, ShowsNoControlCharacters) {
  EXPECT_THAT(refused(at("\x1B[31mrot")).reason, HasSubstr("␛[31mrot"));
}

}  // namespace
