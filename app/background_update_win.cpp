// What the download loads would slow the start down: the window is shown first. It touches nothing
// of the window's, and its message is lost when the window has gone.
#include "app/background_update_win.h"

#include <exception>

#include "cloud/signatures.h"

namespace {

constexpr DWORD kLongestStartMs = 3000;

struct Download {
    HWND window;
    UINT message;
    CloudServices cloud;
    std::shared_ptr<KernelHandle> painted;
};

DWORD WINAPI download(void* given) noexcept {
    const std::unique_ptr<Download> work(static_cast<Download*>(given));
    WaitForSingleObject(work->painted->get(), kLongestStartMs);
    if (BackgroundUpdate(work->cloud)) PostMessageW(work->window, work->message, 0, 0);
    return 0;
}

}  // namespace

std::shared_ptr<KernelHandle> startBackgroundUpdate(HWND window, UINT message,
                                                    const CloudServices& cloud) {
    if (!cloud.isNetworkEnabled()) return nullptr;
    auto painted = std::make_shared<KernelHandle>(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    auto work = std::make_unique<Download>(Download{window, message, cloud, painted});
    const KernelHandle thread(CreateThread(nullptr, 0, download, work.get(), 0, nullptr));
    // A system that has no thread left for a program has no future for it either.
    if (!thread) std::terminate();
    work.release();  // the thread's own from here on
    return painted;
}
