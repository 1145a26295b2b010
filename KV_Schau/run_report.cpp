#include "KV_Schau/run_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "KV_Schau/network/balance_view.h"
#include "KV_Schau/run/shown_output.h"
#include "KV_Schau/run/table_output.h"

namespace schau {
namespace {

using findings::Finding;
using findings::Severity;
using run::Notice;
using run::Worth;
using variant::FileId;
using variant::Variant;

std::string title(std::string_view text, const ReportForm& form) {
  return fmt::format("{}== {}{}\n", form.colours.place, text, form.colours.off);
}

// Findings may be very many: they are told in pieces of a useful size.
template <class Wanted>
void tell_findings(const Variant& variant, const std::vector<Finding>& list, const ReportForm& form,
                   const Tell& tell, const Wanted& wanted) {
  constexpr std::size_t piece_size = std::size_t{1} << 18U;
  std::string piece;
  for (const Finding& finding : list) {
    if (!wanted(finding)) continue;
    findings::append_text(piece, variant, finding, form.colours);
    if (piece.size() < piece_size) continue;
    tell(piece);
    piece.clear();
  }
  if (!piece.empty()) tell(piece);
}

void tell_all_findings(const Variant& variant, const std::vector<Finding>& list, const ReportForm& form,
                       const Tell& tell) {
  tell_findings(variant, list, form, tell, [](const Finding&) { return true; });
  tell(findings::text_of(findings::count(list)) + "\n");
}

// Notices.

std::string word_of(const Notice& notice, const ReportForm& form) {
  switch (notice.kind) {
    case Notice::Kind::message:
      return is_error(notice) ? fmt::format("{}Fehler:{} ", form.colours.error, form.colours.off) : "";
    case Notice::Kind::window:
      return notice.title + ": ";
    case Notice::Kind::unframed:
      break;
  }
  return "Ausgabe außerhalb der Meldungen: ";
}

// The suite calls the protocol by a name that it does not have.
std::string with_name_of_protocol(std::string text, const Variant& variant) {
  constexpr std::string_view name_in_notices = "FEHLER.PKL";
  const std::size_t place = text.find(name_in_notices);
  if (place == std::string::npos) return text;
  return text.insert(place + name_in_notices.size(),
                     fmt::format(" (gemeint ist das Protokoll {})", variant.file(FileId::protocol).shown()));
}

std::string remark_on(const Notice& notice, bool has_result) {
  if (!notice.complete) return " (hier bricht die Ausgabe ab)";
  const bool names_result = !is_error(notice) && notice.text.starts_with("Ergebnis: ");
  return names_result && !has_result ? " (so endet jeder Lauf; ein Ergebnis wurde nicht geschrieben)" : "";
}

// The table.

std::string reaches_of(const run::Table& table) {
  const std::size_t count = table.reaches.size();
  return fmt::format("{} {}", count, count == 1 ? "Strecke" : "Strecken");
}

bool counts(const RunReport& report) {
  return report.outcome.verdict.worth <= Worth::with_messages;
}

void tell_protocol(const RunReport& report, const ReportForm& form, const Tell& tell) {
  if (report.protocol.findings.empty()) return;
  const std::string name = "Protokoll " + report.variant.file(FileId::protocol).shown();
  const bool is_brought = report.outcome.verdict.worth != Worth::failed;
  tell("\n");
  tell(title(is_brought ? name : "Protokoll des Laufs, das nicht abgelegt wird", form));
  tell_all_findings(report.variant, report.protocol.findings, form, tell);
}

void tell_table(const RunReport& report, const ReportForm& form, const Tell& tell) {
  if (!counts(report)) return;
  tell("\n");
  tell(title("Ergebnis " + report.variant.file(FileId::result).shown(), form));
  tell(run::text_of(*report.outcome.run.table, form.most_rows));
}

void tell_balance(const RunReport& report, const ReportForm& form, const Tell& tell) {
  tell("\n");
  tell(network::text_of(report.variant, report.check.network, report.check.flow.balance, form.most_losses));
}

// The verdict.

std::string_view words_of(ExitStatus status) {
  switch (status) {
    case ExitStatus::clean:
      return "Ergebnis ohne Befund";
    case ExitStatus::findings:
      return "Ergebnis mit Befunden";
    case ExitStatus::no_result:
      return "kein Ergebnis wegen Befunden";
    default:
      return "kein gültiges Ergebnis";
  }
}

std::string_view colour_of(ExitStatus status, const ReportForm& form) {
  if (status == ExitStatus::clean) return form.colours.mark;
  return status == ExitStatus::findings ? form.colours.warning : form.colours.error;
}

std::string findings_of_check(const RunReport& report) {
  const findings::Counts found = findings::count(report.check.findings);
  if (found.errors + found.warnings == 0) return {};
  return "Die Prüfung meldet " + findings::text_of(found);
}

// Why the run is worth what it is, as far as the words of its status do not tell; a sentence or two without
// the last full stop.
std::string reason_of(const RunReport& report) {
  std::string of_check = findings_of_check(report);
  const std::string& of_run = report.outcome.verdict.reason;
  if (!of_run.empty() && (!counts(report) || of_check.empty())) return of_run;
  if (!of_run.empty()) return of_run + ". " + of_check;
  if (!of_check.empty()) return of_check;
  return fmt::format("{} hat {}", report.variant.file(FileId::result).shown(),
                     reaches_of(*report.outcome.run.table));
}

// A result in the folder that is not of this run.
std::string old_result_of(const RunReport& report) {
  if (counts(report) || !report.variant.surroundings.result) return {};
  return fmt::format(" {} stammt von einem früheren Lauf.", report.variant.file(FileId::result).shown());
}

std::string text_of_verdict(const RunReport& report, const ReportForm& form) {
  const ExitStatus status = status_of(report);
  return fmt::format("{}{}: {}{}. {}.{}\n", colour_of(status, form), report.variant.path.shown,
                     words_of(status), form.colours.off, reason_of(report), old_result_of(report));
}

}  // namespace

ExitStatus status_of(const RunReport& report) {
  switch (report.outcome.verdict.worth) {
    case Worth::clean:
      return findings_of_check(report).empty() ? ExitStatus::clean : ExitStatus::findings;
    case Worth::with_messages:
      return ExitStatus::findings;
    case Worth::refused:
      return ExitStatus::no_result;
    case Worth::failed:
      break;
  }
  return ExitStatus::failed;
}

void tell_check(const Variant& variant, const rules::Result& check, const ReportForm& form,
                const Tell& tell) {
  tell(title("Prüfung " + variant.path.shown, form));
  tell_all_findings(variant, check.findings, form, tell);
}

std::string text_of_notice(const Variant& variant, const Notice& notice, bool has_result,
                           const ReportForm& form) {
  constexpr std::size_t most_bytes = 2000;
  constexpr std::size_t indent = 9;
  const std::string_view bytes = std::string_view(notice.text).substr(0, most_bytes);
  std::string text = fmt::format("KV_Akum: {}", word_of(notice, form));
  std::size_t blanks = 0;
  for (const std::string& line : run::shown_lines(bytes, variant.path.name)) {
    text.append(blanks == 0 ? "" : "\n").append(blanks, ' ').append(with_name_of_protocol(line, variant));
    blanks = indent;
  }
  text += bytes.size() < notice.text.size() ? " ..." : "";
  return text + remark_on(notice, has_result) + "\n";
}

void tell_result(const RunReport& report, const ReportForm& form, const Tell& tell) {
  tell_protocol(report, form, tell);
  tell_table(report, form, tell);
  tell_balance(report, form, tell);
  tell("\n");
  tell(text_of_verdict(report, form));
}

void tell_errors(const RunReport& report, const ReportForm& form, const Tell& tell) {
  const auto is_error = [](const Finding& finding) { return finding.rule->severity == Severity::error; };
  tell_findings(report.variant, report.check.findings, form, tell, is_error);
  tell_findings(report.variant, report.protocol.findings, form, tell, is_error);
  if (status_of(report) > ExitStatus::findings) tell(text_of_verdict(report, form));
}

std::string text_of_summary(const RunReport& report) {
  return fmt::format("{}: {}", words_of(status_of(report)), reason_of(report));
}

}  // namespace schau
