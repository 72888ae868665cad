#pragma once

#include "platform/Biometrics.h"

#include <QString>

namespace quorvane {

/// "Touch ID", "Optic ID", or "Biometrics" for any other means and for none.
QString biometryDisplayName(BiometryType type);
/// The symbol of a button that asks for it.
QString biometrySymbolName(BiometryType type);

} // namespace quorvane
