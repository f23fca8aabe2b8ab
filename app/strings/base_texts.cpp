// The base table: every key with its Simplified Chinese and English texts. The other languages come
// from their packs; their slots here stay empty.
#include "app/strings/base_texts.h"

#include "build_settings.h"

namespace {

constexpr BaseText base(const char* key, const wchar_t* simplifiedChinese, const wchar_t* english) {
    BaseText record{key, {}};
    record.text[kSimplifiedChinese] = simplifiedChinese;
    record.text[kEnglish] = english;
    return record;
}

}  // namespace

constexpr BaseText kBaseTexts[kStringKeys.size()] = {
    base("app_title", L"Mirelo v0.2 - CDR 卡死诊断与文件瘦身 - " MIRELO_MAKER,
         L"Mirelo v0.2 - CDR Hang Diagnosis & File Slimming - " MIRELO_MAKER),
    base("ready_tip", L"Mirelo 已就绪。CDR 卡死时，请切换到“诊断”选项卡并点击“立即捕获”。",
         L"Mirelo ready. When CDR hangs, switch to the Diagnose tab and click Capture Now."),
    base("log_sig_local", L"已加载本地缓存的特征库", L"Loaded locally cached signature database"),
    base("tab_diag", L"诊断", L"Diagnose"),
    base("tab_fix", L"修复", L"Fix"),
    base("tab_cloud", L"云端", L"Cloud"),
    base("tab_about", L"关于", L"About"),
    base("tab_dev", L"开发", L"Dev"),
    base("card_cdr_instance", L"CDR 实例", L"CDR Instance"),
    base("card_diagnose", L"诊断 - 揪出元凶", L"Diagnose - Find the Culprit"),
    base("card_fileslim", L"文件瘦身 - 治本之道", L"File Slimming - The Real Fix"),
    base("card_scan", L"环境检查", L"Environment Check"),
    base("card_printer", L"打印机", L"Printer"),
    base("card_cleanup", L"缓存清理", L"Cache Cleanup"),
    base("card_cdrsettings", L"CDR 设置", L"CDR Settings"),
    base("card_sigs", L"当前特征库", L"Current Signatures"),
    base("card_cloudop", L"操作", L"Operations"),
    base("card_network", L"网络", L"Network"),
    base("card_site", L"官方网站", L"Official Site"),
    base("card_safety", L"安全承诺", L"Safety Promise"),
    base("card_pdb", L"符号文件（PDB）", L"Symbol Files (PDB)"),
    base("card_leak", L"句柄泄漏测试", L"Handle Leak Test"),
    base("card_watchdog", L"卡死监视", L"Hang Watchdog"),
    base("btn_refresh", L"刷新", L"Refresh"),
    base("btn_metrics", L"仪表板", L"Dashboard"),
    base("btn_capture", L"立即捕获（卡死时点击）", L"Capture Now (when stuck)"),
    base("diag_hint", L"结果显示在底部的日志面板中，匹配到特征时会自动给出操作建议。",
         L"Results appear in the log panel at the bottom. Matches auto-suggest actions."),
    base("btn_slim", L"选择要瘦身的 CDR 文件", L"Select CDR file(s) to slim"),
    base("hint_slim",
         L"清除保存的视图（包括您自己的）、冗余颜色样式和预览缓存。每个文件都会先备份为 "
         L".mirelobak；瘦身后的文件不会再传播卡顿。",
         L"Strips view snapshots, redundant color styles and preview caches. Each file is backed "
         L"up as .mirelobak first; slimmed files no longer spread freezes."),
    base("btn_scan", L"立即检查", L"Check Now"),
    base("hint_scan",
         L"检查最常见的卡顿原因：默认打印机（网络/脱机）、字体数量、GDI 句柄配额和内存。",
         L"Checks default printer (network/offline), font count, GDI handle quota and RAM - the "
         L"top freeze causes."),
    base("btn_printer", L"临时切换（自动还原）", L"Temp Switch (auto-revert)"),
    base("hint_printer",
         L"将默认打印机临时设为 Microsoft Print to "
         L"PDF，避开缓慢的网络打印机；退出时自动还原您原来的打印机。",
         L"Temporarily sets the default printer to Microsoft Print to PDF to avoid slow network "
         L"printers; your original printer is restored automatically on exit."),
    base("btn_clean", L"清理（先备份）", L"Clean (backup first)"),
    base("hint_clean",
         L"将所有 CDR 版本的崩溃报告、临时文件和缩略图缓存移入备份文件夹；随时可用“还原”恢复原状。",
         L"Moves crash reports, temp files and thumbnail caches of every CDR version into a backup "
         L"folder; use 'Restore' to roll back anytime."),
    base("btn_restore", L"还原", L"Restore"),
    base("btn_optimize", L"优化（先备份注册表）", L"Optimize (registry backed up)"),
    base("hint_settings",
         L"将撤消级别设为 30 并关闭欢迎屏幕；会先导出注册表，重新启动 CDR 后生效。",
         L"Sets undo levels to 30 and disables the welcome screen; registry is exported first, "
         L"takes effect after CDR restarts."),
    base("cloud_loading", L"正在加载", L"Loading"),
    base("btn_update", L"更新特征库", L"Update Signatures"),
    base("btn_submit", L"提交未知特征（匿名）", L"Submit Unknown (anonymous)"),
    base("net_on", L"网络：开（点击关闭）", L"Network: ON (click to disable)"),
    base("net_off", L"网络：关（点击开启）", L"Network: OFF (click to enable)"),
    base("btn_site", L"访问 " MIRELO_WEBSITE, L"Visit " MIRELO_WEBSITE),
    base("log_copy", L"复制报告", L"Copy Report"),
    base("log_clear", L"清空报告", L"Clear Report"),
    base("brand_title", L"Mirelo", L"Mirelo"),
    base("brand_subtitle", L"v0.2 - CDR 卡死诊断与文件瘦身",
         L"v0.2 - CDR Hang Diagnosis & File Slimming"),
    base("safety_1", L"不注入、不挂钩、不驻留后台，每项操作都由您触发",
         L"No injection, no hooks, no background - you trigger every action"),
    base("safety_2", L"以标准用户身份运行，无驱动、不加壳，绝不修改 CDR 自身的文件",
         L"Runs as standard user, no driver, no packing, never modifies CDR files"),
    base("safety_3", L"打印机切换在退出时自动还原；清理内容均有备份，可一键还原",
         L"Printer switch auto-reverts on exit; cleanups backed up, one-click restore"),
    base("safety_4", L"匿名提交仅包含模块名和函数名，隐私保护由服务器强制执行",
         L"Anonymous submissions include only module/function names; server enforces privacy"),
    base("dev_pdb_hint", L"选择存放 PDB 符号文件的文件夹，捕获的堆栈即可显示更多函数名。",
         L"Choose a folder with PDB symbol files to see more function names in captured stacks."),
    base("btn_pdbpath", L"选择符号文件夹", L"Choose Symbol Folder"),
    base("pdb_set", L"符号文件夹：%s", L"Symbol folder: %s"),
    base("btn_leakbase", L"记录基线", L"Take Baseline"),
    base("btn_leakdiff", L"与基线比较", L"Compare with Baseline"),
    base("btn_watchdog_off", L"监视：关（点击开启）", L"Watchdog: OFF (click to enable)"),
    base("btn_watchdog_on", L"监视：开（点击关闭）", L"Watchdog: ON (click to disable)"),
    base("dlg_about_title", L"关于 Mirelo", L"About Mirelo"),
    base("about_line1", L"Mirelo 是 CorelDRAW 用户的辅助工具。",
         L"Mirelo is a companion tool for CorelDRAW users."),
    base("about_line2", L"找出 CDR 卡死的元凶：插件、打印机、字体或系统组件。",
         L"It finds out what makes CDR hang: a plugin, the printer, a font or a system component."),
    base("about_line3", L"为会传播卡顿的 CDR 文件瘦身，并先备份每个文件。",
         L"It slims CDR files that spread freezes and backs up every file first."),
    base("about_line4", L"检查常见的卡顿原因，并提供可撤消的修复。",
         L"It checks for the common causes of freezes and offers fixes you can undo."),
    base("about_line5", L"不注入、不挂钩、不驻留后台，每项操作都由您触发。",
         L"No injection, no hooks, no background - you trigger every action."),
    base("about_line6",
         L"使用方法：CDR 卡死时，在“诊断”选项卡中选择对应的实例，然后点击“立即捕获”。",
         L"How to use: when CDR hangs, select its instance on the Diagnose tab and click 'Capture "
         L"Now'."),
    base(
        "about_line7", L"如果没有匹配的特征，请点击“提交未知特征”，帮助我们完善特征库。",
        L"If no signature matches, click 'Submit Unknown' to help improve the signature database."),
    base("btn_site_open", L"打开官方网站", L"Open Website"),
    base("btn_guide_open", L"打开使用指南", L"Open User Guide"),
    base("btn_close", L"关闭", L"Close"),
    base("lbl_language", L"语言", L"Language"),
    base("tip_printer_switch",
         L"要将默认打印机临时切换为 Microsoft Print to PDF 吗？\n退出 Mirelo "
         L"时会自动还原您原来的默认打印机。\n\n是否继续？",
         L"Temporarily switch the default printer to Microsoft Print to PDF?\nYour original "
         L"default printer is restored automatically when Mirelo exits.\n\nContinue?"),
    base("printer_switched", L"已切换。原默认打印机：%s（退出时自动还原）",
         L"Switched. Original default: %s (auto-restored on exit)"),
    base("printer_reverted", L"已还原默认打印机：%s", L"Restored default printer: %s"),
    base("printer_orig_err", L"无法还原原来的默认打印机：%s",
         L"Cannot restore the original default printer: %s"),
    base(
        "tip_optimize",
        L"要优化 CDR 设置吗？\n  - 将撤消级别设为 30\n  - "
        L"关闭欢迎屏幕\n会先导出注册表。继续之前请关闭 CDR。\n\n是否继续？",
        L"Optimize the CDR settings?\n  - Set undo levels to 30\n  - Disable the welcome "
        L"screen\nThe registry is exported first. Please close CDR before you go on.\n\nContinue?"),
    base("opt_done", L"CDR 设置已优化。注册表备份：%s",
         L"CDR settings optimized. Registry backup: %s"),
    base("opt_changed", L"已更改的设置数：%d", L"Settings changed: %d"),
    base("opt_reboot", L"重新启动 CDR 后更改生效。",
         L"The changes take effect after CDR restarts."),
    base("tip_submit",
         L"要匿名上传捕获的堆栈特征吗？\n（仅包含模块名、函数名和 CDR "
         L"版本，不含文件路径和文档内容。）\n\n是否继续？",
         L"Upload the captured stack features anonymously?\n(Module/function names and CDR version "
         L"only - no file paths, no document content.)\n\nContinue?"),
    base("tip_slim",
         L"将对所选文件进行瘦身：\n  - 清除视图快照（会清空视图管理器中保存的所有视图，包括您自己的"
         L"）\n  - 清除冗余颜色样式（已验证：对象颜色不受影响）\n  - 删除预览/缩略图缓存（打开时由 "
         L"CDR 自动重建）\n每个文件都会先在同一文件夹中备份为 .mirelobak。\n请确保这些文件当前未在 "
         L"CDR 中打开。是否继续？",
         L"File slimming will be performed on the selected files:\n  - Strip view snapshots "
         L"(clears ALL saved views in View Manager, including yours)\n  - Clear redundant color "
         L"styles (verified: object colors unaffected)\n  - Delete preview/thumbnail caches "
         L"(auto-rebuilt by CDR on open)\nEach file is backed up as .mirelobak next to the "
         L"original first.\nMake sure these files are NOT open in CDR right now. Continue?"),
    base("log_no_instance", L"请先选择一个 CDR 实例。", L"Please select a CDR instance first."),
    base("log_capturing", L"正在捕获 CDR 主线程的堆栈…",
         L"Capturing the stack of the CDR main thread..."),
    base("log_capture_ok", L"捕获完成，帧数：%d", L"Capture done. Frames: %d"),
    base("log_capture_err", L"捕获失败：%s", L"Capture failed: %s"),
    base("log_category", L"类别：%s", L"Category: %s"),
    base("log_suspect", L"可疑模块：%s", L"Suspect module: %s"),
    base("log_rule", L"匹配的特征：%s（严重程度：%s）", L"Matched signature: %s (severity: %s)"),
    base("log_no_match", L"没有匹配的特征，可点击“提交未知特征”匿名充实社区特征库。",
         L"No signature matched - you may click 'Submit Unknown' to feed the community database "
         L"anonymously."),
    base("log_fallback", L"无法自动归类。请复制原始堆栈，或点击“提交未知特征”，帮助完善特征库。",
         L"Could not classify automatically. Copy the raw stack, or click 'Submit Unknown' to help "
         L"improve the signature database."),
    base("log_stack_hdr", L"--- 堆栈顶部 8 帧 ---", L"--- Top 8 frames ---"),
    base("log_responsive", L"CDR 主线程目前有响应。请在卡死时再次点击“立即捕获”。",
         L"CDR main thread is responsive right now. Click 'Capture Now' again while it hangs."),
    base("log_responsive_ok", L"CDR 响应正常。", L"CDR responds normally."),
    base("log_metrics_hdr", L"===== 仪表板 =====", L"===== Dashboard ====="),
    base("log_env_title", L"===== 环境检查 =====", L"===== Environment Check ====="),
    base("log_env_printer", L"默认打印机", L"Default printer"),
    base("log_env_fonts", L"已安装的字体", L"Installed fonts"),
    base("log_env_gdi", L"GDI 句柄配额", L"GDI handle quota"),
    base("log_env_mem", L"物理内存", L"Physical memory"),
    base("log_env_risk", L"检查完成，需要注意的项目数：%d",
         L"Check done. Items that need attention: %d"),
    base("log_env_ok", L"检查完成，未发现风险。", L"Check done. No risks found."),
    base("log_refresh", L"列表已刷新，CDR 实例数：%d", L"List refreshed. CDR instances: %d"),
    base("log_no_cdr", L"未找到正在运行的 CDR。请启动 CDR，然后点击“刷新”。",
         L"No running CDR found. Start CDR, then click 'Refresh'."),
    base("log_net_off", L"网络已关闭（可在设置中开启）",
         L"Network disabled (can be enabled in settings)"),
    base("log_cloud_update", L"正在更新特征库…", L"Updating signatures..."),
    base("log_cloud_done", L"特征库已更新到 v%d（%d 条规则）",
         L"Signatures updated to v%d (%d rules)"),
    base("log_submit_no", L"尚无捕获数据。请先使用“立即捕获”，没有匹配的特征时再提交。",
         L"No capture data yet. Use 'Capture Now' first; submit when no signature matched."),
    base("log_submit_done", L"已匿名提交 %d 个帧特征，谢谢！",
         L"Anonymously submitted %d frame signatures, thanks!"),
    base("log_watchdog_on", L"卡死监视已开启。CDR 停止响应时会记入日志。",
         L"Hang watchdog on. It logs when CDR stops responding."),
    base("log_watchdog_off", L"卡死监视已关闭。", L"Hang watchdog off."),
    base("log_pdb_set", L"已设置符号文件夹：%s", L"Symbol folder set: %s"),
    base("log_leak_base", L"已记录基线。GDI 句柄：%d", L"Baseline taken. GDI handles: %d"),
    base("log_leak_go", L"请照常使用 CDR，然后点击“与基线比较”。",
         L"Now work in CDR as usual, then click 'Compare with Baseline'."),
    base("log_leak_settle", L"正在等待句柄数稳定…", L"Waiting for the handle count to settle..."),
    base("log_leak_nobase", L"尚无基线。请先点击“记录基线”。",
         L"No baseline yet. Click 'Take Baseline' first."),
    base("log_leak_nopid", L"记录基线时的 CDR 实例已不再运行。请重新记录基线。",
         L"The CDR instance of the baseline is no longer running. Take a new baseline."),
    base("log_leak_err", L"无法读取 CDR 的句柄数。", L"Cannot read the handle count of CDR."),
    base("log_leak_report", L"GDI 句柄：基线 %d，当前 %d", L"GDI handles: baseline %d, now %d"),
    base("log_leak_judge", L"判定：%s", L"Judgement: %s"),
    base("log_leak_j0", L"正常：句柄数已回到基线附近",
         L"OK: the handle count is back near the baseline"),
    base("log_leak_j1", L"值得注意：句柄数持续高于基线",
         L"Worth attention: the handle count stays above the baseline"),
    base("log_leak_j2", L"很可能存在泄漏：句柄数持续远高于基线",
         L"Leak likely: the handle count stays far above the baseline"),
    base("log_leak_advice",
         L"请保存工作并重新启动 CDR。如果句柄数再次增长，请逐个停用插件以找出原因。",
         L"Save your work and restart CDR. If the count grows again, disable plugins one by one to "
         L"find the cause."),
    base("log_health", L"健康状况：%s", L"Health: %s"),
    base("log_slim_ok", L"%s：%s -> %s（清除视图 %d 个，清除颜色样式 %d 个，删除预览 %d 个）",
         L"%s: %s -> %s (views %d removed, colors %d cleared, previews %d removed)"),
    base("log_slim_clean", L"%s：无需瘦身，没有可清除的内容。",
         L"%s: already clean, nothing to do."),
    base("log_slim_fail", L"%s 瘦身失败：%s", L"%s failed: %s"),
    base("log_slim_old",
         L"%s：旧格式（riffData，X5 及更早版本）。已跳过，请先另存为 X6 或更高版本。",
         L"%s: old format (riffData, X5-). Skipped - save as X6+ first."),
    base("log_slim_sum",
         L"完成：成功 %d / 无需瘦身 %d / 失败或跳过 %d。备份保存在原文件所在的文件夹中（.mirelobak "
         L"文件）。",
         L"Done: succeeded %d / already clean %d / failed or skipped %d. Backups are .mirelobak "
         L"files next to originals."),
    base("log_slim_tip",
         L"提示：批量处理前，请先在 CDR "
         L"中打开一个瘦身后的文件，确认一切正常。瘦身后的文件可以放心分享。",
         L"Tip: open one slimmed file in CDR to confirm it is fine before batch processing. "
         L"Slimmed files are safe to share."),
    base("log_clean_err", L"清理失败：%s", L"Cleanup failed: %s"),
    base("log_clean_done", L"清理完成，已移动的文件数：%d。备份文件夹：%s",
         L"Cleanup done. Files moved: %d. Backup folder: %s"),
    base("log_restore_done", L"还原完成，已还原的文件数：%d", L"Restore done. Files restored: %d"),
    base("log_switch_need_cdr", L"请先启动 CDR，再切换打印机。",
         L"Please start CDR before switching the printer."),
    base("log_switch_no", L"切换失败（已是虚拟打印机，或被策略阻止）。",
         L"Switch failed (already a virtual printer, or blocked by policy)."),
    base("warn_clean_in_use", L"CorelDRAW 正在运行，使用中的文件将被跳过。\n\n是否继续？",
         L"CorelDRAW is running; files in use will be skipped.\n\nContinue?"),
};

namespace {

constexpr bool isComplete(const BaseText& record, std::string_view key) {
    if (record.key != key) return false;
    for (int language = 0; language < kLanguageCount; ++language) {
        const wchar_t* text = record.text[language];
        const bool isBase = language == kSimplifiedChinese || language == kEnglish;
        if (isBase ? !isShowable(text) : text != nullptr) return false;
    }
    return true;
}

constexpr bool isCompleteBase() {
    for (std::size_t i = 0; i < kStringKeys.size(); ++i) {
        if (!isComplete(kBaseTexts[i], kStringKeys[i])) return false;
    }
    return true;
}

static_assert(isCompleteBase(),
              "every key needs its Simplified Chinese and English text, in table order");

}  // namespace
