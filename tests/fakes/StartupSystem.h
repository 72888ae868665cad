#pragma once

#include "core/AdminScript.h"
#include "core/Paths.h"
#include "fakes/AskedOfSystemEvents.h"
#include "fakes/ScriptedSystem.h"
#include "platform/TreeRemoval.h"
#include "startup/apply/ActiveStartup.h"
#include "startup/background/BackgroundTaskList.h"
#include "startup/items/StartupConfiguration.h"

#include <QRegularExpression>

namespace quorvane {

const QString kSystemChanges = u"Quorvane needs your administrator password to make these system changes."_s;
const QString kStartupChanges = u"Quorvane needs your administrator password to apply startup changes."_s;
const QString kNeutral = u"Quorvane is applying system changes."_s;
const QString kQuarantine = u"/Users/alex/.quorvane_backup/bundled-login-items/"_s;

void PrintTo(const ApplyVerificationResult& result, std::ostream* stream);

/// A record that is on.
BackgroundTaskItem backgroundRecord(const QString& name, const QString& label, const QString& parent = {},
                                    const QString& type = u"login item (0x4)"_s);
BackgroundTaskItem applicationRecord(const QString& name, const QString& label);

/// As the tool prints them.
QByteArray dumpOf(const QList<BackgroundTaskItem>& records);
StartupItem switchedOff(StartupItemKind kind, const QString& id, const QString& name,
                        const std::optional<QString>& launchIdentifier = {});
StartupItem loginAppOff(const QString& name);
StartupItem launchAgentOff(const QString& fileName);
StartupItem backgroundItemOff(const QString& label);

/// A scripted system whose login items change with the scripts, and where root does what the
/// program asks for. In the trace the scripts for System Events stand by their purposes.
class StartupSystem : public ScriptedSystem {
public:
    ~StartupSystem() override;

protected:
    StartupSystem();

    QString takeTrace();
    static QString prompted(const QString& line, const QString& prompt);
    qsizetype prompts() const;
    QString dumpLine() const;
    /// The program knows the list already.
    void cacheDump(const QList<BackgroundTaskItem>& records);
    /// False when launchd keeps the label of the user's off.
    bool isActive(const QString& label) const { return !commands.launchd.isOff(u"gui/501/"_s + label); }
    /// What is run as the user to switch a label off, and as root.
    static QString launchctlLines(const QString& label);
    static QString queuedLaunchctl(const QString& label);
    /// The user may change nothing of it.
    void giveToRoot(const QString& path);

    QList<LoginItem> login;
    bool deniesSystemEvents = false;
    QByteArray dump;     ///< what the tool prints for root
    QSet<QString> stuck; ///< what root doesn't move

private:
    std::optional<CommandOutcome> answer(const QStringList& arguments);
    QString answerOfSystemEvents(const AskedOfSystemEvents& asked);
    QString listing() const;
    QString add(const LoginItem& item);
    QString hide(const AskedOfSystemEvents::Step& step);
    QString remove(const AskedOfSystemEvents::Step& step);
    void carryOutAsRoot(const QString& source);
    /// As the lines do it: what lies at the new place goes first, whatever becomes of the rest.
    void moveAsRoot(const QString& from, const QString& to);
    void copy(const QString& from, const QString& to);

    QMap<QString, QString> m_purposes;
};

} // namespace quorvane
