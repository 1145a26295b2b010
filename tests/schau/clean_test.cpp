// What is in order must not be found fault with: the example, the golden variants that run without a message,
// the real networks.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "KV_Schau/rules/rules.h"
#include "KV_Schau/variant/path.h"
#include "KV_Schau/variant/variant.h"

namespace {

namespace fs = std::filesystem;
using schau::findings::Severity;

const fs::path variants_folder = KV_VARIANTS_DIR;

std::vector<std::string> findings_above_hint(const fs::path& system_file, std::set<std::string>& rules) {
  const auto resolved = schau::variant::resolve(system_file.string());
  const auto* const path = std::get_if<schau::variant::VariantPath>(&resolved);
  if (path == nullptr) return {"refused: " + std::get<schau::variant::Refusal>(resolved).reason};
  const schau::variant::Variant variant = schau::variant::read_variant(*path);
  std::vector<std::string> found;
  for (const schau::findings::Finding& finding : schau::rules::check(variant).findings) {
    if (finding.rule->severity == Severity::note) continue;
    rules.insert(std::string(finding.rule->identifier));
    found.push_back(variant.file(finding.place.file).shown() + ":" + std::to_string(finding.place.line) +
                    ": " + finding.text);
  }
  return found;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

// The variants that show a mistake, with the rules that find it.
std::map<std::string, std::set<std::string>> variants_with_mistakes() {
  std::map<std::string, std::set<std::string>> variants;
  std::ifstream file(KV_MISTAKES_FILE);
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string variant;
    if (line.starts_with("#") || !(words >> variant)) continue;
    for (std::string rule; words >> rule;) variants[variant].insert(rule);
  }
  return variants;
}

bool has_protocol(const fs::path& expected_files) {
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(expected_files)) {
    if (entry.path().extension() == ".pkl" && entry.path().filename() != "code.pkl") return true;
  }
  return false;
}

bool has_result(const fs::path& expected_files) {
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(expected_files)) {
    if (entry.path().extension() == ".Akum") return true;
  }
  return false;
}

// The golden variants that run to a result without a message.
std::vector<fs::path> silent_variants() {
  std::vector<fs::path> folders;
  for (const fs::directory_entry& entry : fs::directory_iterator(variants_folder)) {
    const fs::path expected = entry.path() / "out" / "files";
    if (!fs::exists(entry.path() / "in") || !fs::exists(expected)) continue;
    if (has_result(expected) && !has_protocol(expected)) folders.push_back(entry.path());
  }
  return folders;
}

TEST(Clean, ExampleHasOneHint) {
  const auto resolved = schau::variant::resolve(KV_EXAMPLES_DIR "/rausel");
  const schau::variant::Variant variant =
      schau::variant::read_variant(std::get<schau::variant::VariantPath>(resolved));
  const std::vector<schau::findings::Finding> found = schau::rules::check(variant).findings;
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found.front().rule->identifier, "erster-ablauf-leer");
}

TEST(Clean, GoldenVariantsShowTheirMistakesAndNoOthers) {
  const std::map<std::string, std::set<std::string>> with_mistakes = variants_with_mistakes();
  ASSERT_FALSE(with_mistakes.empty());
  std::set<std::string> met;
  std::size_t held_clean = 0;
  for (const fs::path& folder : silent_variants()) {
    std::set<std::string> rules;
    std::string found;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder / "in")) {
      const bool is_system_file = entry.path().extension() == ".sys" && entry.is_regular_file();
      if (is_system_file) found += joined(findings_above_hint(entry.path(), rules));
    }
    const std::string name = folder.filename().string();
    const auto expected = with_mistakes.find(name);
    met.insert(name);
    held_clean += expected == with_mistakes.end() ? 1 : 0;
    EXPECT_EQ(rules, expected == with_mistakes.end() ? std::set<std::string>() : expected->second)
        << name << '\n'
        << found;
  }
  EXPECT_GE(held_clean, 60U);
  for (const auto& [name, rules] : with_mistakes)
    EXPECT_TRUE(met.contains(name)) << name << " is no such variant";
}

TEST(Clean, RealNetworksHaveNothingAboveAHint) {
  const fs::path networks = KV_REAL_NETWORKS_DIR;
  if (!fs::is_directory(networks)) GTEST_SKIP() << "The folder of real networks is not there: " << networks;
  for (const char* name : {"walker", "newhope", "hopediv", "colorado"}) {
    std::set<std::string> rules;
    EXPECT_EQ(joined(findings_above_hint(networks / name / (std::string(name) + ".sys"), rules)), "") << name;
  }
}

}  // namespace
