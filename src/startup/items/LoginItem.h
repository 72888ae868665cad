#pragma once

#include "core/Osascript.h"
#include "startup/items/StartupItem.h"

#include <QList>
#include <QString>

#include <optional>

namespace quorvane {

/// A login item as System Events lists it.
struct LoginItem {
    QString name;
    QString path; ///< as it is written there, maybe with a "/" at the end; empty where the file is gone
    bool hidden = false;
    bool hasProtectedRecord = false; ///< the background task list shows it to be audio software

    bool operator==(const LoginItem&) const = default;
};

/// The login items as they were read.
struct LoginItemList {
    QList<LoginItem> items;
    bool wasRead = false;   ///< false: System Events refused or failed, so that nothing is known
    QString output{};       ///< as it was printed: names with a "|" or a line end can only be looked for here
    bool isAnswered = true; ///< false: nobody said anything, so that it's worth asking again
    std::optional<ScriptFailure> failure{}; ///< why it wasn't read, where anybody said so
    bool hasUnreadable = false; ///< one of them didn't tell its name: any of whom it isn't known may be that one

    /// True where what isn't among the items isn't there.
    bool tellsAll() const { return wasRead && !hasUnreadable; }

    /// The same items, known or unknown; what the output said besides doesn't count.
    bool operator==(const LoginItemList& other) const { return items == other.items && wasRead == other.wasRead; }
};

/// Why nothing is known of them, in a few words: "not permitted", "not answered", or what the system said. Empty where they were
/// read.
QString unreadReason(const LoginItemList& list);

/// True for a name or path that looks like an application's helper: one of its embedded launch agents, or something
/// that calls itself an agent.
bool looksLikeBackgroundAgent(const QString& text);
bool looksLikeBackgroundAgent(const LoginItem& item);
/// True for the program's own. Whether it is launched at login its user says in Settings, and no startup configuration does.
bool isOwnLoginItem(const LoginItem& item);
/// True for a login item that nothing touches: one whose name, path or background record is that of audio software, and the
/// program's own.
bool isProtectedLoginItem(const LoginItem& item);

/// True for the login item of an application: by its path, or by its name where the application's file is gone.
/// @param path  comparable
bool isLoginItemOf(const LoginItem& item, const QString& path);
/// A path as System Events writes it, because only so does it find the item; as it is given where no item has it.
QString listedPath(const QList<LoginItem>& items, const QString& path);

StartupItem startupItemOf(const LoginItem& item);

} // namespace quorvane
