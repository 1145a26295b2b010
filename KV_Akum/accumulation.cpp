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
#include "runtime/write_record.h"

namespace KV_Akum {
namespace {

using namespace runtime::literals;
using m_Einleiter::source_tables;
using m_System::system_logic;

// One of the area sums of every element, km².
using AreaSums = runtime::OneBased<float>;

struct Sums {
  AreaSums natural_direct;
  AreaSums natural_total;
  AreaSums canalised_direct;
  AreaSums canalised_total;
  AreaSums impervious_direct;
  AreaSums impervious_total;
};

void allocate(AreaSums& sums, std::int32_t count) {
  if (sums.allocate_zeroed(count)) return;
  runtime::stop_on_allocation(__FILE__, __LINE__, static_cast<std::size_t>(count) * sizeof(float));
}

Sums allocated_sums(std::int32_t count) {
  Sums sums;
  for (AreaSums* part : {&sums.natural_direct, &sums.natural_total, &sums.canalised_direct,
                         &sums.canalised_total, &sums.impervious_direct, &sums.impervious_total}) {
    allocate(*part, count);
  }
  return sums;
}

int open_result(std::string_view variant_name) {
  const int unit = m_files::free_unit(100);
  runtime::open(unit, m_System::file_name_of(variant_name, ".Akum").trimmed(), runtime::OpenStatus::unknown);
  return unit;
}

void write_header(int unit, std::string_view variant_name) {
  const std::string title =
      std::string(runtime::trimmed(variant_name)).append(": akkumulierte Flächen [qkm]"_w1252);
  runtime::write(unit, runtime::format<"(a/)">, {title});
  runtime::write_line(
      unit,
      "Gew.      km     Einl.   natürliche Fläche       kanal. Fläche        undurchl. Fläche Gesamtfläche"_w1252);
  runtime::write_line(
      unit,
      "                            Ad       Ages         Ad       Ages        Au,d     Au,ges        Ages");
  runtime::write_line(
      unit,
      "(1)       (2)     (3)       (4)       (5)         (6)       (7)         (8)       (9)        (5+7)");
  runtime::write_line(unit, std::string(99, '-'));
}

void set_natural(Sums& sums, std::int32_t i, std::int32_t source) {
  const float area = source_tables.area.at_or_zero(source);
  sums.natural_direct.at(i) = area;
  sums.natural_total.at(i) = area;
}

void set_canalised(Sums& sums, std::int32_t i, std::int32_t source) {
  const float area = source_tables.area.at_or_zero(source);
  const float impervious = source_tables.sealing.at_or_zero(source) * area;
  sums.canalised_direct.at(i) = area;
  sums.canalised_total.at(i) = area;
  sums.impervious_direct.at(i) = impervious;
  sums.impervious_total.at(i) = impervious;
}

void add_direct(Sums& sums, std::int32_t i, std::int32_t j) {
  sums.natural_direct.at(i) += sums.natural_direct.at(j);
  sums.canalised_direct.at(i) += sums.canalised_direct.at(j);
  sums.impervious_direct.at(i) += sums.impervious_direct.at(j);
}

void add_totals(Sums& sums, std::int32_t i, std::int32_t j) {
  sums.natural_total.at(i) += sums.natural_total.at(j);
  sums.canalised_total.at(i) += sums.canalised_total.at(j);
  sums.impervious_total.at(i) += sums.impervious_total.at(j);
}

void add_share_of_totals(Sums& sums, std::int32_t i, std::int32_t j, float share) {
  sums.natural_total.at(i) += share * sums.natural_total.at(j);
  sums.canalised_total.at(i) += share * sums.canalised_total.at(j);
  sums.impervious_total.at(i) += share * sums.impervious_total.at(j);
}

// Code 1 divides between both outflows; with any other code everything takes the second one.
void add_from_branching(Sums& sums, std::int32_t i, std::int32_t j) {
  const auto& outflow = system_logic.outflow_index.at(j);
  const std::int32_t branching = m_System::TypeOrdinal('V', j);
  if (m_Bauwerke::branching_tables.code.at_or_zero(branching) != 1) {
    if (outflow.at(2) == i) add_totals(sums, i, j);
    return;
  }
  const float share = m_Bauwerke::branching_tables.share.at_or_zero(branching);
  if (outflow.at(1) == i) {
    add_share_of_totals(sums, i, j, share);
  } else if (outflow.at(2) == i) {
    add_share_of_totals(sums, i, j, 1.0F - share);
  }
}

// The direct sums restart below a branching or basin; a basin passes on through its second outflow only.
void add_inflow(Sums& sums, std::int32_t i, std::int32_t j) {
  switch (system_logic.type.at(j)) {
    case 'V':
      return add_from_branching(sums, i, j);
    case 'B':
      if (system_logic.outflow_index.at(j).at(2) == i) add_totals(sums, i, j);
      return;
    default:
      add_direct(sums, i, j);
      add_totals(sums, i, j);
  }
}

void add_inflows(Sums& sums, std::int32_t i) {
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

void write_reach(runtime::LineWriter& table, const Sums& sums, std::int32_t i, std::int32_t reach) {
  runtime::write_record<"(a,2x,f8.3,2x,a,3(f10.3,f10.3,2x),f11.3)">(
      table, system_logic.name.at(i), m_Gerinne::reach_tables.station_value.at_or_zero(reach),
      inflow_name(i, 1), sums.natural_direct.at(i), sums.natural_total.at(i), sums.canalised_direct.at(i),
      sums.canalised_total.at(i), sums.impervious_direct.at(i), sums.impervious_total.at(i),
      sums.natural_total.at(i) + sums.canalised_total.at(i));
  for (std::int32_t k = 2; k <= m_System::inflow_slots; ++k) {
    if (system_logic.inflow_index.at(i).at(k) == 0) continue;
    runtime::write_record<"(5x,2x,8x,2x,a)">(table, inflow_name(i, k));
  }
}

void accumulate(int unit, Sums& sums) {
  runtime::LineWriter table(unit);
  std::int32_t source = 0;
  std::int32_t reach = 0;
  for (std::int32_t i = 1; i <= system_logic.element_count; ++i) {
    switch (system_logic.type.at(i)) {
      case 'N':
        set_natural(sums, i, ++source);
        break;
      case 'K':
        set_canalised(sums, i, ++source);
        break;
      case 'E':
        break;
      case 'T':
        add_inflows(sums, i);
        write_reach(table, sums, i, ++reach);
        break;
      default:
        add_inflows(sums, i);
    }
  }
}

}  // namespace

void AccumulateAreas(std::string_view variant_name) {
  Sums sums = allocated_sums(system_logic.element_count);
  const int unit = open_result(variant_name);
  write_header(unit, variant_name);
  accumulate(unit, sums);
}

}  // namespace KV_Akum
