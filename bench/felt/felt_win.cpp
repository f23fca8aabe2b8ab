// What a user waits for, timed inside the real window: the paint with a full report, the click to a
// diagnosis, the update of the rules. Needs two CorelDRAWs that have hung for more than the five
// seconds after which the system answers for them (practice programs will do). Each line of output:
// what, milliseconds (the median), what it is compared with, its milliseconds.
#include <windows.h>

#include <dbghelp.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "app/actions.h"
#include "app/main_window_win.h"
#include "base/files/whole_file_win.h"
#include "base/handle_win.h"
#include "bench/rounds.h"
#include "cloud/cache_file_win.h"
#include "cloud/settings_win.h"

namespace {

constexpr int kRounds = 9;

// Both in every round, because the machine drifts.
void compare(const char* what, const Contender& ours, const Contender& other) {
    const std::vector<Standing> standings = measure({ours, other}, kRounds);
    std::printf("%s: %s|%.1f|%s|%.1f|%.2f\n", what, ours.name.c_str(), standings[0].seconds * 1e3,
                other.name.c_str(), standings[1].seconds * 1e3, 1 / standings[1].ratio);
    std::fflush(stdout);
}

ReportLog logOf(int lines, const std::wstring& text) {
    ReportLog log;
    for (int i = 0; i < lines; ++i)
        appendLine(log, std::to_wstring(i) + L" " + text);
    return log;
}

class Bench {
  public:
    Bench() {
        const bool wasEnabled = IsNetworkEnabled();
        SetNetworkEnabled(false);
        createMainWindow(GetModuleHandleW(nullptr), window_);
        SetNetworkEnabled(wasEnabled);
        paint();
    }

    void paints() {
        const std::wstring wrapped(400, L'w');
        ReportLog none;
        ReportLog page = logOf(12, wrapped);
        ReportLog full = logOf(kMaxLogLines, wrapped);
        ReportLog fullAtTop = full;
        scrollLog(fullAtTop, WHEEL_DELTA * kMaxLogLines);
        compare("paint of the report", {"2000 wrapped lines", [&] { paintWith(full); }},
                {"no line", [&] { paintWith(none); }});
        compare("paint of the report",
                {"2000 wrapped lines, at their top", [&] { paintWith(fullAtTop); }},
                {"a page of them", [&] { paintWith(page); }});
    }

    // Each capture is of another process than the last, so that its symbols must be registered.
    bool captures() {
        pressButton(window_, kRefreshAction);
        if (window_.session.instances.size() < 2) {
            std::printf("two CorelDRAWs are needed: the captures are skipped\n");
            return false;
        }
        paint();
        compare("click to diagnosis", {"the window", [this] { clickCapture(); }},
                {"the debug-help library's walk and one paint", [this] {
                     walkAlone(window_.session.instances.front());
                     paint();
                 }});
        return !window_.session.lastCapture.frames.empty();
    }

    void update() {
        const std::string large = rules(2 << 20);
        const std::string small = rules(1000);
        const std::string* served = nullptr;
        window_.session.cloud.isNetworkEnabled = [] { return true; };
        window_.session.cloud.request = [&](std::wstring_view, std::wstring_view,
                                            std::string_view) { return *served; };
        const std::wstring path = CacheFilePath() + L".bench";
        window_.session.cloud.writeCache = [&](std::string_view body) {
            return replaceWholeFile(path, body).isDone();
        };
        const auto clickWith = [&](const std::string& document) {
            served = &document;
            pressButton(window_, kUpdateAction);
            paint();
        };
        compare("update of the rules", {"2 MiB", [&] { clickWith(large); }},
                {"7 rules", [&] { clickWith(small); }});
        DeleteFileW(path.c_str());
    }

  private:
    void paint() { RedrawWindow(window_.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }

    void paintWith(ReportLog& log) {
        std::swap(window_.state.log, log);
        paint();
        std::swap(window_.state.log, log);
    }

    void clickCapture() {
        window_.session.selectedInstance ^= 1;
        const auto button =
            std::find_if(window_.state.hitTargets.begin(), window_.state.hitTargets.end(),
                         [](const HitTarget& element) { return element.id == kCaptureAction; });
        const auto pixels = [this](float dip) {
            return static_cast<int>(dip * window_.dpiScale / 96);
        };
        SendMessageW(window_.hwnd, WM_LBUTTONDOWN, MK_LBUTTON,
                     MAKELPARAM(pixels(button->x + 5), pixels(button->y + 5)));
        paint();
    }

    static void walkAlone(const CdrInstance& target) {
        const KernelHandle process(
            OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, target.pid));
        const KernelHandle thread(
            OpenThread(THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT, FALSE, target.mainThreadId));
        SymSetOptions(SYMOPT_UNDNAME | SYMOPT_DEFERRED_LOADS | SYMOPT_LOAD_LINES);
        SymInitialize(process.get(), nullptr, TRUE);
        SuspendThread(thread.get());
        CONTEXT context{};
        context.ContextFlags = CONTEXT_FULL;
        GetThreadContext(thread.get(), &context);
        STACKFRAME64 frame{};
        frame.AddrPC = {context.Rip, 0, AddrModeFlat};
        frame.AddrFrame = {context.Rbp, 0, AddrModeFlat};
        frame.AddrStack = {context.Rsp, 0, AddrModeFlat};
        while (StackWalk64(IMAGE_FILE_MACHINE_AMD64, process.get(), thread.get(), &frame, &context,
                           nullptr, SymFunctionTableAccess64, SymGetModuleBase64, nullptr) &&
               frame.AddrPC.Offset != 0) {
            alignas(SYMBOL_INFOW) BYTE buffer[sizeof(SYMBOL_INFOW) + 500 * sizeof(wchar_t)] = {};
            auto* symbol = reinterpret_cast<SYMBOL_INFOW*>(buffer);
            symbol->SizeOfStruct = sizeof(SYMBOL_INFOW);
            symbol->MaxNameLen = 500;
            DWORD64 displacement = 0;
            SymFromAddrW(process.get(), frame.AddrPC.Offset, &displacement, symbol);
        }
        ResumeThread(thread.get());
        SymCleanup(process.get());
    }

    static std::string rules(std::size_t size) {
        std::string document = R"({"version": 7, "rules": [)";
        for (int i = 0;; ++i) {
            const std::string n = std::to_string(i);
            const std::string rule =
                R"({"id": "hook-)" + n + R"(", "category": "third_party", "module": "hook)" + n +
                R"(", "title": "Stuck in hook number )" + n +
                R"(", "severity": "high", "advice": "Close the capture tool, then start again."})";
            if (document.size() + rule.size() + 3 > size) return document + "]}";
            if (i > 0) document += ",";
            document += rule;
        }
    }

    MainWindow window_;
};

}  // namespace

int main() {
    Bench bench;
    bench.paints();
    bench.update();
    return bench.captures() ? 0 : 1;
}
