#include "cloud/signatures.h"

#include "base/text.h"
#include "cloud/json/json.h"

namespace {

bool HasRules(std::string_view body) {
    const JsonValue document = ParseJson(body);
    return Member(document, "rules").tag() == JsonTag::array;
}

}  // namespace

SignatureLoad LoadSignatureBase(SignatureRuleBase& base, const CloudServices& services) {
    const std::string cached = services.readCache();
    const bool accepted = !cached.empty() && MergeRuleDocument(base, cached);
    return {true,
            accepted ? L"Loaded locally cached signature database"
                     : L"Using built-in base signature database",
            base.version, base.rules.size()};
}

bool BackgroundUpdate(const CloudServices& services) {
    if (!services.isNetworkEnabled()) return false;
    const std::string body = services.request(L"GET", kSignaturesPath, {});
    return !body.empty() && HasRules(body) && services.writeCache(body);
}

std::wstring ManualUpdate(SignatureRuleBase& base, const CloudServices& services) {
    if (!services.isNetworkEnabled()) return L"Network disabled (can be enabled in settings)";
    const std::string body = services.request(L"GET", kSignaturesPath, {});
    if (body.empty()) return L"Cloud unreachable, keeping current signatures";
    if (!MergeRuleDocument(base, body)) return L"Cloud data format invalid, ignored";
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
