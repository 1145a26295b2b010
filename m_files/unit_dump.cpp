#include "m_files/m_files.h"
#include "m_files/module_state.h"
#include "runtime/units.h"
#include "runtime/write.h"

namespace m_files {
namespace {

constexpr int first_dump_unit = 200;
constexpr std::size_t longest_path = 500;
constexpr runtime::FixedText<20> nameless("Datei ohne Namen");

struct UnitDumpState {
  int unit = 0;  // 0 until the first dump
};
UnitDumpState unit_dump;

bool is_standard(int unit) {
  return unit == 5 || unit == 6;
}

void describe_unit(int unit) {
  if (is_standard(unit)) return;
  const std::optional<std::string> path = runtime::connected_path(unit);
  if (!path) return;
  if (path->empty()) {
    runtime::write<"(i5,5x,a)">(unit_dump.unit, unit, nameless.view());
  } else {
    const std::string_view shown = std::string_view(*path).substr(0, longest_path);
    runtime::write<"(i5,2x,a)">(unit_dump.unit, unit, shown);
  }
}

}  // namespace

void dump_open_units(std::string_view caller, std::int32_t highest_unit) {
  if (unit_dump.unit == 0) {
    unit_dump.unit = free_unit(first_dump_unit);
    runtime::open(unit_dump.unit, "o_unit_file.pkl", runtime::OpenStatus::unknown);
  }
  runtime::write<"(a,2i5)">(unit_dump.unit, runtime::trimmed(caller), unit_dump.unit, highest_unit);
  for (std::int64_t unit = 1; unit <= highest_unit; ++unit) describe_unit(static_cast<int>(unit));
}

void forget_unit_dump() {
  unit_dump = {};
}

}  // namespace m_files
