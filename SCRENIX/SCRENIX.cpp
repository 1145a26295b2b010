#include "SCRENIX/SCRENIX.h"

#include <string>

#include "SCRENIX/framing.h"
#include "runtime/fixed_text.h"
#include "runtime/format.h"
#include "runtime/stop.h"
#include "runtime/units.h"
#include "runtime/write.h"

namespace SCRENIX {

int output_unit = runtime::standard_output_unit;

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

void write_record(std::string_view key, std::string_view value) {
  record_start();
  runtime::write_text(output_unit, key);
  record_separator();
  runtime::write_text(output_unit, runtime::trimmed(value));
  record_end();
}

std::int32_t set_main_window_title(std::string_view title) {
  write_record("mainwindow_setTitle", title);
  return 0;
}

void set_variant_path(std::string_view path) {
  write_record("varpath", path);
}

void set_status_item_text(std::int32_t /*window*/, std::int32_t item, std::string_view text) {
  write_record("MWstatusItem_" + std::to_string(item) + "_setText", text);
}

std::int32_t low_nine_bits_signed(std::int32_t value) {
  constexpr std::uint32_t sign_bit = 0x100U;
  constexpr std::uint32_t low_nine_bits = 0x1FFU;
  const auto bits = static_cast<std::uint32_t>(value);
  const bool negative = (bits & sign_bit) != 0;
  return static_cast<std::int32_t>(negative ? bits | ~low_nine_bits : bits & low_nine_bits);
}

std::int32_t current_window_handle() {
  return 1;
}

std::int32_t focused_item() {
  return 0;
}

std::int32_t pressed_button() {
  return 0;
}

std::int32_t pending_event() {
  return 0;
}

void set_item_action(std::int32_t /*item*/, ItemCallback /*action*/) {}

void remove_dialog_box(std::int32_t /*dialog*/) {}

void process_events() {}

void screnix_error(std::string_view message) {
  runtime::write<"(1x,a)">(runtime::standard_output_unit, message);
  runtime::stop("screnix_error() not implemented");
}

void screnix_error1(std::int32_t number, std::string_view message) {
  runtime::write<"(1x,i11,1x,a)">(runtime::standard_output_unit, number, message);
  runtime::stop("screnix_error1() not implemented");
}

void screnix_error2(std::string_view message) {
  runtime::write<"(1x,a)">(runtime::standard_output_unit, message);
  runtime::stop("screnix_error2() not implemented");
}

}  // namespace SCRENIX
