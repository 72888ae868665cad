#include "lock/LockTexts.h"

#include "lock/BiometryNames.h"

namespace quorvane {

using namespace Qt::StringLiterals;

QString lockScreenText(const std::optional<BiometryType>& biometry) {
    return biometry ? u"Enter your app password or use %1 to continue."_s.arg(biometryDisplayName(*biometry))
                    : u"Enter your app password to continue."_s;
}

QString unlockWithBiometryText(BiometryType biometry) {
    return u"Unlock with "_s + biometryDisplayName(biometry);
}

QString biometryFailedText(BiometryType biometry) {
    return biometryDisplayName(biometry) + u" could not unlock Quorvane. Enter your password instead."_s;
}

} // namespace quorvane
