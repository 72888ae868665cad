#include "startup/background/BackgroundState.h"

#include "startup/background/StartupMemory.h"

#include <algorithm>

namespace quorvane {

namespace {

/// The plist in a launch folder that a record stands for. One that can't be read bears the record's label.
std::optional<LaunchPlist> plistOf(const BackgroundTaskItem& record, const LaunchdReadings& launchd) {
    std::optional<LaunchPlist> plist = launchd.plistAt(recordedPath(record).value_or(QString()));
    if (plist && plist->label.isEmpty()) {
        plist->label = launchdLabel(record).value_or(QString());
    }
    return plist;
}

/// "None" outweighs "off": what nobody can tell may be on.
std::optional<bool> anyOn(const QList<std::optional<bool>>& states) {
    if (states.contains(std::optional(true))) {
        return true;
    }
    return states.contains(std::nullopt) ? std::nullopt : std::optional(false);
}

/// The states of those that an apply doesn't leave alone, and how many it does.
struct States {
    QList<std::optional<bool>> active;
    int leftAlone = 0;

    void add(bool isLeftAlone, std::optional<bool> on) {
        if (isLeftAlone) {
            ++leftAlone;
        } else {
            active.append(on);
        }
    }
    bool isEmpty() const { return active.isEmpty() && leftAlone == 0; }
    Standing standing() const { return {anyOn(active), active.isEmpty() && leftAlone > 0}; }
};

/// Of a label that nothing bears which is known.
std::optional<bool> isUnseenLabelOn(const QString& label, const LaunchdOverrides& overrides,
                                    const StartupMemory& memory) {
    const QList<LaunchdService> services = memory.servicesOf(label);
    const bool isOff = std::all_of(services.begin(), services.end(), [&overrides](const LaunchdService& service) {
        return overrides.isDisabled(service);
    });
    return isOff ? std::optional(false) : std::nullopt;
}

} // namespace

std::optional<LaunchdService> serviceOf(const BackgroundTaskItem& record, const LaunchdReadings& launchd) {
    const std::optional<LaunchPlist> plist = plistOf(record, launchd);
    if (plist && !plist->label.isEmpty()) {
        return plist->service();
    }
    const std::optional<QString> label = launchdLabel(record);
    const LaunchdDomain domain = isDaemonRecord(record) ? LaunchdDomain::System : LaunchdDomain::User;
    return label ? std::optional(LaunchdService{domain, *label}) : std::nullopt;
}

std::optional<bool> isOn(const BackgroundTaskItem& record, const LaunchdReadings& launchd) {
    if (!isActive(record)) {
        return false;
    }
    if (const std::optional<LaunchPlist> plist = plistOf(record, launchd)) {
        return isOn(*plist, launchd.overrides());
    }
    const QString path = recordedPath(record).value_or(QString());
    const bool isExpected = launchd.isInLaunchFolder(path);
    if (isExpected && launchd.isFolderRead(path)) {
        return false;
    }
    const std::optional<LaunchdService> service = serviceOf(record, launchd);
    const OverrideState state = service ? launchd.overrides().stateOf(*service) : OverrideState::NotListed;
    if (state == OverrideState::Disabled) {
        return false;
    }
    return isExpected || state == OverrideState::Unknown ? std::nullopt : std::optional(true);
}

std::optional<bool> isOn(const LaunchPlist& plist, const std::optional<BackgroundTaskList>& list,
                         const LaunchdReadings& launchd) {
    LaunchPlist labelled = plist;
    for (const BackgroundTaskItem& record : list ? list->itemsWithPlist(plist.fileName) : QList<BackgroundTaskItem>()) {
        const std::optional<LaunchPlist> recorded = plistOf(record, launchd);
        if (!recorded || recorded->path() != plist.path()) {
            continue;
        }
        if (!isActive(record)) {
            return false;
        }
        labelled.label = recorded->label;
    }
    return isOn(labelled, launchd.overrides());
}

std::optional<bool> isFileOn(const QString& fileName, const std::optional<BackgroundTaskList>& list,
                             const LaunchdReadings& launchd) {
    QList<std::optional<bool>> states;
    for (const LaunchPlist& plist : launchd.named(fileName)) {
        states.append(isOn(plist, list, launchd));
    }
    return anyOn(states);
}

bool runsOnDemand(const BackgroundTaskItem& record, const BackgroundTaskList& list, const LaunchdReadings& launchd) {
    const std::optional<LaunchPlist> inFolder = launchd.plistAt(recordedPath(record).value_or(QString()));
    const std::optional<LaunchPlist> plist = inFolder ? inFolder : list.bundledDaemon(record);
    return plist && plist->runsOnDemand();
}

bool isLeftAlone(const BackgroundTaskItem& record, const BackgroundTaskList& list, const LaunchdReadings& launchd) {
    return isManagedRecord(record) || list.isManagedLabel(backgroundItemLabel(record).value_or(QString())) ||
           runsOnDemand(record, list, launchd);
}

bool isLeftAlone(const LaunchPlist& plist, const std::optional<BackgroundTaskList>& list) {
    const bool isManaged = list && (list->isManagedPlist(plist.fileName) || list->isManagedLabel(plist.label));
    return isManaged || plist.runsOnDemand();
}

Standing fileStanding(const QString& fileName, const std::optional<BackgroundTaskList>& list,
                      const LaunchdReadings& launchd) {
    States states;
    for (const LaunchPlist& plist : launchd.named(fileName)) {
        states.add(isLeftAlone(plist, list), isOn(plist, list, launchd));
    }
    if (!launchd.isEveryFolderRead()) {
        states.add(false, std::nullopt);
    }
    return states.standing();
}

Standing labelStanding(const QString& label, const std::optional<BackgroundTaskList>& list,
                       const LaunchdReadings& launchd, const StartupMemory& memory) {
    States states;
    for (const BackgroundTaskItem& record : list ? list->itemsWithLabel(label) : QList<BackgroundTaskItem>()) {
        states.add(isLeftAlone(record, *list, launchd), isOn(record, launchd));
    }
    for (const LaunchPlist& plist : launchd.labelled(label)) {
        states.add(isLeftAlone(plist, list), isOn(plist, list, launchd));
    }
    const bool wasListRead = list && !list->isEmpty();
    if (states.isEmpty() && !wasListRead) {
        return {isUnseenLabelOn(label, launchd.overrides(), memory), false};
    }
    return states.standing();
}

} // namespace quorvane
