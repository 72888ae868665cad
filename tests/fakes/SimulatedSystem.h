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
QByteArray projectFile(const QString& path);
UnifiedProfile exampleProfile(const QString& name);

/// A simulated Mac in a temporary folder, and the program on it, through real child processes.
class SimulatedSystem : public ::testing::Test {
public:
    ~SimulatedSystem() override;

protected:
    explicit SimulatedSystem(const QString& description = u"fresh-macbook"_s);

    static QString program();
    QString macFolder() const;

    /// Starts the program anew on the same Mac, with faults if any are given.
    void start(const QByteArray& faults = {});
    bool apply(const UnifiedProfile& profile);
    QString log() const;
    macsim::MacPicture picture() const;
    macsim::Volume volume(macsim::Actor actor = macsim::Actor::User) const;
    CommandResult run(const QStringList& arguments);
    /// What a line prints in the simulated Mac's shell.
    QString shell(const QString& line);

    QTemporaryDir folder;
    AuthorizationPolicy authorization{macsim::Authorization::Allow};
    NotificationCenter notifications;
    std::unique_ptr<SimulatedHost> host;
    std::unique_ptr<SystemManager> system;
};

} // namespace quorvane
