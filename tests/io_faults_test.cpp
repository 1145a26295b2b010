// Runs the program where the host refuses something: full devices, missing rights, pipes without a partner,
// closed standard streams, little memory. Whatever happens, the run ends by itself with exit status 0, and
// a file that is not whole is told.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "tests/chain.h"
#include "tests/notices.h"
#include "tests/program.h"
#include "tests/sanitized.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using child::Outcome;
using notices::closing;
using test_files::read_bytes;
using test_files::write_bytes;

void redirect(int descriptor, const char* path, int flags) {
  const int file = open(path, flags, 0600);
  if (file < 0 || dup2(file, descriptor) != descriptor) _exit(126);
  if (file > STDERR_FILENO) close(file);
}

std::string fault_line(std::string_view operation, std::string_view path, std::string_view reason) {
  std::string line = "E/A-Fehler beim ";
  return line.append(operation).append(" von \"").append(path).append("\": ").append(reason).append("\n");
}

constexpr std::string_view opening =
    "\xD6"
    "ffnen";
constexpr std::string_view full = "No space left on device";

std::string missing(std::string_view file) {
  return notices::error("Die Datei " + std::string(file) + " existiert nicht.");
}

// A folder with the variant "var1", which has no finding and every kind of file.
class IoFaults : public testing::Test {
 protected:
  IoFaults() {
    fs::create_directory(work());
    fs::copy(variant() / "in", work(), fs::copy_options::recursive);
  }

  [[nodiscard]] fs::path work() const { return folder_.path() / "work"; }
  [[nodiscard]] fs::path file(std::string_view name) const { return work() / name; }
  void replace_by_link(std::string_view name, const fs::path& target) const {
    fs::remove(file(name));
    fs::create_symlink(target, file(name));
  }
  void replace_by_folder(std::string_view name) const {
    fs::remove(file(name));
    fs::create_directory(file(name));
  }
  void replace_by_pipe(std::string_view name) const {
    fs::remove(file(name));
    if (mkfifo(file(name).c_str(), 0600) != 0) throw std::runtime_error("cannot create a pipe");
  }
  // Takes the record of an area away: the run has a finding for its protocol.
  void make_a_finding() const { write_bytes(file("var1.nfl"), "   N9999    10.\n"); }

  [[nodiscard]] Outcome run(const std::string& name = "var1",
                            const std::function<void()>& preparation = {}) const {
    return program::run({.arguments = {name}, .folder = work(), .preparation = preparation});
  }

  // The run ends in order, with exactly these bytes on its standard streams.
  static void expect_run(const Outcome& outcome, std::string_view out, std::string_view err) {
    expect_end(outcome);
    EXPECT_EQ(outcome.out, out);
    EXPECT_EQ(outcome.err, err);
  }
  static void expect_end(const Outcome& outcome) {
    EXPECT_EQ(outcome.ending, "exit status 0") << outcome.err;
  }
  void expect_whole(std::string_view name) const {
    EXPECT_EQ(read_bytes(file(name)), read_bytes(variant() / "out" / "files" / name)) << name;
  }
  void expect_no_unfinished_file() const {
    for (const auto& entry : fs::directory_iterator(work()))
      EXPECT_NE(entry.path().extension(), ".neu") << entry;
  }
  void expect_absent(std::string_view name) const { EXPECT_FALSE(fs::exists(file(name))) << name; }

 private:
  static fs::path variant() { return fs::path(KV_VARIANTS_DIR) / "all_element_types"; }
  test_files::TemporaryFolder folder_;
};

TEST_F(IoFaults, NoneLeavesEverythingWhole) {
  expect_run(run(), closing("var1"), "");
  expect_whole("var1.Akum");
  expect_whole("code.pkl");
  expect_absent("var1.pkl");
}

// Full devices.

TEST_F(IoFaults, ResultOnAFullDevice) {
  replace_by_link("var1.Akum", "/dev/full");
  expect_run(run(), "", fault_line("Schreiben", "var1.Akum", full));
  expect_whole("code.pkl");
}

TEST_F(IoFaults, LargeResultOnAFullDevice) {
  chain::write(file("large"), 9999);
  replace_by_link("large.Akum", "/dev/full");
  expect_run(run("large"), "", fault_line("Schreiben", "large.Akum", full));
}

TEST_F(IoFaults, ProtocolOnAFullDevice) {
  make_a_finding();
  replace_by_link("var1.pkl", "/dev/full");
  const Outcome outcome = run();
  expect_end(outcome);
  EXPECT_EQ(outcome.err, fault_line("Schreiben", "var1.pkl", full));
  expect_whole("code.pkl");
}

