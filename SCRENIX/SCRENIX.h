#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>

#include "SCRENIX/not_implemented.h"

/// The window library of the suite, as far as a build without a window system can offer it. Message boxes,
/// titles and texts go to standard output as framed records for a separate front-end; its answers are not
/// read. Handles are numbers that the caller chooses. What cannot be offered ends the program with a "not
/// implemented" text on standard error and exit status 0, and the rest does nothing.
///
/// A record is the byte 0x01, a key, the byte 0x02, a value without trailing blanks and the byte 0x03,
/// without a line end; it is handed over at once. Whether the front-end is still there is not checked.
namespace SCRENIX {

/// The unit that the records go to; standard output at the start.
extern int output_unit;

/// Begins a record: the byte 0x01.
void record_start();
/// Separates its key from its value: the byte 0x02.
void record_separator();
/// Ends it, the byte 0x03, and hands it to the front-end.
void record_end();

/// Answers of a message box.
inline constexpr std::int32_t answer_yes = 6;
inline constexpr std::int32_t answer_no = 7;

/// Shows a message box: two records, the title and the text, both without trailing blanks, under the key
/// "messagebox_button_" with the button code (0 when absent). No reply is read: always `answer_no`.
std::int32_t message_box(std::string_view title, std::string_view text,
                         std::optional<std::int32_t> button_code = std::nullopt);

/// One entry of a file chooser's filter list: a description and its patterns, divided by semicolons.
struct FileFilter {
  std::string_view description;
  std::string_view patterns;
};

/// The file chooser: would put the path into `chosen_name`, padded with blanks, and return whether a file was
/// chosen. This build has none: ends the program with its "not implemented" text.
bool get_open_file_name(std::string_view title, std::span<const FileFilter> filters,
                        std::span<char> chosen_name);

/// Sends the title of the main window. Always 0.
std::int32_t set_main_window_title(std::string_view title);
/// Sends the path of the variant in work.
void set_variant_path(std::string_view path);
/// Sends the text of an item of the main window's status line; the window is not looked at.
void set_status_item_text(std::int32_t window, std::int32_t item, std::string_view text);

/// The sum of exactly `Count` flags, such as button codes; beyond 32 bits it wraps around.
template <std::size_t Count>
struct AddFlags {
  template <std::same_as<std::int32_t>... Flags>
  requires(sizeof...(Flags) == Count) constexpr std::int32_t operator()(Flags... flags) const {
    return static_cast<std::int32_t>((static_cast<std::uint32_t>(flags) + ...));
  }
};
inline constexpr AddFlags<2> add_flags_2;
inline constexpr AddFlags<3> add_flags_3;
inline constexpr AddFlags<4> add_flags_4;
inline constexpr AddFlags<5> add_flags_5;
inline constexpr AddFlags<6> add_flags_6;
inline constexpr AddFlags<7> add_flags_7;
inline constexpr AddFlags<8> add_flags_8;
inline constexpr AddFlags<9> add_flags_9;
inline constexpr AddFlags<10> add_flags_10;

/// The low nine bits of the value read as a two's complement number, -256 .. 255.
std::int32_t low_nine_bits_signed(std::int32_t value);

/// The handle of the window in front: always 1.
std::int32_t current_window_handle();
/// Queries about a window; without one always 0.
std::int32_t focused_item();
std::int32_t pressed_button();
std::int32_t pending_event();

/// What a dialog, a dialog item or a menu item can be given. Each operation below says which one it offers;
/// with any other it ends the program: its own name, the property's name and "not implemented".
enum class Property : std::uint8_t {
  title,
  text,
  tooltip,
  stat,
  value,
  list_box,
  edit,
  proc,
  custom,
  integer_max,
  integer_min,
  integer_increment,
  real_value,
  real_max,
  real_min,
  real_increment,
  double_value,
  double_max,
  double_min,
  double_increment,
  format,
  back_brush,
  text_color,
  icon,
  bitmap,
  dialog,
  accelerator,
  options,
  drop_down
};

struct PropertyText {
  Property property;
  std::string_view text;
};
struct PropertyLines {
  Property property;
  std::span<const std::string_view> lines;
};

/// Whether a dialog holds up its caller until it is closed.
enum class DialogMode : std::uint8_t { modal, modeless };
/// What is done with an item's text.
enum class ItemAction : std::uint8_t { set, append, insert };

/// Shows a dialog. Offers `title`. Records: "dialogbox_<dialog>_setmode" with the value "modal" or
/// "modeless", then "dialogbox_<dialog>_settitle".
void dialog_box(std::int32_t dialog, DialogMode mode, std::initializer_list<PropertyText> properties);
/// Changes an item of a shown dialog. Offers `text`. Record: "dialogitem_<item>_settext", "_appendtext" or
/// "_inserttext".
void update_dialog_item_s(std::int32_t item, ItemAction action,
                          std::initializer_list<PropertyText> properties);
/// The same with a text of several lines, sent in one record: each without trailing blanks, CR LF between
/// them.
void update_dialog_item_a(std::int32_t item, ItemAction action,
                          std::initializer_list<PropertyLines> properties);
/// Prepares an item of a dialog before it is shown. Offers `text`, with the record of
/// `update_dialog_item_s`.
void set_dialog_item(std::int32_t item, ItemAction action, std::initializer_list<PropertyText> properties);
/// Changes an item of a menu. Offers `tooltip`. Record: "menuitem_<item>_settooltip".
void set_menu_item(std::int32_t item, std::initializer_list<PropertyText> properties);

/// What a dialog item calls when it is used.
using ItemCallback = std::int32_t (*)();
/// Would connect an item of a dialog with what it calls. Does nothing.
void set_item_action(std::int32_t item, ItemCallback action);
/// Would close a dialog. Does nothing.
void remove_dialog_box(std::int32_t dialog);
/// Would let the windows react to the user. Does nothing.
void process_events();

/// Errors of the library itself: they put the message, with its number in front, on standard output as a
/// line, and end the program with their "not implemented" text. The line is list-directed: a blank before
/// each value, the number right-justified in 11 columns, the message as long as it is.
[[noreturn]] void screnix_error(std::string_view message);
[[noreturn]] void screnix_error1(std::int32_t number, std::string_view message);
[[noreturn]] void screnix_error2(std::string_view message);

}  // namespace SCRENIX
