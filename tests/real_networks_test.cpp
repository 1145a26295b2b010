// Runs the program on the folder of real networks and holds its totals against the drainage areas that the
// source of the networks publishes.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/variant_files.h"

namespace {

namespace fs = std::filesystem;
using variant_files::Lines;

fs::path networks_folder() {
  const char* const chosen = std::getenv("KV_REAL_NETWORKS_DIR");
  return chosen != nullptr ? chosen : KV_REAL_NETWORKS_DIR;
}

// A reach of which the source publishes the drainage area at its lower end.
struct Published {
  std::string reach;
  double area = 0.0;       // km²
  double tolerance = 0.0;  // km²
};

std::vector<std::string> comma_fields(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream rest(line.substr(0, line.find('\r')));
  for (std::string field; std::getline(rest, field, ',');) fields.push_back(field);
  return fields;
}

// The reaches that can be compared: the others miss the side path of a divergence.
std::vector<Published> published_reaches(const fs::path& file) {
  std::vector<Published> reaches;
  std::istringstream lines(variant_files::read_file(file));
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    const std::vector<std::string> fields = comma_fields(line);
    if (fields.at(5) == "yes")
      reaches.push_back({fields.at(0), std::stod(fields.at(2)), std::stod(fields.at(4))});
  }
  return reaches;
}

// The natural total of every reach in the result.
std::map<std::string, double> natural_totals(const Lines& result) {
  std::map<std::string, double> totals;
  for (const std::string& line : result) {
    if (line.starts_with('T')) totals[line.substr(0, 5)] = std::stod(line.substr(32, 10));
  }
  return totals;
}

class RealNetwork : public testing::TestWithParam<const char*> {};

TEST_P(RealNetwork, MeetsThePublishedDrainageAreas) {
  const fs::path folder = networks_folder() / GetParam();
  if (!fs::exists(folder)) {
    GTEST_SKIP() << "not run: the folder of real networks is not there (" << folder.string()
                 << "); KV_REAL_NETWORKS_DIR names another";
  }
  const variant_files::WorkingFolder working_folder;
  variant_files::copy_variant(folder, GetParam());
  const variant_files::RunResult run = variant_files::run_variant(GetParam());
  EXPECT_EQ(run.output, variant_files::notice("KV_Akum", std::string("Ergebnis: ") + GetParam() + ".Akum"));
  EXPECT_EQ(run.error, "");
  EXPECT_FALSE(fs::exists(std::string(GetParam()) + ".pkl")) << "the run has nothing to report";

  const auto totals = natural_totals(variant_files::written_lines(std::string(GetParam()) + ".Akum"));
  const std::vector<Published> published = published_reaches(folder / "expected.csv");
  ASSERT_FALSE(published.empty());
  double largest_deviation = 0.0;
  double largest_part = 0.0;
  for (const Published& reach : published) {
    const auto total = totals.find(reach.reach);
    ASSERT_NE(total, totals.end()) << reach.reach;
    EXPECT_NEAR(total->second, reach.area, reach.tolerance) << reach.reach;
    const double deviation = std::abs(total->second - reach.area);
    largest_deviation = std::max(largest_deviation, deviation);
    largest_part = std::max(largest_part, deviation / reach.tolerance);
  }
  RecordProperty("compared_reaches", std::to_string(published.size()));
  RecordProperty("largest_deviation_km2", std::to_string(largest_deviation));
  RecordProperty("largest_part_of_tolerance", std::to_string(largest_part));
}

INSTANTIATE_TEST_SUITE_P(Networks, RealNetwork, testing::Values("walker", "newhope"),
                         [](const auto& network) { return std::string(network.param); });

}  // namespace
