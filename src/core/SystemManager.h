#pragma once

#include "core/CommandResult.h"
#include "platform/CommandLauncher.h"
#include "platform/Host.h"
#include "startup/StartupConfiguration.h"
#include "tweaks/PerformanceSettings.h"
#include "verification/ApplyVerificationResult.h"
#include "verification/SystemConfigurationMatch.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class NotificationCenter;
struct PowerSettings;
struct TweakStep;
struct UnifiedProfile;

/// The one object through which everything passes that touches the operating system: the log, the busy state,
/// the process runner, administrator runs, and the flows that are built of them.
///
/// There is one for the life of the program, and it lives on the main thread. Flows are coroutines: they suspend at
/// each wait and resume on the main thread. A flow doesn't throw: each step leaves its log line and no failed step
/// stops the next, unless the flow says so. A flow that nobody awaits runs on: who ends the program shuts the ports
/// down first, so that every flow comes to its end before this object does.
///
/// The class is divided by concern: each `SystemManager+Concern.cpp` stands in the folder of its concern.
class SystemManager : public QObject {
    Q_OBJECT

public:
    /// @param host           the ports
    /// @param notifications  where flows tell the rest of the program what has changed
    SystemManager(const Host& host, NotificationCenter& notifications, QObject* parent = nullptr);

    // ---- Log

    /// Appends one entry exactly as given: no time stamp, no prefix. An entry that contains "[WARNING]" is
    /// dropped without a trace: the log stays free of warnings, whoever composes them.
    void log(const QString& message);
    const QStringList& logMessages() const { return m_logMessages; }

    // ---- Busy state

    /// Brackets a long operation. Brackets nest; the outermost text stays.
    void beginBusy(const QString& message);
    void endBusy();
    bool isBusy() const { return m_isBusy; }
    const QString& busyMessage() const { return m_busyMessage; }
    int busyDepth() const { return m_busyDepth; }

    // ---- Commands

    /// "Verbose Debug Logging": commands and their output go to the log.
    bool debugMode() const { return m_debugMode; }
    void setDebugMode(bool debugMode);

    /// Runs a tool as the user, through "/usr/bin/env". The first argument is its path or its name.
    /// A failure shows in the result alone.
    QCoro::Task<CommandResult> runCommand(QStringList arguments, OutputCapture capture);

    /// True when the name holds one of `excludedKeywords` in any case: audio software, which is never touched.
    static bool isExcludedName(const QString& name);
    static const QStringList& excludedKeywords();

    // ---- Administrator runs

    /// Runs one shell line as root behind a single authorization prompt, off the main thread.
    /// @param prompt  shown to the user; replaced by a neutral text once the last run of this process has succeeded,
    ///                because the system may then hold the authorization. One that holds a double quote fails the run
    ///                before the script engine sees it.
    /// @return status 0 and the script's text; or 1 with the system's message: a cancel is a failure like any other
    QCoro::Task<CommandResult> executeAdminScript(QString script, QString prompt);

    /// Queues the line when a batch is open, and gives status 0 at once; otherwise runs it.
    QCoro::Task<CommandResult> runAdminCommand(QString script, QString prompt);

    /// Opens a batch: what needs root is queued until `finishAdminBatch` runs it as one line under one prompt.
    void beginAdminBatch();
    /// Adds commands to the open batch, tolerant and joined, as one entry.
    void queueAdminCommands(const QStringList& commands);
    /// Runs what was queued; with nothing queued no prompt appears. Closes the batch in every case.
    /// @return true when nothing failed
    QCoro::Task<bool> finishAdminBatch(QString prompt);
    int adminBatchDepth() const { return m_adminBatchDepth; }

    /// Forgets that an administrator run succeeded: the next shows its caller's prompt. Called at termination.
    void clearAdminAuthorization() { m_adminAuthorizationFlag = false; }

    // ---- Tweaks

    /// One-way: puts the selected tweaks in force and leaves all others as they are; opens its own batch; verifies.
    /// @return true when the administrator run succeeded and every selected tweak reads back as applied
    QCoro::Task<bool> applyPerformanceTweaks(PerformanceSettings settings);

