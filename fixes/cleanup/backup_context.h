// What the cleanup and its way back share: what they are given from outside, and how they tell
// about many files.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "base/action_host.h"
#include "fixes/cleanup/backup_folders.h"
#include "fixes/cleanup/cleanup_locations.h"

struct RunningPrograms {
    bool coreldraw = false;
    bool photoPaint = false;
};

struct BackupContext {
    FileSystem& files;
    /// As Windows names them, whether they are to be trusted or not.
    CleanupRoots roots;
    /// Why the folder for temporary files is not searched; empty when it is.
    std::wstring tempDoubt;
    BackupHomes homes;
    /// Those of this user.
    std::function<RunningPrograms()> running;
    struct Now {
        FileTicks utc;
        FileTicks local;
    };
    std::function<Now()> now;
};

/// A sign of life in the status text, at most once a second while files are moved.
class MovingStatus {
  public:
    MovingStatus(const ActionHost& host, const BackupContext& context, std::wstring verb,
                 std::uint64_t total);
    MovingStatus(const MovingStatus&) = delete;
    MovingStatus& operator=(const MovingStatus&) = delete;
    /// Empties the status text if it was set.
    ~MovingStatus();
    void countOne();

  private:
    const ActionHost& host_;
    const BackupContext& context_;
    const std::wstring verb_;
    const std::uint64_t total_;
    std::uint64_t done_ = 0;
    FileTicks nextTime_;
    bool isShown_ = false;
};

/// At most so many paths are named for the same reason; the log has an end.
inline constexpr std::size_t kMostNamed = 20;

/// "   and 12 more" for those beyond `kMostNamed`; empty when all were named.
std::wstring MoreText(std::size_t count);
