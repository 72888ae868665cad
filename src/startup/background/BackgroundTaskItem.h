#pragma once

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace quorvane {

/// One record of the system's background task list, as its dump prints it.
struct BackgroundTaskItem {
    QString name;
    std::optional<QString> bundleIdentifier;
    QString identifier;  ///< "16.com.example.helper": a number and the label
    QString itemType;    ///< "login item (0x4)", "legacy daemon (0x10010)"
    QString disposition; ///< "[enabled, allowed, notified] (0xb)"
    std::optional<QString> parentIdentifier;
    std::optional<QString> executablePath;
    std::optional<QString> url; ///< "file:///…", a path, or a path inside the parent's bundle
    QString flags{};            ///< "[ legacy, curated ] (0x5)"; of older systems none

    bool operator==(const BackgroundTaskItem&) const = default;
};

/// The runs of letters of the disposition, in lower case.
QSet<QString> dispositionTokens(const BackgroundTaskItem& item);
/// Off when disallowed or disabled; otherwise on exactly when enabled.
bool isActive(const BackgroundTaskItem& item);
/// True for a login item, an agent or a daemon; the list also holds applications and developers.
bool isLoginRecord(const BackgroundTaskItem& item);
/// True for an application.
bool isApplicationRecord(const BackgroundTaskItem& item);

/// Everything that names the item, in lower case.
QString backgroundItemSearchText(const BackgroundTaskItem& item);
/// By what launchd and the profile know the item: its bundle identifier, or what follows the number of its identifier.
std::optional<QString> backgroundItemLabel(const BackgroundTaskItem& item);
/// By what launchd knows the job or login item: for an agent or a daemon the identifier tells it, whatever bundle it belongs to.
std::optional<QString> launchdLabel(const BackgroundTaskItem& item);
/// An identifier without the number of its type ("4.com.x" is com.x), which may be missing.
QString identifierLabel(const QString& identifier);
/// Where its file is: of a "file://" text or an absolute path. Other forms don't tell it.
std::optional<QString> recordedPath(const BackgroundTaskItem& item);
/// True for what launchd runs for the whole Mac and in no user's session.
bool isDaemonRecord(const BackgroundTaskItem& item);
/// True for an application that has registered itself to open at login: System Events may not list it.
bool isRegisteredApplication(const BackgroundTaskItem& item);
/// True for a record that belongs to audio software.
bool isProtectedRecord(const BackgroundTaskItem& item);
/// True for what an organization has put on its Mac: the user can't change it.
bool isManagedRecord(const BackgroundTaskItem& item);

} // namespace quorvane
