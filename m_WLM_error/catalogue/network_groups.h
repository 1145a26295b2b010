#pragma once

#include "m_WLM_error/catalogue/entry.h"

// The network: reaches, branchings, control functions, limits of the model, calculation variants, control
// files.

namespace m_WLM_error::catalogue {

inline constexpr Entry M_entries[] = {
    entry<"(a,  ' Die Anzahl der natürlichen Flächen ...... : ',i9/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i9/"
          "              3x, ' Erste überzählige Fläche ................ : ',a)">("M01", error, int1, int2,
                                                                                  text1),
    entry<"(a,  ' Die Anzahl der kanalisierten Flächen .... : ',i9/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i9/"
          "              3x, ' Erste überzählige Fläche ................ : ',a)">("M02", error, int1, int2,
                                                                                  text1),
    entry<"(a,  ' Die Anzahl aller Flächen ................ : ',i9/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i9/"
          "              3x, ' Erste überzählige Fläche ................ : ',a)">("M03", error, int1, int2,
                                                                                  text1),
    entry<"(a,  ' Die Anzahl der Zuflüsse ................. : ',i9/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i9/"
          "              3x, ' Erster überzähliger Zufluss ............. : ',a)">("M04", error, int1, int2,
                                                                                  text1),
    entry<"(a,  ' Die Anzahl der Transportelemente ........ : ',i9/"
          "              3x, ' ist größer als die zulässige Anzahl ..... : ',i9/"
          "              3x, ' Erstes überzähliges Transportelement .... : ',a)">("M05", error, int1, int2,
                                                                                  text1),
    entry<"(a,  ' Beim Transportelement ................... : ',a/"
          "              3x, ' ist die Anzahl der Zulaufelemente ....... : ',i9/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i9)">("M06", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' Beim Transportelement ................... : ',a/"
          "              3x, ' ist die Anzahl angeschlossener Flächen .. : ',i9/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i9)">("M07", error, text1, int1,
                                                                                   int2),
};
inline constexpr Group M_group{"M", "maximum counts of areas, inflows and transport elements", M_entries};

inline constexpr Entry T_entries[] = {
    entry<"(a,  ' In der TRS-Datei ....................... : ',a/"
          "              4x, ' fehlt bei der Transportstrecke ......... : ',a/"
          "              4x, ' die zweite Zeile!')">("TRS0", error, text1, text2),
    entry<"(a,  ' In der TRS-Datei ....................... : ',a/"
          "              4x, ' ist bei der Transportstrecke ........... : ',a/"
          "              4x, ' die Zeile Nr. .......................... : ',i9/"
          "              4x, ' nicht lesbar!')">("TRS1", error, text1, text2, int1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist keine Transportstrecke enthalten!')">("T00", error, text1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' fehlt die Länge der Transportstrecke .... : ',a)">("T01", error, text1, text2),
    entry<"(a,  ' Die Transportstrecke .................... : ',a/"
          "              3x, ' hat die Länge (m) ....................... : ',f9.1/"
          "              3x, ' Sie muss größer als null sein!')">("T02", error, text1, real1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' fehlt das Gefälle!')">("T03", error, text1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' liegt die Sohle am Ende (m+NN) .......... : ',f9.3/"
          "              3x, ' höher als am Anfang (m+NN) .............. : ',f9.3)">("T04", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' fehlt die Fließzeit!')">("T05", error, text1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' ist die Fließzeit (h) ................... : ',f9.3/"
          "              3x, ' negativ!')">("T06", error, text1, real1),
    entry<"(a,  ' Warnung: Bei der Transportstrecke ....... : ',a/"
          "              3x, '          ist die Fließzeit (h) .......... : ',f9.3/"
          "              3x, '          kürzer als das Zeitintervall'/"
          "              3x, '          der Berechnung (h) ............. : ',f9.3)">("T07", note, text1,
                                                                                     real1, real2)
        .capped(Counter::T, closing<"(3x, '          und weitere Transportstrecken ....')">),
    entry<"(a,  ' Warnung: Bei der Transportstrecke ....... : ',a/"
          "              3x, '          ist die Fließzeit (h) .......... : ',f9.3/"
          "              3x, '          ungewöhnlich lang. Bitte die'/"
          "              3x, '          Transportstrecke unterteilen.')">("T08", note, text1, real1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' sind in der Kennlinie der Fließzeiten'/"
          "              3x, ' die Abflüsse ab dem Wertepaar Nr. ....... : ',i5/"
          "              3x, ' nicht ansteigend!')">("T09", error, text1, int1),
    entry<"(a,  ' Für die Transportstrecke ................ : ',a/"
          "              3x, ' fehlt die Profildatei ................... : ',a)">("T10", error, text1, text2),
    entry<"(a,  ' Für die Transportstrecke ................ : ',a/"
          "              3x, ' enthält die Profildatei ................. : ',a/"
          "              3x, ' kein Profil!')">("T11", error, text1, text2),
    entry<"(a,  ' Die Transportstrecke .................... : ',a/"
          "              3x, ' reicht bis zur Station (km) ............. : ',f9.3/"
          "              3x, ' und damit unten über die Profildatei .... : ',a/"
          "              3x, ' hinaus!')">("T12", error, text1, real1, text2),
    entry<"(a,  ' Die Transportstrecke .................... : ',a/"
          "              3x, ' reicht bis zur Station (km) ............. : ',f9.3/"
          "              3x, ' und damit oben über die Profildatei ..... : ',a/"
          "              3x, ' hinaus!')">("T13", error, text1, real1, text2),
    entry<"(a,  ' Warnung: Die Transportstrecke ........... : ',a/"
          "              3x, '          hat nur ein Profil bei (km) .... : ',f9.3/"
          "              3x, '          Es gilt für die ganze Transportstrecke.')">("T14", note, text1,
                                                                                    real1),
    entry<"(a,  ' Warnung: Bei der Transportstrecke ....... : ',a/"
          "              3x, '          weicht die Länge (m) ........... : ',f9.1/"
          "              3x, '          vom Abstand der Stationen (m) .. : ',f9.1/"
          "              3x, '          ab.')">("T15", note, text1, real1, real2),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' ist die Station am Anfang (km) .......... : ',f9.3/"
          "              3x, ' kleiner als die Station am Ende (km) .... : ',f9.3)">("T16", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' fehlt die Speicherkennlinie!')">("T20", error, text1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' hat die Speicherkennlinie zu wenige'/"
          "              3x, ' Wertepaare. Anzahl ...................... : ',i5/"
          "              3x, ' Erforderliche Anzahl .................... : ',i5)">("T21", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' Bei folgenden Transportstrecken ist der '/"
          "              3x, ' größte Abfluss der Gerinnekennlinie kleiner'/"
          "              3x, ' als der größte berechnete Abfluss (cbm/s):'/"
          "              3x, '        Strecke Kennlinie berechnet')">("T30", error)
        .headed(Heading::once_a_program_run),
    then<"(4x,a14,2f10.3)">(text1, real1, real2),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' ist die Speicherkennlinie nicht anwendbar.'/"
          "              3x, ' Sie beginnt erst beim Abfluss (cbm/s) ... : ',f9.3)">("T40", error, text1,
                                                                                     real1),
    entry<"(a,  ' Warnung: Bei der Transportstrecke ....... : ',a/"
          "              3x, '          wird die Speicherkennlinie'/"
          "              3x, '          beim Abfluss (cbm/s) ........... : ',f9.3/"
          "              3x, '          überschritten.')">("T41", note, text1, real1),
    entry<"(a,  ' Bei der Transportstrecke ................ : ',a/"
          "              3x, ' wurde die Berechnung des Wellenablaufs'/"
          "              3x, ' im Zeitschritt Nr. ...................... : ',i9/"
          "              3x, ' abgebrochen!')">("T99", error, text1, int1),
    entry<"(a,  ' Hinweis: Die Transportstrecke .......... : ',a/"
          "              4x, '          wird ohne Wellenverformung gerechnet.')">("T100", note, text1),
    entry<"(a,  ' Hinweis: Die Transportstrecke .......... : ',a/"
          "              4x, '          erhält die Fließzeit (h) ...... : ',f9.3)">("T101", note, text1,
                                                                                    real1),
    entry<"(a,  ' Bemerkung: Die Transportstrecke ........ : ',a/"
          "              4x, '            wurde unterteilt.'/"
          "              4x, '            Anzahl der Teilstrecken ..... : ',i5)">("T102", note, text1, int1),
};
inline constexpr Group T_group{"T", "transport reaches", T_entries};

inline constexpr Entry St_entries[] = {
    entry<"(a,  ' Für das Element ......................... : ',a/"
          "              3x, ' fehlt die Steuerfunktion Nr. ............ : ',i5)">("St1", error, text1, int1),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist die Steuerfunktion Nr. .............. : ',i5/"
          "              3x, ' mehrfach vorhanden!')">("St2", error, text1, int1),
    entry<"(a,  ' Bei der Steuerfunktion Nr. .............. : ',i5/"
          "              3x, ' ist die gesteuerte Größe ................ : ',a/"
          "              3x, ' unbekannt!')">("St3", error, int1, text1),
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
          "              3x, ' sind die Werte ab dem Wertepaar Nr. ..... : ',i5/"
          "              3x, ' nicht ansteigend!')">("St8", error, int1, int2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist die Anzahl der Steuerfunktionen ..... : ',i5/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i5)">("St9", error, text1, int1,
                                                                                   int2),
};
inline constexpr Group St_group{"St", "control functions", St_entries};

inline constexpr Entry Ver_entries[] = {
    entry<"(a,   'In der Tabelle .......................... : ',A/"
          "              3X, ' bei der Verzweigung ..................... : ',a/"
          "              3X, ' sind nur Kennziffern K=[1,3] zulässig! ')">("Ver1", error, text1, text2),
    entry<"(a,  ' In der Tabelle ......................... : ',a/"
          "              4x, ' ist bei der Verzweigung ................ : ',a/"
          "              4x, ' die Trennschärfe (%) ................... : ',f9.3/"
          "              4x, ' unzulässig! Zulässig sind Werte von 0 bis 100 %.')">("Ver2", error, text1,
                                                                                    text2, real1),
};
inline constexpr Group Ver_group{"Ver", "branchings", Ver_entries};

inline constexpr Entry U_entries[] = {
    entry<"(a,  ' In der Berechnungsvariante .............. : ',a/"
          "              3x, ' fehlt die Anfangswassertiefe!')">("U01", error, text1),
    entry<"(a,  ' In der Berechnungsvariante .............. : ',a/"
          "              3x, ' ist die Anfangswassertiefe (m) .......... : ',f9.3/"
          "              3x, ' negativ!')">("U02", error, text1, real1),
    entry<"(a,  ' In der Berechnungsvariante .............. : ',a/"
          "              3x, ' liegt der Anfangswasserstand (m+NN) ..... : ',f9.3/"
          "              3x, ' tiefer als die Sohle (m+NN) ............. : ',f9.3)">("U03", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' In der Berechnungsvariante .............. : ',a/"
          "              3x, ' ist beim Abfluss (cbm/s) ................ : ',f9.3/"
          "              3x, ' die Normalwassertiefe nicht bestimmbar.'/"
          "              3x, ' Bitte das Sohlgefälle prüfen!')">("U04", error, text1, real1),
    entry<"(a,  ' In der Berechnungsvariante .............. : ',a/"
          "              3x, ' ist die Normalwassertiefe (m) ........... : ',f9.3/"
          "              3x, ' größer als die Höhe des untersten'/"
          "              3x, ' Profils (m) ............................. : ',f9.3)">("U05", error, text1,
                                                                                     real1, real2),
};
inline constexpr Group U_group{"U", "calculation variants", U_entries};

inline constexpr Entry V_entries[] = {
    entry<"(a,  ' Die Steuerdatei ......................... : ',a/"
          "              3x, ' fehlt oder kann nicht geöffnet werden!')">("V00", error, text1),
    entry<"(a,  ' Die Steuerdatei ......................... : ',a/"
          "              3x, ' enthält keine Berechnungsvariante!')">("V01", error, text1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' enthält die Zeile Nr. ................... : ',i9/"
          "              3x, ' einen Formatfehler!')">("V02", error, text1, int1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist in der Zeile Nr. .................... : ',i9/"
          "              3x, ' das Schlüsselwort ....................... : ',a/"
          "              3x, ' unbekannt!')">("V03", error, text1, int1, text2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt die Zeile mit dem Schlüsselwort ... : ',a)">("V04", error, text1, text2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist die Zeile mit dem Schlüsselwort ..... : ',a/"
          "              3x, ' mehrfach vorhanden!')">("V05", error, text1, text2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt der Name der Profildatei!')">("V06", error, text1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt der Name der Abflussdatei!')">("V07", error, text1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist in der Zeile Nr. .................... : ',i9/"
          "              3x, ' der Dateiname zu lang.'/"
          "              3x, ' Zulässige Anzahl der Zeichen ............ : ',i9)">("V08", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt die Unterwasserbedingung!')">("V09", error, text1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist die Unterwasserbedingung ............ : ',a/"
          "              3x, ' unzulässig!')">("V10", error, text1, text2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt zum Abfluss Nr. ................... : ',i5/"
          "              3x, ' der Unterwasserstand!')">("V11", error, text1, int1),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' ist das Gefälle im Unterwasser (-) ...... : ',f10.5/"
          "              3x, ' nicht größer als null!')">("V12", error, text1, real1),
    entry<"(a,  ' Die in der Steuerdatei .................. : ',a/"
          "              3x, ' verlangte Eingabedatei .................. : ',a/"
          "              3x, ' ist nicht vorhanden!')">("V13", error, text1, text2),
    entry<"(a,  ' Die in der Steuerdatei .................. : ',a/"
          "              3x, ' verlangte Ausgabedatei .................. : ',a/"
          "              3x, ' kann nicht angelegt werden!')">("V14", error, text1, text2),
    entry<"(a,  ' Die in der Steuerdatei .................. : ',a/"
          "              3x, ' verlangte Ausgabedatei .................. : ',a/"
          "              3x, ' ist zugleich Eingabedatei. Bitte den Namen ändern!')">("V15", error, text1,
                                                                                      text2),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' fehlt der Name der Sonderprofildatei (SPR)!')">("V16", error, text1),
    entry<"(a,  ' Das in der Steuerdatei .................. : ',a/"
          "              3x, ' verlangte Sonderprofil .................. : ',a/"
          "              3x, ' fehlt in der Sonderprofildatei (SPR) .... : ',a)">("V17", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' In der Steuerdatei ...................... : ',a/"
          "              3x, ' sind folgende Zeilen nicht lesbar:')">("V18", error, text1),
    then<"(t18,i5,1x,a)">(int1, text2),
    then<"(t18,i5,1x,a)">(int2, text3),
};
inline constexpr Group V_group{"V", "control files", V_entries};

}  // namespace m_WLM_error::catalogue