TEST_F(IoFaults, ListingOnAFullDevice) {
  replace_by_link("code.pkl", "/dev/full");
  expect_run(run(), "", fault_line("Schreiben", "code.pkl", full));
  expect_absent("var1.Akum");
}

TEST_F(IoFaults, EveryOutputOnAFullDevice) {
  make_a_finding();
  for (const char* name : {"var1.Akum", "var1.pkl", "code.pkl"}) replace_by_link(name, "/dev/full");
  expect_run(run(), "", fault_line("Schreiben", "code.pkl", full));
}

TEST_F(IoFaults, StandardOutputOnAFullDeviceIsTold) {
  expect_run(run("var1", [] { redirect(STDOUT_FILENO, "/dev/full", O_WRONLY); }), "",
             fault_line("Schreiben", "Standardausgabe", full));
  expect_whole("var1.Akum");
}

void limit(decltype(RLIMIT_AS) resource, rlim_t value) {
  const rlimit both{value, value};
  if (setrlimit(resource, &both) != 0) _exit(126);
}

TEST_F(IoFaults, FilesThatReachTheAllowedSize) {
  write_bytes(file("code.pkl"), "of an earlier run\n");
  const Outcome outcome = run("var1", [] { limit(RLIMIT_FSIZE, 400); });
  expect_run(outcome, "", fault_line("Schreiben", "code.pkl", "File too large"));
  EXPECT_EQ(read_bytes(file("code.pkl")), "of an earlier run\n");
  expect_absent("var1.Akum");
}

// Whoever started the tests may have left handles open.
void close_inherited_handles() {
  for (int handle = STDERR_FILENO + 1; handle < 256; ++handle) ::close(handle);
}

TEST_F(IoFaults, FewHandlesEndInOrder) {
  if (sanitized) GTEST_SKIP() << "the sanitizer needs handles of its own";
  // One beyond the standard streams: without it the process cannot even begin.
  for (rlim_t handles = 4; handles < 10; ++handles) {
    for (const bool has_input : {true, false}) {
      fs::remove(file("var1.Akum"));
      const Outcome outcome = run("var1", [&] {
        close_inherited_handles();
        if (!has_input) ::close(STDIN_FILENO);
        limit(RLIMIT_NOFILE, handles);
      });
      expect_end(outcome);
      if (outcome.out == closing("var1") && outcome.err.empty()) {
        expect_whole("var1.Akum");
      } else {
        const bool told = !outcome.err.empty() || outcome.out.find("KV_Akum: Fehler") != std::string::npos;
        EXPECT_TRUE(told) << handles << " handles";
      }
      expect_no_unfinished_file();
    }
  }
}

// Files that cannot be created or written.

TEST_F(IoFaults, ProtocolIsAFolder) {
  make_a_finding();
  replace_by_folder("var1.pkl");
  expect_run(run(), "", fault_line(opening, "var1.pkl", "Is a directory"));
  expect_whole("code.pkl");
}

TEST_F(IoFaults, ProtocolIsAFolderButNothingIsFound) {
  replace_by_folder("var1.pkl");
  expect_run(run(), closing("var1"), "");
  expect_whole("var1.Akum");
  EXPECT_TRUE(fs::is_directory(file("var1.pkl")));
}

TEST_F(IoFaults, ResultIsAFolder) {
  replace_by_folder("var1.Akum");
  expect_run(run(), "", fault_line(opening, "var1.Akum", "Is a directory"));
  expect_whole("code.pkl");
}

TEST_F(IoFaults, ListingIsAFolder) {
  replace_by_folder("code.pkl");
  expect_run(run(), "", fault_line(opening, "code.pkl", "Is a directory"));
  expect_absent("var1.Akum");
}

TEST_F(IoFaults, LinksThatTurnInACircle) {
  replace_by_link("var1.Akum", "var1.Akum");
  expect_run(run(), "", fault_line(opening, "var1.Akum", "Too many levels of symbolic links"));
  replace_by_link("var1.sys", "var1.sys");
  expect_run(run(), notices::error("Die Datei var1.sys liegt nicht vor!\r\nAbbruch!"), "");
}

// Rights of files hold for the superuser too once these two capabilities are gone.
void give_up_the_rights_of_a_superuser() {
  if (geteuid() != 0) return;
  const bool gone =
      prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE) == 0 && prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH) == 0;
  if (!gone) _exit(125);
}

