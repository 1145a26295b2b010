// The search for the lines of elements in any companion file, held against the plain one. The first byte says
// in which order the elements are asked for and where a line more is read between two searches.

#include <optional>

#include "fuzz/fuzz_bed.h"
#include "m_System/companion_file.h"
#include "m_System/m_System.h"
#include "tests/plain_search.h"

namespace {

using m_System::system_logic;

// A digit in column 11 is a mark.
std::int32_t mark_of(std::string_view line) {
  return line.size() > 10 && line[10] >= '1' && line[10] <= '9' ? line[10] - '0' : 0;
}

std::int32_t mark_in_force = 0;

void put_into_force(std::int32_t mark) {
  mark_in_force = mark;
}

constexpr m_System::CompanionKind kind{.extension = ".trs",
                                       .type = 'T',
                                       .numbered_with = 'T',
                                       .allocate = nullptr,
                                       .read = nullptr,
                                       .marks = {mark_of, put_into_force}};

void read_on_both(m_System::CompanionFile& file, plain_search::PlainFile& plain) {
  std::string_view line;
  const std::optional<std::string> expected = plain.read();
  fuzz_bed::require(file.next(line) == expected.has_value(), "both files go on, or none");
  if (expected) fuzz_bed::require(line == *expected, "both files go on with the same line");
}

// False when there is no line: a reader gives up then.
bool find_on_both(m_System::CompanionFile& file, plain_search::PlainFile& plain, std::int32_t i) {
  mark_in_force = 0;
  const std::optional<std::string_view> line = file.find(i);
  const plain_search::PlainFind expected = plain_search::plain_find(plain, system_logic.name.at(i), mark_of);
  fuzz_bed::require(line == expected.line, "the search finds what the plain one finds");
  fuzz_bed::require(mark_in_force == expected.last_mark, "the last mark on the way is in force");
  return line.has_value();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0) return 0;
  const unsigned order = bytes[0];
  const std::string_view text = fuzz_bed::text_of(bytes + 1, size - 1);
  fuzz_bed::Bed bed;
  bed.put("v.trs", text);
  fuzz_bed::start_with_network();
  plain_search::PlainFile plain(text);
  m_System::CompanionFile file("v", kind);
  fuzz_bed::require(file.open(), "the file can be opened");
  const auto count = static_cast<unsigned>(system_logic.element_count);
  // Every number below the count comes once when the step has no divisor in common with it.
  const unsigned step = order % 2 == 0 ? 1 : count - 1;
  for (unsigned asked = 0; asked < count; ++asked) {
    const auto i = static_cast<std::int32_t>((order / 8 + asked * step) % count) + 1;
    if (!find_on_both(file, plain, i)) break;
    if (order / 2 % 4 == asked % 4) read_on_both(file, plain);
  }
  file.close();
  return 0;
}
