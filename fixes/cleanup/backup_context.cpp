#include "fixes/cleanup/backup_context.h"

#include "base/text.h"

MovingStatus::MovingStatus(const ActionHost& host, const BackupContext& context, std::wstring verb,
                           std::uint64_t total)
    : host_(host),
      context_(context),
      verb_(std::move(verb)),
      total_(total),
      told_(context.now().utc) {}

MovingStatus::~MovingStatus() {
    if (isShown_) host_.setStatus(L"");
}

void MovingStatus::countOne() {
    constexpr std::uint64_t kBetweenLooks = 32;  // a look at the clock costs as much as a move
    if (++done_ % kBetweenLooks != 0) return;
    const FileTicks now = context_.now().utc;
    if (now < told_ + kTicksPerSecond) return;
    told_ = now;
    isShown_ = true;
    host_.setStatus(verb_ + L" " + decimalUnsigned(done_) + L" of " + decimalUnsigned(total_) +
                    L" files");
}

std::wstring MoreText(std::size_t count) {
    if (count <= kMostNamed) return L"";
    return L" ... and " + decimalUnsigned(count - kMostNamed) + L" more";
}
