#include "platform/macos/BiometryRules.h"

#include <array>

namespace quorvane {

BiometryType biometryType(long value) {
    constexpr std::array<BiometryType, 3> kKnown{BiometryType::TouchId, BiometryType::FaceId, BiometryType::OpticId};
    for (const BiometryType type : kKnown) {
        if (value == static_cast<long>(type)) {
            return type;
        }
    }
    return BiometryType::None;
}

} // namespace quorvane
