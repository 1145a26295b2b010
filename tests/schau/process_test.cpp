#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "KV_Schau/run/process.h"
#include "KV_Schau/run/process_host.h"
#include "tests/test_files.h"

namespace {

using schau::run::Ending;
using schau::run::run_process;
using std::chrono::steady_clock;

struct Outcome {
  Ending ending;
  std::string out;
  std::string err;
  double seconds = 0;
};

bool never() {
  return false;
}

class Process : public testing::Test {
 protected:
  Outcome run(const schau::run::CommandLine& command, const schau::run::WantsStop& wants_stop = never) const {
    Outcome outcome;
    const auto begin = steady_clock::now();
    outcome.ending = run_process(
        command, [&](std::string_view bytes) { outcome.out += bytes; },
        [&](std::string_view bytes) { outcome.err += bytes; }, wants_stop);
    outcome.seconds = std::chrono::duration<double>(steady_clock::now() - begin).count();
    return outcome;
  }
  Outcome run_script(const std::string& script, const schau::run::WantsStop& wants_stop = never) const {
    return run({"/bin/sh", {"-c", script}, folder_.path()}, wants_stop);
  }

  test_files::TemporaryFolder folder_;
};

TEST_F(Process, HandsOnBothOutputsAndTheExitStatus) {
  const Outcome outcome = run_script("printf 'aus\\001gabe'; printf fehler >&2; exit 7");
  EXPECT_EQ(outcome.ending.kind, Ending::Kind::exited);
  EXPECT_EQ(outcome.ending.exit_status, 7);
  EXPECT_EQ(outcome.out, "aus\001gabe");
  EXPECT_EQ(outcome.err, "fehler");
}

TEST_F(Process, RunsInItsFolderWithItsArgumentsAsTheyAre) {
  const Outcome outcome =
      run({"/bin/sh", {"-c", "pwd; printf '%s|' \"$@\"", "x", "a b", "", "$HOME", "ä\\"}, folder_.path()});
  EXPECT_EQ(outcome.out, folder_.path().string() + "\na b||$HOME|ä\\|");
}

TEST_F(Process, GetsNoInput) {
  EXPECT_EQ(run_script("cat; echo ende").out, "ende\n");
}

TEST_F(Process, TellsTheSignalThatEndedIt) {
  const Outcome outcome = run_script("echo vorher; kill -SEGV $$");
  EXPECT_EQ(outcome.ending.kind, Ending::Kind::crashed);
  EXPECT_EQ(outcome.ending.signal, SIGSEGV);
  EXPECT_EQ(outcome.out, "vorher\n");
}

TEST_F(Process, NamesASignalAndItsMeaning) {
  const std::vector<std::pair<int, std::string_view>> meanings = {
      {SIGSEGV, "unzulässiger Speicherzugriff"},
      {SIGBUS, "unzulässiger Speicherzugriff"},
      {SIGABRT, "Abbruch durch das Programm selbst"},
      {SIGFPE, "unzulässige Rechnung"},
      {SIGILL, "unzulässiger Befehl"},
      {SIGXCPU, "die zulässige Rechenzeit ist überschritten"},
      {SIGKILL, "von außen beendet"},
      {SIGTERM, "von außen beendet"},
  };
  for (const auto& [signal, meaning] : meanings) {
    EXPECT_EQ(schau::run::host::shown_signal(signal), fmt::format("Signal {}: {}", signal, meaning));
  }
  EXPECT_EQ(schau::run::host::shown_signal(SIGUSR1), fmt::format("Signal {}", SIGUSR1));
}

TEST_F(Process, ThatCannotBeStartedSaysWhy) {
  const Outcome missing = run({folder_.path() / "gibt_es_nicht", {}, folder_.path()});
  EXPECT_EQ(missing.ending.kind, Ending::Kind::not_started);
  EXPECT_EQ(missing.ending.reason, "nicht vorhanden");

  test_files::write_bytes(folder_.path() / "text", "kein Programm");
  EXPECT_EQ(run({folder_.path() / "text", {}, folder_.path()}).ending.reason, "keine Berechtigung");
  std::filesystem::permissions(folder_.path() / "text", std::filesystem::perms::owner_all);
  EXPECT_EQ(run({folder_.path() / "text", {}, folder_.path()}).ending.reason,
            "ist kein ausführbares Programm");

  const Outcome no_folder = run({"/bin/true", {}, folder_.path() / "gibt_es_nicht"});
  EXPECT_EQ(no_folder.ending.kind, Ending::Kind::not_started);
}

TEST_F(Process, LosesNoByteOfALargeOutput) {
  const Outcome outcome = run_script("head -c 3000000 /dev/zero; head -c 2000000 /dev/zero >&2");
  EXPECT_EQ(outcome.out.size(), 3'000'000U);
  EXPECT_EQ(outcome.err.size(), 2'000'000U);
}

TEST_F(Process, HandsOutputOnWhileItRuns) {
  bool seen = false;
  std::string out;
  const Ending ending = run_process(
      {"/bin/sh", {"-c", "echo da; while [ ! -e weiter ]; do sleep 0.01; done"}, folder_.path()},
      [&](std::string_view bytes) { out += bytes; }, [](std::string_view) {},
      [&] {
        seen = seen || out == "da\n";
        if (seen) std::ofstream(folder_.path() / "weiter");
        return false;
      });
  EXPECT_TRUE(seen);
  EXPECT_EQ(ending.kind, Ending::Kind::exited);
}

TEST_F(Process, IsStoppedWithAllThatItStarted) {
  const auto begin = steady_clock::now();
  const Outcome outcome = run_script("(sleep 1; echo lebt > lebt) & echo $$ > id; exec sleep 60", [&] {
    return steady_clock::now() - begin > std::chrono::milliseconds(100);
  });
  EXPECT_EQ(outcome.ending.kind, Ending::Kind::stopped);
  EXPECT_LT(outcome.seconds, 10);
  const pid_t id = std::stoi(test_files::read_bytes(folder_.path() / "id"));
  EXPECT_EQ(kill(id, 0), -1);
  std::this_thread::sleep_for(std::chrono::milliseconds(1500));
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "lebt"));
}

