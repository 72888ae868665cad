#pragma once

#include "startup/apply/ActiveStartup.h"

namespace quorvane {

/// launchd has told that it has no overrides, and these plists lie in the user's folder.
inline LaunchdReadings readLaunchd(const QStringList& fileNames = {}) {
    const auto none = DisabledServices::parse(QStringLiteral("disabled services = {\n}\n"));
    QList<LaunchPlist> plists;
    for (const QString& fileName : fileNames) {
        LaunchPlist plist;
        plist.fileName = fileName;
        plist.folder = launchFolders(QStringLiteral("/Users/alex")).first();
        plist.label = fileName.chopped(6);
        plists.append(plist);
    }
    return LaunchdReadings({none, none}, plists);
}

inline StartupReadings readingsWithLaunchd() {
    StartupReadings readings;
    readings.launchd = readLaunchd();
    return readings;
}

} // namespace quorvane
