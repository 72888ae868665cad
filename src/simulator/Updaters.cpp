#include "simulator/Updaters.h"

#include "simulator/BackgroundTasks.h"
#include "simulator/MacPaths.h"
#include "simulator/Places.h"
#include "simulator/StartupServices.h"

#include <QUrl>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

bool isDaemons(const QString& plistPath) {
    return plistPath.startsWith(u"/Library/LaunchDaemons/"_s);
}

QString urlOf(const QString& path) {
    return u"file://"_s + QString::fromLatin1(QUrl::toPercentEncoding(path, "/"));
}

/// The services with a label that launchd takes for jobs.
std::vector<StartupService> servicesOf(const Mac& mac, const QString& label) {
    std::vector<StartupService> found;
    const std::vector<StartupService> services = startupServices(mac);
    for (const StartupService& service : services) {
        if (service.job.label == label) {
            found.push_back(service);
        }
    }
    return found;
}

void loadWhatStarts(const Mac& mac, const QString& label) {
    const std::vector<StartupService> services = servicesOf(mac, label);
    for (const StartupService& service : services) {
        if (service.startsAtNextLogin) {
            LaunchdState(mac).load(service.domain, service.job);
        }
    }
}

bool enableRecordOf(const Mac& mac, const QString& plistPath) {
    bool isThere = false;
    updateBackgroundTasks(mac.state(), [&](const BackgroundTask& task, Json& record) {
        if (task.isLegacy() && task.url == urlOf(plistPath)) {
            record["enabled"] = true;
            isThere = true;
        }
    });
    return isThere;
}

void addRecordOf(const Mac& mac, const LaunchPlist& plist) {
    const bool isDaemon = isDaemons(plist.path);
    const Json record{{"uid", isDaemon ? kMachineWideTasks : mac.machine().userId},
                      {"name", lastPathComponent(plist.program).toStdString()},
                      {"type", isDaemon ? "legacy daemon" : "legacy agent"},
                      {"identifier", plist.label.toStdString()},
                      {"url", urlOf(plist.path).toStdString()},
                      {"executablePath", plist.program.toStdString()}};
    mac.state().update("backgroundTasks", [&record](Json& tasks) { tasks["records"].push_back(record); });
}

} // namespace

void updaterInstalls(const Mac& mac, const QString& plistPath, const QByteArray& plist) {
    const Volume disk = mac.volume(ownerByPlace(plistPath, mac.machine()));
    disk.createFolders(parentFolder(plistPath));
    disk.writeAtomically(plistPath, plist);
    if (const auto installed = readLaunchPlist(disk, plistPath)) {
        if (!enableRecordOf(mac, installed->path)) {
            addRecordOf(mac, *installed);
        }
        loadWhatStarts(mac, installed->label);
    }
}

bool applicationRegisters(const Mac& mac, const QString& label) {
    bool isKnown = false;
    updateBackgroundTasks(mac.state(), [&](const BackgroundTask& task, Json& record) {
        if (!task.isLegacy() && withoutTypeNumber(task.identifier) == label) {
            record["enabled"] = true;
            record["allowed"] = true;
            isKnown = true;
        }
    });
    const LaunchdState launchd(mac);
    const std::vector<StartupService> services = servicesOf(mac, label);
    for (const StartupService& service : services) {
        if (service.kind == StartupService::Kind::Bundled && launchd.isDisabled(service.domain, service.job)) {
            launchd.setDisabled(service.domain, label, false);
        }
    }
    loadWhatStarts(mac, label);
    return isKnown;
}

void userAllows(const Mac& mac, const QString& label, bool isAllowed) {
    updateBackgroundTasks(mac.state(), [&](const BackgroundTask& task, Json& record) {
        if (withoutTypeNumber(task.identifier) == label) {
            record["allowed"] = isAllowed;
        }
    });
    if (isAllowed) {
        loadWhatStarts(mac, label);
        return;
    }
    const std::vector<StartupService> services = servicesOf(mac, label);
    for (const StartupService& service : services) {
        LaunchdState(mac).unload(service.domain, label);
    }
}

} // namespace macsim
