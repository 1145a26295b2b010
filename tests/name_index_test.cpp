// Names that were chosen to meet in one cell of a table whose hash everybody can compute.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <limits>
#include <string_view>
#include <vector>

#include "m_System/m_System.h"
#include "m_System/name_index.h"
#include "tests/dice.h"

namespace {

using m_System::ElementName;
using m_System::SystemLogic;
using Names = std::vector<ElementName>;

constexpr std::size_t many = 100'000;
constexpr std::string_view letters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz!#$%&()*+,-.;<=>?@";

// The finaliser of MurmurHash3 (Austin Appleby, public domain), with which the names were once hashed.
std::uint64_t public_hash(const ElementName& name) {
  std::uint64_t key = 0;
  for (std::size_t place = 0; place < name.bytes.size(); ++place) {
    key |= std::uint64_t{static_cast<unsigned char>(name.bytes[place])} << 8U * place;
  }
  key ^= key >> 33U;
  key *= 0xFF51AFD7ED558CCDU;
  key ^= key >> 33U;
  key *= 0xC4CEB9FE1A85EC53U;
  return key ^ key >> 33U;
}

// Goes through all names of natural areas.
class Odometer {
 public:
  ElementName next() {
    for (std::size_t place = 4; place > 0; --place) {
      if (++digits_.at(place - 1) < letters.size()) break;
      digits_.at(place - 1) = 0;
    }
    ElementName name("N");
    for (std::size_t place = 1; place < 5; ++place) name.bytes.at(place) = letters.at(digits_.at(place - 1));
    return name;
  }

 private:
  std::array<std::size_t, 4> digits_{};
};

// Their cells are the first 768 of 262,144: each name goes past those before it.
Names colliding_names() {
  constexpr std::uint64_t cells = std::uint64_t{1} << 18U;
  Names names;
  for (Odometer odometer; names.size() < many;) {
    const ElementName name = odometer.next();
    if ((public_hash(name) & (cells - 1)) < 768) names.push_back(name);
  }
  return names;
}

// Every 300th name or so, of the same letters.
Names other_names(std::size_t count) {
  Dice dice(1);
  Names names;
  for (Odometer odometer; names.size() < count;) {
    const ElementName name = odometer.next();
    if (dice.one_in(300)) names.push_back(name);
  }
  return names;
}

SystemLogic network_of(const Names& names) {
  SystemLogic logic;
  logic.element_count = static_cast<std::int32_t>(names.size());
  EXPECT_TRUE(logic.name.allocate(logic.element_count));
  for (std::size_t i = 0; i < names.size(); ++i) logic.name.at(static_cast<std::int32_t>(i) + 1) = names[i];
  return logic;
}

// The processor time of indexing and finding all names, at best.
std::clock_t time_for(const SystemLogic& logic) {
  std::clock_t least = std::numeric_limits<std::clock_t>::max();
  for (int repetition = 0; repetition < 5; ++repetition) {
    const std::clock_t begin = std::clock();
    const m_System::NameIndex index = m_System::index_names(logic);
    for (std::int32_t i = 1; i <= logic.element_count; ++i) {
      if (m_System::first_of_name(index, logic.name.at(i)) != i) ADD_FAILURE() << i;
    }
    least = std::min(least, std::clock() - begin);
  }
  return least;
}

TEST(NameIndex, NamesChosenToCollideCostNoMoreThanOthers) {
  const SystemLogic colliding = network_of(colliding_names());
  const SystemLogic others = network_of(other_names(many));
  EXPECT_FALSE(m_System::index_names(colliding).direct);
  EXPECT_FALSE(m_System::index_names(others).direct);
  EXPECT_LT(time_for(colliding), 4 * time_for(others));
}

TEST(NameIndex, OfNoElementsKnowsNoName) {
  const SystemLogic logic;
  EXPECT_EQ(m_System::first_of_name(m_System::index_names(logic), ElementName("N0001")), 0);
}

// As many as there would be cells, were there none left over: the search for another name would not end.
TEST(NameIndex, ThatIsFullEndsItsSearch) {
  const Names names = other_names(1025);
  const SystemLogic logic = network_of({names.begin(), names.end() - 1});
  const m_System::NameIndex index = m_System::index_names(logic);
  ASSERT_FALSE(index.direct);
  EXPECT_EQ(m_System::first_of_name(index, names.back()), 0);
}

TEST(NameIndex, NobodyKnowsTheWeights) {
  const SystemLogic logic = network_of(other_names(1000));
  EXPECT_NE(m_System::index_names(logic).weight, m_System::index_names(logic).weight);
}

}  // namespace
