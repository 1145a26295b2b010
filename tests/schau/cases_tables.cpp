#include <array>
#include <string>
#include <string_view>

#include "tests/schau/rule_cases.h"

namespace schau_test {
namespace {

// Five natural areas of the usual size.
void add_areas(Bed& bed) {
  static constexpr std::array<std::string_view, 5> names = {"N0051", "N0052", "N0053", "N0054", "N0055"};
  for (const std::string_view name : names) {
    bed.insert(FileId::sys, 3, text_of({name, {}, {"T0099"}}));
    bed.insert(FileId::nfl, 3, "   " + std::string(name) + "  10.00");
  }
}

// Lines of the area files in an order that is not that of the system.
void turn_areas_round(Bed& bed) {
  bed.replace(FileId::nfl, {
                               "   N0020  2.500 0.00",
                               "   N0010  12.40 0.00",
                               "          ha",
                           });
}

}  // namespace

std::vector<RuleCase> unit_cases() {
  return {
      {"einheit-unbekannt",
       "a capital letter",
       [](Bed& bed) { bed.line(FileId::nfl, 4) = "          Ha"; },
       {"nfl:4:11+2"},
       "\"Ha\" ist für KV_Akum kein Einheitenwort; es gilt weiter",
       "gemeint: ha",
       [](Bed& bed) { bed.line(FileId::nfl, 4) = "          ha"; }},
      {"einheit-unbekannt",
       "a superscript",
       [](Bed& bed) { bed.line(FileId::nfl, 4) = bytes_of("          m²"); },
       {"nfl:4:11+2"},
       "\"m²\" ist für KV_Akum kein Einheitenwort; es gilt weiter qkm",
       "gemeint: qm"},
      {"einheit-unbekannt",
       "a superscript in UTF-8",
       [](Bed& bed) { bed.line(FileId::nfl, 4) = "          m²"; },
       {"nfl:4:11+3"},
       "\"m²\""},
      {"einheit-unbekannt",
       "in a heading with brackets",
       [](Bed& bed) { bed.line(FileId::nfl, 4) = "   Name   [HA]  [-]"; },
       {"nfl:4:11+4"},
       "\"[HA]\"",
       "gemeint: ha",
       [](Bed& bed) { bed.line(FileId::nfl, 4) = "   Name   [ha]  [-]"; }},
      {"einheit-verrutscht",
       "two columns to the left",
       [](Bed& bed) { bed.line(FileId::nfl, 4) = "        ha"; },
       {"nfl:4:9+2"},
       "steht nicht ganz in den Spalten 11 bis 15; es gilt weiter qkm",
       "",
       [](Bed& bed) { bed.insert(FileId::nfl, 5, "  ha"); }},
      {"einheit-verrutscht",
       "behind its columns",
       [](Bed& bed) { bed.line(FileId::nfl, 4) = "                ha"; },
       {"nfl:4:17+2"}},
      {"einheit-verrutscht",
       "half in its columns",
       [](Bed& bed) { bed.line(FileId::nfl, 4) = "         ha"; },
       {"nfl:4:10+2"}},
      {"einheit-wirkungslos",
       "km2 where qkm is in force",
       [](Bed& bed) { bed.line(FileId::nfl, 2) = "          km2"; },
       {"nfl:2:11+3"},
       "\"km2\" setzt keine Einheit; qkm gilt hier ohnehin",
       "",
       [](Bed& bed) { bed.line(FileId::nfl, 2) = "          qkm"; }},
      {"einheit-in-bemerkung",
       "inside a word",
       [](Bed& bed) { bed.insert(FileId::nfl, 3, "        Schafbach"); },
       {"nfl:3:11+2"},
       "setzt die Einheit ha; davor galt qkm",
       "",
       [](Bed& bed) { bed.insert(FileId::nfl, 5, "        Schafbach"); }},
      {"einheit-in-bemerkung",
       "with a number",
       [](Bed& bed) { bed.insert(FileId::nfl, 3, "  zus.: 12 ha"); },
       {"nfl:3:12+2"},
       "",
       "",
       [](Bed& bed) { bed.line(FileId::nfl, 4) = "   Name   [ha]   [-]"; }},
      {"einheit-fehlt",
       "before the first unit line",
       [](Bed& bed) { bed.erase(FileId::nfl, 2); },
       {"nfl:2:11+5"},
       "Vor N0010 steht noch keine Einheit; KV_Akum nimmt qkm",
       "die erste Einheit (ha) steht in Zeile 3",
       [](Bed& bed) {
         bed.erase(FileId::nfl, 4);
         bed.erase(FileId::nfl, 2);
       }},
      {"einheit-geerbt",
       "no unit line",
       [](Bed& bed) { bed.erase(FileId::kfl, 2); },
       {"kfl:2:11+5"},
       "Vor K0010 steht noch keine Einheit; KV_Akum nimmt ha, die letzte Einheit der Datei netz.nfl",
       "",
       [](Bed& bed) {
         bed.erase(FileId::kfl, 2);
         bed.line(FileId::nfl, 4) = "          qkm";
       }},
      {"einheit-vorgabe",
       "no unit line where the natural areas have one",
       [](Bed& bed) {
         bed.erase(FileId::kfl, 2);
         bed.line(FileId::nfl, 4) = "          qkm";
       },
       {"kfl:2:11+5"},
       "keine Einheit, anders als in netz.nfl; KV_Akum nimmt qkm",
       "",
       [](Bed& bed) {
         bed.erase(FileId::kfl, 2);
         bed.erase(FileId::nfl, 4);
         bed.erase(FileId::nfl, 2);
       }},
      {"einheit-durch-suche",
       "a unit at the end of the file",
       turn_areas_round,
       {"nfl:1:11+5"},
       "Für N0020 gilt ha, nicht qkm",
       "",
       [](Bed& bed) {
         turn_areas_round(bed);
         bed.erase(FileId::nfl, 3);
       }},
      {"groessenordnung",
       "square metres for square kilometres",
       [](Bed& bed) {
         add_areas(bed);
         bed.put(FileId::nfl, 5, 11, "99000");
       },
       {"nfl:5:11+5"},
       "N0053 hat 99000 km² (Einheit qkm), die meisten Flächen dieser Datei um 10 km²",
       "stimmt die Einheit?",
       [](Bed& bed) {
         add_areas(bed);
         bed.put(FileId::nfl, 5, 11, "990.0");
       }},
      {"groessenordnung",
       "far too small",
       [](Bed& bed) {
         add_areas(bed);
         bed.put(FileId::nfl, 5, 11, ".0001");
       },
       {"nfl:5:11+5"},
       "N0053 hat 0.0001 km²"},
  };
}

std::vector<RuleCase> table_cases() {
  return {
      {"datei-fehlt",
       "the canalised areas",
       [](Bed& bed) { bed.remove(FileId::kfl); },
       {"sys:4:36+5"},
       "Die Datei netz.kfl fehlt; das System hat ein K-Element",
       "",
       [](Bed& bed) {
         bed.remove(FileId::ver);
         bed.line(FileId::sys, 6) = text_of({"P0099", {"T0010"}, {"T0020"}});
       }},
      {"datei-unlesbar",
       "a folder in its place",
       [](Bed& bed) { bed.make_folder(FileId::kfl); },
       {"kfl"},
       "nicht lesbar: ist ein Ordner",
       "",
       [](Bed& bed) {
         bed.make_folder(FileId::ver);
         bed.line(FileId::sys, 6) = text_of({"P0099", {"T0010"}, {"T0020"}});
       }},
      {"datei-unlesbar",
       "the system file",
       [](Bed& bed) { bed.make_folder(FileId::sys); },
       {"sys"},
       "ist ein Ordner"},
      {"zeile-fehlt",
       "an area",
       [](Bed& bed) { bed.erase(FileId::nfl, 5); },
       {"sys:9:36+5"},
       "N0020 hat keine Zeile in netz.nfl; KV_Akum meldet A00"},
      {"zeile-fehlt",
       "a misspelt name",
       [](Bed& bed) { bed.put(FileId::nfl, 5, 4, "N0O20"); },
       {"sys:9:36+5"},
       "",
       "dort steht N0O20"},
      {"zeile-verrutscht",
       "one column to the right",
       [](Bed& bed) { bed.line(FileId::nfl, 5).insert(0, 1, ' '); },
       {"nfl:5:5+5"},
       "\"N0020\" beginnt in Spalte 5 statt 4",
       "",
       [](Bed& bed) { bed.insert(FileId::nfl, 5, "N0020 liegt am Hang"); }},
      {"zeile-verrutscht",
       "behind a tab",
       [](Bed& bed) { bed.line(FileId::ver, 2) = "\tV0010\t1\t65.0"; },
       {"ver:2:2+5"},
       "",
       "",
       [](Bed& bed) { bed.insert(FileId::ver, 3, "\tV0010\t1\t65.0"); }},
      {"zeile-ohne-element",
       "a name more",
       [](Bed& bed) { bed.insert(FileId::nfl, 6, "   N0777  100.0"); },
       {"nfl:6:4+5"},
       "N0777 ist kein Element der Systemdatei",
       "",
       [](Bed& bed) { bed.insert(FileId::nfl, 6, "   N0777 gibt es nicht mehr"); }},
      {"zeile-ohne-element",
       "only when there are elements",
       [](Bed& bed) { bed.insert(FileId::ver, 3, "   V0777     1  50.0"); },
       {"ver:3:4+5"},
       "",
       "",
       [](Bed& bed) { bed.replace(FileId::sys, {"Systemlogik"}); }},
      {"zeile-ohne-element",
       "a misspelt name",
       [](Bed& bed) { bed.put(FileId::nfl, 5, 4, "N0021"); },
       {"nfl:5:4+5"},
       "",
       "meinten Sie N0020?"},
      {"zeile-ohne-element",
       "an element that the run passes over",
       [](Bed& bed) { bed.put(FileId::sys, 9, 36, "n"); },
       {"nfl:5:4+5"},
       "",
       "KV_Akum überliest netz.sys, Zeile 9"},
      {"zeile-fremd",
       "a canalised area among the natural ones",
       [](Bed& bed) { bed.insert(FileId::nfl, 6, "   K0010     12"); },
       {"nfl:6:4+5"},
       "K0010 gehört nicht in diese Datei",
       "",
       [](Bed& bed) { bed.insert(FileId::nfl, 6, "   K0010 siehe dort"); }},
      {"zeile-fremd",
       "an area among the reaches",
       [](Bed& bed) { bed.insert(FileId::trs, 4, "   N0010     12"); },
       {"trs:4:4+5"},
       "liest hier nur T-Elemente",
       "",
       [](Bed& bed) { bed.line(FileId::trs, 3) = "   N0010    18.2"; }},
      {"zeile-doppelt",
       "in one file",
       [](Bed& bed) { bed.insert(FileId::nfl, 6, "   N0020  251.0"); },
       {"nfl:6:4+5"},
       "N0020 hat schon eine Zeile mit Werten (netz.nfl, Zeile 5); KV_Akum meldet A14"},
      {"zeile-doppelt",
       "in two files",
       [](Bed& bed) { bed.insert(FileId::kfl, 4, "   N0020  251.0"); },
       {"kfl:4:4+5"},
       "netz.nfl, Zeile 5"},
      {"zeile-doppelt-unbemerkt",
       "a whole number",
       [](Bed& bed) { bed.insert(FileId::nfl, 6, "   N0020    251"); },
       {"nfl:6:4+5"},
       "N0020 hat mehrere Zeilen; KV_Akum liest ohne Meldung nur die in Zeile 5",
       "",
       [](Bed& bed) { bed.insert(FileId::nfl, 6, "   N0020  251.0"); }},
      {"zeile-doppelt-unbemerkt",
       "a branching",
       [](Bed& bed) { bed.insert(FileId::ver, 3, "   V0010     1  35.0"); },
       {"ver:3:4+5"}},
      {"kennziffer-ueber-3",
       "4",
       [](Bed& bed) { bed.put(FileId::ver, 2, 14, "4"); },
       {"ver:2:14+1"},
       "Ver1",
       "",
       [](Bed& bed) { bed.put(FileId::ver, 2, 14, "3"); }},
      {"kennziffer-unter-1",
       "0",
       [](Bed& bed) { bed.put(FileId::ver, 2, 14, "0"); },
       {"ver:2:14+1"},
       "Die Kennziffer 0 gibt es nicht; KV_Akum leitet alles zum zweiten Ablauf"},
      {"kennziffer-unter-1",
       "blank",
       [](Bed& bed) { bed.put(FileId::ver, 2, 14, " "); },
       {"ver:2:11+4"},
       "V0010 hat keine Kennziffer"},
      {"kennziffer-dezimal",
       "1.4",
       [](Bed& bed) { bed.put(FileId::ver, 2, 11, " 1.4"); },
       {"ver:2:12+3"},
       "KV_Akum rundet auf 1",
       "",
       [](Bed& bed) { bed.put(FileId::ver, 2, 11, " 1.0"); }},
      {"anteil-unbeachtet",
       "beside code 2",
       [](Bed& bed) { bed.put(FileId::ver, 2, 14, "2"); },
       {"ver:2:16+5"},
       "V0010 hat 2 und leitet alles zum zweiten Ablauf",
       "",
       [](Bed& bed) { bed.line(FileId::ver, 2) = "   V0010     2   0.0"; }},
  };
}

std::vector<RuleCase> surroundings_cases() {
  return {
      {"unterdrueckung",
       "codes over two lines",
       [](Bed& bed) {
         bed.insert(FileId::suppression, 1, "Y21 A");
         bed.insert(FileId::suppression, 2, "03");
       },
       {"ex:1:1+5"},
       "Diese Liste unterdrückt Y21, A03",
       "",
       [](Bed& bed) { bed.insert(FileId::suppression, 1, "W0 Y1"); }},
      {"unterdrueckung-wirkungslos",
       "other words",
       [](Bed& bed) { bed.insert(FileId::suppression, 1, "W0 Y1"); },
       {"ex:1:1+5"},
       "",
       "",
       [](Bed& bed) { bed.insert(FileId::suppression, 1, "Y25"); }},
      {"altes-ergebnis",
       "older than an input",
       [](Bed& bed) {
         bed.surroundings.result = true;
         bed.surroundings.younger_input = "netz.kfl";
       },
       {"Akum"},
       "Ergebnis eines früheren Laufs (älter als netz.kfl)"},
      {"altes-protokoll", "there is one", [](Bed& bed) { bed.surroundings.protocol = true; }, {"pkl"}},
      {"ergebnis-verweis",
       "to another file",
       [](Bed& bed) { bed.surroundings.result_link = "../anderswo.txt"; },
       {"Akum"},
       "überschreibt die Datei \"../anderswo.txt\""},
      {"ergebnis-ist-eingabe",
       "the system file",
       [](Bed& bed) { bed.surroundings.result_is_input = "netz.sys"; },
       {"Akum"},
       "die Eingabe netz.sys sind dieselbe Datei"},
      {"name-code",
       "the name of the listing",
       [](Bed& bed) { bed.name = "code"; },
       {"pkl"},
       "Netzliste",
       "",
       [](Bed& bed) { bed.name = "code1"; }},
  };
}

}  // namespace schau_test
