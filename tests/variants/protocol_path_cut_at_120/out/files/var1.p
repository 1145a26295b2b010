Prüfprotokoll: KARVOS
A00 In der Tabelle .......................... : .\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\.\var1.nfl
    fehlt das Element ....................... : N0010
    (evtl. fehlerhafter Datensatz)
