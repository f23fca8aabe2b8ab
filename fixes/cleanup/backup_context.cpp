#include "fixes/cleanup/backup_context.h"

#include <algorithm>

#include "base/text.h"

MovingStatus::MovingStatus(const ActionHost& host, const BackupContext& context, std::wstring verb,
                           std::uint64_t total)
    : host_(host),
      context_(context),
      verb_(std::move(verb)),
      total_(total),
      nextTime_(context.now().utc + kTicksPerSecond) {}

MovingStatus::~MovingStatus() {
    if (isShown_) host_.setStatus(L"");
}

void MovingStatus::countOne() {
    constexpr std::uint64_t kBetweenLooks = 32;  // a look at the clock costs as much as a move
    if (++done_ % kBetweenLooks != 0) return;
    const FileTicks before = context_.now().utc;
    if (before < nextTime_) return;
    isShown_ = true;
    host_.setStatus(verb_ + L" " + decimalUnsigned(done_) + L" of " + decimalUnsigned(total_) +
                    L" files");
    // To show it is a whole paint: a fifth of the time at most, however slow it is.
    const FileTicks after = context_.now().utc;
    nextTime_ = after + std::max(kTicksPerSecond, 4 * (after - std::min(before, after)));
}

std::wstring MoreText(std::size_t count) {
    if (count <= kMostNamed) return L"";
    return L" ... and " + decimalUnsigned(count - kMostNamed) + L" more";
}
