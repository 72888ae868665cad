#include "fakes/ScriptedLoginItems.h"

namespace quorvane {

ScriptedLoginItems::ScriptedLoginItems(ScriptedCommandLauncher& commands, QStringList& trace)
    : m_trace(trace) {
    commands.respond = [this](const QStringList& arguments) { return response(arguments); };
}

QStringList ScriptedLoginItems::names() const {
    QStringList found;
    for (const LoginItem& item : items) {
        found.append(item.name);
    }
    return found;
}

QString ScriptedLoginItems::listScript() {
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

QString ScriptedLoginItems::deletionScript(const QString& property, const QString& literal) {
    return kDeletionStart + property + u" is \""_s + literal + kDeletionEnd;
}

QString ScriptedLoginItems::additionScript(const QString& literal, bool isHidden) {
    return kAdditionStart + literal + kAdditionMiddle + literal +
           (isHidden ? u"\", hidden:true"_s : u"\", hidden:false"_s) + kAdditionEnd;
}

std::optional<CommandOutcome> ScriptedLoginItems::response(const QStringList& arguments) {
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

std::optional<ScriptedLoginItems::Reply> ScriptedLoginItems::reply(const QString& script) {
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

QString ScriptedLoginItems::literalIn(const QString& script, const QString& property) {
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

QString ScriptedLoginItems::unescaped(const QString& literal) {
    QString text;
    for (qsizetype place = 0; place < literal.size(); ++place) {
        place += literal.at(place) == u'\\' ? 1 : 0;
        text.append(literal.at(place));
    }
    return text;
}

QByteArray ScriptedLoginItems::listed() const {
    QString lines;
    for (const LoginItem& item : items) {
        lines += item.name + u'|' + item.path + (item.hidden ? u"|true\n"_s : u"|false\n"_s);
    }
    return lines.toUtf8() + '\n';
}

QByteArray ScriptedLoginItems::deleted(const QString& property, const QString& value) {
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

QByteArray ScriptedLoginItems::added(const QString& path, bool isHidden) {
    if (!denial.isEmpty()) {
        return {};
    }
    if (unchangeable.contains(path)) {
        return "error:Some parameter is wrong.\n";
    }
    const auto isThere = [&path](const LoginItem& item) { return item.path.compare(path, Qt::CaseInsensitive) == 0; };
    if (std::any_of(items.begin(), items.end(), isThere)) {
        return "exists\n";
    }
    const QString name = path.mid(path.lastIndexOf(u'/') + 1);
    items.append({name.endsWith(u".app"_s) ? name.chopped(4) : name, path, isHidden});
    return "ok\n";
}

} // namespace quorvane
