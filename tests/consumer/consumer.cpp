// Classifies a field and writes a message into a protocol, as any tool of the suite may.

#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "m_WLM_error/m_WLM_error.h"
#include "m_strings/m_strings.h"

namespace {

bool expect(bool holds, const char* what) {
  if (!holds) std::cerr << "consumer: " << what << '\n';
  return holds;
}

bool has_line_that_begins(const char* file, std::string_view beginning) {
  std::ifstream protocol(file);
  std::string line;
  while (std::getline(protocol, line)) {
    if (line.starts_with(beginning)) return true;
  }
  return false;
}

}  // namespace

int main() {
  bool fine = expect(m_strings::ClassifyField(" 12.5") == 'R', "12.5 is a real number");
  fine &= expect(m_strings::ClassifyField(" 125 ") == 'I', "125 is a whole number");
  m_WLM_error::MessageDispatcher("INIT", {.text1 = "consumer.pkl", .text2 = "KARVOS"});
  m_WLM_error::report("W01", {.text1 = "V0010"});
  fine &= expect(m_WLM_error::ErrorLevel == 1, "W01 is a warning");
  m_WLM_error::MessageDispatcher("FINALE");
  fine &= expect(has_line_that_begins("consumer.pkl", "W01 Warnung"), "the protocol holds W01");
  return fine ? 0 : 1;
}
