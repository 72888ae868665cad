#include "platform/macos/MacBiometrics.h"

#include "platform/macos/BiometryRules.h"

#import <LocalAuthentication/LocalAuthentication.h>

namespace quorvane {

bool MacBiometrics::canEvaluate() const {
    LAContext* context = [[LAContext alloc] init];
    return [context canEvaluatePolicy:LAPolicyDeviceOwnerAuthenticationWithBiometrics error:nil];
}

BiometryType MacBiometrics::type() const {
    LAContext* context = [[LAContext alloc] init];
    [context canEvaluatePolicy:LAPolicyDeviceOwnerAuthenticationWithBiometrics error:nil]; // the type is set by this
    return biometryType(long(context.biometryType));
}

} // namespace quorvane
