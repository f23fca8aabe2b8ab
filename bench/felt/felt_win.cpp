// What a user waits for, timed inside the real window: the paint with a full report, the click to a
// diagnosis, the update of the rules. Needs two CorelDRAWs that have hung for more than the five
// seconds after which the system answers for them (practice programs will do). Each line of output:
// what, milliseconds (the median), what it is compared with, its milliseconds.
#include <windows.h>

#include <dbghelp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "app/actions.h"
#include "app/actions_win.h"
#include "app/main_window_win.h"
#include "base/handle_win.h"
#include "cloud/settings_win.h"

namespace {

constexpr int kRounds = 9;

double millisecondsOf(const std::function<void()>& run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct Subject {
    const char* name;
    std::function<void()> prepare;
    std::function<void()> run;
};

// Both in every round, because the machine drifts.
void compare(const char* what, const Subject& ours, const Subject& other) {
    std::vector<double> oursMs, otherMs;
    for (int round = 0; round <= kRounds; ++round) {
        ours.prepare();
        const double first = millisecondsOf(ours.run);
        other.prepare();
        const double second = millisecondsOf(other.run);
        if (round == 0) continue;  // warms up
        oursMs.push_back(first);
        otherMs.push_back(second);
    }
    std::printf("%s: %s|%.1f|%s|%.1f\n", what, ours.name, median(oursMs), other.name,
                median(otherMs));
    std::fflush(stdout);
}

void nothing() {}

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
        const auto run = [this] { paint(); };
        const std::wstring wrapped(400, L'w');
        compare("paint of the report", {"2000 wrapped lines", [&] { fill(2000, wrapped); }, run},
                {"no line", [this] { clearLines(window_.state.log); }, run});
        compare("paint of the report",
                {"2000 wrapped lines, at their top",
                 [&] {
                     fill(2000, wrapped);
                     scrollLog(window_.state.log, WHEEL_DELTA * kMaxLogLines);
                 },
                 run},
                {"a page of them", [&] { fill(12, wrapped); }, run});
    }

    // Each capture is of another process than the last, so that its symbols must be registered.
    bool captures() {
        refreshInstances(window_);
        if (window_.state.instances.size() < 2) {
            std::printf("two CorelDRAWs are needed: the captures are skipped\n");
            return false;
        }
        paint();
        const auto other = [this] { window_.state.selectedInstance ^= 1; };
        compare("click to diagnosis", {"the window", other, [this] { clickCapture(); }},
                {"the debug-help library's walk and one paint", nothing, [this] {
                     walkAlone(window_.state.instances.front());
                     paint();
                 }});
        return !window_.lastCapture.frames.empty();
    }

    void update() {
        std::string document;
        window_.cloud.isNetworkEnabled = [] { return true; };
        window_.cloud.request = [&](std::wstring_view, std::wstring_view, std::string_view) {
            return document;
        };
        std::string stored;
        window_.cloud.writeCache = [&](std::string_view body) {
            stored = body;
            return true;
        };
        const auto run = [this] {
            runAction(window_, kUpdateAction);
            paint();
        };
        compare("update of the rules", {"2 MiB", [&] { document = rules(2 << 20); }, run},
                {"4 rules", [&] { document = rules(1000); }, run});
    }

  private:
    void paint() { RedrawWindow(window_.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }

    void fill(int lines, const std::wstring& text) {
        clearLines(window_.state.log);
        for (int i = 0; i < lines; ++i)
            appendLine(window_.state.log, std::to_wstring(i) + L" " + text);
    }

    void clickCapture() {
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
