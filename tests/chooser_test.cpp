// The program with a file chooser: the test's own stands in the place of the built-in one, which ends the
// run.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>

#include "KV_Akum/KV_Akum.h"
#include "SCRENIX/SCRENIX.h"
#include "runtime/arguments.h"
#include "runtime/fixed_text.h"
#include "runtime/stop.h"
#include "tests/child.h"

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
  Chooser() : folder_(fs::path(testing::TempDir()) / ("chooser_test_" + std::to_string(getpid()))) {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  ~Chooser() override { fs::remove_all(folder_); }
  Chooser(const Chooser&) = delete;
  Chooser& operator=(const Chooser&) = delete;

  static void choose(std::string_view name) {
    chooser = [name = std::string(name)](auto, auto, std::span<char> chosen_name) {
      runtime::assign_padded(chosen_name.data(), chosen_name.size(), name);
      return true;
    };
  }

  [[nodiscard]] child::Outcome run() const {
    return child::run([&] {
      fs::current_path(folder_);
      const char* const arguments[] = {"KV_Akum"};
      runtime::set_arguments(1, arguments);
      ProgramDriver();
      runtime::stop();
    });
  }

  static std::string box(const std::string& title, const std::string& text) {
    return "\x01messagebox_button_0_settitle\x02" + title + "\x03\x01messagebox_button_0\x02" + text + "\x03";
  }

  [[nodiscard]] const fs::path& folder() const { return folder_; }

  [[nodiscard]] std::string bytes_of(const std::string& name) const {
    std::ifstream file(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  fs::path folder_;
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
  EXPECT_EQ(outcome.out, box("KV_Akum: Fehler", "Es wurde keine SYS-Datei ausgew\xE4hlt!\r\nAbbruch!"));
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit_status, 0);
  EXPECT_TRUE(fs::is_empty(folder()));
}

TEST_F(Chooser, ChosenVariantIsRun) {
  for (const fs::directory_entry& entry : fs::directory_iterator(KV_EXAMPLES_DIR)) {
    if (entry.path().stem() == "rausel") fs::copy(entry.path(), folder());
  }
  choose("rausel");
  const child::Outcome outcome = run();
  EXPECT_EQ(outcome.out, box("KV_Akum", "Ergebnis: rausel.Akum"));
  EXPECT_EQ(outcome.exit_status, 0);
  std::ifstream expected(fs::path(KV_EXAMPLES_DIR) / "expected" / "rausel.Akum", std::ios::binary);
  ASSERT_TRUE(expected);
  EXPECT_EQ(bytes_of("rausel.Akum"), std::string(std::istreambuf_iterator<char>(expected), {}));
}

// The driver's own test would end the run with its notice; here the reader is the first to miss the file.
TEST_F(Chooser, ChosenVariantIsNotTestedForExistence) {
  choose("fehlt");
  const child::Outcome outcome = run();
  EXPECT_EQ(outcome.out, box("KV_Akum: Fehler", "Die Datei fehlt.sys existiert nicht.") +
                             box("KV_Akum", "Ergebnis: fehlt.Akum"));
  EXPECT_EQ(outcome.exit_status, 0);
}

}  // namespace
}  // namespace KV_Akum
