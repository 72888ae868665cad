#pragma once

#include "core/JsonForward.h"

#include <QList>
#include <QString>

#include <optional>

namespace quorvane {

/// What an item is; written to files by its raw value.
enum class StartupItemKind {
    loginApp,            ///< a login item of System Events
    launchAgent,         ///< a plist in a LaunchAgents folder
    launchDaemon,        ///< a plist in /Library/LaunchDaemons
    backgroundAgent,     ///< a login item or plist whose name looks like an agent
    backgroundLoginItem, ///< a record of the background task dump
    addedApp,            ///< an application the user added to run at login
};

const QList<StartupItemKind>& allStartupItemKinds();
QString rawValue(StartupItemKind kind);
/// The label on a row.
QString label(StartupItemKind kind);

/// An application configured to open at login.
struct StartupLaunchItem {
    QString name;
    QString path;
    bool hidden = false;

    /// Its identity in lists.
    QString id() const { return path; }
    bool operator==(const StartupLaunchItem&) const = default;
};

/// Something that may run when the user logs in.
struct StartupItem {
    QString id;   ///< formed by its source, see below; saved and discovered items are compared by it alone
    QString name; ///< the name to show; for a login item the one System Events gives
    QString path; ///< empty when none is known; for a background item a URL or path or label
    StartupItemKind kind = StartupItemKind::loginApp;
    bool runsAtStartup = true;               ///< false: applying the configuration switches it off
    std::optional<bool> hidden;              ///< a login item's hidden flag
    bool isProtected = false;                ///< belongs to audio software; switching it off is confirmed
    std::optional<QString> launchIdentifier; ///< launch items: the plist's file name; background items: the label

    bool operator==(const StartupItem&) const = default;

    /// The added application that a launch item stands for.
    static StartupItem fromLaunchItem(const StartupLaunchItem& launchItem);
};

size_t qHash(const StartupLaunchItem& item, size_t seed = 0);
size_t qHash(const StartupItem& item, size_t seed = 0);

// Identifiers. The prefix tells the source.

/// Of a login item: by its launch identifier, else by its path, else by its name.
QString loginItemId(const QString& name, const QString& path, const QString& launchIdentifier = {});
/// @param fileName  of the plist, with its ".plist"
QString launchItemId(const QString& fileName);
QString backgroundItemId(const QString& label);
QString addedItemId(const QString& path);
/// True for an identifier made of a launch plist's name.
bool isLaunchItemId(const QString& id);
/// The form in which identifiers are compared: profiles of earlier versions hold such whose path ends in a "/", or that
/// stand for a file that was gone.
QString comparableId(const StartupItem& item);

// Login items and applications are known by their paths, which may end in a "/" wherever they come from.

/// The form in which these paths are compared.
QString comparablePath(const QString& path);
/// The path of a login item or added application in this form: of its identifier, by which items are compared, else its
/// own. Empty where neither tells one.
QString knownPath(const StartupItem& item);
/// What System Events writes for the path of a file that is gone.
inline const QString kMissingPath = QStringLiteral("missing value");
/// True for an item that System Events lists: not for what looks like an agent and is a launch plist.
bool isLoginItem(const StartupItem& item);

Json encodeJson(const StartupItem& item);
Json encodeJson(const StartupLaunchItem& item);
// Each throws DecodingError.
void decodeJson(const Json& json, StartupItemKind& kind);
void decodeJson(const Json& json, StartupItem& item);
void decodeJson(const Json& json, StartupLaunchItem& item);

} // namespace quorvane
