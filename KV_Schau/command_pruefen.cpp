#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "KV_Schau/command.h"
#include "KV_Schau/findings/json.h"
#include "KV_Schau/findings/text.h"
#include "KV_Schau/network/balance_view.h"
#include "KV_Schau/rules/rules.h"
#include "KV_Schau/terminal.h"
#include "KV_Schau/variant/path.h"
#include "KV_Schau/variant/variant.h"

namespace schau {
namespace {

using findings::Finding;
using findings::Rule;

struct Options {
  std::vector<std::string> variants;
  std::vector<std::string> without;
  std::size_t most_per_rule = std::numeric_limits<std::size_t>::max();
  bool json = false;
  bool list_rules = false;
};
Options options;

void add_options(CLI::App& parser) {
  // The list of rules needs no variant.
  add_variants(parser, options.variants)->required(false);
  parser.add_flag("--json", options.json, "Befunde und Bilanz als JSON ausgeben");
  parser
      .add_option("--ohne", options.without,
                  "eine Regel abschalten, bei Bedarf mehrmals; die Namen nennt --regeln")
      ->type_name("REGEL")
      ->allow_extra_args(false);
  parser
      .add_option("--hoechstens", options.most_per_rule, "von jeder Regel höchstens so viele Befunde zeigen")
      ->type_name("ZAHL");
  parser.add_flag("--regeln", options.list_rules, "alle Regeln mit Stufe und Erklärung auflisten");
  parser.footer(
      "Liest alle Dateien der Variante und meldet, was KV_Akum ohne ein Wort hinnimmt, mit Datei, Zeile und "
      "Spalte;\n"
      "schreibt nichts.\n"
      "  Fehler   KV_Akum liefert kein Ergebnis oder eine falsche Fläche.\n"
      "  Warnung  Das Ergebnis ist womöglich nicht das gemeinte.\n"
      "  Hinweis  Gut zu wissen.\n"
      "Zeilen enden bei LF, CR LF oder CR, Spalten zählen Zeichen, so wie in einem Editor.\n"
      "Exit-Status: 0 ohne Befund oder nur Hinweise, 1 Warnungen, 2 Fehler, 3 eine Datei fehlt oder ist "
      "nicht lesbar,\n"
      "64 falscher Aufruf oder ein Name, den KV_Akum nicht annimmt; bei mehreren Varianten der höchste.");
}

ExitStatus list_rules() {
  std::string out;
  for (const Rule* rule : rules::all_rules()) {
    out += fmt::format("{:<24} {:<8} {}\n", rule->identifier, findings::word_of(rule->severity),
                       rule->explanation);
  }
  write_out(out);
  return ExitStatus::clean;
}

std::vector<const Rule*> rules_switched_off() {
  std::vector<const Rule*> off;
  for (const std::string& identifier : options.without) {
    const Rule* const rule = rules::rule_named(identifier);
    if (rule == nullptr) {
      throw UsageError{fmt::format("Eine Regel \"{}\" gibt es nicht; --regeln nennt alle", identifier)};
    }
    off.push_back(rule);
  }
  return off;
}

// Keeps the first findings of each rule.
std::vector<Finding> limited(std::vector<Finding> found, std::size_t most) {
  std::map<const Rule*, std::size_t> numbers;
  std::erase_if(found, [&](const Finding& finding) { return ++numbers[finding.rule] > most; });
  return found;
}

bool has_unreadable_input(const variant::Variant& variant) {
  return std::ranges::any_of(variant.files, [](const variant::TextFile& file) {
    return file.state() == variant::FileState::unreadable;
  });
}

ExitStatus status_of(const variant::Variant& variant, const findings::Counts& counts) {
  if (has_unreadable_input(variant)) return ExitStatus::failed;
  if (counts.errors > 0) return ExitStatus::no_result;
  return counts.warnings > 0 ? ExitStatus::findings : ExitStatus::clean;
}

// What is to be shown of a variant, in one form or the other.
class Report {
 public:
  virtual ~Report() = default;
  virtual void begin() {}
  virtual void refused(const std::string& argument, const variant::Refusal& refusal) = 0;
  virtual void checked(const variant::Variant& variant, const rules::Result& result,
                       const findings::Counts& counts, const std::vector<Finding>& shown) = 0;
  virtual void end() {}
};

class TextReport : public Report {
 public:
  void refused(const std::string& /*argument*/, const variant::Refusal& refusal) override {
    write_error(fmt::format("KV_Schau: {}.", refusal.reason));
    if (!refusal.way_out.empty()) write_error(fmt::format("  {}.", refusal.way_out));
  }

