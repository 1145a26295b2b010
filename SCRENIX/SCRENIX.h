#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// The window library of the suite, as far as a build without a window system can offer it: message boxes
/// go to standard output as framed records for a separate front-end.
namespace SCRENIX {

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

}  // namespace SCRENIX
