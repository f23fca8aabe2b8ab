// One owner for every kind of Windows handle.
#pragma once

#include <windows.h>

#include <utility>

/// Owns at most one handle and closes it once. `Traits` gives the handle's `Type`, its `invalid()`
/// value and `close(Type)`. Families with different invalid values are different types. Closing
/// keeps the thread's last error, so that a failure can still be told after the owner went.
template <typename Traits>
class UniqueHandle {
  public:
    using Type = typename Traits::Type;

    UniqueHandle() = default;
    explicit UniqueHandle(Type handle) : handle_(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { reset(); }

    [[nodiscard]] Type get() const { return handle_; }
    explicit operator bool() const { return handle_ != Traits::invalid(); }

    Type release() { return std::exchange(handle_, Traits::invalid()); }

    void reset(Type handle = Traits::invalid()) {
        const Type old = std::exchange(handle_, handle);
        if (old == Traits::invalid()) return;
        const DWORD lastError = GetLastError();
        Traits::close(old);
        SetLastError(lastError);
    }

    /// For calls that hand out a handle through a pointer; what was owned before is closed first.
    Type* receive() {
        reset();
        return &handle_;
    }

  private:
    Type handle_ = Traits::invalid();
};

struct KernelObjectTraits {
    using Type = HANDLE;
    static Type invalid() { return nullptr; }
    static void close(Type handle) { CloseHandle(handle); }
};
/// Processes, threads, events: null means none.
using KernelHandle = UniqueHandle<KernelObjectTraits>;

struct FileTraits {
    using Type = HANDLE;
    static Type invalid() { return INVALID_HANDLE_VALUE; }
    static void close(Type handle) { CloseHandle(handle); }
};
/// Files and Tool Help snapshots: INVALID_HANDLE_VALUE means none.
using FileHandle = UniqueHandle<FileTraits>;

struct RegistryKeyTraits {
    using Type = HKEY;
    static Type invalid() { return nullptr; }
    static void close(Type key) { RegCloseKey(key); }
};
using RegistryKey = UniqueHandle<RegistryKeyTraits>;

struct LibraryTraits {
    using Type = HMODULE;
    static Type invalid() { return nullptr; }
    static void close(Type module) { FreeLibrary(module); }
};
using LibraryHandle = UniqueHandle<LibraryTraits>;

/// Holds a lock exclusively, from here to the end of the scope.
class LockGuard {
  public:
    explicit LockGuard(SRWLOCK& lock) : lock_(lock) { AcquireSRWLockExclusive(&lock_); }
    LockGuard(const LockGuard&) = delete;
    LockGuard& operator=(const LockGuard&) = delete;
    ~LockGuard() { ReleaseSRWLockExclusive(&lock_); }

  private:
    SRWLOCK& lock_;
};
