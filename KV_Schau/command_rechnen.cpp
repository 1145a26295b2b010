#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <exception>
#include <filesystem>
#include <functional>
#include <future>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

#include "KV_Schau/command.h"
#include "KV_Schau/run/program.h"
#include "KV_Schau/run_report.h"
#include "KV_Schau/terminal.h"
#include "KV_Schau/variant/shown_text.h"
#include "KV_Schau/variant_argument.h"

namespace schau {
namespace {

namespace fs = std::filesystem;
using variant::VariantPath;

struct Options {
  std::vector<std::string> variants;
  bool whole_table = false;
  bool quiet = false;
  unsigned side_by_side = 1;
  unsigned time_limit = 600;
  double most_megabytes = 100;
  std::string program;
};
Options options;

void add_options(CLI::App& parser) {
  add_variants(parser, options.variants);
  parser.add_flag("--tabelle", options.whole_table, "die ganze Tabelle zeigen, nicht nur Anfang und Ende");
  parser.add_flag("-q,--quiet", options.quiet, "nichts als Fehler, und die auf der Fehlerausgabe");
  parser.add_option("-j", options.side_by_side, "so viele Varianten nebeneinander rechnen (sonst eine)")
      ->type_name("ANZAHL");
  parser
      .add_option("--frist", options.time_limit,
                  "KV_Akum nach so vielen Sekunden abbrechen (sonst nach 600; 0: nie)")
      ->type_name("SEKUNDEN");
  parser
      .add_option("--hoechstens", options.most_megabytes,
                  "KV_Akum abbrechen, wenn das Protokoll größer wird (sonst 100; 0: nie)")
      ->type_name("MB");
  parser
      .add_option("--programm", options.program,
                  "Pfad von KV_Akum (sonst neben KV_Schau, dann in den Ordnern von PATH)")
      ->type_name("PFAD");
}

// What is to be done.

struct Job {
  VariantPath path;
  bool bring_listing = true;
};

struct Plan {
  std::vector<Job> jobs;             // each variant once
  std::vector<std::string> refused;  // the arguments that name none
  ExitStatus status = ExitStatus::clean;
};

Plan make_plan() {
  Plan plan;
  std::set<fs::path> known;
  for (const std::string& argument : options.variants) {
    const auto resolved = variant_of(argument);
    if (const auto* const refusal = std::get_if<ExitStatus>(&resolved)) {
      plan.refused.push_back(argument);
      plan.status = worse(plan.status, *refusal);
      continue;
    }
    const auto& path = std::get<VariantPath>(resolved);
    std::error_code ignored;
    if (known.insert(fs::weakly_canonical(path.folder, ignored) / path.name).second)
      plan.jobs.push_back({path});
  }
  // There is one name for the listing in a folder: the last variant has it, as after runs one by one.
  std::set<fs::path> folders;
  for (auto job = plan.jobs.rbegin(); job != plan.jobs.rend(); ++job) {
    std::error_code ignored;
    job->bring_listing = folders.insert(fs::weakly_canonical(job->path.folder, ignored)).second;
  }
  return plan;
}

fs::path program() {
  if (!options.program.empty()) return fs::absolute(options.program);
  if (const auto found = run::find_program()) return *found;
  return {};
}

run::RunOptions run_options(const Job& job, const fs::path& program) {
  constexpr double megabyte = 1e6;
  return {.program = program,
          .time_limit = std::chrono::seconds(options.time_limit),
          .most_bytes = static_cast<std::uintmax_t>(options.most_megabytes * megabyte),
          .bring_listing = job.bring_listing};
}

ReportForm form() {
  ReportForm form;
  if (use_colours()) form.colours = findings::terminal_colours;
  if (options.whole_table) form.most_rows = 0;
  return form;
}
// Doing it.

RunReport report_on(const Job& job, const fs::path& program, const ReportForm& form, const Tell& tell) {
  RunReport report;
  report.variant = variant::read_variant(job.path);
  report.check = rules::check(report.variant);
  tell_check(report.variant, report.check, form, tell);
  const auto show_notice = [&](const run::Notice& notice, bool has_result) {
    tell(text_of_notice(report.variant, notice, has_result, form));
  };
  report.outcome = run::run_variant(report.variant, run_options(job, program), show_notice);
  if (report.outcome.run.protocol) {
    report.protocol = run::findings_of(*report.outcome.run.protocol, report.variant);
  }
  tell_result(report, form, tell);
  return report;
}

struct Done {
  ExitStatus status = ExitStatus::failed;
  std::string summary;
};

// `tell` gets each part of the text as it comes about, `tell_error` what goes to standard error.
Done do_job(const Job& job, const fs::path& program, const ReportForm& form, const Tell& tell,
            const Tell& tell_error) {
  const auto keep_quiet = [](const std::string&) {};
  const RunReport report = report_on(job, program, form, options.quiet ? Tell(keep_quiet) : tell);
  if (options.quiet) tell_errors(report, form, tell_error);
  return {status_of(report), text_of_summary(report)};
}

void write_to_error(const std::string& text) {
  if (!text.empty()) write_error(std::string_view(text).substr(0, text.size() - 1));
}

// A bar on the terminal, gone before anything else is written.
class Progress {
 public:
  explicit Progress(std::size_t count) : count_(count), shown_(!options.quiet && error_is_terminal()) {}

