#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

// What the program tells a front-end on standard output.

namespace notices {

/// A framed record: a key and its value.
inline std::string record(std::string_view key, std::string_view value) {
  std::string bytes = "\x01";
  return bytes.append(key).append("\x02").append(value).append("\x03");
}

/// A message box: its title and its text, under the code of its buttons.
inline std::string message_box(std::string_view title, std::string_view text, std::string_view code = "0") {
  const std::string key = "messagebox_button_" + std::string(code);
  return record(key + "_settitle", title) + record(key, text);
}

/// The notice of a fault.
inline std::string error(std::string_view text) {
  return message_box("KV_Akum: Fehler", text);
}

/// The notice at the end of a run.
inline std::string closing(std::string_view variant_name) {
  return message_box("KV_Akum", "Ergebnis: " + std::string(variant_name) + ".Akum");
}

/// The bytes of standard output that are there when the work has come back, before the program ends.
template <class Work>
std::string sent_by(const Work& work) {
  testing::internal::CaptureStdout();
  work();
  return testing::internal::GetCapturedStdout();
}

}  // namespace notices
