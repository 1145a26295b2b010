#pragma once

#include "m_WLM_error/catalogue/entry.h"

// Inflows and hydrographs, discharge files, basins, iterations, files and databases.

namespace m_WLM_error::catalogue {

inline constexpr Entry B_entries[] = {
    entry<"(a,  ' Beim Becken ............................. : ',a/"
          "              3x, ' ist die Kennziffer ...................... : ',i5/"
          "              3x, ' unzulässig!'/"
          "              3x, ' Größte zulässige Kennziffer ............. : ',i5)">("B01", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' Beim Becken ............................. : ',a/"
          "              3x, ' fehlt die Kennziffer für die Art der Abgabe!')">("B02", error, text1),
    entry<"(a,  ' Beim Becken ............................. : ',a/"
          "              3x, ' ist die geregelte Abgabe (cbm/s) ........ : ',f9.3/"
          "              3x, ' größer als die Höchstabgabe (cbm/s) ..... : ',f9.3)">("B04", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Für die geregelte Abgabe des Beckens .... : ',a/"
          "              3x, ' fehlt der Pegel ......................... : ',a)">("B05", error, text1, text2),
    entry<"(a,  ' Die Volumenkurve des Beckens ............ : ',a/"
          "              3x, ' hat zu wenige Wertepaare. Anzahl ........ : ',i5/"
          "              3x, ' Mindestens zwei Wertepaare sind erforderlich.')">("B06", error, text1, int1),
    entry<"(a,  ' Die Volumenkurve des Beckens ............ : ',a/"
          "              3x, ' ist ab dem Wertepaar Nr. ................ : ',i5/"
          "              3x, ' nicht ansteigend!'/"
          "              3x, ' Wasserstand (m+NN) ...................... : ',f9.3/"
          "              3x, ' Volumen (cbm) ........................... : ',f12.1)">("B07", error, text1,
                                                                                      int1, real1, real2),
    entry<"(a,  ' Warnung: Beim Becken .................... : ',a/"
          "              3x, '          wird die Volumenkurve über ihren'/"
          "              3x, '          Endpunkt hinaus verlängert'/"
          "              3x, '          um (m) ......................... : ',f9.3)">("B08", note, text1,
                                                                                     real1),
    entry<"(a,  ' Beim Becken ............................. : ',a/"
          "              3x, ' reicht die Volumenkurve nur bis (m+NN) .. : ',f9.3/"
          "              3x, ' Die Überlaufkante liegt bei (m+NN) ...... : ',f9.3)">("B09", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Beim Becken ............................. : ',a/"
          "              3x, ' ist die Versickerungsrate (mm/h) ........ : ',f9.3/"
          "              3x, ' negativ!')">("B10", error, text1, real1),
    entry<"(a,  ' Hinweis: Beim Becken .................... : ',a/"
          "              3x, '          wird die Versickerung nicht'/"
          "              3x, '          berücksichtigt: Die Sohlfläche fehlt.')">("B11", note, text1),
};
inline constexpr Group B_group{"B", "retention basins", B_entries};

inline constexpr Entry D_entries[] = {
    entry<"(A3, ' Die Datei: ',A/"
          "              3X, ' kann nicht geschlossen werden.'/"
          "              3X, ' Sie ist vermutlich durch ein anderes Programm gesperrt.')">("D10", error,
                                                                                           text1),
    entry<"(a,  ' Die Datenbank-Tabelle ................... : \"',a/"
          "              3x, ' ist noch geöffnet. Sie kann nicht überschrieben werden.')">("DB0", error,
                                                                                           text1),
    entry<"(a,  ' Die Datei ............................... : ',a/"
          "              3x, ' ist falsch benannt. Erwarteter Name ..... : ',a)">("D11", error, text1, text2),
};
inline constexpr Group D_group{"D", "files and database tables", D_entries};

inline constexpr Entry E_entries[] = {
    entry<"(a,  ' Beim Zufluss ............................ : ',a/"
          "              3x, ' fehlt die Abflusskurve!')">("E01", error, text1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' hat die Abflusskurve des Zuflusses ...... : ',a/"
          "              3x, ' zu wenige Wertepaare. Anzahl ............ : ',i5/"
          "              3x, ' Erforderliche Anzahl .................... : ',i5)">("E03", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' sind beim Zufluss ....................... : ',a/"
          "              3x, ' die Zeiten ab dem Wertepaar Nr. ......... : ',i9/"
          "              3x, ' nicht ansteigend!')">("E04", error, text1, text2, int1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' hat der Zufluss ......................... : ',a/"
          "              3x, ' einen negativen Abfluss (cbm/s) ......... : ',f9.3)">("E05", error, text1,
                                                                                     text2, real1),
    entry<"(a,  ' Warnung: Beim Zufluss ................... : ',a/"
          "              3x, '          endet die Abflusskurve bei (h) . : ',f9.3/"
          "              3x, '          die Berechnung erst bei (h) .... : ',f9.3/"
          "              3x, '          Der letzte Wert wird beibehalten.')">("E06", note, text1, real1,
                                                                              real2),
    entry<"(a,  ' Für den Zufluss ......................... : ',a/"
          "              3x, ' fehlt die Ganglinie ..................... : ',a)">("E10", error, text1, text2),
    entry<"(a,  ' In der Gangliniendatei .................. : ',a/"
          "              3x, ' ist die Ganglinie ....................... : ',a/"
          "              3x, ' mehrfach vorhanden!')">("E11", error, text1, text2),
    entry<"(a,  ' Die Ganglinie ........................... : ',a/"
          "              3x, ' hat ein anderes Zeitintervall (min) ..... : ',f9.3/"
          "              3x, ' als die Berechnung (min) ................ : ',f9.3)">("E12", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' In der Ganglinie ........................ : ',a/"
          "              3x, ' fehlen Werte. Anzahl der Lücken ......... : ',i9/"
          "              3x, ' Beginn der ersten Lücke ................. : ',a)">("E13", error, text1, int1,
                                                                                  text2),
    entry<"(a,  ' Die Ganglinie ........................... : ',a/"
          "              3x, ' beginnt erst am ......................... : ',a/"
          "              3x, ' Die Berechnung beginnt bereits am ....... : ',a)">("E14", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' Hinweis: Die Ganglinie am Zufluss ....... : ',a/"
          "              3x, '          wurde multipliziert'/"
          "              3x, '          mit dem Faktor ................. : ',f9.3)">("E20", note, text1,
                                                                                     real1),
    entry<"(a,  ' Die Gangliniendatei ..................... : ',a/"
          "              3x, ' fehlt oder kann nicht geöffnet werden!')">("E30", error, text1),
    entry<"(a,  ' Die Gangliniendatei ..................... : ',a/"
          "              3x, ' ist keine HDF5-Datei!')">("E31", error, text1),
    entry<"(a,  ' In der HDF5-Datei ....................... : ',a/"
          "              3x, ' fehlt die Gruppe ........................ : ',a)">("E32", error, text1, text2),
    entry<"(a,  ' In der HDF5-Datei ....................... : ',a/"
          "              3x, ' kann die Gruppe ......................... : ',a/"
          "              3x, ' nicht geöffnet werden!'/"
          "              3x, ' (evtl. beschädigte Datei)')">("E33", error, text1, text2),
    entry<"(a,  ' In der HDF5-Datei ....................... : ',a/"
          "              3x, ' fehlt in der Gruppe ..................... : ',a/"
          "              3x, ' der Datensatz ........................... : ',a)">("E34", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' In der HDF5-Datei ....................... : ',a/"
          "              3x, ' hat der Datensatz ....................... : ',a/"
          "              3x, ' eine falsche Länge. Anzahl der Werte .... : ',i9/"
          "              3x, ' Erwartete Anzahl ........................ : ',i9)">("E35", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' In der HDF5-Datei ....................... : ',a/"
          "              3x, ' wird die PELO-Ganglinie erwartet ........ : ',a/"
          "              3x, ' Sie ist dort nicht enthalten.')">("E36", error, text1, text2),
    entry<"(a,  ' In der HDF5-Datei ....................... : ',a/"
          "              3x, ' enthält der Datensatz ................... : ',a/"
          "              3x, ' keine Zahlen!')">("E37", error, text1, text2),
    entry<"(a,  ' In der HDF5-Datei ....................... : ',a/"
          "              3x, ' fehlt beim Datensatz .................... : ',a/"
          "              3x, ' das Attribut ............................ : ',a)">("E38", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' In der HDF5-Datei ....................... : ',a/"
          "              3x, ' hat der Datensatz ....................... : ',a/"
          "              3x, ' die unzulässige Einheit ................. : ',a/"
          "              3x, ' Zulässig ist nur die Einheit cbm/s.')">("E39", error, text1, text2, text3),
    entry<"(a,  ' In die HDF5-Datei ....................... : ',a/"
          "              3x, ' kann der Datensatz ...................... : ',a/"
          "              3x, ' nicht geschrieben werden!'/"
          "              3x, ' Fehlernummer ............................ : ',i9)">("E40", error, text1, text2,
                                                                                   int1),
};
inline constexpr Group E_group{"E", "inflows, hydrographs and HDF5 files", E_entries};

inline constexpr Entry I_entries[] = {
    entry<"(a,  ' Die Iteration an der Station (km) ....... : ',f7.3/"
          "              3x, ' beim Abfluss Q (cbm/s) .................. : ',f7.3/"
          "              3x, ' benötigt mehr Schritte als zulässig ..... : ',i4/"
          "              3x, ' Abbruch!')">("I01", error, real1, real2, int1),
};
inline constexpr Group I_group{"I", "limits of iterations", I_entries};

inline constexpr Entry Q_entries[] = {
    entry<"(a,  ' In der Abflussdatei ..................... : ',a/"
          "              3x, ' fehlt die Kopfzeile mit den Spaltennamen!')">("Q10", error, text1),
    entry<"(a,  ' In der Abflussdatei ..................... : ',a/"
          "              3x, ' fehlt in der Kopfzeile die Spalte ....... : ',a)">("Q20", error, text1, text2),
    entry<"(a,  ' In der Abflussdatei ..................... : ',a/"
          "              3x, ' fehlt in der Zeile Nr. .................. : ',i9/"
          "              3x, ' die Station!')">("Q31", error, text1, int1),
    entry<"(a,  ' In der Abflussdatei ..................... : ',a/"
          "              3x, ' ist in der Zeile Nr. .................... : ',i9/"
          "              3x, ' die Station ............................. : ',a/"
          "              3x, ' nicht lesbar!')">("Q33", error, text1, int1, text2),
    entry<"(a,  ' In der Abflussdatei ..................... : ',a/"
          "              3x, ' fehlt in der Zeile Nr. .................. : ',i9/"
          "              3x, ' die Gewässerkennzahl!')">("Q41", error, text1, int1),
    entry<"(a,  ' In der Abflussdatei ..................... : ',a/"
          "              3x, ' steht bei der Gewässerkennzahl .......... : ',a/"
          "              3x, ' die Station (km) ........................ : ',f9.3/"
          "              3x, ' nicht in ansteigender Reihenfolge!')">("Q51", error, text1, text2, real1),
    entry<"(a,  ' In der Abflussdatei ..................... : ',a/"
          "              3x, ' ist bei der Gewässerkennzahl ............ : ',a/"
          "              3x, ' die Station (km) ........................ : ',f9.3/"
          "              3x, ' mehrfach vorhanden!')">("Q53", error, text1, text2, real1),
    entry<"(a,  ' In der Abflussdatei ..................... : ',a/"
          "              3x, ' fehlt die Gewässerkennzahl .............. : ',a)">("Q60", error, text1, text2),
    entry<"(a,  ' In der Abflussdatei ..................... : ',a/"
          "              3x, ' ist die Gewässerkennzahl ................ : ',a/"
          "              3x, ' unzulässig!')">("Q61", error, text1, text2),
    entry<"(a,  ' In der Abflussdatei ..................... : ',a/"
          "              3x, ' gehört zur Gewässerkennzahl ............. : ',a/"
          "              3x, ' keine Station der Profildatei ........... : ',a)">("Q62", error, text1, text2,
                                                                                  text3),
};
inline constexpr Group Q_group{"Q", "discharge files", Q_entries};

}  // namespace m_WLM_error::catalogue
