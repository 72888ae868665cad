#pragma once

#include "fakes/AskedOfSystemEvents.h"
#include "fakes/ScriptedSystem.h"

#include "startup/items/LoginItem.h"

#include <algorithm>

namespace quorvane {

/// System Events with a list of login items. It knows the scripts that are sent to it by their whole text, changes the
/// list and answers as the real one does. In the trace each script stands as what it asks for:
///
///     $> System Events: list
///     $> System Events: delete where name is Dropbox; delete where path is /Applications/A.app and name is A
///     $> System Events: add /Applications/Live.app hidden:false
///
/// A script that differs in a single character isn't known; it stands in the trace as it is.
class ScriptedLoginItems {
public:
    ScriptedLoginItems(ScriptedCommandLauncher& commands, QStringList& trace);

    QList<LoginItem> items;
    QByteArray denial;          ///< when it isn't empty, osascript fails with it whatever the script
    QByteArray answer;          ///< when it isn't empty, every script prints it: "ERROR|-1743|Not authorized …"
    QByteArray listing;         ///< when it isn't empty, it is printed in the place of the list
    QSet<QString> unchangeable; ///< names and paths of items whose deletion or addition is an error
    QSet<QString> undeletable;  ///< names of items that stay although their deletion succeeds
    int changeError = -10000;   ///< the number of that error
    std::optional<qsizetype> lastAnswered; ///< how many steps of a script are carried out and answered
    bool deletesByName = false;            ///< a deletion takes the first item of the name of the one that it is for

    QStringList names() const;

private:
    std::optional<CommandOutcome> response(const QStringList& arguments);
    QByteArray reply(const AskedOfSystemEvents& asked);
    QByteArray listed() const;
    QByteArray namesOf(const QList<qsizetype>& numbers) const;
    QByteArray hid(const AskedOfSystemEvents::Step& step);
    QByteArray deleted(const AskedOfSystemEvents::Step& step);
    QByteArray added(const AskedOfSystemEvents::Step& step);

    QStringList& m_trace;
};

/// A SystemManager over scripted ports, with login items.
class ScriptedStartup : public ScriptedSystem {
protected:
    ScriptedLoginItems loginItems{commands, trace};
};

} // namespace quorvane
