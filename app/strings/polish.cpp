// The Polish texts.
#include "app/strings/packs.h"
#include "build_settings.h"

constexpr PackText kPolishTexts[kStringKeys.size()] = {
    {kPolish, "app_title",
     L"Mirelo v0.2 - Diagnostyka zawieszeń CDR i odchudzanie plików - " MIRELO_MAKER},
    {kPolish, "ready_tip",
     L"Program Mirelo jest gotowy. Gdy CDR się zawiesi, przejdź na kartę \"Diagnoza\" i kliknij "
     L"przycisk \"Przechwyć teraz\"."},
    {kPolish, "log_sig_local", L"Wczytano bazę sygnatur z lokalnej pamięci podręcznej"},
    {kPolish, "tab_diag", L"Diagnoza"},
    {kPolish, "tab_fix", L"Naprawa"},
    {kPolish, "tab_cloud", L"Chmura"},
    {kPolish, "tab_about", L"O programie"},
    {kPolish, "tab_dev", L"Deweloper"},
    {kPolish, "card_cdr_instance", L"Wystąpienia CDR"},
    {kPolish, "card_diagnose", L"Diagnoza - znajdź winowajcę"},
    {kPolish, "card_fileslim", L"Odchudzanie plików - trwałe rozwiązanie"},
    {kPolish, "card_scan", L"Sprawdzanie środowiska"},
    {kPolish, "card_printer", L"Drukarka"},
    {kPolish, "card_cleanup", L"Czyszczenie pamięci podręcznej"},
    {kPolish, "card_cdrsettings", L"Ustawienia CDR"},
    {kPolish, "card_sigs", L"Bieżące sygnatury"},
    {kPolish, "card_cloudop", L"Operacje"},
    {kPolish, "card_network", L"Sieć"},
    {kPolish, "card_site", L"Oficjalna witryna"},
    {kPolish, "card_safety", L"Gwarancja bezpieczeństwa"},
    {kPolish, "card_pdb", L"Pliki symboli (PDB)"},
    {kPolish, "card_leak", L"Test wycieku uchwytów"},
    {kPolish, "card_watchdog", L"Monitor zawieszeń"},
    {kPolish, "btn_refresh", L"Odśwież"},
    {kPolish, "btn_metrics", L"Wskaźniki"},
    {kPolish, "btn_capture", L"Przechwyć teraz (podczas zawieszenia)"},
    {kPolish, "diag_hint",
     L"Wyniki pojawiają się w panelu dziennika u dołu. Po dopasowaniu program sam podpowiada "
     L"działania."},
    {kPolish, "btn_slim", L"Wybierz pliki CDR do odchudzenia"},
    {kPolish, "hint_slim",
     L"Usuwa migawki widoków, zbędne style kolorów i pamięć podręczną podglądu. Najpierw tworzy "
     L"kopię każdego pliku (.mirelobak); odchudzone pliki nie przenoszą już zawieszeń."},
    {kPolish, "btn_scan", L"Sprawdź teraz"},
    {kPolish, "hint_scan",
     L"Sprawdza drukarkę domyślną (sieciowa/offline), liczbę czcionek, limit uchwytów GDI i pamięć "
     L"RAM – najczęstsze przyczyny zawieszeń."},
    {kPolish, "btn_printer", L"Przełącz tymczasowo (automatyczny powrót)"},
    {kPolish, "hint_printer",
     L"Tymczasowo ustawia Microsoft Print to PDF jako drukarkę domyślną, aby ominąć wolną drukarkę "
     L"sieciową; przy zamykaniu programu automatycznie przywraca poprzednią drukarkę."},
    {kPolish, "btn_clean", L"Wyczyść (z kopią)"},
    {kPolish, "hint_clean",
     L"Przenosi raporty o awariach, pliki tymczasowe i pamięć podręczną miniatur wszystkich wersji "
     L"CDR do folderu kopii zapasowych; przycisk \"Przywróć\" w każdej chwili cofa zmiany."},
    {kPolish, "btn_restore", L"Przywróć"},
    {kPolish, "btn_optimize", L"Optymalizuj (z kopią rejestru)"},
    {kPolish, "hint_settings",
     L"Ustawia 30 poziomów cofania i wyłącza ekran powitalny; najpierw eksportuje rejestr, a "
     L"zmiany zaczną obowiązywać po ponownym uruchomieniu CDR."},
    {kPolish, "cloud_loading", L"Ładowanie"},
    {kPolish, "btn_update", L"Aktualizuj sygnatury"},
    {kPolish, "btn_submit", L"Prześlij nieznaną sygnaturę (anonimowo)"},
    {kPolish, "net_on", L"Sieć: WŁ. (kliknij, aby wyłączyć)"},
    {kPolish, "net_off", L"Sieć: WYŁ. (kliknij, aby włączyć)"},
    {kPolish, "btn_site", L"Odwiedź " MIRELO_WEBSITE},
    {kPolish, "log_copy", L"Kopiuj"},
    {kPolish, "log_clear", L"Wyczyść"},
    {kPolish, "brand_title", L"Mirelo"},
    {kPolish, "brand_subtitle", L"v0.2 - Diagnostyka zawieszeń CDR i odchudzanie plików"},
    {kPolish, "safety_1",
     L"Bez wstrzykiwania kodu, przechwytywania wywołań i pracy w tle – każdą czynność uruchamia "
     L"użytkownik"},
    {kPolish, "safety_2",
     L"Działa jako zwykły użytkownik, bez sterowników i pakowania, nigdy nie zmienia plików "
     L"programu CDR"},
    {kPolish, "safety_3",
     L"Przy zamykaniu wraca poprzednia drukarka; usunięte pliki mają kopię i wracają jednym "
     L"kliknięciem"},
    {kPolish, "safety_4",
     L"Anonimowo przesyłane są tylko nazwy modułów i funkcji; serwer wymusza ochronę prywatności"},
    {kPolish, "dev_pdb_hint",
     L"Wybierz folder z plikami symboli PDB, aby w przechwyconych stosach widzieć więcej nazw "
     L"funkcji."},
    {kPolish, "btn_pdbpath", L"Wybierz folder symboli"},
    {kPolish, "pdb_set", L"Folder symboli: %s"},
    {kPolish, "btn_leakbase", L"Zapisz stan bazowy"},
    {kPolish, "btn_leakdiff", L"Porównaj ze stanem bazowym"},
    {kPolish, "btn_watchdog_off", L"Monitor: WYŁ. (kliknij, aby włączyć)"},
    {kPolish, "btn_watchdog_on", L"Monitor: WŁ. (kliknij, aby wyłączyć)"},
    {kPolish, "dlg_about_title", L"Mirelo – informacje"},
    {kPolish, "about_line1",
     L"Mirelo to narzędzie pomocnicze dla użytkowników programu CorelDRAW."},
    {kPolish, "about_line2",
     L"Ustala, co zawiesza CDR: wtyczka, drukarka, czcionka czy składnik systemu."},
    {kPolish, "about_line3",
     L"Odchudza pliki CDR, które przenoszą zawieszenia, a najpierw tworzy kopię każdego pliku."},
    {kPolish, "about_line4",
     L"Sprawdza częste przyczyny zawieszeń i oferuje naprawy, które można cofnąć."},
    {kPolish, "about_line5",
     L"Bez wstrzykiwania kodu, przechwytywania wywołań i pracy w tle – każdą czynność uruchamia "
     L"użytkownik."},
    {kPolish, "about_line6",
     L"Sposób użycia: gdy CDR się zawiesi, wybierz jego wystąpienie na karcie \"Diagnoza\" i "
     L"kliknij "
     L"przycisk \"Przechwyć teraz\"."},
    {kPolish, "about_line7",
     L"Jeśli nie pasuje żadna sygnatura, kliknij przycisk \"Prześlij nieznaną sygnaturę\", aby "
     L"pomóc "
     L"ulepszyć bazę sygnatur."},
    {kPolish, "btn_site_open", L"Otwórz witrynę"},
    {kPolish, "btn_guide_open", L"Otwórz podręcznik"},
    {kPolish, "btn_close", L"Zamknij"},
    {kPolish, "lbl_language", L"Język"},
    {kPolish, "tip_printer_switch",
     L"Czy tymczasowo przełączyć drukarkę domyślną na Microsoft Print to PDF?\nPoprzednia drukarka "
     L"domyślna zostanie automatycznie przywrócona przy zamykaniu programu "
     L"Mirelo.\n\nKontynuować?"},
    {kPolish, "printer_switched",
     L"Przełączono. Poprzednia drukarka domyślna: %s (wróci automatycznie przy zamykaniu "
     L"programu)"},
    {kPolish, "printer_reverted", L"Przywrócono drukarkę domyślną: %s"},
    {kPolish, "printer_orig_err", L"Nie można przywrócić poprzedniej drukarki domyślnej: %s"},
    {kPolish, "tip_optimize",
     L"Czy zoptymalizować ustawienia CDR?\n  - Ustawienie 30 poziomów cofania\n  - Wyłączenie "
     L"ekranu powitalnego\nNajpierw zostanie wyeksportowany rejestr. Zanim przejdziesz dalej, "
     L"zamknij CDR.\n\nKontynuować?"},
    {kPolish, "opt_done", L"Zoptymalizowano ustawienia CDR. Kopia zapasowa rejestru: %s"},
    {kPolish, "opt_changed", L"Zmienione ustawienia: %d"},
    {kPolish, "opt_reboot", L"Zmiany zaczną obowiązywać po ponownym uruchomieniu CDR."},
    {kPolish, "tip_submit",
     L"Czy anonimowo przesłać cechy przechwyconego stosu?\n(Tylko nazwy modułów i funkcji oraz "
     L"wersja CDR – bez ścieżek plików i treści dokumentów).\n\nKontynuować?"},
    {kPolish, "tip_slim",
     L"Wybrane pliki zostaną odchudzone:\n  - Usunięcie migawek widoków (usuwa WSZYSTKIE widoki "
     L"zapisane w Menedżerze widoków, także utworzone przez użytkownika)\n  - Wyczyszczenie "
     L"zbędnych stylów kolorów (sprawdzono: kolory obiektów się nie zmieniają)\n  - Usunięcie "
     L"pamięci podręcznej podglądu i miniatur (CDR odtworzy ją automatycznie przy "
     L"otwarciu)\nNajpierw obok oryginału powstanie kopia zapasowa każdego pliku "
     L"(.mirelobak).\nUpewnij się, że te pliki NIE są teraz otwarte w CDR. Kontynuować?"},
    {kPolish, "log_no_instance", L"Najpierw wybierz wystąpienie CDR."},
    {kPolish, "log_capturing", L"Przechwytywanie stosu wątku głównego CDR..."},
    {kPolish, "log_capture_ok", L"Przechwycono stos. Ramki: %d"},
    {kPolish, "log_capture_err", L"Przechwytywanie nie powiodło się: %s"},
    {kPolish, "log_category", L"Kategoria: %s"},
    {kPolish, "log_suspect", L"Podejrzany moduł: %s"},
    {kPolish, "log_rule", L"Dopasowana sygnatura: %s (poziom ważności: %s)"},
    {kPolish, "log_no_match",
     L"Nie pasuje żadna sygnatura – możesz kliknąć przycisk \"Prześlij nieznaną sygnaturę\", aby "
     L"anonimowo zasilić wspólną bazę."},
    {kPolish, "log_fallback",
     L"Nie udało się sklasyfikować automatycznie. Skopiuj nieprzetworzony stos lub kliknij "
     L"przycisk \"Prześlij nieznaną sygnaturę\", aby pomóc ulepszyć bazę sygnatur."},
    {kPolish, "log_stack_hdr", L"--- 8 górnych ramek ---"},
    {kPolish, "log_responsive",
     L"Wątek główny CDR teraz odpowiada. Kliknij ponownie przycisk \"Przechwyć teraz\" podczas "
     L"zawieszenia."},
    {kPolish, "log_responsive_ok", L"CDR odpowiada prawidłowo."},
    {kPolish, "log_metrics_hdr", L"===== Wskaźniki ====="},
    {kPolish, "log_env_title", L"===== Sprawdzanie środowiska ====="},
    {kPolish, "log_env_printer", L"Drukarka domyślna"},
    {kPolish, "log_env_fonts", L"Zainstalowane czcionki"},
    {kPolish, "log_env_gdi", L"Limit uchwytów GDI"},
    {kPolish, "log_env_mem", L"Pamięć fizyczna"},
    {kPolish, "log_env_risk", L"Sprawdzanie zakończone. Elementy wymagające uwagi: %d"},
    {kPolish, "log_env_ok", L"Sprawdzanie zakończone. Nie znaleziono zagrożeń."},
    {kPolish, "log_refresh", L"Odświeżono listę. Wystąpienia CDR: %d"},
    {kPolish, "log_no_cdr",
     L"Nie znaleziono uruchomionego programu CDR. Uruchom CDR i kliknij przycisk \"Odśwież\"."},
    {kPolish, "log_net_off", L"Sieć jest wyłączona (można ją włączyć w ustawieniach)"},
    {kPolish, "log_cloud_update", L"Aktualizowanie sygnatur..."},
    {kPolish, "log_cloud_done", L"Zaktualizowano sygnatury do v%d (reguły: %d)"},
    {kPolish, "log_submit_no",
     L"Brak danych przechwytywania. Najpierw użyj przycisku \"Przechwyć teraz\"; prześlij dane, "
     L"jeśli nie pasuje żadna sygnatura."},
    {kPolish, "log_submit_done", L"Anonimowo przesłane sygnatury ramek: %d. Dziękujemy!"},
    {kPolish, "log_watchdog_on",
     L"Monitor zawieszeń włączony. Zapisuje w dzienniku, gdy CDR przestaje odpowiadać."},
    {kPolish, "log_watchdog_off", L"Monitor zawieszeń wyłączony."},
    {kPolish, "log_pdb_set", L"Ustawiono folder symboli: %s"},
    {kPolish, "log_leak_base", L"Zapisano stan bazowy. Uchwyty GDI: %d"},
    {kPolish, "log_leak_go",
     L"Teraz pracuj w CDR jak zwykle, a następnie kliknij przycisk \"Porównaj ze stanem "
     L"bazowym\"."},
    {kPolish, "log_leak_settle", L"Oczekiwanie na ustabilizowanie się liczby uchwytów..."},
    {kPolish, "log_leak_nobase",
     L"Brak stanu bazowego. Najpierw kliknij przycisk \"Zapisz stan bazowy\"."},
    {kPolish, "log_leak_nopid",
     L"Wystąpienie CDR ze stanu bazowego nie jest już uruchomione. Zapisz nowy stan bazowy."},
    {kPolish, "log_leak_err", L"Nie można odczytać liczby uchwytów CDR."},
    {kPolish, "log_leak_report", L"Uchwyty GDI: stan bazowy %d, teraz %d"},
    {kPolish, "log_leak_judge", L"Ocena: %s"},
    {kPolish, "log_leak_j0", L"OK: liczba uchwytów wróciła w pobliże stanu bazowego"},
    {kPolish, "log_leak_j1",
     L"Warto zwrócić uwagę: liczba uchwytów pozostaje powyżej stanu bazowego"},
    {kPolish, "log_leak_j2",
     L"Prawdopodobny wyciek: liczba uchwytów pozostaje znacznie powyżej stanu bazowego"},
    {kPolish, "log_leak_advice",
     L"Zapisz pracę i uruchom CDR ponownie. Jeśli liczba znów rośnie, wyłączaj wtyczki jedną po "
     L"drugiej, aby znaleźć przyczynę."},
    {kPolish, "log_health", L"Kondycja: %s"},
    {kPolish, "log_slim_ok",
     L"%s: %s -> %s (usunięte widoki: %d, wyczyszczone style: %d, usunięte podglądy: %d)"},
    {kPolish, "log_slim_clean", L"%s: plik nie wymaga odchudzania, nie ma nic do usunięcia."},
    {kPolish, "log_slim_fail", L"Nie udało się przetworzyć %s: %s"},
    {kPolish, "log_slim_old",
     L"%s: stary format (riffData, X5 i starsze). Pominięto – najpierw zapisz w wersji X6 lub "
     L"nowszej."},
    {kPolish, "log_slim_sum",
     L"Gotowe: odchudzone %d / niewymagające odchudzania %d / nieudane lub pominięte %d. Kopie "
     L"zapasowe to pliki .mirelobak obok oryginałów."},
    {kPolish, "log_slim_tip",
     L"Wskazówka: przed przetwarzaniem zbiorczym otwórz jeden odchudzony plik w CDR, aby "
     L"sprawdzić, czy wszystko jest w porządku. Odchudzone pliki można bezpiecznie udostępniać."},
    {kPolish, "log_clean_err", L"Czyszczenie nie powiodło się: %s"},
    {kPolish, "log_clean_done",
     L"Czyszczenie zakończone. Przeniesione pliki: %d. Folder kopii zapasowych: %s"},
    {kPolish, "log_restore_done", L"Przywracanie zakończone. Przywrócone pliki: %d"},
    {kPolish, "log_switch_need_cdr", L"Przed przełączeniem drukarki uruchom CDR."},
    {kPolish, "log_switch_no",
     L"Nie udało się przełączyć (drukarka jest już wirtualna albo blokują to zasady)."},
    {kPolish, "warn_clean_in_use",
     L"Program CorelDRAW jest uruchomiony; używane pliki zostaną pominięte.\n\nKontynuować?"},
};

static_assert(isCompletePack(kPolishTexts, kPolish));
