// The Brazilian Portuguese texts.
#include "app/strings/packs.h"
#include "build_settings.h"

constexpr PackText kPortugueseTexts[kStringKeys.size()] = {
    {kPortuguese, "app_title",
     L"Mirelo v0.2 - Diagnóstico de travamentos do CDR e arquivos enxutos - " MIRELO_MAKER},
    {kPortuguese, "ready_tip",
     L"O Mirelo está pronto. Quando o CDR travar, abra a guia \"Diagnóstico\" e clique em "
     L"\"Capturar "
     L"agora\"."},
    {kPortuguese, "log_sig_local", L"Banco de assinaturas carregado do cache local"},
    {kPortuguese, "tab_diag", L"Diagnóstico"},
    {kPortuguese, "tab_fix", L"Correções"},
    {kPortuguese, "tab_cloud", L"Nuvem"},
    {kPortuguese, "tab_about", L"Sobre"},
    {kPortuguese, "tab_dev", L"Desenvolvedor"},
    {kPortuguese, "card_cdr_instance", L"Instância do CDR"},
    {kPortuguese, "card_diagnose", L"Diagnóstico - encontre o culpado"},
    {kPortuguese, "card_fileslim", L"Enxugar arquivos - a verdadeira solução"},
    {kPortuguese, "card_scan", L"Verificação do ambiente"},
    {kPortuguese, "card_printer", L"Impressora"},
    {kPortuguese, "card_cleanup", L"Limpeza de cache"},
    {kPortuguese, "card_cdrsettings", L"Configurações do CDR"},
    {kPortuguese, "card_sigs", L"Assinaturas atuais"},
    {kPortuguese, "card_cloudop", L"Operações"},
    {kPortuguese, "card_network", L"Rede"},
    {kPortuguese, "card_site", L"Site oficial"},
    {kPortuguese, "card_safety", L"Compromisso de segurança"},
    {kPortuguese, "card_pdb", L"Arquivos de símbolos (PDB)"},
    {kPortuguese, "card_leak", L"Teste de vazamento de identificadores"},
    {kPortuguese, "card_watchdog", L"Monitoramento de travamentos"},
    {kPortuguese, "btn_refresh", L"Atualizar"},
    {kPortuguese, "btn_metrics", L"Métricas"},
    {kPortuguese, "btn_capture", L"Capturar agora (durante o travamento)"},
    {kPortuguese, "diag_hint",
     L"Os resultados aparecem no painel de log, na parte inferior. As correspondências trazem "
     L"recomendações."},
    {kPortuguese, "btn_slim", L"Selecionar arquivos CDR para enxugar"},
    {kPortuguese, "hint_slim",
     L"Remove instantâneos de exibição, estilos de cores redundantes e caches de visualização. "
     L"Antes, é feito um backup .mirelobak de cada arquivo; arquivos enxutos não propagam mais "
     L"travamentos."},
    {kPortuguese, "btn_scan", L"Verificar agora"},
    {kPortuguese, "hint_scan",
     L"Verifica a impressora padrão (rede/offline), o número de fontes, a cota de identificadores "
     L"GDI e a memória RAM: as principais causas de travamento."},
    {kPortuguese, "btn_printer", L"Troca temporária (reversão automática)"},
    {kPortuguese, "hint_printer",
     L"Define temporariamente a Microsoft Print to PDF como impressora padrão para evitar "
     L"impressoras de rede lentas; a impressora original é restaurada automaticamente ao sair."},
    {kPortuguese, "btn_clean", L"Limpar (com backup)"},
    {kPortuguese, "hint_clean",
     L"Move relatórios de falhas, arquivos temporários e caches de miniaturas de todas as versões "
     L"do CDR para uma pasta de backup; use \"Restaurar\" para desfazer a qualquer momento."},
    {kPortuguese, "btn_restore", L"Restaurar"},
    {kPortuguese, "btn_optimize", L"Otimizar (com backup do Registro)"},
    {kPortuguese, "hint_settings",
     L"Define 30 níveis de desfazer e desativa a tela de boas-vindas; antes, o Registro é "
     L"exportado. Entra em vigor quando o CDR for reiniciado."},
    {kPortuguese, "cloud_loading", L"Carregando"},
    {kPortuguese, "btn_update", L"Atualizar assinaturas"},
    {kPortuguese, "btn_submit", L"Enviar assinatura desconhecida (anonimamente)"},
    {kPortuguese, "net_on", L"Rede: ATIVADA (clique para desativar)"},
    {kPortuguese, "net_off", L"Rede: DESATIVADA (clique para ativar)"},
    {kPortuguese, "btn_site", L"Visitar " MIRELO_WEBSITE},
    {kPortuguese, "log_copy", L"Copiar"},
    {kPortuguese, "log_clear", L"Limpar"},
    {kPortuguese, "brand_title", L"Mirelo"},
    {kPortuguese, "brand_subtitle", L"v0.2 - Diagnóstico de travamentos do CDR e arquivos enxutos"},
    {kPortuguese, "safety_1",
     L"Sem injeção de código, sem hooks, nada em segundo plano: você inicia cada ação"},
    {kPortuguese, "safety_2",
     L"Executado como usuário padrão, sem driver nem packer; nunca altera os arquivos do próprio "
     L"CDR"},
    {kPortuguese, "safety_3",
     L"A impressora é restaurada automaticamente ao sair; o que foi limpo tem backup e volta com "
     L"um clique"},
    {kPortuguese, "safety_4",
     L"Os envios anônimos contêm só nomes de módulos e funções; o servidor garante a privacidade"},
    {kPortuguese, "dev_pdb_hint",
     L"Escolha uma pasta com arquivos de símbolos PDB para ver mais nomes de funções nas pilhas "
     L"capturadas."},
    {kPortuguese, "btn_pdbpath", L"Escolher pasta de símbolos"},
    {kPortuguese, "pdb_set", L"Pasta de símbolos: %s"},
    {kPortuguese, "btn_leakbase", L"Registrar linha de base"},
    {kPortuguese, "btn_leakdiff", L"Comparar com a linha de base"},
    {kPortuguese, "btn_watchdog_off", L"Monitoramento: DESATIVADO (clique para ativar)"},
    {kPortuguese, "btn_watchdog_on", L"Monitoramento: ATIVADO (clique para desativar)"},
    {kPortuguese, "dlg_about_title", L"Sobre o Mirelo"},
    {kPortuguese, "about_line1",
     L"O Mirelo é uma ferramenta complementar para usuários do CorelDRAW."},
    {kPortuguese, "about_line2",
     L"Ele descobre o que faz o CDR travar: um plug-in, a impressora, uma fonte ou um componente "
     L"do sistema."},
    {kPortuguese, "about_line3",
     L"Ele enxuga os arquivos CDR que propagam travamentos e antes faz o backup de cada arquivo."},
    {kPortuguese, "about_line4",
     L"Ele verifica as causas comuns de travamento e oferece correções que você pode desfazer."},
    {kPortuguese, "about_line5",
     L"Sem injeção de código, sem hooks, nada em segundo plano: você inicia cada ação."},
    {kPortuguese, "about_line6",
     L"Como usar: quando o CDR travar, selecione a instância na guia \"Diagnóstico\" e clique em "
     L"\"Capturar agora\"."},
    {kPortuguese, "about_line7",
     L"Se nenhuma assinatura corresponder, clique em \"Enviar assinatura desconhecida\" para "
     L"ajudar "
     L"a melhorar o banco de assinaturas."},
    {kPortuguese, "btn_site_open", L"Abrir o site"},
    {kPortuguese, "btn_guide_open", L"Abrir o guia do usuário"},
    {kPortuguese, "btn_close", L"Fechar"},
    {kPortuguese, "lbl_language", L"Idioma"},
    {kPortuguese, "tip_printer_switch",
     L"Trocar temporariamente a impressora padrão pela Microsoft Print to PDF?\nA impressora "
     L"padrão original será restaurada automaticamente quando o Mirelo for fechado.\n\nDeseja "
     L"continuar?"},
    {kPortuguese, "printer_switched",
     L"Impressora trocada. Impressora padrão original: %s (restaurada automaticamente ao sair)"},
    {kPortuguese, "printer_reverted", L"Impressora padrão restaurada: %s"},
    {kPortuguese, "printer_orig_err", L"Não é possível restaurar a impressora padrão original: %s"},
    {kPortuguese, "tip_optimize",
     L"Otimizar as configurações do CDR?\n  - Definir 30 níveis de desfazer\n  - Desativar a tela "
     L"de boas-vindas\nAntes, o Registro será exportado. Feche o CDR antes de "
     L"prosseguir.\n\nDeseja continuar?"},
    {kPortuguese, "opt_done", L"Configurações do CDR otimizadas. Backup do Registro: %s"},
    {kPortuguese, "opt_changed", L"Configurações alteradas: %d"},
    {kPortuguese, "opt_reboot", L"As alterações entrarão em vigor quando o CDR for reiniciado."},
    {kPortuguese, "tip_submit",
     L"Enviar anonimamente as características da pilha capturada?\n(Somente nomes de módulos e "
     L"funções, além da versão do CDR; nenhum caminho de arquivo, nenhum conteúdo de "
     L"documento.)\n\nDeseja continuar?"},
    {kPortuguese, "tip_slim",
     L"Os arquivos selecionados serão enxugados:\n  - Remover instantâneos de exibição (apaga "
     L"TODAS as exibições salvas no Gerenciador de exibições, inclusive as suas)\n  - Limpar "
     L"estilos de cores redundantes (verificado: as cores dos objetos não mudam)\n  - Excluir "
     L"caches de visualização e de miniaturas (recriados automaticamente pelo CDR ao "
     L"abrir)\nAntes, é feito um backup de cada arquivo como .mirelobak, ao lado do "
     L"original.\nVerifique se esses arquivos NÃO estão abertos no CDR neste momento. Deseja "
     L"continuar?"},
    {kPortuguese, "log_no_instance", L"Selecione primeiro uma instância do CDR."},
    {kPortuguese, "log_capturing", L"Capturando a pilha do thread principal do CDR..."},
    {kPortuguese, "log_capture_ok", L"Captura concluída. Quadros: %d"},
    {kPortuguese, "log_capture_err", L"Falha na captura: %s"},
    {kPortuguese, "log_category", L"Categoria: %s"},
    {kPortuguese, "log_suspect", L"Módulo suspeito: %s"},
    {kPortuguese, "log_rule", L"Assinatura correspondente: %s (gravidade: %s)"},
    {kPortuguese, "log_no_match",
     L"Nenhuma assinatura corresponde. Você pode clicar em \"Enviar assinatura desconhecida\" para "
     L"contribuir anonimamente com o banco comunitário."},
    {kPortuguese, "log_fallback",
     L"Não foi possível classificar automaticamente. Copie a pilha bruta ou clique em \"Enviar "
     L"assinatura desconhecida\" para ajudar a melhorar o banco de assinaturas."},
    {kPortuguese, "log_stack_hdr", L"--- 8 primeiros quadros ---"},
    {kPortuguese, "log_responsive",
     L"O thread principal do CDR está respondendo agora. Clique em \"Capturar agora\" novamente "
     L"durante um travamento."},
    {kPortuguese, "log_responsive_ok", L"O CDR está respondendo normalmente."},
    {kPortuguese, "log_metrics_hdr", L"===== Métricas ====="},
    {kPortuguese, "log_env_title", L"===== Verificação do ambiente ====="},
    {kPortuguese, "log_env_printer", L"Impressora padrão"},
    {kPortuguese, "log_env_fonts", L"Fontes instaladas"},
    {kPortuguese, "log_env_gdi", L"Cota de identificadores GDI"},
    {kPortuguese, "log_env_mem", L"Memória física"},
    {kPortuguese, "log_env_risk", L"Verificação concluída. Itens que exigem atenção: %d"},
    {kPortuguese, "log_env_ok", L"Verificação concluída. Nenhum risco encontrado."},
    {kPortuguese, "log_refresh", L"Lista atualizada. Instâncias do CDR: %d"},
    {kPortuguese, "log_no_cdr",
     L"Nenhuma instância do CDR em execução foi encontrada. Inicie o CDR e clique em "
     L"\"Atualizar\"."},
    {kPortuguese, "log_net_off", L"Rede desativada (pode ser ativada nas configurações)"},
    {kPortuguese, "log_cloud_update", L"Atualizando as assinaturas..."},
    {kPortuguese, "log_cloud_done", L"Assinaturas atualizadas para a v%d (%d regras)"},
    {kPortuguese, "log_submit_no",
     L"Ainda não há dados capturados. Use primeiro \"Capturar agora\" e envie quando nenhuma "
     L"assinatura corresponder."},
    {kPortuguese, "log_submit_done",
     L"Assinaturas de quadros enviadas anonimamente: %d. Obrigado!"},
    {kPortuguese, "log_watchdog_on",
     L"Monitoramento de travamentos ativado. O log registra quando o CDR para de responder."},
    {kPortuguese, "log_watchdog_off", L"Monitoramento de travamentos desativado."},
    {kPortuguese, "log_pdb_set", L"Pasta de símbolos definida: %s"},
    {kPortuguese, "log_leak_base", L"Linha de base registrada. Identificadores GDI: %d"},
    {kPortuguese, "log_leak_go",
     L"Agora trabalhe normalmente no CDR e depois clique em \"Comparar com a linha de base\"."},
    {kPortuguese, "log_leak_settle", L"Aguardando a estabilização do número de identificadores..."},
    {kPortuguese, "log_leak_nobase",
     L"Ainda não há linha de base. Clique primeiro em \"Registrar linha de base\"."},
    {kPortuguese, "log_leak_nopid",
     L"A instância do CDR da linha de base não está mais em execução. Registre uma nova linha de "
     L"base."},
    {kPortuguese, "log_leak_err", L"Não é possível ler o número de identificadores do CDR."},
    {kPortuguese, "log_leak_report", L"Identificadores GDI: linha de base %d, agora %d"},
    {kPortuguese, "log_leak_judge", L"Avaliação: %s"},
    {kPortuguese, "log_leak_j0",
     L"OK: o número de identificadores voltou a ficar próximo da linha de base"},
    {kPortuguese, "log_leak_j1",
     L"Requer atenção: o número de identificadores continua acima da linha de base"},
    {kPortuguese, "log_leak_j2",
     L"Vazamento provável: o número de identificadores continua muito acima da linha de base"},
    {kPortuguese, "log_leak_advice",
     L"Salve seu trabalho e reinicie o CDR. Se o número voltar a crescer, desative os plug-ins um "
     L"a um para encontrar a causa."},
    {kPortuguese, "log_health", L"Estado: %s"},
    {kPortuguese, "log_slim_ok",
     L"%s: %s -> %s (exibições removidas: %d, cores eliminadas: %d, visualizações removidas: %d)"},
    {kPortuguese, "log_slim_clean", L"%s: já está enxuto, nada a fazer."},
    {kPortuguese, "log_slim_fail", L"Falha em %s: %s"},
    {kPortuguese, "log_slim_old",
     L"%s: formato antigo (riffData, X5 ou anterior). Ignorado: salve antes como X6 ou posterior."},
    {kPortuguese, "log_slim_sum",
     L"Concluído: com êxito %d / já enxutos %d / com falha ou ignorados %d. Os backups são os "
     L"arquivos .mirelobak ao lado dos originais."},
    {kPortuguese, "log_slim_tip",
     L"Dica: abra um arquivo enxuto no CDR para confirmar que está tudo certo antes de processar "
     L"em lote. Arquivos enxutos podem ser compartilhados com segurança."},
    {kPortuguese, "log_clean_err", L"Falha na limpeza: %s"},
    {kPortuguese, "log_clean_done",
     L"Limpeza concluída. Arquivos movidos: %d. Pasta de backup: %s"},
    {kPortuguese, "log_restore_done", L"Restauração concluída. Arquivos restaurados: %d"},
    {kPortuguese, "log_switch_need_cdr", L"Inicie o CDR antes de trocar a impressora."},
    {kPortuguese, "log_switch_no",
     L"Falha na troca (a impressora já é virtual ou uma política bloqueou a operação)."},
    {kPortuguese, "warn_clean_in_use",
     L"O CorelDRAW está em execução; os arquivos em uso serão ignorados.\n\nDeseja continuar?"},
};

static_assert(isCompletePack(kPortugueseTexts, kPortuguese));