// Takes rights from a path for as long as it lives.
class Restricted {
 public:
  Restricted(fs::path path, fs::perms perms)
      : path_(std::move(path)), before_(fs::status(path_).permissions()) {
    fs::permissions(path_, perms);
  }
  Restricted(const Restricted&) = delete;
  Restricted& operator=(const Restricted&) = delete;
  Restricted(Restricted&&) = delete;
  Restricted& operator=(Restricted&&) = delete;
  ~Restricted() {
    std::error_code ignored;
    fs::permissions(path_, before_, ignored);
  }

 private:
  fs::path path_;
  fs::perms before_;
};

constexpr fs::perms read_only = fs::perms::owner_read;
constexpr fs::perms read_only_folder = fs::perms::owner_read | fs::perms::owner_exec;

bool cannot_give_up_rights(const Outcome& outcome) {
  return outcome.exit_status == 125;
}

TEST_F(IoFaults, WorkingFolderIsReadOnly) {
  const Restricted restricted(work(), read_only_folder);
  const Outcome outcome = run("var1", give_up_the_rights_of_a_superuser);
  if (cannot_give_up_rights(outcome)) GTEST_SKIP() << "the superuser's rights cannot be given up here";
  expect_run(outcome, "", fault_line(opening, "code.pkl", "Permission denied"));
}

TEST_F(IoFaults, FolderOfTheVariantIsReadOnly) {
  fs::create_directory(file("data"));
  for (const char* kind : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
    fs::rename(file(std::string("var1") + kind), file(std::string("data/var1") + kind));
  }
  const Restricted restricted(file("data"), read_only_folder);
  const Outcome outcome = run("data\\var1", give_up_the_rights_of_a_superuser);
  if (cannot_give_up_rights(outcome)) GTEST_SKIP() << "the superuser's rights cannot be given up here";
  expect_run(outcome, "", fault_line(opening, "data/var1.Akum", "Permission denied"));
  expect_whole("code.pkl");
}

TEST_F(IoFaults, OldProtocolThatCannotBeRemovedIsOverwritten) {
  make_a_finding();
  fs::create_directory(file("data"));
  for (const char* kind : {".sys", ".nfl", ".kfl", ".trs", ".ver"}) {
    fs::rename(file(std::string("var1") + kind), file(std::string("data/var1") + kind));
  }
  write_bytes(file("data/var1.pkl"), std::string(5000, 'x'));
  const Restricted restricted(file("data"), read_only_folder);
  const Outcome outcome = run("data\\var1", give_up_the_rights_of_a_superuser);
  if (cannot_give_up_rights(outcome)) GTEST_SKIP() << "the superuser's rights cannot be given up here";
  expect_run(outcome, closing("data\\var1"), fault_line("L\xF6schen", "data\\var1.pkl", "Permission denied"));
  const std::string protocol = read_bytes(file("data/var1.pkl"));
  EXPECT_TRUE(protocol.starts_with("Pr\xFC")) << protocol;
  EXPECT_EQ(protocol.find("xx"), std::string::npos) << protocol;
}

TEST_F(IoFaults, ResultIsReadOnly) {
  write_bytes(file("var1.Akum"), "of an earlier run\n");
  const Restricted restricted(file("var1.Akum"), read_only);
  const Outcome outcome = run("var1", give_up_the_rights_of_a_superuser);
  if (cannot_give_up_rights(outcome)) GTEST_SKIP() << "the superuser's rights cannot be given up here";
  expect_run(outcome, "", fault_line(opening, "var1.Akum", "Permission denied"));
  EXPECT_EQ(read_bytes(file("var1.Akum")), "of an earlier run\n");
}

TEST_F(IoFaults, InputsThatMayOnlyBeReadAreRead) {
  const Restricted system(file("var1.sys"), read_only);
  const Restricted areas(file("var1.nfl"), read_only);
  const Outcome outcome = run("var1", give_up_the_rights_of_a_superuser);
  if (cannot_give_up_rights(outcome)) GTEST_SKIP() << "the superuser's rights cannot be given up here";
  expect_run(outcome, closing("var1"), "");
  expect_whole("var1.Akum");
}

TEST_F(IoFaults, InputMayNotBeRead) {
  const Restricted areas(file("var1.nfl"), fs::perms::none);
  const Outcome outcome = run("var1", give_up_the_rights_of_a_superuser);
  if (cannot_give_up_rights(outcome)) GTEST_SKIP() << "the superuser's rights cannot be given up here";
  expect_run(outcome, missing("var1.nfl") + closing("var1"), "");
  expect_absent("var1.Akum");
}

// Standard streams.

