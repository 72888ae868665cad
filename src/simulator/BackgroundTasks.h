#pragma once

#include "simulator/StateStore.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace macsim {

/// The user id of what the whole machine runs.
inline constexpr int kMachineWideTasks = -2;

/// One record of what macOS keeps about everything that may run in the background.
///
/// Subject "backgroundTasks":
///
///     {"records": [{"uid": 501, "name": "Splice Helper", "type": "login item",
///                   "identifier": "4.com.splice.Splice.LoginHelper", "parent": "2.com.splice.Splice",
///                   "url": "Contents/Library/LoginItems/Splice%20Helper.app/", "enabled": true, "allowed": true}]}
///
/// "uid" is -2 for what the whole machine runs. "type" is one of app, login item, agent, daemon, developer, spotlight,
/// dock tile, quicklook, background tasks, behind "legacy" for a property list in a launch folder, behind "curated
/// legacy" for one that Apple has a name for, and all of it behind "managed" for what an organisation has installed:
/// Settings locks it, launchd doesn't. The number before the first "." of "identifier" follows from the type and
/// may be left out. "parent" is the identifier of another record as the dump shows it: of the application, or the name
/// of a developer. The rest is optional:
///
///     "url", "developerName"  shown as (null) where they are missing, as a missing "name" is
///     "executablePath"        of an agent or a daemon
///     "enabled"               registered by its program; true unless told
///     "allowed"               the user's own switch; true unless told
///     "notified"              the user was told of it; true unless told
///     "bundleIdentifier"      of an app or a login item it is what follows the number of the identifier, unless told
///     "teamIdentifier", "associatedBundleIdentifiers" (a list), "lastUse" ("2026-09-25 11:05:55-07:00")
///     "generation"            1 unless told
///     "uuid"                  made from the user and the identifier unless told, so that it is always the same
struct BackgroundTask {
    int userId = 0;
    QString name;
    QString developerName;
    QString teamIdentifier;
    QString type;
    QString identifier; ///< with its number
    QString url;
    QString parent;
    QString executablePath;
    QString bundleIdentifier;
    QStringList associatedBundleIdentifiers;
    QString uuid;
    QString lastUse;
    int generation = 1;
    bool isEnabled = true;
    bool isAllowed = true;
    bool isNotified = true;

    /// The type without what tells of its origin: "daemon" of "curated legacy daemon".
    QString kind() const;
    bool isLegacy() const;
};

/// The bits that stand for a record's type; none for words that are no type.
std::optional<unsigned> backgroundTaskTypeBits(const QString& type);

/// An identifier without its number: "16.com.x.daemon" is that of "com.x.daemon".
QString withoutTypeNumber(const QString& identifier);

/// All records, in the order in which they were registered.
std::vector<BackgroundTask> backgroundTasks(const StateStore& state);

/// Lets `change` look at every record, and change it as it is kept.
void updateBackgroundTasks(const StateStore& state, const std::function<void(const BackgroundTask&, Json&)>& change);

} // namespace macsim
