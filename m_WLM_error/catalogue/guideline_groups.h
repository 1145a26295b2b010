#pragma once

#include "m_WLM_error/catalogue/entry.h"

// Checks by the water-quality guideline (Leitfaden).

namespace m_WLM_error::catalogue {

inline constexpr Entry LF_entries[] = {
    entry<"(a,  ' Der Pfad unter KALDER-Variante ........ : ',a/"
          "              5x, ' ist nicht vorhanden. Die Datenbank zur Prüfung'/"
          "              5x, ' nach dem Leitfaden kann nicht geöffnet werden.')">("LF_DB", error, text1),
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' liegt der pH-Wert ....................... : ',f9.2/"
          "              3x, ' unter dem pH-Mindestwert ................ : ',f9.2)">("LF1", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Beim Element ............................ : ',a/"
          "              3x, ' liegt der pH-Wert ....................... : ',f9.2/"
          "              3x, ' über dem pH-Höchstwert .................. : ',f9.2)">("LF2", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Im Leitfaden ist der pH-Mindestwert ..... : ',f9.2/"
          "              3x, ' nicht kleiner als der pH-Höchstwert ..... : ',f9.2)">("LF3", error, real1,
                                                                                     real2),
    entry<"(a,  ' In der Gütetabelle ................... : ',a/"
          "              6x, ' fehlt das Element .................... : ',a)">("LF_A00", error, text1, text2),
    entry<"(a,  ' In der Gütetabelle ................... : ',a/"
          "              6x, ' fehlt beim Element ................... : ',a/"
          "              6x, ' der Stoffwert ........................ : ',a)">("LF_A01", error, text1, text2,
                                                                               text3),
    entry<"(a,  ' In der Gütetabelle ................... : ',a/"
          "              6x, ' ist beim Element ..................... : ',a/"
          "              6x, ' der Stoffwert ........................ : ',a/"
          "              6x, ' negativ (mg/l) ....................... : ',f9.3)">("LF_A02", error, text1,
                                                                                  text2, text3, real1),
    entry<"(a,  ' In der Gütetabelle .................. : ',a/"
          "              7x, ' ist kein Einleitungselement angegeben!')">("LF_EL00", error, text1),
    entry<"(a,  ' Das Einleitungselement .............. : ',a/"
          "              7x, ' fehlt in der Systemlogik!')">("LF_EL01", error, text1),
    entry<"(a,  ' Das Einleitungselement .............. : ',a/"
          "              7x, ' ist mehrfach angegeben!')">("LF_EL02", error, text1),
    entry<"(a,  ' Als Einleitung ist das Element ...... : ',a/"
          "              7x, ' angegeben. Eine natürliche Fläche ist dafür nach'/"
          "              7x, ' dem Leitfaden nicht zulässig.')">("LF_EL03", error, text1)
        .when(text2, "N"),
    entry<"(a,  ' Als Einleitung ist das Element ...... : ',a/"
          "              7x, ' angegeben. Eine kanalisierte Fläche darf nur über'/"
          "              7x, ' ein Entlastungsbauwerk einleiten.')">("LF_EL03", error, text1)
        .when(text2, "K"),
    entry<"(a,  ' Als Einleitung ist das Element ...... : ',a/"
          "              7x, ' angegeben. Eine Transportstrecke ist nach dem'/"
          "              7x, ' Leitfaden keine Einleitung.')">("LF_EL03", error, text1)
        .when(text2, "T"),
    entry<"(a,  ' Als Einleitung ist das Element ...... : ',a/"
          "              7x, ' angegeben. Bei einer Verzweigung muss der'/"
          "              7x, ' 2. Ablauf in das Gewässer führen.')">("LF_EL03", error, text1)
        .when(text2, "V"),
    entry<"(a,  ' Als Einleitung ist das Element ...... : ',a/"
          "              7x, ' angegeben. Bei einem Becken muss der Überlauf in'/"
          "              7x, ' das Gewässer führen.')">("LF_EL03", error, text1)
        .when(text2, "B"),
    entry<"(a,  ' Als Einleitung ist das Element ...... : ',a/"
          "              7x, ' angegeben. Der Elementtyp ........... : ',a/"
          "              7x, ' ist dafür nicht zulässig.')">("LF_EL03", error, text1, text2),
    entry<"(a,  ' Beim Einleitungselement ............. : ',a/"
          "              7x, ' fehlt der Gewässerabschnitt!')">("LF_EL04", error, text1),
    entry<"(a,  ' Beim Einleitungselement ............. : ',a/"
          "              7x, ' fehlt in der TRS-Datei'/"
          "              7x, ' die Transportstrecke ................ : ',a)">("LF_EL05", error, text1, text2),
    entry<"(a,  ' Beim Einleitungselement ............. : ',a/"
          "              7x, ' ist der Einleitungsabfluss (l/s) .... : ',f9.3/"
          "              7x, ' zu groß. Zulässiger Abfluss (l/s) ... : ',f9.3)">("LF_EL06", error, text1,
                                                                                 real1, real2),
    entry<"(a,  ' Beim Einleitungselement ............. : ',a/"
          "              7x, ' fehlt der pH-Wert!')">("LF_EL07", error, text1),
    entry<"(a,  ' Beim Einleitungselement ............. : ',a/"
          "              7x, ' ist der pH-Wert ..................... : ',f9.2/"
          "              7x, ' unmöglich! Möglich sind Werte von 0 bis 14.')">("LF_EL08", error, text1,
                                                                               real1),
    entry<"(a,  ' Beim Einleitungselement ............. : ',a/"
          "              7x, ' fehlt die Wassertemperatur!')">("LF_EL09", error, text1),
    entry<"(a,  ' Beim Einleitungselement ............. : ',a/"
          "              7x, ' ist die Wassertemperatur (Grad C) ... : ',f9.1/"
          "              7x, ' unzulässig!'/"
          "              7x, ' Zulässig sind 0 bis (Grad C) ........ : ',f9.1)">("LF_EL10", error, text1,
                                                                                 real1, real2),
    entry<"(a,  ' Bei der kanalisierten Fläche ........ : ',a/"
          "              7x, ' fehlt für den Stoff ................. : ',a/"
          "              7x, ' die Stoffkonzentration des Abflusses!')">("LF_EL11", error, text1, text3)
        .when(text2, "K"),
    entry<"(a,  ' Beim Becken ......................... : ',a/"
          "              7x, ' fehlt für den Stoff ................. : ',a/"
          "              7x, ' die Stoffkonzentration des Überlaufs!')">("LF_EL11", error, text1, text3)
        .when(text2, "B"),
    entry<"(a,  ' Beim Einleitungselement ............. : ',a/"
          "              7x, ' fehlt für den Stoff ................. : ',a/"
          "              7x, ' die Stoffkonzentration der Einleitung!')">("LF_EL11", error, text1, text3),
    entry<"(a,  ' Bemerkung: Die Einleitung ........... : ',a/"
          "              7x, '            liegt oberhalb der'/"
          "              7x, '            Einleitung ............... : ',a)">("LF_EL12", note, text1, text2),
    entry<"(a,  ' HINWEIS: Die Einleitung ............. : ',a/"
          "              7x, '          bleibt ohne Nachweis. Ihr Anteil'/"
          "              7x, '          am Abfluss beträgt (%) ..... : ',f9.3)">("LF_EL13", note, text1,
                                                                                 real1),
    entry<"(a,  ' Bei der Kläranlage ................... : ',a/"
          "              6x, ' fehlt zum Zulaufelement .............. : ',a/"
          "              6x, ' der Abfluss!')">("LF_KLA", error, text1, text2),
    entry<"(a,  ' Beim Einleitungselement ............. : ',a/"
          "              7x, ' fehlt die Verknüpfung zur Anlage .... : ',a)">("LF_EL14", error, text1, text2),
    entry<"(a,  ' Im Teilgebiet ....................... : ',a/"
          "              7x, ' liegt kein Einleitungselement!')">("LF_TG01", error, text1),
    entry<"(a,  ' Für die natürliche Fläche ........... : ',a/"
          "              7x, ' fehlt die Grundbelastung nach dem Leitfaden!'/"
          "              7x, ' Fläche (qkm) ........................ : ',f9.3)">("LF_NF01", error, text1,
                                                                                 real1),
    entry<"(a,  ' Hinweis: Das Becken ................. : ',a/"
          "              7x, '          wird nur teilweise angerechnet.'/"
          "              7x, '          Angerechnet werden (cbm) ... : ',f10.1)">("LF_SP01", note, text1,
                                                                                  real1),
    entry<"(a,  ' Hinweis: Das Becken ................. : ',a/"
          "              7x, '          wird nicht angerechnet: Es liegt'/"
          "              7x, '          unterhalb der Einleitung ... : ',a)">("LF_SP02", note, text1, text2),
};
inline constexpr Group LF_group{"LF", "checks by the water-quality guideline", LF_entries};

}  // namespace m_WLM_error::catalogue
