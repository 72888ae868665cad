#include "platform/macos/MacLoginService.h"

#include "platform/macos/LoginServiceRules.h"

#import <ServiceManagement/ServiceManagement.h>

namespace quorvane {

LoginService::State MacLoginService::state() const {
    return loginServiceState(long(SMAppService.mainAppService.status));
}

std::optional<QString> MacLoginService::registerProgram() {
    NSError* error = nil;
    if ([SMAppService.mainAppService registerAndReturnError:&error]) {
        return std::nullopt;
    }
    return failureOfRegistering(long(error.code), QString::fromNSString(error.localizedDescription));
}

std::optional<QString> MacLoginService::unregisterProgram() {
    NSError* error = nil;
    if ([SMAppService.mainAppService unregisterAndReturnError:&error]) {
        return std::nullopt;
    }
    return failureOfUnregistering(long(error.code), QString::fromNSString(error.localizedDescription));
}

} // namespace quorvane
