#include "SCRENIX.h"

#include <string>

#include "fixed_text.h"
#include "units.h"

namespace SCRENIX {
namespace {

int output_unit = runtime::standard_output_unit;

void write_record(std::string_view key, std::string_view value) {
  record_start();
  runtime::write_text(output_unit, key);
  record_separator();
  runtime::write_text(output_unit, runtime::trimmed(value));
  record_end();
}

}  // namespace

void record_start() {
  runtime::write_text(output_unit, "\x01");
}

void record_separator() {
  runtime::write_text(output_unit, "\x02");
}

void record_end() {
  runtime::write_text(output_unit, "\x03");
  runtime::flush(output_unit);
}

std::int32_t message_box(std::string_view title, std::string_view text,
                         std::optional<std::int32_t> button_code) {
  const std::string key = "messagebox_button_" + std::to_string(button_code.value_or(0));
  write_record(key + "_settitle", title);
  write_record(key, text);
  return answer_no;
}

}  // namespace SCRENIX