    enum class VerifyAfterSync { No, Yes };
    /// Two-way: puts every tweak into the state that the settings ask for. Uses the batch that its caller
    /// opened, if any.
    QCoro::Task<bool> syncPerformanceTweaks(PerformanceSettings settings, VerifyAfterSync verify);

    /// Puts all tweaks back to what a fresh macOS has, whether they were applied or not.
    QCoro::Task<bool> undoPerformanceTweaks();

    // ---- Profiles

    /// Puts a whole profile onto the system under one prompt, reads the system back, and records the profile
    /// as the active one when every step succeeded. A failed check alone doesn't make the value false.
    QCoro::Task<bool> applyProfile(UnifiedProfile profile);
    QCoro::Task<ApplyVerificationResult> verifyProfile(UnifiedProfile profile);
    /// Makes a profile the active one and posts QuorvaneSystemVerified.
    void recordAppliedConfiguration(const UnifiedProfile& profile, const ApplyVerificationResult& verification);

    // ---- Startup

    /// Carries out the startup half of a profile. So far only one that asks for nothing can be carried out;
    /// any other gives false.
    QCoro::Task<bool> applyStartupConfiguration(StartupConfiguration configuration);

    // ---- Reading the live system

    enum class PreferenceHost { Any, Current };
    /// The value of a preference as the `defaults` tool prints it, trimmed; none when the key isn't set.
    QCoro::Task<std::optional<QString>> readDefaultValue(QString domain, QString key,
                                                         PreferenceHost host = PreferenceHost::Any);
    QCoro::Task<PowerSettings> readPowerSettings();
    /// True while a backup is running at this moment, whatever the automatic backups are set to; none when
    /// unknown.
    QCoro::Task<std::optional<bool>> readTimeMachineState();
    /// True while the boot volume is indexed; none when unknown.
    QCoro::Task<std::optional<bool>> readSpotlightState();

    /// The path of Notification Center's per-host preferences, a domain for `readDefaultValue`.
    QString notificationCenterPreferences() const;

    // ---- Verification

    enum class UnselectedTweaks { Ignored, ExpectedRestored };
    /// Reads each tweak back from the live system, in a fixed order.
    QCoro::Task<ApplyVerificationResult> verifyAppliedSettings(PerformanceSettings settings,
                                                               UnselectedTweaks unselected);
    void logVerificationResult(const ApplyVerificationResult& result, const QString& section);
    /// The result of the last flow that verified.
    const std::optional<ApplyVerificationResult>& lastApplyVerification() const { return m_lastApplyVerification; }

    bool hasVerifiedSystem() const { return m_hasVerifiedSystem; }
    const std::optional<SystemConfigurationMatch>& systemMatch() const { return m_systemMatch; }

Q_SIGNALS:
    void messageLogged(const QString& message);
    void isBusyChanged(bool isBusy);
    void busyMessageChanged(const QString& busyMessage);
    void debugModeChanged(bool debugMode);
    void systemMatchChanged();

private:
    // core/SystemManager+AdminBatch.cpp
    QCoro::Task<bool> flushAdminBatch(QString prompt);
    void closeAdminBatch();

    // tweaks/SystemManager+Tweaks.cpp
    QCoro::Task<void> runTweakSteps(QList<TweakStep> steps);
    QCoro::Task<CommandResult> runOrQueueSystemCommands(QStringList commands);
    QCoro::Task<bool> verifyTweaks(PerformanceSettings settings, UnselectedTweaks unselected);

    // verification/SystemManager+Verification.cpp
    QCoro::Task<bool> isAppRestorationOff();

    Host m_host;
    NotificationCenter& m_notifications;

    QStringList m_logMessages;
    bool m_isBusy = false;
    QString m_busyMessage;
    int m_busyDepth = 0;
    bool m_debugMode = false;

    int m_adminBatchDepth = 0;
    QStringList m_adminCommandBatch;
    bool m_adminAuthorizationFlag = false; ///< true when the last administrator script of this process succeeded

    bool m_hasVerifiedSystem = false;
    std::optional<SystemConfigurationMatch> m_systemMatch;
    std::optional<ApplyVerificationResult> m_lastApplyVerification;
};

} // namespace quorvane
