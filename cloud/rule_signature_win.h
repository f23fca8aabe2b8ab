// Who a rule document is from, by the system's cryptography.
#pragma once

#include <string_view>

#include "cloud/rule_signature.h"

/// True when the document carries a signature of its bytes by the owner of the key. False for every
/// failure.
bool IsSignedBy(const EcdsaPair& key, std::string_view signedDocument);
