// Every call fails once. Whole runs in which one call of the host or one allocation after the other fails, in
// every way that it can. What a run leaves behind then is held to this:
//
// - It ends by itself, with exit status 0, and has closed every file.
// - The result and the listing are the old file or the whole right one. Where they are written in place, they
//   may be anything else when that is told.
// - The protocol is the right one. When something is told, it may also be the one of before, be missing, or
//   hold some of the right lines, of which the last one may be cut.
// - Told means: a line on standard error, or a notice titled "KV_Akum: Fehler" that a run without a fault
//   has not. When nothing is told, every file and standard output are right.
// - The inputs are as they were, and nothing else stands in the folder.
// - Every line on standard error is one of those that the program has.
//
// One exception: a suppression list that cannot be opened is passed over without a word, as if there were
// none. Then everything is as in a run without it.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "KV_Akum/KV_Akum.h"
#include "tests/child.h"
#include "tests/counted_allocations.h"
#include "tests/forwarding_host.h"
#include "tests/golden.h"
#include "tests/notices.h"
#include "tests/test_files.h"
#include "tests/test_host.h"

namespace {

namespace fs = std::filesystem;
using test_files::read_bytes;
using test_files::write_bytes;

// Faults.

enum class Way : std::uint8_t { once, from_then_on, in_part };

// Which call fails, and how. Allocations have no kind among the host's calls.
struct Fault {
  HostCall call{};
  bool allocation = false;
  Way way = Way::once;
  int number = 0;  ///< of the system's reason, or the bytes that are moved
  const char* name = "";
};

std::ostream& operator<<(std::ostream& out, const Fault& fault) {
  out << fault.name;
  if (fault.way == Way::in_part) return out << ", only " << fault.number << " bytes";
  if (!fault.allocation) out << ": " << std::generic_category().message(fault.number);
  return out << (fault.way == Way::from_then_on ? ", and all later ones" : "");
}

std::vector<Fault> refusals(const char* name, HostCall call, std::initializer_list<int> reasons) {
  std::vector<Fault> faults;
  for (const int reason : reasons) faults.push_back({.call = call, .number = reason, .name = name});
  faults.push_back(faults.front());
  faults.back().way = Way::from_then_on;
  return faults;
}

void append(std::vector<Fault>& faults, const std::vector<Fault>& more) {
  faults.insert(faults.end(), more.begin(), more.end());
}

// What POSIX and Linux have for each call. A signal that interrupts a call is met below the host's calls.
std::vector<Fault> every_fault() {
  std::vector<Fault> faults;
  append(faults, refusals("look", HostCall::look, {EIO, ENOMEM, EOVERFLOW, ESTALE}));
  append(faults, refusals("open", HostCall::open,
                          {EMFILE, ENFILE, EACCES, EIO, ENOENT, ENOMEM, ENOSPC, EROFS, EBUSY, ENXIO}));
  append(faults, refusals("facts", HostCall::facts, {EIO, ENOMEM, EOVERFLOW, ESTALE}));
  append(faults, refusals("read", HostCall::read, {EIO, EISDIR, ENOMEM, ESTALE, EACCES}));
  append(faults, refusals("write", HostCall::write, {ENOSPC, EDQUOT, EFBIG, EIO, EPIPE, ENOMEM}));
  append(faults, refusals("notice", HostCall::notice, {EPIPE, EBADF, EIO, ENOSPC}));
  append(faults, refusals("seek", HostCall::seek, {EIO, EOVERFLOW, ESPIPE}));
  append(faults, refusals("truncate", HostCall::truncate, {EIO, EPERM, EROFS, EFBIG}));
  append(faults, refusals("close", HostCall::close, {EIO, ENOSPC, EDQUOT}));
  append(faults, refusals("remove", HostCall::remove, {EACCES, EBUSY, EIO, EPERM, EROFS}));
  append(faults, refusals("create_successor", HostCall::create_successor,
                          {EACCES, EPERM, EROFS, ENAMETOOLONG, EMFILE, ENFILE, ENOSPC, EDQUOT, EIO, ENOMEM}));
  append(faults, refusals("succeed", HostCall::succeed, {EIO, ENOSPC, EDQUOT, EACCES, EPERM, EROFS, ENOENT}));
  append(faults, refusals("lock", HostCall::lock, {EWOULDBLOCK}));
  for (const HostCall call : {HostCall::read, HostCall::write, HostCall::notice}) {
    const char* const name = call == HostCall::read ? "read" : call == HostCall::write ? "write" : "notice";
    faults.push_back({.call = call, .way = Way::in_part, .number = 1, .name = name});
  }
  faults.push_back({.call = HostCall::read, .way = Way::in_part, .number = 0, .name = "read"});
  faults.push_back({.allocation = true, .name = "allocation"});
  faults.push_back({.allocation = true, .way = Way::from_then_on, .name = "allocation"});
  return faults;
}

// What the process of a run tells the test besides its files and streams.
struct Counts {
  bool told = false;  ///< not by a process that ended where there was no memory even for an exception
  std::array<int, host_calls> calls{};
  int allocations = 0;
  int open_handles = 0;

