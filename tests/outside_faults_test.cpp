// Every call fails once, from outside: the program as a user starts it, on top of a library that lets each
// call of the system and each allocation fail in turn, in every way that it can. Signals that interrupt a
// call are among them.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/faulty_calls.h"
#include "tests/program.h"
#include "tests/run_faults.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using faulty_calls::Call;
using faulty_calls::Plan;
using run_faults::Fault;
using run_faults::Outputs;
using run_faults::Scene;
using run_faults::Way;

constexpr std::size_t number_of(Call call) {
  return static_cast<std::size_t>(call);
}

// What POSIX and Linux have for each call.
std::vector<Fault> every_fault() {
  std::vector<Fault> faults;
  const auto add = [&](const char* name, Call call, std::initializer_list<int> reasons) {
    const std::vector<Fault> more = run_faults::refusals(name, number_of(call), reasons);
    faults.insert(faults.end(), more.begin(), more.end());
  };
  add("open", Call::open, {EMFILE, ENFILE, EACCES, EIO, ENOENT, ENOMEM, ENOSPC, EROFS, EBUSY, ENXIO});
  // A folder that refuses to be searched refuses both: then nothing is there.
  add("stat", Call::stat, {EIO, ENOMEM});
  add("lstat", Call::lstat, {EIO, ENOMEM});
  add("fstat", Call::fstat, {EIO, ENOMEM, EOVERFLOW, ESTALE});
  add("access", Call::access, {EACCES, EIO});
  add("read", Call::read, {EIO, EISDIR, ENOMEM, ESTALE, EACCES});
  add("write", Call::write, {ENOSPC, EDQUOT, EFBIG, EIO, EPIPE, ENOMEM});
  add("notice", Call::notice, {EPIPE, EBADF, EIO, ENOSPC});
  add("seek", Call::seek, {EIO, EOVERFLOW, ESPIPE});
  add("truncate", Call::truncate, {EIO, EPERM, EROFS, EFBIG});
  add("close", Call::close, {EIO, ENOSPC, EDQUOT});
  add("unlink", Call::unlink, {EACCES, EBUSY, EIO, EPERM, EROFS});
  add("link", Call::link, {EACCES, EIO, EMLINK, ENOENT, ENOSPC, EDQUOT, EPERM, EROFS});
  add("rename", Call::rename, {EACCES, EBUSY, EIO, ENOSPC, EDQUOT, EPERM, EROFS});
  add("fchmod", Call::change_rights, {EIO, EPERM, EROFS});
  add("lock", Call::lock, {EWOULDBLOCK, ENOLCK, EOPNOTSUPP});
  add("allocation", Call::allocation, {ENOMEM});
  const auto add_once = [&](const char* name, Call call, Way way, int number) {
    faults.push_back({.call = number_of(call), .way = way, .number = number, .name = name});
  };
  add_once("open", Call::open, Way::once, EINTR);
  add_once("read", Call::read, Way::once, EINTR);
  add_once("write", Call::write, Way::once, EINTR);
  add_once("notice", Call::notice, Way::once, EINTR);
  add_once("notice", Call::notice, Way::once, EAGAIN);
  add_once("truncate", Call::truncate, Way::once, EINTR);
  add_once("close", Call::close, Way::once, EINTR);
  add_once("lock", Call::lock, Way::once, EINTR);
  add_once("read", Call::read, Way::in_part, 0);
  add_once("read", Call::read, Way::in_part, 1);
  add_once("write", Call::write, Way::in_part, 1);
  add_once("notice", Call::notice, Way::in_part, 1);
  return faults;
}

// A signal, a pipe that is full for a moment and a file system without locks are no reasons to tell anything.
bool is_passed_over(const Fault& fault) {
  if (fault.way != Way::once) return false;
  const bool full_pipe = fault.call == number_of(Call::notice) && fault.number == EAGAIN;
  const bool without_locks = fault.call == number_of(Call::lock) && fault.number != EWOULDBLOCK;
  return full_pipe || without_locks || fault.number == EINTR;
}

