#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "KV_Schau/exit_status.h"
#include "KV_Schau/findings/text.h"
#include "KV_Schau/rules/rules.h"
#include "KV_Schau/run/protocol_findings.h"
#include "KV_Schau/run/run.h"

namespace schau {

/// What `rechnen` has to say of a variant.
struct RunReport {
  variant::Variant variant;
  rules::Result check;
  run::Outcome outcome;
  run::ProtocolFindings protocol;  ///< of the run's protocol
};

/// Clean and with messages only when a result counts; findings of the check above the severity of a note make
/// a clean run one with findings.
ExitStatus status_of(const RunReport& report);

/// How a report is shown.
struct ReportForm {
  findings::Colours colours;
  std::size_t most_rows = 12;    ///< of the table; 0: all
  std::size_t most_losses = 10;  ///< of the balance
};

/// Takes the next part of a text.
using Tell = std::function<void(const std::string& part)>;

// A report as German text, in parts as they come about. Each ends with a line end.

/// What the check found.
void tell_check(const variant::Variant& variant, const rules::Result& check, const ReportForm& form,
                const Tell& tell);
/// One notice of KV_Akum. `has_result`: there was a result when it came.
std::string text_of_notice(const variant::Variant& variant, const run::Notice& notice, bool has_result,
                           const ReportForm& form);
/// The findings of the protocol, the table, the balance, and in the last line what the run was worth.
void tell_result(const RunReport& report, const ReportForm& form, const Tell& tell);
/// Nothing but errors: those of the check and of the protocol, and why there is no result.
void tell_errors(const RunReport& report, const ReportForm& form, const Tell& tell);

/// What the run was worth, for the summary of several variants: one line without its end.
std::string text_of_summary(const RunReport& report);

}  // namespace schau
