#include <array>
#include <cstddef>
#include <string>

#include "SCRENIX/SCRENIX.h"
#include "SCRENIX/framing.h"
#include "runtime/fixed_text.h"
#include "runtime/stop.h"

namespace SCRENIX {
namespace {

// In the order of `Property`.
constexpr std::array<std::string_view, 29> property_names = {
    "title",        "text",        "tooltip",     "stat",
    "value",        "list_box",    "edit",        "proc",
    "custom",       "integer_max", "integer_min", "integer_increment",
    "real_value",   "real_max",    "real_min",    "real_increment",
    "double_value", "double_max",  "double_min",  "double_increment",
    "format",       "back_brush",  "text_color",  "icon",
    "bitmap",       "dialog",      "accelerator", "options",
    "drop_down"};
static_assert(property_names.size() == static_cast<std::size_t>(Property::drop_down) + 1);

std::string_view word(DialogMode mode) {
  return mode == DialogMode::modal ? "modal" : "modeless";
}

std::string_view word(ItemAction action) {
  constexpr std::array<std::string_view, 3> words = {"set", "append", "insert"};
  return words[static_cast<std::size_t>(action)];
}

std::string key_of(std::string_view object, std::int32_t number) {
  return std::string(object) + "_" + std::to_string(number) + "_";
}

// Ends the program, before anything is sent, when a property is not the one that the operation offers.
template <class Given>
void require_offered(std::string_view operation, Property offered, std::initializer_list<Given> properties) {
  for (const Given& given : properties) {
    if (given.property == offered) continue;
    const std::string_view property = property_names[static_cast<std::size_t>(given.property)];
    runtime::stop(std::string(operation).append(" ").append(property).append(" not implemented"));
  }
}

void write_item_text(std::int32_t item, ItemAction action, std::string_view text) {
  write_record(key_of("dialogitem", item).append(word(action)).append("text"), text);
}

std::string joined_lines(std::span<const std::string_view> lines) {
  std::string text;
  std::string_view line_end;
  for (const std::string_view line : lines) {
    text.append(line_end).append(runtime::trimmed(line));
    line_end = "\r\n";
  }
  return text;
}

}  // namespace

void dialog_box(std::int32_t dialog, DialogMode mode, std::initializer_list<PropertyText> properties) {
  require_offered("dialog_box", Property::title, properties);
  const std::string key = key_of("dialogbox", dialog);
  write_record(key + "setmode", word(mode));
  for (const PropertyText& title : properties) write_record(key + "settitle", title.text);
}

void update_dialog_item_s(std::int32_t item, ItemAction action,
                          std::initializer_list<PropertyText> properties) {
  require_offered("update_dialog_item_s()", Property::text, properties);
  for (const PropertyText& given : properties) write_item_text(item, action, given.text);
}

void update_dialog_item_a(std::int32_t item, ItemAction action,
                          std::initializer_list<PropertyLines> properties) {
  require_offered("update_dialog_item_a()", Property::text, properties);
  for (const PropertyLines& given : properties) write_item_text(item, action, joined_lines(given.lines));
}

void set_dialog_item(std::int32_t item, ItemAction action, std::initializer_list<PropertyText> properties) {
  require_offered("set_dialog_item()", Property::text, properties);
  for (const PropertyText& given : properties) write_item_text(item, action, given.text);
}

void set_menu_item(std::int32_t item, std::initializer_list<PropertyText> properties) {
  require_offered("set_menu_item", Property::tooltip, properties);
  for (const PropertyText& tooltip : properties) {
    write_record(key_of("menuitem", item) + "settooltip", tooltip.text);
  }
}

}  // namespace SCRENIX
