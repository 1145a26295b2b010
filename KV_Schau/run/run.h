#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "KV_Schau/run/process.h"
#include "KV_Schau/run/protocol.h"
#include "KV_Schau/run/records.h"
#include "KV_Schau/run/table.h"
#include "KV_Schau/variant/variant.h"

namespace schau::run {

struct RunOptions {
  std::filesystem::path program;
  std::chrono::seconds time_limit{0};  ///< 0: none
  /// The most that the protocol may hold, and what is written to both standard streams together; 0: no limit.
  std::uintmax_t most_bytes = 0;
  /// Of several variants in one folder only one brings its listing: there is only one name for it.
  bool bring_listing = true;
};

/// Why a run was stopped.
enum class Stop : std::uint8_t { none, time_limit, protocol_too_large, output_too_large, end_requested };

/// What KV_Akum did and left, as it was.
struct Run {
  Ending ending;
  Stop stop = Stop::none;
  std::vector<Notice> notices;
  std::string standard_error;        ///< bytes; only the beginning when there is very much
  std::optional<Protocol> protocol;  ///< nothing when there was nothing to report
  std::optional<Table> table;        ///< nothing when there is no result
  std::string file_fault;            ///< a German sentence: what could not be created, read or brought
};

/// What a run was worth, from best to worst.
enum class Worth : std::uint8_t {
  clean,          ///< a result and no message
  with_messages,  ///< a result, and messages in the protocol
  refused,        ///< no result, and the protocol or a notice says what is wrong with the data
  failed          ///< no result that counts: a file, the disk or KV_Akum itself failed
};

struct Verdict {
  Worth worth = Worth::failed;
  std::string reason;  ///< a German sentence without full stop (UTF-8); empty when clean
};

/// What keeps a table from being the whole result of a variant: a German sentence without full stop; empty
/// when nothing does. It has a row for each reach of the network, in system order and with all inflows, and
/// nothing behind them.
std::string fault_of_table(const Table& table, const variant::Variant& variant);

/// A result counts when KV_Akum came to its end by itself, nothing stood on standard error, no file was
/// missing, the protocol is not broken off and the table is whole. Codes are not asked: a suppressed one can
/// let a faulty variant through, and the warnings W01 to W03 are written five times at most.
Verdict judge(const Run& run, const variant::Variant& variant, const RunOptions& options);

struct Outcome {
  Run run;
  Verdict verdict;
};

/// Called with each notice as it comes. `has_result` tells whether there is a result by then: the closing
/// notice names one in either case.
using ShowNotice = std::function<void(const Notice& notice, bool has_result)>;

/// Runs KV_Akum on a variant, judges the run, and brings its files into the variant's folder as far as it was
/// worth it: protocol and listing unless it failed, the result when it counts. Everything else in the folder
/// stays as it was, an older result included. What cannot be brought makes the run a failed one.
Outcome run_variant(const variant::Variant& variant, const RunOptions& options,
                    const ShowNotice& show_notice);

}  // namespace schau::run