  [[nodiscard]] int of(const Fault& fault) const {
    return fault.allocation ? allocations : calls.at(static_cast<std::size_t>(fault.call));
  }
};

// Keeps count of the handles that are open.
class HandleCount final : public ForwardingHost {
 public:
  [[nodiscard]] int open_handles() const { return open_; }

  int open(const std::string& path, runtime::Access access, std::error_code& reason) override {
    return taken(ForwardingHost::open(path, access, reason));
  }
  bool close(int handle, std::error_code& reason) override {
    --open_;
    return ForwardingHost::close(handle, reason);
  }
  runtime::Successor create_successor(const std::string& path, std::error_code& reason) override {
    runtime::Successor successor = ForwardingHost::create_successor(path, reason);
    taken(successor.handle);
    return successor;
  }
  bool succeed(const runtime::Successor& successor, const std::string& path,
               std::error_code& reason) override {
    --open_;
    return ForwardingHost::succeed(successor, path, reason);
  }
  void discard(const runtime::Successor& successor) override {
    --open_;
    ForwardingHost::discard(successor);
  }

 private:
  int taken(int handle) {
    if (handle >= 0) ++open_;
    return handle;
  }
  int open_ = 0;
};

// Memory that parent and child share.
Counts& shared_counts() {
  static auto* const shared = static_cast<Counts*>(
      mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  return *shared;
}

// Both hosts and what they counted, told when the process ends.
struct Instruments {
  HandleCount handles;
  TestHost calls;
};
Instruments* instruments = nullptr;

void tell_counts() {
  Counts& counts = shared_counts();
  for (std::size_t call = 0; call < host_calls; ++call) {
    counts.calls.at(call) = instruments->calls.calls(static_cast<HostCall>(call));
  }
  counts.allocations = counted_allocations::end();
  counts.told = true;
  counts.open_handles = instruments->handles.open_handles();
}

// From now on the n-th such call fails; 0: none.
void begin(const Fault& fault, int nth) {
  const bool lasting = fault.way == Way::from_then_on;
  if (nth > 0 && !fault.allocation) {
    if (fault.way == Way::in_part) {
      instruments->calls.shorten(fault.call, nth, static_cast<std::size_t>(fault.number));
    } else {
      instruments->calls.fail(fault.call, nth, static_cast<std::errc>(fault.number), lasting);
    }
  }
  const int first = fault.allocation ? nth : 0;
  counted_allocations::begin(first, lasting && first > 0 ? std::numeric_limits<int>::max() : first);
}

// Runs.

struct Traces {
  child::Outcome outcome;
  std::map<std::string, std::string> files;
};

std::string bytes_of(const Traces& traces, const std::string& name) {
  const auto file = traces.files.find(name);
  return file == traces.files.end() ? "(missing)" : file->second;
}

std::string old_bytes(const std::string& name) {
  return name + " of an earlier run\n";
}

// Whether result and listing are links, behind which the files are written where they stand.
enum class Outputs : std::uint8_t { files, links };

struct Scene {
  const char* name;
  const char* folder;
  const char* variant;
  Outputs outputs = Outputs::files;
};

std::ostream& operator<<(std::ostream& out, const Scene& scene) {
  return out << scene.name;
}

// A folder with a variant and the outputs of an earlier run.
class Workshop {
 public:
  Workshop(const fs::path& inputs, std::string variant, Outputs outputs)
      : result_(variant + ".Akum"), protocol_(variant + ".pkl"), variant_(std::move(variant)) {
    fs::copy(inputs, folder_.path());
    inputs_ = files();
    if (outputs == Outputs::links) {
      for (const std::string& name : {result_, listing}) fs::create_symlink(name + target, file(name));
    }
  }

  [[nodiscard]] fs::path file(const std::string& name) const { return folder_.path() / name; }
  [[nodiscard]] const std::string& result() const { return result_; }
  [[nodiscard]] const std::string& protocol() const { return protocol_; }
  static inline const std::string listing = "code.pkl";
  /// The files that a run reads, with their bytes.
  [[nodiscard]] const std::map<std::string, std::string>& inputs() const { return inputs_; }
  [[nodiscard]] std::array<std::string, 3> outputs() const { return {result_, protocol_, listing}; }

  // A run in which the n-th call fails; 0: none.
  [[nodiscard]] Traces run(const Fault& fault, int nth) const {
    for (const std::string& name : outputs()) write_bytes(file(name), old_bytes(name));
    shared_counts() = {};
    Traces traces;
    traces.outcome = child::run([&] {
      fs::current_path(folder_.path());
      Instruments both;
      instruments = &both;
      std::atexit(tell_counts);
      const std::array<const char*, 2> arguments = {"KV_Akum", variant_.c_str()};
      begin(fault, nth);
      KV_Akum::RunProgram(2, arguments.data());
    });
    traces.files = files();
    return traces;
  }

 private:
  static inline const std::string target = ".target";

  [[nodiscard]] std::map<std::string, std::string> files() const {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path())) {
      const std::string name = entry.path().filename().string();
      if (!name.ends_with(target)) files[name] = read_bytes(entry.path());
    }
    return files;
  }

