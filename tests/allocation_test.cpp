// Every single table that the memory is short of raises the level of the run.

#include <gtest/gtest.h>

#include <cstdint>

#include "m_Bauwerke/m_Bauwerke.h"
#include "m_Einleiter/m_Einleiter.h"
#include "m_Gerinne/m_Gerinne.h"
#include "m_System/filled_tables.h"
#include "m_System/m_System.h"
#include "runtime/blocks.h"
#include "tests/variant_files.h"

namespace {

class Allocation : public testing::Test {
 protected:
  void TearDown() override { runtime::unlimit_allocations(); }

  // Holds the procedure, which makes that many tables, against the refusal of each of them.
  static void refuse_each(std::int32_t tables, std::int32_t (*allocate)()) {
    for (std::int32_t others = 0; others < tables; ++others) {
      variant_files::fill_system_logic(
          {{"N1", {}, {"V1"}}, {"V1", {"N1"}, {"T1"}}, {"T1", {"V1"}, {"ENDE"}}});
      m_System::filled_tables.total_count = 3;
      runtime::refuse_table(others);
      EXPECT_EQ(allocate(), 5020) << "table " << others + 1;
      runtime::unlimit_allocations();
      EXPECT_EQ(allocate(), 0);
    }
    runtime::refuse_table(tables);
    EXPECT_EQ(allocate(), 0) << "there are more tables than " << tables;
  }

 private:
  variant_files::FreshRun folder_;
};

TEST_F(Allocation, TheSystemLogicHasElevenTables) {
  refuse_each(11, m_System::AllocateSystemTables);
}

TEST_F(Allocation, SourcesHaveTwo) {
  refuse_each(2, m_Einleiter::AllocateSourceTables);
}

TEST_F(Allocation, ReachesHaveThree) {
  refuse_each(3, m_Gerinne::AllocateReachTables);
}

TEST_F(Allocation, BranchingsHaveTwo) {
  refuse_each(2, m_Bauwerke::AllocateBranchingTables);
}

}  // namespace
