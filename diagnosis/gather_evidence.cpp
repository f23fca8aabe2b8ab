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
    for (std::size_t i = 0; i < hang.frames.size(); ++i) {
        const StackFrame& frame = hang.frames[i];
        if (!frame.moduleName.empty() || !frame.imagePath.empty()) continue;
        if (sensors.isGeneratedCode(hang.place.pid, frame.address)) return i;
    }
    return std::nullopt;
}

// The thread stood still during the capture itself, so only the time around it counts. Windows
// counts in ticks of 16 ms: a shorter time than this would say little.
std::optional<unsigned> MeasureWork(const EvidenceSensors& sensors, const CapturedHang& hang) {
    constexpr std::uint64_t kLeastUs = 250'000;
    if (!hang.resumed.usedUs) return std::nullopt;
    ThreadMoment now = sensors.moment(hang.place.threadId);
    const std::uint64_t watchedUs =
        (hang.probe.to.atUs - hang.probe.from.atUs) + (now.atUs - hang.resumed.atUs);
    if (watchedUs < kLeastUs) {
        sensors.pause(static_cast<unsigned>((kLeastUs - watchedUs) / 1000));
        now = sensors.moment(hang.place.threadId);
    }
    return ProcessorPercent({hang.probe, {hang.resumed, now}});
}

}  // namespace

HangEvidence GatherEvidence(const EvidenceSensors& sensors, const CapturedHang& hang,
                            const HangPlace& earlier) {
    HangEvidence evidence;
    evidence.pid = hang.place.pid;
    evidence.frames = hang.frames;
    evidence.suspect = hang.suspect;
    evidence.place = hang.place;
    evidence.earlier = earlier;
    evidence.generatedFrame = FindGeneratedFrame(sensors, hang);
    evidence.waits = sensors.waitChain(hang.place.threadId);
    evidence.otherThreads = sensors.captureThreads(
        hang.place.pid,
        ThreadsToVisit(evidence.waits, hang.place, sensors.threadsOf(hang.place.pid)));
    evidence.processorPercent = MeasureWork(sensors, hang);
    return evidence;
}
