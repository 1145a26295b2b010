#pragma once

#include "m_WLM_error/catalogue/entry.h"

// Profiles: profile tables and files, special profiles, blockages, the relation of discharges to profiles.

namespace m_WLM_error::catalogue {

inline constexpr Entry C_entries[] = {
    entry<"(A3, ' In der Profildatei .................... : ',A/"
          "              3X, ' liegen Fehler vor! Siehe oben.')">("C00", error, text1),
};
inline constexpr Group C_group{"C", "a profile file with errors", C_entries};

inline constexpr Entry mnn_entries[] = {
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' fehlt das Profil an der Station ....... : ',a)">("mnn01", error, text1, text2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' ist mehrfach vorhanden die Station .... : ',a)">("mnn02", error, text1, text2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' sind die Stationen nicht geordnet bei . : ',a/"
          "              5x, ' Die Stationen müssen ansteigen!')">("mnn03", error, text1, text2),
    entry<"(a,  ' In der Profiltabelle ................. : ',a/"
          "              6x, ' liegt ein Formatfehler vor in Zeile .. : ',i5)">("mnn050", error, text1, int1),
    entry<"(a,  ' In der Profiltabelle ................. : ',a/"
          "              6x, ' ist die Station nicht lesbar ......... : ',a/"
          "              6x, ' Zeile Nr. ............................ : ',i5)">("mnn051", error, text1, text2,
                                                                                int1),
    entry<"(a,  ' In der Profiltabelle ................. : ',a/"
          "              6x, ' ist ein Punkt nicht lesbar. Station .. : ',a/"
          "              6x, ' Zeile Nr. ............................ : ',i5)">("mnn052", error, text1, text2,
                                                                                int1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' hat das Profil an der Station ......... : ',a/"
          "              5x, ' zu wenige Punkte. Anzahl .............. : ',i5)">("mnn06", error, text1, text2,
                                                                                 int1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' hat das Profil an der Station ......... : ',a/"
          "              5x, ' zu viele Punkte. Anzahl ............... : ',i5/"
          "              5x, ' Zulässige Anzahl ...................... : ',i5)">("mnn07", error, text1, text2,
                                                                                 int1, int2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' sind beim Profil an der Station ....... : ',a/"
          "              5x, ' die Punkte rückläufig ab Punkt Nr. .... : ',i5)">("mnn08", error, text1, text2,
                                                                                 int1),
    entry<"(a,  ' Warnung: Das Profil an der Station .... : ',a/"
          "              5x, '          hat doppelt den Punkt Nr. .... : ',i5/"
          "              5x, '          Er wird übergangen.')">("mnn09", note, text1, int1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' fehlt beim Profil an der Station ...... : ',a/"
          "              5x, ' der Rauheitsbeiwert zum Punkt Nr. ..... : ',i5)">("mnn10", error, text1, text2,
                                                                                 int1),
    entry<"(a,  ' Das Profil an der Station ............. : ',a/"
          "              5x, ' hat einen negativen Rauheitsbeiwert ... : ',f9.3/"
          "              5x, ' am Punkt Nr. .......................... : ',i5)">("mnn11", error, text1, real1,
                                                                                 int1),
    entry<"(a,  ' Warnung: Das Profil an der Station .... : ',a/"
          "              5x, '          hat einen ungewöhnlichen Wert der'/"
          "              5x, '          Rauheit. Beiwert ............. : ',f9.3)">("mnn12", note, text1,
                                                                                   real1),
    entry<"(a,  ' Warnung: Das Profil an der Station .... : ',a/"
          "              5x, '          hat nur einen einzigen Rauheits-'/"
          "              5x, '          beiwert. Er gilt für alle Punkte.')">("mnn13", note, text1),
    entry<"(a,  ' Beim Profil an der Station ............ : ',a/"
          "              5x, ' fehlt der linke Uferpunkt!')">("mnn14", error, text1),
    entry<"(a,  ' Beim Profil an der Station ............ : ',a/"
          "              5x, ' fehlt der rechte Uferpunkt!')">("mnn15", error, text1),
    entry<"(a,  ' Beim Profil an der Station ............ : ',a/"
          "              5x, ' liegt der linke Uferpunkt Nr. ......... : ',i5/"
          "              5x, ' nicht vor dem rechten Uferpunkt Nr. ... : ',i5)">("mnn16", error, text1, int1,
                                                                                 int2),
    entry<"(a,  ' Warnung: Das Profil an der Station .... : ',a/"
          "              5x, '          hat seinen tiefsten Punkt außerhalb'/"
          "              5x, '          der Ufer. Punkt Nr. .......... : ',i5)">("mnn17", note, text1, int1),
    entry<"(a,  ' Hinweis: Das Profil an der Station .... : ',a/"
          "              5x, '          wird links senkrecht verlängert bis'/"
          "              5x, '          zur Höhe (m+NN) .............. : ',f9.3)">("mnn18", note, text1,
                                                                                   real1),
    entry<"(a,  ' Hinweis: Das Profil an der Station .... : ',a/"
          "              5x, '          wird rechts senkrecht verlängert bis'/"
          "              5x, '          zur Höhe (m+NN) .............. : ',f9.3)">("mnn19", note, text1,
                                                                                   real1),
    entry<"(a,  ' Die Profiltabelle ..................... : ',a/"
          "              5x, ' enthält kein Profil!')">("mnn20", error, text1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' fehlt die Endmarke nach der Station ... : ',a)">("mnn21", error, text1, text2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' ist die Anzahl der Profile ............ : ',i5/"
          "              5x, ' größer als die zulässige Anzahl ....... : ',i5)">("mnn22", error, text1, int1,
                                                                                 int2),
    entry<"(a,  ' Warnung: Der Abstand zum Unterlieger .. : ',a/"
          "              5x, '          ist ungewöhnlich groß (m) .... : ',f9.1/"
          "              5x, '          Bitte Zwischenprofile vorsehen.')">("mnn23", note, text1, real1),
    entry<"(a,  ' Das Profil an der Station ............. : ',a/"
          "              5x, ' hat zum Unterlieger den Abstand null oder einen'/"
          "              5x, ' negativen Abstand (m) ................. : ',f9.1)">("mnn24", error, text1,
                                                                                   real1),
    entry<"(a,  ' Beim Profil an der Station ............ : ',a/"
          "              5x, ' liegen alle Punkte gleich hoch (m+NN) . : ',f9.3)">("mnn25", error, text1,
                                                                                   real1),
    entry<"(a,  ' Bemerkung: Das Profil an der Station .. : ',a/"
          "              5x, '            hat die Sohlhöhe (m+NN) .... : ',f9.3/"
          "              5x, '            Sohle im Oberwasser (m+NN) . : ',f9.3/"
          "              5x, '            Die Sohle steigt in Fließrichtung.')">("mnn26", note, text1, real1,
                                                                                 real2),
    entry<"(a,  ' Beim Profil an der Station ............ : ',a/"
          "              5x, ' sind folgende Punkte nicht lesbar:')">("mnn27", error, text1),
    then<"(t18,i5,1x,a)">(int1, text2),
    then<"(t18,i5,1x,a)">(int2, text3),
    entry<"(a,  ' HINWEIS: Die Profiltabelle ............ : ',a/"
          "              5x, '          wurde geordnet. Profile ...... : ',i5)">("mnn28", note, text1, int1),
};
inline constexpr Group mnn_group{"mnn", "profile tables", mnn_entries};

inline constexpr Entry P_entries[] = {
    entry<"(a,  ' Die Profildatei ......................... : ',a/"
          "              3x, ' fehlt oder kann nicht geöffnet werden!')">("P00", error, text1),
    entry<"(a,  ' Die Profildatei ......................... : ',a/"
          "              3x, ' enthält keine Profile!')">("P01", error, text1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' liegt ein Formatfehler vor in Zeile ..... : ',i5)">("P02", error, text1, int1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt der Profiltyp bei der Station ..... : ',a)">("P03", error, text1, text2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' ist bei der Station ..................... : ',a/"
          "              3x, ' der Profiltyp unzulässig ................ : ',a)">("P04", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' ist der Profiltyp unbekannt. Kennziffer . : ',i5/"
          "              3x, ' Station (km) ............................ : ',f9.3)">("P05", error, text1,
                                                                                     int1, real1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt die Station in der Zeile Nr. ...... : ',i5)">("P06", error, text1, int1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' ist die Station nicht lesbar ............ : ',a)">("P07", error, text1, text2),
    entry<"(a,  ' In der Profildatei ..................... : ',a/"
          "              4x, ' ist mehrfach vorhanden die Station ..... : ',a)">("P080", error, text1, text2),
    entry<"(a,  ' In der Profildatei ..................... : ',a/"
          "              4x, ' hat dieselbe Station das Profil Nr. .... : ',i5/"
          "              4x, ' wie das Profil Nr. ..................... : ',i5)">("P08#", error, text1, int1,
                                                                                  int2),
    entry<"(a,  ' In der Profildatei ..................... : ',a/"
          "              4x, ' sind die Stationen nicht geordnet bei .. : ',a/"
          "              4x, ' Die vorhergehende Station ist .......... : ',a)">("P081", error, text1, text2,
                                                                                 text3),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' ist die Anzahl der Profile .............. : ',i5/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i5)">("P09", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt das Profil mit der Station (km) ... : ',f9.3)">("P10", error, text1,
                                                                                     real1),
    entry<"(a,  ' Im Kreisprofil an der Station .......... : ',a/"
          "              4x, ' ist der Durchmesser (m) ................ : ',f9.3/"
          "              4x, ' nicht größer als null!')">("P101", error, text1, real1),
    entry<"(a,  ' Im Rechteckprofil an der Station ....... : ',a/"
          "              4x, ' ist die Breite (m) ..................... : ',f9.3/"
          "              4x, ' oder die Höhe (m) ...................... : ',f9.3/"
          "              4x, ' nicht größer als null!')">("P102", error, text1, real1, real2),
    entry<"(a,  ' Im Trapezprofil an der Station ......... : ',a/"
          "              4x, ' ist die Böschungsneigung negativ ....... : ',f9.3)">("P103", error, text1,
                                                                                    real1),
    entry<"(a,  ' Das Profil an der Station ............... : ',a/"
          "              3x, ' hat zu wenige Profilpunkte. Anzahl ...... : ',i5)">("P11", error, text1, int1),
    entry<"(a,  ' Das Profil an der Station ............... : ',a/"
          "              3x, ' hat zu viele Profilpunkte. Anzahl ....... : ',i5/"
          "              3x, ' Zulässige Anzahl ........................ : ',i5)">("P12", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' Beim Profil an der Station .............. : ',a/"
          "              3x, ' ist der Profilpunkt Nr. ................. : ',i5/"
          "              3x, ' nicht lesbar. Eintrag ................... : ',a)">("P13", error, text1, int1,
                                                                                  text2),
    entry<"(a,  ' Beim Profil an der Station .............. : ',a/"
          "              3x, ' fehlt die Höhe des Profilpunkts Nr. ..... : ',i5)">("P14", error, text1, int1),
    entry<"(a,  ' Beim Profil an der Station .............. : ',a/"
          "              3x, ' fehlt die Sohlhöhe!')">("P15", error, text1),
    entry<"(a,  ' Warnung: Das Profil an der Station ...... : ',a/"
          "              3x, '          hat Gegengefälle. Höhe (m+NN) .. : ',f9.3/"
          "              3x, '          Sohle am Oberlieger (m+NN) ..... : ',f9.3)">("P16", note, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Warnung: Das Profil an der Station ...... : ',a/"
          "              3x, '          ist nicht hoch genug und wird'/"
          "              3x, '          senkrecht verlängert um (m) .... : ',f9.3)">("P17", note, text1,
                                                                                     real1)
        .capped(Counter::P, closing<"(3x, '          und weitere Profile ..............')">),
    entry<"(a,  ' Beim Profil an der Station .............. : ',a/"
          "              3x, ' liegt die Böschungsoberkante (m+NN) ..... : ',f9.3/"
          "              3x, ' tiefer als die Sohle (m+NN) ............. : ',f9.3)">("P18", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Beim Profil an der Station .............. : ',a/"
          "              3x, ' fehlt der Rauheitsbeiwert!')">("P19", error, text1),
    entry<"(a,  ' Das Wehrprofil an der Station ........... : ',a/"
          "              3x, ' hat keine Wehrkrone!')">("P20", error, text1),
    entry<"(a,  ' Das Wehrprofil an der Station ........... : ',a/"
          "              3x, ' hat die Kronenhöhe (m+NN) ............... : ',f9.3/"
          "              3x, ' Sie liegt tiefer als die Sohle (m+NN) ... : ',f9.3)">("P21", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Das Wehrprofil an der Station ........... : ',a/"
          "              3x, ' hat keinen zulässigen Überfallbeiwert ... : ',f9.3)">("P22", error, text1,
                                                                                     real1),
    entry<"(a,  ' Das Wehrprofil an der Station ........... : ',a/"
          "              3x, ' ist an der größten Breite Bmx nicht größer als'/"
          "              3x, ' null. Gelesener Wert (m) ................ : ',f9.3)">("P23", error, text1,
                                                                                     real1)
        .when(text2, "Bmx"),
    entry<"(a,  ' Das Wehrprofil an der Station ........... : ',a/"
          "              3x, ' ist an der kleinsten Breite Bmn nicht größer als'/"
          "              3x, ' null. Gelesener Wert (m) ................ : ',f9.3)">("P23", error, text1,
                                                                                     real1)
        .when(text2, "Bmn"),
    entry<"(a,  ' Das Wehrprofil an der Station ........... : ',a/"
          "              3x, ' hat eine unzulässige Breite ............. : ',a/"
          "              3x, ' Gelesener Wert (m) ...................... : ',f9.3)">("P23", error, text1,
                                                                                     text2, real1),
    entry<"(a,  ' Zum Wehrprofil an der Station ........... : ',a/"
          "              3x, ' fehlt das Profil im Unterwasser.')">("P24", error, text1),
    entry<"(a,  ' Warnung: Das Wehr an der Station ........ : ',a/"
          "              3x, '          wird eingestaut. Die Überfallhöhe'/"
          "              3x, '          wird abgemindert auf (m) ....... : ',f9.3)">("P25", note, text1,
                                                                                     real1),
    entry<"(a,  ' Das Wehrprofil an der Station ........... : ',a/"
          "              3x, ' ist breiter als das Gewässer (m) ........ : ',f9.3/"
          "              3x, ' Breite des Gewässers (m) ................ : ',f9.3)">("P26", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Das interpolierte Profil an Station ..... : ',a/"
          "              3x, ' hat kein Profil im Oberwasser!')">("P27", error, text1),
    entry<"(a,  ' Das interpolierte Profil an Station .... : ',a/"
          "              4x, ' hat kein Profil im Unterwasser!')">("P271", error, text1),
    entry<"(a,  ' Das interpolierte Profil an Station ..... : ',a/"
          "              3x, ' liegt nicht zwischen den Stationen (km) . : ',f9.3/"
          "              3x, ' und (km) ................................ : ',f9.3)">("P28", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Beim interpolierten Profil an Station ... : ',a/"
          "              3x, ' weichen die größten Breiten Bmx der Nachbarprofile'/"
          "              3x, ' zu stark voneinander ab (m) ............. : ',f9.3)">("P29", error, text1,
                                                                                     real1)
        .when(text2, "Bmx"),
    entry<"(a,  ' Beim interpolierten Profil an Station ... : ',a/"
          "              3x, ' weichen die kleinsten Breiten Bmn der Nachbarprofile'/"
          "              3x, ' zu stark voneinander ab (m) ............. : ',f9.3)">("P29", error, text1,
                                                                                     real1)
        .when(text2, "Bmn"),
    entry<"(a,  ' Beim interpolierten Profil an Station ... : ',a/"
          "              3x, ' sind ungleich die Nachbarprofile in ..... : ',a/"
          "              3x, ' Abweichung .............................. : ',f9.3)">("P29", error, text1,
                                                                                     text2, real1),
    entry<"(a,  ' Hinweis: Das Profil an der Station ...... : ',a/"
          "              3x, '          wurde interpoliert zwischen .... : ',a/"
          "              3x, '          und der Station ................ : ',a)">("P30", note, text1, text2,
                                                                                  text3),
    entry<"(a,  ' Das interpolierte Profil an Station ..... : ',a/"
          "              3x, ' hat Nachbarn verschiedenen Typs ......... : ',a/"
          "              3x, ' und ..................................... : ',a)">("P31", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' Das Brückenprofil an der Station ........ : ',a/"
          "              3x, ' hat keine Unterkante!')">("P40", error, text1),
    entry<"(a,  ' Das Brückenprofil an der Station ........ : ',a/"
          "              3x, ' hat die Unterkante (m+NN) ............... : ',f9.3/"
          "              3x, ' Sie liegt über der Oberkante (m+NN) ..... : ',f9.3)">("P41", error, text1,
                                                                                     real1, real2),
    entry<"(a,  ' Das Brückenprofil an der Station ........ : ',a/"
          "              3x, ' hat keine lichte Weite. Anzahl Pfeiler .. : ',i5)">("P42", error, text1, int1),
    entry<"(a,  ' Warnung: Die Brücke an der Station ...... : ',a/"
          "              3x, '          wird überströmt ab (m+NN) ...... : ',f9.3)">("P43", note, text1,
                                                                                     real1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt das Profil zur Abflussstation ..... : ',a)">("P50", error, text1, text2),
    entry<"(a,  ' Die Profildatei ......................... : ',a/"
          "              3x, ' gehört zum Gewässer ..................... : ',a/"
          "              3x, ' Verlangt wird jedoch das Gewässer ....... : ',a)">("P51", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlen die Profile der Strecke .......... : ',a)">("P52", error, text1, text2),
    entry<"(a,  ' Bemerkung: In der Profildatei ........... : ',a/"
          "              3x, '            bleiben Profile ungenutzt.'/"
          "              3x, '            Anzahl ....................... : ',i5)">("P53", note, text1, int1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' sind folgende Zeilen fehlerhaft:')">("P99", error, text1),
    then<"(t18,i5,1x,a)">(int1, text2),
    then<"(t18,i5,1x,a)">(int2, text3),
    then<"(3x, ' Bitte die Zeilen berichtigen!')">(),
};
inline constexpr Group P_group{"P", "profile files", P_entries};

inline constexpr Entry S_entries[] = {
    entry<"(a,  ' Die Sonderprofildatei ................... : ',a/"
          "              3x, ' fehlt oder kann nicht geöffnet werden!')">("S01", error, text1),
    entry<"(a,  ' In der Sonderprofildatei ................ : ',a/"
          "              3x, ' fehlt das Sonderprofil .................. : ',a)">("S02", error, text1, text2),
    entry<"(a,  ' Beim Sonderprofil ....................... : ',a/"
          "              3x, ' ist die Anzahl der Lamellen ............. : ',i5/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i5)">("S03", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' Beim Sonderprofil ....................... : ',a/"
          "              3x, ' liegt zu tief die Lamelle Nr. ........... : ',i5/"
          "              3x, ' Die Lamellenhöhen müssen ansteigen!')">("S04", error, text1, int1),
    entry<"(a,  ' Beim Sonderprofil ....................... : ',a/"
          "              3x, ' ist die Anzahl der Felder ............... : ',i5/"
          "              3x, ' nicht zulässig. Höchstens zulässig sind . : ',i5)">("S05", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' Beim Sonderprofil ....................... : ',a/"
          "              3x, ' überschneidet das Nachbarfeld Feld Nr. .. : ',i5)">("S06", error, text1, int1),
    entry<"(a,  ' Beim Sonderprofil ....................... : ',a/"
          "              3x, ' ist der Halbmesser der Kreissohle (m) ... : ',f9.3/"
          "              3x, ' kleiner als die halbe Sohlbreite (m) .... : ',f9.3)">("S07", error, text1,
                                                                                     real1, real2),
};
inline constexpr Group S_group{"S", "special profile files", S_entries};

inline constexpr Entry Vkl_entries[] = {
    entry<"(a,  ' Warnung: Das Profil an der Station ..... : ',a/"
          "              4x, '          hat eine Verklausungshöhe (m) . : ',f9.3/"
          "              4x, '          Die lichte Höhe beträgt (m) ... : ',f9.3/"
          "              4x, '          Es wird mit der lichten Höhe gerechnet.')">("Vkl1", note, text1,
                                                                                    real1, real2),
};
inline constexpr Group Vkl_group{"Vkl", "blockage at profiles", Vkl_entries};

inline constexpr Entry Rt_entries[] = {
    entry<"(a,  ' Interner Fehler: Der Station ............ : ',a/"
          "              3x, ' ist in der Relation von Abfluss und Profil'/"
          "              3x, ' kein Profil zugeordnet.')">("Rt3", error, text1),
    entry<"(a,  ' Interner Fehler: Dem Profil ............. : ',a/"
          "              3x, ' ist in der Relation von Abfluss und Profil'/"
          "              3x, ' kein Abfluss zugeordnet. Profil Nr. ..... : ',i5)">("Rt4", error, text1, int1),
    entry<"(a,  ' Interner Fehler: Anzahl der Zuordnungen . : ',i5/"
          "              3x, ' in der Relation von Abfluss und Profil'/"
          "              3x, ' ist ungleich der Anzahl der Profile ..... : ',i5)">("Rt5", error, int1, int2),
};
inline constexpr Group Rt_group{"Rt", "the relation of discharges to profiles", Rt_entries};

}  // namespace m_WLM_error::catalogue
