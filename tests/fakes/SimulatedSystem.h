#pragma once

#include "core/NotificationCenter.h"
#include "fakes/EventLoop.h"
#include "fakes/MacPicture.h"
#include "platform/simulated/SimulatedHost.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileManager.h"
#include "profiles/UnifiedProfile.h"
#include "simulator/MacDescription.h"
#include "simulator/tools/Registry.h"
#include "system/SystemManager.h"

#include <QCoroTask>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace quorvane {

using namespace Qt::StringLiterals;

/// The bytes of a file of the project: "examples/profiles/live-set.json".
inline QByteArray projectFile(const QString& path) {
    QFile file(QStringLiteral(QUORVANE_SOURCE_DIR "/") + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

inline UnifiedProfile exampleProfile(const QString& name) {
    return decodeProfile(projectFile(u"examples/profiles/"_s + name + u".json"_s));
}

/// A simulated Mac in a temporary folder, and the program on it, through real child processes.
class SimulatedSystem : public ::testing::Test {
protected:
    explicit SimulatedSystem(const QString& description = u"fresh-macbook"_s) {
        const QString file = QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/") + description + u".json"_s;
        macsim::createMac(macFolder(), macsim::macDescriptionFromFile(file), macsim::simulatorTools().keys(),
                          program());
        start();
    }

    static QString program() { return QStringLiteral(MACSIM_PROGRAM); }
    QString macFolder() const { return folder.path() + u"/Mac"_s; }

    /// Starts the program anew on the same Mac, with faults if any are given.
    void start(const QByteArray& faults = {}) {
        system.reset();
        host.reset();
        SimulatedHostOptions options{program(), {}, {}};
        if (!faults.isEmpty()) {
            options.faultsFile = folder.path() + u"/faults.json"_s;
            QFile file(options.faultsFile);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(faults);
        }
        host = std::make_unique<SimulatedHost>(macFolder(), authorization, options);
        system = std::make_unique<SystemManager>(host->host(), notifications);
    }

    bool apply(const UnifiedProfile& profile) { return QCoro::waitFor(system->applyProfile(profile)); }
    QString log() const { return system->logMessages().join(u'\n') + u'\n'; }
    macsim::MacPicture picture() const { return macsim::MacPicture(macFolder()); }
    macsim::Volume volume(macsim::Actor actor = macsim::Actor::User) const { return host->mac().volume(actor); }

    CommandResult run(const QStringList& arguments) {
        return QCoro::waitFor(system->runCommand(arguments, OutputCapture::Capture));
    }
    /// What a line prints in the simulated Mac's shell.
    QString shell(const QString& line) { return run({u"/bin/sh"_s, u"-c"_s, line}).standardOutput; }

    QTemporaryDir folder;
    AuthorizationPolicy authorization{macsim::Authorization::Allow};
    NotificationCenter notifications;
    std::unique_ptr<SimulatedHost> host;
    std::unique_ptr<SystemManager> system;
};

} // namespace quorvane
