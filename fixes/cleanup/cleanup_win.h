// The buttons of the cleanup card on this user's folders, and what the settings card shares with
// them. Each action works alone: while another program of this user is at it, it says so and does
// nothing.
#pragma once

#include <string>

#include "base/files/file_system_win.h"
#include "base/handle_win.h"
#include "fixes/cleanup/backup_context.h"

/// Moves CorelDRAW's crash reports, temporary files and thumbnail caches into a backup.
void OnCleanup(const ActionHost& host);

/// Brings the newest backup back.
void OnRestore(const ActionHost& host);

/// What this user's folders are called; all empty when Windows does not say so in time, because a
/// server that holds one of them is dead.
struct FolderNames {
    CleanupRoots roots;
    std::wstring tempDoubt;
    BackupHomes homes;

    static FolderNames read();
};

/// This user's folders, as they are now.
struct UserFolders {
    FolderNames names;
    WindowsFileSystem files;

    UserFolders();
    /// Refers to this object.
    BackupContext context();
};

/// Held by one program of a user at a time, in whatever session: another one must not put back what
/// this one is still moving. When the holder dies, Windows passes it on.
class BackupsLock {
  public:
    BackupsLock();
    ~BackupsLock();
    BackupsLock(const BackupsLock&) = delete;
    BackupsLock& operator=(const BackupsLock&) = delete;

    /// False, with a line in the report, when another program holds it.
    [[nodiscard]] bool isHeld(const ActionHost& host, const wchar_t* prefix) const;

    /// The name of the system's object behind it.
    static std::wstring name();

  private:
    KernelHandle mutex_;
    bool isHeld_ = false;
};
