#include "lock/AppPasswordSheetMode.h"

namespace quorvane {

using namespace Qt::StringLiterals;

std::optional<QString> verificationReason(AppPasswordSheetMode mode) {
    switch (mode) {
    case AppPasswordSheetMode::change:
        return u"Verify your identity to change the app password"_s;
    case AppPasswordSheetMode::disable:
        return u"Verify your identity to remove app lock"_s;
    case AppPasswordSheetMode::enable:
        break;
    }
    return std::nullopt;
}

} // namespace quorvane
