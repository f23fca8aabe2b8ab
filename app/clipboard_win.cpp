#include "app/clipboard_win.h"

#include <windows.h>

#include <algorithm>

#include "base/handle_win.h"

namespace {

class OpenedClipboard {
  public:
    explicit OpenedClipboard(HWND owner) : opened_(OpenClipboard(owner) != FALSE) {}
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    ~OpenedClipboard() {
        if (opened_) CloseClipboard();
    }
    explicit operator bool() const { return opened_; }

  private:
    bool opened_;
};

struct GlobalMemoryTraits {
    using Type = HGLOBAL;
    static Type invalid() { return nullptr; }
    static void close(Type memory) { GlobalFree(memory); }
};
using GlobalMemory = UniqueHandle<GlobalMemoryTraits>;

// The clipboard's text ends at its first zero; one inside the text must not hide the rest.
constexpr wchar_t withoutZero(wchar_t c) {
    return c == L'\0' ? L'\uFFFD' : c;
}

}  // namespace

void copyToClipboard(WindowHandle owner, const std::wstring& text) {
    const OpenedClipboard clipboard(static_cast<HWND>(owner));
    if (!clipboard) return;
    EmptyClipboard();

    GlobalMemory memory(GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t)));
    if (!memory) return;
    auto* characters = static_cast<wchar_t*>(GlobalLock(memory.get()));
    if (characters == nullptr) return;
    *std::transform(text.begin(), text.end(), characters, withoutZero) = L'\0';
    GlobalUnlock(memory.get());
    // On success the memory belongs to the system.
    if (SetClipboardData(CF_UNICODETEXT, memory.get()) != nullptr) memory.release();
}
