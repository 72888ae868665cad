#pragma once

#include "core/NotificationCenter.h"
#include "fakes/CommandLine.h"
#include "fakes/FakeLaunchd.h"
#include "fakes/FixedBiometrics.h"
#include "fakes/FixedLoginService.h"
#include "fakes/ManualClock.h"
#include "fakes/ManualNotifications.h"
#include "fakes/MemoryBundles.h"
#include "fakes/MemoryCloudDrive.h"
#include "fakes/MemoryDisplays.h"
#include "fakes/MemoryFileManager.h"
#include "fakes/MemoryKeychain.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/ScriptedBackgroundTaskPermissions.h"
#include "fakes/ScriptedFilePanels.h"
#include "platform/Machine.h"
#include "platform/ScriptEngine.h"
#include "system/SystemManager.h"

#include <QCoroTask>
#include <QLocale>
#include <QMap>
#include <QPromise>

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace quorvane {

using namespace Qt::StringLiterals;

/// Answers commands from a table and writes them into a trace: "$ {command line}", with a "> " behind the "$" where the
/// output is captured.
class ScriptedCommandLauncher final : public CommandLauncher {
public:
    explicit ScriptedCommandLauncher(QStringList& trace)
        : m_trace(trace) {}

    QFuture<CommandOutcome> run(QStringList arguments, OutputCapture capture) override;
    void shutDown() override { m_isShutDown = true; }
    bool isShutDown() const override { return m_isShutDown; }

    /// From now on commands run on until they are released.
    void hold() { m_isHolding = true; }
    /// Those that come from now on end at once; those that run, run on.
    void holdNoFurther() { m_isHolding = false; }
    void release();

    /// Every other command succeeds without output.
    void answer(const QString& line, const CommandOutcome& outcome);
    void print(const QString& line, const QByteArray& output);
    void fail(const QString& line, int status, const QByteArray& error = {});

    /// Answers what isn't in the table.
    FakeLaunchd launchd;

    /// Asked before the table: for commands that change something or whose answers change. None leaves it to the table.
    std::function<std::optional<CommandOutcome>(const QStringList& arguments)> respond;

    static CommandOutcome succeeded(const QByteArray& output);
    /// Each way in which a tool doesn't answer: ended by a signal, with and without output, not started, not found, not
    /// executable.
    static QList<CommandOutcome> unanswered();

private:
    QFuture<CommandOutcome> heldBack(const CommandOutcome& outcome);

    QStringList& m_trace;
    QMap<QString, CommandOutcome> m_answers;
    bool m_isHolding = false;
    bool m_isShutDown = false;
    std::vector<std::pair<QPromise<CommandOutcome>, CommandOutcome>> m_held;
};

/// Answers scripts in turn and writes their sources into the trace: "& {source}", without the search path with which each
/// line of root's begins.
class ScriptedScriptEngine final : public ScriptEngine {
public:
    explicit ScriptedScriptEngine(QStringList& trace)
        : m_trace(trace) {}

    QFuture<ScriptOutcome> run(QString source) override;
    void shutDown() override {}

    /// An administrator script as the trace shows it. Fails the test of one that doesn't set root's own search path first.
    static QString withoutPath(QString source);

    /// Once there is nothing left, every script succeeds with an empty result.
    void answerNext(const ScriptOutcome& outcome);
    /// Does what a script does that succeeds.
    std::function<void(const QString& source)> carryOut;
    void failNext(const QString& message);

private:
    QStringList& m_trace;
    QList<ScriptOutcome> m_outcomes;
};

class FixedMachine final : public Machine {
public:
    QString homeFolder() const override;
    QString applicationSupportFolder() const override;
    QString temporaryFolder() const override;
    QString computerName() const override;
    QString hardwareId() const override { return id; }
    QString systemVersion() const override { return version; }
    quint32 userId() const override { return MemoryFileManager::kUser; }
    QString processName() const override { return name; }
    bool isRunning(const QString& processName) const override { return running.contains(processName); }
    QString dateAndTimeText(const QDateTime& moment) const override;

    QString id = QStringLiteral("5C1A9B3E-7D42-5F60-8E21-4A6B0C9D3E17");
    QString version = QStringLiteral("14.7");
    QString name = QStringLiteral("this process");
    QSet<QString> running{QStringLiteral("this process")};
};

/// A SystemManager over scripted ports. `trace` holds commands, scripts and log lines in the order in which they came.
/// Automatic backups are off, and that may be read. Of the system's own switches and the interface sounds no key is set; every
/// other preference is an empty text.
class ScriptedSystem : public ::testing::Test {
public:
    ~ScriptedSystem() override;

protected:
    ScriptedSystem();

    /// What was logged, run and asked since the last call, one per line. Each look at launchd, and at all that tweaks change, is one
    /// line.
    QString takeTrace();
    Host hostWith(FileManager& disk, Clock& time);
    /// What root's line leaves of a background task list that is whole.
    static QByteArray wholeDump(const QByteArray& printed);
    /// The program knows this list already.
    void takeDump(const QByteArray& printed);

    /// What is written to the preferences is read there again, `tmutil` does what root's line tells it, and Spotlight and power are as
    /// a fresh macOS has them.
    void keepWhatIsWritten();
    /// As where the program has put all tweaks in force. A flow that ends looks at them once more then.
    void noteEveryTweakChanged();

    inline static const QString kTimeMachineSettings = u"/Library/Preferences/com.apple.TimeMachine.plist"_s;
    void setAutomaticBackups(bool areOn);
    void setBackupDestination(bool isThere);
    /// Takes Full Disk Access from the program.
    void makeBackupsUnreadable();

    QStringList trace;
    QList<QPair<QString, QVariantMap>> posted;
    ScriptedCommandLauncher commands{trace};
    ScriptedScriptEngine scripts{trace};
    MemoryFileManager files;
    MemoryUserDefaults defaults;
    FixedMachine machine;
    MemoryPropertyLists propertyLists;
    MemoryBundles bundles;
    ScriptedBackgroundTaskPermissions permissions{trace};
    MemoryCloudDrive cloud{files};
    ManualClock clock;
    MemoryKeychain keychain;
    FixedBiometrics biometrics;
    MemoryDisplays displays{files};
    ManualNotifications systemNotifications;
    ScriptedFilePanels filePanels{files};
    FixedLoginService loginService;
    NotificationCenter notifications;
    Host host = hostWith(files, clock);
    SystemManager system{host, notifications};

private:
    std::optional<CommandOutcome> answerOfPreferences(const QStringList& arguments);

    QMap<QString, std::optional<QString>> m_written; ///< by domain and key; none where the key was deleted
};

} // namespace quorvane
