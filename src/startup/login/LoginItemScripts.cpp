#include "startup/login/LoginItemScripts.h"

#include "core/Quoting.h"

#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Deletes all items that the comparison matches: "name is …", "path is …".
QString removalScript(const QString& property, const QString& value) {
    return uR"(tell application "System Events"
    try
        set matches to every login item whose %1 is "%2"
        if (count of matches) is 0 then
            return "missing"
        end if
        repeat with loginItem in matches
            delete loginItem
        end repeat
        return "ok"
    on error errMsg
        return "error:" & errMsg
    end try
end tell)"_s.arg(property, appleScriptText(value));
}

} // namespace

QString readLoginItemsScript() {
    return uR"(tell application "System Events"
    set output to ""
    try
        repeat with loginItem in login items
            set itemName to name of loginItem
            set itemPath to path of loginItem
            set itemHidden to hidden of loginItem
            set output to output & itemName & "|" & itemPath & "|" & itemHidden & "\n"
        end repeat
    on error errMsg
        return "ERROR|" & errMsg
    end try
    return output
end tell)"_s;
}

QString systemEventsProbeScript() {
    return u"tell application \"System Events\" to return 0"_s;
}

QString removeLoginItemByNameScript(const QString& name) {
    return removalScript(u"name"_s, name);
}

QString removeLoginItemAtPathScript(const QString& path) {
    return removalScript(u"path"_s, path);
}

QString addLoginItemScript(const QString& path, bool hidden) {
    return uR"(tell application "System Events"
    try
        set matches to every login item whose path is "%1"
        if (count of matches) > 0 then
            return "exists"
        end if
        make new login item at end of login items with properties {path:"%1", hidden:%2}
        return "ok"
    on error errMsg
        return "error:" & errMsg
    end try
end tell)"_s.arg(appleScriptText(path), hidden ? u"true"_s : u"false"_s);
}

LoginItemList parsedLoginItems(const QString& output) {
    if (output.isEmpty() || output.startsWith(u"ERROR|"_s)) {
        return {};
    }
    LoginItemList list{{}, true, output};
    bool hasLines = false;
    for (const QStringView line : QStringTokenizer{output, u'\n', Qt::SkipEmptyParts}) {
        hasLines = true;
        const qsizetype afterName = line.indexOf(u'|');
        const qsizetype afterPath = afterName < 0 ? -1 : line.indexOf(u'|', afterName + 1);
        if (afterPath < 0) {
            continue;
        }
        const QStringView path = line.mid(afterName + 1, afterPath - afterName - 1);
        list.items.append({line.left(afterName).toString(), path == kMissingPath ? QString() : path.toString(),
                           line.mid(afterPath + 1).compare(u"true", Qt::CaseInsensitive) == 0});
    }
    if (hasLines && list.items.isEmpty()) {
        return {}; // something else
    }
    return list;
}

QString shownLine(const LoginItemList& list, const QString& name) {
    if (!name.contains(u'|') && !name.contains(u'\n')) {
        return {};
    }
    const QString lines = u'\n' + list.output;
    const qsizetype start = lines.indexOf(u'\n' + name + u'|');
    if (start < 0) {
        return {};
    }
    const qsizetype end = lines.indexOf(u'\n', start + 1 + name.size());
    return lines.mid(start + 1, end < 0 ? -1 : end - start - 1);
}

} // namespace quorvane
