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
          "              3x, ' die Nummer des zugehörigen Regens.')">("A01", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt beim Element ...................... : ',a/"
          "              3x, ' die Nummer der Steuerfunktion.')">("A02", error, text1, text2),
    entry<"(              A3, ' In der Tabelle .......................... : ',A/"
          "              3X, ' liegt ein Formatfehler vor bei .......... : ',A)">("A03", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt die Kopfzeile vor dem Element ..... : ',a/"
          "              3x, ' Bitte die Tabelle mit der Vorlage vergleichen.')">("A04", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' enthält die Zeile Nr. ................... : ',i5/"
          "              3x, ' zu wenige Werte. Verlangt werden ........ : ',i5)">("A05", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist die Zeile Nr. ....................... : ',i5/"
          "              3x, ' nicht lesbar. Erster Eintrag ............ : ',a)">("A06", error, text1, int1,
                                                                                  text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' liegt der Ausgabezeitpunkt (h) .......... : ',f9.3/"
          "              3x, ' nach dem Ende der Berechnung (h) ........ : ',f9.3)">("A07", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' liegt der Ausgabezeitpunkt Nr. .......... : ',i5/"
          "              3x, ' nicht nach dem vorhergehenden. Die Ausgabezeiten'/"
          "              3x, ' müssen ansteigen!')">("A08", error, text1, int1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist die Anzahl der Ausgabezeitpunkte .... : ',i5/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i5)">("A09", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlen die Unterwasserdaten am Element .. : ',a/"
          "              3x, ' Für die Stauberechnung werden sie benötigt.')">("A10", error, text1, text2),
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
          "              3x, ' nicht größer als die vorhergehende Stufe!')">("A13", error, text1, text2,
                                                                             int1),
    entry<"(a,  ' In der Tabelle ........................ : ',A/"
          "              3X, ' ist das Element ....................... : ',A/"
          "              3X, ' mehrfach aufgeführt.')">("A14", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' liegt der Beginn der Langzeitsimulation . : ',a/"
          "              3x, ' nicht vor ihrem Ende .................... : ',a)">("A15", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt zur Langzeitsimulation am Element . : ',a/"
          "              3x, ' der Anfangszustand.')">("A16", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist das Langzeitintervall (h) ........... : ',f9.3/"
          "              3x, ' kein Teiler des Regenintervalls (h) ..... : ',f9.3)">("A17", error, text1,
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
          "              3x, ' nicht zulässig. Größte zulässige Nummer . : ',i5)">("A20", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,1x,  '    Datenbank-Fehler: Kontakt zu TRM Wasser aufnehmen!')">("A99", error),
};
inline constexpr Group A_group{"A", "tables in general", A_entries};

inline constexpr Entry F_entries[] = {
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt jeder Konzentrationsparameter bei . : ',a)">("F01", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',A/"
          "              3X, ' ist der Befestigungsgrad bei der Fläche   : ',a/"
          "              3X, ' größer als 1.0 (Verzerrung?)!')">("F02", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist der Befestigungsgrad bei der Fläche . : ',a/"
          "              3x, ' negativ. Gelesener Wert ................. : ',f9.3)">("F03", error, text1,
                                                                                     text2, real1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt die Höhendifferenz bei der Fläche . : ',a/"
          "              3x, ' (Gebietsgefälle nicht bestimmbar)')">("F04", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der Fläche ...................... : ',a/"
          "              3x, ' die Höhendifferenz (m) .................. : ',f9.3/"
          "              3x, ' kleiner oder gleich null!')">("F05", error, text1, text2, real1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der Fläche ...................... : ',a/"
          "              3x, ' die Höhendifferenz (m) .................. : ',f9.3/"
          "              3x, ' größer als die Länge des Fließwegs (m) .. : ',f9.3)">("F06", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt die Flächengröße AEO beim Element . : ',a)">("F07", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der natürlichen Fläche .......... : ',a/"
          "              3x, ' das Einzugsgebiet AEO negativ (qkm) ..... : ',f9.3)">("F08", error, text1,
                                                                                     text2, real1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der natürlichen Fläche .......... : ',a/"
          "              3x, ' die Fläche AEOpnat (qkm) ................ : ',f9.3/"
          "              3x, ' größer als die Fläche AEO (qkm) ......... : ',f9.3)">("F09", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt bei der natürlichen Fläche ........ : ',a/"
          "              3x, ' die Angabe der Fläche AEOpnat.')">("F10", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' liegt bei der Fläche .................... : ',a/"
          "              3x, ' die Konzentrationszeit (h) .............. : ',f9.3/"
          "              3x, ' außerhalb des zulässigen Bereichs!')">("F11", error, text1, text2, real1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' dürfen ab der Version 7.02 von KARVOS keine'/"
          "              3x, ' Konzentrationsparameter mehr stehen. Die Stelle'/"
          "              3x, ' ist für Qmax reserviert. Bitte die Datei mit dem'/"
          "              3x, ' Werkzeug Karvos_upd aktualisieren!')">("F12", error, text1),
    entry<"(a,  ' Hinweis: Die Datei ...................... : ',a/"
          "              3x, '          wurde aktualisiert. Die Konzentra-'/"
          "              3x, '          tionsparameter wurden entfernt.')">("F13", note, text1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist bei der Fläche ...................... : ',a/"
          "              3x, ' die Anzahl der Speicherkaskaden ......... : ',i5/"
          "              3x, ' nicht zulässig. Höchstens zulässig sind . : ',i5)">("F14", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' weicht bei der Fläche ................... : ',a/"
          "              3x, ' die Summe der Teilflächen (qkm) ......... : ',f9.3/"
          "              3x, ' von der Gesamtfläche (qkm) ab ........... : ',f9.3)">("F15", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' weist die natürliche Fläche ............. : ',a/"
          "              3x, ' einen Befestigungsgrad auf von .......... : ',f9.3/"
          "              3x, ' Befestigte Flächen sind als kanalisierte Flächen'/"
          "              3x, ' zu führen!')">("F16", error, text1, text2, real1),
};
inline constexpr Group F_group{"F", "tables of areas", F_entries};

inline constexpr Entry G_entries[] = {
    entry<"(a,  ' Beim Gebiet ............................. : ',a/"
          "              3x, ' ist das angegebene Endelement ........... : ',a/"
          "              3x, ' in der Systemlogik nicht vorhanden!')">("G01", error, text1, text2),
    entry<"(a,  ' Warnung: Die Abflussspende im Gebiet .... : ',a/"
          "              3x, '          mit dem Wert (l/s qkm) ......... : ',f9.3/"
          "              3x, '          liegt außerhalb des üblichen Bereichs.')">("G02", note, text1, real1),
    entry<"(a,  ' Warnung: Die Fläche des Gebiets ......... : ',a/"
          "              3x, '          weicht mit (qkm) ............... : ',f9.3/"
          "              3x, '          von der Summe seiner Elemente'/"
          "              3x, '          ab. Summe (qkm) ................ : ',f9.3)">("G03", note, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Hinweis: Für das Gebiet ................. : ',a/"
          "              3x, '          ist kein Endelement angegeben. Es'/"
          "              3x, '          wird der Gebietsauslass verwendet.')">("G04", note, text1),
    entry<"(a,  ' Die Fläche des Gebiets .................. : ',a/"
          "              3x, ' ist null. Die Spende am Endelement ...... : ',a/"
          "              3x, ' kann nicht berechnet werden.')">("G05", error, text1, text2),
};
inline constexpr Group G_group{"G", "catchments", G_entries};

inline constexpr Entry J_entries[] = {
    entry<"(a3,1x,'In tbl_jgg ist der Jahresgang ...... : ',a/"
          "                 4x,'mehrfach definiert!')">("J01", error, text1),
    entry<"(a,  ' In tbl_jgg fehlt der Jahresgang ......... : ',a/"
          "              3x, ' Er wird verlangt vom Element ............ : ',a)">("J02", error, text1, text2),
    entry<"(a,  ' In tbl_jgg hat der Jahresgang ........... : ',a/"
          "              3x, ' nicht zwölf Monatswerte, sondern ........ : ',i5)">("J03", error, text1, int1),
    entry<"(a,  ' In tbl_jgg ist beim Jahresgang .......... : ',a/"
          "              3x, ' der Wert negativ im Monat ............... : ',i5/"
          "              3x, ' Gelesener Wert .......................... : ',f9.3)">("J04", error, text1,
                                                                                     int1, real1),
    entry<"(a,  ' In tbl_jgg ist beim Jahresgang .......... : ',a/"
          "              3x, ' das Monatsmittel nicht 1, sondern ....... : ',f9.3)">("J05", error, text1,
                                                                                     real1),
};
inline constexpr Group J_group{"J", "annual cycles", J_entries};

inline constexpr Entry K_entries[] = {
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' fehlt die Kennlinie ..................... : ',a)">("K01", error, text1, text2),
    entry<"(a,  ' Die Kennlinie beim Element .............. : ',a/"
          "              3x, ' hat zu wenige Stützstellen. Anzahl ...... : ',i5/"
          "              3x, ' Mindestens zwei Stützstellen werden benötigt.')">("K02", error, text1, int1),
    entry<"(a,  ' Die Kennlinie beim Element .............. : ',a/"
          "              3x, ' hat zu viele Stützstellen. Anzahl ....... : ',i5/"
          "              3x, ' Zulässige Anzahl ........................ : ',i5)">("K03", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' Die Kennlinie beim Element .............. : ',a/"
          "              3x, ' ist rückläufig an der Stützstelle Nr. ... : ',i5/"
          "              3x, ' Die Werte müssen ansteigen!')">("K04", error, text1, int1),
    entry<"(a,  ' Warnung: Die Kennlinie beim Element ..... : ',a/"
          "              3x, '          beginnt nicht bei null, sondern'/"
          "              3x, '          beim Wert ...................... : ',f9.3)">("K05", note, text1,
                                                                                     real1),
    entry<"(a,  ' Warnung: Die Kennlinie beim Element ..... : ',a/"
          "              3x, '          wird überschritten. Endwert .... : ',f9.3/"
          "              3x, '          Verlangter Wert ................ : ',f9.3/"
          "              3x, '          Die Kennlinie wird linear verlängert.')">("K06", note, text1, real1,
                                                                                  real2),
    entry<"(a,  ' Hinweis: Die Kennlinie beim Element ..... : ',a/"
          "              3x, '          enthält eine doppelte Stützstelle.'/"
          "              3x, '          Es entfällt Stützstelle Nr. .... : ',i5)">("K07", note, text1, int1),
    entry<"(a,  ' Die Kennlinie beim Element .............. : ',a/"
          "              3x, ' enthält einen negativen Wert ............ : ',f9.3/"
          "              3x, ' an der Stützstelle Nr. .................. : ',i5)">("K08", error, text1, real1,
                                                                                   int1),
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' ist die Art der Kennlinie unbekannt ..... : ',a)">("K09", error, text1, text2),
    entry<"(a,  ' Die Kennlinien beim Element ............. : ',a/"
          "              3x, ' passen nicht zueinander. Betroffen ist .. : ',a/"
          "              3x, ' Bitte beide Kennlinien prüfen!')">("K10", level_from_int1, text1, text2),
};
inline constexpr Group K_group{"K", "characteristic curves", K_entries};

inline constexpr Entry R_entries[] = {
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist kein Regen enthalten!')">("R00", error, text1),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' fehlt der Regen Nr. ..................... : ',i5)">("R01", error, text1, int1),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist mehrfach vorhanden der Regen Nr. .... : ',i5)">("R02", error, text1, int1),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist die Regennummer unzulässig .......... : ',a/"
          "              3x, ' Zulässig sind ganze Zahlen größer als null.')">("R03", error, text1, text2),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' fehlt das Zeitintervall beim Regen Nr. .. : ',i5)">("R04", error, text1, int1),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist das Zeitintervall beim Regen Nr. .... : ',i5/"
          "              3x, ' nicht größer als null. Gelesen (min) .... : ',f9.3)">("R05", error, text1,
                                                                                     int1, real1),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' hat der Regen Nr. ....................... : ',i5/"
          "              3x, ' das Zeitintervall (min) ................. : ',f9.3/"
          "              3x, ' Berechnungsintervall (min) .............. : ',f9.3/"
          "              3x, ' Das Regenintervall muss ein Vielfaches davon sein!')">("R06", error, text1,
                                                                                      int1, real1, real2),
    entry<"(a,  ' In der Regentabelle ..................... : ',a/"
          "              3x, ' ist unvollständig der Regen Nr. ......... : ',i5/"
          "              3x, ' Verlangte Anzahl der Niederschlagshöhen . : ',i5/"
          "              3x, ' Vorhandene Anzahl ....................... : ',i5)">("R09", error, text1, int1,
                                                                                   int2, int3),
};
inline constexpr Group R_group{"R", "rain tables", R_entries};

}  // namespace m_WLM_error::catalogue
