#include "KV_Schau/findings/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "KV_Schau/variant/shown_text.h"

namespace schau::findings {
namespace {

using variant::TextFile;

std::string_view colour_of(Severity severity, const Colours& colours) {
  if (severity == Severity::error) return colours.error;
  return severity == Severity::warning ? colours.warning : colours.note;
}

void append_place(std::string& out, const TextFile& file, const variant::Place& place,
                  const Colours& colours) {
  out.append(colours.place).append(file.shown());
  if (place.line > 0) {
    fmt::format_to(std::back_inserter(out), ":{}:{}", place.line,
                   file.character_column(place.line, place.column));
  }
  out.append(":").append(colours.off).append(" ");
}

void append_source(std::string& out, const TextFile& file, const Finding& finding, const Colours& colours) {
  constexpr int usual_width = 5;
  const variant::Place& place = finding.place;
  const variant::ShownLine line = variant::show_line(file, place.line, place.column, place.length);
  const int width = std::max(usual_width, static_cast<int>(fmt::formatted_size("{}", place.line)));
  fmt::format_to(std::back_inserter(out), "{:>{}} | {}\n{:{}} | {:{}}", place.line, width, line.text, "",
                 width, "", line.begin);
  out.append(colours.mark).append("^").append(line.length - 1, '~').append(colours.off);
  if (!finding.hint.empty()) out.append(" ").append(finding.hint);
  out.append("\n");
}

// What is written in UTF-16 cannot be shown byte by byte.
bool has_source(const TextFile& file, const variant::Place& place) {
  return place.line > 0 && place.line <= file.line_count() && file.encoding() != variant::Encoding::utf_16;
}

}  // namespace

void append_text(std::string& out, const variant::Variant& variant, const Finding& finding,
                 const Colours& colours) {
  const TextFile& file = variant.file(finding.place.file);
  append_place(out, file, finding.place, colours);
  const Severity severity = finding.rule->severity;
  out.append(colour_of(severity, colours)).append(word_of(severity)).append(":").append(colours.off);
  out.append(" ").append(finding.text);
  out.append(" [").append(finding.rule->identifier).append("]\n");
  if (has_source(file, finding.place)) {
    append_source(out, file, finding, colours);
  } else if (!finding.hint.empty()) {
    out.append("      = ").append(finding.hint).append("\n");
  }
}

std::string text_of(const Counts& counts) {
  const auto word = [](std::size_t number, std::string_view one, std::string_view more) {
    return number == 1 ? one : more;
  };
  return fmt::format("{} Fehler, {} {}, {} {}", counts.errors, counts.warnings,
                     word(counts.warnings, "Warnung", "Warnungen"), counts.notes,
                     word(counts.notes, "Hinweis", "Hinweise"));
}

}  // namespace schau::findings
