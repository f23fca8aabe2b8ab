#include "cdr/metrics_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

namespace {

// A window whose thread looks for no messages as long as it lives.
class HungWindow {
  public:
    HungWindow() : thread_([this] { hang(); }), window_(created_.get_future().get()) {}
    ~HungWindow() {
        released_.set_value();
        thread_.join();
    }
    HungWindow(const HungWindow&) = delete;
    HungWindow& operator=(const HungWindow&) = delete;

    [[nodiscard]] HWND get() const { return window_; }

  private:
    void hang() {
        const HWND window = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                            nullptr, nullptr);
        created_.set_value(window);
        released_.get_future().wait();
        DestroyWindow(window);
    }

    std::promise<HWND> created_;
    std::promise<void> released_;
    std::thread thread_;
    HWND window_;
};

}  // namespace

TEST(ReadMetrics, MeasuresARunningProcess) {
    constexpr std::size_t kMegabytes = 64;
    const CdrMetrics before = ReadMetrics(GetCurrentProcessId(), nullptr);
    const std::vector<char> touched(kMegabytes << 20, 'x');
    const CdrMetrics after = ReadMetrics(GetCurrentProcessId(), nullptr);
    EXPECT_TRUE(after.ok);
    EXPECT_TRUE(after.responsive);
    EXPECT_GE(after.workingSetMB, before.workingSetMB + kMegabytes / 2);
    EXPECT_LT(after.workingSetMB, before.workingSetMB + kMegabytes * 2);
}

TEST(ReadMetrics, TellsAHungWindow) {
    const HungWindow hung;
    ASSERT_NE(hung.get(), nullptr);
    const CdrMetrics metrics = ReadMetrics(GetCurrentProcessId(), hung.get());
    EXPECT_TRUE(metrics.ok);
    EXPECT_FALSE(metrics.responsive);
}

TEST(ReadMetrics, FailsOnlyWithoutAProcess) {
    const HungWindow hung;
    const CdrMetrics metrics = ReadMetrics(0, hung.get());
    EXPECT_FALSE(metrics.ok);
    EXPECT_TRUE(metrics.responsive);
}
