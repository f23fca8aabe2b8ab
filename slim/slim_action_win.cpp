#include "slim/slim_action_win.h"

#include <windows.h>

#include <commdlg.h>

#include <array>

#include "slim/slim_action.h"
#include "slim/slim_files_win.h"

namespace {

constexpr std::size_t kBufferLength = 8192;

// The dialog leaves the process in the folder it showed, which could then not be removed or
// ejected for as long as the program runs.
class KeptCurrentFolder {
  public:
    KeptCurrentFolder() {
        std::wstring folder(GetCurrentDirectoryW(0, nullptr), L'\0');
        folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
        folder_ = std::move(folder);
    }
    KeptCurrentFolder(const KeptCurrentFolder&) = delete;
    KeptCurrentFolder& operator=(const KeptCurrentFolder&) = delete;
    ~KeptCurrentFolder() {
        if (!folder_.empty()) SetCurrentDirectoryW(folder_.c_str());
    }

  private:
    std::wstring folder_;
};

// True with the selection in `buffer`; false when the user cancelled or the dialog failed.
bool showOpenDialog(HWND owner, std::span<wchar_t> buffer) {
    const KeptCurrentFolder keptFolder;
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = L"CDR files\0*.cdr\0";
    dialog.lpstrFile = buffer.data();
    dialog.nMaxFile = static_cast<DWORD>(buffer.size());
    dialog.lpstrTitle = L"Select CDR files to slim (multi-select supported)";
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_ALLOWMULTISELECT | OFN_HIDEREADONLY;
    return GetOpenFileNameW(&dialog) != FALSE;
}

}  // namespace

void onSlimFiles(WindowHandle owner, const Shell& shell) {
    std::array<wchar_t, kBufferLength> buffer{};
    if (showOpenDialog(static_cast<HWND>(owner), buffer)) {
        slimSelection(buffer, shell, realSlimFiles());
        return;
    }
    const std::wstring line = dialogErrorLine(CommDlgExtendedError());
    if (!line.empty()) shell.appendLog(line);
}
