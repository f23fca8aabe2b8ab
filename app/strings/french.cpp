// The French texts. \u00a0 is the no-break space before : ; ? ! and inside « ».
#include "app/strings/packs.h"
#include "build_settings.h"

constexpr PackText kFrenchTexts[kStringKeys.size()] = {
    {kFrench, "app_title",
     L"Mirelo v0.2 - Diagnostic des blocages de CDR et allègement de fichiers - " MIRELO_MAKER},
    {kFrench, "ready_tip",
     L"Mirelo est prêt. Lorsque CDR se bloque, ouvrez l'onglet «\u00a0Diagnostic\u00a0» et cliquez "
     L"sur «\u00a0Capturer maintenant\u00a0»."},
    {kFrench, "log_sig_local", L"Base de signatures chargée depuis le cache local"},
    {kFrench, "tab_diag", L"Diagnostic"},
    {kFrench, "tab_fix", L"Dépannage"},
    {kFrench, "tab_cloud", L"Cloud"},
    {kFrench, "tab_about", L"À propos"},
    {kFrench, "tab_dev", L"Développement"},
    {kFrench, "card_cdr_instance", L"Instance de CDR"},
    {kFrench, "card_diagnose", L"Diagnostic - trouver le coupable"},
    {kFrench, "card_fileslim", L"Allègement de fichiers - le vrai remède"},
    {kFrench, "card_scan", L"Vérification de l'environnement"},
    {kFrench, "card_printer", L"Imprimante"},
    {kFrench, "card_cleanup", L"Nettoyage des caches"},
    {kFrench, "card_cdrsettings", L"Paramètres de CDR"},
    {kFrench, "card_sigs", L"Signatures actuelles"},
    {kFrench, "card_cloudop", L"Opérations"},
    {kFrench, "card_network", L"Réseau"},
    {kFrench, "card_site", L"Site officiel"},
    {kFrench, "card_safety", L"Engagement de sécurité"},
    {kFrench, "card_pdb", L"Fichiers de symboles (PDB)"},
    {kFrench, "card_leak", L"Test de fuite de handles"},
    {kFrench, "card_watchdog", L"Surveillance des blocages"},
    {kFrench, "btn_refresh", L"Actualiser"},
    {kFrench, "btn_metrics", L"Mesures"},
    {kFrench, "btn_capture", L"Capturer maintenant (en cas de blocage)"},
    {kFrench, "diag_hint",
     L"Les résultats s'affichent dans le journal, en bas. Toute correspondance donne lieu à un "
     L"conseil."},
    {kFrench, "btn_slim", L"Sélectionner les fichiers CDR à alléger"},
    {kFrench, "hint_slim",
     L"Supprime les vues enregistrées (y compris les vôtres), les styles de couleur superflus et "
     L"les caches d'aperçu. Chaque fichier est d'abord sauvegardé en .mirelobak\u00a0; les "
     L"fichiers allégés ne propagent plus les blocages."},
    {kFrench, "btn_scan", L"Vérifier maintenant"},
    {kFrench, "hint_scan",
     L"Vérifie l'imprimante par défaut (réseau/hors connexion), le nombre de polices, le quota de "
     L"handles GDI et la mémoire vive\u00a0: les principales causes de blocage."},
    {kFrench, "btn_printer", L"Changer temporairement (retour automatique)"},
    {kFrench, "hint_printer",
     L"Définit temporairement Microsoft Print to PDF comme imprimante par défaut pour éviter les "
     L"imprimantes réseau lentes\u00a0; la vôtre est rétablie automatiquement à la fermeture."},
    {kFrench, "btn_clean", L"Sauvegarder et nettoyer"},
    {kFrench, "hint_clean",
     L"Déplace vers un dossier de sauvegarde les rapports d'incident, fichiers temporaires et "
     L"caches de miniatures de chaque version de CDR\u00a0; annulable à tout moment avec "
     L"«\u00a0Restaurer\u00a0»."},
    {kFrench, "btn_restore", L"Restaurer"},
    {kFrench, "btn_optimize", L"Optimiser (Registre sauvegardé)"},
    {kFrench, "hint_settings",
     L"Définit 30 niveaux d'annulation et désactive l'écran de bienvenue\u00a0; le Registre est "
     L"d'abord exporté. Prend effet au redémarrage de CDR."},
    {kFrench, "cloud_loading", L"Chargement en cours"},
    {kFrench, "btn_update", L"Mettre à jour les signatures"},
    {kFrench, "btn_submit", L"Envoyer la signature inconnue (anonymement)"},
    {kFrench, "net_on", L"Réseau\u00a0: ACTIVÉ (cliquer pour désactiver)"},
    {kFrench, "net_off", L"Réseau\u00a0: DÉSACTIVÉ (cliquer pour activer)"},
    {kFrench, "btn_site", L"Visiter " MIRELO_WEBSITE},
    {kFrench, "log_copy", L"Copier"},
    {kFrench, "log_clear", L"Effacer"},
    {kFrench, "brand_title", L"Mirelo"},
    {kFrench, "brand_subtitle", L"v0.2 - Diagnostic des blocages de CDR et allègement de fichiers"},
    {kFrench, "safety_1",
     L"Ni injection ni interception de code, aucun service en arrière-plan\u00a0: vous déclenchez "
     L"chaque action"},
    {kFrench, "safety_2",
     L"Droits d'utilisateur standard, aucun pilote, exécutable non compressé\u00a0; les fichiers "
     L"du programme CDR restent intacts"},
    {kFrench, "safety_3",
     L"Imprimante rétablie à la fermeture\u00a0; fichiers nettoyés sauvegardés et restaurables en "
     L"un clic"},
    {kFrench, "safety_4",
     L"Envois anonymes limités aux noms de modules et de fonctions\u00a0; le serveur garantit la "
     L"confidentialité"},
    {kFrench, "dev_pdb_hint",
     L"Choisissez un dossier de fichiers de symboles PDB pour voir davantage de noms de fonctions "
     L"dans les piles capturées."},
    {kFrench, "btn_pdbpath", L"Choisir le dossier de symboles"},
    {kFrench, "pdb_set", L"Dossier de symboles\u00a0: %s"},
    {kFrench, "btn_leakbase", L"Établir la référence"},
    {kFrench, "btn_leakdiff", L"Comparer à la référence"},
    {kFrench, "btn_watchdog_off", L"Surveillance\u00a0: DÉSACTIVÉE (cliquer pour activer)"},
    {kFrench, "btn_watchdog_on", L"Surveillance\u00a0: ACTIVÉE (cliquer pour désactiver)"},
    {kFrench, "dlg_about_title", L"À propos de Mirelo"},
    {kFrench, "about_line1",
     L"Mirelo est un outil d'accompagnement pour les utilisateurs de CorelDRAW."},
    {kFrench, "about_line2",
     L"Il trouve ce qui bloque CDR\u00a0: un plug-in, l'imprimante, une police ou un composant du "
     L"système."},
    {kFrench, "about_line3",
     L"Il allège les fichiers CDR qui propagent les blocages et sauvegarde d'abord chaque "
     L"fichier."},
    {kFrench, "about_line4",
     L"Il recherche les causes courantes de blocage et propose des corrections que vous pouvez "
     L"annuler."},
    {kFrench, "about_line5",
     L"Ni injection ni interception de code, aucun service en arrière-plan\u00a0: vous déclenchez "
     L"chaque action."},
    {kFrench, "about_line6",
     L"Mode d'emploi\u00a0: lorsque CDR se bloque, sélectionnez son instance dans l'onglet "
     L"«\u00a0Diagnostic\u00a0», puis cliquez sur «\u00a0Capturer maintenant\u00a0»."},
    {kFrench, "about_line7",
     L"Si aucune signature ne correspond, cliquez sur «\u00a0Envoyer la signature inconnue\u00a0» "
     L"pour contribuer à améliorer la base de signatures."},
    {kFrench, "btn_site_open", L"Ouvrir le site web"},
    {kFrench, "btn_guide_open", L"Ouvrir le guide de l'utilisateur"},
    {kFrench, "btn_close", L"Fermer"},
    {kFrench, "lbl_language", L"Langue"},
    {kFrench, "tip_printer_switch",
     L"Définir temporairement Microsoft Print to PDF comme imprimante par défaut\u00a0?\nVotre "
     L"imprimante par défaut d'origine est rétablie automatiquement à la fermeture de "
     L"Mirelo.\n\nVoulez-vous continuer\u00a0?"},
    {kFrench, "printer_switched",
     L"Imprimante changée. Imprimante par défaut d'origine\u00a0: %s (rétablie automatiquement à "
     L"la fermeture)"},
    {kFrench, "printer_reverted", L"Imprimante par défaut rétablie\u00a0: %s"},
    {kFrench, "printer_orig_err",
     L"Impossible de rétablir l'imprimante par défaut d'origine\u00a0: %s"},
    {kFrench, "tip_optimize",
     L"Optimiser les paramètres de CDR\u00a0?\n  - Définir 30 niveaux d'annulation\n  - Désactiver "
     L"l'écran de bienvenue\nLe Registre est d'abord exporté. Veuillez fermer CDR avant de "
     L"poursuivre.\n\nVoulez-vous continuer\u00a0?"},
    {kFrench, "opt_done", L"Paramètres de CDR optimisés. Sauvegarde du Registre\u00a0: %s"},
    {kFrench, "opt_changed", L"Paramètres modifiés\u00a0: %d"},
    {kFrench, "opt_reboot", L"Les modifications prendront effet au redémarrage de CDR."},
    {kFrench, "tip_submit",
     L"Envoyer anonymement les caractéristiques de la pile capturée\u00a0?\n(Uniquement les noms "
     L"de modules et de fonctions, ainsi que la version de CDR\u00a0; aucun chemin de fichier, "
     L"aucun contenu de document.)\n\nVoulez-vous continuer\u00a0?"},
    {kFrench, "tip_slim",
     L"Les fichiers sélectionnés vont être allégés\u00a0:\n  - Suppression des instantanés de vues "
     L"(efface TOUTES les vues enregistrées dans le Gestionnaire de vues, y compris les vôtres)\n  "
     L"- Suppression des styles de couleur superflus (vérifié\u00a0: les couleurs des objets ne "
     L"changent pas)\n  - Suppression des caches d'aperçu et de miniatures (recréés "
     L"automatiquement par CDR à l'ouverture)\nChaque fichier est d'abord sauvegardé en .mirelobak "
     L"à côté de l'original.\nAssurez-vous que ces fichiers ne sont PAS ouverts dans CDR en ce "
     L"moment. Voulez-vous continuer\u00a0?"},
    {kFrench, "log_no_instance", L"Veuillez d'abord sélectionner une instance de CDR."},
    {kFrench, "log_capturing", L"Capture de la pile du thread principal de CDR..."},
    {kFrench, "log_capture_ok", L"Capture terminée. Frames\u00a0: %d"},
    {kFrench, "log_capture_err", L"Échec de la capture\u00a0: %s"},
    {kFrench, "log_category", L"Catégorie\u00a0: %s"},
    {kFrench, "log_suspect", L"Module suspect\u00a0: %s"},
    {kFrench, "log_rule", L"Signature correspondante\u00a0: %s (gravité\u00a0: %s)"},
    {kFrench, "log_no_match",
     L"Aucune signature ne correspond. Vous pouvez cliquer sur «\u00a0Envoyer la signature "
     L"inconnue\u00a0» pour enrichir anonymement la base commune."},
    {kFrench, "log_fallback",
     L"Classement automatique impossible. Copiez la pile brute ou cliquez sur «\u00a0Envoyer la "
     L"signature inconnue\u00a0» pour contribuer à améliorer la base de signatures."},
    {kFrench, "log_stack_hdr", L"--- 8 frames du haut de la pile ---"},
    {kFrench, "log_responsive",
     L"Le thread principal de CDR répond actuellement. Cliquez de nouveau sur «\u00a0Capturer "
     L"maintenant\u00a0» pendant un blocage."},
    {kFrench, "log_responsive_ok", L"CDR répond normalement."},
    {kFrench, "log_metrics_hdr", L"===== Mesures ====="},
    {kFrench, "log_env_title", L"===== Vérification de l'environnement ====="},
    {kFrench, "log_env_printer", L"Imprimante par défaut"},
    {kFrench, "log_env_fonts", L"Polices installées"},
    {kFrench, "log_env_gdi", L"Quota de handles GDI"},
    {kFrench, "log_env_mem", L"Mémoire physique"},
    {kFrench, "log_env_risk", L"Vérification terminée. Points à surveiller\u00a0: %d"},
    {kFrench, "log_env_ok", L"Vérification terminée. Aucun risque détecté."},
    {kFrench, "log_refresh", L"Liste actualisée. Instances de CDR\u00a0: %d"},
    {kFrench, "log_no_cdr",
     L"Aucune instance de CDR en cours d'exécution. Démarrez CDR, puis cliquez sur "
     L"«\u00a0Actualiser\u00a0»."},
    {kFrench, "log_net_off", L"Réseau désactivé (peut être activé dans les paramètres)"},
    {kFrench, "log_cloud_update", L"Mise à jour des signatures..."},
    {kFrench, "log_cloud_done", L"Signatures mises à jour vers la v%d (%d règles)"},
    {kFrench, "log_submit_no",
     L"Aucune donnée capturée. Utilisez d'abord «\u00a0Capturer maintenant\u00a0», puis envoyez la "
     L"capture si aucune signature ne correspond."},
    {kFrench, "log_submit_done",
     L"Signatures de frames envoyées anonymement\u00a0: %d. Merci\u00a0!"},
    {kFrench, "log_watchdog_on",
     L"Surveillance des blocages activée. Le journal signale lorsque CDR cesse de répondre."},
    {kFrench, "log_watchdog_off", L"Surveillance des blocages désactivée."},
    {kFrench, "log_pdb_set", L"Dossier de symboles défini\u00a0: %s"},
    {kFrench, "log_leak_base", L"Référence établie. Handles GDI\u00a0: %d"},
    {kFrench, "log_leak_go",
     L"Travaillez maintenant normalement dans CDR, puis cliquez sur «\u00a0Comparer à la "
     L"référence\u00a0»."},
    {kFrench, "log_leak_settle", L"Attente de la stabilisation du nombre de handles..."},
    {kFrench, "log_leak_nobase",
     L"Pas encore de référence. Cliquez d'abord sur «\u00a0Établir la référence\u00a0»."},
    {kFrench, "log_leak_nopid",
     L"L'instance de CDR de la référence n'est plus en cours d'exécution. Établissez une nouvelle "
     L"référence."},
    {kFrench, "log_leak_err", L"Impossible de lire le nombre de handles de CDR."},
    {kFrench, "log_leak_report", L"Handles GDI\u00a0: référence %d, maintenant %d"},
    {kFrench, "log_leak_judge", L"Évaluation\u00a0: %s"},
    {kFrench, "log_leak_j0", L"OK\u00a0: le nombre de handles est redevenu proche de la référence"},
    {kFrench, "log_leak_j1",
     L"À surveiller\u00a0: le nombre de handles reste supérieur à la référence"},
    {kFrench, "log_leak_j2",
     L"Fuite probable\u00a0: le nombre de handles reste très supérieur à la référence"},
    {kFrench, "log_leak_advice",
     L"Enregistrez votre travail et redémarrez CDR. Si le nombre augmente de nouveau, désactivez "
     L"les plug-ins un par un pour trouver la cause."},
    {kFrench, "log_health", L"État\u00a0: %s"},
    {kFrench, "log_slim_ok",
     L"%s\u00a0: %s -> %s (vues supprimées\u00a0: %d, couleurs effacées\u00a0: %d, aperçus "
     L"supprimés\u00a0: %d)"},
    {kFrench, "log_slim_clean", L"%s\u00a0: déjà allégé, rien à faire."},
    {kFrench, "log_slim_fail", L"%s\u00a0: échec (%s)"},
    {kFrench, "log_slim_old",
     L"%s\u00a0: ancien format (riffData, X5 ou antérieur). Ignoré\u00a0; enregistrez-le d'abord "
     L"au format X6 ou ultérieur."},
    {kFrench, "log_slim_sum",
     L"Terminé\u00a0: réussis %d / déjà allégés %d / en échec ou ignorés %d. Les sauvegardes sont "
     L"les fichiers .mirelobak à côté des originaux."},
    {kFrench, "log_slim_tip",
     L"Conseil\u00a0: ouvrez un fichier allégé dans CDR pour vérifier que tout va bien avant un "
     L"traitement par lots. Les fichiers allégés peuvent être partagés sans risque."},
    {kFrench, "log_clean_err", L"Échec du nettoyage\u00a0: %s"},
    {kFrench, "log_clean_done",
     L"Nettoyage terminé. Fichiers déplacés\u00a0: %d. Dossier de sauvegarde\u00a0: %s"},
    {kFrench, "log_restore_done", L"Restauration terminée. Fichiers restaurés\u00a0: %d"},
    {kFrench, "log_switch_need_cdr", L"Veuillez démarrer CDR avant de changer d'imprimante."},
    {kFrench, "log_switch_no",
     L"Échec du changement (imprimante déjà virtuelle ou opération bloquée par une stratégie)."},
    {kFrench, "warn_clean_in_use",
     L"CorelDRAW est en cours d'exécution\u00a0; les fichiers en cours d'utilisation seront "
     L"ignorés.\n\nVoulez-vous continuer\u00a0?"},
};

static_assert(isCompletePack(kFrenchTexts, kFrench));
