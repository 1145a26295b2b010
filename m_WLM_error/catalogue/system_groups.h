#pragma once

#include "m_WLM_error/catalogue/entry.h"

// The system logic, its warnings, weirs and assignments to data structures.

namespace m_WLM_error::catalogue {

inline constexpr Entry Y_entries[] = {
    entry<"(a,  ' Mit ..................................... : ',I5,/"
          "              3x, ' angesprochenen Systemelementen ist die ',/"
          "              3x, ' zulässige Anzahl beim Systemelement ..... : ',A,/"
          "              3x, ' überschritten !')">("Y00", error, int1, text1),
    entry<"(a,  ' Die Kennung des Elements ................ : ',A,/"
          "              3x, ' ist unzulässig !')">("Y01", error, text1),
    entry<"(a,  ' Die Kennung des Zulaufelements .......... : ',A,/"
          "              3x, ' ist unzulässig !')">("Y02", error, text1),
    entry<"(a,  ' Die Kennung des Ablaufelements .......... : ',A,/"
          "              3x, ' ist unzulässig !')">("Y03", error, text1),
    entry<"(a,  ' Das Element ............................. : ',A,/"
          "              3x, ' ist in der Systemlogik mehrfach definiert !')">("Y04", error, text1),
    entry<"(a,  ' Für das Systemelement ................... : ',A,/"
          "              3x, ' darf kein Zulaufelement ausgewiesen werden !')">("Y05", error, text1),
    entry<"(a,  ' Beim Element ............................ : ',A,/"
          "              3x, ' fehlt das 1. Zulaufelement !')">("Y06", error, text1),
    entry<"(a,  ' Beim Element ............................ : ',A,/"
          "              3x, ' müssen die Zulaufelemente linksbündig ',/"
          "              3x, ' angeordnet werden !')">("Y07", error, text1),
    entry<"(a,  ' Beim Element ............................ : ',A,/"
          "              3x, ' fehlt das 1. Ablaufelement !')">("Y08", error, text1),
    entry<"(a,  ' Beim Systemelement der Systemlogik ...... : ',A,/"
          "              3x, ' ist nur 1 Ablaufelement zulässig !')">("Y09", error, text1),
    entry<"(a,  ' Beim Systemelement der Systemlogik ...... : ',A,/"
          "              3x, ' sind keine Ablaufelemente angegeben !')">("Y10", error, text1),
    entry<"(a,  ' Beim Pegel in der Systemlogik ........... : ',A,/"
          "              3x, ' darf kein Ablaufelement angegeben werden !')">("Y11", error, text1),
    entry<"(a,  ' Beim Systemelement der Systemlogik ...... : ',A,/"
          "              3x, ' ist die Stationierung nicht durch Gewässer- ',/"
          "              3x, ' abschnitte entsprechend *.TRS-Datei abgedeckt.')">("Y13", error, text1),
    entry<"(a,  ' Für die Ausgabe einer *.QFR-Datei sind in  ',/"
          "              3x, ' der Systemlogik *.SYS weniger als zwei ',/"
          "              3x, ' Querschnitte angesprochen.')">("Y14", error),
    entry<"(a,  ' Ein Pegel als Zu- oder Ablaufelement .... : ',A,/"
          "              3x, ' beim Systemelement ...................... : ',A,/"
          "              3x, ' ist nicht zulässig !')">("Y20", error, text1, text2),
    entry<"(a,  ' Das Zulaufelement ....................... : ',A,/"
          "              3x, ' beim Systemelement ...................... : ',A,/"
          "              3x, ' existiert nicht als Systemelement !')">("Y21", error, text1, text2),
    entry<"(a,  ' Das Ablaufelement ....................... : ',a,/"
          "              3x, ' beim Systemelement ...................... : ',a,/"
          "              3x, ' existiert nicht als Systemelement !')">("Y22", error, text1, text2),
    entry<"(a,  ' Der Zulauf von .......................... : ',a,/"
          "              3x, ' ist nicht möglich nach  ................. : ',a,/"
          "              3x, ' Das Systemelement ....................... : ',a,/"
          "              3x, ' ist an dieser Stelle noch nicht definiert.')">("Y23", error, text1, text2,
                                                                              text1),
    entry<"(a,  ' Der Ablauf von .......................... : ',a,/"
          "              3x, ' ist nicht möglich nach .................. : ',a,/"
          "              3x, ' Das Systemelement ....................... : ',a,/"
          "              3x, ' ist an dieser Stelle bereits mit seinen ',/"
          "              3x, ' Zuläufen definiert.')">("Y24", error, text2, text1, text1),
    entry<"(a,  ' Das Systemelement der Systemlogik ....... : ',a,/"
          "              3x, ' liegt nicht als Ablaufelement vor bei: .. : ',a)">("Y25", error, text1, text2),
    entry<"(a,  ' Das Systemelement der Systemlogik ....... : ',a,/"
          "              3x, ' liegt nicht als Zulaufelement vor bei: .. : ',a)">("Y26", error, text1, text2),
    entry<"(a,  ' Beim Systemelement der Systemlogik ...... : ',a,/"
          "              3x, ' wird das Zulaufelement .................. : ',a,/"
          "              3x, ' mehrfach eingeleitet !')">("Y27", error, text1, text2),
    entry<"(a,  ' Der BCS-Knoten .......................... : ',a/"
          "              3x, ' wird in der SYS-Datei mehrfach angesprochen.')">("Y28", error, text1),
    entry<"(a,  ' Die in der Tabelle ...................... : ',A/"
          "              3X, ' für die Zulaufwelle beim Element ........ : ',a/"
          "              3X, ' angeforderte Füllenberechnung ist nicht'/"
          "              3X, ' möglich, da das Element vom Typ her keine'/"
          "              3X, ' Zulaufwelle besitzt!')">("Y30", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist beim Element ........................ : ',a/"
          "              3x, ' keine randomid vergeben.')">("Y40", error, text1, text2),
    entry<"(a,  ' In der Tabelle .......................... : ',a/"
          "              3x, ' ist beim Element ........................ : ',a/"
          "              3x, ' die randomid ............................ : ',a/"
          "              3x, ' mehrfach vergeben.')">("Y41", error, text1, text2, text3),
};
inline constexpr Group Y_group{"Y", "the system logic", Y_entries};

inline constexpr Entry W_entries[] = {
    entry<"(a,  ' Warnung: Das Systemelement .............. : ',A/"
          "                 3X, '          weist kein 1. Abgabeelement auf!')">("W01", note, text1)
        .capped(Counter::W01, closing<"(3x, '          und weitere Elemente .............')">),
    entry<"(a,  ' Warnung: Das Systemelement .............. : ',A/"
          "                 3X, '          weist kein 2. Abgabeelement auf!')">("W02", note, text1)
        .capped(Counter::W02, closing<"(3x, '          und weitere Elemente .............')">),
    entry<"(a,  ' Warnung: Das Becken ..................... : ',A/"
          "                 3X, '          weist kein Abgabeelement auf!')">("W03", note, text1)
        .capped(Counter::W03, closing<"(3x, '          und weitere Becken ...............')">),
    entry<"(a,  ' Warnung: Die kanalisierte Fläche ........ : ',A/"
          "                 3X, '          weist keine Fließzeit im Sammler auf!')">("W04", note, text1)
        .capped(Counter::W04, closing<"(3x, '          und weitere Flächen ..............')">),
    entry<"(a,  ' Warnung: Bei  Transportstrecke .......... : ',A/"
          "              3X, '          wurde die Speicherkennlinie bei   Q = ',F9.3)">("W05", note, text1,
                                                                                        real1),
    entry<"(a,  '          wegen Rückläufigkeit von ..... Salt = ',F10.0)">("W06", note, real1),
    entry<"(a,  '          auf .......................... Sneu = ',F10.0/"
          "              3x, '          korrigiert!')">("W07", note, real1),
    entry<"(a,  ' Warnung: Bei  Transportstrecke .......... : ',A/"
          "              3X, '          wurde kein Speicherkoeffizient für'/"
          "              3x, '          den Totraum angegeben!')">("W08", note, text1),
    entry<"(a,  ' Warnung: Bei  Transportstrecke .......... : ',A/"
          "              3X, '          wurde kein Infiltrationkoeffizient'/"
          "              3x, '          angegeben!')">("W09", note, text1),
    entry<"(a,  ' Warnung: Die eingelesene Abflusszuordnung : ',a/"
          "              3X, '          weist Unstimmigkeiten auf.'/"
          "              3X, '          Siehe Randbemerkungen in ....... : ',A)">("W10", note, text1),
    entry<"(a,  ' Warnung: Beim Transportelement ........ : ',A/"
          "              3X, '          weist die Kennlinie der Fließ-'/"
          "              3X, '          zeiten extreme Sprünge auf!')">("W11", note, text1),
};
inline constexpr Group W_group{"W", "warnings of the system logic and of reaches", W_entries, note};

inline constexpr Entry Whr_entries[] = {
    entry<"(a,  ' Hinweis: O2-Eintrag beim Wehr ........... : ',a)">("Whr0", note, text1),
    entry<"(a,  ' Beim Wehr ............................... : ',a/"
          "              4x, ' liegt keine Fallhöhe oder Wehrbreite vor!')">("Whr1", error, text1),
};
inline constexpr Group Whr_group{"Whr", "weirs", Whr_entries};

inline constexpr Entry ZW_entries[] = {
    entry<"(a,  ' Zuweisungen in der Datenstruktur ........ : ',a/)">("ZW0", error, text1)
        .headed(Heading::on_new_structure),
    then<"(4x,a)">(text2),
};
inline constexpr Group ZW_group{"ZW", "assignments in data structures", ZW_entries};

}  // namespace m_WLM_error::catalogue
