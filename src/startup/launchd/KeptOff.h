#pragma once

#include "core/JsonForward.h"
#include "startup/launchd/DisabledServices.h"

#include <QList>
#include <QSet>
#include <QString>

namespace quorvane {

/// What a way back leaves switched off: what was off by the program already before the one apply that it takes back. Empty where
/// everything comes back.
struct KeptOff {
    QList<LaunchdService> overrides; ///< of launchd's
    QSet<QString> plists;            ///< places of launch plists that wait aside
    QSet<QString> helpers;           ///< paths in the quarantine
    QSet<QString> permissions;       ///< labels that macOS was asked to disallow
    QSet<QString> services;          ///< names of network services

    bool operator==(const KeptOff&) const = default;
};

Json encodeJson(const KeptOff& kept);
/// Throws DecodingError.
void decodeJson(const Json& json, KeptOff& kept);

} // namespace quorvane
