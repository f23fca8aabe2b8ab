#include "base/files/file_transfer.h"

namespace {

// The coarsest file system keeps times in steps of two seconds.
constexpr FileTicks kCoarsestTime = 2 * kTicksPerSecond;

// A copy has its times set last, so one that has them is whole.
bool isWholeCopy(const Inspection& found, const FileStamp& stamp) {
    if (!found.isFile() || found.stamp.size != stamp.size) return false;
    const FileTicks a = found.stamp.modified, b = stamp.modified;
    return (a > b ? a - b : b - a) <= kCoarsestTime;
}

// Makes `to` and gives the stamp that it has there.
FileResult copyVerified(FileSystem& files, const std::wstring& from, const std::wstring& to,
                        const FileStamp& stamp, FileStamp& copied) {
    const std::wstring part = partOf(to);
    // What a run that was killed left there is not this one's to remove.
    if (files.inspect(part).result.outcome != FileOutcome::missing) return {FileOutcome::exists};
    FileResult result = files.copy(from, part, stamp);
    if (result.isDone()) result = files.compare(from, part);
    copied = files.inspect(part).stamp;
    if (result.isDone()) result = files.rename(part, to, &copied);
    if (!result.isDone()) files.remove(part, nullptr);
    return result;
}

}  // namespace

std::wstring partOf(const std::wstring& path) {
    return path + L".mirelo-part";
}

FileResult transferFile(FileSystem& files, const std::wstring& from, const std::wstring& to,
                        const FileStamp& stamp) {
    FileResult result = files.rename(from, to, &stamp);
    if (result.outcome != FileOutcome::otherVolume) return result;
    FileStamp copied;
    result = copyVerified(files, from, to, stamp, copied);
    if (!result.isDone()) return result;
    result = files.remove(from, &stamp);
    if (result.outcome == FileOutcome::missing) return {};
    // Somebody came in between: the original, which is there, stays the only one; but what others
    // have made of the copy meanwhile is theirs.
    if (!result.isDone() && files.inspect(from).isFile()) files.remove(to, &copied);
    return result;
}

void settleTransfer(FileSystem& files, const std::wstring& from, const std::wstring& to,
                    const FileStamp& stamp) {
    const std::wstring part = partOf(to);
    const Inspection unfinished = files.inspect(part);
    if (!unfinished.isFile()) return;
    const bool isWhole = isWholeCopy(unfinished, stamp);
    const Inspection original = files.inspect(from);
    const bool isOriginal = original.isFile() && original.stamp.size == stamp.size &&
                            original.stamp.modified == stamp.modified;
    // The original of a copy that is not whole was never removed; what stands there may be newer.
    if (isOriginal || (original.isFile() && !isWhole)) {
        files.remove(part, &unfinished.stamp);
    } else if (isWhole && files.inspect(to).result.outcome == FileOutcome::missing) {
        files.rename(part, to, &unfinished.stamp);
    }
}
