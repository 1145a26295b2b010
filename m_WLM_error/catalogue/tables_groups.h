#pragma once

#include "m_WLM_error/catalogue/entry.h"

// Tables: elements, areas, catchments, annual cycles, characteristic curves, rain.

namespace m_WLM_error::catalogue {

inline constexpr Entry A_entries[] = {
    entry<"(a,  ' In der Tabelle .......................... : ',A/"
          "              3X, ' fehlt das Element ....................... : ',a/"
          "              3X, ' (evtl. fehlerhafter Datensatz)')">("A00", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt beim Element ...................... : ',a/"
          "              3x, ' die Nummer des zugehörigen Regens!')">("A01", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt beim Element ...................... : ',a/"
          "              3x, ' die Nummer der Steuerfunktion!')">("A02", error, text1, text2),
    entry<"(              A3, ' In der Tabelle .......................... : ',A/"
          "              3X, ' liegt ein Formatfehler vor bei .......... : ',A)">("A03", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt vor dem Element ................... : ',a/"
          "              3x, ' die Kopfzeile. Bitte mit der Vorlage vergleichen!')">("A04", error, text1,
                                                                                     text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' enthält die Zeile Nr. ................... : ',i9/"
          "              3x, ' zu wenige Werte. Erforderliche Anzahl ... : ',i9)">("A05", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist die Zeile Nr. ....................... : ',i9/"
          "              3x, ' nicht lesbar. Erster Eintrag ............ : ',a)">("A06", error, text1, int1,
                                                                                  text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' liegt der Ausgabezeitpunkt (h) .......... : ',f9.3/"
          "              3x, ' nach dem Ende der Berechnung (h) ........ : ',f9.3)">("A07", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' liegt der Ausgabezeitpunkt Nr. .......... : ',i9/"
          "              3x, ' nicht nach dem vorhergehenden!'/"
          "              3x, ' Die Ausgabezeitpunkte müssen ansteigen.')">("A08", error, text1, int1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist die Anzahl der Ausgabezeitpunkte .... : ',i9/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i9)">("A09", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlen für das Element .................. : ',a/"
          "              3x, ' die Unterwasserdaten. Sie werden für die'/"
          "              3x, ' Rückstauberechnung benötigt.')">("A10", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' liegt beim Element ...................... : ',a/"
          "              3x, ' der Unterwasserstand (m+NN) ............. : ',f9.3/"
          "              3x, ' tiefer als die Sohle (m+NN) ............. : ',f9.3)">("A11", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist beim Element ........................ : ',a/"
          "              3x, ' die Anzahl der Abflussstufen ............ : ',i5/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i5)">("A12", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist beim Element ........................ : ',a/"
          "              3x, ' die Abflussstufe Nr. .................... : ',i5/"
          "              3x, ' nicht größer als die vorhergehende!')">("A13", error, text1, text2, int1),
    entry<"(a,  ' In der Tabelle ........................ : ',A/"
          "              3X, ' ist das Element ....................... : ',A/"
          "              3X, ' mehrfach aufgeführt.')">("A14", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' liegt der Beginn der Langzeitsimulation . : ',a/"
          "              3x, ' nicht vor ihrem Ende .................... : ',a)">("A15", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt beim Element ...................... : ',a/"
          "              3x, ' der Anfangszustand für die Langzeitsimulation!')">("A16", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist das Zeitintervall der Langzeitsimulation'/"
          "              3x, ' mit (min) ............................... : ',f9.3/"
          "              3x, ' kein Teiler des Regenintervalls (min) ... : ',f9.3)">("A17", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Warnung: In der Tabelle ................. : ',a/"
          "              3x, '          gehört das Element ............. : ',a/"
          "              3x, '          nicht zur Systemlogik. Die Zeile'/"
          "              3x, '          wird überlesen.')">("A18", note, text1, text2),
    entry<"(a,  ' Die Tabelle ............................. : ',a/"
          "              3x, ' enthält keine einzige Datenzeile!')">("A19", error, text1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist beim Element ........................ : ',a/"
          "              3x, ' die Nummer der Rechenoption ............. : ',i5/"
          "              3x, ' unzulässig. Größte zulässige Nummer ..... : ',i5)">("A20", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,1x,  '    Datenbank-Fehler: Kontakt zu TRM Wasser aufnehmen!')">("A99", error),
};
inline constexpr Group A_group{"A", "tables in general", A_entries};

inline constexpr Entry F_entries[] = {
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' steht bei der Fläche .................... : ',a/"
          "              3x, ' an der Stelle von Qmax ein Konzentrationsparameter!')">("F01", error, text1,
                                                                                       text2),
    entry<"(a,  ' In der Tabelle .......................... : ',A/"
          "              3X, ' ist der Befestigungsgrad bei der Fläche   : ',a/"
          "              3X, ' größer als 1.0 (Verzerrung?)!')">("F02", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der Fläche ...................... : ',a/"
          "              3x, ' der Befestigungsgrad .................... : ',f9.3/"
          "              3x, ' negativ! Zulässig sind Werte von 0 bis 1.')">("F03", error, text1, text2,
                                                                             real1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt bei der Fläche .................... : ',a/"
          "              3x, ' die Höhendifferenz. Das Gebietsgefälle kann nicht'/"
          "              3x, ' bestimmt werden.')">("F04", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der Fläche ...................... : ',a/"
          "              3x, ' die Höhendifferenz (m) .................. : ',f9.3/"
          "              3x, ' nicht größer als null!')">("F05", error, text1, text2, real1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der Fläche ...................... : ',a/"
          "              3x, ' die Höhendifferenz (m) .................. : ',f9.3/"
          "              3x, ' größer als die Länge des Fließwegs (m) .. : ',f9.3)">("F06", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt bei der natürlichen Fläche ........ : ',a/"
          "              3x, ' die Einzugsgebietsfläche AEO!')">("F07", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der natürlichen Fläche .......... : ',a/"
          "              3x, ' die Einzugsgebietsfläche AEO (qkm) ...... : ',f9.3/"
          "              3x, ' negativ!')">("F08", error, text1, text2, real1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der natürlichen Fläche .......... : ',a/"
          "              3x, ' die Fläche AEOpnat (qkm) ................ : ',f9.3/"
          "              3x, ' größer als die Einzugsgebietsfläche'/"
          "              3x, ' AEO (qkm) ............................... : ',f9.3)">("F09", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt bei der natürlichen Fläche ........ : ',a/"
          "              3x, ' die Fläche AEOpnat!')">("F10", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der Fläche ...................... : ',a/"
          "              3x, ' die Konzentrationszeit (h) .............. : ',f9.3/"
          "              3x, ' unzulässig!'/"
          "              3x, ' Zulässig sind Werte über 0 bis (h) ...... : ',f9.3)">("F11", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' dürfen ab der Version 7.02 von KARVOS keine'/"
          "              3x, ' Konzentrationsparameter mehr stehen. Die Stelle'/"
          "              3x, ' ist für Qmax reserviert. Bitte die Datei mit dem'/"
          "              3x, ' Werkzeug Karvos_upd aktualisieren!')">("F12", error, text1),
    entry<"(a,  ' Hinweis: Die Datei ...................... : ',a/"
          "              3x, '          wurde aktualisiert. Sie enthält keine'/"
          "              3x, '          Konzentrationsparameter mehr.')">("F13", note, text1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der Fläche ...................... : ',a/"
          "              3x, ' die Anzahl der Speicher der Kaskade ..... : ',i5/"
          "              3x, ' unzulässig! Zulässig sind 1 bis ......... : ',i5)">("F14", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' weicht bei der Fläche ................... : ',a/"
          "              3x, ' die Summe der Teilflächen (qkm) ......... : ',f9.3/"
          "              3x, ' von der Gesamtfläche (qkm) .............. : ',f9.3/"
          "              3x, ' ab!')">("F15", error, text1, text2, real1, real2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' hat die natürliche Fläche ............... : ',a/"
          "              3x, ' den Befestigungsgrad .................... : ',f9.3/"
          "              3x, ' Befestigte Flächen sind als kanalisierte Flächen'/"
          "              3x, ' zu führen!')">("F16", error, text1, text2, real1),
};
inline constexpr Group F_group{"F", "tables of areas", F_entries};

inline constexpr Entry G_entries[] = {
    entry<"(a,  ' Beim Gebiet ............................. : ',a/"
          "              3x, ' ist das angegebene Endelement ........... : ',a/"
          "              3x, ' in der Systemlogik nicht vorhanden!')">("G01", error, text1, text2),
    entry<"(a,  ' Warnung: Die Abflussspende im Gebiet .... : ',a/"
          "              3x, '          liegt mit (l/(s*qkm)) .......... : ',f9.3/"
          "              3x, '          außerhalb des üblichen Bereichs.')">("G02", note, text1, real1),
    entry<"(a,  ' Warnung: Die Fläche des Gebiets ......... : ',a/"
          "              3x, '          weicht mit (qkm) ............... : ',f9.3/"
          "              3x, '          von der Summe der Flächen seiner'/"
          "              3x, '          Elemente (qkm) ................. : ',f9.3/"
          "              3x, '          ab.')">("G03", note, text1, real1, real2),
    entry<"(a,  ' Hinweis: Für das Gebiet ................. : ',a/"
          "              3x, '          ist kein Endelement angegeben. Es'/"
          "              3x, '          wird der Gebietsauslass verwendet.')">("G04", note, text1),
    entry<"(a,  ' Die Fläche des Gebiets .................. : ',a/"
          "              3x, ' ist null. Am Endelement ................. : ',a/"
          "              3x, ' kann die Abflussspende nicht berechnet werden!')">("G05", error, text1, text2),
};
inline constexpr Group G_group{"G", "catchments", G_entries};

inline constexpr Entry J_entries[] = {
    entry<"(a3,1x,'In tbl_jgg ist der Jahresgang ...... : ',a/"
          "                 4x,'mehrfach definiert!')">("J01", error, text1),
    entry<"(a,  ' Für das Element ......................... : ',a/"
          "              3x, ' fehlt in tbl_jgg der Jahresgang ......... : ',a)">("J02", error, text1, text2),
    entry<"(a,  ' In tbl_jgg hat der Jahresgang ........... : ',a/"
          "              3x, ' nicht zwölf Monatswerte, sondern ........ : ',i5)">("J03", error, text1, int1),
    entry<"(a,  ' In tbl_jgg ist beim Jahresgang .......... : ',a/"
          "              3x, ' im Monat ................................ : ',i5/"
          "              3x, ' der Monatswert .......................... : ',f9.3/"
          "              3x, ' negativ!')">("J04", error, text1, int1, real1),
    entry<"(a,  ' In tbl_jgg ist beim Jahresgang .......... : ',a/"
          "              3x, ' der Mittelwert der Monatswerte .......... : ',f9.3/"
          "              3x, ' ungleich 1!')">("J05", error, text1, real1),
};
inline constexpr Group J_group{"J", "annual cycles", J_entries};

inline constexpr Entry K_entries[] = {
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' fehlt die Kennlinie ..................... : ',a)">("K01", error, text1, text2),
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' hat die Kennlinie ....................... : ',a/"
          "              3x, ' zu wenige Wertepaare. Anzahl ............ : ',i5/"
          "              3x, ' Mindestens zwei Wertepaare sind erforderlich.')">("K02", error, text1, text2,
                                                                                 int1),
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' hat die Kennlinie ....................... : ',a/"
          "              3x, ' zu viele Wertepaare. Anzahl ............. : ',i5/"
          "              3x, ' Zulässige Anzahl ........................ : ',i5)">("K03", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' ist die Kennlinie ....................... : ',a/"
          "              3x, ' ab dem Wertepaar Nr. .................... : ',i5/"
          "              3x, ' nicht ansteigend!')">("K04", error, text1, text2, int1),
    entry<"(a,  ' Warnung: Beim Element ................... : ',a/"
          "              3x, '          beginnt die Kennlinie .......... : ',a/"
          "              3x, '          nicht bei null, sondern bei .... : ',f9.3)">("K05", note, text1,
                                                                                     text2, real1),
    entry<"(a,  ' Warnung: Beim Element ................... : ',a/"
          "              3x, '          wird die Kennlinie ............. : ',a/"
          "              3x, '          überschritten. Ihr Endwert ..... : ',f9.3/"
          "              3x, '          Benötigter Wert ................ : ',f9.3/"
          "              3x, '          Die Kennlinie wird linear verlängert.')">("K06", note, text1, text2,
                                                                                  real1, real2),
    entry<"(a,  ' Hinweis: Beim Element ................... : ',a/"
          "              3x, '          enthält die Kennlinie .......... : ',a/"
          "              3x, '          zweimal das Wertepaar Nr. ...... : ',i5/"
          "              3x, '          Das zweite wird übergangen.')">("K07", note, text1, text2, int1),
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' hat die Kennlinie ....................... : ',a/"
          "              3x, ' beim Wertepaar Nr. ...................... : ',i5/"
          "              3x, ' einen negativen Wert .................... : ',f9.3)">("K08", error, text1,
                                                                                     text2, int1, real1),
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' ist die Art der Kennlinie ............... : ',a/"
          "              3x, ' unbekannt!')">("K09", error, text1, text2),
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' passt die Kennlinie ..................... : ',a/"
          "              3x, ' nicht zur Kennlinie ..................... : ',a/"
          "              3x, ' Bitte beide Kennlinien prüfen!')">("K10", level_from_int1, text1, text2,
                                                                  text3),
};
inline constexpr Group K_group{"K", "characteristic curves", K_entries};

inline constexpr Entry R_entries[] = {
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist kein Regen enthalten!')">("R00", error, text1),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' fehlt der Regen Nr. ..................... : ',i5)">("R01", error, text1, int1),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist der Regen Nr. ....................... : ',i5/"
          "              3x, ' mehrfach vorhanden!')">("R02", error, text1, int1),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist die Regennummer ..................... : ',a/"
          "              3x, ' unzulässig!'/"
          "              3x, ' Zulässig sind ganze Zahlen größer als null.')">("R03", error, text1, text2),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' fehlt beim Regen Nr. .................... : ',i5/"
          "              3x, ' das Zeitintervall!')">("R04", error, text1, int1),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist beim Regen Nr. ...................... : ',i5/"
          "              3x, ' das Zeitintervall (min) ................. : ',f9.3/"
          "              3x, ' nicht größer als null!')">("R05", error, text1, int1, real1),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist beim Regen Nr. ...................... : ',i5/"
          "              3x, ' das Zeitintervall (min) ................. : ',f9.3/"
          "              3x, ' kein Vielfaches des Zeitintervalls der'/"
          "              3x, ' Berechnung (min) ........................ : ',f9.3)">("R06", error, text1,
                                                                                     int1, real1, real2),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist der Regen Nr. ....................... : ',i9/"
          "              3x, ' unvollständig!'/"
          "              3x, ' Erforderliche Anzahl der Werte .......... : ',i9/"
          "              3x, ' Vorhandene Anzahl der Werte ............. : ',i9)">("R09", error, text1, int1,
                                                                                   int2, int3),
};
inline constexpr Group R_group{"R", "rain tables", R_entries};

}  // namespace m_WLM_error::catalogue
