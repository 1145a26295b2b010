// The program among others and within limits: files that change while they are read, two runs at once, limits
// on file sizes and processor time, files beyond all memory. Whatever happens, what is lost is told, and
// result and listing are the old or the whole new ones.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>

#include "tests/chain.h"
#include "tests/notices.h"
#include "tests/program.h"
#include "tests/run_faults.h"
#include "tests/sanitized.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using child::Outcome;
using notices::closing;
using std::chrono::microseconds;
using test_files::read_bytes;
using test_files::write_bytes;

constexpr std::array<std::string_view, 2> whole_files = {"v.Akum", "code.pkl"};

std::string old_bytes(std::string_view name) {
  return std::string(name) + " of an earlier run\n";
}

// What a run has shown and left.
struct State {
  std::string ending;
  std::string out;
  std::string err;
  std::string result;
  std::string listing;
  std::string protocol;

  bool operator==(const State&) const = default;
};

std::ostream& operator<<(std::ostream& out, const State& state) {
  return out << state.ending << ", standard error: " << state.err << ", " << state.result.size()
             << " bytes of result, " << state.listing.size() << " of listing, " << state.protocol.size()
             << " of protocol";
}

// A folder with the variant "v" of 1000 elements.
class Surroundings : public testing::Test {
 protected:
  Surroundings() { chain::write(file("v"), 500); }

  [[nodiscard]] fs::path folder() const { return folder_.path(); }
  [[nodiscard]] fs::path file(std::string_view name) const { return folder_.path() / name; }
  [[nodiscard]] std::string bytes(std::string_view name) const {
    return fs::exists(file(name)) ? read_bytes(file(name)) : "(missing)";
  }

  [[nodiscard]] Outcome run(const std::string& name, const std::function<void()>& preparation = {}) const {
    return program::run({.arguments = {name}, .folder = folder(), .preparation = preparation});
  }
  void write_old_outputs() const {
    for (const std::string_view name : whole_files) write_bytes(file(name), old_bytes(name));
  }
  [[nodiscard]] State state_after(const std::function<Outcome()>& run) const {
    write_old_outputs();
    const Outcome outcome = run();
    return {.ending = outcome.ending,
            .out = outcome.out,
            .err = outcome.err,
            .result = bytes("v.Akum"),
            .listing = bytes("code.pkl"),
            .protocol = bytes("v.pkl")};
  }

 private:
  test_files::TemporaryFolder folder_{test_files::fast_folder()};
};

// Files that change while they are read.

class ChangingInput : public Surroundings {
 protected:
  // The areas stand before and behind so much text that reading it takes its time.
  ChangingInput() {
    std::string text(text_bytes, 'x');
    for (std::size_t end = 199; end < text.size(); end += 200) text[end] = '\n';
    const std::string lines = read_bytes(areas());
    const std::size_t middle = lines.find('\n', lines.size() / 2) + 1;
    write_bytes(areas(), lines.substr(0, middle) + text + lines.substr(middle));
  }

  [[nodiscard]] fs::path areas() const { return file("v.nfl"); }

  // The change comes at many moments of the run. Unless the run tells that it could not read the file, it has
  // seen it as it was before or as it is afterwards.
  void expect_before_or_after_or_told(const std::function<void()>& change) const {
    const std::string bytes_before = read_bytes(areas());
    const auto start = std::chrono::steady_clock::now();
    const State before = state_after([&] { return run("v"); });
    const auto span = std::chrono::duration_cast<microseconds>(std::chrono::steady_clock::now() - start);
    change();
    const State after = state_after([&] { return run("v"); });
    ASSERT_NE(before, after);
    for (int moment = 0; moment < moments; ++moment) {
      write_bytes(areas(), bytes_before);
      const State found = state_after([&] {
        std::thread changing([&] {
          std::this_thread::sleep_for(span * moment / moments);
          change();
        });
        Outcome outcome = run("v");
        changing.join();
        return outcome;
      });
      const bool told = found.ending == "exit status 0" && found.result == old_bytes("v.Akum") &&
                        found.err == "E/A-Fehler beim Lesen von \"v.nfl\": Input/output error\n";
      EXPECT_TRUE(told || found == before || found == after) << "moment " << moment << ": " << found;
    }
  }

 private:
  static constexpr std::size_t text_bytes = 32'000'000;
  static constexpr int moments = sanitized ? 10 : 50;
};

TEST_F(ChangingInput, ThatShrinksIsNotTakenForAShortOne) {
  expect_before_or_after_or_told([&] { fs::resize_file(areas(), 0); });
}

TEST_F(ChangingInput, ThatGrowsIsReadAsItWasOrIs) {
  const std::string all = read_bytes(areas());
  const std::size_t last_line = all.rfind('\n', all.size() - 2) + 1;
  write_bytes(areas(), all.substr(0, last_line));
  expect_before_or_after_or_told(
      [&] { std::ofstream(areas(), std::ios::binary | std::ios::app) << all.substr(last_line); });
}

TEST_F(Surroundings, AnInputBeyondAllMemoryIsRefused) {
  if (sanitized) GTEST_SKIP() << "the sanitizer ends a program that asks for so much";
  for (const char* name : {"v.sys", "v.trs"}) {
    fs::resize_file(file(name), std::uintmax_t{1} << 42U);
    const Outcome outcome = run("v");
    EXPECT_EQ(outcome.ending, "exit status 0");
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "E/A-Fehler beim Lesen von \"" + std::string(name) + "\": Cannot allocate memory\n");
    chain::write(file("v"), 500);
  }
}

// Two runs at once.

// Starts both at the same time.
std::array<Outcome, 2> together(const std::function<Outcome()>& first,
                                const std::function<Outcome()>& second) {
  std::array<Outcome, 2> outcomes;
  std::thread other([&] { outcomes[1] = second(); });
  outcomes[0] = first();
  other.join();
  return outcomes;
}

