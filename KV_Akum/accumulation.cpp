#include <string>

#include "KV_Akum/KV_Akum.h"
#include "m_Bauwerke/m_Bauwerke.h"
#include "m_Einleiter/m_Einleiter.h"
#include "m_Gerinne/m_Gerinne.h"
#include "m_System/m_System.h"
#include "m_files/m_files.h"
#include "runtime/cp1252.h"
#include "runtime/stop.h"
#include "runtime/units.h"
#include "runtime/write.h"

namespace KV_Akum {
namespace {

using namespace runtime::literals;
using m_Einleiter::source_tables;
using m_System::OwnArea;
using m_System::PassesOn;
using m_System::system_logic;

// km²
struct Areas {
  float natural = 0.0F;
  float canalised = 0.0F;
  float impervious = 0.0F;  // part of the canalised area

  Areas& operator+=(const Areas& other) {
    natural += other.natural;
    canalised += other.canalised;
    impervious += other.impervious;
    return *this;
  }
  friend Areas operator*(float share, const Areas& areas) {
    return {share * areas.natural, share * areas.canalised, share * areas.impervious};
  }
};

// What drains into an element, its own area included.
struct Sums {
  Areas direct;  // since the last branching or basin
  Areas total;
};
using SumTable = runtime::OneBased<Sums>;

void allocate(SumTable& sums, std::int32_t count) {
  if (sums.allocate_zeroed(count)) return;
  // The suite tells the size of one column of the table.
  runtime::stop_on_allocation(__FILE__, __LINE__, static_cast<std::size_t>(count) * sizeof(float));
}

int open_result(std::string_view variant_name) {
  const int unit = m_files::free_unit(100);
  runtime::open(unit, m_System::file_name_of(variant_name, ".Akum").trimmed(), runtime::OpenStatus::whole);
  return unit;
}

void write_header(int unit, std::string_view variant_name) {
  const std::string title =
      std::string(runtime::trimmed(variant_name)).append(": akkumulierte Flächen [qkm]"_w1252);
  runtime::write<"(a/)">(unit, title);
  runtime::write<"(a)">(
      unit,
      "Gew.      km     Einl.   natürliche Fläche       kanal. Fläche        undurchl. Fläche Gesamtfläche"_w1252);
  runtime::write<"(a)">(
      unit,
      "                            Ad       Ages         Ad       Ages        Au,d     Au,ges        Ages");
  runtime::write<"(a)">(
      unit,
      "(1)       (2)     (3)       (4)       (5)         (6)       (7)         (8)       (9)        (5+7)");
  runtime::write<"(a)">(unit, std::string(99, '-'));
}

Areas own_areas(OwnArea kind, std::int32_t source) {
  const float area = source_tables.area.at_or_zero(source);
  if (kind == OwnArea::natural) return {.natural = area};
  return {.canalised = area, .impervious = source_tables.sealing.at_or_zero(source) * area};
}

// Code 1 divides between both outflows; with any other code everything takes the second one.
void add_divided(SumTable& sums, std::int32_t i, std::int32_t j) {
  const auto& outflow = system_logic.outflow_index.at(j);
  const std::int32_t branching = m_System::TypeOrdinal(system_logic.type.at(j), j);
  if (m_Bauwerke::branching_tables.code.at_or_zero(branching) != 1) {
    if (outflow.at(2) == i) sums.at(i).total += sums.at(j).total;
    return;
  }
  const float share = m_Bauwerke::branching_tables.share.at_or_zero(branching);
  if (outflow.at(1) == i) {
    sums.at(i).total += share * sums.at(j).total;
  } else if (outflow.at(2) == i) {
    sums.at(i).total += (1.0F - share) * sums.at(j).total;
  }
}

// The direct sums restart below a branching or basin.
void add_inflow(SumTable& sums, std::int32_t i, std::int32_t j) {
  switch (m_System::type_of(system_logic.type.at(j)).passes_on) {
    case PassesOn::divided_totals:
      return add_divided(sums, i, j);
    case PassesOn::totals_to_second:
      if (system_logic.outflow_index.at(j).at(2) == i) sums.at(i).total += sums.at(j).total;
      return;
    case PassesOn::everything:
      break;
  }
  sums.at(i).direct += sums.at(j).direct;
  sums.at(i).total += sums.at(j).total;
}

void add_inflows(SumTable& sums, std::int32_t i) {
  for (std::int32_t k = 1; k <= m_System::inflow_slots; ++k) {
    const std::int32_t j = system_logic.inflow_index.at(i).at(k);
    if (j > 0) add_inflow(sums, i, j);
  }
}

// The name of the element in an inflow slot; blank when there is none.
const m_System::ElementName& inflow_name(std::int32_t i, std::int32_t k) {
  static constexpr m_System::ElementName none;
  const std::int32_t j = system_logic.inflow_index.at(i).at(k);
  return j > 0 ? system_logic.name.at(j) : none;
}

void write_reach(int unit, const Sums& sums, std::int32_t i, std::int32_t reach) {
  const auto& [direct, total] = sums;
  runtime::write<"(a,2x,f8.3,2x,a,3(f10.3,f10.3,2x),f11.3)">(
      unit, system_logic.name.at(i), m_Gerinne::reach_tables.station_value.at_or_zero(reach),
      inflow_name(i, 1), direct.natural, total.natural, direct.canalised, total.canalised, direct.impervious,
      total.impervious, total.natural + total.canalised);
  for (std::int32_t k = 2; k <= m_System::inflow_slots; ++k) {
    if (system_logic.inflow_index.at(i).at(k) == 0) continue;
    runtime::write<"(5x,2x,8x,2x,a)">(unit, inflow_name(i, k));
  }
}

void accumulate(int unit, SumTable& sums) {
  std::int32_t source = 0;
  std::int32_t reach = 0;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    const m_System::ElementType& type = m_System::type_of(system_logic.type.at(i));
    if (type.own_area != OwnArea::none) {
      const Areas own = own_areas(type.own_area, ++source);
      sums.at(i) = {.direct = own, .total = own};
    } else if (!type.is_source()) {
      add_inflows(sums, i);
    }
    if (type.letter == 'T') write_reach(unit, sums.at(i), i, ++reach);
  }
}

}  // namespace

void AccumulateAreas(std::string_view variant_name) {
  SumTable sums;
  allocate(sums, system_logic.element_count);
  const int unit = open_result(variant_name);
  write_header(unit, variant_name);
  accumulate(unit, sums);
  runtime::complete(unit);
}

}  // namespace KV_Akum
