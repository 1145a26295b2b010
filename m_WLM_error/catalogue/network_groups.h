#pragma once

#include "m_WLM_error/catalogue/entry.h"

// The network: reaches, branchings, control functions, limits of the model, calculation variants, control
// files.

namespace m_WLM_error::catalogue {

inline constexpr Entry M_entries[] = {
    entry<"(a,  ' Die Anzahl der natürlichen Flächen ...... : ',i5/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i5)">("M01", error, int1, int2),
    entry<"(a,  ' Die Anzahl der kanalisierten Flächen .... : ',i5/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i5)">("M02", error, int1, int2),
    entry<"(a,  ' Die Anzahl der Zuflüsse ................. : ',i5/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i5/"
          "              3x, ' Überzählig ist erstmals der Zufluss ..... : ',a)">("M03", error, int1, int2,
                                                                                  text1),
    entry<"(a,  ' Die Anzahl der Transportstrecken ........ : ',i5/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i5/"
          "              3x, ' Überzählig ist erstmals die Strecke ..... : ',a)">("M04", error, int1, int2,
                                                                                  text1),
    entry<"(a,  ' Die Anzahl der Verzweigungen ............ : ',i5/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i5/"
          "              3x, ' Überzählig ist erstmals die Verzweigung . : ',a)">("M05", error, int1, int2,
                                                                                  text1),
    entry<"(a,  ' Die Anzahl der Becken ................... : ',i5/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i5/"
          "              3x, ' Überzählig ist erstmals das Becken ...... : ',a)">("M06", error, int1, int2,
                                                                                  text1),
    entry<"(a,  ' Die Anzahl der Teilstrecken im Element .. : ',a/"
          "              3x, ' überschreitet mit ....................... : ',i5/"
          "              3x, ' die zulässige Anzahl .................... : ',i5)">("M07", error, text1, int1,
                                                                                   int2),
};
inline constexpr Group M_group{"M", "maximum counts of elements", M_entries};

inline constexpr Entry T_entries[] = {
    entry<"(a,  ' In der TRS-Tabelle ..................... : ',a/"
          "              4x, ' fehlt die zweite Zeile der Strecke ..... : ',a)">("TRS0", error, text1, text2),
    entry<"(a,  ' In der TRS-Tabelle ..................... : ',a/"
          "              4x, ' ist bei der Transportstrecke ........... : ',a/"
          "              4x, ' die Zeile nicht lesbar. Zeile Nr. ...... : ',i5)">("TRS1", error, text1, text2,
                                                                                  int1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist keine Transportstrecke enthalten!')">("T00", error, text1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt die Länge der Transportstrecke .... : ',a)">("T01", error, text1, text2),
    entry<"(a,  ' Die Transportstrecke .................... : ',a/"
          "              3x, ' hat eine unzulässige Länge (m) .......... : ',f9.1)">("T02", error, text1,
                                                                                     real1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' fehlt das Gefälle!')">("T03", error, text1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' liegt die Sohle am Ende (m+NN) .......... : ',f9.3/"
          "              3x, ' höher als am Anfang (m+NN) .............. : ',f9.3)">("T04", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' fehlt die Fließzeit!')">("T05", error, text1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' ist die Fließzeit negativ (h) ........... : ',f9.3)">("T06", error, text1,
                                                                                     real1),
    entry<"(a,  ' Warnung: Die Transportstrecke ........... : ',a/"
          "              3x, '          hat eine kürzere Fließzeit (h) . : ',f9.3/"
          "              3x, '          als das Zeitintervall (h) ...... : ',f9.3)">("T07", note, text1,
                                                                                     real1, real2)
        .capped(Counter::T, closing<"(3x, '          und weitere Strecken .............')">),
    entry<"(a,  ' Warnung: Die Transportstrecke ........... : ',a/"
          "              3x, '          hat eine lange Fließzeit (h) ... : ',f9.3/"
          "              3x, '          Bitte die Strecke unterteilen.')">("T08", note, text1, real1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' steigen die Abflüsse der Fließzeiten nicht an'/"
          "              3x, ' beim Wertepaar Nr. ...................... : ',i5)">("T09", error, text1, int1),
    entry<"(a,  ' Für die Transportstrecke ................ : ',a/"
          "              3x, ' fehlt die Profildatei ................... : ',a)">("T10", error, text1, text2),
    entry<"(a,  ' Für die Transportstrecke ................ : ',a/"
          "              3x, ' enthält kein Profil die Profildatei ..... : ',a)">("T11", error, text1, text2),
    entry<"(a,  ' Die Transportstrecke .................... : ',a/"
          "              3x, ' reicht nach unten über die Profildatei hinaus'/"
          "              3x, ' bis zur Station (km) .................... : ',f9.3)">("T12", error, text1,
                                                                                     real1),
    entry<"(a,  ' Die Transportstrecke .................... : ',a/"
          "              3x, ' reicht nach oben über die Profildatei hinaus'/"
          "              3x, ' bis zur Station (km) .................... : ',f9.3)">("T13", error, text1,
                                                                                     real1),
    entry<"(a,  ' Warnung: Die Transportstrecke ........... : ',a/"
          "              3x, '          hat nur das Profil bei (km) .... : ',f9.3/"
          "              3x, '          Es gilt für die ganze Strecke.')">("T14", note, text1, real1),
    entry<"(a,  ' Warnung: Die Transportstrecke ........... : ',a/"
          "              3x, '          weicht in der Länge ab (m) ..... : ',f9.1/"
          "              3x, '          Nach den Stationen (m) ......... : ',f9.1)">("T15", note, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' ist die Station am Anfang (km) .......... : ',f9.3/"
          "              3x, ' kleiner als die Station am Ende (km) .... : ',f9.3)">("T16", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' fehlt die Speicherkennlinie!')">("T20", error, text1),
    entry<"(a,  ' Die Speicherkennlinie der Strecke ....... : ',a/"
          "              3x, ' hat zu wenige Wertepaare. Anzahl ........ : ',i5)">("T21", error, text1, int1),
    entry<"(a,  ' Bei folgenden Transportstrecken ist der '/"
          "              3x, ' größte Abfluss der Gerinnekennlinie kleiner'/"
          "              3x, ' als der größte berechnete Abfluss (cbm/s):'/"
          "              3x, '        Strecke Kennlinie berechnet')">("T30", error)
        .headed(Heading::once_a_program_run),
    then<"(4x,a14,2f10.3)">(text1, real1, real2),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' ist die Speicherkennlinie nicht anwendbar: Der'/"
          "              3x, ' kleinste Abfluss ist größer als (cbm/s) . : ',f9.3)">("T40", error, text1,
                                                                                     real1),
    entry<"(a,  ' Warnung: Die Transportstrecke ........... : ',a/"
          "              3x, '          überschreitet die Speicherkennlinie'/"
          "              3x, '          beim Abfluss (cbm/s) ........... : ',f9.3)">("T41", note, text1,
                                                                                     real1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' ist die Berechnung des Wellenablaufs abgebrochen'/"
          "              3x, ' im Zeitschritt Nr. ...................... : ',i5)">("T99", error, text1, int1),
    entry<"(a,  ' Hinweis: Die Transportstrecke .......... : ',a/"
          "              4x, '          wird ohne Wellenverformung'/"
          "              4x, '          durchgerechnet.')">("T100", note, text1),
    entry<"(a,  ' Hinweis: Die Transportstrecke .......... : ',a/"
          "              4x, '          erhält als Fließzeit (h) ...... : ',f9.3)">("T101", note, text1,
                                                                                    real1),
    entry<"(a,  ' Bemerkung: Die Transportstrecke ........ : ',a/"
          "              4x, '            wurde unterteilt. Anzahl .... : ',i5)">("T102", note, text1, int1),
};
inline constexpr Group T_group{"T", "transport reaches", T_entries};

inline constexpr Entry St_entries[] = {
    entry<"(a,  ' Die Steuerfunktion Nr. .................. : ',i5/"
          "              3x, ' fehlt. Sie wird verlangt vom Element .... : ',a)">("St1", error, int1, text1),
    entry<"(a,  ' Mehrfach gibt es die Steuerfunktion Nr. . : ',i5/"
          "              3x, ' in der Tabelle .......................... : ',a)">("St2", error, int1, text1),
    entry<"(a,  ' Bei der Steuerfunktion Nr. .............. : ',i5/"
          "              3x, ' ist die gesteuerte Größe unbekannt ...... : ',a)">("St3", error, int1, text1),
    entry<"(a,  ' Bei der Steuerfunktion Nr. .............. : ',i5/"
          "              3x, ' fehlt die gesteuerte Größe!')">("St4", error, int1),
    entry<"(a,  ' Bei der Steuerfunktion Nr. .............. : ',i5/"
          "              3x, ' fehlt das Steuerelement!')">("St5", error, int1),
    entry<"(a,  ' Bei der Steuerfunktion Nr. .............. : ',i5/"
          "              3x, ' ist das Steuerelement ................... : ',a/"
          "              3x, ' in der Systemlogik nicht vorhanden!')">("St6", error, int1, text1),
    entry<"(a,  ' Bei der Steuerfunktion Nr. .............. : ',i5/"
          "              3x, ' liegt das Steuerelement ................. : ',a/"
          "              3x, ' nicht oberhalb des Elements ............. : ',a)">("St7", error, int1, text1,
                                                                                  text2),
    entry<"(a,  ' Bei der Steuerfunktion Nr. ............. : ',i5/"
          "              4x, ' ist das Steuerelement .................. : ',a/"
          "              4x, ' vom Typ her unzulässig. Zulässig sind .. : ',a)">("St71", error, int1, text1,
                                                                                 text2),
    entry<"(a,  ' Bei der Steuerfunktion Nr. .............. : ',i5/"
          "              3x, ' steigen die Werte nicht an bei Paar Nr. . : ',i5)">("St8", error, int1, int2),
    entry<"(a,  ' Die Anzahl der Steuerfunktionen ......... : ',i5/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i5/"
          "              3x, ' Tabelle ................................. : ',a)">("St9", error, int1, int2,
                                                                                  text1),
};
inline constexpr Group St_group{"St", "control functions", St_entries};

inline constexpr Entry Ver_entries[] = {
    entry<"(a,   'In der Tabelle .......................... : ',A/"
          "              3X, ' bei der Verzweigung ..................... : ',a/"
          "              3X, ' sind nur Kennziffern K=[1,3] zulässig! ')">("Ver1", error, text1, text2),
    entry<"(a,  ' In der Tabelle ......................... : ',a/"
          "              4x, ' ist bei der Verzweigung ................ : ',a/"
          "              4x, ' die Trennschärfe unzulässig (%) ........ : ',f9.3/"
          "              4x, ' Zulässig sind Werte von 0 bis 100 %.')">("Ver2", error, text1, text2, real1),
};
inline constexpr Group Ver_group{"Ver", "branchings", Ver_entries};

inline constexpr Entry U_entries[] = {
    entry<"(a,  ' In der Berechnungsvariante .............. : ',a/"
          "              3x, ' fehlt die Anfangswassertiefe!')">("U01", error, text1),
    entry<"(a,  ' In der Berechnungsvariante .............. : ',a/"
          "              3x, ' ist die Anfangswassertiefe negativ (m) .. : ',f9.3)">("U02", error, text1,
                                                                                     real1),
    entry<"(a,  ' In der Berechnungsvariante .............. : ',a/"
          "              3x, ' ist der Anfangswasserstand (m+NN) ....... : ',f9.3/"
          "              3x, ' tiefer als die Sohle (m+NN) ............. : ',f9.3)">("U03", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' In der Berechnungsvariante .............. : ',a/"
          "              3x, ' ist die Normalwassertiefe nicht bestimmbar beim'/"
          "              3x, ' Abfluss (cbm/s) ......................... : ',f9.3/"
          "              3x, ' Bitte das Sohlgefälle prüfen!')">("U04", error, text1, real1),
    entry<"(a,  ' In der Berechnungsvariante .............. : ',a/"
          "              3x, ' übersteigt die Normalwassertiefe (m) .... : ',f9.3/"
          "              3x, ' die Höhe des untersten Profils (m) ...... : ',f9.3)">("U05", error, text1,
                                                                                     real1, real2),
};
inline constexpr Group U_group{"U", "calculation variants", U_entries};

inline constexpr Entry V_entries[] = {
    entry<"(a,  ' Die Steuerdatei ......................... : ',a/"
          "              3x, ' fehlt oder kann nicht geöffnet werden!')">("V00", error, text1),
    entry<"(a,  ' Die Steuerdatei ......................... : ',a/"
          "              3x, ' enthält keine Berechnungsvariante!')">("V01", error, text1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' liegt ein Formatfehler vor in Zeile ..... : ',i5)">("V02", error, text1, int1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist unbekannt das Schlüsselwort ......... : ',a/"
          "              3x, ' Zeile Nr. ............................... : ',i5)">("V03", error, text1, text2,
                                                                                   int1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt die Zeile mit dem Schlüsselwort ... : ',a)">("V04", error, text1, text2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist mehrfach vorhanden die Zeile ........ : ',a)">("V05", error, text1, text2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt der Name der Profildatei!')">("V06", error, text1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt der Name der Abflussdatei!')">("V07", error, text1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist ein Dateiname zu lang. Zeile Nr. .... : ',i5/"
          "              3x, ' Zulässige Anzahl Zeichen ................ : ',i5)">("V08", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt die Unterwasserbedingung!')">("V09", error, text1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist die Unterwasserbedingung unzulässig . : ',a)">("V10", error, text1, text2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt der Wasserstand im Unterwasser zum Abfluss'/"
          "              3x, ' Nr. ..................................... : ',i5)">("V11", error, text1, int1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist das Gefälle im Unterwasser .......... : ',f9.3/"
          "              3x, ' nicht größer als null!')">("V12", error, text1, real1),
    entry<"(a,  ' Die verlangte Eingabedatei .............. : ',a/"
          "              3x, ' ist nicht vorhanden! Steuerdatei ........ : ',a)">("V13", error, text1, text2),
    entry<"(a,  ' Die verlangte Ausgabedatei .............. : ',a/"
          "              3x, ' kann nicht angelegt werden! Steuerdatei . : ',a)">("V14", error, text1, text2),
    entry<"(a,  ' Die Ausgabedatei ........................ : ',a/"
          "              3x, ' ist zugleich Eingabedatei. Bitte den Namen'/"
          "              3x, ' ändern in der Steuerdatei ............... : ',a)">("V15", error, text1, text2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt der Name der Sonderprofildatei!')">("V16", error, text1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist verlangt das Sonderprofil ........... : ',a/"
          "              3x, ' Es fehlt in der Datei ................... : ',a)">("V17", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' sind folgende Zeilen nicht verständlich:')">("V18", error, text1),
    then<"(t18,i5,1x,a)">(int1, text2),
    then<"(t18,i5,1x,a)">(int2, text3),
};
inline constexpr Group V_group{"V", "control files", V_entries};

}  // namespace m_WLM_error::catalogue
