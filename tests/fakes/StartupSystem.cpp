#include "fakes/StartupSystem.h"

#include "fakes/ReadingLines.h"

#include "fakes/BackgroundList.h"

namespace quorvane {

void PrintTo(const ApplyVerificationResult& result, std::ostream* stream) {
    for (const auto& [word, items] : {std::pair("ok", result.verified), std::pair("missing", result.failed)}) {
        for (const ApplyVerificationResult::Item& item : items) {
            *stream << "\n  " << word << ' ' << qPrintable(item.name + u" — "_s + item.detail.value_or(QString()));
        }
    }
}

BackgroundTaskItem backgroundRecord(const QString& name, const QString& label, const QString& parent,
                                    const QString& type) {
    BackgroundTaskItem record;
    record.name = name;
    record.identifier = u"4."_s + label;
    record.itemType = type;
    record.disposition = u"[enabled, allowed, notified] (0xb)"_s;
    if (!parent.isEmpty()) {
        record.parentIdentifier = u"2."_s + parent;
    }
    return record;
}

BackgroundTaskItem applicationRecord(const QString& name, const QString& label) {
    BackgroundTaskItem record = backgroundRecord(name, label, {}, u"app (0x2)"_s);
    record.identifier = u"2."_s + label;
    record.url = u"file:///Applications/"_s + name + u".app/"_s;
    record.disposition = u"[disabled, allowed, notified] (0xa)"_s; // it only holds what is in it
    return record;
}

QByteArray dumpOf(const QList<BackgroundTaskItem>& records) {
    QString text = u"========================\n Records for UID 501 : 0\n========================\n\n Items:\n\n"_s;
    for (const BackgroundTaskItem& record : records) {
        text += u" #1:\n   Name: "_s + record.name + u"\n   Type: "_s + record.itemType + u"\n   Disposition: "_s +
                record.disposition + u"\n   Identifier: "_s + record.identifier + u"\n   URL: "_s +
                record.url.value_or(u"(null)"_s) + u'\n';
        if (record.bundleIdentifier) {
            text += u"   Bundle Identifier: "_s + *record.bundleIdentifier + u'\n';
        }
        if (!record.flags.isEmpty()) {
            text += u"   Flags: "_s + record.flags + u'\n';
        }
        if (record.parentIdentifier) {
            text += u"   Parent Identifier: "_s + *record.parentIdentifier + u'\n';
        }
    }
    return text.toUtf8();
}

StartupItem switchedOff(StartupItemKind kind, const QString& id, const QString& name,
                        const std::optional<QString>& launchIdentifier) {
    StartupItem item;
    item.id = id;
    item.kind = kind;
    item.name = name;
    item.launchIdentifier = launchIdentifier;
    item.runsAtStartup = false;
    return item;
}

StartupItem loginAppOff(const QString& name) {
    return switchedOff(StartupItemKind::loginApp, u"login:"_s + name, name);
}

StartupItem launchAgentOff(const QString& fileName) {
    return switchedOff(StartupItemKind::launchAgent, launchItemId(fileName), fileName, fileName);
}

StartupItem backgroundItemOff(const QString& label) {
    return switchedOff(StartupItemKind::backgroundLoginItem, backgroundItemId(label), label, label);
}

StartupSystem::StartupSystem() {
    commands.respond = [this](const QStringList& arguments) { return answer(arguments); };
    scripts.carryOut = [this](const QString& source) { carryOutAsRoot(source); };
}

StartupSystem::~StartupSystem() = default;

QString StartupSystem::takeTrace() {
    QStringList lines = std::exchange(trace, {});
    for (QString& line : lines) {
        line = m_purposes.value(line, line);
    }
    return withLooksAtTweaks(withLooksAtLaunchd(lines.join(u'\n') + u'\n'));
}

QString StartupSystem::prompted(const QString& line, const QString& prompt) {
    return u"& "_s + ScriptedScriptEngine::withoutPath(adminScriptSource(line, prompt)) + u'\n';
}

qsizetype StartupSystem::prompts() const {
    return trace.filter(u"& do shell script"_s).size();
}

QString StartupSystem::dumpLine() const {
    return backgroundListLine(system.backgroundDumpPath());
}

void StartupSystem::cacheDump(const QList<BackgroundTaskItem>& records) {
    takeDump(dumpOf(records));
}

QString StartupSystem::launchctlLines(const QString& label) {
    return u"$ /bin/launchctl disable gui/501/"_s + label + u"\n$ /bin/launchctl bootout gui/501/"_s + label + u'\n';
}

QString StartupSystem::queuedLaunchctl(const QString& label) {
    return u"/bin/launchctl bootout system/"_s + label + u" 2>/dev/null || true ; /bin/launchctl disable system/"_s +
           label;
}

void StartupSystem::giveToRoot(const QString& path) {
    if (files.status(path).kind == FileStatus::Kind::Folder) {
        for (const QString& name : files.list(path)) {
            giveToRoot(path + u'/' + name);
        }
    }
    files.makeUnwritable(path);
}

std::optional<CommandOutcome> StartupSystem::answer(const QStringList& arguments) {
    if (arguments.first() == u"/usr/bin/osascript") {
        const QString line = u"$> "_s + commandLine(arguments);
        const std::optional<AskedOfSystemEvents> asked = askedOfSystemEvents(arguments.last());
        if (!asked) {
            return std::nullopt; // stands in the trace as it is
        }
        m_purposes.insert(line, u"$> osascript: "_s + asked->purpose());
        return ScriptedCommandLauncher::succeeded(
            deniesSystemEvents ? "ERROR|-1743|Not authorized to send Apple events to System Events.\n"
                               : answerOfSystemEvents(*asked).toUtf8());
    }
    return std::nullopt;
}

QString StartupSystem::answerOfSystemEvents(const AskedOfSystemEvents& asked) {
    QString answers;
    for (const qsizetype number : asked.numbers) {
        answers += login.value(number - 1).name + u'\n';
    }
    if (asked.steps.isEmpty()) {
        return asked.numbers.isEmpty() ? listing() : answers;
    }
    for (const AskedOfSystemEvents::Step& step : asked.steps) {
        answers += step.isHiding     ? hide(step)
                   : step.isAddition ? add({nameInPath(step.path), step.path, step.hidden})
                                     : remove(step);
    }
    return answers;
}

QString StartupSystem::listing() const {
    QString text;
    for (const LoginItem& item : login) {
        text += item.name + u'|' + item.path + u'|' + (item.hidden ? u"true"_s : u"false"_s) + u'\n';
    }
    return text.isEmpty() ? u"\n"_s : text; // the tool ends an empty reply, too
}

QString StartupSystem::add(const LoginItem& item) {
    login.append(item);
    return u"ok\n"_s;
}

QString StartupSystem::hide(const AskedOfSystemEvents::Step& step) {
    bool isThere = false;
    for (LoginItem& item : login) {
        if (step.isFor(item.name, item.path)) {
            item.hidden = step.hidden;
            isThere = true;
        }
    }
    return isThere ? u"ok\n"_s : u"missing\n"_s;
}

QString StartupSystem::remove(const AskedOfSystemEvents::Step& step) {
    const qsizetype count = login.removeIf([&](const LoginItem& item) { return step.isFor(item.name, item.path); });
    return count > 0 ? u"ok\n"_s : u"missing\n"_s;
}

void StartupSystem::carryOutAsRoot(const QString& source) {
    static const QRegularExpression move(u"&& mv '([^']*)' '([^']*)'"_s);
    if (source.contains(u"sfltool dumpbtm"_s) && !dump.isNull()) {
        files.addFile(system.backgroundDumpPath(), wholeDump(dump));
        files.setOwner(system.backgroundDumpPath(), 0);
    }
    for (const QRegularExpressionMatch& match : move.globalMatch(source)) {
        moveAsRoot(match.captured(1), match.captured(2));
    }
    commands.launchd.carryOut(source);
}

void StartupSystem::moveAsRoot(const QString& from, const QString& to) {
    if (stuck.contains(from)) {
        return;
    }
    if (files.exists(to)) {
        removeTree(files, to);
    }
    if (files.exists(from)) {
        copy(from, to);
        files.removeAsRoot(from);
    }
}

void StartupSystem::copy(const QString& from, const QString& to) {
    if (files.status(from).kind != FileStatus::Kind::Folder) {
        files.addFile(to, files.read(from));
        return;
    }
    files.addFolders(to);
    for (const QString& name : files.list(from)) {
        copy(from + u'/' + name, to + u'/' + name);
    }
}

} // namespace quorvane
