#include "SCRENIX/SCRENIX.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/units.h"
#include "runtime/write.h"
#include "tests/child.h"
#include "tests/notices.h"
#include "tests/test_files.h"

namespace SCRENIX {
namespace {

using namespace std::literals;
using notices::sent_by;

TEST(Frames, AreSingleBytesWithoutALineEnd) {
  EXPECT_EQ(sent_by([] {
              record_start();
              record_separator();
              record_end();
            }),
            "\x01\x02\x03");
}

TEST(Frames, GoToTheOutputUnit) {
  EXPECT_EQ(output_unit, 6);
  const test_files::TemporaryFolder folder;
  const std::string path = folder.file("records");
  runtime::open(77, path, runtime::OpenStatus::unknown);
  output_unit = 77;
  EXPECT_EQ(sent_by([] { set_variant_path("V"); }), "");
  EXPECT_EQ(test_files::read_bytes(path), "\x01varpath\x02V\x03");
  output_unit = 6;
  runtime::close(77, runtime::CloseStatus::remove);
  EXPECT_EQ(sent_by([] { set_variant_path("V"); }), "\x01varpath\x02V\x03");
}

TEST(Frames, PassOverAFrontEndThatHasGoneAway) {
  const child::Outcome outcome = child::run([] {
    close(STDOUT_FILENO);
    set_variant_path("V");
  });
  EXPECT_EQ(outcome.exit_status, child::came_back);
  EXPECT_EQ(outcome.err, "E/A-Fehler beim Schreiben von \"Standardausgabe\": Bad file descriptor\n");
}

TEST(MessageBox, SendsTitleAndTextUnderTheButtonCode) {
  EXPECT_EQ(sent_by([] { message_box("Frage?", "Weiter?", 260); }),
            "\x01messagebox_button_260_settitle\x02"
            "Frage?\x03\x01messagebox_button_260\x02Weiter?\x03");
}

TEST(MessageBox, WritesZeroForAnAbsentCode) {
  const std::string_view expected =
      "\x01messagebox_button_0_settitle\x02T\x03\x01messagebox_button_0\x02X\x03";
  EXPECT_EQ(sent_by([] { message_box("T", "X"); }), expected);
  EXPECT_EQ(sent_by([] { message_box("T", "X", 0); }), expected);
}

TEST(MessageBox, DropsTrailingBlanksOnly) {
  EXPECT_EQ(sent_by([] { message_box("  T  t   ", " \t ", 4); }),
            "\x01messagebox_button_4_settitle\x02  T  t\x03\x01messagebox_button_4\x02 \t\x03");
}

TEST(MessageBox, SendsBlanksAsAnEmptyValue) {
  const std::string_view expected = "\x01messagebox_button_0_settitle\x02\x03\x01messagebox_button_0\x02\x03";
  EXPECT_EQ(sent_by([] { message_box("    ", " "); }), expected);
  EXPECT_EQ(sent_by([] { message_box("", ""); }), expected);
}

TEST(MessageBox, LetsEveryOtherByteThrough) {
  EXPECT_EQ(sent_by([] { message_box("\xFC", "a\r\nb\0c\x03"sv); }),
            "\x01messagebox_button_0_settitle\x02\xFC\x03\x01messagebox_button_0\x02"
            "a\r\nb\0c\x03\x03"s);
}

TEST(MessageBox, AlwaysAnswersNo) {
  std::int32_t answer = 0;
  sent_by([&] { answer = message_box("T", "X", 4); });
  EXPECT_EQ(answer, 7);
}

TEST(MainWindow, SendsItsTitleAndReturnsZero) {
  std::int32_t result = -1;
  EXPECT_EQ(sent_by([&] { result = set_main_window_title("KARVOS  "); }),
            "\x01mainwindow_setTitle\x02KARVOS\x03");
  EXPECT_EQ(result, 0);
}

TEST(MainWindow, SendsThePathOfTheVariant) {
  EXPECT_EQ(sent_by([] { set_variant_path("data\\var1   "); }),
            "\x01varpath\x02"
            "data\\var1\x03");
}

TEST(MainWindow, SendsAStatusItemUnderItsNumber) {
  EXPECT_EQ(sent_by([] { set_status_item_text(9, 12, "liest  "); }),
            "\x01MWstatusItem_12_setText\x02liest\x03");
}

TEST(AddFlags, SumsTwoToTenFlags) {
  EXPECT_EQ(add_flags_2(4, 256), 260);
  EXPECT_EQ(add_flags_3(1, 2, 4), 7);
  EXPECT_EQ(add_flags_4(1, 2, 4, 8), 15);
  EXPECT_EQ(add_flags_5(1, 2, 4, 8, 16), 31);
  EXPECT_EQ(add_flags_6(1, 2, 4, 8, 16, 32), 63);
  EXPECT_EQ(add_flags_7(1, 2, 4, 8, 16, 32, 64), 127);
  EXPECT_EQ(add_flags_8(1, 2, 4, 8, 16, 32, 64, 128), 255);
  EXPECT_EQ(add_flags_9(1, 2, 4, 8, 16, 32, 64, 128, 256), 511);
  EXPECT_EQ(add_flags_10(1, 2, 4, 8, 16, 32, 64, 128, 256, 512), 1023);
}

TEST(AddFlags, AddsArithmetically) {
  EXPECT_EQ(add_flags_2(4, 4), 8);
  EXPECT_EQ(add_flags_3(5, -7, 1), -1);
}

TEST(AddFlags, WrapsAround) {
  constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(add_flags_2(greatest, 1), least);
  EXPECT_EQ(add_flags_3(least, -1, 0), greatest);
}

TEST(LowNineBits, KeepTheSignOfBitEight) {
  EXPECT_EQ(low_nine_bits_signed(256), -256);
  EXPECT_EQ(low_nine_bits_signed(255), 255);
  EXPECT_EQ(low_nine_bits_signed(1000), -24);
  EXPECT_EQ(low_nine_bits_signed(512), 0);
  EXPECT_EQ(low_nine_bits_signed(0), 0);
  EXPECT_EQ(low_nine_bits_signed(-1), -1);
  EXPECT_EQ(low_nine_bits_signed(std::numeric_limits<std::int32_t>::min()), 0);
  EXPECT_EQ(low_nine_bits_signed(std::numeric_limits<std::int32_t>::max()), -1);
}

TEST(Queries, HaveFixedAnswersAndSendNothing) {
  EXPECT_EQ(sent_by([] {
              EXPECT_EQ(current_window_handle(), 1);
              EXPECT_EQ(focused_item(), 0);
              EXPECT_EQ(pressed_button(), 0);
              EXPECT_EQ(pending_event(), 0);
            }),
            "");
}

TEST(EmptyEntries, SendNothingAndCallNothing) {
  EXPECT_EQ(sent_by([] {
              set_item_action(1, []() -> std::int32_t {
                ADD_FAILURE();
                return 0;
              });
              process_events();
              remove_dialog_box(1);
            }),
            "");
}

TEST(DialogBox, SendsItsModeAndTitle) {
  EXPECT_EQ(sent_by([] {
              dialog_box(3, DialogMode::modal, {{Property::title, "Status  "}});
            }),
            "\x01"
            "dialogbox_3_setmode\x02modal\x03\x01"
            "dialogbox_3_settitle\x02Status\x03");
  EXPECT_EQ(sent_by([] { dialog_box(12, DialogMode::modeless, {}); }),
            "\x01"
            "dialogbox_12_setmode\x02modeless\x03");
}

TEST(DialogItem, SendsItsTextUnderTheAction) {
  EXPECT_EQ(sent_by([] {
              update_dialog_item_s(13, ItemAction::set, {{Property::text, "a "}});
            }),
            "\x01"
            "dialogitem_13_settext\x02"
            "a\x03");
  EXPECT_EQ(sent_by([] {
              update_dialog_item_s(13, ItemAction::append, {{Property::text, "b"}});
            }),
            "\x01"
            "dialogitem_13_appendtext\x02"
            "b\x03");
  EXPECT_EQ(sent_by([] {
              set_dialog_item(7, ItemAction::insert, {{Property::text, "c"}});
            }),
            "\x01"
            "dialogitem_7_inserttext\x02"
            "c\x03");
}

TEST(DialogItem, SendsLinesInOneRecord) {
  static constexpr std::array<std::string_view, 4> lines = {"", "a  ", "", "b "};
  EXPECT_EQ(sent_by([] {
              update_dialog_item_a(13, ItemAction::append, {{Property::text, lines}});
            }),
            "\x01"
            "dialogitem_13_appendtext\x02\r\na\r\n\r\nb\x03");
  EXPECT_EQ(sent_by([] {
              update_dialog_item_a(13, ItemAction::set, {{Property::text, {}}});
            }),
            "\x01"
            "dialogitem_13_settext\x02\x03");
}

TEST(MenuItem, SendsItsTooltip) {
  EXPECT_EQ(sent_by([] {
              set_menu_item(5, {{Property::tooltip, "Hilfe "}});
            }),
            "\x01menuitem_5_settooltip\x02Hilfe\x03");
}

TEST(ScrenixError, PutsTheMessageOnStandardOutputFirst) {
  EXPECT_EQ(child::run([] { screnix_error("Fenster fehlt  "); }).out, " Fenster fehlt  \n");
  EXPECT_EQ(child::run([] { screnix_error1(42, "Fenster fehlt"); }).out, "          42 Fenster fehlt\n");
  EXPECT_EQ(child::run([] { screnix_error1(std::numeric_limits<std::int32_t>::min(), ""); }).out,
            " -2147483648 \n");
  EXPECT_EQ(child::run([] { screnix_error2(""); }).out, " \n");
}

TEST(ScrenixError, KeepsToStandardOutputWhenRecordsGoElsewhere) {
  const child::Outcome outcome = child::run([] {
    output_unit = 77;
    screnix_error("x");
  });
  EXPECT_EQ(outcome.out, " x\n");
  EXPECT_EQ(outcome.err, "STOP screnix_error() not implemented\n");
}

struct Stop {
  std::function<void()> call;
  std::string_view text;
};

std::function<void()> box(Property property) {
  return [property] { dialog_box(1, DialogMode::modal, {{Property::title, "T"}, {property, "x"}}); };
}
std::function<void()> menu(Property property) {
  return [property] { set_menu_item(1, {{Property::tooltip, "T"}, {property, "x"}}); };
}
std::function<void()> item_s(Property property) {
  return [property] { update_dialog_item_s(1, ItemAction::set, {{Property::text, "T"}, {property, "x"}}); };
}
std::function<void()> item_a(Property property) {
  return [property] { update_dialog_item_a(1, ItemAction::set, {{Property::text, {}}, {property, {}}}); };
}
std::function<void()> item(Property property) {
  return [property] { set_dialog_item(1, ItemAction::set, {{Property::text, "T"}, {property, "x"}}); };
}

// Every entry that ends the program, with the text that it leaves.
const std::vector<Stop>& stops() {
  static const std::vector<Stop> all = {
      {point_in_rect, "point_in_rect() not implemented"},
      {julian_day, "julian_day() not implemented"},
      {day_difference, "day_difference() not implemented"},
      {post_command, "post_command() not implemented"},
      {screnix_knows_command, "screnix_knows_command() not implemented"},
      {[] { screnix_error("x"); }, "screnix_error() not implemented"},
      {[] { screnix_error1(1, "x"); }, "screnix_error1() not implemented"},
      {[] { screnix_error2("x"); }, "screnix_error2() not implemented"},
      {bit_is_set, "SCRENIX bit_is_set not implemented"},
      {delete_files, "SCRENIX delete_files not implemented"},
      {array_i4_to_bitmap, "SCRENIX array_i4_to_bitmap not implemented"},
      {array_i2_to_bitmap, "SCRENIX array_i2_to_bitmap not implemented"},
      {array_i1_to_bitmap, "SCRENIX array_i1_to_bitmap not implemented"},
      {get_default_back_brush, "SCRENIX get_default_back_brush not implemented"},
      {rgb, "SCRENIX rgb not implemented"},
      {color_out, "SCRENIX color_out not implemented"},
      {get_save_file_name, "SCRENIX get_save_file_name not implemented"},
      {[] { get_open_file_name("", {}, {}); }, "SCRENIX get_open_file_name not implemented"},
      {start_print, "SCRENIX start_print not implemented"},
      {define_box, "SCRENIX define_box not implemented"},
      {left_integer_text, "SCRENIX left_integer_text not implemented"},
      {loword, "SCRENIX loword not implemented"},
      {hiword, "SCRENIX hiword not implemented"},
      {save_dialog, "SCRENIX save_dialog not implemented"},
      {dialog_one_item, "SCRENIX dialog_one_item not implemented"},
      {get_dialog_text, "SCRENIX get_dialog_text not implemented"},
      {get_dialog_double, "SCRENIX get_dialog_double not implemented"},
      {get_dialog_real, "SCRENIX get_dialog_real not implemented"},
      {get_dialog_integer, "SCRENIX get_dialog_integer not implemented"},
      {create_menu, "SCRENIX create_menu not implemented"},
      {pop_up_menu, "SCRENIX pop_up_menu not implemented"},
      {create_window, "SCRENIX create_window not implemented"},
      {get_system_metrics, "SCRENIX get_system_metrics not implemented"},
      {get_device_caps, "SCRENIX get_device_caps not implemented"},
      {set_win_help, "SCRENIX set_win_help not implemented"},
      {start_win_help, "SCRENIX start_win_help not implemented"},
      {delete_file, "SCRENIX delete_file not implemented"},
      {rename_file, "SCRENIX rename_file not implemented"},
      {copy_file, "SCRENIX copy_file not implemented"},
      {page_setup_dialog, "SCRENIX page_setup_dialog not implemented"},
      {rw_read_metafile, "SCRENIX rw_read_metafile not implemented"},
      {delete_metafile, "SCRENIX delete_metafile not implemented"},
      {load_font, "SCRENIX load_font not implemented"},
      {get_bitmap_palette, "SCRENIX get_bitmap_palette not implemented"},
      {save_dib, "SCRENIX save_dib not implemented"},
      {dib_to_bitmap, "SCRENIX dib_to_bitmap not implemented"},
      {bitmap_to_dib, "SCRENIX bitmap_to_dib not implemented"},
      {create_bitmap, "SCRENIX create_bitmap not implemented"},
      {load_bitmap, "SCRENIX load_bitmap not implemented"},
      {get_rop, "SCRENIX get_rop not implemented"},
      {get_file_section, "SCRENIX get_file_section not implemented"},
      {get_volume_info, "SCRENIX get_volume_info not implemented"},
      {choose_font, "SCRENIX choose_font not implemented"},
      {choose_color, "SCRENIX choose_color not implemented"},
      {rw_open_file, "SCRENIX rw_open_file not implemented"},
      {send_message, "SCRENIX send_message not implemented"},
      {get_key_state, "SCRENIX get_key_state not implemented"},
      {get_main_hwnd, "SCRENIX get_main_hwnd not implemented"},
      {get_windows_instance, "SCRENIX get_windows_instance not implemented"},
      {get_parent, "SCRENIX get_parent not implemented"},
      {get_dialog_item_window, "SCRENIX get_dialog_item_window not implemented"},
      {menu_exists, "SCRENIX menu_exists not implemented"},
      {box_exists, "SCRENIX box_exists not implemented"},
      {window_exists, "SCRENIX window_exists not implemented"},
      {y_millimeters_to_pixel, "SCRENIX y_millimeters_to_pixel is not implemented"},
      {x_millimeters_to_pixel, "SCRENIX x_millimeters_to_pixel is not implemented"},
      {y_pixel_to_millimeters, "SCRENIX y_pixel_to_millimeters is not implemented"},
      {x_pixel_to_millimeters, "SCRENIX x_pixel_to_millimeters is not implemented"},
      {y_inches_to_pixel, "SCRENIX y_inches_to_pixel is not implemented"},
      {x_inches_to_pixel, "SCRENIX x_inches_to_pixel is not implemented"},
      {y_pixel_to_inches, "SCRENIX y_pixel_to_inches is not implemented"},
      {x_pixel_to_inches, "SCRENIX x_pixel_to_inches is not implemented"},
      {y_portion_to_pixel, "SCRENIX y_portion_to_pixel is not implemented"},
      {x_portion_to_pixel, "SCRENIX x_portion_to_pixel is not implemented"},
      {y_pixel_to_portion, "SCRENIX y_pixel_to_portion is not implemented"},
      {x_pixel_to_portion, "SCRENIX x_pixel_to_portionis not implemented"},
      {box(Property::stat), "dialog_box stat not implemented"},
      {box(Property::text_color), "dialog_box text_color not implemented"},
      {box(Property::proc), "dialog_box proc not implemented"},
      {box(Property::back_brush), "dialog_box back_brush not implemented"},
      {menu(Property::accelerator), "set_menu_item accelerator not implemented"},
      {menu(Property::options), "set_menu_item options not implemented"},
      {menu(Property::drop_down), "set_menu_item drop_down not implemented"},
      {item_s(Property::stat), "update_dialog_item_s() stat not implemented"},
      {item_s(Property::value), "update_dialog_item_s() value not implemented"},
      {item_s(Property::list_box), "update_dialog_item_s() list_box not implemented"},
      {item_s(Property::proc), "update_dialog_item_s() proc not implemented"},
      {item_s(Property::custom), "update_dialog_item_s() custom not implemented"},
      {item_s(Property::integer_max), "update_dialog_item_s() integer_max not implemented"},
      {item_s(Property::integer_min), "update_dialog_item_s() integer_min not implemented"},
      {item_s(Property::integer_increment), "update_dialog_item_s() integer_increment not implemented"},
      {item_s(Property::real_value), "update_dialog_item_s() real_value not implemented"},
      {item_s(Property::real_max), "update_dialog_item_s() real_max not implemented"},
      {item_s(Property::real_min), "update_dialog_item_s() real_min not implemented"},
      {item_s(Property::real_increment), "update_dialog_item_s() real_increment not implemented"},
      {item_s(Property::double_value), "update_dialog_item_s() double_value not implemented"},
      {item_s(Property::double_max), "update_dialog_item_s() double_max not implemented"},
      {item_s(Property::double_min), "update_dialog_item_s() double_min not implemented"},
      {item_s(Property::double_increment), "update_dialog_item_s() double_increment not implemented"},
      {item_s(Property::format), "update_dialog_item_s() format not implemented"},
      {item_s(Property::back_brush), "update_dialog_item_s() back_brush not implemented"},
      {item_s(Property::text_color), "update_dialog_item_s() text_color not implemented"},
      {item_s(Property::icon), "update_dialog_item_s() icon not implemented"},
      {item_s(Property::bitmap), "update_dialog_item_s() bitmap not implemented"},
      {item_s(Property::dialog), "update_dialog_item_s() dialog not implemented"},
      {item_a(Property::stat), "update_dialog_item_a() stat not implemented"},
      {item_a(Property::list_box), "update_dialog_item_a() list_box not implemented"},
      {item_a(Property::proc), "update_dialog_item_a() proc not implemented"},
      {item_a(Property::custom), "update_dialog_item_a() custom not implemented"},
      {item_a(Property::integer_max), "update_dialog_item_a() integer_max not implemented"},
      {item_a(Property::integer_min), "update_dialog_item_a() integer_min not implemented"},
      {item_a(Property::integer_increment), "update_dialog_item_a() integer_increment not implemented"},
      {item_a(Property::real_value), "update_dialog_item_a() real_value not implemented"},
      {item_a(Property::real_max), "update_dialog_item_a() real_max not implemented"},
      {item_a(Property::real_min), "update_dialog_item_a() real_min not implemented"},
      {item_a(Property::real_increment), "update_dialog_item_a() real_increment not implemented"},
      {item_a(Property::double_value), "update_dialog_item_a() double_value not implemented"},
      {item_a(Property::double_max), "update_dialog_item_a() double_max not implemented"},
      {item_a(Property::double_min), "update_dialog_item_a() double_min not implemented"},
      {item_a(Property::double_increment), "update_dialog_item_a() double_increment not implemented"},
      {item_a(Property::format), "update_dialog_item_a() format not implemented"},
      {item_a(Property::back_brush), "update_dialog_item_a() back_brush not implemented"},
      {item_a(Property::text_color), "update_dialog_item_a() text_color not implemented"},
      {item_a(Property::icon), "update_dialog_item_a() icon not implemented"},
      {item_a(Property::bitmap), "update_dialog_item_a() bitmap not implemented"},
      {item(Property::list_box), "set_dialog_item() list_box not implemented"},
      {item(Property::value), "set_dialog_item() value not implemented"},
      {item(Property::custom), "set_dialog_item() custom not implemented"},
      {item(Property::edit), "set_dialog_item() edit not implemented"},
      {item(Property::bitmap), "set_dialog_item() bitmap not implemented"},
      {item(Property::stat), "set_dialog_item() stat not implemented"},
      {item(Property::integer_max), "set_dialog_item() integer_max not implemented"},
      {item(Property::integer_min), "set_dialog_item() integer_min not implemented"},
      {item(Property::integer_increment), "set_dialog_item() integer_increment not implemented"},
      {item(Property::real_value), "set_dialog_item() real_value not implemented"},
      {item(Property::real_max), "set_dialog_item() real_max not implemented"},
      {item(Property::real_min), "set_dialog_item() real_min not implemented"},
      {item(Property::real_increment), "set_dialog_item() real_increment not implemented"},
      {item(Property::double_value), "set_dialog_item() double_value not implemented"},
      {item(Property::double_max), "set_dialog_item() double_max not implemented"},
      {item(Property::double_min), "set_dialog_item() double_min not implemented"},
      {item(Property::double_increment), "set_dialog_item() double_increment not implemented"},
      {item(Property::format), "set_dialog_item() format not implemented"},
      {item(Property::icon), "set_dialog_item() icon not implemented"},
      {item(Property::text_color), "set_dialog_item() text_color not implemented"},
      {item(Property::back_brush), "set_dialog_item() back_brush not implemented"},
  };
  return all;
}

TEST(StoppingEntries, LeaveExactlyTheirText) {
  for (const Stop& stop : stops()) {
    SCOPED_TRACE(stop.text);
    const child::Outcome outcome = child::run(stop.call);
    EXPECT_EQ(outcome.err, "STOP " + std::string(stop.text) + "\n");
    EXPECT_EQ(outcome.exit_status, 0);
    if (!stop.text.starts_with("screnix_error")) {
      EXPECT_EQ(outcome.out, "");
    }
  }
}

TEST(StoppingEntries, TakeWhatTheirCallersPass) {
  std::int32_t width = 0;
  const child::Outcome outcome = child::run([&] { width = get_system_metrics(1, "Breite", 2.5, &width); });
  EXPECT_EQ(outcome.err, "STOP SCRENIX get_system_metrics not implemented\n");
}

TEST(StoppingEntries, CompleteTheOpenFiles) {
  const test_files::TemporaryFolder folder;
  const std::string path = folder.file("open_file");
  child::run([&] {
    runtime::open(77, path, runtime::OpenStatus::unknown);
    runtime::write<"(a)">(77, "vor dem Ende");
    start_print();
  });
  EXPECT_EQ(test_files::read_bytes(path), "vor dem Ende\n");
}

}  // namespace
}  // namespace SCRENIX
