#include "tests/schau/rule_cases.h"

namespace schau_test {
namespace {

// The system file of a network with a basin between T0010 and the two reaches below it.
void set_basin(Bed& bed, std::vector<std::string_view> outflows) {
  bed.line(FileId::sys, 5) = text_of({"T0010", {"N0010", "K0010"}, {"B0010"}});
  bed.line(FileId::sys, 6) = text_of({"B0010", {"T0010"}, std::move(outflows), "BW", "B-01"});
  bed.line(FileId::sys, 7) = text_of({"T0020", {"B0010"}, {"T0040"}});
  bed.line(FileId::sys, 8) = text_of({"T0030", {"B0010"}, {"T0040"}});
}

void set_branching(Bed& bed, std::vector<std::string_view> outflows) {
  bed.line(FileId::sys, 6) = text_of({"V0010", {"T0010"}, std::move(outflows), "BW", "V-01"});
}

// T0020 and T0030 drain into one another.
void make_loop(Bed& bed) {
  bed.line(FileId::sys, 7) = text_of({"T0020", {"V0010", "T0030"}, {"T0030"}});
  bed.line(FileId::sys, 8) = text_of({"T0030", {"V0010", "T0020"}, {"T0020"}});
  bed.line(FileId::sys, 10) = text_of({"T0040", {"N0020"}, {"P0010"}});
}

}  // namespace

std::vector<RuleCase> network_cases() {
  return {
      {"name-doppelt",
       "three times",
       [](Bed& bed) {
         bed.insert(FileId::sys, 10, text_of({"N0020", {}, {"T0040"}}));
         bed.insert(FileId::sys, 11, text_of({"N0020", {}, {"T0040"}}));
       },
       {"sys:10:36+5", "sys:11:36+5"},
       "Der Name N0020 ist schon in Zeile 9 vergeben"},
      {"quelle-mit-zulauf",
       "two fields",
       [](Bed& bed) {
         bed.line(FileId::sys, 9) = text_of({"N0020", {"N0010", "K0010"}, {"T0040"}});
       },
       {"sys:9:44+5", "sys:9:50+5"},
       "N0020 ist eine Quelle"},
      {"zulauf-fehlt",
       "a reach",
       [](Bed& bed) {
         bed.line(FileId::sys, 7) = text_of({"T0020", {}, {"T0040"}});
       },
       {"sys:7:44+5"},
       "T0020 hat keinen Zulauf"},
      {"ablauf-fehlt",
       "an area",
       [](Bed& bed) { bed.line(FileId::sys, 9) = text_of({"N0020"}); },
       {"sys:9:64+5"},
       "N0020 hat keinen Ablauf"},
      {"ablauf-fehlt",
       "a branching",
       [](Bed& bed) { set_branching(bed, {}); },
       {"sys:6:64+5"},
       "V0010",
       "",
       [](Bed& bed) {
         set_branching(bed, {"     ", "T0030"});
       }},
      {"ablauf-zuviel",
       "a reach",
       [](Bed& bed) {
         bed.line(FileId::sys, 7) = text_of({"T0020", {"V0010"}, {"T0040", "T0050"}});
       },
       {"sys:7:70+5"},
       "T0020 darf nur einen Ablauf haben"},
      {"kennung-fehlt",
       "the second tag",
       [](Bed& bed) { bed.put(FileId::sys, 6, 8, "       "); },
       {"sys:6:8+7"},
       "V0010 hat in den Spalten 4 bis 6 eine Kennung",
       "",
       [](Bed& bed) {
         bed.put(FileId::sys, 6, 4, "   ");
         bed.put(FileId::sys, 7, 4, "BW");
       }},
      {"erster-ablauf-fehlt",
       "a branching",
       [](Bed& bed) {
         set_branching(bed, {"     ", "T0030"});
       },
       {"sys:6:64+5"},
       "V0010 hat keinen ersten Ablauf; dabei gehen 8.479 km² verloren"},
      {"zweiter-ablauf-fehlt",
       "a branching",
       [](Bed& bed) { set_branching(bed, {"T0020"}); },
       {"sys:6:70+5"},
       "V0010 hat keinen zweiten Ablauf; dabei gehen 4.566 km² verloren"},
      {"zweiter-ablauf-fehlt",
       "a basin",
       [](Bed& bed) { set_basin(bed, {"T0020"}); },
       {"sys:6:70+5"},
       "B0010 hat keinen zweiten Ablauf; dabei gehen 13.045 km² verloren"},
      {"becken-ohne-ablauf",
       "a basin",
       [](Bed& bed) { set_basin(bed, {}); },
       {"sys:6:64+5"},
       "Das Becken B0010 hat keinen Ablauf"},
      {"zulauf-unbekannt",
       "a misspelt name",
       [](Bed& bed) { bed.put(FileId::sys, 10, 56, "N0021"); },
       {"sys:10:56+5"},
       "Der Zulauf N0021 von T0040 ist kein Element",
       "meinten Sie N0020?"},
      {"zulauf-unbekannt",
       "the only one that lacks a taker",
       [](Bed& bed) { bed.put(FileId::sys, 10, 56, "N9999"); },
       {"sys:10:56+5"},
       "",
       "meinten Sie N0020?"},
      {"zulauf-unbekannt",
       "an element that the run passes over",
       [](Bed& bed) { bed.put(FileId::sys, 9, 36, "n"); },
       {"sys:10:56+5"},
       "",
       "KV_Akum überliest Zeile 9"},
      {"ablauf-unbekannt",
       "a misspelt name",
       [](Bed& bed) { bed.put(FileId::sys, 9, 64, "T0O40"); },
       {"sys:9:64+5"},
       "Der Ablauf T0O40 von N0020 ist kein Element",
       "meinten Sie T0040?",
       [](Bed& bed) { bed.put(FileId::sys, 12, 70, "T0O40"); }},
      {"zulauf-spaeter",
       "two lines changed round",
       [](Bed& bed) { std::swap(bed.line(FileId::sys, 10), bed.line(FileId::sys, 11)); },
       {"sys:10:44+5"},
       "Der Zulauf T0040 von P0010 steht erst in Zeile 11"},
      {"zulauf-spaeter",
       "the element itself",
       [](Bed& bed) { bed.put(FileId::sys, 11, 50, "P0010"); },
       {"sys:11:50+5"},
       "ist das Element selbst"},
      {"ablauf-frueher",
       "two lines changed round",
       [](Bed& bed) { std::swap(bed.line(FileId::sys, 10), bed.line(FileId::sys, 11)); },
       {"sys:11:64+5"},
       "Der Ablauf P0010 von T0040 steht schon in Zeile 10"},
      {"zulauf-einseitig",
       "the inflow drains elsewhere",
       [](Bed& bed) { bed.put(FileId::sys, 9, 64, "T0050"); },
       {"sys:10:56+5"},
       "N0020 ist hier Zulauf von T0040, nennt es in Zeile 9 aber nicht als Ablauf"},
      {"zulauf-einseitig",
       "the outlet as an inflow",
       [](Bed& bed) { bed.put(FileId::sys, 11, 50, "T0050"); },
       {"sys:11:50+5"},
       "T0050 ist das letzte Element und damit der Auslass; es kann nicht Zulauf von P0010 sein"},
      {"ablauf-einseitig",
       "the outflow does not name it",
       [](Bed& bed) { bed.put(FileId::sys, 9, 64, "T0050"); },
       {"sys:9:64+5"},
       "T0050 ist hier Ablauf von N0020, nennt es in Zeile 12 aber nicht als Zulauf",
       "",
       [](Bed& bed) { bed.put(FileId::sys, 12, 70, "T0040"); }},
      {"zulauf-doppelt",
       "three times",
       [](Bed& bed) {
         bed.line(FileId::sys, 11) = text_of({"P0010", {"T0040", "T0040", "T0040"}, {"T0050"}});
       },
       {"sys:11:50+5", "sys:11:56+5"},
       "T0040 ist mehr als einmal Zulauf von P0010"},
      {"kreis", "two reaches", make_loop, {"sys:7:36+5"}, "T0020 fließt im Kreis: T0020 -> T0030 -> T0020"},
      {"kreis",
       "an element that drains into itself",
       [](Bed& bed) {
         bed.line(FileId::sys, 11) = text_of({"P0010", {"T0040", "P0010"}, {"P0010"}});
       },
       {"sys:11:36+5"},
       "P0010 -> P0010"},
      {"kein-weg-zum-auslass",
       "a part without an outflow",
       [](Bed& bed) {
         bed.put(FileId::sys, 10, 64, "T0099");
         bed.put(FileId::sys, 11, 44, "N0020");
       },
       {"sys:10:36+5"},
       "Von T0040 führt kein Weg zum Auslass T0050: 7 Elemente mit 15.545 km² enden hier",
       "",
       [](Bed& bed) { set_basin(bed, {}); }},
      {"erster-ablauf-leer",
       "a basin",
       [](Bed& bed) {
         set_basin(bed, {"T0020", "T0030"});
       },
       {"sys:6:64+5"},
       "T0020 erhält von B0010 keine Fläche: ein Becken gibt alles an den zweiten Ablauf ab, T0030"},
      {"erster-ablauf-leer",
       "a branching of code 2",
       [](Bed& bed) { bed.put(FileId::ver, 2, 14, "2"); },
       {"sys:6:64+5"},
       "mit der Kennziffer 2 geht alles an den zweiten Ablauf, T0030"},
      {"ablaeufe-gleich",
       "a branching",
       [](Bed& bed) {
         set_branching(bed, {"T0020", "T0020"});
       },
       {"sys:6:70+5"},
       "Beide Abläufe von V0010 sind T0020, das nur den ersten Teil erhält; dabei gehen 4.566 km² verloren",
       "",
       [](Bed& bed) {
         set_branching(bed, {"T0020", "T0020"});
         bed.put(FileId::ver, 2, 14, "2");
       }},
  };
}

}  // namespace schau_test
