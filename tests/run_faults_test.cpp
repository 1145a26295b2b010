// Every call fails once, from inside: runs of the main program in a process of the test, in which each call
// of the host and each allocation fails in turn, in every way that it can.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <limits>
#include <string>
#include <system_error>
#include <vector>

#include "KV_Akum/KV_Akum.h"
#include "tests/child.h"
#include "tests/counted_allocations.h"
#include "tests/forwarding_host.h"
#include "tests/run_faults.h"
#include "tests/sanitized.h"
#include "tests/test_files.h"
#include "tests/test_host.h"

namespace {

namespace fs = std::filesystem;
using run_faults::Fault;
using run_faults::Outputs;
using run_faults::Scene;
using run_faults::Traces;
using run_faults::Way;

// Faults.

// Allocations are counted behind the host's calls.
constexpr std::size_t allocation = host_calls;

constexpr std::size_t number_of(HostCall call) {
  return static_cast<std::size_t>(call);
}

// What POSIX and Linux have for each call. A signal that interrupts a call is met below the host's calls.
std::vector<Fault> every_fault() {
  std::vector<Fault> faults;
  const auto add = [&](const char* name, HostCall call, std::initializer_list<int> reasons) {
    const std::vector<Fault> more = run_faults::refusals(name, number_of(call), reasons);
    faults.insert(faults.end(), more.begin(), more.end());
  };
  add("look", HostCall::look, {EIO, ENOMEM, EOVERFLOW, ESTALE});
  add("open", HostCall::open, {EMFILE, ENFILE, EACCES, EIO, ENOENT, ENOMEM, ENOSPC, EROFS, EBUSY, ENXIO});
  add("facts", HostCall::facts, {EIO, ENOMEM, EOVERFLOW, ESTALE});
  add("read", HostCall::read, {EIO, EISDIR, ENOMEM, ESTALE, EACCES});
  add("write", HostCall::write, {ENOSPC, EDQUOT, EFBIG, EIO, EPIPE, ENOMEM});
  add("notice", HostCall::notice, {EPIPE, EBADF, EIO, ENOSPC});
  add("seek", HostCall::seek, {EIO, EOVERFLOW, ESPIPE});
  add("truncate", HostCall::truncate, {EIO, EPERM, EROFS, EFBIG});
  add("close", HostCall::close, {EIO, ENOSPC, EDQUOT});
  add("remove", HostCall::remove, {EACCES, EBUSY, EIO, EPERM, EROFS});
  add("create_successor", HostCall::create_successor,
      {EACCES, EPERM, EROFS, ENAMETOOLONG, EMFILE, ENFILE, ENOSPC, EDQUOT, EIO, ENOMEM});
  add("succeed", HostCall::succeed, {EIO, ENOSPC, EDQUOT, EACCES, EPERM, EROFS, ENOENT});
  add("lock", HostCall::lock, {EWOULDBLOCK});
  for (const HostCall call : {HostCall::read, HostCall::write, HostCall::notice}) {
    const char* const name = call == HostCall::read ? "read" : call == HostCall::write ? "write" : "notice";
    faults.push_back({.call = number_of(call), .way = Way::in_part, .number = 1, .name = name});
  }
  faults.push_back({.call = number_of(HostCall::read), .way = Way::in_part, .number = 0, .name = "read"});
  faults.push_back({.call = allocation, .number = ENOMEM, .name = "allocation"});
  faults.push_back({.call = allocation, .way = Way::from_then_on, .number = ENOMEM, .name = "allocation"});
  return faults;
}

// What the process of a run tells the test besides its files and streams.
struct Counts {
  bool told = false;  ///< not by a process that ended where there was no memory even for an exception
  std::array<int, host_calls> calls{};
  int allocations = 0;
  int open_handles = 0;

