#include <string>

#include "tests/schau/rule_cases.h"

namespace schau_test {
namespace {

std::string in_utf16(const std::string& bytes) {
  std::string text = "\xFF\xFE";
  for (const char byte : bytes) text += std::string{byte, '\0'};
  return text;
}

// The line ends with CR LF, once its LF is there.
void end_with_cr_lf(Bed& bed, FileId file) {
  for (std::string& line : bed.lines(file)) line += '\r';
}

void write_description(Bed& bed, std::string_view text) {
  // An inserted byte moves the rest of the line to the right, as in an editor.
  std::string& line = bed.line(FileId::sys, 5);
  line = std::string(16, ' ') + std::string(text) + line.substr(16 + 7);
}

}  // namespace

std::vector<RuleCase> text_cases() {
  return {
      {"utf-16",
       "a file with a byte order mark",
       [](Bed& bed) { bed.set_bytes(FileId::nfl, in_utf16(bed.bytes(FileId::nfl))); },
       {"nfl"},
       "keine ihrer Zeilen",
       "Windows-1252"},
      {"utf-16",
       "a file without a byte order mark",
       [](Bed& bed) { bed.set_bytes(FileId::kfl, in_utf16(bed.bytes(FileId::kfl)).substr(2)); },
       {"kfl"}},
      {"bytereihenfolge-marke",
       "before the heading",
       [](Bed& bed) { bed.line(FileId::sys, 1).insert(0, "\xEF\xBB\xBF"); },
       {"sys:1:1+3"},
       "drei Spalten"},
      {"utf-8-verschiebt",
       "an umlaut in a description",
       [](Bed& bed) { write_description(bed, "Höllbac"); },
       {"sys:5:18+2"},
       "\"ö\" belegt für KV_Akum 2 Spalten",
       "Windows-1252",
       [](Bed& bed) { write_description(bed, bytes_of("Höllbac")); }},
      {"utf-8-verschiebt",
       "an umlaut before a record",
       [](Bed& bed) { bed.line(FileId::nfl, 3) = "ö  N0010  12.40 0.00"; },
       {"nfl:3:1+2"},
       "\"ö\"",
       "",
       [](Bed& bed) { bed.line(FileId::nfl, 3) = bytes_of("ö  N0010  12.40 0.00"); }},
      {"utf-8-verschiebt",
       "a euro sign takes three bytes",
       [](Bed& bed) { write_description(bed, "100 €  "); },
       {"sys:5:21+3"},
       "belegt für KV_Akum 3 Spalten"},
      {"utf-8",
       "umlauts in two headings",
       [](Bed& bed) {
         bed.line(FileId::sys, 1) = "Systemlogik des Prüfnetzes";
         bed.line(FileId::sys, 2) = "Größe";
       },
       {"sys:1:19+2"},
       "(und eine weitere Zeile)"},
      {"utf-8",
       "an umlaut behind the columns of a record",
       [](Bed& bed) { bed.line(FileId::kfl, 3) += "  Größlingen"; },
       {"kfl:3:25+2"},
       "ohne Folgen"},
      {"dos-umlaut",
       "in a heading",
       [](Bed& bed) {
         bed.line(FileId::sys, 1) =
             "Systemlogik des Pr\x81"
             "fnetzes";
       },
       {"sys:1:19+1"},
       "DOS"},
      {"dos-umlaut",
       "in three headings",
       [](Bed& bed) {
         bed.line(FileId::nfl, 1) =
             "   Name   Fl\x84"
             "che";
         bed.insert(FileId::nfl, 2,
                    "\x99"
                    "rtlichkeit");
         bed.insert(FileId::nfl, 3,
                    "Stra\xE1"
                    "e");
       },
       {"nfl:1:13+1"},
       "(und 2 weitere Zeilen)",
       "",
       [](Bed& bed) { bed.line(FileId::nfl, 1) = bytes_of("   Name   „Fläche“ …”"); }},
      {"tabulator",
       "in a share",
       [](Bed& bed) {
         bed.put(FileId::ver, 2, 15, "\t65.0");
         bed.put(FileId::ver, 2, 16, "\t");
       },
       {"ver:2:16+1"},
       "Tabulator",
       "",
       [](Bed& bed) { bed.put(FileId::ver, 2, 15, "\t"); }},
      {"tabulator",
       "in the name of a link",
       [](Bed& bed) { bed.put(FileId::sys, 9, 68, "\t"); },
       {"sys:9:68+1"}},
      {"geschuetztes-leerzeichen",
       "in a share",
       [](Bed& bed) { bed.put(FileId::ver, 2, 16, "\xA0"); },
       {"ver:2:16+1"},
       "Leerzeichen",
       "",
       [](Bed& bed) { bed.put(FileId::ver, 2, 15, "\xA0"); }},
      {"steuerzeichen",
       "in a station",
       [](Bed& bed) { bed.put(FileId::trs, 3, 11, "\x01"); },
       {"trs:3:11+1"},
       "Steuerzeichen",
       "",
       [](Bed& bed) { bed.put(FileId::trs, 3, 9, "\x01"); }},
      {"steuerzeichen",
       "in the columns of the profile",
       [](Bed& bed) { bed.put(FileId::trs, 2, 66, "\x7F"); },
       {"trs:2:66+1"}},
      {"unsichtbares-zeichen",
       "a tab in two headings",
       [](Bed& bed) {
         bed.put(FileId::sys, 1, 12, "\t");
         bed.put(FileId::sys, 2, 12, "\t");
       },
       {"sys:1:12+1"},
       "Tabulator außerhalb der gelesenen Spalten (und eine weitere Zeile)"},
      {"unsichtbares-zeichen",
       "a control Z at the end",
       [](Bed& bed) { bed.insert(FileId::ver, 3, "\x1A"); },
       {"ver:3:1+1"},
       "Steuerzeichen"},
      {"unsichtbares-zeichen",
       "of two kinds",
       [](Bed& bed) {
         bed.line(FileId::kfl, 1) =
             "\tName\xA0"
             "Areal";
       },
       {"kfl:1:1+1", "kfl:1:6+1"}},
      {"zeilenenden-gemischt",
       "one CR LF",
       [](Bed& bed) { bed.line(FileId::nfl, 3) += '\r'; },
       {"nfl:3:21+1"},
       "4 mit LF, 1 mit CR LF, 0 mit CR",
       "",
       [](Bed& bed) { end_with_cr_lf(bed, FileId::nfl); }},
      {"zeilenende-doppelt",
       "one CR CR LF",
       [](Bed& bed) {
         end_with_cr_lf(bed, FileId::nfl);
         bed.line(FileId::nfl, 3) += '\r';
       },
       {"nfl:3:21+1"},
       "CR CR LF",
       "",
       [](Bed& bed) { end_with_cr_lf(bed, FileId::nfl); }},
      {"zeilenende-doppelt",
       "all CR CR LF",
       [](Bed& bed) {
         end_with_cr_lf(bed, FileId::kfl);
         end_with_cr_lf(bed, FileId::kfl);
       },
       {"kfl:1:21+1"},
       "(und 2 weitere Zeilen)"},
      {"zeilenende-cr",
       "a CR inside a line",
       [](Bed& bed) { bed.line(FileId::nfl, 3) += "\rBemerkung"; },
       {"nfl:3:21+1"},
       "einzelnes CR",
       "",
       [](Bed& bed) {
         std::string bytes = bed.bytes(FileId::nfl);
         for (char& byte : bytes) byte = byte == '\n' ? '\r' : byte;
         bed.set_bytes(FileId::nfl, bytes);
       }},
  };
}

}  // namespace schau_test