// The plan, in memory that it shares with the program.
class SharedPlan {
 public:
  SharedPlan() {
    const int file = ::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    const bool sized = file >= 0 && ftruncate(file, sizeof(Plan)) == 0;
    void* const memory =
        sized ? mmap(nullptr, sizeof(Plan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0) : MAP_FAILED;
    ::close(file);
    if (memory == MAP_FAILED) throw std::runtime_error("no memory to share");
    plan_ = static_cast<Plan*>(memory);
  }
  SharedPlan(const SharedPlan&) = delete;
  SharedPlan& operator=(const SharedPlan&) = delete;
  SharedPlan(SharedPlan&&) = delete;
  SharedPlan& operator=(SharedPlan&&) = delete;
  ~SharedPlan() { munmap(plan_, sizeof(Plan)); }

  /// A run in which the n-th call fails; 0: none.
  [[nodiscard]] run_faults::Run with(const Fault& fault, int nth) const {
    return [=, this](const fs::path& folder, const std::string& variant) {
      const bool lasting = fault.way == Way::from_then_on;
      *plan_ = {.call = fault.call,
                .first = nth,
                .last = lasting ? std::numeric_limits<int>::max() : nth,
                .in_part = fault.way == Way::in_part,
                .number = fault.number};
      return program::run({.arguments = {variant}, .folder = folder, .preparation = [&] {
                             setenv(faulty_calls::plan_variable, path_.c_str(), 1);
                             setenv("LD_PRELOAD", KV_FAULTY_CALLS_LIBRARY, 1);
                           }});
    };
  }
  /// How often the call was made in the last run.
  [[nodiscard]] int made(std::size_t call) const { return plan_->made.at(call); }
  [[nodiscard]] std::array<int, faulty_calls::calls> made() const { return plan_->made; }

 private:
  test_files::TemporaryFolder folder_{test_files::fast_folder()};
  std::string path_ = folder_.file("plan");
  Plan* plan_ = nullptr;
};

class OutsideFaults : public testing::TestWithParam<Scene> {};

TEST_P(OutsideFaults, AreToldOrLeaveEverythingRight) {
  const Scene& scene = GetParam();
  const SharedPlan plan;
  const run_faults::Workshop workshop(scene);
  const run_faults::Judge judge(workshop, plan.with({}, 0));
  ASSERT_TRUE(judge.right().outcome.err.empty()) << judge.right().outcome.err;
  ASSERT_TRUE(judge.wrong_in(workshop.run(plan.with({}, 0))).empty());
  const auto calls = plan.made();
  run_faults::Tally tally;
  for (const Fault& fault : every_fault()) {
    for (int nth = 1; nth <= calls.at(fault.call); ++nth) {
      tally.add(fault);
      const run_faults::Traces found = workshop.run(plan.with(fault, nth));
      EXPECT_GE(plan.made(fault.call), nth) << "the call was not made";
      std::string wrong = judge.wrong_in(found);
      if (is_passed_over(fault)) wrong += found.outcome.err;
      EXPECT_TRUE(wrong.empty()) << scene << ", call " << nth << " of " << fault << ": " << wrong;
    }
  }
  tally.print(scene, "");
}

#define GOLDEN(name) KV_VARIANTS_DIR "/" name "/in"

INSTANTIATE_TEST_SUITE_P(
    Variants, OutsideFaults,
    testing::Values(Scene{"example", KV_EXAMPLES_DIR, "rausel"}, Scene{"warnings", GOLDEN("w01_cap"), "var1"},
                    Scene{"warnings_in_place", GOLDEN("w01_cap"), "var1", Outputs::links}),
    [](const testing::TestParamInfo<Scene>& scene) { return std::string(scene.param.name); });

// The library meets every call that it is to meet.
TEST(FaultyCalls, AreAllMade) {
  const SharedPlan plan;
  std::array<int, faulty_calls::calls> made{};
  for (const Outputs outputs : {Outputs::files, Outputs::links}) {
    const run_faults::Workshop workshop({"", GOLDEN("w01_cap"), "var1", outputs});
    EXPECT_EQ(workshop.run(plan.with({}, 0)).outcome.err, "");
    for (std::size_t call = 0; call < faulty_calls::calls; ++call) made.at(call) += plan.made(call);
  }
  EXPECT_EQ(std::ranges::count(made, 0), 0);
}

}  // namespace
