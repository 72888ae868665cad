#pragma once

#include "fakes/ScriptedSystem.h"

#include "startup/items/LoginItem.h"

#include <algorithm>

namespace quorvane {

/// System Events with a list of login items. It knows the scripts that are sent to it by their whole text, changes the
/// list and answers as the real one does. In the trace each script stands as what it asks for:
///
///     $> System Events: list
///     $> System Events: probe
///     $> System Events: delete where name is Dropbox
///     $> System Events: add /Applications/Live.app hidden:false
///
/// A script that differs in a single character isn't known; it stands in the trace as it is.
class ScriptedLoginItems {
public:
    ScriptedLoginItems(ScriptedCommandLauncher& commands, QStringList& trace);

    QList<LoginItem> items;
    QByteArray denial;          ///< when it isn't empty, every script fails with it: the program has no permission
    QByteArray listing;         ///< when it isn't empty, it is printed in the place of the list
    QSet<QString> unchangeable; ///< names and paths of items whose deletion or addition is an error
    QSet<QString> undeletable;  ///< names of items that stay although their deletion succeeds

    QStringList names() const;
    static QString listScript();
    /// @param property  "name" or "path"
    /// @param literal   the value as it stands between the quotes of the script
    static QString deletionScript(const QString& property, const QString& literal);
    static QString additionScript(const QString& literal, bool isHidden);

private:
    /// What a script asks for, and what System Events prints.
    struct Reply {
        QString purpose;
        QByteArray output;
    };

    inline static const QString kDeletionStart = u"tell application \"System Events\"\n"
                                                 "    try\n"
                                                 "        set matches to every login item whose "_s;
    inline static const QString kDeletionEnd = u"\"\n"
                                               "        if (count of matches) is 0 then\n"
                                               "            return \"missing\"\n"
                                               "        end if\n"
                                               "        repeat with loginItem in matches\n"
                                               "            delete loginItem\n"
                                               "        end repeat\n"
                                               "        return \"ok\"\n"
                                               "    on error errMsg\n"
                                               "        return \"error:\" & errMsg\n"
                                               "    end try\n"
                                               "end tell"_s;
    inline static const QString kAdditionStart = u"tell application \"System Events\"\n"
                                                 "    try\n"
                                                 "        set matches to every login item whose path is \""_s;
    inline static const QString kAdditionMiddle =
        u"\"\n"
        "        if (count of matches) > 0 then\n"
        "            return \"exists\"\n"
        "        end if\n"
        "        make new login item at end of login items with properties {path:\""_s;
    inline static const QString kAdditionEnd = u"}\n"
                                               "        return \"ok\"\n"
                                               "    on error errMsg\n"
                                               "        return \"error:\" & errMsg\n"
                                               "    end try\n"
                                               "end tell"_s;

    std::optional<CommandOutcome> response(const QStringList& arguments);
    std::optional<Reply> reply(const QString& script);

    /// What stands between the quotes behind the comparison, up to the first quote that no backslash escapes.
    static QString literalIn(const QString& script, const QString& property);
    static QString unescaped(const QString& literal);
    QByteArray listed() const;
    QByteArray deleted(const QString& property, const QString& value);
    QByteArray added(const QString& path, bool isHidden);

    QStringList& m_trace;
};

/// A SystemManager over scripted ports, with login items.
class ScriptedStartup : public ScriptedSystem {
protected:
    ScriptedLoginItems loginItems{commands, trace};
};

} // namespace quorvane
