#pragma once

#include <cstdint>
#include <string_view>

#include "runtime/stop.h"

// The operations of the window library that a build without a window system does not offer.

namespace SCRENIX {

/// An operation that is not offered: called with whatever its caller has for it, it ends the program with its
/// text on standard error and exit status 0. The result type only lets it stand where a number is expected.
struct NotImplemented {
  std::string_view stop_text;

  template <class... Arguments>
  [[noreturn]] std::int32_t operator()(const Arguments&... /*not looked at*/) const {
    runtime::stop(stop_text);
  }
};

inline constexpr NotImplemented point_in_rect{"point_in_rect() not implemented"};
inline constexpr NotImplemented julian_day{"julian_day() not implemented"};
inline constexpr NotImplemented day_difference{"day_difference() not implemented"};
inline constexpr NotImplemented post_command{"post_command() not implemented"};
inline constexpr NotImplemented screnix_knows_command{"screnix_knows_command() not implemented"};

inline constexpr NotImplemented bit_is_set{"SCRENIX bit_is_set not implemented"};
inline constexpr NotImplemented delete_files{"SCRENIX delete_files not implemented"};
inline constexpr NotImplemented array_i4_to_bitmap{"SCRENIX array_i4_to_bitmap not implemented"};
inline constexpr NotImplemented array_i2_to_bitmap{"SCRENIX array_i2_to_bitmap not implemented"};
inline constexpr NotImplemented array_i1_to_bitmap{"SCRENIX array_i1_to_bitmap not implemented"};
inline constexpr NotImplemented get_default_back_brush{"SCRENIX get_default_back_brush not implemented"};
inline constexpr NotImplemented rgb{"SCRENIX rgb not implemented"};
inline constexpr NotImplemented color_out{"SCRENIX color_out not implemented"};
inline constexpr NotImplemented get_save_file_name{"SCRENIX get_save_file_name not implemented"};
inline constexpr NotImplemented start_print{"SCRENIX start_print not implemented"};
inline constexpr NotImplemented define_box{"SCRENIX define_box not implemented"};
inline constexpr NotImplemented left_integer_text{"SCRENIX left_integer_text not implemented"};
inline constexpr NotImplemented loword{"SCRENIX loword not implemented"};
inline constexpr NotImplemented hiword{"SCRENIX hiword not implemented"};
inline constexpr NotImplemented save_dialog{"SCRENIX save_dialog not implemented"};
inline constexpr NotImplemented dialog_one_item{"SCRENIX dialog_one_item not implemented"};
inline constexpr NotImplemented get_dialog_text{"SCRENIX get_dialog_text not implemented"};
inline constexpr NotImplemented get_dialog_double{"SCRENIX get_dialog_double not implemented"};
inline constexpr NotImplemented get_dialog_real{"SCRENIX get_dialog_real not implemented"};
inline constexpr NotImplemented get_dialog_integer{"SCRENIX get_dialog_integer not implemented"};
inline constexpr NotImplemented create_menu{"SCRENIX create_menu not implemented"};
inline constexpr NotImplemented pop_up_menu{"SCRENIX pop_up_menu not implemented"};
inline constexpr NotImplemented create_window{"SCRENIX create_window not implemented"};
inline constexpr NotImplemented get_system_metrics{"SCRENIX get_system_metrics not implemented"};
inline constexpr NotImplemented get_device_caps{"SCRENIX get_device_caps not implemented"};
inline constexpr NotImplemented set_win_help{"SCRENIX set_win_help not implemented"};
inline constexpr NotImplemented start_win_help{"SCRENIX start_win_help not implemented"};
inline constexpr NotImplemented delete_file{"SCRENIX delete_file not implemented"};
inline constexpr NotImplemented rename_file{"SCRENIX rename_file not implemented"};
inline constexpr NotImplemented copy_file{"SCRENIX copy_file not implemented"};
inline constexpr NotImplemented page_setup_dialog{"SCRENIX page_setup_dialog not implemented"};
inline constexpr NotImplemented rw_read_metafile{"SCRENIX rw_read_metafile not implemented"};
inline constexpr NotImplemented delete_metafile{"SCRENIX delete_metafile not implemented"};
inline constexpr NotImplemented load_font{"SCRENIX load_font not implemented"};
inline constexpr NotImplemented get_bitmap_palette{"SCRENIX get_bitmap_palette not implemented"};
inline constexpr NotImplemented save_dib{"SCRENIX save_dib not implemented"};
inline constexpr NotImplemented dib_to_bitmap{"SCRENIX dib_to_bitmap not implemented"};
inline constexpr NotImplemented bitmap_to_dib{"SCRENIX bitmap_to_dib not implemented"};
inline constexpr NotImplemented create_bitmap{"SCRENIX create_bitmap not implemented"};
inline constexpr NotImplemented load_bitmap{"SCRENIX load_bitmap not implemented"};
inline constexpr NotImplemented get_rop{"SCRENIX get_rop not implemented"};
inline constexpr NotImplemented get_file_section{"SCRENIX get_file_section not implemented"};
inline constexpr NotImplemented get_volume_info{"SCRENIX get_volume_info not implemented"};
inline constexpr NotImplemented choose_font{"SCRENIX choose_font not implemented"};
inline constexpr NotImplemented choose_color{"SCRENIX choose_color not implemented"};
inline constexpr NotImplemented rw_open_file{"SCRENIX rw_open_file not implemented"};
inline constexpr NotImplemented send_message{"SCRENIX send_message not implemented"};
inline constexpr NotImplemented get_key_state{"SCRENIX get_key_state not implemented"};
inline constexpr NotImplemented get_main_hwnd{"SCRENIX get_main_hwnd not implemented"};
inline constexpr NotImplemented get_windows_instance{"SCRENIX get_windows_instance not implemented"};
inline constexpr NotImplemented get_parent{"SCRENIX get_parent not implemented"};
inline constexpr NotImplemented get_dialog_item_window{"SCRENIX get_dialog_item_window not implemented"};
inline constexpr NotImplemented menu_exists{"SCRENIX menu_exists not implemented"};
inline constexpr NotImplemented box_exists{"SCRENIX box_exists not implemented"};
inline constexpr NotImplemented window_exists{"SCRENIX window_exists not implemented"};

inline constexpr NotImplemented y_millimeters_to_pixel{"SCRENIX y_millimeters_to_pixel is not implemented"};
inline constexpr NotImplemented x_millimeters_to_pixel{"SCRENIX x_millimeters_to_pixel is not implemented"};
inline constexpr NotImplemented y_pixel_to_millimeters{"SCRENIX y_pixel_to_millimeters is not implemented"};
inline constexpr NotImplemented x_pixel_to_millimeters{"SCRENIX x_pixel_to_millimeters is not implemented"};
inline constexpr NotImplemented y_inches_to_pixel{"SCRENIX y_inches_to_pixel is not implemented"};
inline constexpr NotImplemented x_inches_to_pixel{"SCRENIX x_inches_to_pixel is not implemented"};
inline constexpr NotImplemented y_pixel_to_inches{"SCRENIX y_pixel_to_inches is not implemented"};
inline constexpr NotImplemented x_pixel_to_inches{"SCRENIX x_pixel_to_inches is not implemented"};
inline constexpr NotImplemented y_portion_to_pixel{"SCRENIX y_portion_to_pixel is not implemented"};
inline constexpr NotImplemented x_portion_to_pixel{"SCRENIX x_portion_to_pixel is not implemented"};
inline constexpr NotImplemented y_pixel_to_portion{"SCRENIX y_pixel_to_portion is not implemented"};
// Without the blank: the front-ends know this text as it is.
inline constexpr NotImplemented x_pixel_to_portion{"SCRENIX x_pixel_to_portionis not implemented"};

}  // namespace SCRENIX
