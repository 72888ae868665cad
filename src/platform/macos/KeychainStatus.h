#pragma once

namespace quorvane::KeychainStatus {

// The values of OSStatus that make a difference, of SecBase.h.
inline constexpr int kSuccess = 0;                    ///< errSecSuccess
inline constexpr int kDuplicateItem = -25299;         ///< errSecDuplicateItem
inline constexpr int kItemNotFound = -25300;          ///< errSecItemNotFound
inline constexpr int kMissingEntitlement = -34018;    ///< errSecMissingEntitlement
inline constexpr int kInteractionNotAllowed = -25308; ///< errSecInteractionNotAllowed: only the user could release it
inline constexpr int kAuthFailed = -25293;            ///< errSecAuthFailed

} // namespace quorvane::KeychainStatus