TEST_F(IoFaults, StandardOutputIsClosed) {
  expect_run(run("var1", [] { close(STDOUT_FILENO); }), "",
             fault_line("Schreiben", "Standardausgabe", "Bad file descriptor"));
  expect_whole("var1.Akum");
  expect_whole("code.pkl");
}

TEST_F(IoFaults, StandardOutputGoesOnInAFile) {
  write_bytes(file("notices"), "of an earlier run\n");
  expect_run(run("var1", [&] { redirect(STDOUT_FILENO, file("notices").c_str(), O_WRONLY | O_APPEND); }), "",
             "");
  expect_run(run("var1", [&] { redirect(STDOUT_FILENO, file("notices").c_str(), O_RDWR | O_APPEND); }), "",
             "");
  EXPECT_EQ(read_bytes(file("notices")), "of an earlier run\n" + closing("var1") + closing("var1"));
}

void write_to_nobody(int descriptor) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) _exit(126);
  close(ends[0]);
  if (dup2(ends[1], descriptor) != descriptor) _exit(126);
  close(ends[1]);
}

TEST_F(IoFaults, ReaderOfStandardOutputWentAway) {
  expect_run(run("var1", [] { write_to_nobody(STDOUT_FILENO); }), "",
             fault_line("Schreiben", "Standardausgabe", "Broken pipe"));
  expect_whole("var1.Akum");
  expect_whole("code.pkl");
}

TEST_F(IoFaults, ReaderOfStandardErrorWentAway) {
  replace_by_link("code.pkl", "/dev/full");
  expect_run(run("var1", [] { write_to_nobody(STDERR_FILENO); }), "", "");
  expect_absent("var1.Akum");
}

TEST_F(IoFaults, EveryStandardStreamIsClosed) {
  expect_run(run("var1",
                 [] {
                   close(STDIN_FILENO);
                   close(STDOUT_FILENO);
                   close(STDERR_FILENO);
                 }),
             "", "");
  expect_whole("var1.Akum");
  expect_whole("code.pkl");
}

TEST_F(IoFaults, EveryStandardStreamIsClosedAndAFileIsMissing) {
  fs::remove(file("var1.ver"));
  write_bytes(file("var1.Akum"), "of an earlier run\n");
  expect_run(run("var1",
                 [] {
                   close(STDIN_FILENO);
                   close(STDOUT_FILENO);
                   close(STDERR_FILENO);
                 }),
             "", "");
  EXPECT_EQ(read_bytes(file("var1.Akum")), "of an earlier run\n");
  expect_whole("code.pkl");
}

// Inputs that are no files.

class InputIsNoFile : public IoFaults, public testing::WithParamInterface<const char*> {
 protected:
  void expect_given_up() const {
    const std::string name = GetParam();
    expect_run(run(), missing(name) + closing("var1"), "");
    expect_absent("var1.Akum");
    expect_absent("var1.pkl");
  }
};

TEST_P(InputIsNoFile, Folder) {
  replace_by_folder(GetParam());
  expect_given_up();
}

TEST_P(InputIsNoFile, PipeWithoutAWriter) {
  replace_by_pipe(GetParam());
  expect_given_up();
}

TEST_P(InputIsNoFile, Device) {
  replace_by_link(GetParam(), "/dev/zero");
  expect_given_up();
}

INSTANTIATE_TEST_SUITE_P(Inputs, InputIsNoFile,
                         testing::Values("var1.sys", "var1.nfl", "var1.kfl", "var1.trs", "var1.ver"),
                         [](const testing::TestParamInfo<const char*>& input) {
                           return std::string(input.param).substr(5);
                         });

// What is no file is no suppression list either.

TEST_F(IoFaults, SuppressionListIsAPipe) {
  replace_by_pipe("fehlercode.ex");
  expect_run(run(), closing("var1"), "");
  expect_whole("var1.Akum");
}

TEST_F(IoFaults, SuppressionListIsAFolder) {
  replace_by_folder("fehlercode.ex");
  expect_run(run(), closing("var1"), "");
  expect_whole("var1.Akum");
}

TEST_F(IoFaults, SuppressionListIsADevice) {
  replace_by_link("fehlercode.ex", "/dev/zero");
  expect_run(run(), closing("var1"), "");
  expect_whole("var1.Akum");
}

// Outputs that are pipes.

TEST_F(IoFaults, ResultIsAPipeWithoutAReader) {
  replace_by_pipe("var1.Akum");
  expect_run(run(), "", fault_line(opening, "var1.Akum", "No such device or address"));
  expect_whole("code.pkl");
}

