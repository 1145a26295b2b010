#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "tests/child.h"
#include "tests/test_files.h"

/// Whole runs in which one call fails, and what they may leave behind:
///
/// - The run ends by itself, with exit status 0.
/// - The result and the listing are the old file or the whole right one, with the rights of the old one.
/// Where
///   they are written in place, they may be anything else when that is told.
/// - The protocol is the right one. When something is told, it may also be the one of before, be missing, or
///   hold some of the right lines, of which the last one may be cut.
/// - Told means: a line on standard error, or a notice titled "KV_Akum: Fehler" that a run without a fault
///   has not. When nothing is told, every file and standard output are right.
/// - The inputs are as they were, and nothing else stands in the folder.
/// - Every line on standard error is one of those that the program has.
///
/// One exception: a suppression list that cannot be opened is passed over without a word, as if there were
/// none. Then everything is as in a run without it.
namespace run_faults {

enum class Way : std::uint8_t { once, from_then_on, in_part };

/// Which call fails, and how.
struct Fault {
  std::size_t call = 0;  ///< its kind, as the test counts them
  Way way = Way::once;
  int number = 0;  ///< of the system's reason, or the bytes that are moved
  const char* name = "";
};
std::ostream& operator<<(std::ostream& out, const Fault& fault);

/// A fault for each reason, and one in which the call fails from then on, for the first reason.
std::vector<Fault> refusals(const char* name, std::size_t call, std::initializer_list<int> reasons);

/// Which calls are made to fail when there are so many: all of them, or the first, the last and some between.
std::vector<int> chosen(int calls, int most);

/// Whether result and listing are links, behind which the files are written where they stand.
enum class Outputs : std::uint8_t { files, links };

/// A variant to run.
struct Scene {
  const char* name;
  std::filesystem::path folder;
  const char* variant;
  Outputs outputs = Outputs::files;
};
std::ostream& operator<<(std::ostream& out, const Scene& scene);

/// What a run leaves behind.
struct Traces {
  child::Outcome outcome;
  std::map<std::string, std::string> files;
  std::map<std::string, std::filesystem::perms> rights;
};

/// Runs the variant in that folder.
using Run = std::function<child::Outcome(const std::filesystem::path& folder, const std::string& variant)>;

/// A folder with a variant and the outputs of an earlier run.
class Workshop {
 public:
  explicit Workshop(const Scene& scene);

  [[nodiscard]] std::filesystem::path file(const std::string& name) const { return folder_.path() / name; }
  [[nodiscard]] const std::string& protocol() const { return protocol_; }
  /// The names of listing and result.
  [[nodiscard]] const std::vector<std::string>& kept() const { return kept_; }
  [[nodiscard]] std::vector<std::string> outputs() const;
  /// The files that a run reads, with their bytes.
  [[nodiscard]] const std::map<std::string, std::string>& inputs() const { return inputs_; }
  /// Whether outputs that were links still are, and no others.
  [[nodiscard]] bool links_are_kept() const;

  /// A run after an earlier one.
  [[nodiscard]] Traces run(const Run& run) const;

 private:
  [[nodiscard]] Traces traces() const;

  test_files::TemporaryFolder folder_{test_files::fast_folder()};
  std::string variant_;
  std::string protocol_;
  std::vector<std::string> kept_;
  Outputs outputs_;
  std::map<std::string, std::string> inputs_;
};

/// Holds runs with a fault against a run without.
class Judge {
 public:
  Judge(const Workshop& workshop, const Run& without_fault);

  /// The run without a fault.
  [[nodiscard]] const Traces& right() const { return right_; }
  /// What is wrong after a run with a fault; empty when nothing is.
  [[nodiscard]] std::string wrong_in(const Traces& found) const;

 private:
  [[nodiscard]] std::string differing_from(const Traces& right, const Traces& found) const;
  [[nodiscard]] std::string wrong_beside_outputs(const Traces& found) const;
  [[nodiscard]] std::string wrong_outputs(const Traces& right, const Traces& found, bool told) const;

  const Workshop& workshop_;
  Traces right_;
  std::vector<Traces> without_list_;
};

/// Whether the lines are among the wanted ones, in their order; the last one may be cut.
bool holds_some_lines_of(const std::string& bytes, const std::string& wanted);

/// Counts runs with a fault by the name of the call.
class Tally {
 public:
  void add(const Fault& fault) { ++runs_[fault.name]; }
  /// Prints the counts on standard output.
  void print(const Scene& scene, const std::string& more) const;

 private:
  std::map<std::string, int> runs_;
};

}  // namespace run_faults
