// How new rules reach the rule base: from the cache at start-up, from the server in the background
// and on request. Stands above diagnosis/, unlike the reader and the transport of this folder.
#pragma once

#include <string>

#include "base/action_host.h"
#include "cloud/services.h"
#include "diagnosis/rules.h"

struct SignatureLoad {
    /// Set once loading ran, whatever it found.
    bool loaded = false;
    /// Whether the cache or only the built-in rules are in force, as shown to the user.
    std::wstring status;
    /// Of the base, after loading.
    int version = 0;
    std::size_t ruleCount = 0;
};

/// Merges the cached rule document into a base that holds the built-in rules already. A cache that
/// is missing, cut short or refused leaves the base as it is.
SignatureLoad LoadSignatureBase(SignatureRuleBase& base, const CloudServices& services);

/// Downloads the rule document into the cache, if the network is allowed and rules can be taken
/// from the answer: it is genuine, gives a rule and is no older than the cached one. True when the
/// cache was written. Touches no rule base, so that it may run on a thread of its own.
bool BackgroundUpdate(const CloudServices& services);

/// Downloads the rule document, merges it and caches it when it was accepted. Returns the outcome
/// as shown to the user. Blocks for the request.
std::wstring ManualUpdate(SignatureRuleBase& base, const CloudServices& services);

/// The action around `ManualUpdate`.
void OnUpdateSignatures(const ActionHost& host, SignatureRuleBase& base,
                        const CloudServices& services);

/// Turns the network switch over and says so.
void OnToggleNetwork(const ActionHost& host, const CloudServices& services);
