#include "diagnosis/gather_evidence.h"

#include <algorithm>

namespace {

// Those that the wait chain names come first, because the time may not suffice for all.
std::vector<std::uint32_t> ThreadsToVisit(const WaitChain& waits, const HangPlace& place,
                                          const std::vector<std::uint32_t>& all) {
    std::vector<std::uint32_t> order = ThreadsNamed(waits, place.pid);
    for (const std::uint32_t id : all) {
        const bool isKnown = std::find(order.begin(), order.end(), id) != order.end();
        if (!isKnown && id != place.threadId) order.push_back(id);
    }
    order.resize(std::min(order.size(), kMostThreads));
    return order;
}

std::optional<std::size_t> FindGeneratedFrame(const EvidenceSensors& sensors,
                                              const CapturedHang& hang) {
    const std::vector<StackFrame>& frames = hang.stack.frames;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (!frames[i].moduleName.empty() || !frames[i].imagePath.empty()) continue;
        if (sensors.isGeneratedCode(hang.place.pid, frames[i].address)) return i;
    }
    const std::uint64_t stoppedAt = hang.stack.stoppedAt;
    if (stoppedAt == 0 || !sensors.isGeneratedCode(hang.place.pid, stoppedAt)) return std::nullopt;
    return frames.size();
}

// While the target is probed it runs undisturbed, which it does not while its stacks are read.
// Windows counts in ticks of 16 ms, so a probe that fails at once says too little and is followed
// by a wait.
std::optional<unsigned> MeasureWork(const EvidenceSensors& sensors, const CapturedHang& hang) {
    constexpr std::uint64_t kLeastUs = 250'000;
    const std::uint64_t watchedUs = hang.probe.to.atUs - hang.probe.from.atUs;
    if (!hang.probe.to.usedUs || watchedUs >= kLeastUs) return ProcessorPercent({hang.probe});
    ThreadSpan wait;
    wait.from = sensors.moment(hang.place.threadId);
    sensors.pause(static_cast<unsigned>((kLeastUs - watchedUs) / 1000));
    wait.to = sensors.moment(hang.place.threadId);
    return ProcessorPercent({hang.probe, wait});
}

}  // namespace

HangEvidence GatherEvidence(const EvidenceSensors& sensors, const CapturedHang& hang,
                            const HangPlace& earlier) {
    HangEvidence evidence;
    evidence.pid = hang.place.pid;
    evidence.frames = hang.stack.frames;
    evidence.suspect = hang.suspect;
    evidence.place = hang.place;
    evidence.earlier = earlier;
    evidence.processorPercent = MeasureWork(sensors, hang);
    evidence.generatedFrame = FindGeneratedFrame(sensors, hang);
    evidence.waits = sensors.waitChain(hang.place.threadId);
    evidence.otherThreads = sensors.captureThreads(
        hang.place.pid,
        ThreadsToVisit(evidence.waits, hang.place, sensors.threadsOf(hang.place.pid)));
    return evidence;
}
