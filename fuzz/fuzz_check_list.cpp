// "Pruefliste.lis", and the cases that tools ask it about.

#include <algorithm>

#include "fuzz/fuzz_bed.h"
#include "m_info/m_info.h"

namespace {

using m_info::check_list;
using m_info::check_list_wants;

bool is_flag(std::int32_t number) {
  return number == 0 || number == 1;
}

void require_answers() {
  fuzz_bed::require(check_list_wants({}) == 0, "without a number and a station nothing is wanted");
  fuzz_bed::require(check_list_wants({.query = "Profile"}) == check_list.profiles_wanted, "the flag answers");
  fuzz_bed::require(check_list_wants({.query = "Abfluss"}) == check_list.discharge_wanted,
                    "the flag answers");
  fuzz_bed::require(check_list_wants({.query = "Sohle"}) == 0, "another word is never wanted");
  fuzz_bed::require(check_list_wants({.date = check_list.report_date(), .query = "WSPi"}) == 1,
                    "the date of the list is wanted");
  const std::int32_t detail = check_list_wants({.element_name = check_list.report_element_name.view(),
                                                .kind = check_list.report_max_kind,
                                                .query = "WSP_detail"});
  const bool named = !check_list.report_element_name.blank();
  fuzz_bed::require(detail == (named ? check_list.wsp_detail_wanted : 0),
                    "the element of the list is wanted");
  const std::int32_t stored = std::min(check_list.water_level_count, m_info::water_level_capacity);
  for (std::int32_t i = 1; i <= stored; ++i) {
    const double level = check_list.water_levels.at(i);
    fuzz_bed::require(check_list_wants({.element_number = 1, .station = level, .water_levels = true}) == 1 ||
                          level - level != 0.0,
                      "a listed level is wanted");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text = fuzz_bed::text_of(bytes, size);
  fuzz_bed::Bed bed;
  bed.put("Pruefliste.lis", text);
  m_info::reset();
  m_info::read_check_list();
  fuzz_bed::require(is_flag(check_list.profiles_wanted) && is_flag(check_list.discharge_wanted) &&
                        is_flag(check_list.wsp_detail_wanted),
                    "flags are 0 or 1");
  const auto lines = std::ranges::count_if(text, [](char byte) { return byte == '\n' || byte == '\r'; }) + 1;
  fuzz_bed::require(check_list.water_level_count >= 0 && check_list.water_level_count <= lines,
                    "a line gives one level at most");
  require_answers();
  m_info::reset();
  return 0;
}
