// What the download loads would slow the start down: the window is shown first. It touches nothing
// of the window's, and its message is lost when the window has gone.
#include "app/background_update_win.h"

#include "base/deadline_win.h"
#include "cloud/signatures.h"

std::shared_ptr<KernelHandle> startBackgroundUpdate(HWND window, UINT message,
                                                    const CloudServices& cloud) {
    constexpr DWORD kLongestStartMs = 3000;
    if (!cloud.isNetworkEnabled()) return nullptr;
    auto painted = std::make_shared<KernelHandle>(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    startDetached([window, message, cloud, painted] {
        WaitForSingleObject(painted->get(), kLongestStartMs);
        if (BackgroundUpdate(cloud)) PostMessageW(window, message, 0, 0);
    });
    return painted;
}
