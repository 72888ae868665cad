#pragma once

#include "fakes/SimulatedSystem.h"
#include "fakes/StartupSystem.h"
#include "simulator/LaunchdState.h"
#include "startup/apply/StartupVerification.h"

#include <initializer_list>

namespace quorvane {

/// A launch plist, or the information of a bundle, with text values.
QByteArray plistText(std::initializer_list<std::pair<QString, QString>> values);

/// A launch plist of a job that starts by itself, though not when it is loaded.
QByteArray startingPlist(const QString& label, const QString& program);

/// A fresh Mac of alex's (501), on which a test puts what runs at login, and the program on it.
class SimulatedStartup : public SimulatedSystem {
protected:
    using SimulatedSystem::SimulatedSystem;

    StartupApplyResult applyStartup(const StartupConfiguration& configuration);
    StartupApplyResult switchOff(const QList<StartupItem>& items);
    QList<StartupItem> discover();
    bool logs(const QString& line) const;

    // ---- What the Mac holds

    void changeState(const char* subject, const std::function<void(macsim::Json&)>& change) const;
    void addLoginItem(const QString& name, const QString& path) const;
    QStringList loginNames() const;

    /// Belongs to whom its place says.
    void addFile(const QString& path, const QByteArray& bytes) const;
    /// Gives a tree to whom its place doesn't imply.
    void giveToRoot(const QString& path) const;
    void giveToUser(const QString& path) const;
    /// A plist in a launch folder, its job loaded.
    void addLaunchItem(const QString& path, const QString& label) const;
    void addBackgroundTask(const macsim::Json& record) const;
    /// "/Applications/{name}.app" with the helper "{name} Helper.app", which is {identifier}.helper, and both records.
    QString addApplicationWithHelper(const QString& name, const QString& identifier) const;
    bool isLoaded(const QString& label, macsim::LaunchdDomain domain = kSession) const;
    /// The labels that launchd won't load again in the user's session.
    QStringList disabledLabels() const;
    /// What root has run since the Mac was made, the tools as lines.
    QStringList commandsOfRoot() const;

    /// From when a line that begins so is logged, prompts get this answer.
    void answerAfter(const QString& beginning, macsim::Authorization answer);

    static constexpr macsim::LaunchdDomain kSession{macsim::LaunchdDomain::Kind::Gui, 501};
    static constexpr macsim::LaunchdDomain kSystemDomain{macsim::LaunchdDomain::Kind::System, 0};
};

} // namespace quorvane
