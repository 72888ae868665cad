#include "fakes/ScriptedSystem.h"

#include "core/UserDefaultKeys.h"
#include "fakes/ReadingLines.h"
#include "tweaks/TweakCatalogue.h"

namespace quorvane {

QFuture<CommandOutcome> ScriptedCommandLauncher::run(QStringList arguments, OutputCapture capture) {
    const QString line = commandLine(arguments);
    m_trace.append((capture == OutputCapture::Capture ? u"$> "_s : u"$ "_s) + line);
    const std::optional<CommandOutcome> answer = respond ? respond(arguments) : std::nullopt;
    const CommandOutcome ofLaunchd = launchd.answer(arguments).value_or(succeeded({}));
    const CommandOutcome outcome = answer.value_or(m_answers.value(line, ofLaunchd));
    return m_isHolding ? heldBack(outcome) : QtFuture::makeReadyFuture(outcome);
}

void ScriptedCommandLauncher::release() {
    m_isHolding = false;
    for (auto& [promise, outcome] : std::exchange(m_held, {})) {
        promise.addResult(outcome);
        promise.finish();
    }
}

void ScriptedCommandLauncher::answer(const QString& line, const CommandOutcome& outcome) {
    m_answers.insert(line, outcome);
}

void ScriptedCommandLauncher::print(const QString& line, const QByteArray& output) {
    answer(line, succeeded(output));
}

void ScriptedCommandLauncher::fail(const QString& line, int status, const QByteArray& error) {
    CommandOutcome outcome = succeeded({});
    outcome.code = status;
    outcome.standardError = error;
    answer(line, outcome);
}

CommandOutcome ScriptedCommandLauncher::succeeded(const QByteArray& output) {
    CommandOutcome outcome;
    outcome.ending = CommandOutcome::Ending::Exited;
    outcome.standardOutput = output;
    return outcome;
}

QList<CommandOutcome> ScriptedCommandLauncher::unanswered() {
    CommandOutcome cutOff = succeeded("1\n");
    cutOff.ending = CommandOutcome::Ending::EndedBySignal;
    cutOff.code = 9;
    CommandOutcome killed = succeeded({});
    killed.ending = CommandOutcome::Ending::EndedBySignal;
    killed.code = 15;
    CommandOutcome notLaunched;
    notLaunched.launchError = u"Resource temporarily unavailable"_s;
    CommandOutcome notFound = succeeded({});
    notFound.code = 127;
    CommandOutcome notExecutable = succeeded({});
    notExecutable.code = 126;
    return {cutOff, killed, notLaunched, notFound, notExecutable};
}

QFuture<CommandOutcome> ScriptedCommandLauncher::heldBack(const CommandOutcome& outcome) {
    auto& [promise, kept] = m_held.emplace_back(QPromise<CommandOutcome>(), outcome);
    promise.start();
    return promise.future();
}

QString ScriptedScriptEngine::withoutPath(QString source) {
    static const QString begin = u"do shell script \""_s;
    static const QString path = u"PATH=/usr/bin:/bin:/usr/sbin:/sbin; export PATH; "_s;
    EXPECT_TRUE(source.startsWith(begin + path)) << source.toStdString();
    return source.remove(begin.size(), path.size());
}

QFuture<ScriptOutcome> ScriptedScriptEngine::run(QString source) {
    m_trace.append(u"& "_s + withoutPath(source));
    const ScriptOutcome outcome = m_outcomes.isEmpty() ? ScriptOutcome{QString()} : m_outcomes.takeFirst();
    if (outcome.result && carryOut) {
        carryOut(source);
    }
    return QtFuture::makeReadyFuture(outcome);
}

void ScriptedScriptEngine::answerNext(const ScriptOutcome& outcome) {
    m_outcomes.append(outcome);
}

void ScriptedScriptEngine::failNext(const QString& message) {
    answerNext({std::nullopt, message});
}

QString FixedMachine::homeFolder() const {
    return u"/Users/alex"_s;
}

QString FixedMachine::applicationSupportFolder() const {
    return u"/Users/alex/Library/Application Support"_s;
}

QString FixedMachine::temporaryFolder() const {
    return u"/var/folders/zz/alex/T"_s;
}

QString FixedMachine::computerName() const {
    return u"Studio"_s;
}

QString FixedMachine::dateAndTimeText(const QDateTime& moment) const {
    return QLocale::c().toString(moment.toUTC(), u"MMM d, yyyy 'at' h:mm AP"_s);
}

ScriptedSystem::ScriptedSystem() {
    for (const QString& line : {reading::kSystemUpdateDownload, reading::kSystemUpdateInstall,
                                reading::kSystemStoreUpdate, reading::kSounds}) {
        commands.fail(line, 1);
    }
    files.addFile(kTimeMachineSettings, "settings");
    setAutomaticBackups(false);
    setBackupDestination(true);
    QObject::connect(&system, &SystemManager::messageLogged, [this](const QString& line) { trace.append(line); });
    QObject::connect(&notifications, &NotificationCenter::posted,
                     [this](const QString& name, const QVariantMap& userInfo) {
                         posted.append({name, userInfo});
                     });
}

ScriptedSystem::~ScriptedSystem() = default;

void ScriptedSystem::setAutomaticBackups(bool areOn) {
    commands.print(reading::kTimeMachine, areOn ? "1\n" : "0\n");
}

void ScriptedSystem::setBackupDestination(bool isThere) {
    if (isThere) {
        commands.print(reading::kBackupDestination, "====\nName          : Tape\nKind          : Local\n");
    } else {
        commands.fail(reading::kBackupDestination, 1, "tmutil: No destinations configured.\n");
    }
}

void ScriptedSystem::makeBackupsUnreadable() {
    files.failOn(MemoryFileManager::Operation::Read, kTimeMachineSettings);
    commands.fail(reading::kTimeMachine, 1); // as if the key weren't set
}

QString ScriptedSystem::takeTrace() {
    return withLooksAtTweaks(withLooksAtLaunchd(std::exchange(trace, {}).join(u'\n') + u'\n'));
}

void ScriptedSystem::keepWhatIsWritten() {
    commands.print(reading::kPower, "AC Power:\n standby 1\n disksleep 10\n sleep 1\n sms 1\n");
    commands.print(reading::kSpotlight, reading::indexing("Indexing enabled. "));
    commands.print(reading::kSpotlightOfAll, reading::indexing("Indexing enabled. "));
    commands.respond = [this, respond = commands.respond](const QStringList& arguments) {
        const std::optional<CommandOutcome> answer = answerOfPreferences(arguments);
        return answer || !respond ? answer : respond(arguments);
    };
    scripts.carryOut = [this, carryOut = scripts.carryOut](const QString& source) {
        if (source.contains(u"tmutil enable"_s) || source.contains(u"tmutil disable"_s)) {
            setAutomaticBackups(source.contains(u"tmutil enable"_s));
        }
        if (carryOut) {
            carryOut(source);
        }
    };
}

/// None of what was never written.
std::optional<CommandOutcome> ScriptedSystem::answerOfPreferences(const QStringList& arguments) {
    static const QMap<QString, QString> kSwitches{{u"YES"_s, u"1"_s}, {u"NO"_s, u"0"_s}, {u"true"_s, u"1"_s}};
    const qsizetype verb = arguments.value(1) == u"-currentHost" ? 2 : 1;
    const QString place = arguments.mid(verb + 1, 2).join(u' ');
    if (arguments.first() != u"/usr/bin/defaults"_s) {
        return std::nullopt;
    }
    if (arguments.value(verb) == u"read" && m_written.contains(place)) {
        CommandOutcome outcome = ScriptedCommandLauncher::succeeded(m_written[place].value_or(QString()).toUtf8());
        outcome.code = m_written[place] ? 0 : 1;
        return outcome;
    }
    if (arguments.value(verb) == u"write") {
        m_written[place] = kSwitches.value(arguments.last(), arguments.last());
    } else if (arguments.value(verb) == u"delete") {
        m_written[place] = std::nullopt;
    }
    return std::nullopt;
}

void ScriptedSystem::noteEveryTweakChanged() {
    QStringList keys;
    for (const Tweak& tweak : tweakCatalogue()) {
        keys.append(tweak.key);
    }
    keys.sort();
    defaults.setStringArray(kQuorvaneChangedTweaks, keys);
}

QByteArray ScriptedSystem::wholeDump(const QByteArray& printed) {
    return printed + "Quorvane: end of the list\n";
}

void ScriptedSystem::takeDump(const QByteArray& printed) {
    files.addFile(system.backgroundDumpPath(), wholeDump(printed));
    QCoro::waitFor(system.loadPrivilegedBackgroundDump());
    trace.clear();
}

Host ScriptedSystem::hostWith(FileManager& disk, Clock& time) {
    return {commands, scripts, disk,     defaults,   machine,  propertyLists,       bundles,    permissions,
            cloud,    time,    keychain, biometrics, displays, systemNotifications, filePanels, loginService};
}

} // namespace quorvane
