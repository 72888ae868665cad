#pragma once

#include "startup/background/BackgroundLoginItemChangePlan.h"
#include "startup/background/StartupMemory.h"
#include "startup/launchd/LaunchdReadings.h"

#include <QStringList>

namespace quorvane {

class PropertyLists;

/// A job or login item that is to be switched off.
struct PlannedService {
    LaunchdService service;
    QString name;    ///< as people know it: of its record, else its label
    QString path;    ///< of its plist or record; empty where none is known
    QString knownAs; ///< the label by which profiles know it
    /// Registered by its application from its bundle, which couldn't reach it again in this session.
    bool isBundled = false;
    bool isCleared = false; ///< the list was read, now or for an earlier apply, and has nothing against it
    bool isGuess = false;   ///< nothing is known that bears the label

    bool operator==(const PlannedService&) const = default;
};

/// What a plan comes to, by what is known at a moment.
struct PlannedServices {
    QList<PlannedService> users;       ///< switched off as the user, when the batch has run
    QList<PlannedService> roots;       ///< need root
    QList<BackgroundTaskItem> records; ///< of what goes
    QSet<QString> labels;              ///< of what goes
    QStringList lines;                 ///< of what stays although something asked for it to go
    QList<LaunchdService> settled;     ///< of what has waited: it is off, stays, or isn't there any more

    bool operator==(const PlannedServices&) const = default;
};

/// What is off already is in none of its lists. By a clean reboot alone no daemon goes, and nothing that an organization
/// manages goes at all. Where something that stays has the same label as what goes, its label isn't overridden.
/// @param list    none where it was never read: then only what the profile names goes, and what has waited
/// @param memory  what waits for this apply, and what the last dump has shown
PlannedServices plannedServices(const BackgroundLoginItemChangePlan& plan,
                                const std::optional<BackgroundTaskList>& list, const LaunchdReadings& launchd,
                                const StartupMemory& memory, const PropertyLists& propertyLists);

} // namespace quorvane