  test_files::TemporaryFolder folder_{test_files::fast_folder()};
  std::string result_;
  std::string protocol_;
  std::string variant_;
  std::map<std::string, std::string> inputs_;
};

// The rules.

// The notices of faults, with their texts.
std::set<std::string> faults_shown(const std::string& out) {
  const std::string title = notices::record("messagebox_button_0_settitle", "KV_Akum: Fehler");
  std::set<std::string> faults;
  std::size_t place = out.find(title);
  while (place != std::string::npos) {
    const std::size_t next = out.find("\x01messagebox_button_0_settitle", place + 1);
    faults.insert(out.substr(place, next - place));
    place = out.find(title, place + 1);
  }
  return faults;
}

bool is_line_of_the_program(const std::string& line) {
  constexpr std::array<std::string_view, 4> beginnings = {
      "E/A-Fehler beim ", "STOP KV_Akum: Arbeitsspeicher ", "Speichermangel: ", "In file '"};
  return std::ranges::any_of(beginnings, [&](std::string_view begin) { return line.starts_with(begin); });
}

// Whether the lines are among the wanted ones, in their order; the last one may be cut.
bool holds_some_lines_of(const std::string& bytes, const std::string& wanted) {
  const std::vector<std::string> lines = golden::lines_of(bytes);
  const std::vector<std::string> all = golden::lines_of(wanted);
  auto place = all.begin();
  for (const std::string& line : lines) {
    const bool may_be_cut = &line == &lines.back();
    place = std::find_if(place, all.end(), [&](const std::string& whole) {
      return may_be_cut ? whole.starts_with(line) : whole == line;
    });
    if (place == all.end()) return false;
    ++place;
  }
  return true;
}

