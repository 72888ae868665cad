#include "simulator/Restart.h"

#include "simulator/MacPaths.h"
#include "simulator/Places.h"
#include "simulator/StartupServices.h"

#include <QVersionNumber>

#include <algorithm>
#include <array>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// What the system brings stays as it is, under the same numbers, but for what a kept override keeps from starting.
bool survives(const LaunchdState& launchd, const LaunchdDomain& domain, const LaunchdJob& job) {
    const LaunchPlist overridden{job.label, job.path, {}, false, false, false};
    const bool isOff = launchd.keepsAppleOverrides() && launchd.isDisabled(domain, overridden);
    return job.path.startsWith(u"/System/"_s) && !isOff;
}

void endJobs(const Mac& mac, const LaunchdDomain& domain) {
    const LaunchdState launchd(mac);
    const std::vector<LaunchdJob> jobs = launchd.jobs(domain);
    for (const LaunchdJob& job : jobs) {
        if (!survives(launchd, domain, job)) {
            launchd.unload(domain, job.label);
        }
    }
}

bool isOpened(const StartupService& service) {
    return service.kind == StartupService::Kind::LoginItem || service.kind == StartupService::Kind::Application;
}

void endApplications(const Mac& mac) {
    const ProcessTable processes(mac.state());
    const std::vector<StartupService> services = startupServices(mac);
    const std::vector<Process> running = processes.list();
    for (const Process& process : running) {
        const bool isOpenedOne = std::any_of(services.begin(), services.end(), [&](const StartupService& service) {
            return isOpened(service) && !service.job.path.isEmpty() && isAtOrBelow(process.path, service.job.path);
        });
        if (process.label.isEmpty() && (isOpenedOne || isInApplication(process.path))) {
            processes.remove(process.pid);
        }
    }
}

void undoApplesOverrides(const Mac& mac) {
    const bool isUndone = QVersionNumber::fromString(mac.machine().systemVersion) >= QVersionNumber(26, 5);
    if (!isUndone || LaunchdState(mac).keepsAppleOverrides()) {
        return;
    }
    mac.state().update("launchd", [](Json& state) {
        if (!state.is_object() || !state.contains("disabled")) {
            return;
        }
        for (Json& store : state["disabled"]) {
            const Json overrides = store;
            for (const auto& [label, isDisabled] : overrides.items()) {
                if (label.starts_with("com.apple.")) {
                    store.erase(label);
                }
            }
        }
    });
}

void open(const Mac& mac, const LaunchPlist& opened) {
    Process process;
    process.name = lastPathComponent(opened.program);
    process.path = opened.program;
    process.userId = mac.machine().userId;
    ProcessTable(mac.state()).start(process);
}

/// What the system brings and isn't loaded: its override may have been taken back.
void startSystemJobs(const Mac& mac, const QString& folder, const LaunchdDomain& domain) {
    const LaunchdState launchd(mac);
    const Volume disk = mac.volume(Actor::Root);
    const QStringList names = disk.list(folder);
    for (const QString& name : names) {
        const auto plist = readLaunchPlist(disk, folder + u'/' + name);
        if (plist && !launchd.isDisabled(domain, *plist)) {
            launchd.load(domain, *plist);
        }
    }
}

void startServices(const Mac& mac) {
    const LaunchdState launchd(mac);
    const std::vector<StartupService> services = startupServices(mac);
    for (const StartupService& service : services) {
        if (!service.startsAtNextLogin) {
            continue;
        }
        if (isOpened(service)) {
            open(mac, service.job);
        } else {
            launchd.load(service.domain, service.job);
        }
    }
}

} // namespace

void restart(const Mac& mac) {
    undoApplesOverrides(mac);
    const int userId = mac.machine().userId;
    const std::array<LaunchdDomain, 3> domains{
        {{LaunchdDomain::Kind::Gui, userId}, {LaunchdDomain::Kind::User, userId}, {LaunchdDomain::Kind::System, 0}}};
    for (const LaunchdDomain& domain : domains) {
        endJobs(mac, domain);
    }
    endApplications(mac);
    mac.state().update("launchd", [](Json& state) { state["guiSession"] = true; });
    startSystemJobs(mac, u"/System/Library/LaunchDaemons"_s, domains[2]);
    startSystemJobs(mac, u"/System/Library/LaunchAgents"_s, domains[0]);
    startServices(mac);
}

} // namespace macsim
