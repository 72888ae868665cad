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
    ScriptedLoginItems(ScriptedCommandLauncher& commands, QStringList& trace)
        : m_trace(trace) {
        commands.respond = [this](const QStringList& arguments) { return response(arguments); };
    }

    QList<LoginItem> items;
    QByteArray denial;          ///< when it isn't empty, every script fails with it: the program has no permission
    QByteArray listing;         ///< when it isn't empty, it is printed in the place of the list
    QSet<QString> unchangeable; ///< names and paths of items whose deletion or addition is an error
    QSet<QString> undeletable;  ///< names of items that stay although their deletion succeeds

    QStringList names() const {
        QStringList found;
        for (const LoginItem& item : items) {
            found.append(item.name);
        }
        return found;
    }

    static QString listScript() {
        return u"tell application \"System Events\"\n"
               "    set output to \"\"\n"
               "    try\n"
               "        repeat with loginItem in login items\n"
               "            set itemName to name of loginItem\n"
               "            set itemPath to path of loginItem\n"
               "            set itemHidden to hidden of loginItem\n"
               "            set output to output & itemName & \"|\" & itemPath & \"|\" & itemHidden & \"\\n\"\n"
               "        end repeat\n"
               "    on error errMsg\n"
               "        return \"ERROR|\" & errMsg\n"
               "    end try\n"
               "    return output\n"
               "end tell"_s;
    }
    /// @param property  "name" or "path"
    /// @param literal   the value as it stands between the quotes of the script
    static QString deletionScript(const QString& property, const QString& literal) {
        return kDeletionStart + property + u" is \""_s + literal + kDeletionEnd;
    }
    static QString additionScript(const QString& literal, bool isHidden) {
        return kAdditionStart + literal + kAdditionMiddle + literal +
               (isHidden ? u"\", hidden:true"_s : u"\", hidden:false"_s) + kAdditionEnd;
    }

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

    std::optional<CommandOutcome> response(const QStringList& arguments) {
        if (arguments.size() != 3 || arguments.at(0) != u"/usr/bin/osascript" || arguments.at(1) != u"-e") {
            return std::nullopt;
        }
        const std::optional<Reply> found = reply(arguments.at(2));
        if (!found) {
            return std::nullopt;
        }
        m_trace.last() = u"$> System Events: "_s + found->purpose;
        CommandOutcome outcome = ScriptedCommandLauncher::succeeded(found->output);
        if (!denial.isEmpty()) {
            outcome.code = 1;
            outcome.standardOutput.clear();
            outcome.standardError = denial;
        }
        return outcome;
    }

    std::optional<Reply> reply(const QString& script) {
        if (script == listScript()) {
            return Reply{u"list"_s, listing.isEmpty() ? listed() : listing};
        }
        if (script == u"tell application \"System Events\" to return 0"_s) {
            return Reply{u"probe"_s, "0\n"};
        }
        for (const QString& property : {u"name"_s, u"path"_s}) {
            const QString literal = literalIn(script, property);
            if (!literal.isEmpty() && script == deletionScript(property, literal)) {
                return Reply{u"delete where %1 is %2"_s.arg(property, unescaped(literal)),
                             deleted(property, unescaped(literal))};
            }
        }
        const QString literal = literalIn(script, u"path"_s);
        for (const bool isHidden : {false, true}) {
            if (!literal.isEmpty() && script == additionScript(literal, isHidden)) {
                return Reply{u"add %1 hidden:%2"_s.arg(unescaped(literal), isHidden ? u"true"_s : u"false"_s),
                             added(unescaped(literal), isHidden)};
            }
        }
        return std::nullopt;
    }

    /// What stands between the quotes behind the comparison, up to the first quote that no backslash escapes.
    static QString literalIn(const QString& script, const QString& property) {
        const QString start = kDeletionStart + property + u" is \""_s;
        if (!script.startsWith(start)) {
            return {};
        }
        qsizetype end = start.size();
        while (end < script.size() && script.at(end) != u'"') {
            end += script.at(end) == u'\\' ? 2 : 1;
        }
        return script.mid(start.size(), end - start.size());
    }
    static QString unescaped(const QString& literal) {
        QString text;
        for (qsizetype place = 0; place < literal.size(); ++place) {
            place += literal.at(place) == u'\\' ? 1 : 0;
            text.append(literal.at(place));
        }
        return text;
    }

    QByteArray listed() const {
        QString lines;
        for (const LoginItem& item : items) {
            lines += item.name + u'|' + item.path + (item.hidden ? u"|true\n"_s : u"|false\n"_s);
        }
        return lines.toUtf8() + '\n';
    }

    QByteArray deleted(const QString& property, const QString& value) {
        if (!denial.isEmpty()) {
            return {};
        }
        const auto isMatch = [&property, &value](const LoginItem& item) {
            return (property == u"name" ? item.name : item.path).compare(value, Qt::CaseInsensitive) == 0;
        };
        if (std::none_of(items.begin(), items.end(), isMatch)) {
            return "missing\n";
        }
        if (unchangeable.contains(value)) {
            return "error:Some parameter is wrong.\n";
        }
        items.removeIf(
            [this, &isMatch](const LoginItem& item) { return isMatch(item) && !undeletable.contains(item.name); });
        return "ok\n";
    }

    QByteArray added(const QString& path, bool isHidden) {
        if (!denial.isEmpty()) {
            return {};
        }
        if (unchangeable.contains(path)) {
            return "error:Some parameter is wrong.\n";
        }
        const auto isThere = [&path](const LoginItem& item) {
            return item.path.compare(path, Qt::CaseInsensitive) == 0;
        };
        if (std::any_of(items.begin(), items.end(), isThere)) {
            return "exists\n";
        }
        const QString name = path.mid(path.lastIndexOf(u'/') + 1);
        items.append({name.endsWith(u".app"_s) ? name.chopped(4) : name, path, isHidden});
        return "ok\n";
    }

    QStringList& m_trace;
};

/// A SystemManager over scripted ports, with login items.
class ScriptedStartup : public ScriptedSystem {
protected:
    ScriptedLoginItems loginItems{commands, trace};
};

} // namespace quorvane