TEST_F(IoFaults, ListingIsAPipeWithoutAReader) {
  replace_by_pipe("code.pkl");
  expect_run(run(), "", fault_line(opening, "code.pkl", "No such device or address"));
  expect_absent("var1.Akum");
}

TEST_F(IoFaults, LargeResultIsAPipeWithoutAReader) {
  chain::write(file("large"), 9999);
  replace_by_pipe("large.Akum");
  expect_run(run("large"), "", fault_line(opening, "large.Akum", "No such device or address"));
}

TEST_F(IoFaults, ProtocolIsAPipeWithoutAReader) {
  make_a_finding();
  replace_by_pipe("var1.pkl");
  expect_run(run(), "", fault_line(opening, "var1.pkl", "No such device or address"));
}

TEST_F(IoFaults, ReaderOfTheResultWentAway) {
  chain::write(file("large"), 9999);
  replace_by_pipe("large.Akum");
  const int reader = open(file("large.Akum").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_GE(reader, 0);
  std::thread leaving([reader] {
    std::array<char, 1> byte{};
    while (read(reader, byte.data(), byte.size()) <= 0) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    close(reader);
  });
  const Outcome outcome = run("large");
  leaving.join();
  expect_run(outcome, "", fault_line("Schreiben", "large.Akum", "Broken pipe"));
}

// One file under two names.

TEST_F(IoFaults, VariantNamedCodeHasItsProtocolWhereTheListingIs) {
  for (const char* kind : {".sys", ".kfl", ".trs", ".ver"}) {
    fs::rename(file(std::string("var1") + kind), file(std::string("code") + kind));
  }
  write_bytes(file("code.nfl"), "   N9999    10.\n");
  expect_run(run("code"), "", fault_line(opening, "code.pkl", "Device or resource busy"));
  expect_whole("code.pkl");
}

TEST_F(IoFaults, CompanionIsALinkToTheSystemLogic) {
  const std::string system = read_bytes(file("var1.sys"));
  replace_by_link("var1.trs", "var1.sys");
  const Outcome outcome = run();
  // The system logic is read and closed by then; the link is a file like any other, without a reach in it.
  expect_run(outcome, closing("var1"), "");
  EXPECT_NE(read_bytes(file("var1.pkl")).find("\nA00 "), std::string::npos) << read_bytes(file("var1.pkl"));
  expect_absent("var1.Akum");
  EXPECT_EQ(read_bytes(file("var1.sys")), system);
}

TEST_F(IoFaults, ResultIsTheListing) {
  replace_by_link("var1.Akum", "code.pkl");
  expect_run(run(), "", fault_line(opening, "var1.Akum", "Device or resource busy"));
  expect_whole("code.pkl");
}

// Memory.

// Tables that cannot be allocated raise the level of the run without a text: there is no result then.
bool told_or_whole_or_absent(const Outcome& outcome, const fs::path& result, std::string_view wanted) {
  if (outcome.err.ends_with('\n') || outcome.out.find("KV_Akum: Fehler") != std::string::npos) return true;
  return outcome.out == closing("large") && (!fs::exists(result) || read_bytes(result) == wanted);
}

TEST_F(IoFaults, LittleMemoryIsTold) {
  if (sanitized) GTEST_SKIP() << "the sanitizer needs memory of its own";
  chain::write(file("large"), 9999);
  expect_run(run("large"), closing("large"), "");
  const std::string wanted = read_bytes(file("large.Akum"));
  ASSERT_GT(wanted.size(), 1'000'000U);

  constexpr rlim_t kilobyte = 1024;
  // The least that the start of a process takes here.
  rlim_t least = 1024 * kilobyte;
  while (run("var1", [&] { limit(RLIMIT_AS, least); }).out != closing("var1")) {
    least += 256 * kilobyte;
    ASSERT_LT(least, 1'000'000 * kilobyte);
  }
  int told = 0;
  bool enough = false;
  for (rlim_t most = least; !enough; most += 128 * kilobyte) {
    fs::remove(file("large.Akum"));
    const Outcome outcome = run("large", [&] { limit(RLIMIT_AS, most); });
    expect_end(outcome);
    ASSERT_TRUE(told_or_whole_or_absent(outcome, file("large.Akum"), wanted)) << most / kilobyte << " KiB";
    enough = outcome.err.empty() && fs::exists(file("large.Akum"));
    told += outcome.err.empty() ? 0 : 1;
    ASSERT_LT(most, 1'000'000 * kilobyte);
  }
  EXPECT_GT(told, 0) << "no limit was met";
  EXPECT_EQ(read_bytes(file("large.Akum")), wanted);
}

}  // namespace
