#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "tests/memory_host.h"

/// What the fuzz targets share: files in memory instead of a disk, so that nothing can fail but the input
/// itself, and a network whose elements the companion files are searched for.
namespace fuzz_bed {

/// The bytes that the fuzzer gave.
std::string_view text_of(const std::uint8_t* bytes, std::size_t size);

/// Ends the process when something does not hold that must hold for every input; the fuzzer keeps the input.
void require(bool holds, std::string_view what);

/// One input's surroundings: an empty memory for the files of the variant "v", all modules as at the start
/// of the program, before and after.
class Bed {
 public:
  Bed();
  ~Bed();
  Bed(const Bed&) = delete;
  Bed& operator=(const Bed&) = delete;
  Bed(Bed&&) = delete;
  Bed& operator=(Bed&&) = delete;

  void put(const std::string& file, std::string_view bytes);
  /// Puts several files: one begins behind each line "=== " and its name, and the line end before such a
  /// line belongs to none. Only the files that a run reads or replaces are put; a name may come again and
  /// then counts.
  void put_all(std::string_view container);

  /// The bytes of a file; none when there is no such file.
  [[nodiscard]] std::string bytes(const std::string& file) const { return host_.bytes(file); }
  /// Whether the file holds other bytes than were put, or is new.
  [[nodiscard]] bool was_written(const std::string& file) const;
  /// The number of records of a file.
  [[nodiscard]] std::size_t lines(const std::string& file) const;
  /// What went to standard output and standard error.
  [[nodiscard]] const std::string& output() const { return host_.output(); }

 private:
  MemoryHost host_;
  std::map<std::string, std::string> put_;
};

/// Fills the system logic with a small sound network of all types and starts the protocol.
void start_with_network();

/// Holds every line of the result and of the listing of the elements against its layout, as far as they were
/// written: old ones may hold anything.
void require_layout(const Bed& bed);

/// Accumulates, unless the level forbids it, and holds the result against the network: all lines are there.
void accumulate_and_check(const Bed& bed);

}  // namespace fuzz_bed

/// The entry that the fuzzer and the replayer call for each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);
