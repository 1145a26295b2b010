#include <string>

#include "SCRENIX/SCRENIX.h"
#include "SCRENIX/framing.h"

namespace SCRENIX {

std::int32_t message_box(std::string_view title, std::string_view text,
                         std::optional<std::int32_t> button_code) {
  const std::string key = "messagebox_button_" + std::to_string(button_code.value_or(0));
  write_record(key + "_settitle", title);
  write_record(key, text);
  return answer_no;
}

}  // namespace SCRENIX
