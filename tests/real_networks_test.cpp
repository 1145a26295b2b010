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

#include "tests/notices.h"
#include "tests/program.h"
#include "tests/test_files.h"

namespace {

namespace fs = std::filesystem;

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
  std::istringstream lines(test_files::read_bytes(file));
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    const std::vector<std::string> fields = comma_fields(line);
    if (fields.at(5) == "yes")
      reaches.push_back({fields.at(0), std::stod(fields.at(2)), std::stod(fields.at(4))});
  }
  return reaches;
}

// The columns of the result that are held against the published areas.
struct ResultColumns {
  std::size_t first;
  std::size_t width;
};
constexpr ResultColumns natural_total{33, 10};
constexpr ResultColumns whole_total{89, 11};

std::map<std::string, double> totals_of_reaches(const std::string& result, const ResultColumns& columns) {
  std::map<std::string, double> totals;
  std::istringstream lines(result);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('T')) {
      totals[line.substr(0, 5)] = std::stod(line.substr(columns.first - 1, columns.width));
    }
  }
  return totals;
}

struct Network {
  const char* name;
  ResultColumns columns;
};

class RealNetwork : public testing::TestWithParam<Network> {};

TEST_P(RealNetwork, MeetsThePublishedDrainageAreas) {
  const std::string name = GetParam().name;
  const fs::path folder = networks_folder() / name;
  if (!fs::exists(folder)) {
    GTEST_SKIP() << "not run: the folder of real networks is not there (" << folder.string()
                 << "); KV_REAL_NETWORKS_DIR names another";
  }
  const test_files::TemporaryFolder work;
  test_files::copy_variant(name, folder, work.path());
  const child::Outcome run = program::run({.arguments = {name}, .folder = work.path()});
  EXPECT_EQ(run.ending, "exit status 0");
  EXPECT_EQ(run.out, notices::closing(name));
  EXPECT_EQ(run.err, "");
  EXPECT_FALSE(fs::exists(work.file(name + ".pkl"))) << "the run has nothing to report";

  const auto totals =
      totals_of_reaches(test_files::read_bytes(work.file(name + ".Akum")), GetParam().columns);
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

INSTANTIATE_TEST_SUITE_P(Networks, RealNetwork,
                         testing::Values(Network{"walker", natural_total}, Network{"newhope", natural_total},
                                         Network{"hopediv", natural_total}, Network{"colorado", whole_total}),
                         [](const auto& network) { return std::string(network.param.name); });

}  // namespace
