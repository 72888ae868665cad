#include "lock/BiometryNames.h"

namespace quorvane {

using namespace Qt::StringLiterals;

QString biometryDisplayName(BiometryType type) {
    switch (type) {
    case BiometryType::TouchId:
        return u"Touch ID"_s;
    case BiometryType::OpticId:
        return u"Optic ID"_s;
    case BiometryType::FaceId:
    case BiometryType::None:
        break;
    }
    return u"Biometrics"_s;
}

QString biometrySymbolName(BiometryType type) {
    switch (type) {
    case BiometryType::TouchId:
        return u"touchid"_s;
    case BiometryType::OpticId:
        return u"opticid"_s;
    case BiometryType::FaceId:
    case BiometryType::None:
        break;
    }
    return u"lock.fill"_s;
}

} // namespace quorvane
