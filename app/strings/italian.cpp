// The Italian texts.
#include "app/strings/packs.h"
#include "build_settings.h"

constexpr PackText kItalianTexts[kStringKeys.size()] = {
    {kItalian, "app_title",
     L"Mirelo v0.2 - Diagnosi dei blocchi di CDR e alleggerimento dei file - " MIRELO_MAKER},
    {kItalian, "ready_tip",
     L"Mirelo è pronto. Quando CDR si blocca, passare alla scheda \"Diagnosi\" e fare clic su "
     L"\"Cattura ora\"."},
    {kItalian, "log_sig_local", L"Database delle firme caricato dalla cache locale"},
    {kItalian, "tab_diag", L"Diagnosi"},
    {kItalian, "tab_fix", L"Correzioni"},
    {kItalian, "tab_cloud", L"Cloud"},
    {kItalian, "tab_about", L"Informazioni"},
    {kItalian, "tab_dev", L"Sviluppo"},
    {kItalian, "card_cdr_instance", L"Istanza di CDR"},
    {kItalian, "card_diagnose", L"Diagnosi - trova il colpevole"},
    {kItalian, "card_fileslim", L"File più leggeri - il vero rimedio"},
    {kItalian, "card_scan", L"Controllo dell'ambiente"},
    {kItalian, "card_printer", L"Stampante"},
    {kItalian, "card_cleanup", L"Pulizia delle cache"},
    {kItalian, "card_cdrsettings", L"Impostazioni di CDR"},
    {kItalian, "card_sigs", L"Firme correnti"},
    {kItalian, "card_cloudop", L"Operazioni"},
    {kItalian, "card_network", L"Rete"},
    {kItalian, "card_site", L"Sito ufficiale"},
    {kItalian, "card_safety", L"Impegno per la sicurezza"},
    {kItalian, "card_pdb", L"File di simboli (PDB)"},
    {kItalian, "card_leak", L"Test delle perdite di handle"},
    {kItalian, "card_watchdog", L"Monitoraggio dei blocchi"},
    {kItalian, "btn_refresh", L"Aggiorna"},
    {kItalian, "btn_metrics", L"Metriche"},
    {kItalian, "btn_capture", L"Cattura ora (durante il blocco)"},
    {kItalian, "diag_hint",
     L"I risultati appaiono nel pannello di log in basso. A ogni corrispondenza segue un "
     L"suggerimento."},
    {kItalian, "btn_slim", L"Seleziona i file CDR da alleggerire"},
    {kItalian, "hint_slim",
     L"Rimuove le viste salvate (comprese quelle personali), gli stili colore superflui e le cache "
     L"di anteprima. Di ogni file si crea prima un backup .mirelobak; i file alleggeriti non "
     L"propagano più i blocchi."},
    {kItalian, "btn_scan", L"Controlla ora"},
    {kItalian, "hint_scan",
     L"Controlla la stampante predefinita (di rete/offline), il numero di tipi di carattere, la "
     L"quota di handle GDI e la RAM: le cause di blocco più comuni."},
    {kItalian, "btn_printer", L"Cambia temporaneamente (ripristino automatico)"},
    {kItalian, "hint_printer",
     L"Imposta temporaneamente Microsoft Print to PDF come stampante predefinita per evitare "
     L"stampanti di rete lente; all'uscita ripristina automaticamente la stampante originale."},
    {kItalian, "btn_clean", L"Pulisci (con backup)"},
    {kItalian, "hint_clean",
     L"Sposta in una cartella di backup i rapporti di arresto anomalo, i file temporanei e le "
     L"cache delle miniature di ogni versione di CDR; annullabile in ogni momento con "
     L"\"Ripristina\"."},
    {kItalian, "btn_restore", L"Ripristina"},
    {kItalian, "btn_optimize", L"Ottimizza (con backup del Registro)"},
    {kItalian, "hint_settings",
     L"Imposta 30 livelli di annullamento e disattiva la schermata di benvenuto; il Registro di "
     L"sistema viene prima esportato. Ha effetto al riavvio di CDR."},
    {kItalian, "cloud_loading", L"Caricamento in corso"},
    {kItalian, "btn_update", L"Aggiorna le firme"},
    {kItalian, "btn_submit", L"Invia firma sconosciuta (in forma anonima)"},
    {kItalian, "net_on", L"Rete: ATTIVATA (fare clic per disattivarla)"},
    {kItalian, "net_off", L"Rete: DISATTIVATA (fare clic per attivarla)"},
    {kItalian, "btn_site", L"Visita " MIRELO_WEBSITE},
    {kItalian, "log_copy", L"Copia"},
    {kItalian, "log_clear", L"Cancella"},
    {kItalian, "brand_title", L"Mirelo"},
    {kItalian, "brand_subtitle", L"v0.2 - Diagnosi dei blocchi di CDR e alleggerimento dei file"},
    {kItalian, "safety_1",
     L"Nessuna iniezione di codice, nessun hook, nessun servizio in background: ogni azione parte "
     L"dall'utente"},
    {kItalian, "safety_2",
     L"Eseguito come utente standard, senza driver, file EXE non compresso; non modifica mai i "
     L"file del programma CDR"},
    {kItalian, "safety_3",
     L"Stampante ripristinata automaticamente all'uscita; pulizia con backup e ripristino con un "
     L"clic"},
    {kItalian, "safety_4",
     L"Gli invii anonimi contengono solo nomi di moduli e funzioni; il server impone il rispetto "
     L"della privacy"},
    {kItalian, "dev_pdb_hint",
     L"Scegliere una cartella con i file di simboli PDB per vedere più nomi di funzione negli "
     L"stack catturati."},
    {kItalian, "btn_pdbpath", L"Scegli la cartella dei simboli"},
    {kItalian, "pdb_set", L"Cartella dei simboli: %s"},
    {kItalian, "btn_leakbase", L"Rileva il riferimento"},
    {kItalian, "btn_leakdiff", L"Confronta con il riferimento"},
    {kItalian, "btn_watchdog_off", L"Monitoraggio: DISATTIVATO (fare clic per attivarlo)"},
    {kItalian, "btn_watchdog_on", L"Monitoraggio: ATTIVATO (fare clic per disattivarlo)"},
    {kItalian, "dlg_about_title", L"Informazioni su Mirelo"},
    {kItalian, "about_line1", L"Mirelo è uno strumento di supporto per gli utenti di CorelDRAW."},
    {kItalian, "about_line2",
     L"Scopre che cosa fa bloccare CDR: un plug-in, la stampante, un tipo di carattere o un "
     L"componente di sistema."},
    {kItalian, "about_line3",
     L"Alleggerisce i file CDR che propagano i blocchi e crea prima il backup di ogni file."},
    {kItalian, "about_line4",
     L"Verifica le cause di blocco più comuni e propone correzioni che si possono annullare."},
    {kItalian, "about_line5",
     L"Nessuna iniezione di codice, nessun hook, nessun servizio in background: ogni azione parte "
     L"dall'utente."},
    {kItalian, "about_line6",
     L"Come si usa: quando CDR si blocca, selezionare la relativa istanza nella scheda "
     L"\"Diagnosi\" e fare clic su \"Cattura ora\"."},
    {kItalian, "about_line7",
     L"Se nessuna firma corrisponde, fare clic su \"Invia firma sconosciuta\" per contribuire a "
     L"migliorare il database delle firme."},
    {kItalian, "btn_site_open", L"Apri il sito Web"},
    {kItalian, "btn_guide_open", L"Apri la guida per l'utente"},
    {kItalian, "btn_close", L"Chiudi"},
    {kItalian, "lbl_language", L"Lingua"},
    {kItalian, "tip_printer_switch",
     L"Impostare temporaneamente Microsoft Print to PDF come stampante predefinita?\nLa stampante "
     L"predefinita originale viene ripristinata automaticamente alla chiusura di "
     L"Mirelo.\n\nContinuare?"},
    {kItalian, "printer_switched",
     L"Stampante cambiata. Stampante predefinita originale: %s (ripristinata automaticamente "
     L"all'uscita)"},
    {kItalian, "printer_reverted", L"Stampante predefinita ripristinata: %s"},
    {kItalian, "printer_orig_err",
     L"Impossibile ripristinare la stampante predefinita originale: %s"},
    {kItalian, "tip_optimize",
     L"Ottimizzare le impostazioni di CDR?\n  - Impostare 30 livelli di annullamento\n  - "
     L"Disattivare la schermata di benvenuto\nIl Registro di sistema viene prima esportato. "
     L"Chiudere CDR prima di proseguire.\n\nContinuare?"},
    {kItalian, "opt_done", L"Impostazioni di CDR ottimizzate. Backup del Registro di sistema: %s"},
    {kItalian, "opt_changed", L"Impostazioni modificate: %d"},
    {kItalian, "opt_reboot", L"Le modifiche avranno effetto dopo il riavvio di CDR."},
    {kItalian, "tip_submit",
     L"Caricare in forma anonima le caratteristiche dello stack catturato?\n(Solo nomi di moduli e "
     L"funzioni, oltre alla versione di CDR; nessun percorso di file, nessun contenuto dei "
     L"documenti.)\n\nContinuare?"},
    {kItalian, "tip_slim",
     L"I file selezionati verranno alleggeriti:\n  - Rimozione delle istantanee delle viste "
     L"(cancella TUTTE le viste salvate in Gestione viste, comprese quelle personali)\n  - "
     L"Rimozione degli stili colore superflui (verificato: i colori degli oggetti non cambiano)\n  "
     L"- Eliminazione delle cache di anteprime e miniature (ricreate automaticamente da CDR "
     L"all'apertura)\nDi ogni file si crea prima un backup .mirelobak accanto "
     L"all'originale.\nAssicurarsi che questi file NON siano aperti in CDR in questo momento. "
     L"Continuare?"},
    {kItalian, "log_no_instance", L"Selezionare prima un'istanza di CDR."},
    {kItalian, "log_capturing", L"Cattura dello stack del thread principale di CDR..."},
    {kItalian, "log_capture_ok", L"Cattura completata. Frame: %d"},
    {kItalian, "log_capture_err", L"Cattura non riuscita: %s"},
    {kItalian, "log_category", L"Categoria: %s"},
    {kItalian, "log_suspect", L"Modulo sospetto: %s"},
    {kItalian, "log_rule", L"Firma corrispondente: %s (gravità: %s)"},
    {kItalian, "log_no_match",
     L"Nessuna firma corrispondente. Con \"Invia firma sconosciuta\" è possibile contribuire in "
     L"forma anonima al database comune."},
    {kItalian, "log_fallback",
     L"Classificazione automatica non riuscita. Copiare lo stack non elaborato o fare clic su "
     L"\"Invia firma sconosciuta\" per contribuire a migliorare il database delle firme."},
    {kItalian, "log_stack_hdr", L"--- Primi 8 frame ---"},
    {kItalian, "log_responsive",
     L"Il thread principale di CDR al momento risponde. Fare di nuovo clic su \"Cattura ora\" "
     L"durante un blocco."},
    {kItalian, "log_responsive_ok", L"CDR risponde normalmente."},
    {kItalian, "log_metrics_hdr", L"===== Metriche ====="},
    {kItalian, "log_env_title", L"===== Controllo dell'ambiente ====="},
    {kItalian, "log_env_printer", L"Stampante predefinita"},
    {kItalian, "log_env_fonts", L"Tipi di carattere installati"},
    {kItalian, "log_env_gdi", L"Quota di handle GDI"},
    {kItalian, "log_env_mem", L"Memoria fisica"},
    {kItalian, "log_env_risk", L"Controllo completato. Elementi che richiedono attenzione: %d"},
    {kItalian, "log_env_ok", L"Controllo completato. Nessun rischio rilevato."},
    {kItalian, "log_refresh", L"Elenco aggiornato. Istanze di CDR: %d"},
    {kItalian, "log_no_cdr",
     L"Non è stata trovata alcuna istanza di CDR in esecuzione. Avviare CDR, quindi fare clic su "
     L"\"Aggiorna\"."},
    {kItalian, "log_net_off", L"Rete disattivata (può essere attivata nelle impostazioni)"},
    {kItalian, "log_cloud_update", L"Aggiornamento delle firme..."},
    {kItalian, "log_cloud_done", L"Firme aggiornate alla v%d (%d regole)"},
    {kItalian, "log_submit_no",
     L"Nessun dato catturato. Usare prima \"Cattura ora\"; inviare se nessuna firma corrisponde."},
    {kItalian, "log_submit_done", L"Firme di frame inviate in forma anonima: %d. Grazie!"},
    {kItalian, "log_watchdog_on",
     L"Monitoraggio dei blocchi attivato. Il log segnala quando CDR smette di rispondere."},
    {kItalian, "log_watchdog_off", L"Monitoraggio dei blocchi disattivato."},
    {kItalian, "log_pdb_set", L"Cartella dei simboli impostata: %s"},
    {kItalian, "log_leak_base", L"Riferimento rilevato. Handle GDI: %d"},
    {kItalian, "log_leak_go",
     L"Lavorare ora normalmente in CDR, quindi fare clic su \"Confronta con il riferimento\"."},
    {kItalian, "log_leak_settle", L"In attesa che il numero di handle si stabilizzi..."},
    {kItalian, "log_leak_nobase",
     L"Nessun riferimento disponibile. Fare prima clic su \"Rileva il riferimento\"."},
    {kItalian, "log_leak_nopid",
     L"L'istanza di CDR del riferimento non è più in esecuzione. Rilevare un nuovo riferimento."},
    {kItalian, "log_leak_err", L"Impossibile leggere il numero di handle di CDR."},
    {kItalian, "log_leak_report", L"Handle GDI: riferimento %d, ora %d"},
    {kItalian, "log_leak_judge", L"Valutazione: %s"},
    {kItalian, "log_leak_j0", L"OK: il numero di handle è tornato vicino al riferimento"},
    {kItalian, "log_leak_j1",
     L"Richiede attenzione: il numero di handle resta superiore al riferimento"},
    {kItalian, "log_leak_j2",
     L"Perdita probabile: il numero di handle resta molto superiore al riferimento"},
    {kItalian, "log_leak_advice",
     L"Salvare il lavoro e riavviare CDR. Se il numero aumenta di nuovo, disattivare i plug-in uno "
     L"alla volta per trovare la causa."},
    {kItalian, "log_health", L"Stato: %s"},
    {kItalian, "log_slim_ok",
     L"%s: %s -> %s (viste rimosse: %d, colori cancellati: %d, anteprime rimosse: %d)"},
    {kItalian, "log_slim_clean", L"%s: già leggero, nessuna operazione necessaria."},
    {kItalian, "log_slim_fail", L"%s: operazione non riuscita (%s)"},
    {kItalian, "log_slim_old",
     L"%s: formato obsoleto (riffData, X5 o versioni precedenti). Ignorato: salvarlo prima come X6 "
     L"o versione successiva."},
    {kItalian, "log_slim_sum",
     L"Completato: riusciti %d / già leggeri %d / non riusciti o ignorati %d. I backup sono i file "
     L".mirelobak accanto agli originali."},
    {kItalian, "log_slim_tip",
     L"Suggerimento: prima di elaborare più file, aprire in CDR un file alleggerito per verificare "
     L"che sia tutto a posto. I file alleggeriti si possono condividere senza rischi."},
    {kItalian, "log_clean_err", L"Pulizia non riuscita: %s"},
    {kItalian, "log_clean_done", L"Pulizia completata. File spostati: %d. Cartella di backup: %s"},
    {kItalian, "log_restore_done", L"Ripristino completato. File ripristinati: %d"},
    {kItalian, "log_switch_need_cdr", L"Avviare CDR prima di cambiare la stampante."},
    {kItalian, "log_switch_no",
     L"Cambio non riuscito (la stampante è già virtuale o l'operazione è bloccata dai criteri)."},
    {kItalian, "warn_clean_in_use",
     L"CorelDRAW è in esecuzione; i file in uso verranno ignorati.\n\nContinuare?"},
};

static_assert(isCompletePack(kItalianTexts, kItalian));
