// KV_Schau on a terminal: colours, and a bar that shows how far several runs are.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/schau/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

// A terminal that keeps what is written on it.
class Terminal {
 public:
  Terminal() : screen_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    if (screen_ < 0 || grantpt(screen_) != 0 || unlockpt(screen_) != 0) std::abort();
    line_ = open(ptsname(screen_), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (line_ < 0) std::abort();
    reader_ = std::thread([this] { read_all(); });
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  Terminal(Terminal&&) = delete;
  Terminal& operator=(Terminal&&) = delete;
  ~Terminal() {
    if (reader_.joinable()) text();
    close(screen_);
  }

  /// Puts the terminal in the place of a standard stream of this process.
  void take(int stream) const { dup2(line_, stream); }

  /// All that was written, without the terminal's own carriage returns. Nobody may write any more.
  std::string text() {
    close(line_);
    reader_.join();
    for (std::size_t at = bytes_.find("\r\n"); at != std::string::npos; at = bytes_.find("\r\n", at))
      bytes_.erase(at, 1);
    return bytes_;
  }

 private:
  // Up to the end of the last one who has it open.
  void read_all() {
    std::array<char, 4096> part{};
    for (ssize_t got = 0; (got = read(screen_, part.data(), part.size())) > 0;)
      bytes_.append(part.data(), static_cast<std::size_t>(got));
  }

  int screen_;
  int line_ = -1;
  std::string bytes_;
  std::thread reader_;
};

class OnTerminal : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* const name : {"eins", "zwei", "drei"}) {
      for (const char* const extension : {".sys", ".nfl", ".kfl", ".trs", ".ver"})
        fs::copy(fs::path(KV_EXAMPLES_DIR) / (std::string("rausel") + extension),
                 folder_.file(std::string(name) + extension));
    }
    std::string areas = test_files::read_bytes(folder_.file("eins.nfl"));
    test_files::write_bytes(folder_.file("eins.nfl"), areas.replace(areas.find("12.40"), 5, "12,40"));
  }

  // What stands on the terminal when it takes the place of these streams.
  [[nodiscard]] std::string shown(const std::vector<int>& streams, const std::vector<std::string>& arguments,
                                  const char* no_color = nullptr) const {
    Terminal terminal;
    program::run(arguments, folder_.path(), [&] {
      unsetenv("NO_COLOR");
      if (no_color != nullptr) setenv("NO_COLOR", no_color, 1);
      for (const int stream : streams) terminal.take(stream);
    });
    return terminal.text();
  }

  test_files::TemporaryFolder folder_;
};

TEST_F(OnTerminal, FindingsHaveColours) {
  EXPECT_THAT(shown({STDOUT_FILENO}, {"pruefen", "eins"}), HasSubstr("\x1B["));
  EXPECT_THAT(shown({STDOUT_FILENO}, {"rechnen", "eins"}), HasSubstr("\x1B["));
  EXPECT_THAT(shown({STDOUT_FILENO}, {"richten", "eins"}), HasSubstr("\x1B[31m-   N0010  12,40"));
}

// See no-color.org.
TEST_F(OnTerminal, ColoursCanBeRefused) {
  EXPECT_THAT(shown({STDOUT_FILENO}, {"pruefen", "eins"}, "1"), Not(HasSubstr("\x1B[")));
  EXPECT_THAT(shown({STDOUT_FILENO}, {"pruefen", "eins"}, ""), HasSubstr("\x1B["));
}

TEST_F(OnTerminal, TheTextIsTheSame) {
  const std::string plain = program::run({"pruefen", "eins"}, folder_.path()).out;
  EXPECT_EQ(shown({STDOUT_FILENO}, {"pruefen", "eins"}, "1"), plain);
  std::string coloured = shown({STDOUT_FILENO}, {"pruefen", "eins"});
  for (std::size_t at = coloured.find('\x1B'); at != std::string::npos; at = coloured.find('\x1B'))
    coloured.erase(at, coloured.find('m', at) - at + 1);
  EXPECT_EQ(coloured, plain);
}

TEST_F(OnTerminal, ABarShowsHowFarSeveralRunsAre) {
  const std::string bar = shown({STDERR_FILENO}, {"rechnen", "-j", "1", "eins", "zwei", "drei"});
  EXPECT_THAT(bar, AllOf(HasSubstr("\r\x1B[K[#############...........................] 1 von 3"),
                         HasSubstr("\r\x1B[K[##########################..............] 2 von 3"),
                         EndsWith("\r\x1B[K")));
  EXPECT_THAT(bar, Not(HasSubstr("3 von 3"))) << "gone when all are done";
  EXPECT_THAT(shown({STDERR_FILENO}, {"rechnen", "--quiet", "eins", "zwei", "drei"}),
              Not(HasSubstr("\x1B[K")));
  EXPECT_EQ(shown({STDERR_FILENO}, {"rechnen", "zwei"}), "");
}

TEST_F(OnTerminal, TheBarIsGoneBeforeAnythingElse) {
  const std::string all =
      shown({STDOUT_FILENO, STDERR_FILENO}, {"rechnen", "-j", "1", "eins", "zwei", "drei"}, "1");
  constexpr std::string_view end_of_bar = "] 1 von 3";
  ASSERT_THAT(all, HasSubstr(end_of_bar));
  for (std::size_t at = all.find(end_of_bar); at != std::string::npos; at = all.find(end_of_bar, at + 1))
    EXPECT_EQ(all.substr(at + end_of_bar.size(), 4), "\r\x1B[K");
}

}  // namespace
