#include "KV_Schau/run/run.h"

#include <limits>
#include <system_error>
#include <utility>

#include "KV_Schau/run/read_file.h"
#include "KV_Schau/run/whole_file.h"
#include "KV_Schau/run/work_folder.h"

namespace schau::run {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// What a run says is short. Of one that does not end, the beginning is enough.
constexpr std::uintmax_t most_kept_bytes = std::uintmax_t{1} << 20U;

// What is watched while the program runs.
class Watch {
 public:
  Watch(const RunOptions& options, const WorkFolder& folder)
      : options_(options), folder_(folder), begin_(Clock::now()) {}

  /// The part of an output that is kept, and counts it all.
  std::string_view take(std::string_view bytes) {
    const std::uintmax_t kept = output_bytes_ < most_kept_bytes ? most_kept_bytes - output_bytes_ : 0;
    output_bytes_ += bytes.size();
    return bytes.substr(0, kept);
  }

  /// The first reason to stop the run.
  [[nodiscard]] Stop look() const {
    if (end_requested()) return Stop::end_requested;
    if (options_.time_limit.count() > 0 && Clock::now() - begin_ > options_.time_limit)
      return Stop::time_limit;
    return look_at_sizes();
  }
  [[nodiscard]] Stop look_at_sizes() const {
    if (options_.most_bytes == 0) return Stop::none;
    if (output_bytes_ > options_.most_bytes) return Stop::output_too_large;
    return folder_.protocol_size() > options_.most_bytes ? Stop::protocol_too_large : Stop::none;
  }

 private:
  const RunOptions& options_;
  const WorkFolder& folder_;
  Clock::time_point begin_;
  std::uintmax_t output_bytes_ = 0;
};

bool is_file(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(fs::symlink_status(path, ignored));
}

void run_program(Run& run, const variant::Variant& variant, const RunOptions& options,
                 const WorkFolder& folder, const ShowNotice& show_notice) {
  Watch watch(options, folder);
  NoticeReader notices([&](const Notice& notice) {
    run.notices.push_back(notice);
    show_notice(notice, is_file(folder.file(".Akum")));
  });
  const auto take_output = [&](std::string_view bytes) { notices.feed(watch.take(bytes)); };
  const auto take_error = [&](std::string_view bytes) { run.standard_error += watch.take(bytes); };
  const auto wants_stop = [&] {
    run.stop = watch.look();
    return run.stop != Stop::none;
  };
  run.ending =
      run_process({options.program, {variant.path.name}, folder.path()}, take_output, take_error, wants_stop);
  notices.finish();
  if (run.ending.kind != Ending::Kind::stopped) run.stop = watch.look_at_sizes();
}

void read_files(Run& run, const WorkFolder& folder) {
  const bool whole = run.stop != Stop::protocol_too_large;
  const std::uintmax_t most = whole ? std::numeric_limits<std::uintmax_t>::max() : most_kept_bytes;
  if (is_file(folder.file(".pkl"))) {
    Protocol protocol = parse_protocol(read_file(folder.file(".pkl"), most));
    // A variant of the listing's name has its listing there.
    if (protocol.has_header || folder.file(".pkl") != folder.listing()) run.protocol = std::move(protocol);
  }
  if (is_file(folder.file(".Akum"))) run.table = parse_table(read_file(folder.file(".Akum"), most));
}

}  // namespace

Outcome run_variant(const variant::Variant& variant, const RunOptions& options,
                    const ShowNotice& show_notice) {
  Outcome outcome;
  try {
    const WorkFolder folder(variant.path);
    run_program(outcome.run, variant, options, folder, show_notice);
    read_files(outcome.run, folder);
    outcome.verdict = judge(outcome.run, variant, options);
    const Worth worth = outcome.verdict.worth;
    if (worth != Worth::failed) {
      folder.bring({.listing = options.bring_listing, .result = worth != Worth::refused});
    }
  } catch (const FileFault& fault) {
    outcome.run.file_fault = fault.what();
    outcome.verdict = judge(outcome.run, variant, options);
  }
  return outcome;
}

}  // namespace schau::run
