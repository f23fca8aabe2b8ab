// The Dutch texts.
#include "app/strings/packs.h"
#include "build_settings.h"

constexpr PackText kDutchTexts[kStringKeys.size()] = {
    {kDutch, "app_title",
     L"Mirelo v0.2 - CDR-vastlopers diagnosticeren, bestanden afslanken - " MIRELO_MAKER},
    {kDutch, "ready_tip",
     L"Mirelo is gereed. Als CDR vastloopt, gaat u naar het tabblad 'Diagnose' en klikt u op 'Nu "
     L"vastleggen'."},
    {kDutch, "log_sig_local", L"Signaturendatabase uit de lokale cache geladen"},
    {kDutch, "tab_diag", L"Diagnose"},
    {kDutch, "tab_fix", L"Oplossen"},
    {kDutch, "tab_cloud", L"Cloud"},
    {kDutch, "tab_about", L"Info"},
    {kDutch, "tab_dev", L"Ontwikkeling"},
    {kDutch, "card_cdr_instance", L"CDR-exemplaar"},
    {kDutch, "card_diagnose", L"Diagnose - vind de boosdoener"},
    {kDutch, "card_fileslim", L"Bestanden afslanken - de echte oplossing"},
    {kDutch, "card_scan", L"Omgevingscontrole"},
    {kDutch, "card_printer", L"Printer"},
    {kDutch, "card_cleanup", L"Caches opschonen"},
    {kDutch, "card_cdrsettings", L"CDR-instellingen"},
    {kDutch, "card_sigs", L"Huidige signaturen"},
    {kDutch, "card_cloudop", L"Acties"},
    {kDutch, "card_network", L"Netwerk"},
    {kDutch, "card_site", L"Officiële website"},
    {kDutch, "card_safety", L"Veiligheidsbelofte"},
    {kDutch, "card_pdb", L"Symboolbestanden (PDB)"},
    {kDutch, "card_leak", L"Test op handlelekken"},
    {kDutch, "card_watchdog", L"Bewaking op vastlopen"},
    {kDutch, "btn_refresh", L"Vernieuwen"},
    {kDutch, "btn_metrics", L"Meetwaarden"},
    {kDutch, "btn_capture", L"Nu vastleggen (bij vastlopen)"},
    {kDutch, "diag_hint",
     L"De resultaten staan onderaan in het logpaneel. Bij een treffer volgt automatisch een "
     L"advies."},
    {kDutch, "btn_slim", L"CDR-bestanden kiezen om af te slanken"},
    {kDutch, "hint_slim",
     L"Verwijdert opgeslagen weergaven (ook die van uzelf), overbodige kleurstijlen en "
     L"voorbeeldcaches. Van elk bestand wordt eerst een .mirelobak-back-up gemaakt; afgeslankte "
     L"bestanden verspreiden geen vastlopers meer."},
    {kDutch, "btn_scan", L"Nu controleren"},
    {kDutch, "hint_scan",
     L"Controleert de standaardprinter (netwerk/offline), het aantal lettertypen, het "
     L"GDI-handlequotum en het RAM-geheugen: de belangrijkste oorzaken van vastlopers."},
    {kDutch, "btn_printer", L"Tijdelijk wisselen (automatisch teruggezet)"},
    {kDutch, "hint_printer",
     L"Stelt tijdelijk Microsoft Print to PDF in als standaardprinter om trage netwerkprinters te "
     L"vermijden; bij het afsluiten wordt uw oorspronkelijke printer automatisch teruggezet."},
    {kDutch, "btn_clean", L"Opschonen (met back-up)"},
    {kDutch, "hint_clean",
     L"Verplaatst crashrapporten, tijdelijke bestanden en miniatuurcaches van alle CDR-versies "
     L"naar een back-upmap; met 'Terugzetten' maakt u dit op elk moment ongedaan."},
    {kDutch, "btn_restore", L"Terugzetten"},
    {kDutch, "btn_optimize", L"Optimaliseren (met back-up van het register)"},
    {kDutch, "hint_settings",
     L"Stelt 30 niveaus in voor Ongedaan maken en schakelt het welkomstscherm uit; het register "
     L"wordt eerst geëxporteerd. Van kracht nadat CDR opnieuw is gestart."},
    {kDutch, "cloud_loading", L"Bezig met laden"},
    {kDutch, "btn_update", L"Signaturen bijwerken"},
    {kDutch, "btn_submit", L"Onbekende signatuur verzenden (anoniem)"},
    {kDutch, "net_on", L"Netwerk: AAN (klik om uit te schakelen)"},
    {kDutch, "net_off", L"Netwerk: UIT (klik om in te schakelen)"},
    {kDutch, "btn_site", L"Ga naar " MIRELO_WEBSITE},
    {kDutch, "log_copy", L"Kopiëren"},
    {kDutch, "log_clear", L"Wissen"},
    {kDutch, "brand_title", L"Mirelo"},
    {kDutch, "brand_subtitle", L"v0.2 - CDR-vastlopers diagnosticeren, bestanden afslanken"},
    {kDutch, "safety_1",
     L"Geen code-injectie, geen hooks, geen achtergrondservice: u start elke actie zelf"},
    {kDutch, "safety_2",
     L"Draait als standaardgebruiker, zonder stuurprogramma, EXE niet gecomprimeerd; wijzigt nooit "
     L"bestanden van CDR zelf"},
    {kDutch, "safety_3",
     L"Zet de printer bij het afsluiten automatisch terug; opschonen met back-up, terugzetten met "
     L"één klik"},
    {kDutch, "safety_4",
     L"Anonieme verzendingen bevatten alleen module- en functienamen; de server waarborgt uw "
     L"privacy"},
    {kDutch, "dev_pdb_hint",
     L"Kies een map met PDB-symboolbestanden om meer functienamen in vastgelegde stacks te zien."},
    {kDutch, "btn_pdbpath", L"Symboolmap kiezen"},
    {kDutch, "pdb_set", L"Symboolmap: %s"},
    {kDutch, "btn_leakbase", L"Basislijn meten"},
    {kDutch, "btn_leakdiff", L"Vergelijken met basislijn"},
    {kDutch, "btn_watchdog_off", L"Bewaking: UIT (klik om in te schakelen)"},
    {kDutch, "btn_watchdog_on", L"Bewaking: AAN (klik om uit te schakelen)"},
    {kDutch, "dlg_about_title", L"Over Mirelo"},
    {kDutch, "about_line1", L"Mirelo is een hulpprogramma voor gebruikers van CorelDRAW."},
    {kDutch, "about_line2",
     L"Het zoekt uit waardoor CDR vastloopt: een plug-in, de printer, een lettertype of een "
     L"systeemonderdeel."},
    {kDutch, "about_line3",
     L"Het slankt CDR-bestanden af die vastlopers verspreiden en maakt eerst van elk bestand een "
     L"back-up."},
    {kDutch, "about_line4",
     L"Het controleert op de gebruikelijke oorzaken van vastlopers en biedt oplossingen die u "
     L"ongedaan kunt maken."},
    {kDutch, "about_line5",
     L"Geen code-injectie, geen hooks, geen achtergrondservice: u start elke actie zelf."},
    {kDutch, "about_line6",
     L"Zo werkt het: als CDR vastloopt, selecteert u het exemplaar op het tabblad 'Diagnose' en "
     L"klikt u op 'Nu vastleggen'."},
    {kDutch, "about_line7",
     L"Als geen enkele signatuur overeenkomt, klikt u op 'Onbekende signatuur verzenden' om de "
     L"signaturendatabase te helpen verbeteren."},
    {kDutch, "btn_site_open", L"Website openen"},
    {kDutch, "btn_guide_open", L"Gebruikershandleiding openen"},
    {kDutch, "btn_close", L"Sluiten"},
    {kDutch, "lbl_language", L"Taal"},
    {kDutch, "tip_printer_switch",
     L"De standaardprinter tijdelijk wijzigen in Microsoft Print to PDF?\nUw oorspronkelijke "
     L"standaardprinter wordt automatisch teruggezet wanneer u Mirelo afsluit.\n\nWilt u "
     L"doorgaan?"},
    {kDutch, "printer_switched",
     L"Gewisseld. Oorspronkelijke standaardprinter: %s (wordt bij het afsluiten automatisch "
     L"teruggezet)"},
    {kDutch, "printer_reverted", L"Standaardprinter teruggezet: %s"},
    {kDutch, "printer_orig_err", L"Kan de oorspronkelijke standaardprinter niet terugzetten: %s"},
    {kDutch, "tip_optimize",
     L"De CDR-instellingen optimaliseren?\n  - Het aantal niveaus voor Ongedaan maken instellen op "
     L"30\n  - Het welkomstscherm uitschakelen\nHet register wordt eerst geëxporteerd. Sluit CDR "
     L"voordat u verdergaat.\n\nWilt u doorgaan?"},
    {kDutch, "opt_done", L"CDR-instellingen geoptimaliseerd. Back-up van het register: %s"},
    {kDutch, "opt_changed", L"Gewijzigde instellingen: %d"},
    {kDutch, "opt_reboot", L"De wijzigingen worden van kracht nadat CDR opnieuw is gestart."},
    {kDutch, "tip_submit",
     L"De kenmerken van de vastgelegde stack anoniem uploaden?\n(Alleen module- en functienamen en "
     L"de CDR-versie; geen bestandspaden en geen documentinhoud.)\n\nWilt u doorgaan?"},
    {kDutch, "tip_slim",
     L"De geselecteerde bestanden worden afgeslankt:\n  - Momentopnamen van weergaven verwijderen "
     L"(wist ALLE opgeslagen weergaven in Weergavebeheer, ook die van uzelf)\n  - Overbodige "
     L"kleurstijlen wissen (gecontroleerd: de objectkleuren veranderen niet)\n  - Caches van "
     L"voorbeelden en miniaturen verwijderen (CDR maakt ze bij het openen automatisch "
     L"opnieuw)\nVan elk bestand wordt eerst naast het origineel een back-up als .mirelobak "
     L"gemaakt.\nZorg ervoor dat deze bestanden nu NIET in CDR zijn geopend. Wilt u doorgaan?"},
    {kDutch, "log_no_instance", L"Selecteer eerst een CDR-exemplaar."},
    {kDutch, "log_capturing", L"De stack van de hoofdthread van CDR wordt vastgelegd..."},
    {kDutch, "log_capture_ok", L"Vastleggen voltooid. Frames: %d"},
    {kDutch, "log_capture_err", L"Vastleggen mislukt: %s"},
    {kDutch, "log_category", L"Categorie: %s"},
    {kDutch, "log_suspect", L"Verdachte module: %s"},
    {kDutch, "log_rule", L"Overeenkomende signatuur: %s (ernst: %s)"},
    {kDutch, "log_no_match",
     L"Geen overeenkomende signatuur. Met 'Onbekende signatuur verzenden' draagt u anoniem bij aan "
     L"de gemeenschappelijke database."},
    {kDutch, "log_fallback",
     L"Automatisch indelen is niet gelukt. Kopieer de onbewerkte stack of klik op 'Onbekende "
     L"signatuur verzenden' om de signaturendatabase te helpen verbeteren."},
    {kDutch, "log_stack_hdr", L"--- Bovenste 8 frames ---"},
    {kDutch, "log_responsive",
     L"De hoofdthread van CDR reageert op dit moment. Klik opnieuw op 'Nu vastleggen' terwijl CDR "
     L"vastzit."},
    {kDutch, "log_responsive_ok", L"CDR reageert normaal."},
    {kDutch, "log_metrics_hdr", L"===== Meetwaarden ====="},
    {kDutch, "log_env_title", L"===== Omgevingscontrole ====="},
    {kDutch, "log_env_printer", L"Standaardprinter"},
    {kDutch, "log_env_fonts", L"Geïnstalleerde lettertypen"},
    {kDutch, "log_env_gdi", L"GDI-handlequotum"},
    {kDutch, "log_env_mem", L"Fysiek geheugen"},
    {kDutch, "log_env_risk", L"Controle voltooid. Aandachtspunten: %d"},
    {kDutch, "log_env_ok", L"Controle voltooid. Geen risico's gevonden."},
    {kDutch, "log_refresh", L"Lijst vernieuwd. CDR-exemplaren: %d"},
    {kDutch, "log_no_cdr",
     L"Er is geen actief CDR-exemplaar gevonden. Start CDR en klik op 'Vernieuwen'."},
    {kDutch, "log_net_off", L"Netwerk uitgeschakeld (kan worden ingeschakeld in de instellingen)"},
    {kDutch, "log_cloud_update", L"Signaturen worden bijgewerkt..."},
    {kDutch, "log_cloud_done", L"Signaturen bijgewerkt naar v%d (%d regels)"},
    {kDutch, "log_submit_no",
     L"Er is nog niets vastgelegd. Gebruik eerst 'Nu vastleggen' en verzend als er geen signatuur "
     L"overeenkomt."},
    {kDutch, "log_submit_done", L"Anoniem verzonden framesignaturen: %d. Hartelijk dank!"},
    {kDutch, "log_watchdog_on",
     L"Bewaking op vastlopen ingeschakeld. In het logpaneel wordt gemeld wanneer CDR niet meer "
     L"reageert."},
    {kDutch, "log_watchdog_off", L"Bewaking op vastlopen uitgeschakeld."},
    {kDutch, "log_pdb_set", L"Symboolmap ingesteld: %s"},
    {kDutch, "log_leak_base", L"Basislijn gemeten. GDI-handles: %d"},
    {kDutch, "log_leak_go",
     L"Werk nu zoals gewoonlijk in CDR en klik daarna op 'Vergelijken met basislijn'."},
    {kDutch, "log_leak_settle", L"Wachten tot het aantal handles stabiel is..."},
    {kDutch, "log_leak_nobase", L"Er is nog geen basislijn. Klik eerst op 'Basislijn meten'."},
    {kDutch, "log_leak_nopid",
     L"Het CDR-exemplaar van de basislijn is niet meer actief. Meet een nieuwe basislijn."},
    {kDutch, "log_leak_err", L"Kan het aantal handles van CDR niet lezen."},
    {kDutch, "log_leak_report", L"GDI-handles: basislijn %d, nu %d"},
    {kDutch, "log_leak_judge", L"Beoordeling: %s"},
    {kDutch, "log_leak_j0", L"In orde: het aantal handles ligt weer dicht bij de basislijn"},
    {kDutch, "log_leak_j1", L"Let op: het aantal handles blijft boven de basislijn"},
    {kDutch, "log_leak_j2",
     L"Waarschijnlijk een lek: het aantal handles blijft ver boven de basislijn"},
    {kDutch, "log_leak_advice",
     L"Sla uw werk op en start CDR opnieuw. Als het aantal opnieuw oploopt, schakelt u de plug-ins "
     L"een voor een uit om de oorzaak te vinden."},
    {kDutch, "log_health", L"Status: %s"},
    {kDutch, "log_slim_ok",
     L"%s: %s -> %s (weergaven verwijderd: %d, kleuren gewist: %d, voorbeelden verwijderd: %d)"},
    {kDutch, "log_slim_clean", L"%s: al schoon, niets te doen."},
    {kDutch, "log_slim_fail", L"%s: afslanken mislukt: %s"},
    {kDutch, "log_slim_old",
     L"%s: oude indeling (riffData, X5 of ouder). Overgeslagen; sla het bestand eerst op als X6 of "
     L"nieuwer."},
    {kDutch, "log_slim_sum",
     L"Klaar: gelukt %d / al schoon %d / mislukt of overgeslagen %d. De back-ups staan als "
     L".mirelobak-bestanden naast de originelen."},
    {kDutch, "log_slim_tip",
     L"Tip: open eerst één afgeslankt bestand in CDR om te controleren of alles in orde is voordat "
     L"u er meer tegelijk verwerkt. Afgeslankte bestanden kunt u veilig delen."},
    {kDutch, "log_clean_err", L"Opschonen mislukt: %s"},
    {kDutch, "log_clean_done", L"Opschonen voltooid. Verplaatste bestanden: %d. Back-upmap: %s"},
    {kDutch, "log_restore_done", L"Terugzetten voltooid. Teruggezette bestanden: %d"},
    {kDutch, "log_switch_need_cdr", L"Start CDR voordat u van printer wisselt."},
    {kDutch, "log_switch_no",
     L"Wisselen mislukt (er is al een virtuele printer ingesteld of beleid staat dit niet toe)."},
    {kDutch, "warn_clean_in_use",
     L"CorelDRAW is actief; bestanden die in gebruik zijn, worden overgeslagen.\n\nWilt u "
     L"doorgaan?"},
};

static_assert(isCompletePack(kDutchTexts, kDutch));
