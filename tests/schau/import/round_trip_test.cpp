// From a network to a table and back to the files of a variant: KV_Akum comes to the same totals.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "KV_Schau/import/import.h"
#include "KV_Schau/rules/rules.h"
#include "tests/dice.h"
#include "tests/notices.h"
#include "tests/program.h"
#include "tests/schau/clean_network.h"
#include "tests/schau/import/net_csv.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;
using schau::variant::TextFile;
using schau::variant::Variant;

constexpr std::string_view prefix = "Abschnitt ";

fs::path networks_folder() {
  const char* const chosen = std::getenv("KV_REAL_NETWORKS_DIR");
  return chosen != nullptr ? chosen : KV_REAL_NETWORKS_DIR;
}

// Natural, canalised and impervious total of a reach.
struct Totals {
  double natural = 0.0;
  double canalised = 0.0;
  double impervious = 0.0;
};

// The totals of all reaches that a run of KV_Akum writes.
std::map<std::string, Totals> totals_of(const std::string& name) {
  const child::Outcome run = program::run({{name}, "."});
  EXPECT_EQ(run.out, notices::closing(name));
  std::map<std::string, Totals> totals;
  std::istringstream lines(test_files::read_bytes(name + ".Akum"));
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with('T') || line.size() < 99) continue;
    totals[line.substr(0, 5)] = {std::stod(line.substr(32, 10)), std::stod(line.substr(54, 10)),
                                 std::stod(line.substr(76, 10))};
  }
  return totals;
}

// The names that the import gave, by the ids without their prefix.
std::map<std::string, std::string> names_by_id(const std::string& list, const std::string& id_prefix) {
  std::map<std::string, std::string> names;
  std::istringstream lines(list);
  for (std::string line; std::getline(lines, line);) {
    const std::string id = line.substr(6, line.find(',', 6) - 6);
    const bool is_row = line.find(",Transportstrecke,") != std::string::npos;
    if (is_row) names[id.substr(id_prefix.size())] = line.substr(0, 5);
  }
  return names;
}

// Single precision has seven digits; the result three decimals.
void expect_equal(double expected, double total, const std::string& reach) {
  EXPECT_NEAR(expected, total, 0.0011 + 2e-6 * expected) << reach;
}

void write_variant(const schau::imports::Import& import, const std::string& name) {
  schau::imports::write_files(import, {".", name, name});
}

// Makes a table of the variant `source` in the working folder, imports it as `target` and compares.
void round_trip(const std::string& source, const net_csv::Form& form) {
  const Variant before = schau::variant::read_variant({".", source, source});
  const TextFile table = TextFile::of_bytes(net_csv::of_variant(before, form), "netz.csv");
  const schau::imports::Import import = schau::imports::import_table(table, false);
  ASSERT_TRUE(import.was_taken()) << schau::imports::faults_text(import.table);
  EXPECT_TRUE(import.text.roundings.empty()) << "five columns held these areas before";
  fs::create_directory("neu");
  schau::imports::write_files(import, {"neu", "netz", "netz"});
  const Variant after = schau::variant::read_variant({"neu", "netz", "netz"});
  for (const auto& finding : schau::rules::check(after).findings)
    EXPECT_NE(finding.rule->severity, schau::findings::Severity::error) << finding.text;

  const std::map<std::string, Totals> expected = totals_of(source);
  ASSERT_FALSE(expected.empty());
  write_variant(import, "netz");
  const std::map<std::string, Totals> totals = totals_of("netz");
  EXPECT_EQ(totals.size(), expected.size());
  const auto names = names_by_id(test_files::read_bytes("netz.namen.csv"), form.id_prefix);
  for (const auto& [reach, areas] : expected) {
    const auto found = totals.find(names.at(reach));
    ASSERT_NE(found, totals.end()) << reach;
    expect_equal(areas.natural, found->second.natural, reach);
    expect_equal(areas.canalised, found->second.canalised, reach);
    expect_equal(areas.impervious, found->second.impervious, reach);
  }
}

class RealNetworks : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const fs::path folder = networks_folder() / GetParam();
    if (!fs::exists(folder)) {
      GTEST_SKIP() << "not run: the folder of real networks is not there (" << folder.string() << ")";
    }
    for (const auto& entry : fs::directory_iterator(folder)) fs::copy(entry.path(), ".");
  }

 private:
  test_files::WorkingFolder working_folder_;
};

TEST_P(RealNetworks, ComeBackElementByElement) {
  round_trip(GetParam(), {',', false, false, std::string(prefix)});
}

TEST_P(RealNetworks, ComeBackFromATableOfReaches) {
  round_trip(GetParam(), {';', true, true, std::string(prefix)});
}

TEST_P(RealNetworks, KeepTheirNames) {
  const Variant before = schau::variant::read_variant({".", GetParam(), GetParam()});
  const TextFile table = TextFile::of_bytes(net_csv::of_variant(before, {'\t', true, false, ""}), "netz.csv");
  const schau::imports::Import import = schau::imports::import_table(table, false);
  ASSERT_TRUE(import.was_taken());
  for (const schau::imports::Element& element : import.elements) {
    if (element.role != schau::imports::Role::row || element.type == ' ') continue;
    EXPECT_EQ(schau::variant::text_of(element.name), import.table.rows[element.row].id);
  }
}

INSTANTIATE_TEST_SUITE_P(Networks, RealNetworks, testing::Values("walker", "newhope", "hopediv", "colorado"),
                         [](const auto& network) { return std::string(network.param); });

TEST(RandomNetworks, ComeBack) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    const test_files::WorkingFolder working_folder;
    Dice dice(seed);
    const schau_test::CleanNetwork network = schau_test::clean_network(dice, 20 + dice.roll(200));
    for (const auto file : {schau_test::FileId::sys, schau_test::FileId::nfl, schau_test::FileId::kfl,
                            schau_test::FileId::trs, schau_test::FileId::ver}) {
      test_files::write_bytes("alt." + std::string(schau_test::extension_of(file)), network.bed.bytes(file));
    }
    round_trip("alt", {seed % 2 == 0 ? ',' : ';', seed % 3 == 0, seed % 2 == 1, std::string(prefix)});
  }
}

}  // namespace
