#pragma once

#include "startup/items/CleanReboot.h"
#include "startup/items/StartupConfiguration.h"
#include "tweaks/PerformanceSettings.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

namespace quorvane {

/// A saved profile: everything that a user composes. Two profiles are equal when they have the same `id`;
/// their contents are compared by `hasSameContent`.
struct UnifiedProfile {
    QUuid id; ///< survives renames
    QString name;
    QDateTime dateCreated; ///< in files in UTC, at whole seconds
    PerformanceSettings settings;
    StartupConfiguration startup;

    // What a file said in the flat keys of older versions; written files derive these keys from `startup`.
    QStringList legacyDisabledLoginItems;
    QStringList legacyDisabledLaunchItems;
    QStringList legacyExcludedBackgroundActivityItems;
    QStringList legacyKnownBackgroundActivityItemIds;
    QStringList legacyPermittedStartupApps;
    QList<StartupLaunchItem> legacyStartupLaunchItems;
    bool legacyDisableNetwork = false;

    bool operator==(const UnifiedProfile& other) const { return id == other.id; }

    /// Compares name, settings and startup; neither identity nor date nor the legacy fields.
    bool hasSameContent(const UnifiedProfile& other) const;

    /// No tweak is on and nothing is held back at startup; applying it restores the standard macOS defaults.
    static const UnifiedProfile& defaultProfile();
};

size_t qHash(const UnifiedProfile& profile, size_t seed = 0);

/// True for the name of the Default profile, in any case, with or without blanks around it.
bool isDefaultProfileName(const QString& name);
/// True for a profile with the identity of the Default profile, or with its name in any case.
bool isDefaultProfile(const UnifiedProfile& profile);

/// What the profile's clean reboot leaves in place; empty for a profile without one.
CleanReboot cleanRebootOf(const UnifiedProfile& profile);
CleanReboot cleanRebootOf(const PerformanceSettings& settings, const StartupConfiguration& startup);

} // namespace quorvane
