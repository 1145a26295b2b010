// "fehlercode.ex": the suppression list of the dispatcher, held against a plain joining of its lines.

#include <algorithm>
#include <array>

#include "fuzz/fuzz_bed.h"
#include "m_WLM_error/m_WLM_error.h"
#include "tests/variant_files.h"

namespace {

constexpr std::size_t line_width = 100;
constexpr std::size_t list_width = 1000;
constexpr std::array<std::string_view, 14> codes = {"Y01", "Y04", "Y12",  "Y21",        "W01", "W03", "A00",
                                                    "A03", "F02", "Ver1", "ErrorLevel", "Whr", "Z 1", "Y99"};

void append_record(std::string& list, std::string_view record) {
  list.resize(list.find_last_not_of(' ') + 1);
  list += record.substr(0, line_width);
  list.append(line_width - std::min(record.size(), line_width), ' ');
  list.resize(list_width, ' ');
}

std::string joined_list(std::string_view file) {
  std::string list(list_width, ' ');
  while (!file.empty()) {
    const std::size_t end = std::min(file.find_first_of("\r\n"), file.size());
    append_record(list, file.substr(0, end));
    file.remove_prefix(end);
    if (!file.empty()) file.remove_prefix(file.starts_with("\r\n") ? 2 : 1);
  }
  return list;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view file = fuzz_bed::text_of(bytes, size);
  fuzz_bed::Bed bed;
  bed.put("fehlercode.ex", file);
  variant_files::start_protocol();
  const std::string list = joined_list(file);
  std::int32_t highest = 0;
  for (const std::string_view code : codes) {
    const bool suppressed = list.find(code) != std::string::npos;
    const std::int32_t level = m_WLM_error::MessageDispatcher(code, {.text1 = "T0010", .int1 = highest});
    if (suppressed) {
      fuzz_bed::require(level == 0, "a suppressed code returns 0");
    } else {
      fuzz_bed::require(level >= highest, "a message never lowers the level");
      highest = level;
    }
  }
  return 0;
}
