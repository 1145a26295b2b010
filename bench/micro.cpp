#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "m_System/companion_file.h"
#include "m_System/filled_tables.h"
#include "m_System/m_System.h"
#include "m_System/name_index.h"
#include "runtime/edit_input.h"
#include "runtime/edit_output.h"
#include "runtime/read.h"
#include "runtime/units.h"

// The steps that a run repeats for every line: each alone, in time per line, number or name.

namespace {

constexpr int unit = 100;

// A file in the folder for temporary files; gone with the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& text)
      : path_(std::filesystem::temp_directory_path() /
              ("kv_micro_" + std::to_string(std::random_device{}()))) {
    std::ofstream(path_, std::ios::binary) << text;
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { std::filesystem::remove(path_); }
  [[nodiscard]] std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

std::string element_name(std::int32_t number) {
  constexpr std::string_view digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  std::string name = "N0000";
  for (std::size_t place = 4; place > 0; --place, number /= 36) {
    name[place] = digits[static_cast<std::size_t>(number % 36)];
  }
  return name;
}

std::string area_line(std::int32_t number) {
  return "   " + element_name(number) + "  1.250  0.4\n";
}

void fill_system(std::int32_t count) {
  m_System::reset();
  m_System::filled_tables.total_count = count;
  m_System::AllocateSystemTables();
  for (std::int32_t i = 1; i <= count; ++i) m_System::filled_tables.name.at(i) = element_name(i);
}

void cut_records(benchmark::State& state, std::string_view line_end) {
  constexpr std::int64_t lines = 100'000;
  std::string text;
  for (std::int64_t i = 0; i < lines; ++i) text.append(70, 'x').append(line_end);
  const TemporaryFile file(text);
  runtime::open(unit, file.path(), runtime::OpenStatus::old);
  while (state.KeepRunning()) {
    runtime::rewind(unit);
    std::string_view line;
    for (runtime::LineReader reader(unit, 100); reader.next(line);) benchmark::DoNotOptimize(line);
  }
  runtime::close(unit);
  state.SetItemsProcessed(state.iterations() * lines);
}
BENCHMARK_CAPTURE(cut_records, lf, "\n");
BENCHMARK_CAPTURE(cut_records, crlf, "\r\n");
BENCHMARK_CAPTURE(cut_records, cr, "\r");

void edit_in(benchmark::State& state, std::string_view field) {
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(field);
    benchmark::DoNotOptimize(runtime::edit_single(field));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(edit_in, area, "1.250");
BENCHMARK_CAPTURE(edit_in, exponent, "125e9");
BENCHMARK_CAPTURE(edit_in, far_exponent, "1e-30");
BENCHMARK_CAPTURE(edit_in, blank, "     ");

void edit_out_fixed(benchmark::State& state, double value) {
  const runtime::Value field(value);
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(runtime::formatted(runtime::format<"(f10.3)">, {&field, 1}));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(edit_out_fixed, area, 1234.5);
BENCHMARK_CAPTURE(edit_out_fixed, zero, 0.0);
BENCHMARK_CAPTURE(edit_out_fixed, too_wide, 1.0E20);

void edit_out_listing_line(benchmark::State& state) {
  const auto& layout = runtime::format<"(6(a,1x),6i4)">;
  while (state.KeepRunning()) {
    const std::array<runtime::Value, 12> values = {"T0010", "N0010", "K0010", "     ", "T0020", "     ",
                                                   3,       1,       2,       0,       4,       0};
    benchmark::DoNotOptimize(runtime::formatted(layout, values));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(edit_out_listing_line);

void index_names(benchmark::State& state) {
  fill_system(static_cast<std::int32_t>(state.range(0)));
  while (state.KeepRunning()) benchmark::DoNotOptimize(m_System::index_names(m_System::system_logic));
  state.SetItemsProcessed(state.iterations() * state.range(0));
  m_System::reset();
}
BENCHMARK(index_names)->Arg(1'000)->Arg(100'000)->Arg(1'000'000);

void find_name(benchmark::State& state) {
  const auto count = static_cast<std::int32_t>(state.range(0));
  fill_system(count);
  const m_System::NameIndex index = m_System::index_names(m_System::system_logic);
  constexpr std::int32_t stride = 7919;
  std::int32_t i = 0;
  while (state.KeepRunning()) {
    i = (i + stride) % count;
    benchmark::DoNotOptimize(m_System::last_of_name(index, m_System::system_logic.name.at(i + 1)));
  }
  state.SetItemsProcessed(state.iterations());
  m_System::reset();
}
BENCHMARK(find_name)->Arg(1'000)->Arg(100'000)->Arg(1'000'000);

void find_lines(benchmark::State& state, bool reversed) {
  const auto count = static_cast<std::int32_t>(state.range(0));
  fill_system(count);
  std::string text;
  for (std::int32_t i = 1; i <= count; ++i) text += area_line(reversed ? count + 1 - i : i);
  const TemporaryFile file(text);
  const m_System::CompanionKind areas{
      .extension = "", .type = 'N', .numbered_with = 'N', .allocate = nullptr, .read = nullptr};
  while (state.KeepRunning()) {
    m_System::CompanionFile lines(file.path(), areas);
    lines.open();
    for (std::int32_t i = 1; i <= count; ++i) benchmark::DoNotOptimize(lines.find(i));
    lines.close();
  }
  state.SetItemsProcessed(state.iterations() * count);
  m_System::reset();
}
BENCHMARK_CAPTURE(find_lines, system_order, false)->Arg(1'000)->Arg(100'000);
BENCHMARK_CAPTURE(find_lines, reversed, true)->Arg(1'000)->Arg(100'000);

}  // namespace

BENCHMARK_MAIN();