TEST_F(Surroundings, OfTwoRunsOfAVariantEachIsWholeOrEndsInOrder) {
  const State right = state_after([&] { return run("v"); });
  const std::string refused = "E/A-Fehler beim Sperren von \"v.sys\": Resource temporarily unavailable\n";
  int refusals = 0;
  // On a busy machine some rounds pass before they meet.
  for (int round = 0; round < 30 || (refusals == 0 && round < 2000); ++round) {
    write_old_outputs();
    int whole = 0;
    for (const Outcome& outcome : together([&] { return run("v"); }, [&] { return run("v"); })) {
      const bool is_whole = outcome.out == right.out && outcome.err.empty();
      const bool is_refused = outcome.out.empty() && outcome.err == refused;
      EXPECT_TRUE(is_whole || is_refused) << outcome.ending << ", " << outcome.err;
      whole += is_whole ? 1 : 0;
      refusals += is_refused ? 1 : 0;
    }
    EXPECT_GE(whole, 1);
    EXPECT_EQ(bytes("v.Akum"), right.result);
    EXPECT_EQ(bytes("code.pkl"), right.listing);
  }
  EXPECT_GT(refusals, 0) << "the runs never met";
}

TEST_F(Surroundings, RunsOfTwoVariantsInOneFolderLeaveWholeFiles) {
  const State right = state_after([&] { return run("v"); });
  chain::write(file("w"), 400);
  EXPECT_EQ(run("w").out, closing("w"));
  const std::string right_w = bytes("w.Akum");
  const std::string listing_w = bytes("code.pkl");
  ASSERT_NE(listing_w, right.listing);
  for (int round = 0; round < 30; ++round) {
    write_old_outputs();
    write_bytes(file("w.Akum"), old_bytes("w.Akum"));
    const auto outcomes = together([&] { return run("v"); }, [&] { return run("w"); });
    EXPECT_EQ(outcomes[0].out, closing("v"));
    EXPECT_EQ(outcomes[1].out, closing("w"));
    for (const Outcome& outcome : outcomes) EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(bytes("v.Akum"), right.result);
    EXPECT_EQ(bytes("w.Akum"), right_w);
    const std::string listing = bytes("code.pkl");
    EXPECT_TRUE(listing == right.listing || listing == listing_w) << listing.size() << " bytes";
  }
}

// Limits.

void limit(decltype(RLIMIT_AS) resource, rlim_t value) {
  const rlimit both{value, value};
  if (setrlimit(resource, &both) != 0) _exit(126);
}

class FileSizes : public testing::TestWithParam<run_faults::Outputs> {};

TEST_P(FileSizes, ThatAreLimitedAreTold) {
  const test_files::TemporaryFolder inputs(test_files::fast_folder());
  chain::write(inputs.file("v"), 500);
  const run_faults::Workshop workshop(
      {.name = "v", .folder = inputs.path(), .variant = "v", .outputs = GetParam()});
  const auto limited_to = [](rlim_t bytes) {
    return [bytes](const fs::path& folder, const std::string& variant) {
      return program::run(
          {.arguments = {variant}, .folder = folder, .preparation = [&] { limit(RLIMIT_FSIZE, bytes); }});
    };
  };
  const run_faults::Judge judge(workshop, limited_to(RLIM_INFINITY));
  ASSERT_EQ(judge.right().outcome.out, closing("v"));
  int told = 0;
  bool enough = false;
  // So much that what is told is not cut itself.
  for (rlim_t bytes = 300; !enough; bytes = bytes * 5 / 4 + 1) {
    const run_faults::Traces found = workshop.run(limited_to(bytes));
    EXPECT_EQ(judge.wrong_in(found), "") << bytes << " bytes";
    enough = found.outcome.err.empty();
    told += enough ? 0 : 1;
    ASSERT_LT(bytes, 10'000'000U);
  }
  EXPECT_GT(told, 0) << "no limit was met";
}

INSTANTIATE_TEST_SUITE_P(Outputs, FileSizes,
                         testing::Values(run_faults::Outputs::files, run_faults::Outputs::links),
                         [](const testing::TestParamInfo<run_faults::Outputs>& outputs) {
                           return outputs.param == run_faults::Outputs::files ? "Files" : "Links";
                         });

// A limit on processor time counts seconds; a timer ends the run in the same way from some milliseconds on.
TEST_F(Surroundings, ARunWhoseProcessorTimeIsOverLeavesTheOldFilesOrTheNewOnes) {
  const char* const elements = sanitized ? "10000" : "100000";
  const Outcome generated = child::run(
      [&] { execl(KV_GENERATE, KV_GENERATE, "--elements", elements, file("v").c_str(), nullptr); });
  ASSERT_EQ(generated.ending, "exit status 0") << generated.err;
  const State right = state_after([&] { return run("v"); });
  int ended = 0;
  bool enough = false;
  for (long milliseconds = 1; !enough; milliseconds += 4) {
    const State found = state_after([&] {
      return run("v", [&] {
        const itimerval timer{.it_interval = {}, .it_value = {.tv_sec = 0, .tv_usec = milliseconds * 1000}};
        if (setitimer(ITIMER_PROF, &timer, nullptr) != 0) _exit(126);
      });
    });
    EXPECT_TRUE(found.result == old_bytes("v.Akum") || found.result == right.result) << found;
    EXPECT_TRUE(found.listing == old_bytes("code.pkl") || found.listing == right.listing) << found;
    enough = found.ending == "exit status 0";
    ended += enough ? 0 : 1;
    ASSERT_LT(milliseconds, 900);
  }
  EXPECT_GT(ended, 0) << "no run was ended";
}

}  // namespace
