#include "cdr/version_string_win.h"

#include <windows.h>

#include <cwchar>
#include <memory>
#include <set>
#include <vector>

#include "base/deadline_win.h"
#include "base/handle_win.h"

namespace {

// A local disk on a busy machine takes its time too.
constexpr DWORD kLimitMs = 1000;

// The file that a call reads, from before its thread starts until it ends: on a dead server that
// is long after the caller has gone.
class Reading {
  public:
    using Paths = std::set<std::wstring>;

    static std::shared_ptr<Reading> ofFile(const std::wstring& path) {
        const LockGuard lock(lock_);
        const auto [place, isNew] = outstanding().insert(path);
        return isNew ? std::make_shared<Reading>(place) : nullptr;
    }
    explicit Reading(Paths::iterator place) : place_(place) {}
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading() {
        const LockGuard lock(lock_);
        outstanding().erase(place_);
    }

  private:
    // Never destroyed: a call may end after the program's last line.
    static Paths& outstanding() {
        static auto* const paths = new Paths;
        return *paths;
    }

    static inline SRWLOCK lock_ = SRWLOCK_INIT;
    Paths::iterator place_;
};

struct Translation {
    WORD language;
    WORD codePage;
};

std::wstring ReadString(const std::wstring& filePath, const std::wstring& valueName) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(filePath.c_str(), &ignored);
    if (size == 0) return {};
    std::vector<BYTE> resource(size);
    if (!GetFileVersionInfoW(filePath.c_str(), 0, size, resource.data())) return {};

    void* found = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(resource.data(), L"\\VarFileInfo\\Translation", &found, &length) ||
        found == nullptr || length < sizeof(Translation)) {
        return {};
    }
    const Translation first = *static_cast<const Translation*>(found);

    wchar_t prefix[32];
    std::swprintf(prefix, std::size(prefix), L"\\StringFileInfo\\%04x%04x\\",
                  static_cast<unsigned>(first.language), static_cast<unsigned>(first.codePage));
    if (!VerQueryValueW(resource.data(), (prefix + valueName).c_str(), &found, &length) ||
        found == nullptr) {
        return {};
    }
    // The length is the resource's own claim and often wrong; the buffer's end is the honest bound.
    const auto* text = static_cast<const wchar_t*>(found);
    const auto* end = reinterpret_cast<const wchar_t*>(resource.data() + std::size_t{size} / 2 * 2);
    return text < end ? std::wstring(text, wcsnlen(text, static_cast<std::size_t>(end - text)))
                      : std::wstring();
}

}  // namespace

std::wstring ReadVersionString(const std::wstring& filePath, const std::wstring& valueName) {
    auto reading = Reading::ofFile(filePath);
    if (!reading) return {};
    return answerWithin(kLimitMs,
                        [filePath, valueName, reading = std::move(reading)] {
                            return ReadString(filePath, valueName);
                        })
        .value_or(L"");
}
