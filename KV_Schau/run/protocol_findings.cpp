#include "KV_Schau/run/protocol_findings.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "KV_Schau/run/shown_output.h"

namespace schau::run {
namespace {

using findings::Finding;
using findings::Severity;
using variant::FileId;
using variant::Place;
using variant::Variant;

constexpr std::array<std::string_view, 4> note_words = {"Hinweis:", "HINWEIS:", "Bemerkung:", "Warnung:"};

// Sentences.

// Appends words with single blanks between them, without dot leaders.
void append_words(std::string& sentence, std::string_view line) {
  while (!line.empty()) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(word.size());
    if (word.find_first_not_of('.') == std::string_view::npos) continue;
    if (!sentence.empty()) sentence += ' ';
    sentence += word;
  }
}

// A line is words, and often a colon after a dot leader with an argument behind it, which stays as it is.
void append_line(std::string& sentence, std::string_view line) {
  constexpr std::string_view colon = " :";
  const std::size_t place = std::min(line.find(" : "), line.ends_with(colon) ? line.size() - 2 : line.size());
  append_words(sentence, line.substr(0, place));
  line.remove_prefix(std::min(place + colon.size(), line.size()));
  line = variant::without_blanks(line);
  if (!line.empty()) sentence.append(sentence.empty() ? "" : " ").append(line);
}

void drop_severity(std::string& sentence) {
  for (const std::string_view word : note_words) {
    if (!sentence.starts_with(word)) continue;
    sentence.erase(0, std::min(word.size() + 1, sentence.size()));
    return;
  }
}

void drop_full_stop(std::string& sentence) {
  while (sentence.ends_with('.') || sentence.ends_with('!') || sentence.ends_with(' ')) sentence.pop_back();
}

std::string joined(std::string_view lines) {
  std::string sentence;
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    append_line(sentence, line);
    lines.remove_prefix(std::min(line.size() + 1, lines.size()));
  }
  return sentence;
}

// Places.

// Of the files of a variant, in the order of their identifiers.
constexpr std::array<std::string_view, 5> extensions = {".sys", ".nfl", ".kfl", ".trs", ".ver"};
static_assert(static_cast<std::size_t>(FileId::ver) + 1 == extensions.size());

class Places {
 public:
  explicit Places(const Variant& variant) : variant_(variant) {
    for (const FileId file : variant::data_files) {
      std::vector<std::uint32_t>& first = first_lines_[static_cast<std::size_t>(file)];
      first.resize(variant.element_count() + 1);
      for (const variant::DataLine& line : variant.lines_of(file)) {
        if (first[line.element] == 0) first[line.element] = line.line;
      }
    }
  }

  [[nodiscard]] Place of(const Message& message) const {
    std::optional<FileId> file;
    std::uint32_t element = 0;
    for (const Argument& argument : message.arguments) {
      if (!file) file = file_named(argument.text);
      if (element == 0) element = element_named(argument.text);
    }
    if (element != 0) return in_file(file, element).value_or(variant::place_of_element(variant_, element));
    if (file) return {.file = *file};
    return {.file = FileId::protocol, .line = static_cast<std::uint32_t>(message.line)};
  }

 private:
  [[nodiscard]] std::optional<FileId> file_named(std::string_view text) const {
    const std::string& name = variant_.path.name;
    if (!text.starts_with(name)) return std::nullopt;
    const auto found = std::ranges::find(extensions, text.substr(name.size()));
    if (found == extensions.end()) return std::nullopt;
    return static_cast<FileId>(found - extensions.begin());
  }

  [[nodiscard]] std::uint32_t element_named(std::string_view text) const {
    if (text.empty() || text.size() > variant::name_length) return 0;
    return variant_.elements.last(variant::name_of(text));
  }

  [[nodiscard]] std::optional<Place> in_file(std::optional<FileId> file, std::uint32_t element) const {
    if (!file || *file == FileId::sys) return std::nullopt;
    const std::uint32_t first_of_name = variant_.elements.first(variant_.names[element]);
    const std::uint32_t line = first_lines_[static_cast<std::size_t>(*file)][first_of_name];
    if (line == 0) return std::nullopt;
    return Place{*file, line, variant::data_columns::name.first, variant::data_columns::name.width()};
  }

  const Variant& variant_;
  std::array<std::vector<std::uint32_t>, variant::file_count> first_lines_;
};

// Findings.

Severity severity_of(const Message& message) {
  if (message.level != Level::note) return Severity::error;
  const std::string_view text = variant::without_blanks(message.text);
  const bool is_warning = std::ranges::none_of(
      note_words, [&](std::string_view word) { return word != "Warnung:" && text.starts_with(word); });
  return is_warning ? Severity::warning : Severity::note;
}

std::string hint_of(const Message& message) {
  if (!message.complete) return "die Meldung ist abgebrochen";
  return message.more_follow ? "weitere dieser Art nennt das Protokoll nicht" : "";
}

}  // namespace

ProtocolFindings findings_of(const Protocol& protocol, const Variant& variant) {
  const Places places(variant);
  ProtocolFindings result;
  result.findings.reserve(protocol.messages.size());
  for (const Message& message : protocol.messages) {
    const Severity severity = severity_of(message);
    const std::string code = message.code.empty() ? "unbekannt" : message.code;
    const auto [rule, is_new] = result.rules.try_emplace({code, severity});
    if (is_new) rule->second = {.identifier = rule->first.first, .severity = severity, .explanation = {}};
    result.findings.push_back({.rule = &rule->second,
                               .place = places.of(message),
                               .text = sentence_of(message, variant.path.name),
                               .hint = hint_of(message)});
  }
  std::ranges::stable_sort(result.findings, std::ranges::greater(),
                           [](const Finding& finding) { return finding.rule->severity; });
  return result;
}

std::string sentence_of(const Message& message, const std::string& variant_name) {
  if (message.kind == Message::Kind::unknown) {
    return "Das Protokoll enthält etwas, das der Katalog nicht kennt: " +
           shown_line(message.text, variant_name);
  }
  if (message.kind == Message::Kind::undefined) {
    const std::string about = shown_line(message.argument(Argument::Name::text1), variant_name);
    return fmt::format("Der Katalog hat zur Meldung {} keinen Text{}{}", message.code,
                       about.empty() ? "" : "; sie betrifft ", about);
  }
  std::string sentence = joined(message.text);
  drop_severity(sentence);
  drop_full_stop(sentence);
  return shown_line(sentence, variant_name);
}

}  // namespace schau::run