TEST_F(Process, ThatWritesWithoutEndCanBeStopped) {
  std::size_t written = 0;
  const Ending ending = run_process(
      {"/bin/sh", {"-c", "exec yes"}, folder_.path()},
      [&](std::string_view bytes) { written += bytes.size(); }, [](std::string_view) {},
      [&] { return written > 1'000'000; });
  EXPECT_EQ(ending.kind, Ending::Kind::stopped);
}

TEST_F(Process, ThatClosesItsOutputsIsWaitedFor) {
  const Outcome outcome = run_script("exec >&- 2>&-; sleep 0.3; exit 4");
  EXPECT_EQ(outcome.ending.exit_status, 4);
  EXPECT_GE(outcome.seconds, 0.29);
}

TEST_F(Process, DoesNotLiveOnInWhatItLeavesBehind) {
  const Outcome outcome = run_script("sleep 60 & echo fertig");
  EXPECT_EQ(outcome.ending.exit_status, 0);
  EXPECT_EQ(outcome.out, "fertig\n");
  EXPECT_LT(outcome.seconds, 10);
}

TEST_F(Process, MayRunBesideOthers) {
  std::array<std::future<Outcome>, 8> runs;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    runs.at(i) = std::async(std::launch::async,
                            [this, i] { return run_script("sleep 1; echo " + std::to_string(i)); });
  }
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const Outcome outcome = runs.at(i).get();
    EXPECT_EQ(outcome.out, std::to_string(i) + "\n");
    EXPECT_LT(outcome.seconds, 5.0);
  }
}

}  // namespace
