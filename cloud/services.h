// What the update and submission flows need of the machine and the network.
#pragma once

#include <functional>
#include <string>
#include <string_view>

/// The two paths of the signature server.
inline constexpr std::wstring_view kSignaturesPath = L"/api/mirelo/signatures.php";
inline constexpr std::wstring_view kSubmitPath = L"/api/mirelo/submit.php";

/// All members are always set. They may be called on any thread, on several at a time.
struct CloudServices {
    std::function<bool()> isNetworkEnabled;
    std::function<void(bool enabled)> setNetworkEnabled;
    /// The cached rule document; empty when there is none worth reading.
    std::function<std::string()> readCache;
    /// True when every byte was written.
    std::function<bool(std::string_view body)> writeCache;
    /// Whether rules from this document may be taken; builds with a key ask for its signature.
    std::function<bool(std::string_view document)> isGenuine;
    /// The body of the server's answer; empty for failure of any kind. Blocks.
    std::function<std::string(std::wstring_view method, std::wstring_view path,
                              std::string_view body)>
        request;
};
