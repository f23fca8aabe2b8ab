#include "cloud/services_win.h"

#include "build_settings.h"
#include "cloud/cache_file_win.h"
#include "cloud/https_win.h"
#include "cloud/rule_signature_win.h"
#include "cloud/settings_win.h"

namespace {

constexpr char kKeyDigits[] = MIRELO_RULES_KEY;

// Without a key all documents count as genuine, and nothing of the cryptography is linked.
bool IsGenuine([[maybe_unused]] std::string_view document) {
    if constexpr (sizeof(kKeyDigits) == 1) {
        return true;
    } else {
        static const auto key = KeyFromHex(kKeyDigits);
        return key && IsSignedBy(*key, document);
    }
}

}  // namespace

CloudServices SystemCloudServices() {
    return {IsNetworkEnabled, SetNetworkEnabled, ReadCacheFile,
            WriteCacheFile,   IsGenuine,         HttpsRequest};
}
