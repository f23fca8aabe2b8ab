// The tool's one setting in the registry: may it reach the network at all.
#pragma once

/// False only when `HKEY_CURRENT_USER` "Software\Mirelo" "NetworkEnabled" is the text "0". Any
/// other text, another type and no value at all allow the network.
bool IsNetworkEnabled();

/// Stores the switch as the text "1" or "0". A failure is silent.
void SetNetworkEnabled(bool enabled);
