// The Japanese texts.
#include "app/strings/packs.h"
#include "build_settings.h"

constexpr PackText kJapaneseTexts[kStringKeys.size()] = {
    {kJapanese, "app_title", L"Mirelo v0.2 - CDR フリーズ診断とファイル軽量化 - " MIRELO_MAKER},
    {kJapanese, "ready_tip",
     L"Mirelo の準備ができました。CDR "
     L"がフリーズしたら、「診断」タブに切り替えて「今すぐキャプチャ」をクリックしてください。"},
    {kJapanese, "log_sig_local",
     L"ローカルにキャッシュされたシグネチャ データベースを読み込みました"},
    {kJapanese, "tab_diag", L"診断"},
    {kJapanese, "tab_fix", L"修復"},
    {kJapanese, "tab_cloud", L"クラウド"},
    {kJapanese, "tab_about", L"バージョン情報"},
    {kJapanese, "tab_dev", L"開発"},
    {kJapanese, "card_cdr_instance", L"CDR インスタンス"},
    {kJapanese, "card_diagnose", L"診断 - 原因を突き止める"},
    {kJapanese, "card_fileslim", L"ファイル軽量化 - 根本的な解決策"},
    {kJapanese, "card_scan", L"環境チェック"},
    {kJapanese, "card_printer", L"プリンター"},
    {kJapanese, "card_cleanup", L"キャッシュの整理"},
    {kJapanese, "card_cdrsettings", L"CDR の設定"},
    {kJapanese, "card_sigs", L"現在のシグネチャ"},
    {kJapanese, "card_cloudop", L"操作"},
    {kJapanese, "card_network", L"ネットワーク"},
    {kJapanese, "card_site", L"公式サイト"},
    {kJapanese, "card_safety", L"安全性に関するお約束"},
    {kJapanese, "card_pdb", L"シンボル ファイル（PDB）"},
    {kJapanese, "card_leak", L"ハンドル リーク テスト"},
    {kJapanese, "card_watchdog", L"フリーズ監視"},
    {kJapanese, "btn_refresh", L"更新"},
    {kJapanese, "btn_metrics", L"ダッシュボード"},
    {kJapanese, "btn_capture", L"今すぐキャプチャ（フリーズ時）"},
    {kJapanese, "diag_hint",
     L"結果は下部のログ パネルに表示され、一致するシグネチャがあれば対処方法も提案されます。"},
    {kJapanese, "btn_slim", L"軽量化する CDR ファイルを選択"},
    {kJapanese, "hint_slim",
     L"保存されたビュー（ご自身のものも含む）、余分なカラー スタイル、プレビュー "
     L"キャッシュを取り除きます。各ファイルは先に .mirelobak "
     L"としてバックアップします。軽量化したファイルからフリーズが広がることはありません。"},
    {kJapanese, "btn_scan", L"今すぐチェック"},
    {kJapanese, "hint_scan",
     L"フリーズの主な原因となる、既定のプリンター（ネットワーク/オフライン）、フォント数、GDI "
     L"ハンドルのクォータ、メモリを確認します。"},
    {kJapanese, "btn_printer", L"一時的に切り替え（自動復元）"},
    {kJapanese, "hint_printer",
     L"低速なネットワーク プリンターを避けるため、既定のプリンターを一時的に Microsoft Print to "
     L"PDF にします。終了時は元のプリンターに自動で戻ります。"},
    {kJapanese, "btn_clean", L"整理（先にバックアップ）"},
    {kJapanese, "hint_clean",
     L"CDR 全バージョンのクラッシュ レポート、一時ファイル、サムネイル キャッシュをバックアップ "
     L"フォルダーへ移動します。「復元」でいつでも戻せます。"},
    {kJapanese, "btn_restore", L"復元"},
    {kJapanese, "btn_optimize", L"最適化（レジストリをバックアップ）"},
    {kJapanese, "hint_settings",
     L"「元に戻す」の回数を 30 "
     L"に設定し、ようこそ画面を無効にします。先にレジストリをエクスポートし、変更は CDR "
     L"の再起動後に有効になります。"},
    {kJapanese, "cloud_loading", L"読み込み中"},
    {kJapanese, "btn_update", L"シグネチャを更新"},
    {kJapanese, "btn_submit", L"未知のシグネチャを送信（匿名）"},
    {kJapanese, "net_on", L"ネットワーク：オン（クリックでオフ）"},
    {kJapanese, "net_off", L"ネットワーク：オフ（クリックでオン）"},
    {kJapanese, "btn_site", L"サイトを開く：" MIRELO_WEBSITE},
    {kJapanese, "log_copy", L"ログをコピー"},
    {kJapanese, "log_clear", L"ログを消去"},
    {kJapanese, "brand_title", L"Mirelo"},
    {kJapanese, "brand_subtitle", L"v0.2 - CDR フリーズ診断とファイル軽量化"},
    {kJapanese, "safety_1",
     L"インジェクションなし、フックなし、常駐なし。どの操作も、ボタンを押したときにだけ実行され"
     L"ます"},
    {kJapanese, "safety_2",
     L"標準ユーザーとして動作。ドライバーも実行ファイルの圧縮も使わず、CDR "
     L"本体のファイルは一切変更しません"},
    {kJapanese, "safety_3",
     L"プリンターは終了時に自動復元。整理した内容もバックアップからワンクリックで復元できます"},
    {kJapanese, "safety_4",
     L"匿名送信に含まれるのはモジュール名と関数名のみ。プライバシー保護はサーバー側で徹底されます"},
    {kJapanese, "dev_pdb_hint",
     L"PDB シンボル "
     L"ファイルのフォルダーを選択すると、キャプチャしたスタックに表示される関数名が増えます。"},
    {kJapanese, "btn_pdbpath", L"シンボル フォルダーを選択"},
    {kJapanese, "pdb_set", L"シンボル フォルダー：%s"},
    {kJapanese, "btn_leakbase", L"ベースラインを記録"},
    {kJapanese, "btn_leakdiff", L"ベースラインと比較"},
    {kJapanese, "btn_watchdog_off", L"監視：オフ（クリックでオン）"},
    {kJapanese, "btn_watchdog_on", L"監視：オン（クリックでオフ）"},
    {kJapanese, "dlg_about_title", L"Mirelo のバージョン情報"},
    {kJapanese, "about_line1", L"Mirelo は CorelDRAW ユーザーのための補助ツールです。"},
    {kJapanese, "about_line2",
     L"CDR がフリーズする原因が、プラグイン、プリンター、フォント、システム "
     L"コンポーネントのどれなのかを突き止めます。"},
    {kJapanese, "about_line3",
     L"フリーズを広げる CDR ファイルを、必ず先にバックアップしてから軽量化します。"},
    {kJapanese, "about_line4", L"フリーズのよくある原因を確認し、元に戻せる修復方法を提供します。"},
    {kJapanese, "about_line5",
     L"インジェクションなし、フックなし、常駐なし。どの操作も、ボタンを押したときにだけ実行されます"
     L"。"},
    {kJapanese, "about_line6",
     L"使い方：CDR "
     L"がフリーズしたら、「診断」タブでインスタンスを選択し、「今すぐキャプチャ」をクリックします"
     L"。"},
    {kJapanese, "about_line7",
     L"一致するシグネチャがない場合は、「未知のシグネチャを送信」をクリックして、シグネチャ "
     L"データベースの改善にご協力ください。"},
    {kJapanese, "btn_site_open", L"Web サイトを開く"},
    {kJapanese, "btn_guide_open", L"ユーザー ガイドを開く"},
    {kJapanese, "btn_close", L"閉じる"},
    {kJapanese, "lbl_language", L"言語"},
    {kJapanese, "tip_printer_switch",
     L"既定のプリンターを一時的に Microsoft Print to PDF "
     L"に切り替えますか？\n元の既定のプリンターは、Mirelo "
     L"の終了時に自動的に復元されます。\n\n続行しますか？"},
    {kJapanese, "printer_switched",
     L"切り替えました。元の既定のプリンター：%s（終了時に自動復元）"},
    {kJapanese, "printer_reverted", L"既定のプリンターを復元しました：%s"},
    {kJapanese, "printer_orig_err", L"元の既定のプリンターを復元できません：%s"},
    {kJapanese, "tip_optimize",
     L"CDR の設定を最適化しますか？\n  - 「元に戻す」の回数を 30 に設定\n  - "
     L"ようこそ画面を無効化\n先にレジストリをエクスポートします。続行する前に CDR "
     L"を終了してください。\n\n続行しますか？"},
    {kJapanese, "opt_done", L"CDR の設定を最適化しました。レジストリのバックアップ：%s"},
    {kJapanese, "opt_changed", L"変更した設定の数：%d"},
    {kJapanese, "opt_reboot", L"変更は CDR の再起動後に有効になります。"},
    {kJapanese, "tip_submit",
     L"キャプチャしたスタックの特徴を匿名でアップロードしますか？\n（モジュール名、関数名、CDR "
     L"のバージョンのみで、ファイルのパスやドキュメントの内容は含まれません。）\n\n続行しますか？"},
    {kJapanese, "tip_slim",
     L"選択したファイルを軽量化します。\n  - "
     L"ビューのスナップショットを削除（ご自身で保存したものも含め、ビュー "
     L"マネージャのすべてのビューが消去されます）\n  - 余分なカラー "
     L"スタイルを消去（検証済み：オブジェクトの色には影響しません）\n  - "
     L"プレビューとサムネイルのキャッシュを削除（開いたときに CDR "
     L"が自動的に再作成します）\n各ファイルは、先に元のファイルと同じ場所に .mirelobak "
     L"としてバックアップされます。\nこれらのファイルが現在 CDR "
     L"で開かれていないことを確認してください。続行しますか？"},
    {kJapanese, "log_no_instance", L"先に CDR インスタンスを選択してください。"},
    {kJapanese, "log_capturing", L"CDR のメイン スレッドのスタックをキャプチャしています…"},
    {kJapanese, "log_capture_ok", L"キャプチャが完了しました。フレーム数：%d"},
    {kJapanese, "log_capture_err", L"キャプチャに失敗しました：%s"},
    {kJapanese, "log_category", L"カテゴリ：%s"},
    {kJapanese, "log_suspect", L"疑わしいモジュール：%s"},
    {kJapanese, "log_rule", L"一致したシグネチャ：%s（重大度：%s）"},
    {kJapanese, "log_no_match",
     L"一致するシグネチャはありません。「未知のシグネチャを送信」をクリックすると、匿名でコミュニテ"
     L"ィのデータベースに提供できます。"},
    {kJapanese, "log_fallback",
     L"自動的に分類できませんでした。スタックをそのままコピーするか、「未知のシグネチャを送信」をク"
     L"リックして、シグネチャ データベースの改善にご協力ください。"},
    {kJapanese, "log_stack_hdr", L"--- 上位 8 フレーム ---"},
    {kJapanese, "log_responsive",
     L"CDR のメイン "
     L"スレッドは現在応答しています。フリーズしている間に、もう一度「今すぐキャプチャ」をクリックし"
     L"てください。"},
    {kJapanese, "log_responsive_ok", L"CDR は正常に応答しています。"},
    {kJapanese, "log_metrics_hdr", L"===== ダッシュボード ====="},
    {kJapanese, "log_env_title", L"===== 環境チェック ====="},
    {kJapanese, "log_env_printer", L"既定のプリンター"},
    {kJapanese, "log_env_fonts", L"インストール済みフォント"},
    {kJapanese, "log_env_gdi", L"GDI ハンドルのクォータ"},
    {kJapanese, "log_env_mem", L"物理メモリ"},
    {kJapanese, "log_env_risk", L"チェックが完了しました。注意が必要な項目：%d"},
    {kJapanese, "log_env_ok", L"チェックが完了しました。リスクは見つかりませんでした。"},
    {kJapanese, "log_refresh", L"一覧を更新しました。CDR インスタンス：%d"},
    {kJapanese, "log_no_cdr",
     L"実行中の CDR が見つかりません。CDR を起動してから「更新」をクリックしてください。"},
    {kJapanese, "log_net_off", L"ネットワークは無効です（設定で有効にできます）"},
    {kJapanese, "log_cloud_update", L"シグネチャを更新しています…"},
    {kJapanese, "log_cloud_done", L"シグネチャを v%d に更新しました（ルール数：%d）"},
    {kJapanese, "log_submit_no",
     L"キャプチャ "
     L"データがまだありません。先に「今すぐキャプチャ」を使い、一致するシグネチャがない場合に送信し"
     L"てください。"},
    {kJapanese, "log_submit_done",
     L"%d 件のフレーム シグネチャを匿名で送信しました。ありがとうございます！"},
    {kJapanese, "log_watchdog_on",
     L"フリーズ監視を開始しました。CDR が応答しなくなるとログに記録します。"},
    {kJapanese, "log_watchdog_off", L"フリーズ監視を停止しました。"},
    {kJapanese, "log_pdb_set", L"シンボル フォルダーを設定しました：%s"},
    {kJapanese, "log_leak_base", L"ベースラインを記録しました。GDI ハンドル：%d"},
    {kJapanese, "log_leak_go",
     L"CDR で普段どおりに作業してから、「ベースラインと比較」をクリックしてください。"},
    {kJapanese, "log_leak_settle", L"ハンドル数が落ち着くのを待っています…"},
    {kJapanese, "log_leak_nobase",
     L"ベースラインがまだありません。先に「ベースラインを記録」をクリックしてください。"},
    {kJapanese, "log_leak_nopid",
     L"ベースラインを記録した CDR "
     L"インスタンスはもう実行されていません。ベースラインを記録し直してください。"},
    {kJapanese, "log_leak_err", L"CDR のハンドル数を読み取れません。"},
    {kJapanese, "log_leak_report", L"GDI ハンドル：ベースライン %d、現在 %d"},
    {kJapanese, "log_leak_judge", L"判定：%s"},
    {kJapanese, "log_leak_j0", L"正常：ハンドル数はベースライン付近に戻っています"},
    {kJapanese, "log_leak_j1", L"要注意：ハンドル数がベースラインを上回ったままです"},
    {kJapanese, "log_leak_j2",
     L"リークの疑いが強い：ハンドル数がベースラインを大きく上回ったままです"},
    {kJapanese, "log_leak_advice",
     L"作業内容を保存して CDR を再起動してください。再びハンドル数が増える場合は、プラグインを 1 "
     L"つずつ無効にして原因を特定してください。"},
    {kJapanese, "log_health", L"状態：%s"},
    {kJapanese, "log_slim_ok",
     L"%s：%s -> %s（ビュー %d 件を削除、カラー スタイル %d 件を消去、プレビュー %d 件を削除）"},
    {kJapanese, "log_slim_clean", L"%s：取り除くものはありません。軽量化は不要です。"},
    {kJapanese, "log_slim_fail", L"%s の処理に失敗しました：%s"},
    {kJapanese, "log_slim_old",
     L"%s：古い形式です（riffData、X5 以前）。スキップしました。先に X6 "
     L"以降の形式で保存してください。"},
    {kJapanese, "log_slim_sum",
     L"完了：成功 %d / 軽量化不要 %d / 失敗またはスキップ "
     L"%d。バックアップは元のファイルと同じ場所にある .mirelobak ファイルです。"},
    {kJapanese, "log_slim_tip",
     L"ヒント：まとめて処理する前に、軽量化したファイルを 1 つ CDR "
     L"で開き、問題がないことを確認してください。軽量化したファイルは安心して共有できます。"},
    {kJapanese, "log_clean_err", L"整理に失敗しました：%s"},
    {kJapanese, "log_clean_done",
     L"整理が完了しました。移動したファイル：%d。バックアップ フォルダー：%s"},
    {kJapanese, "log_restore_done", L"復元が完了しました。復元したファイル：%d"},
    {kJapanese, "log_switch_need_cdr", L"プリンターを切り替える前に CDR を起動してください。"},
    {kJapanese, "log_switch_no",
     L"切り替えられませんでした（既に仮想プリンターであるか、ポリシーによりブロックされています）"
     L"。"},
    {kJapanese, "warn_clean_in_use",
     L"CorelDRAW が実行中です。使用中のファイルはスキップされます。\n\n続行しますか？"},
};

static_assert(isCompletePack(kJapaneseTexts, kJapanese));
