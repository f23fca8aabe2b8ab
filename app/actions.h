// The identifiers of all actions, as the buttons carry them.
#pragma once

#include <cstdint>

inline constexpr std::uint32_t kRefreshAction = 500;
inline constexpr std::uint32_t kScanAction = 501;
inline constexpr std::uint32_t kCaptureAction = 502;
inline constexpr std::uint32_t kDashboardAction = 503;
inline constexpr std::uint32_t kPrinterAction = 504;
inline constexpr std::uint32_t kCleanupAction = 505;
inline constexpr std::uint32_t kRestoreAction = 506;
inline constexpr std::uint32_t kSettingsAction = 507;
inline constexpr std::uint32_t kSlimAction = 508;
inline constexpr std::uint32_t kUpdateAction = 509;
inline constexpr std::uint32_t kSubmitAction = 510;
inline constexpr std::uint32_t kNetworkAction = 511;
inline constexpr std::uint32_t kCopyAction = 980;
inline constexpr std::uint32_t kClearAction = 981;
inline constexpr std::uint32_t kWebsiteAction = 9001;