  void advance() {
    const std::lock_guard<std::mutex> alone(mutex_);
    ++done_;
    draw();
  }
  /// Writes something with the bar out of the way.
  void write(const std::function<void()>& writing) {
    const std::lock_guard<std::mutex> alone(mutex_);
    if (shown_) write_progress("");
    writing();
    draw();
  }

 private:
  void draw() const {
    constexpr std::size_t width = 40;
    if (!shown_) return;
    const std::size_t filled = done_ * width / count_;
    write_progress(done_ == count_ ? ""
                                   : fmt::format("[{:#<{}}{:.<{}}] {} von {}", "", filled, "", width - filled,
                                                 done_, count_));
  }

  std::size_t count_;
  bool shown_;
  std::size_t done_ = 0;
  std::mutex mutex_;
};

// One of several jobs: its text is kept until those before it are shown.
struct Finished {
  Done done;
  std::string text;
  std::string errors;
};

// The jobs, several at a time; what comes of each is had in the order of the jobs.
class Batch {
 public:
  Batch(const std::vector<Job>& jobs, fs::path program, const ReportForm& form)
      : jobs_(jobs),
        program_(std::move(program)),
        form_(form),
        progress_(jobs.size()),
        results_(jobs.size()) {
    const std::size_t workers = std::min<std::size_t>(options.side_by_side, jobs_.size());
    for (std::size_t i = 0; i < workers; ++i) workers_.emplace_back([this] { work(); });
  }

  /// Waits for a job's end.
  Finished result(std::size_t job) { return results_[job].get_future().get(); }
  Progress& progress() { return progress_; }

 private:
  // The bar moves on before the result can be shown: nothing is drawn over what is written last.
  void work() {
    for (std::size_t i = next_++; i < jobs_.size(); i = next_++) {
      try {
        Finished finished = finish(jobs_[i]);
        progress_.advance();
        results_[i].set_value(std::move(finished));
      } catch (...) {
        results_[i].set_exception(std::current_exception());
      }
    }
  }

  Finished finish(const Job& job) const {
    Finished finished;
    finished.done = do_job(
        job, program_, form_, [&](const std::string& part) { finished.text += part; },
        [&](const std::string& part) { finished.errors += part; });
    return finished;
  }

  const std::vector<Job>& jobs_;
  fs::path program_;
  ReportForm form_;
  Progress progress_;
  std::vector<std::promise<Finished>> results_;
  std::atomic<std::size_t> next_ = 0;
  std::vector<std::jthread> workers_;
};

ExitStatus run_several(const Plan& plan, const fs::path& program) {
  ExitStatus status = ExitStatus::clean;
  Batch batch(plan.jobs, program, form());
  std::string summary;
  for (std::size_t i = 0; i < plan.jobs.size(); ++i) {
    const Finished finished = batch.result(i);
    batch.progress().write([&] {
      write_out(finished.text + (finished.text.empty() ? "" : "\n"));
      write_to_error(finished.errors);
      finish_output();
    });
    status = worse(status, finished.done.status);
    summary += fmt::format("{}: {}\n", plan.jobs[i].path.shown, finished.done.summary);
  }
  for (const std::string& argument : plan.refused) {
    summary += fmt::format("{}: nicht gerechnet, keine Variante\n", variant::shown_utf8(argument));
  }
  if (!options.quiet) write_out("== Zusammenfassung\n" + summary);
  return status;
}

ExitStatus run_one(const Job& job, const fs::path& program) {
  const auto show_at_once = [](const std::string& part) {
    write_out(part);
    finish_output();
  };
  return do_job(job, program, form(), show_at_once, write_to_error).status;
}

void require_good_options() {
  constexpr unsigned most_side_by_side = 1000;
  if (options.side_by_side < 1 || options.side_by_side > most_side_by_side) {
    throw UsageError{fmt::format("-j braucht eine Anzahl von 1 bis {}", most_side_by_side)};
  }
  if (!(options.most_megabytes >= 0)) throw UsageError{"--hoechstens braucht eine Größe in MB"};
}

ExitStatus run_command() {
  require_good_options();
  run::prepare_for_processes();
  run::end_on_signals();
  const Plan plan = make_plan();
  if (plan.jobs.empty()) return plan.status;
  const fs::path akum = program();
  if (akum.empty()) {
    write_error(
        "KV_Schau: KV_Akum liegt weder neben KV_Schau noch in einem Ordner von PATH; --programm nennt seinen "
        "Pfad.");
    return worse(plan.status, ExitStatus::failed);
  }
  const bool several = plan.jobs.size() + plan.refused.size() > 1;
  return worse(plan.status, several ? run_several(plan, akum) : run_one(plan.jobs.front(), akum));
}

const Registration registration(
    {.name = "rechnen",
     .description = "Varianten prüfen, mit KV_Akum rechnen und zeigen, was herauskam",
     .rank = 20,
     .is_default = true,
     .add_options = add_options,
     .run = run_command});

}  // namespace
}  // namespace schau