class Judge {
 public:
  Judge(const Workshop& workshop, Outputs outputs)
      : workshop_(workshop), outputs_(outputs), right_(workshop.run({}, 0)), calls_(shared_counts()) {
    const fs::path list = workshop.file("fehlercode.ex");
    if (!fs::exists(list)) return;
    fs::remove(list);
    without_list_.push_back(workshop.run({}, 0));
    write_bytes(list, workshop.inputs().at("fehlercode.ex"));
  }

  /// A run without a fault.
  [[nodiscard]] const Traces& right() const { return right_; }
  /// How often each call is made in it.
  [[nodiscard]] const Counts& calls() const { return calls_; }

  /// What is wrong after a run in which the n-th call failed; empty when nothing is.
  [[nodiscard]] std::string wrong_in(const Traces& found, const Fault& fault, int nth) const {
    const Counts& counts = shared_counts();
    if (counts.told && counts.of(fault) < nth) return "the call was not made";
    if (counts.told && counts.open_handles != 0) return std::to_string(counts.open_handles) + " open handles";
    const std::string wrong = differing_from(right_, found);
    if (wrong.empty()) return {};
    for (const Traces& other : without_list_) {
      if (differing_from(other, found).empty()) return {};
    }
    return wrong + "; standard error: " + found.outcome.err;
  }

 private:
  [[nodiscard]] std::string differing_from(const Traces& right, const Traces& found) const {
    const auto& [outcome, files] = found;
    if (outcome.ending != "exit status 0") return outcome.ending + ", " + outcome.err;
    if (!outcome.err.empty() && !outcome.err.ends_with('\n')) return "a line without an end";
    for (const std::string& line : golden::lines_of(outcome.err)) {
      if (!is_line_of_the_program(line)) return "an unknown line";
    }
    const bool told = !outcome.err.empty() ||
                      !std::ranges::includes(faults_shown(right.outcome.out), faults_shown(outcome.out));
    if (!told && outcome.out != right.outcome.out) return "standard output differs, and nothing is told";
    const std::string wrong = wrong_beside_outputs(found);
    return wrong.empty() ? wrong_outputs(right, found, told) : wrong;
  }

  [[nodiscard]] std::string wrong_beside_outputs(const Traces& found) const {
    for (const auto& [name, bytes] : workshop_.inputs()) {
      if (bytes_of(found, name) != bytes) return name + " is changed";
    }
    const auto outputs = workshop_.outputs();
    for (const auto& [name, bytes] : found.files) {
      const bool known =
          workshop_.inputs().contains(name) || std::ranges::find(outputs, name) != outputs.end();
      if (!known) return name + " must not be there";
    }
    const bool links = fs::is_symlink(workshop_.file(workshop_.result())) &&
                       fs::is_symlink(workshop_.file(Workshop::listing));
    return links == (outputs_ == Outputs::links) ? "" : "a link was replaced";
  }

  [[nodiscard]] std::string wrong_outputs(const Traces& right, const Traces& found, bool told) const {
    for (const std::string& name : workshop_.outputs()) {
      const std::string bytes = bytes_of(found, name);
      const std::string wanted = bytes_of(right, name);
      if (bytes == wanted) continue;
      if (!told) return name + " is not right, and nothing is told";
      if (bytes == old_bytes(name)) continue;
      const bool protocol = name == workshop_.protocol();
      const bool may_be_so = protocol ? !found.files.contains(name) || holds_some_lines_of(bytes, wanted)
                                      : outputs_ == Outputs::links;
      if (!may_be_so) return name + " is neither the old nor the right one";
    }
    return {};
  }

  const Workshop& workshop_;
  Outputs outputs_;
  Traces right_;
  Counts calls_;
  std::vector<Traces> without_list_;
};

// The test: each fault of each call. Of many calls, the first and last ones and some between.

std::vector<int> chosen(int calls, int most) {
  std::vector<int> numbers;
  if (calls <= most) {
    for (int nth = 1; nth <= calls; ++nth) numbers.push_back(nth);
    return numbers;
  }
  for (int i = 0; i < most; ++i) {
    numbers.push_back(1 + static_cast<int>(std::int64_t{i} * (calls - 1) / (most - 1)));
  }
  return numbers;
}

