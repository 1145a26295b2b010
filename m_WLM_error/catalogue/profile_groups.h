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
          "              5x, ' ist die Station ....................... : ',a/"
          "              5x, ' mehrfach vorhanden!')">("mnn02", error, text1, text2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' ist die Station ....................... : ',a/"
          "              5x, ' kleiner als die vorhergehende ......... : ',a/"
          "              5x, ' Die Stationen müssen ansteigen!')">("mnn03", error, text1, text2, text3),
    entry<"(a,  ' In der Profiltabelle ................. : ',a/"
          "              6x, ' enthält die Zeile Nr. ................ : ',i9/"
          "              6x, ' einen Formatfehler!')">("mnn050", error, text1, int1),
    entry<"(a,  ' In der Profiltabelle ................. : ',a/"
          "              6x, ' ist in der Zeile Nr. ................. : ',i9/"
          "              6x, ' die Station .......................... : ',a/"
          "              6x, ' nicht lesbar!')">("mnn051", error, text1, int1, text2),
    entry<"(a,  ' In der Profiltabelle ................. : ',a/"
          "              6x, ' ist beim Profil an der Station ....... : ',a/"
          "              6x, ' der Punkt in der Zeile Nr. ........... : ',i9/"
          "              6x, ' nicht lesbar!')">("mnn052", error, text1, text2, int1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' hat das Profil an der Station ......... : ',a/"
          "              5x, ' zu wenige Punkte. Anzahl .............. : ',i5/"
          "              5x, ' Erforderliche Anzahl .................. : ',i5)">("mnn06", error, text1, text2,
                                                                                 int1, int2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' hat das Profil an der Station ......... : ',a/"
          "              5x, ' zu viele Punkte. Anzahl ............... : ',i5/"
          "              5x, ' Zulässige Anzahl ...................... : ',i5)">("mnn07", error, text1, text2,
                                                                                 int1, int2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' liegt beim Profil an der Station ...... : ',a/"
          "              5x, ' der Punkt Nr. ......................... : ',i5/"
          "              5x, ' links vom vorhergehenden Punkt!')">("mnn08", error, text1, text2, int1),
    entry<"(a,  ' Warnung: Das Profil an der Station .... : ',a/"
          "              5x, '          der Profiltabelle ............ : ',a/"
          "              5x, '          enthält zweimal'/"
          "              5x, '          den Punkt Nr. ................ : ',i5/"
          "              5x, '          Der zweite wird übergangen.')">("mnn09", note, text2, text1, int1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' fehlt beim Profil an der Station ...... : ',a/"
          "              5x, ' der Rauheitsbeiwert am Punkt Nr. ...... : ',i5)">("mnn10", error, text1, text2,
                                                                                 int1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' hat das Profil an der Station ......... : ',a/"
          "              5x, ' am Punkt Nr. .......................... : ',i5/"
          "              5x, ' den Rauheitsbeiwert ................... : ',f9.3/"
          "              5x, ' Er muss größer als null sein!')">("mnn11", error, text1, text2, int1, real1),
    entry<"(a,  ' Warnung: Das Profil an der Station .... : ',a/"
          "              5x, '          der Profiltabelle ............ : ',a/"
          "              5x, '          hat den ungewöhnlichen'/"
          "              5x, '          Rauheitsbeiwert .............. : ',f9.3)">("mnn12", note, text2,
                                                                                   text1, real1),
    entry<"(a,  ' Warnung: Das Profil an der Station .... : ',a/"
          "              5x, '          der Profiltabelle ............ : ',a/"
          "              5x, '          hat nur einen einzigen Rauheitsbeiwert.'/"
          "              5x, '          Er gilt für alle Punkte.')">("mnn13", note, text2, text1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' fehlt beim Profil an der Station ...... : ',a/"
          "              5x, ' der linke Uferpunkt!')">("mnn14", error, text1, text2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' fehlt beim Profil an der Station ...... : ',a/"
          "              5x, ' der rechte Uferpunkt!')">("mnn15", error, text1, text2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' liegt beim Profil an der Station ...... : ',a/"
          "              5x, ' der linke Uferpunkt Nr. ............... : ',i5/"
          "              5x, ' nicht vor dem rechten Uferpunkt Nr. ... : ',i5)">("mnn16", error, text1, text2,
                                                                                 int1, int2),
    entry<"(a,  ' Warnung: Das Profil an der Station .... : ',a/"
          "              5x, '          der Profiltabelle ............ : ',a/"
          "              5x, '          hat seinen tiefsten Punkt außerhalb'/"
          "              5x, '          der Ufer. Punkt Nr. .......... : ',i5)">("mnn17", note, text2, text1,
                                                                                 int1),
    entry<"(a,  ' Hinweis: Das Profil an der Station .... : ',a/"
          "              5x, '          der Profiltabelle ............ : ',a/"
          "              5x, '          wird links senkrecht verlängert'/"
          "              5x, '          bis zur Höhe (m+NN) .......... : ',f9.3)">("mnn18", note, text2,
                                                                                   text1, real1),
    entry<"(a,  ' Hinweis: Das Profil an der Station .... : ',a/"
          "              5x, '          der Profiltabelle ............ : ',a/"
          "              5x, '          wird rechts senkrecht verlängert'/"
          "              5x, '          bis zur Höhe (m+NN) .......... : ',f9.3)">("mnn19", note, text2,
                                                                                   text1, real1),
    entry<"(a,  ' Die Profiltabelle ..................... : ',a/"
          "              5x, ' enthält kein Profil!')">("mnn20", error, text1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' fehlt nach der Station ................ : ',a/"
          "              5x, ' die Endmarke des Profils!')">("mnn21", error, text1, text2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' ist die Anzahl der Profile ............ : ',i5/"
          "              5x, ' größer als die zulässige Anzahl ....... : ',i5)">("mnn22", error, text1, int1,
                                                                                 int2),
    entry<"(a,  ' Warnung: Das Profil an der Station .... : ',a/"
          "              5x, '          der Profiltabelle ............ : ',a/"
          "              5x, '          hat zum Profil unterhalb einen ungewöhnlich'/"
          "              5x, '          großen Abstand (m) ........... : ',f9.1/"
          "              5x, '          Bitte Zwischenprofile vorsehen.')">("mnn23", note, text2, text1,
                                                                            real1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' hat das Profil an der Station ......... : ',a/"
          "              5x, ' zum Profil unterhalb den Abstand (m) .. : ',f9.1/"
          "              5x, ' Er muss größer als null sein!')">("mnn24", error, text1, text2, real1),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' liegen beim Profil an der Station ..... : ',a/"
          "              5x, ' alle Punkte auf gleicher Höhe (m+NN) .. : ',f9.3)">("mnn25", error, text1,
                                                                                   text2, real1),
    entry<"(a,  ' Bemerkung: Das Profil an der Station .. : ',a/"
          "              5x, '            der Profiltabelle .......... : ',a/"
          "              5x, '            hat die Sohlhöhe (m+NN) .... : ',f9.3/"
          "              5x, '            Sohlhöhe oberhalb (m+NN) ... : ',f9.3/"
          "              5x, '            Die Sohle steigt in Fließrichtung an.')">("mnn26", note, text2,
                                                                                    text1, real1, real2),
    entry<"(a,  ' In der Profiltabelle .................. : ',a/"
          "              5x, ' sind beim Profil an der Station (km) .. : ',f9.3/"
          "              5x, ' folgende Punkte nicht lesbar:')">("mnn27", error, text1, real1),
    then<"(t18,i5,1x,a)">(int1, text2),
    then<"(t18,i5,1x,a)">(int2, text3),
    entry<"(a,  ' HINWEIS: Die Profiltabelle ............ : ',a/"
          "              5x, '          wurde nach Stationen geordnet.'/"
          "              5x, '          Anzahl der Profile ........... : ',i5)">("mnn28", note, text1, int1),
};
inline constexpr Group mnn_group{"mnn", "profile tables", mnn_entries};

inline constexpr Entry P_entries[] = {
    entry<"(a,  ' Die Profildatei ......................... : ',a/"
          "              3x, ' fehlt oder kann nicht geöffnet werden!')">("P00", error, text1),
    entry<"(a,  ' Die Profildatei ......................... : ',a/"
          "              3x, ' enthält kein Profil!')">("P01", error, text1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' enthält die Zeile Nr. ................... : ',i9/"
          "              3x, ' einen Formatfehler!')">("P02", error, text1, int1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt beim Profil an der Station ........ : ',a/"
          "              3x, ' der Profiltyp!')">("P03", error, text1, text2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' ist beim Profil an der Station .......... : ',a/"
          "              3x, ' der Profiltyp ........................... : ',a/"
          "              3x, ' unzulässig!')">("P04", error, text1, text2, text3),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' ist beim Profil an der Station .......... : ',a/"
          "              3x, ' die Kennziffer des Profiltyps ........... : ',i5/"
          "              3x, ' unbekannt!')">("P05", error, text1, text2, int1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt in der Zeile Nr. .................. : ',i9/"
          "              3x, ' die Station!')">("P06", error, text1, int1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' ist in der Zeile Nr. .................... : ',i9/"
          "              3x, ' die Station ............................. : ',a/"
          "              3x, ' nicht lesbar!')">("P07", error, text1, int1, text2),
    entry<"(a,  ' In der Profildatei ..................... : ',a/"
          "              4x, ' ist die Station ........................ : ',a/"
          "              4x, ' mehrfach vorhanden!')">("P080", error, text1, text2),
    entry<"(a,  ' In der Profildatei ..................... : ',a/"
          "              4x, ' haben die Profile Nr. .................. : ',i5/"
          "              4x, ' und Nr. ................................ : ',i5/"
          "              4x, ' dieselbe Station!')">("P08#", error, text1, int1, int2),
    entry<"(a,  ' In der Profildatei ..................... : ',a/"
          "              4x, ' ist die Station ........................ : ',a/"
          "              4x, ' kleiner als die vorhergehende .......... : ',a/"
          "              4x, ' Die Stationen müssen ansteigen!')">("P081", error, text1, text2, text3),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' ist die Anzahl der Profile .............. : ',i5/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i5)">("P09", error, text1, int1,
                                                                                   int2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt das Profil an der Station (km) .... : ',f9.3)">("P10", error, text1,
                                                                                     real1),
    entry<"(a,  ' In der Profildatei ..................... : ',a/"
          "              4x, ' ist beim Kreisprofil an der Station .... : ',a/"
          "              4x, ' der Durchmesser (m) .................... : ',f9.3/"
          "              4x, ' nicht größer als null!')">("P101", error, text1, text2, real1),
    entry<"(a,  ' In der Profildatei ..................... : ',a/"
          "              4x, ' ist beim Rechteckprofil an der Station . : ',a/"
          "              4x, ' die Breite (m) ......................... : ',f9.3/"
          "              4x, ' oder die Höhe (m) ...................... : ',f9.3/"
          "              4x, ' nicht größer als null!')">("P102", error, text1, text2, real1, real2),
    entry<"(a,  ' In der Profildatei ..................... : ',a/"
          "              4x, ' ist beim Trapezprofil an der Station ... : ',a/"
          "              4x, ' die Böschungsneigung (1:m) ............. : ',f9.3/"
          "              4x, ' negativ!')">("P103", error, text1, text2, real1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' hat das Profil an der Station ........... : ',a/"
          "              3x, ' zu wenige Punkte. Anzahl ................ : ',i5/"
          "              3x, ' Erforderliche Anzahl .................... : ',i5)">("P11", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' hat das Profil an der Station ........... : ',a/"
          "              3x, ' zu viele Punkte. Anzahl ................. : ',i5/"
          "              3x, ' Zulässige Anzahl ........................ : ',i5)">("P12", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' ist beim Profil an der Station .......... : ',a/"
          "              3x, ' der Punkt Nr. ........................... : ',i5/"
          "              3x, ' nicht lesbar. Eintrag ................... : ',a)">("P13", error, text1, text2,
                                                                                  int1, text3),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt beim Profil an der Station ........ : ',a/"
          "              3x, ' die Höhe des Punkts Nr. ................. : ',i5)">("P14", error, text1, text2,
                                                                                   int1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt beim Profil an der Station ........ : ',a/"
          "              3x, ' die Sohlhöhe!')">("P15", error, text1, text2),
    entry<"(a,  ' Warnung: Das Profil an der Station ...... : ',a/"
          "              3x, '          der Profildatei ................ : ',a/"
          "              3x, '          hat Gegengefälle zum Profil oberhalb.'/"
          "              3x, '          Sohlhöhe (m+NN) ................ : ',f9.3/"
          "              3x, '          Sohlhöhe oberhalb (m+NN) ....... : ',f9.3)">("P16", note, text2,
                                                                                     text1, real1, real2),
    entry<"(a,  ' Warnung: Das Profil an der Station ...... : ',a/"
          "              3x, '          der Profildatei ................ : ',a/"
          "              3x, '          ist nicht hoch genug und wird'/"
          "              3x, '          senkrecht verlängert um (m) .... : ',f9.3)">("P17", note, text2,
                                                                                     text1, real1)
        .capped(Counter::P, closing<"(3x, '          und weitere Profile ..............')">),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' liegt beim Profil an der Station ........ : ',a/"
          "              3x, ' die Böschungsoberkante (m+NN) ........... : ',f9.3/"
          "              3x, ' tiefer als die Sohle (m+NN) ............. : ',f9.3)">("P18", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt beim Profil an der Station ........ : ',a/"
          "              3x, ' der Rauheitsbeiwert!')">("P19", error, text1, text2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' hat das Wehrprofil an der Station ....... : ',a/"
          "              3x, ' keine Wehrkrone!')">("P20", error, text1, text2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' liegt beim Wehrprofil an der Station .... : ',a/"
          "              3x, ' die Wehrkrone (m+NN) .................... : ',f9.3/"
          "              3x, ' tiefer als die Sohle (m+NN) ............. : ',f9.3)">("P21", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' hat das Wehrprofil an der Station ....... : ',a/"
          "              3x, ' den unzulässigen Überfallbeiwert (-) .... : ',f9.3/"
          "              3x, ' Zulässig sind Werte über 0 bis (-) ...... : ',f9.3)">("P22", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' hat das Wehrprofil an der Station ....... : ',a/"
          "              3x, ' die größte Breite Bmx (m) ............... : ',f9.3/"
          "              3x, ' Sie muss größer als null sein!')">("P23", error, text1, text2, real1)
        .when(text3, "Bmx"),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' hat das Wehrprofil an der Station ....... : ',a/"
          "              3x, ' die kleinste Breite Bmn (m) ............. : ',f9.3/"
          "              3x, ' Sie muss größer als null sein!')">("P23", error, text1, text2, real1)
        .when(text3, "Bmn"),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' hat beim Wehrprofil an der Station ...... : ',a/"
          "              3x, ' die Breite .............................. : ',a/"
          "              3x, ' den Wert (m) ............................ : ',f9.3/"
          "              3x, ' Sie muss größer als null sein!')">("P23", error, text1, text2, text3, real1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt zum Wehrprofil an der Station ..... : ',a/"
          "              3x, ' das Profil unterhalb!')">("P24", error, text1, text2),
    entry<"(a,  ' Warnung: Das Wehr an der Station ........ : ',a/"
          "              3x, '          der Profildatei ................ : ',a/"
          "              3x, '          ist eingestaut. Der Überfallbeiwert'/"
          "              3x, '          wird abgemindert auf (-) ....... : ',f9.3)">("P25", note, text2,
                                                                                     text1, real1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' ist beim Wehrprofil an der Station ...... : ',a/"
          "              3x, ' die Breite des Wehrs (m) ................ : ',f9.3/"
          "              3x, ' größer als die Breite des Gewässers (m) . : ',f9.3)">("P26", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt zum interpolierten'/"
          "              3x, ' Profil an der Station ................... : ',a/"
          "              3x, ' das Profil oberhalb!')">("P27", error, text1, text2),
    entry<"(a,  ' In der Profildatei ..................... : ',a/"
          "              4x, ' fehlt zum interpolierten'/"
          "              4x, ' Profil an der Station .................. : ',a/"
          "              4x, ' das Profil unterhalb!')">("P271", error, text1, text2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' liegt das interpolierte'/"
          "              3x, ' Profil an der Station ................... : ',a/"
          "              3x, ' nicht zwischen den Stationen (km) ....... : ',f9.3/"
          "              3x, ' und (km) ................................ : ',f9.3)">("P28", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' unterscheiden sich beim interpolierten'/"
          "              3x, ' Profil an der Station ................... : ',a/"
          "              3x, ' die Nachbarprofile in der größten Breite'/"
          "              3x, ' Bmx zu stark. Unterschied (m) ........... : ',f9.3)">("P29", error, text1,
                                                                                     text2, real1)
        .when(text3, "Bmx"),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' unterscheiden sich beim interpolierten'/"
          "              3x, ' Profil an der Station ................... : ',a/"
          "              3x, ' die Nachbarprofile in der kleinsten Breite'/"
          "              3x, ' Bmn zu stark. Unterschied (m) ........... : ',f9.3)">("P29", error, text1,
                                                                                     text2, real1)
        .when(text3, "Bmn"),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' unterscheiden sich beim interpolierten'/"
          "              3x, ' Profil an der Station ................... : ',a/"
          "              3x, ' die Nachbarprofile in ................... : ',a/"
          "              3x, ' zu stark. Unterschied ................... : ',f9.3)">("P29", error, text1,
                                                                                     text2, text3, real1),
    entry<"(a,  ' Hinweis: Das Profil an der Station ...... : ',a/"
          "              3x, '          der Profildatei ................ : ',a/"
          "              3x, '          wurde zwischen (km) ............ : ',f9.3/"
          "              3x, '          und (km) ....................... : ',f9.3/"
          "              3x, '          interpoliert.')">("P30", note, text2, text1, real1, real2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' hat das interpolierte'/"
          "              3x, ' Profil an der Station ................... : ',a/"
          "              3x, ' Nachbarprofile verschiedenen Typs.'/"
          "              3x, ' Kennziffer des Typs oberhalb ............ : ',i5/"
          "              3x, ' Kennziffer des Typs unterhalb ........... : ',i5)">("P31", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' hat das Brückenprofil an der Station .... : ',a/"
          "              3x, ' keine Unterkante!')">("P40", error, text1, text2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' liegt beim Brückenprofil an der Station . : ',a/"
          "              3x, ' die Unterkante (m+NN) ................... : ',f9.3/"
          "              3x, ' höher als die Oberkante (m+NN) .......... : ',f9.3)">("P41", error, text1,
                                                                                     text2, real1, real2),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' hat das Brückenprofil an der Station .... : ',a/"
          "              3x, ' keine lichte Weite. Anzahl der Pfeiler .. : ',i5)">("P42", error, text1, text2,
                                                                                   int1),
    entry<"(a,  ' Warnung: Die Brücke an der Station ...... : ',a/"
          "              3x, '          der Profildatei ................ : ',a/"
          "              3x, '          wird ab dem Wasserstand (m+NN) . : ',f9.3/"
          "              3x, '          überströmt.')">("P43", note, text2, text1, real1),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlt zur Station der Abflussdatei ...... : ',a/"
          "              3x, ' das Profil!')">("P50", error, text1, text2),
    entry<"(a,  ' Die Profildatei ......................... : ',a/"
          "              3x, ' gehört zum Gewässer ..................... : ',a/"
          "              3x, ' Erwartet wird jedoch das Gewässer ....... : ',a)">("P51", error, text1, text2,
                                                                                  text3),
    entry<"(a,  ' In der Profildatei ...................... : ',a/"
          "              3x, ' fehlen die Profile der Transportstrecke . : ',a)">("P52", error, text1, text2),
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
    entry<"(a,  ' Die Sonderprofildatei (SPR) ............. : ',a/"
          "              3x, ' fehlt oder kann nicht geöffnet werden!')">("S01", error, text1),
    entry<"(a,  ' In der Sonderprofildatei (SPR) .......... : ',a/"
          "              3x, ' fehlt das Sonderprofil .................. : ',a)">("S02", error, text1, text2),
    entry<"(a,  ' In der Sonderprofildatei (SPR) .......... : ',a/"
          "              3x, ' ist beim Sonderprofil ................... : ',a/"
          "              3x, ' die Anzahl der Lamellen ................. : ',i5/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i5)">("S03", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' In der Sonderprofildatei (SPR) .......... : ',a/"
          "              3x, ' liegt beim Sonderprofil ................. : ',a/"
          "              3x, ' die Lamelle Nr. ......................... : ',i5/"
          "              3x, ' nicht höher als die vorhergehende!')">("S04", error, text1, text2, int1),
    entry<"(a,  ' In der Sonderprofildatei (SPR) .......... : ',a/"
          "              3x, ' ist beim Sonderprofil ................... : ',a/"
          "              3x, ' die Anzahl der Felder ................... : ',i5/"
          "              3x, ' größer als die zulässige Anzahl ......... : ',i5)">("S05", error, text1, text2,
                                                                                   int1, int2),
    entry<"(a,  ' In der Sonderprofildatei (SPR) .......... : ',a/"
          "              3x, ' wird beim Sonderprofil .................. : ',a/"
          "              3x, ' das Feld Nr. ............................ : ',i5/"
          "              3x, ' vom benachbarten Feld Nr. ............... : ',i5/"
          "              3x, ' überschnitten!')">("S06", error, text1, text2, int1, int2),
    entry<"(a,  ' In der Sonderprofildatei (SPR) .......... : ',a/"
          "              3x, ' ist beim Sonderprofil ................... : ',a/"
          "              3x, ' der Radius der Kreissohle (m) ........... : ',f9.3/"
          "              3x, ' kleiner als die halbe Sohlbreite (m) .... : ',f9.3)">("S07", error, text1,
                                                                                     text2, real1, real2),
};
inline constexpr Group S_group{"S", "special profile files (SPR)", S_entries};

inline constexpr Entry Vkl_entries[] = {
    entry<"(a,  ' Warnung: Am Profil an der Station ...... : ',a/"
          "              4x, '          der Profildatei ............... : ',a/"
          "              4x, '          wird die lichte Höhe (m) ...... : ',f9.3/"
          "              4x, '          von der Verklausungshöhe (m) .. : ',f9.3/"
          "              4x, '          überschritten. Es wird mit der lichten Höhe'/"
          "              4x, '          gerechnet.')">("Vkl1", note, text2, text1, real2, real1),
};
inline constexpr Group Vkl_group{"Vkl", "blockage at profiles", Vkl_entries};

inline constexpr Entry Rt_entries[] = {
    entry<"(a,  ' Interner Fehler: Der Station ............ : ',a/"
          "              3x, ' am Gewässer ............................. : ',a/"
          "              3x, ' ist kein Profil zugeordnet!'/"
          "              3x, ' (Zuordnung von Abflüssen und Profilen)')">("Rt3", error, text2, text1),
    entry<"(a,  ' Interner Fehler: Dem Profil Nr. ......... : ',i5/"
          "              3x, ' an der Station .......................... : ',a/"
          "              3x, ' am Gewässer ............................. : ',a/"
          "              3x, ' ist kein Abfluss zugeordnet!'/"
          "              3x, ' (Zuordnung von Abflüssen und Profilen)')">("Rt4", error, int1, text2, text1),
    entry<"(a,  ' Interner Fehler: Anzahl der Zuordnungen . : ',i5/"
          "              3x, ' Anzahl der Profile ...................... : ',i5/"
          "              3x, ' Die Anzahlen müssen übereinstimmen!'/"
          "              3x, ' (Zuordnung von Abflüssen und Profilen)')">("Rt5", error, int1, int2),
};
inline constexpr Group Rt_group{"Rt", "the relation of discharges to profiles", Rt_entries};

}  // namespace m_WLM_error::catalogue
