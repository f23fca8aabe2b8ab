#include "cloud/signatures.h"

#include "base/text.h"

namespace {

bool Take(SignatureRuleBase& base, std::string_view document, const CloudServices& services) {
    return !document.empty() && services.isGenuine(document) && MergeRuleDocument(base, document);
}

// Whether the next start would take rules from this document in place of the cached one. Tried on a
// base of its own: this runs beside the user-interface thread.
bool IsWorthCaching(std::string_view document, const CloudServices& services) {
    SignatureRuleBase base;
    Take(base, services.readCache(), services);
    return Take(base, document, services);
}

}  // namespace

SignatureLoad LoadSignatureBase(SignatureRuleBase& base, const CloudServices& services) {
    const bool accepted = Take(base, services.readCache(), services);
    return {true,
            accepted ? L"Loaded locally cached signature database"
                     : L"Using built-in base signature database",
            base.version, base.rules.size()};
}

bool BackgroundUpdate(const CloudServices& services) {
    if (!services.isNetworkEnabled()) return false;
    const std::string body = services.request(L"GET", kSignaturesPath, {});
    return IsWorthCaching(body, services) && services.writeCache(body);
}

std::wstring ManualUpdate(SignatureRuleBase& base, const CloudServices& services) {
    if (!services.isNetworkEnabled()) return L"Network disabled (can be enabled in settings)";
    const std::string body = services.request(L"GET", kSignaturesPath, {});
    if (body.empty()) return L"Cloud unreachable, keeping current signatures";
    if (!Take(base, body, services)) return L"Cloud data format invalid, ignored";
    // The new rules are in force either way; without the cache they are fetched again next time.
    services.writeCache(body);
    return L"Signatures updated to v" + decimal(base.version) + L" (" +
           decimalUnsigned(base.rules.size()) + L" rules)";
}

void OnUpdateSignatures(const ActionHost& host, SignatureRuleBase& base,
                        const CloudServices& services) {
    host.appendLog(L"[Cloud] Updating signatures...");
    host.appendLog(L"[Cloud] " + ManualUpdate(base, services));
}

void OnToggleNetwork(const ActionHost& host, const CloudServices& services) {
    const bool wasEnabled = services.isNetworkEnabled();
    services.setNetworkEnabled(!wasEnabled);
    host.appendLog(std::wstring(L"[Cloud] Network ") + (wasEnabled ? L"disabled" : L"enabled") +
                   L". Signature updates and submissions stop; local features are unaffected.");
}
