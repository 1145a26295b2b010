#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <string_view>

#include "KV_Schau/run/process_host.h"
#include "KV_Schau/run/run.h"
#include "KV_Schau/run/shown_output.h"

namespace schau::run {
namespace {

constexpr std::size_t longest_quotation = 500;

std::string fault_of_stop(Stop stop, const RunOptions& options) {
  const double megabytes = static_cast<double>(options.most_bytes) / 1e6;
  switch (stop) {
    case Stop::time_limit:
      return fmt::format("KV_Akum war nach {} s noch nicht fertig und wurde abgebrochen (--frist)",
                         options.time_limit.count());
    case Stop::protocol_too_large:
      return fmt::format("Das Protokoll ist größer als {:g} MB (--hoechstens); der Lauf zählt nicht",
                         megabytes);
    case Stop::output_too_large:
      return fmt::format("KV_Akum hat mehr als {:g} MB ausgegeben (--hoechstens); der Lauf zählt nicht",
                         megabytes);
    case Stop::end_requested:
      return "Der Lauf wurde auf Wunsch abgebrochen";
    case Stop::none:
      break;
  }
  return {};
}

std::string fault_of_ending(const Ending& ending, const RunOptions& options) {
  if (ending.kind == Ending::Kind::crashed)
    return fmt::format("KV_Akum ist abgestürzt ({})", host::shown_signal(ending.signal));
  if (ending.kind == Ending::Kind::not_started) {
    return fmt::format("KV_Akum ({}) kann nicht gestartet werden: {}", options.program.string(),
                       ending.reason);
  }
  if (ending.exit_status == 0) return {};
  return fmt::format("KV_Akum hat mit dem Exit-Status {} geendet; ein ordentlicher Lauf endet mit 0",
                     ending.exit_status);
}

std::string fault_on_standard_error(const Run& run, const std::string& name) {
  if (run.standard_error.empty()) return {};
  const std::string_view beginning = std::string_view(run.standard_error).substr(0, longest_quotation);
  return "KV_Akum meldet auf der Fehlerausgabe: " + shown_line(beginning, name);
}

// The reader of a file that does not exist gives up with a notice.
std::string fault_of_missing_file(const Run& run, const std::string& name) {
  for (const Notice& notice : run.notices) {
    const bool missing = notice.text.ends_with(" existiert nicht.") ||
                         notice.text.find(" liegt nicht vor!") != std::string::npos;
    if (is_error(notice) && missing)
      return shown_line(notice.text.substr(0, notice.text.find_last_not_of('.') + 1), name);
  }
  return {};
}

std::string fault_of_protocol(const Run& run) {
  if (!run.protocol || run.protocol->complete) return {};
  return fmt::format("Das Protokoll bricht in Zeile {} ab", run.protocol->line_count);
}

struct Messages {
  std::size_t errors = 0;
  std::size_t notes = 0;
};

Messages count(const Run& run) {
  Messages messages;
  if (!run.protocol) return messages;
  for (const Message& message : run.protocol->messages) {
    ++(message.level == Level::note ? messages.notes : messages.errors);
  }
  return messages;
}

// Nothing is computed when the data have errors; the protocol or a notice says which.
bool is_explained(const Run& run) {
  return count(run).errors > 0 || std::ranges::any_of(run.notices, is_error);
}

std::string fault_of_result(const Run& run, const variant::Variant& variant) {
  if (run.table) return fault_of_table(*run.table, variant);
  return is_explained(run) ? "" : "KV_Akum hat kein Ergebnis geschrieben und keinen Grund genannt";
}

std::string reason_of_refusal(const Run& run, const std::string& name) {
  const std::size_t errors = count(run).errors;
  if (errors > 0) return fmt::format("Das Protokoll meldet {} Fehler; gerechnet wurde nicht", errors);
  const auto notice = std::ranges::find_if(run.notices, is_error);
  return shown_line(notice->text, name);
}

std::string reason_of_messages(const Run& run) {
  const Messages messages = count(run);
  if (messages.errors > 0) {
    return fmt::format(
        "Gerechnet wurde, obwohl das Protokoll {} Fehler meldet: Eine unterdrückte Meldung (fehlercode.ex) "
        "hat "
        "die Fehlerstufe zurückgesetzt",
        messages.errors);
  }
  return fmt::format("Das Protokoll enthält {} {}", messages.notes,
                     messages.notes == 1 ? "Warnung" : "Warnungen");
}

// The inflows of an element that are elements themselves.
std::size_t inflow_count(const variant::Variant& variant, std::uint32_t element) {
  const std::string_view line = variant.element_line(element);
  return static_cast<std::size_t>(
      std::ranges::count_if(variant::sys_columns::inflow, [&](const variant::Span& columns) {
        return variant.elements.last(variant::name_at(line, columns.first)) != 0;
      }));
}

std::string fault_of_row(const Reach& reach, const variant::Variant& variant, std::uint32_t element) {
  if (reach.name != variant.names[element]) {
    return fmt::format("Zeile {} des Ergebnisses gehört zu {}, in der Systemdatei steht an dieser Stelle {}",
                       reach.line, shown_line(variant::text_of(reach.name), {}),
                       shown_line(variant::text_of(variant.names[element]), {}));
  }
  if (reach.inflow_count >= inflow_count(variant, element)) return {};
  return fmt::format("Dem Ergebnis fehlen Zuläufe der Strecke {} (Zeile {})",
                     shown_line(variant::text_of(reach.name), {}), reach.line);
}

}  // namespace

std::string fault_of_table(const Table& table, const variant::Variant& variant) {
  if (table.fault) return text_of(*table.fault, table.fault_line);
  std::size_t reaches = 0;
  for (std::uint32_t element = 1; element <= variant.element_count(); ++element) {
    if (variant.type(element) != 'T') continue;
    if (reaches < table.reaches.size()) {
      std::string fault = fault_of_row(table.reaches[reaches], variant, element);
      if (!fault.empty()) return fault;
    }
    ++reaches;
  }
  if (table.reaches.size() == reaches) return {};
  return fmt::format("Das Ergebnis hat {} Strecken, die Systemdatei {}", table.reaches.size(), reaches);
}

Verdict judge(const Run& run, const variant::Variant& variant, const RunOptions& options) {
  const std::string& name = variant.path.name;
  for (std::string fault :
       {run.file_fault, fault_of_stop(run.stop, options), fault_of_ending(run.ending, options),
        fault_on_standard_error(run, name), fault_of_missing_file(run, name), fault_of_protocol(run),
        fault_of_result(run, variant)}) {
    if (!fault.empty()) return {Worth::failed, std::move(fault)};
  }
  if (!run.table) return {Worth::refused, reason_of_refusal(run, name)};
  if (run.protocol && !run.protocol->messages.empty()) return {Worth::with_messages, reason_of_messages(run)};
  return {Worth::clean, {}};
}

}  // namespace schau::run
