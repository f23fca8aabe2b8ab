// A registry that a test may fill: an empty machine, and a user whose values come back.
#pragma once

#include <windows.h>

#include <string>
#include <utility>

#include "base/handle_win.h"

inline void setText(const RegistryKey& key, const std::wstring& name, const std::wstring& text) {
    RegSetValueExW(key.get(), name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

inline void setNumber(const RegistryKey& key, const std::wstring& name, DWORD number) {
    RegSetValueExW(key.get(), name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                   sizeof number);
}

/// Opens a key, made if need be; it does not outlive the session.
inline RegistryKey madeKey(HKEY root, const std::wstring& path) {
    RegistryKey key;
    RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr,
                    key.receive(), nullptr);
    return key;
}

/// While it lives, this process sees an empty `HKEY_LOCAL_MACHINE` (`RegOverridePredefKey`), kept
/// in one key of the user's that goes with it.
class EmptyMachine {
  public:
    EmptyMachine() {
        // The first reading of win.ini binds it for good to the machine as it is then.
        GetProfileIntW(L"windows", L"device", 0);
        RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, madeKey(HKEY_CURRENT_USER, path_).get());
    }
    ~EmptyMachine() {
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
    }
    EmptyMachine(const EmptyMachine&) = delete;
    EmptyMachine& operator=(const EmptyMachine&) = delete;

  private:
    std::wstring path_ = L"Software\\Mirelo Tests " + std::to_wstring(GetCurrentProcessId());
};

/// Removes one text of the user's and puts it back, whatever a test left in its place.
class BorrowedText {
  public:
    BorrowedText(RegistryKey key, std::wstring name)
        : key_(std::move(key)), name_(std::move(name)) {
        wchar_t text[512] = {};
        DWORD size = sizeof text;
        existed_ = RegGetValueW(key_.get(), nullptr, name_.c_str(), RRF_RT_REG_SZ, nullptr, text,
                                &size) == ERROR_SUCCESS;
        text_ = text;
        RegDeleteValueW(key_.get(), name_.c_str());
    }
    BorrowedText(BorrowedText&&) = default;
    BorrowedText& operator=(BorrowedText&&) = delete;
    ~BorrowedText() {
        if (!key_) return;
        RegDeleteValueW(key_.get(), name_.c_str());
        if (existed_) setText(key_, name_, text_);
    }

  private:
    RegistryKey key_;
    std::wstring name_;
    bool existed_ = false;
    std::wstring text_;
};
