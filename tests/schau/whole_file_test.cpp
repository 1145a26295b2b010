// Files that appear whole or not at all, and files that are read whole.

#include "KV_Schau/run/whole_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

#include "KV_Schau/run/read_file.h"
#include "KV_Schau/run/reason.h"
#include "KV_Schau/run/work_folder.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using schau::run::FileFault;
using schau::run::put_in_place;
using schau::run::read_file;
using schau::run::reason_of;
using schau::run::WholeFile;
using test_files::read_bytes;
using test_files::write_bytes;

// The words of the fault that the work ends with; empty when it ends without one.
std::string fault_of(const std::function<void()>& work) {
  try {
    work();
  } catch (const FileFault& fault) {
    return fault.what();
  }
  return {};
}

std::ptrdiff_t files_in(const fs::path& folder) {
  return std::distance(fs::directory_iterator(folder), {});
}

class WholeFiles : public testing::Test {
 protected:
  [[nodiscard]] fs::path file(const std::string& name) const { return folder_.file(name); }

  test_files::TemporaryFolder folder_;
};

TEST_F(WholeFiles, AreNotThereWithoutACommit) {
  write_bytes(file("a"), "alt");
  {
    WholeFile whole(file("a"));
    whole.stream() << "neu";
  }
  EXPECT_EQ(read_bytes(file("a")), "alt");
  EXPECT_EQ(files_in(folder_.path()), 1);
}

TEST_F(WholeFiles, TakeTheirPlaceAtTheCommit) {
  WholeFile whole(file("a"));
  whole.stream() << "neu";
  whole.commit();
  EXPECT_EQ(read_bytes(file("a")), "neu");
  EXPECT_EQ(files_in(folder_.path()), 1);
}

TEST_F(WholeFiles, StandInForLinksThatTurnInACircle) {
  fs::create_symlink(file("b"), file("a"));
  fs::create_symlink(file("a"), file("b"));
  WholeFile whole(file("a"));
  whole.stream() << "neu";
  whole.commit();
  EXPECT_EQ(read_bytes(file("a")), "neu");
}

TEST_F(WholeFiles, NeedAFolder) {
  const std::string target = file("nirgends/a").string();
  EXPECT_EQ(fault_of([&] { WholeFile{target}; }), target + " kann nicht geschrieben werden: nicht vorhanden");
  write_bytes(file("neu"), "neu");
  EXPECT_EQ(fault_of([&] { put_in_place(file("neu"), target); }),
            target + " kann nicht geschrieben werden: nicht vorhanden");
  EXPECT_EQ(read_bytes(file("neu")), "neu");
}

TEST_F(WholeFiles, DoNotTakeThePlaceOfAProgramThatRuns) {
  const fs::path program = fs::canonical("/proc/self/exe");
  EXPECT_EQ(fault_of([&] { WholeFile{program}; }),
            program.string() + " kann nicht geschrieben werden: wird gerade geschrieben");
}

TEST_F(WholeFiles, ComeFromAnotherVolume) {
  const test_files::TemporaryFolder other(test_files::fast_folder());
  for (const bool is_there : {false, true}) {
    write_bytes(other.file("neu"), "neu");
    fs::permissions(other.file("neu"), fs::perms::owner_read | fs::perms::owner_write);
    fs::perms rights = fs::perms::owner_read | fs::perms::owner_write;
    if (is_there) {
      rights |= fs::perms::group_read;
      fs::permissions(file("a"), rights);
    }
    put_in_place(other.file("neu"), file("a"));
    EXPECT_EQ(read_bytes(file("a")), "neu");
    EXPECT_EQ(fs::status(file("a")).permissions(), rights);
    EXPECT_EQ(files_in(other.path()), 0);
    EXPECT_EQ(files_in(folder_.path()), 1);
  }
  write_bytes(other.file("neu"), "neu");
  EXPECT_NE(fault_of([&] { put_in_place(other.file("neu"), file("nirgends/a")); }), "");
  EXPECT_EQ(read_bytes(other.file("neu")), "neu");
}

TEST_F(WholeFiles, AreWrittenToADevice) {
  for (const char* const bytes : {"neu", ""}) {
    write_bytes(file("neu"), bytes);
    put_in_place(file("neu"), "/dev/null");
    EXPECT_FALSE(fs::exists(file("neu")));
  }
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(WholeFiles, TellAFullDevice) {
  write_bytes(file("neu"), "neu");
  EXPECT_EQ(fault_of([&] { put_in_place(file("neu"), "/dev/full"); }),
            "/dev/full kann nicht geschrieben werden: der Datenträger ist voll");
  EXPECT_EQ(read_bytes(file("neu")), "neu");
  EXPECT_EQ(fault_of([] {
              WholeFile whole("/dev/full");
              whole.stream() << "neu";
              whole.commit();
            }),
            "/dev/full kann nicht geschrieben werden: der Datenträger ist voll");
}

TEST_F(WholeFiles, AreReadWholeOrToTheirLimit) {
  write_bytes(file("a"), "drei Worte");
  EXPECT_EQ(read_file(file("a")), "drei Worte");
  EXPECT_EQ(read_file(file("a"), 4), "drei");
  EXPECT_EQ(fault_of([&] { read_file(file("b")); }),
            file("b").string() + " kann nicht gelesen werden: nicht vorhanden");
  EXPECT_EQ(fault_of([&] { read_file(folder_.path()); }),
            folder_.path().string() + " kann nicht gelesen werden: keine gewöhnliche Datei");
}

// The kernel's own files say that they are as large as a page.
TEST_F(WholeFiles, ThatEndTooSoonAreTold) {
  const fs::path shorter = "/sys/kernel/profiling";
  if (!fs::is_regular_file(shorter)) GTEST_SKIP() << "there is no such file here";
  EXPECT_EQ(fault_of([&] { read_file(shorter); }),
            shorter.string() + " kann nicht gelesen werden: Lese- oder Schreibfehler des Datenträgers");
}

TEST(Reasons, AreGermanWhereTheyAreUsual) {
  EXPECT_EQ(reason_of(std::make_error_code(std::errc::no_space_on_device)), "der Datenträger ist voll");
  EXPECT_EQ(reason_of(std::make_error_code(std::errc::invalid_argument)), "Invalid argument");
}

TEST(WorkFolders, NeedTheFolderOfTheVariant) {
  const test_files::TemporaryFolder folder;
  const fs::path nowhere = folder.path() / "nirgends";
  EXPECT_EQ(fault_of([&] {
              schau::run::WorkFolder{{nowhere, "netz", "netz"}};
            }),
            "Im Ordner " + nowhere.string() + " kann kein Arbeitsordner angelegt werden: nicht vorhanden");
}

}  // namespace
