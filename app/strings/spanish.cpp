// The Spanish texts.
#include "app/strings/packs.h"
#include "build_settings.h"

constexpr PackText kSpanishTexts[kStringKeys.size()] = {
    {kSpanish, "app_title",
     L"Mirelo v0.2 - Diagnosticar bloqueos de CDR y aligerar archivos - " MIRELO_MAKER},
    {kSpanish, "ready_tip",
     L"Mirelo está listo. Cuando CDR se bloquee, vaya a la pestaña «Diagnóstico» y haga clic en "
     L"«Capturar ahora»."},
    {kSpanish, "log_sig_local", L"Base de firmas cargada desde la caché local"},
    {kSpanish, "tab_diag", L"Diagnóstico"},
    {kSpanish, "tab_fix", L"Reparación"},
    {kSpanish, "tab_cloud", L"Nube"},
    {kSpanish, "tab_about", L"Acerca de"},
    {kSpanish, "tab_dev", L"Desarrollo"},
    {kSpanish, "card_cdr_instance", L"Instancia de CDR"},
    {kSpanish, "card_diagnose", L"Diagnóstico - encontrar al culpable"},
    {kSpanish, "card_fileslim", L"Aligerar archivos - la solución real"},
    {kSpanish, "card_scan", L"Comprobación del entorno"},
    {kSpanish, "card_printer", L"Impresora"},
    {kSpanish, "card_cleanup", L"Limpieza de cachés"},
    {kSpanish, "card_cdrsettings", L"Configuración de CDR"},
    {kSpanish, "card_sigs", L"Firmas actuales"},
    {kSpanish, "card_cloudop", L"Operaciones"},
    {kSpanish, "card_network", L"Red"},
    {kSpanish, "card_site", L"Sitio oficial"},
    {kSpanish, "card_safety", L"Compromiso de seguridad"},
    {kSpanish, "card_pdb", L"Archivos de símbolos (PDB)"},
    {kSpanish, "card_leak", L"Prueba de fugas de identificadores"},
    {kSpanish, "card_watchdog", L"Supervisión de bloqueos"},
    {kSpanish, "btn_refresh", L"Actualizar"},
    {kSpanish, "btn_metrics", L"Métricas"},
    {kSpanish, "btn_capture", L"Capturar ahora (durante el bloqueo)"},
    {kSpanish, "diag_hint",
     L"Los resultados aparecen abajo, en el panel de informe. Cada coincidencia incluye una "
     L"recomendación."},
    {kSpanish, "btn_slim", L"Seleccionar archivos CDR para aligerar"},
    {kSpanish, "hint_slim",
     L"Elimina las vistas guardadas (también las suyas), los estilos de color redundantes y las "
     L"cachés de vista previa. Antes se guarda una copia .mirelobak de cada archivo; los archivos "
     L"aligerados ya no propagan bloqueos."},
    {kSpanish, "btn_scan", L"Comprobar ahora"},
    {kSpanish, "hint_scan",
     L"Comprueba la impresora predeterminada (red/sin conexión), el número de fuentes, la cuota de "
     L"identificadores GDI y la memoria RAM: las principales causas de bloqueo."},
    {kSpanish, "btn_printer", L"Cambiar temporalmente (reversión automática)"},
    {kSpanish, "hint_printer",
     L"Establece temporalmente Microsoft Print to PDF como impresora predeterminada para evitar "
     L"impresoras de red lentas; al salir se restaura automáticamente la impresora original."},
    {kSpanish, "btn_clean", L"Limpiar (con copia)"},
    {kSpanish, "hint_clean",
     L"Mueve a una carpeta de copias los informes de errores, los archivos temporales y las cachés "
     L"de miniaturas de cada versión de CDR; reversible en todo momento con «Restaurar»."},
    {kSpanish, "btn_restore", L"Restaurar"},
    {kSpanish, "btn_optimize", L"Optimizar (con copia del Registro)"},
    {kSpanish, "hint_settings",
     L"Establece 30 niveles de deshacer y desactiva la pantalla de bienvenida; antes se exporta el "
     L"Registro. Surte efecto al reiniciar CDR."},
    {kSpanish, "cloud_loading", L"Cargando"},
    {kSpanish, "btn_update", L"Actualizar firmas"},
    {kSpanish, "btn_submit", L"Enviar firma desconocida (de forma anónima)"},
    {kSpanish, "net_on", L"Red: ACTIVADA (haga clic para desactivarla)"},
    {kSpanish, "net_off", L"Red: DESACTIVADA (haga clic para activarla)"},
    {kSpanish, "btn_site", L"Visitar " MIRELO_WEBSITE},
    {kSpanish, "log_copy", L"Copiar"},
    {kSpanish, "log_clear", L"Borrar"},
    {kSpanish, "brand_title", L"Mirelo"},
    {kSpanish, "brand_subtitle", L"v0.2 - Diagnosticar bloqueos de CDR y aligerar archivos"},
    {kSpanish, "safety_1",
     L"Sin inyección ni interceptación de código, sin servicios en segundo plano: usted inicia "
     L"cada acción"},
    {kSpanish, "safety_2",
     L"Usuario estándar, sin controladores, ejecutable sin comprimir; nunca modifica los archivos "
     L"del programa CDR"},
    {kSpanish, "safety_3",
     L"La impresora se restaura automáticamente al salir; limpieza con copia y restauración con un "
     L"clic"},
    {kSpanish, "safety_4",
     L"Los envíos anónimos solo incluyen nombres de módulos y funciones; el servidor garantiza la "
     L"privacidad"},
    {kSpanish, "dev_pdb_hint",
     L"Elija una carpeta con archivos de símbolos PDB para ver más nombres de funciones en las "
     L"pilas capturadas."},
    {kSpanish, "btn_pdbpath", L"Elegir carpeta de símbolos"},
    {kSpanish, "pdb_set", L"Carpeta de símbolos: %s"},
    {kSpanish, "btn_leakbase", L"Tomar referencia"},
    {kSpanish, "btn_leakdiff", L"Comparar con la referencia"},
    {kSpanish, "btn_watchdog_off", L"Supervisión: DESACTIVADA (haga clic para activarla)"},
    {kSpanish, "btn_watchdog_on", L"Supervisión: ACTIVADA (haga clic para desactivarla)"},
    {kSpanish, "dlg_about_title", L"Acerca de Mirelo"},
    {kSpanish, "about_line1",
     L"Mirelo es una herramienta complementaria para usuarios de CorelDRAW."},
    {kSpanish, "about_line2",
     L"Averigua qué hace que CDR se bloquee: un complemento, la impresora, una fuente o un "
     L"componente del sistema."},
    {kSpanish, "about_line3",
     L"Aligera los archivos CDR que propagan bloqueos y antes guarda una copia de seguridad de "
     L"cada archivo."},
    {kSpanish, "about_line4",
     L"Comprueba las causas habituales de bloqueo y ofrece reparaciones que se pueden deshacer."},
    {kSpanish, "about_line5",
     L"Sin inyección ni interceptación de código, sin servicios en segundo plano: usted inicia "
     L"cada acción."},
    {kSpanish, "about_line6",
     L"Modo de uso: cuando CDR se bloquee, seleccione su instancia en la pestaña «Diagnóstico» y "
     L"haga clic en «Capturar ahora»."},
    {kSpanish, "about_line7",
     L"Si no coincide ninguna firma, haga clic en «Enviar firma desconocida» para ayudar a mejorar "
     L"la base de firmas."},
    {kSpanish, "btn_site_open", L"Abrir el sitio web"},
    {kSpanish, "btn_guide_open", L"Abrir la guía del usuario"},
    {kSpanish, "btn_close", L"Cerrar"},
    {kSpanish, "lbl_language", L"Idioma"},
    {kSpanish, "tip_printer_switch",
     L"¿Cambiar temporalmente la impresora predeterminada a Microsoft Print to PDF?\nSu impresora "
     L"predeterminada original se restaurará automáticamente al salir de Mirelo.\n\n¿Desea "
     L"continuar?"},
    {kSpanish, "printer_switched",
     L"Impresora cambiada. Predeterminada original: %s (se restaurará automáticamente al salir)"},
    {kSpanish, "printer_reverted", L"Impresora predeterminada restaurada: %s"},
    {kSpanish, "printer_orig_err",
     L"No se puede restaurar la impresora predeterminada original: %s"},
    {kSpanish, "tip_optimize",
     L"¿Optimizar la configuración de CDR?\n  - Establecer 30 niveles de deshacer\n  - Desactivar "
     L"la pantalla de bienvenida\nPrimero se exporta el Registro. Cierre CDR antes de "
     L"seguir.\n\n¿Desea continuar?"},
    {kSpanish, "opt_done", L"Configuración de CDR optimizada. Copia de seguridad del Registro: %s"},
    {kSpanish, "opt_changed", L"Opciones modificadas: %d"},
    {kSpanish, "opt_reboot", L"Los cambios surtirán efecto al reiniciar CDR."},
    {kSpanish, "tip_submit",
     L"¿Enviar de forma anónima las características de la pila capturada?\n(Solo nombres de "
     L"módulos y funciones, además de la versión de CDR; ni rutas de archivo ni contenido de "
     L"documentos.)\n\n¿Desea continuar?"},
    {kSpanish, "tip_slim",
     L"Se aligerarán los archivos seleccionados:\n  - Eliminar las instantáneas de vistas (borra "
     L"TODAS las vistas guardadas en el Administrador de vistas, incluidas las suyas)\n  - Borrar "
     L"los estilos de color redundantes (comprobado: los colores de los objetos no cambian)\n  - "
     L"Eliminar las cachés de vistas previas y miniaturas (CDR las vuelve a crear automáticamente "
     L"al abrir)\nAntes se guarda una copia de seguridad de cada archivo como .mirelobak junto al "
     L"original.\nAsegúrese de que estos archivos NO estén abiertos en CDR en este momento. ¿Desea "
     L"continuar?"},
    {kSpanish, "log_no_instance", L"Seleccione primero una instancia de CDR."},
    {kSpanish, "log_capturing", L"Capturando la pila del subproceso principal de CDR..."},
    {kSpanish, "log_capture_ok", L"Captura finalizada. Marcos: %d"},
    {kSpanish, "log_capture_err", L"Error en la captura: %s"},
    {kSpanish, "log_category", L"Categoría: %s"},
    {kSpanish, "log_suspect", L"Módulo sospechoso: %s"},
    {kSpanish, "log_rule", L"Firma coincidente: %s (gravedad: %s)"},
    {kSpanish, "log_no_match",
     L"No coincide ninguna firma. Puede hacer clic en «Enviar firma desconocida» para contribuir "
     L"de forma anónima a la base común."},
    {kSpanish, "log_fallback",
     L"No se ha podido clasificar automáticamente. Copie la pila sin procesar o haga clic en "
     L"«Enviar firma desconocida» para ayudar a mejorar la base de firmas."},
    {kSpanish, "log_stack_hdr", L"--- 8 marcos superiores ---"},
    {kSpanish, "log_responsive",
     L"El subproceso principal de CDR responde en este momento. Haga clic de nuevo en «Capturar "
     L"ahora» durante un bloqueo."},
    {kSpanish, "log_responsive_ok", L"CDR responde con normalidad."},
    {kSpanish, "log_metrics_hdr", L"===== Métricas ====="},
    {kSpanish, "log_env_title", L"===== Comprobación del entorno ====="},
    {kSpanish, "log_env_printer", L"Impresora predeterminada"},
    {kSpanish, "log_env_fonts", L"Fuentes instaladas"},
    {kSpanish, "log_env_gdi", L"Cuota de identificadores GDI"},
    {kSpanish, "log_env_mem", L"Memoria física"},
    {kSpanish, "log_env_risk", L"Comprobación finalizada. Elementos que requieren atención: %d"},
    {kSpanish, "log_env_ok", L"Comprobación finalizada. No se han encontrado riesgos."},
    {kSpanish, "log_refresh", L"Lista actualizada. Instancias de CDR: %d"},
    {kSpanish, "log_no_cdr",
     L"No se ha encontrado ninguna instancia de CDR en ejecución. Inicie CDR y haga clic en "
     L"«Actualizar»."},
    {kSpanish, "log_net_off", L"Red desactivada (se puede activar en la configuración)"},
    {kSpanish, "log_cloud_update", L"Actualizando las firmas..."},
    {kSpanish, "log_cloud_done", L"Firmas actualizadas a la v%d (%d reglas)"},
    {kSpanish, "log_submit_no",
     L"Todavía no hay datos capturados. Use primero «Capturar ahora» y envíe los datos si no "
     L"coincide ninguna firma."},
    {kSpanish, "log_submit_done", L"Firmas de marcos enviadas de forma anónima: %d. ¡Gracias!"},
    {kSpanish, "log_watchdog_on",
     L"Supervisión de bloqueos activada. El informe indicará cuándo CDR deja de responder."},
    {kSpanish, "log_watchdog_off", L"Supervisión de bloqueos desactivada."},
    {kSpanish, "log_pdb_set", L"Carpeta de símbolos establecida: %s"},
    {kSpanish, "log_leak_base", L"Referencia tomada. Identificadores GDI: %d"},
    {kSpanish, "log_leak_go",
     L"Trabaje ahora en CDR como de costumbre y haga clic después en «Comparar con la "
     L"referencia»."},
    {kSpanish, "log_leak_settle", L"Esperando a que se estabilice el número de identificadores..."},
    {kSpanish, "log_leak_nobase",
     L"Todavía no hay referencia. Haga clic primero en «Tomar referencia»."},
    {kSpanish, "log_leak_nopid",
     L"La instancia de CDR de la referencia ya no está en ejecución. Tome una nueva referencia."},
    {kSpanish, "log_leak_err", L"No se puede leer el número de identificadores de CDR."},
    {kSpanish, "log_leak_report", L"Identificadores GDI: referencia %d, ahora %d"},
    {kSpanish, "log_leak_judge", L"Valoración: %s"},
    {kSpanish, "log_leak_j0",
     L"Correcto: el número de identificadores vuelve a estar cerca de la referencia"},
    {kSpanish, "log_leak_j1",
     L"Requiere atención: el número de identificadores sigue por encima de la referencia"},
    {kSpanish, "log_leak_j2",
     L"Fuga probable: el número de identificadores sigue muy por encima de la referencia"},
    {kSpanish, "log_leak_advice",
     L"Guarde su trabajo y reinicie CDR. Si el número vuelve a crecer, desactive los complementos "
     L"uno por uno para encontrar la causa."},
    {kSpanish, "log_health", L"Estado: %s"},
    {kSpanish, "log_slim_ok",
     L"%s: %s -> %s (vistas eliminadas: %d, colores borrados: %d, vistas previas eliminadas: %d)"},
    {kSpanish, "log_slim_clean", L"%s: ya está aligerado, no hay nada que hacer."},
    {kSpanish, "log_slim_fail", L"Error en %s: %s"},
    {kSpanish, "log_slim_old",
     L"%s: formato antiguo (riffData, X5 o anterior). Omitido; guárdelo primero como X6 o "
     L"posterior."},
    {kSpanish, "log_slim_sum",
     L"Finalizado: correctos %d / ya aligerados %d / con error u omitidos %d. Las copias de "
     L"seguridad son los archivos .mirelobak situados junto a los originales."},
    {kSpanish, "log_slim_tip",
     L"Sugerencia: antes de procesar por lotes, abra en CDR un archivo aligerado para confirmar "
     L"que todo está bien. Los archivos aligerados se pueden compartir con seguridad."},
    {kSpanish, "log_clean_err", L"Error en la limpieza: %s"},
    {kSpanish, "log_clean_done",
     L"Limpieza finalizada. Archivos movidos: %d. Carpeta de copias: %s"},
    {kSpanish, "log_restore_done", L"Restauración finalizada. Archivos restaurados: %d"},
    {kSpanish, "log_switch_need_cdr", L"Inicie CDR antes de cambiar de impresora."},
    {kSpanish, "log_switch_no",
     L"No se ha podido cambiar (la impresora ya es virtual o una directiva lo impide)."},
    {kSpanish, "warn_clean_in_use",
     L"CorelDRAW se está ejecutando; se omitirán los archivos en uso.\n\n¿Desea continuar?"},
};

static_assert(isCompletePack(kSpanishTexts, kSpanish));
