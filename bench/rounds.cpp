#include "bench/rounds.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>

namespace {

constexpr double kSecondsPerTurn = 0.012;

// The processor time of this process where it can be had: other programs on the machine then count
// only through the caches.
double seconds() {
#if defined(_WIN32)
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
#else
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
#endif
}

double timeRuns(const Contender& contender, int runs) {
    double passed = 0;
    double start = seconds();
    for (int i = 0; i < runs; ++i) {
        if (contender.prepare) {
            passed += seconds() - start;
            contender.prepare();
            start = seconds();
        }
        contender.run();
    }
    return (passed + seconds() - start) / runs;
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace

std::vector<Standing> measure(const std::vector<Contender>& contenders, int rounds) {
    const std::size_t count = contenders.size();
    std::vector<int> runs(count);
    for (std::size_t i = 0; i < count; ++i) {
        timeRuns(contenders[i], 1);
        const double once = timeRuns(contenders[i], 1);
        runs[i] = std::max(1, static_cast<int>(kSecondsPerTurn / std::max(once, 1e-9)));
    }
    std::vector<std::vector<double>> times(count), ratios(count);
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t turn = 0; turn < count; ++turn) {
            const std::size_t i = (turn + static_cast<std::size_t>(round)) % count;
            times[i].push_back(timeRuns(contenders[i], runs[i]));
        }
        for (std::size_t i = 0; i < count; ++i) {
            ratios[i].push_back(times[i].back() / times[0].back());
        }
    }
    std::vector<Standing> standings;
    for (std::size_t i = 0; i < count; ++i) {
        standings.push_back({median(times[i]), median(ratios[i])});
    }
    return standings;
}

__attribute__((noinline)) void countedRun(const Contender& contender) {
    contender.run();
}

int runOnce(const std::vector<Contender>& contenders, const std::string& name) {
    for (const Contender& contender : contenders) {
        if (contender.name != name) continue;
        if (contender.prepare) contender.prepare();
        countedRun(contender);
        return 0;
    }
    std::printf("no contender of this name\n");
    return 1;
}

double geometricMean(const std::vector<double>& values) {
    double sum = 0;
    for (const double value : values)
        sum += std::log(value);
    return values.empty() ? 0 : std::exp(sum / double(values.size()));
}