  void checked(const variant::Variant& variant, const rules::Result& result, const findings::Counts& counts,
               const std::vector<Finding>& shown) override {
    constexpr std::size_t most_losses = 20;
    constexpr std::size_t block = std::size_t{1} << 20U;
    const findings::Colours colours = use_colours() ? findings::terminal_colours : findings::no_colours;
    std::string out = is_first_ ? "" : "\n";
    is_first_ = false;
    for (const Finding& finding : shown) {
      findings::append_text(out, variant, finding, colours);
      if (out.size() < block) continue;
      write_out(out);
      out.clear();
    }
    out += shown.empty() ? "" : "\n";
    out += network::text_of(variant, result.network, result.flow.balance, most_losses);
    out += fmt::format("{}: {}\n", variant.path.shown, findings::text_of(counts));
    const std::size_t hidden = result.findings.size() - shown.size();
    if (hidden > 0)
      out += fmt::format("{} davon nicht gezeigt (--hoechstens {})\n", hidden, options.most_per_rule);
    write_out(out);
  }

 private:
  bool is_first_ = true;
};

// One object, written piece by piece: a variant may have a million findings.
class JsonReport : public Report {
 public:
  void begin() override { write_out("{\"varianten\":["); }
  void end() override { write_out("\n]}\n"); }

  void refused(const std::string& argument, const variant::Refusal& refusal) override {
    begin_variant();
    nlohmann::ordered_json json;
    json["variante"] = argument;
    json["abgelehnt"] = refusal.reason;
    json["ausweg"] = refusal.way_out;
    write_out(json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
  }

  void checked(const variant::Variant& variant, const rules::Result& result, const findings::Counts& counts,
               const std::vector<Finding>& shown) override {
    begin_variant();
    nlohmann::ordered_json head;
    head["variante"] = variant.path.shown;
    head["zahl"] = findings::to_json(counts);
    head["bilanz"] = network::to_json(variant, result.network, result.flow.balance);
    std::string out = head.dump();
    out.pop_back();
    write_out(out + ",\"befunde\":[");
    std::string_view separator = "\n";
    for (const Finding& finding : shown) {
      write_out(separator);
      write_out(findings::to_json(variant, finding).dump());
      separator = ",\n";
    }
    write_out("]}");
  }

 private:
  void begin_variant() {
    write_out(is_first_ ? "\n" : ",\n");
    is_first_ = false;
  }
  bool is_first_ = true;
};

ExitStatus check_variant(const std::string& argument, const std::vector<const Rule*>& without,
                         Report& report) {
  const auto resolved = variant::resolve(argument);
  if (const auto* refusal = std::get_if<variant::Refusal>(&resolved)) {
    report.refused(argument, *refusal);
    const bool missing = refusal->kind == variant::Refusal::Kind::missing;
    return missing ? ExitStatus::failed : ExitStatus::usage;
  }
  const variant::Variant variant = variant::read_variant(std::get<variant::VariantPath>(resolved));
  rules::Result result = rules::check(variant, without);
  const findings::Counts counts = findings::count(result.findings);
  report.checked(variant, result, counts, limited(result.findings, options.most_per_rule));
  return status_of(variant, counts);
}

ExitStatus check_variants(Report& report) {
  const std::vector<const Rule*> without = rules_switched_off();
  ExitStatus status = ExitStatus::clean;
  report.begin();
  for (const std::string& argument : options.variants) {
    status = worse(status, check_variant(argument, without, report));
  }
  report.end();
  return status;
}

ExitStatus run() {
  if (options.list_rules) return list_rules();
  if (options.variants.empty()) throw UsageError{"Es fehlt: VARIANTE"};
  if (options.json) {
    JsonReport report;
    return check_variants(report);
  }
  TextReport report;
  return check_variants(report);
}

const Registration registration({.name = "pruefen",
                                 .description = "meldet, was an einer Variante nicht stimmt",
                                 .rank = 10,
                                 .add_options = add_options,
                                 .run = run});

}  // namespace
}  // namespace schau
