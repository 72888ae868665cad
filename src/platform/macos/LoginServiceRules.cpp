#include "platform/macos/LoginServiceRules.h"

namespace quorvane {

namespace {

constexpr long kStatusEnabled = 1;          // SMAppServiceStatusEnabled
constexpr long kStatusRequiresApproval = 2; // SMAppServiceStatusRequiresApproval
constexpr long kJobNotFound = 6;            // kSMErrorJobNotFound
constexpr long kAlreadyRegistered = 12;     // kSMErrorAlreadyRegistered

std::optional<QString> failureUnless(bool isDone, const QString& words) {
    return isDone ? std::nullopt : std::optional(words);
}

} // namespace

LoginService::State loginServiceState(long status) {
    switch (status) {
    case kStatusEnabled:
        return LoginService::State::Enabled;
    case kStatusRequiresApproval:
        return LoginService::State::RequiresApproval;
    default:
        return LoginService::State::NotEnabled;
    }
}

std::optional<QString> failureOfRegistering(long code, const QString& words) {
    return failureUnless(code == kAlreadyRegistered, words);
}

std::optional<QString> failureOfUnregistering(long code, const QString& words) {
    return failureUnless(code == kJobNotFound, words);
}

} // namespace quorvane
