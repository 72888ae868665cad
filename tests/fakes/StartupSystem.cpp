#include "fakes/StartupSystem.h"

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
    return record;
}

QByteArray dumpOf(const QList<BackgroundTaskItem>& records) {
    QString text = u"========================\n Records for UID 501 : 0\n========================\n\n Items:\n\n"_s;
    for (const BackgroundTaskItem& record : records) {
        text += u" #1:\n   Name: "_s + record.name + u"\n   Type: "_s + record.itemType + u"\n   Disposition: "_s +
                record.disposition + u"\n   Identifier: "_s + record.identifier + u"\n   URL: "_s +
                record.url.value_or(u"(null)"_s) + u'\n';
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
    return lines.join(u'\n') + u'\n';
}

QString StartupSystem::prompted(const QString& line, const QString& prompt) {
    return u"& "_s + ScriptedScriptEngine::withoutPath(adminScriptSource(line, prompt)) + u'\n';
}

qsizetype StartupSystem::prompts() const {
    return trace.filter(u"& do shell script"_s).size();
}

QString StartupSystem::dumpLine() const {
    return u"/usr/bin/sfltool dumpbtm > '"_s + system.backgroundDumpPath() + u"' 2>/dev/null || true"_s;
}

void StartupSystem::cacheDump(const QList<BackgroundTaskItem>& records) {
    commands.print(u"/usr/bin/sfltool dumpbtm"_s, dumpOf(records));
    QCoro::waitFor(system.loadBackgroundTaskItems());
    trace.clear();
}

bool StartupSystem::isActive(const QString& label) const {
    return system.backgroundTaskItems()->isActive(label);
}

QString StartupSystem::launchctlLines(const QString& label) {
    return u"$> /bin/launchctl bootout gui/501/"_s + label + u"\n$> /bin/launchctl disable gui/501/"_s + label + u'\n';
}

QString StartupSystem::queuedLaunchctl(const QString& label) {
    return u"/bin/launchctl bootout gui/501 "_s + label + u" 2>/dev/null || true ; /bin/launchctl disable gui/501/"_s +
           label;
}

QString StartupSystem::quarantineLine(const QString& source, const QString& label) {
    const QString backup = u"/Users/alex/.quorvane_backup"_s;
    const QString folder = kQuarantine + label;
    const QString destination = folder + source.mid(source.lastIndexOf(u'/'));
    QString isRealSource;
    for (qsizetype end = source.indexOf(u'/', 1); end > 0; end = source.indexOf(u'/', end + 1)) {
        isRealSource += u"[ ! -L '"_s + source.left(end) + u"' ] && "_s;
    }
    isRealSource += u"[ ! -L '"_s + source + u"' ] && "_s;
    return u"[ ! -L '"_s + backup + u"' ] && [ ! -L '"_s + backup + u"/bundled-login-items' ] && [ ! -L '"_s + folder +
           u"' ] && mkdir -p '"_s + folder + u"' && [ ! -e '"_s + destination + u"' ] && [ ! -L '"_s + destination +
           u"' ] && "_s + isRealSource + u"/usr/bin/ditto '"_s + source + u"' '"_s + destination + u"' && "_s +
           isRealSource + u"rm -rf '"_s + source + u'\'';
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
        const auto [purpose, reply] = answerOfSystemEvents(arguments.last());
        m_purposes.insert(line, u"$> osascript: "_s + purpose);
        CommandOutcome outcome = ScriptedCommandLauncher::succeeded(reply.toUtf8());
        if (deniesSystemEvents) {
            outcome.standardOutput.clear();
            outcome.standardError = "Not authorized to send Apple events to System Events. (-1743)\n";
            outcome.code = 1;
        }
        return outcome;
    }
    if (arguments.first() == u"/usr/bin/ditto" && !stuck.contains(arguments.at(1))) {
        copy(arguments.at(1), arguments.at(2));
    }
    return std::nullopt;
}

QPair<QString, QString> StartupSystem::answerOfSystemEvents(const QString& script) {
    static const QRegularExpression addition(u"path:\"(.*)\", hidden:(true|false)"_s);
    static const QRegularExpression removal(u"whose (name|path) is \"(.*)\""_s);
    if (script == readLoginItemsScript()) {
        return {u"read"_s, listing()};
    }
    if (script == systemEventsProbeScript()) {
        return {u"probe"_s, u"0"_s};
    }
    if (const auto match = addition.match(script); match.hasMatch()) {
        const QString path = match.captured(1);
        EXPECT_EQ(script, addLoginItemScript(path, match.captured(2) == u"true"));
        return {u"add "_s + path, add({nameInPath(path), path, match.captured(2) == u"true"})};
    }
    const auto match = removal.match(script);
    EXPECT_TRUE(match.hasMatch());
    const QString value = match.captured(2);
    const bool isByName = match.captured(1) == u"name";
    EXPECT_EQ(script, isByName ? removeLoginItemByNameScript(value) : removeLoginItemAtPathScript(value));
    return {u"remove "_s + match.captured(1) + u' ' + value, remove(value, isByName)};
}

QString StartupSystem::listing() const {
    QString text;
    for (const LoginItem& item : login) {
        text += item.name + u'|' + item.path + u'|' + (item.hidden ? u"true"_s : u"false"_s) + u'\n';
    }
    return text.isEmpty() ? u"\n"_s : text; // the tool ends an empty reply, too
}

QString StartupSystem::add(const LoginItem& item) {
    if (!deniesSystemEvents) {
        login.append(item);
    }
    return u"ok"_s;
}

QString StartupSystem::remove(const QString& value, bool isByName) {
    const qsizetype count = deniesSystemEvents ? 0 : login.removeIf([&](const LoginItem& item) {
        return (isByName ? item.name : item.path).compare(value, Qt::CaseInsensitive) == 0;
    });
    return count > 0 ? u"ok"_s : u"missing"_s;
}

void StartupSystem::carryOutAsRoot(const QString& source) {
    static const QRegularExpression move(u"&& mv '([^']*)' '([^']*)'"_s);
    static const QRegularExpression quarantine(u"&& /usr/bin/ditto '([^']*)' '([^']*)' &&"_s);
    if (source.contains(u"sfltool dumpbtm"_s) && !dump.isNull()) {
        files.addFile(system.backgroundDumpPath(), dump);
        files.setOwner(system.backgroundDumpPath(), 0);
    }
    for (const QRegularExpression& expression : {move, quarantine}) {
        for (const QRegularExpressionMatch& match : expression.globalMatch(source)) {
            moveAsRoot(match.captured(1), match.captured(2));
        }
    }
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
