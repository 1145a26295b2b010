// The program with a file chooser: the test's own stands in the place of the built-in one, which ends the
// run.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "KV_Akum/KV_Akum.h"
#include "SCRENIX/SCRENIX.h"
#include "runtime/arguments.h"
#include "runtime/fixed_text.h"
#include "runtime/stop.h"
#include "tests/child.h"
#include "tests/notices.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;

std::function<bool(std::string_view, std::span<const SCRENIX::FileFilter>, std::span<char>)> chooser;

}  // namespace

namespace SCRENIX {

bool get_open_file_name(std::string_view title, std::span<const FileFilter> filters,
                        std::span<char> chosen_name) {
  return chooser(title, filters, chosen_name);
}

}  // namespace SCRENIX

namespace KV_Akum {
namespace {

// A run without arguments in a folder of its own.
class Chooser : public testing::Test {
 protected:
  static void choose(std::string_view name) {
    chooser = [name = std::string(name)](auto, auto, std::span<char> chosen_name) {
      runtime::assign_padded(chosen_name.data(), chosen_name.size(), name);
      return true;
    };
  }

  static child::Outcome run() {
    return child::run([] {
      const char* const arguments[] = {"KV_Akum"};
      runtime::set_arguments(1, arguments);
      ProgramDriver();
      runtime::stop();
    });
  }

 private:
  test_files::WorkingFolder folder_;
};

TEST_F(Chooser, IsAskedForASystemFile) {
  chooser = [](std::string_view title, std::span<const SCRENIX::FileFilter> filters, std::span<char> name) {
    const bool blank = std::all_of(name.begin(), name.end(), [](char c) { return c == ' '; });
    std::fprintf(stderr, "%s|%zu|%zu", std::string(title).c_str(), title.size(), filters.size());
    for (const SCRENIX::FileFilter& filter : filters) {
      std::fprintf(stderr, "|%s|%s", std::string(filter.description).c_str(),
                   std::string(filter.patterns).c_str());
    }
    std::fprintf(stderr, "|%zu|%s", name.size(), blank ? "blank" : "not blank");
    return false;
  };
  EXPECT_EQ(run().err,
            "KV_Akum: Auswahl der Variante \xFC"
            "ber SYS-Datei|44|1|SYS-Dateien|*.sys;*.sys|200|blank");
}

TEST_F(Chooser, WithoutAChoiceEndsTheRun) {
  chooser = [](auto, auto, auto) { return false; };
  const child::Outcome outcome = run();
  EXPECT_EQ(outcome.out, notices::error("Es wurde keine SYS-Datei ausgew\xE4hlt!\r\nAbbruch!"));
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit_status, 0);
  EXPECT_TRUE(fs::is_empty("."));
}

TEST_F(Chooser, ChosenVariantIsRun) {
  test_files::copy_variant("rausel", KV_EXAMPLES_DIR, ".");
  choose("rausel");
  const child::Outcome outcome = run();
  EXPECT_EQ(outcome.out, notices::closing("rausel"));
  EXPECT_EQ(outcome.exit_status, 0);
  EXPECT_EQ(test_files::read_bytes("rausel.Akum"),
            test_files::read_bytes(fs::path(KV_EXAMPLES_DIR) / "expected" / "rausel.Akum"));
}

// The driver's own test would end the run with its notice; here the reader is the first to miss the file.
TEST_F(Chooser, ChosenVariantIsNotTestedForExistence) {
  choose("fehlt");
  const child::Outcome outcome = run();
  EXPECT_EQ(outcome.out, notices::error("Die Datei fehlt.sys existiert nicht.") + notices::closing("fehlt"));
  EXPECT_EQ(outcome.exit_status, 0);
}

}  // namespace
}  // namespace KV_Akum