  [[nodiscard]] int of(const Fault& fault) const {
    return fault.call == allocation ? allocations : calls.at(fault.call);
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
  if (nth > 0 && fault.call != allocation) {
    const auto call = static_cast<HostCall>(fault.call);
    if (fault.way == Way::in_part) {
      instruments->calls.shorten(call, nth, static_cast<std::size_t>(fault.number));
    } else {
      instruments->calls.fail(call, nth, static_cast<std::errc>(fault.number), lasting);
    }
  }
  const int first = fault.call == allocation ? nth : 0;
  counted_allocations::begin(first, lasting && first > 0 ? std::numeric_limits<int>::max() : first);
}

// A run in which the n-th call fails; 0: none.
child::Outcome run(const fs::path& folder, const std::string& variant, const Fault& fault, int nth) {
  shared_counts() = {};
  return child::run([&] {
    fs::current_path(folder);
    Instruments both;
    instruments = &both;
    std::atexit(tell_counts);
    const std::array<const char*, 2> arguments = {"KV_Akum", variant.c_str()};
    begin(fault, nth);
    KV_Akum::RunProgram(2, arguments.data());
  });
}

run_faults::Run with(const Fault& fault, int nth) {
  return [=](const fs::path& folder, const std::string& variant) { return run(folder, variant, fault, nth); };
}

// What is wrong with the counts of a run in which the n-th call failed.
std::string wrong_counts(const Fault& fault, int nth) {
  const Counts& counts = shared_counts();
  if (counts.told && counts.of(fault) < nth) return "the call was not made; ";
  if (counts.told && counts.open_handles != 0) return std::to_string(counts.open_handles) + " open handles; ";
  return {};
}

class RunFaults : public testing::TestWithParam<Scene> {
 protected:
  // Of more calls of a kind than `most`, some are chosen.
  static void expect_no_fault_unheard(const Scene& scene, int most) {
    const run_faults::Workshop workshop(scene);
    const run_faults::Judge judge(workshop, with({}, 0));
    ASSERT_TRUE(judge.right().outcome.err.empty()) << judge.right().outcome.err;
    ASSERT_TRUE(judge.wrong_in(workshop.run(with({}, 0))).empty());
    const Counts counts = shared_counts();
    run_faults::Tally tally;
    for (const Fault& fault : every_fault()) {
      for (const int nth : run_faults::chosen(counts.of(fault), most)) {
        tally.add(fault);
        const Traces found = workshop.run(with(fault, nth));
        const std::string wrong = wrong_counts(fault, nth) + judge.wrong_in(found);
        EXPECT_TRUE(wrong.empty()) << scene << ", call " << nth << " of " << fault << ": " << wrong;
      }
    }
    tally.print(scene, "; " + std::to_string(counts.allocations) + " allocations a run");
  }
};

// A run is the slower the more a build checks.
constexpr int usual_most = sanitized ? 3 : std::numeric_limits<int>::max();
constexpr int usual_most_of_large = sanitized ? 2 : 6;

// All calls of each kind in the long form.
int most_calls(int usual) {
  return std::getenv("KV_EVERY_FAULT") == nullptr ? usual : std::numeric_limits<int>::max();
}

TEST_P(RunFaults, AreToldOrLeaveEverythingRight) {
  expect_no_fault_unheard(GetParam(), most_calls(usual_most));
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
    execl(KV_GENERATE, KV_GENERATE, "--elements", sanitized ? "5000" : "20000", "--unit-lines",
          folder.file("large").c_str(), nullptr);
    _exit(126);
  });
  ASSERT_EQ(generated.ending, "exit status 0") << generated.err;
  expect_no_fault_unheard({.name = "large", .folder = folder.path(), .variant = "large"},
                          most_calls(usual_most_of_large));
}

// A file that grows while it is read takes more and more memory, each time anew.

class SizesUnknown final : public ForwardingHost {
 public:
  bool facts(int handle, runtime::FileFacts& facts, std::error_code& reason) override {
    const bool known = ForwardingHost::facts(handle, facts, reason);
    facts.size = 0;
    return known;
  }
};

child::Outcome run_with_growing_files(const fs::path& folder, int refused) {
  shared_counts() = {};
  return child::run([&] {
    fs::current_path(folder);
    const SizesUnknown host;
    std::atexit([] { shared_counts().allocations = counted_allocations::end(); });
    const std::array<const char*, 2> arguments = {"KV_Akum", "rausel"};
    counted_allocations::begin(refused, refused);
    KV_Akum::RunProgram(2, arguments.data());
  });
}

TEST_F(RunFaults, MemoryForGrowingFilesIsTold) {
  const test_files::TemporaryFolder folder(test_files::fast_folder());
  fs::copy(KV_EXAMPLES_DIR, folder.path(), fs::copy_options::recursive);
  const std::string closing = run_with_growing_files(folder.path(), 0).out;
  const std::string right = test_files::read_bytes(fs::path(KV_EXAMPLES_DIR) / "expected" / "rausel.Akum");
  ASSERT_EQ(test_files::read_bytes(folder.file("rausel.Akum")), right);
  const int allocations = shared_counts().allocations;
  int told_of_reading = 0;
  for (int nth = 1; nth <= allocations; ++nth) {
    const child::Outcome outcome = run_with_growing_files(folder.path(), nth);
    EXPECT_EQ(outcome.ending, "exit status 0") << nth;
    EXPECT_TRUE(!outcome.err.empty() || outcome.out == closing) << nth << ": " << outcome.out;
    EXPECT_EQ(test_files::read_bytes(folder.file("rausel.Akum")), right) << nth;
    if (outcome.err.starts_with("E/A-Fehler beim Lesen von") &&
        outcome.err.ends_with(": Cannot allocate memory\n"))
      ++told_of_reading;
  }
  EXPECT_GT(told_of_reading, 20) << "files of several hundred bytes are grown to from one";
}

// The judge itself.

TEST(Lines, OfAProtocolMayBeMissingOrCut) {
  const std::string wanted = "one\ntwo\nthree\n";
  for (const char* bytes : {"", "one\n", "one\ntwo\nthree\n", "one\nthree\n", "two\nth", "th"}) {
    EXPECT_TRUE(run_faults::holds_some_lines_of(bytes, wanted)) << bytes;
  }
  for (const char* bytes : {"four\n", "two\none\n", "on\ntwo\n", "one\none\n"}) {
    EXPECT_FALSE(run_faults::holds_some_lines_of(bytes, wanted)) << bytes;
  }
}

}  // namespace
