// The German texts.
#include "app/strings/packs.h"
#include "build_settings.h"

constexpr PackText kGermanTexts[kStringKeys.size()] = {
    {kGerman, "app_title",
     L"Mirelo v0.2 - CDR-Hänger diagnostizieren, Dateien verschlanken - " MIRELO_MAKER},
    {kGerman, "ready_tip",
     L"Mirelo ist bereit. Wenn CDR hängt, wechseln Sie zur Registerkarte \"Diagnose\" und klicken "
     L"Sie auf \"Jetzt erfassen\"."},
    {kGerman, "log_sig_local", L"Signaturdatenbank aus dem lokalen Cache geladen"},
    {kGerman, "tab_diag", L"Diagnose"},
    {kGerman, "tab_fix", L"Abhilfe"},
    {kGerman, "tab_cloud", L"Cloud"},
    {kGerman, "tab_about", L"Info"},
    {kGerman, "tab_dev", L"Entwicklung"},
    {kGerman, "card_cdr_instance", L"CDR-Instanz"},
    {kGerman, "card_diagnose", L"Diagnose - den Verursacher finden"},
    {kGerman, "card_fileslim", L"Dateien verschlanken - die eigentliche Lösung"},
    {kGerman, "card_scan", L"Umgebungsprüfung"},
    {kGerman, "card_printer", L"Drucker"},
    {kGerman, "card_cleanup", L"Cache-Bereinigung"},
    {kGerman, "card_cdrsettings", L"CDR-Einstellungen"},
    {kGerman, "card_sigs", L"Aktuelle Signaturen"},
    {kGerman, "card_cloudop", L"Aktionen"},
    {kGerman, "card_network", L"Netzwerk"},
    {kGerman, "card_site", L"Offizielle Website"},
    {kGerman, "card_safety", L"Sicherheitsversprechen"},
    {kGerman, "card_pdb", L"Symboldateien (PDB)"},
    {kGerman, "card_leak", L"Test auf Handle-Lecks"},
    {kGerman, "card_watchdog", L"Hänger-Überwachung"},
    {kGerman, "btn_refresh", L"Neu laden"},
    {kGerman, "btn_metrics", L"Messwerte"},
    {kGerman, "btn_capture", L"Jetzt erfassen (wenn CDR hängt)"},
    {kGerman, "diag_hint",
     L"Die Ergebnisse erscheinen unten im Protokollbereich. Bei Treffern folgt automatisch eine "
     L"Empfehlung."},
    {kGerman, "btn_slim", L"CDR-Dateien zum Verschlanken auswählen"},
    {kGerman, "hint_slim",
     L"Entfernt gespeicherte Ansichten (auch Ihre eigenen), überflüssige Farbstile und "
     L"Vorschau-Caches. Jede Datei wird zuvor als .mirelobak gesichert; verschlankte Dateien "
     L"verbreiten keine Hänger mehr."},
    {kGerman, "btn_scan", L"Jetzt prüfen"},
    {kGerman, "hint_scan",
     L"Prüft Standarddrucker (Netzwerk/offline), Anzahl der Schriftarten, GDI-Handle-Kontingent "
     L"und Arbeitsspeicher – die häufigsten Ursachen für Hänger."},
    {kGerman, "btn_printer", L"Vorübergehend umstellen (automatisch zurück)"},
    {kGerman, "hint_printer",
     L"Legt vorübergehend Microsoft Print to PDF als Standarddrucker fest, um langsame "
     L"Netzwerkdrucker zu umgehen; beim Beenden wird Ihr bisheriger Drucker automatisch "
     L"wiederhergestellt."},
    {kGerman, "btn_clean", L"Sichern und bereinigen"},
    {kGerman, "hint_clean",
     L"Verschiebt Absturzberichte, temporäre Dateien und Caches für Miniaturansichten aller "
     L"CDR-Versionen in einen Sicherungsordner; mit \"Wiederherstellen\" jederzeit umkehrbar."},
    {kGerman, "btn_restore", L"Wiederherstellen"},
    {kGerman, "btn_optimize", L"Optimieren (Registrierung wird gesichert)"},
    {kGerman, "hint_settings",
     L"Setzt die Rückgängig-Stufen auf 30 und deaktiviert den Begrüßungsbildschirm; die "
     L"Registrierung wird zuvor exportiert. Wirksam nach einem Neustart von CDR."},
    {kGerman, "cloud_loading", L"Wird geladen"},
    {kGerman, "btn_update", L"Signaturen aktualisieren"},
    {kGerman, "btn_submit", L"Unbekannte Signatur senden (anonym)"},
    {kGerman, "net_on", L"Netzwerk: EIN (zum Ausschalten klicken)"},
    {kGerman, "net_off", L"Netzwerk: AUS (zum Einschalten klicken)"},
    {kGerman, "btn_site", L"Website öffnen: " MIRELO_WEBSITE},
    {kGerman, "log_copy", L"Kopieren"},
    {kGerman, "log_clear", L"Leeren"},
    {kGerman, "brand_title", L"Mirelo"},
    {kGerman, "brand_subtitle", L"v0.2 - CDR-Hänger diagnostizieren, Dateien verschlanken"},
    {kGerman, "safety_1",
     L"Keine Code-Injektion, keine Hooks, kein Hintergrunddienst – Sie lösen jede Aktion selbst "
     L"aus"},
    {kGerman, "safety_2",
     L"Läuft als Standardbenutzer, ohne Treiber, EXE nicht gepackt; Programmdateien von CDR "
     L"bleiben unangetastet"},
    {kGerman, "safety_3",
     L"Beim Beenden gilt wieder der bisherige Drucker; bereinigte Dateien sind gesichert, ein "
     L"Klick holt sie zurück"},
    {kGerman, "safety_4",
     L"Anonym gesendet werden nur Modul- und Funktionsnamen; der Server erzwingt den Datenschutz"},
    {kGerman, "dev_pdb_hint",
     L"Wählen Sie einen Ordner mit PDB-Symboldateien, um in erfassten Aufrufstapeln mehr "
     L"Funktionsnamen zu sehen."},
    {kGerman, "btn_pdbpath", L"Symbolordner auswählen"},
    {kGerman, "pdb_set", L"Symbolordner: %s"},
    {kGerman, "btn_leakbase", L"Basiswert erfassen"},
    {kGerman, "btn_leakdiff", L"Mit Basiswert vergleichen"},
    {kGerman, "btn_watchdog_off", L"Überwachung: AUS (zum Einschalten klicken)"},
    {kGerman, "btn_watchdog_on", L"Überwachung: EIN (zum Ausschalten klicken)"},
    {kGerman, "dlg_about_title", L"Info zu Mirelo"},
    {kGerman, "about_line1", L"Mirelo ist ein Begleitprogramm für CorelDRAW-Anwender."},
    {kGerman, "about_line2",
     L"Es findet heraus, was CDR zum Hängen bringt: ein Plug-in, der Drucker, eine Schriftart oder "
     L"eine Systemkomponente."},
    {kGerman, "about_line3",
     L"Es verschlankt CDR-Dateien, die Hänger verbreiten, und sichert zuvor jede Datei."},
    {kGerman, "about_line4",
     L"Es prüft auf die häufigen Ursachen für Hänger und bietet Abhilfe, die sich rückgängig "
     L"machen lässt."},
    {kGerman, "about_line5",
     L"Keine Code-Injektion, keine Hooks, kein Hintergrunddienst – Sie lösen jede Aktion selbst "
     L"aus."},
    {kGerman, "about_line6",
     L"So geht es: Wenn CDR hängt, wählen Sie auf der Registerkarte \"Diagnose\" die Instanz aus "
     L"und klicken Sie auf \"Jetzt erfassen\"."},
    {kGerman, "about_line7",
     L"Wenn keine Signatur passt, klicken Sie auf \"Unbekannte Signatur senden\" und helfen Sie "
     L"so, die Signaturdatenbank zu verbessern."},
    {kGerman, "btn_site_open", L"Website öffnen"},
    {kGerman, "btn_guide_open", L"Benutzerhandbuch öffnen"},
    {kGerman, "btn_close", L"Schließen"},
    {kGerman, "lbl_language", L"Sprache"},
    {kGerman, "tip_printer_switch",
     L"Den Standarddrucker vorübergehend auf Microsoft Print to PDF umstellen?\nIhr bisheriger "
     L"Standarddrucker wird beim Beenden von Mirelo automatisch wiederhergestellt.\n\nMöchten Sie "
     L"fortfahren?"},
    {kGerman, "printer_switched",
     L"Umgestellt. Bisheriger Standarddrucker: %s (wird beim Beenden automatisch "
     L"wiederhergestellt)"},
    {kGerman, "printer_reverted", L"Standarddrucker wiederhergestellt: %s"},
    {kGerman, "printer_orig_err",
     L"Der bisherige Standarddrucker kann nicht wiederhergestellt werden: %s"},
    {kGerman, "tip_optimize",
     L"Die CDR-Einstellungen optimieren?\n  - Rückgängig-Stufen auf 30 setzen\n  - "
     L"Begrüßungsbildschirm deaktivieren\nDie Registrierung wird zuvor exportiert. Bitte schließen "
     L"Sie CDR, bevor Sie fortfahren.\n\nMöchten Sie fortfahren?"},
    {kGerman, "opt_done", L"CDR-Einstellungen optimiert. Sicherung der Registrierung: %s"},
    {kGerman, "opt_changed", L"Geänderte Einstellungen: %d"},
    {kGerman, "opt_reboot", L"Die Änderungen werden nach einem Neustart von CDR wirksam."},
    {kGerman, "tip_submit",
     L"Die Merkmale des erfassten Aufrufstapels anonym hochladen?\n(Nur Modul- und Funktionsnamen "
     L"sowie die CDR-Version – keine Dateipfade, keine Dokumentinhalte.)\n\nMöchten Sie "
     L"fortfahren?"},
    {kGerman, "tip_slim",
     L"Die ausgewählten Dateien werden verschlankt:\n  - Ansichts-Schnappschüsse entfernen (löscht "
     L"ALLE gespeicherten Ansichten im Ansichtsmanager, auch Ihre eigenen)\n  - Überflüssige "
     L"Farbstile löschen (geprüft: Die Farben der Objekte ändern sich nicht)\n  - Caches für "
     L"Vorschau und Miniaturansichten löschen (CDR erstellt sie beim Öffnen automatisch neu)\nJede "
     L"Datei wird zuvor neben dem Original als .mirelobak gesichert.\nStellen Sie sicher, dass "
     L"diese Dateien gerade NICHT in CDR geöffnet sind. Möchten Sie fortfahren?"},
    {kGerman, "log_no_instance", L"Bitte wählen Sie zuerst eine CDR-Instanz aus."},
    {kGerman, "log_capturing", L"Der Aufrufstapel des CDR-Hauptthreads wird erfasst..."},
    {kGerman, "log_capture_ok", L"Erfassung abgeschlossen. Frames: %d"},
    {kGerman, "log_capture_err", L"Erfassung fehlgeschlagen: %s"},
    {kGerman, "log_category", L"Kategorie: %s"},
    {kGerman, "log_suspect", L"Verdächtiges Modul: %s"},
    {kGerman, "log_rule", L"Passende Signatur: %s (Schweregrad: %s)"},
    {kGerman, "log_no_match",
     L"Keine passende Signatur. Mit \"Unbekannte Signatur senden\" können Sie anonym zur "
     L"gemeinsamen Datenbank beitragen."},
    {kGerman, "log_fallback",
     L"Eine automatische Zuordnung war nicht möglich. Kopieren Sie den unbearbeiteten Aufrufstapel "
     L"oder klicken Sie auf \"Unbekannte Signatur senden\" und helfen Sie so, die "
     L"Signaturdatenbank zu verbessern."},
    {kGerman, "log_stack_hdr", L"--- Oberste 8 Frames ---"},
    {kGerman, "log_responsive",
     L"Der Hauptthread von CDR reagiert derzeit. Klicken Sie erneut auf \"Jetzt erfassen\", "
     L"während CDR hängt."},
    {kGerman, "log_responsive_ok", L"CDR reagiert normal."},
    {kGerman, "log_metrics_hdr", L"===== Messwerte ====="},
    {kGerman, "log_env_title", L"===== Umgebungsprüfung ====="},
    {kGerman, "log_env_printer", L"Standarddrucker"},
    {kGerman, "log_env_fonts", L"Installierte Schriftarten"},
    {kGerman, "log_env_gdi", L"GDI-Handle-Kontingent"},
    {kGerman, "log_env_mem", L"Physischer Speicher"},
    {kGerman, "log_env_risk", L"Prüfung abgeschlossen. Zu beachtende Punkte: %d"},
    {kGerman, "log_env_ok", L"Prüfung abgeschlossen. Keine Risiken gefunden."},
    {kGerman, "log_refresh", L"Liste neu geladen. CDR-Instanzen: %d"},
    {kGerman, "log_no_cdr",
     L"Keine laufende CDR-Instanz gefunden. Starten Sie CDR und klicken Sie dann auf \"Neu "
     L"laden\"."},
    {kGerman, "log_net_off",
     L"Netzwerk ausgeschaltet (kann in den Einstellungen eingeschaltet werden)"},
    {kGerman, "log_cloud_update", L"Signaturen werden aktualisiert..."},
    {kGerman, "log_cloud_done", L"Signaturen auf v%d aktualisiert (%d Regeln)"},
    {kGerman, "log_submit_no",
     L"Noch keine erfassten Daten. Verwenden Sie zuerst \"Jetzt erfassen\" und senden Sie die "
     L"Daten, wenn keine Signatur passt."},
    {kGerman, "log_submit_done", L"Anonym gesendete Frame-Signaturen: %d. Vielen Dank!"},
    {kGerman, "log_watchdog_on",
     L"Hänger-Überwachung eingeschaltet. Es wird protokolliert, wenn CDR nicht mehr reagiert."},
    {kGerman, "log_watchdog_off", L"Hänger-Überwachung ausgeschaltet."},
    {kGerman, "log_pdb_set", L"Symbolordner festgelegt: %s"},
    {kGerman, "log_leak_base", L"Basiswert erfasst. GDI-Handles: %d"},
    {kGerman, "log_leak_go",
     L"Arbeiten Sie nun wie gewohnt in CDR und klicken Sie dann auf \"Mit Basiswert "
     L"vergleichen\"."},
    {kGerman, "log_leak_settle", L"Es wird gewartet, bis die Handle-Anzahl stabil ist..."},
    {kGerman, "log_leak_nobase",
     L"Noch kein Basiswert vorhanden. Klicken Sie zuerst auf \"Basiswert erfassen\"."},
    {kGerman, "log_leak_nopid",
     L"Die CDR-Instanz des Basiswerts wird nicht mehr ausgeführt. Erfassen Sie einen neuen "
     L"Basiswert."},
    {kGerman, "log_leak_err", L"Die Handle-Anzahl von CDR kann nicht gelesen werden."},
    {kGerman, "log_leak_report", L"GDI-Handles: Basiswert %d, jetzt %d"},
    {kGerman, "log_leak_judge", L"Beurteilung: %s"},
    {kGerman, "log_leak_j0", L"In Ordnung: Die Handle-Anzahl liegt wieder nahe am Basiswert"},
    {kGerman, "log_leak_j1", L"Beachtenswert: Die Handle-Anzahl bleibt über dem Basiswert"},
    {kGerman, "log_leak_j2",
     L"Leck wahrscheinlich: Die Handle-Anzahl bleibt weit über dem Basiswert"},
    {kGerman, "log_leak_advice",
     L"Speichern Sie Ihre Arbeit und starten Sie CDR neu. Steigt die Anzahl erneut, deaktivieren "
     L"Sie die Plug-ins nacheinander, um die Ursache zu finden."},
    {kGerman, "log_health", L"Zustand: %s"},
    {kGerman, "log_slim_ok",
     L"%s: %s -> %s (Ansichten: %d entfernt, Farben: %d gelöscht, Vorschauen: %d entfernt)"},
    {kGerman, "log_slim_clean", L"%s: bereits schlank, nichts zu tun."},
    {kGerman, "log_slim_fail", L"%s: Verschlanken fehlgeschlagen: %s"},
    {kGerman, "log_slim_old",
     L"%s: altes Format (riffData, X5 oder älter). Übersprungen – bitte zuerst als X6 oder neuer "
     L"speichern."},
    {kGerman, "log_slim_sum",
     L"Fertig: erfolgreich %d / bereits schlank %d / fehlgeschlagen oder übersprungen %d. Die "
     L"Sicherungen liegen als .mirelobak-Dateien neben den Originalen."},
    {kGerman, "log_slim_tip",
     L"Tipp: Bevor Sie viele Dateien auf einmal verschlanken, öffnen Sie eine verschlankte Datei "
     L"in CDR und prüfen Sie, ob alles in Ordnung ist. Verschlankte Dateien können bedenkenlos "
     L"weitergegeben werden."},
    {kGerman, "log_clean_err", L"Bereinigung fehlgeschlagen: %s"},
    {kGerman, "log_clean_done",
     L"Bereinigung abgeschlossen. Verschobene Dateien: %d. Sicherungsordner: %s"},
    {kGerman, "log_restore_done",
     L"Wiederherstellung abgeschlossen. Wiederhergestellte Dateien: %d"},
    {kGerman, "log_switch_need_cdr", L"Bitte starten Sie CDR, bevor Sie den Drucker umstellen."},
    {kGerman, "log_switch_no",
     L"Umstellung fehlgeschlagen (bereits ein virtueller Drucker oder durch eine Richtlinie "
     L"blockiert)."},
    {kGerman, "warn_clean_in_use",
     L"CorelDRAW wird ausgeführt; gerade verwendete Dateien werden übersprungen.\n\nMöchten Sie "
     L"fortfahren?"},
};

static_assert(isCompletePack(kGermanTexts, kGerman));
