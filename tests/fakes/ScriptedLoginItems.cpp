#include "fakes/ScriptedLoginItems.h"

namespace quorvane {

using namespace Qt::StringLiterals;

using Step = AskedOfSystemEvents::Step;

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

std::optional<CommandOutcome> ScriptedLoginItems::response(const QStringList& arguments) {
    if (arguments.size() != 3 || arguments.at(0) != u"/usr/bin/osascript" || arguments.at(1) != u"-e") {
        return std::nullopt;
    }
    const std::optional<AskedOfSystemEvents> asked = askedOfSystemEvents(arguments.at(2));
    if (!asked) {
        return std::nullopt;
    }
    m_trace.last() = u"$> System Events: "_s + asked->purpose();
    if (!denial.isEmpty()) {
        CommandOutcome outcome = ScriptedCommandLauncher::succeeded({});
        outcome.code = 1;
        outcome.standardError = denial;
        return outcome;
    }
    return ScriptedCommandLauncher::succeeded(answer.isEmpty() ? reply(*asked) : answer);
}

/// The tool ends what a script prints with a line end of its own.
QByteArray ScriptedLoginItems::reply(const AskedOfSystemEvents& asked) {
    if (!asked.numbers.isEmpty()) {
        return namesOf(asked.numbers);
    }
    if (asked.steps.isEmpty()) {
        return listing.isEmpty() ? listed() : listing;
    }
    QByteArray lines;
    for (qsizetype i = 0; i < std::min(asked.steps.size(), lastAnswered.value_or(asked.steps.size())); ++i) {
        const Step& step = asked.steps.at(i);
        lines += step.isHiding ? hid(step) : step.isAddition ? added(step) : deleted(step);
    }
    return lines + '\n';
}

QByteArray ScriptedLoginItems::listed() const {
    QString lines;
    for (const LoginItem& item : items) {
        lines += item.name + u'|' + item.path + (item.hidden ? u"|true\n"_s : u"|false\n"_s);
    }
    return lines.toUtf8() + '\n';
}

QByteArray ScriptedLoginItems::namesOf(const QList<qsizetype>& numbers) const {
    QString lines;
    for (const qsizetype number : numbers) {
        lines += items.value(number - 1).name + u'\n';
    }
    return lines.toUtf8() + '\n';
}

QByteArray ScriptedLoginItems::hid(const Step& step) {
    if (unchangeable.contains(step.name) || unchangeable.contains(step.path)) {
        return "error:" + QByteArray::number(changeError) + '\n';
    }
    bool isThere = false;
    for (LoginItem& item : items) {
        if (step.isFor(item.name, item.path)) {
            item.hidden = step.hidden;
            isThere = true;
        }
    }
    return isThere ? "ok\n" : "missing\n";
}

QByteArray ScriptedLoginItems::deleted(const Step& step) {
    const auto isMatch = [&step](const LoginItem& item) { return step.isFor(item.name, item.path); };
    const auto found = std::find_if(items.begin(), items.end(), isMatch);
    if (found == items.end()) {
        return "missing\n";
    }
    if (unchangeable.contains(step.name) || unchangeable.contains(step.path)) {
        return "error:" + QByteArray::number(changeError) + '\n';
    }
    if (deletesByName) {
        const QString name = found->name;
        items.erase(std::find_if(items.begin(), items.end(), [&name](const LoginItem& item) {
            return item.name.compare(name, Qt::CaseInsensitive) == 0;
        }));
        return "ok\n";
    }
    items.removeIf(
        [this, &isMatch](const LoginItem& item) { return isMatch(item) && !undeletable.contains(item.name); });
    return "ok\n";
}

QByteArray ScriptedLoginItems::added(const Step& step) {
    if (unchangeable.contains(step.path)) {
        return "error:" + QByteArray::number(changeError) + '\n';
    }
    const auto isThere = [&step](const LoginItem& item) { return step.isFor(item.name, item.path); };
    if (std::any_of(items.begin(), items.end(), isThere)) {
        return "exists\n";
    }
    const QString name = step.path.mid(step.path.lastIndexOf(u'/') + 1);
    items.append({name.endsWith(u".app"_s) ? name.chopped(4) : name, step.path, step.hidden});
    return "ok\n";
}

} // namespace quorvane
