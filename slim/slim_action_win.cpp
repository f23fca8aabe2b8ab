#include "slim/slim_action_win.h"

#include <windows.h>

#include <cderr.h>
#include <commdlg.h>

#include <optional>
#include <string>

#include "slim/slim_action.h"
#include "slim/slim_files_win.h"

namespace {

constexpr std::size_t kBufferLength = 8192;
// Wine's dialog writes a selection of any length, whatever the stated length of the buffer. What
// runs over has to land in memory that is ours.
constexpr std::size_t kAllocated = 64 * kBufferLength;

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

// The dialog's error code, 0 when the user cancelled; nothing with the selection in `buffer`.
std::optional<DWORD> showOpenDialog(HWND owner, std::wstring& buffer) {
    const KeptCurrentFolder keptFolder;
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = L"CDR files\0*.cdr\0";
    dialog.lpstrFile = buffer.data();
    dialog.nMaxFile = static_cast<DWORD>(kBufferLength);
    dialog.lpstrTitle = L"Select CDR files to slim (multi-select supported)";
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_ALLOWMULTISELECT | OFN_HIDEREADONLY;
    if (!GetOpenFileNameW(&dialog)) return CommDlgExtendedError();
    constexpr std::wstring_view kEnd(L"\0\0", 2);
    if (buffer.find(kEnd) + kEnd.size() > kBufferLength) return FNERR_BUFFERTOOSMALL;
    return std::nullopt;
}

}  // namespace

void onSlimFiles(WindowHandle owner, const ActionHost& host) {
    std::wstring buffer(kAllocated, L'\0');
    const std::optional<DWORD> error = showOpenDialog(static_cast<HWND>(owner), buffer);
    if (!error) return slimSelection(buffer, host, realSlimFiles());
    const std::wstring line = dialogErrorLine(*error);
    if (!line.empty()) host.appendLog(line);
}
