// One flow that saves or restores a simulated Mac, in a process that can be killed over and over: the Mac's tools are
// functions of it, so that it takes milliseconds instead of seconds.
//
//     way_back_program MAC FAULTS capture|apply|revert|reinstate [PROFILE]
//
// "apply" is of a saved profile.
//
// Exit status: 0 done, 1 not.

#include "core/NotificationCenter.h"
#include "fakes/InProcessMac.h"
#include "profiles/ProfileManager.h"
#include "snapshots/RestoreBaseline.h"
#include "system/SystemManager.h"

#include <QCoreApplication>
#include <QCoroTask>

namespace {

using namespace quorvane;

bool run(SystemManager& system, const QString& flow, const QString& profile) {
    if (flow == QStringLiteral("capture")) {
        return QCoro::waitFor(system.captureSystemSnapshot(QStringLiteral("Late"), SystemManager::MasterArchive::Yes))
            .isSaved;
    }
    if (flow == QStringLiteral("apply")) {
        const Host& host = system.host();
        const ProfileManager profiles(host.files, profilesDirectory(host.machine));
        return QCoro::waitFor(system.applyProfile(profiles.loadProfile(profile).value()));
    }
    const RestoreOutcome outcome =
        QCoro::waitFor(flow == QStringLiteral("revert") ? system.undoTweaks() : system.reinstateWholeSystem());
    return outcome.succeeded;
}

} // namespace

int main(int argumentCount, char** arguments) {
    const QCoreApplication application(argumentCount, arguments);
    const QStringList list = QCoreApplication::arguments();
    InProcessHost host(list.at(1), QStringLiteral(MACSIM_PROGRAM), nullptr, list.at(2));
    NotificationCenter notifications;
    SystemManager system(host.host(), notifications);
    return run(system, list.at(3), list.value(4)) ? 0 : 1;
}