class RunFaults : public testing::TestWithParam<Scene> {
 protected:
  static void expect_no_fault_unheard(const fs::path& inputs, const Scene& scene, int most) {
    const Workshop workshop(inputs, scene.variant, scene.outputs);
    const Judge judge(workshop, scene.outputs);
    ASSERT_TRUE(judge.right().outcome.err.empty()) << judge.right().outcome.err;
    std::map<std::string, int> runs;
    for (const Fault& fault : every_fault()) {
      for (const int nth : chosen(judge.calls().of(fault), most)) {
        ++runs[fault.name];
        const std::string wrong = judge.wrong_in(workshop.run(fault, nth), fault, nth);
        EXPECT_TRUE(wrong.empty()) << scene.name << ", call " << nth << " of " << fault << ": " << wrong;
      }
    }
    tell(scene, judge.calls(), runs);
  }

 private:
  static void tell(const Scene& scene, const Counts& calls, const std::map<std::string, int>& runs) {
    int all = 0;
    std::string each;
    for (const auto& [name, count] : runs) {
      all += count;
      each += " " + name + " " + std::to_string(count);
    }
    std::printf("%s: %d runs with a fault;%s; %d allocations a run\n", scene.name, all, each.c_str(),
                calls.allocations);
  }
};

// A run is the slower the more a build checks.
#ifdef __SANITIZE_ADDRESS__
constexpr int usual_most = 12;
constexpr int usual_most_of_large = 3;
#else
constexpr int usual_most = std::numeric_limits<int>::max();
constexpr int usual_most_of_large = 8;
#endif

// All calls of each kind in the long form.
int most_calls(int usual) {
  return std::getenv("KV_EVERY_FAULT") == nullptr ? usual : std::numeric_limits<int>::max();
}

TEST_P(RunFaults, AreToldOrLeaveEverythingRight) {
  expect_no_fault_unheard(GetParam().folder, GetParam(), most_calls(usual_most));
}

#define GOLDEN(name) KV_VARIANTS_DIR "/" name "/in"

INSTANTIATE_TEST_SUITE_P(
    Variants, RunFaults,
    testing::Values(Scene{"example", KV_EXAMPLES_DIR, "rausel"},
                    Scene{"example_in_place", KV_EXAMPLES_DIR, "rausel", Outputs::links},
                    Scene{"warnings", GOLDEN("w01_cap"), "var1"},
                    Scene{"warnings_in_place", GOLDEN("w01_cap"), "var1", Outputs::links},
                    Scene{"suppressed_error", GOLDEN("suppressed_a14_lowers_the_level"), "var1"},
                    Scene{"missing_file", GOLDEN("missing_nfl_then_duplicate_in_kfl"), "var1"}),
    [](const testing::TestParamInfo<Scene>& scene) { return std::string(scene.param.name); });

TEST_F(RunFaults, OfALargeVariantAreToldOrLeaveEverythingRight) {
  const test_files::TemporaryFolder folder(test_files::fast_folder());
  const child::Outcome generated = child::run([&] {
    execl(KV_GENERATE, KV_GENERATE, "--elements", "20000", "--unit-lines", folder.file("large").c_str(),
          nullptr);
    _exit(126);
  });
  ASSERT_EQ(generated.ending, "exit status 0") << generated.err;
  expect_no_fault_unheard(folder.path(), {.name = "large", .folder = "", .variant = "large"},
                          most_calls(usual_most_of_large));
}

// The judge itself.

TEST(Lines, OfAProtocolMayBeMissingOrCut) {
  const std::string wanted = "one\ntwo\nthree\n";
  for (const char* bytes : {"", "one\n", "one\ntwo\nthree\n", "one\nthree\n", "two\nth", "th"}) {
    EXPECT_TRUE(holds_some_lines_of(bytes, wanted)) << bytes;
  }
  for (const char* bytes : {"four\n", "two\none\n", "on\ntwo\n", "one\none\n"}) {
    EXPECT_FALSE(holds_some_lines_of(bytes, wanted)) << bytes;
  }
}

}  // namespace
