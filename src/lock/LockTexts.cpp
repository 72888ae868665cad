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

QString passwordSheetTitle(AppPasswordSheetMode mode) {
    switch (mode) {
    case AppPasswordSheetMode::enable:
        return u"Set App Password"_s;
    case AppPasswordSheetMode::change:
        return u"Change App Password"_s;
    case AppPasswordSheetMode::disable:
        break;
    }
    return u"Remove App Lock"_s;
}

QString passwordSheetButton(AppPasswordSheetMode mode) {
    switch (mode) {
    case AppPasswordSheetMode::enable:
        return u"Enable App Lock"_s;
    case AppPasswordSheetMode::change:
        return u"Save Password"_s;
    case AppPasswordSheetMode::disable:
        break;
    }
    return u"Remove Lock"_s;
}

QString useBiometryText(BiometryType biometry) {
    return u"Use "_s + biometryDisplayName(biometry);
}

QString verificationFailedText(BiometryType biometry) {
    return biometryDisplayName(biometry) + u" verification failed."_s;
}

} // namespace quorvane
