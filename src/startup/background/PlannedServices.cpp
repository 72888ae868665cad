#include "startup/background/PlannedServices.h"

#include "core/ExcludedNames.h"
#include "core/Paths.h"
#include "platform/PropertyLists.h"
#include "startup/background/BackgroundLabels.h"
#include "startup/background/BackgroundState.h"
#include "startup/items/StartupConfiguration.h"
#include "startup/launchd/LaunchItemNames.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Goes through the labels of a plan, one after another, and through what has waited.
class PlanResolution {
public:
    PlanResolution(const BackgroundLoginItemChangePlan& plan, const std::optional<BackgroundTaskList>& list,
                   const LaunchdReadings& launchd, const StartupMemory& memory, const PropertyLists& propertyLists)
        : m_plan(plan)
        , m_list(list)
        , m_launchd(launchd)
        , m_memory(memory)
        , m_propertyLists(propertyLists)
        , m_named(plan.disabledBackgroundLaunchLabels) {
        for (const BackgroundTaskItem& record : list ? plannedRecords(plan, *list) : QList<BackgroundTaskItem>()) {
            if (const std::optional<QString> label = backgroundItemLabel(record)) {
                m_recordsByLabel[*label].append(record);
            }
        }
        for (const BackgroundTaskItem& record : list ? list->items() : QList<BackgroundTaskItem>()) {
            if (const std::optional<LaunchdService> service = serviceOf(record, launchd)) {
                m_recordsByService[*service].append(record);
            }
        }
    }

    PlannedServices run() {
        QSet<QString> labels = m_named;
        labels.unite({m_recordsByLabel.keyBegin(), m_recordsByLabel.keyEnd()});
        for (const QString& label : sortedTexts(labels)) {
            const QString line = lineOfHeldBackLabel(label);
            if (line.isEmpty()) {
                addLabel(label);
            } else {
                addLine(line);
            }
        }
        for (const WaitingService& waiting : m_memory.waiting) {
            addWaiting(waiting);
        }
        return m_planned;
    }

private:
    QList<BackgroundTaskItem> recordsLabelled(const QString& label) const {
        return m_list ? m_list->itemsWithLabel(label) : QList<BackgroundTaskItem>();
    }

    QString nameOf(const QString& label) const {
        const QList<BackgroundTaskItem> records = recordsLabelled(label);
        return records.isEmpty() ? label : records.first().name;
    }

    void addLine(const QString& line) {
        if (!m_planned.lines.contains(line)) {
            m_planned.lines.append(line);
        }
    }

    static QString protectedLine(const QString& label) {
        return u"  [SKIPPED] Protected background login item: "_s + label;
    }
    static QString managedLine(const QString& name) { return u"  [SKIPPED] Managed by your organization: "_s + name; }

    bool isProtected(const BackgroundTaskItem& record) const { return m_list->isProtected(record); }

    /// Empty for one that may go.
    QString lineOfHeldBackLabel(const QString& label) const {
        if (!isUsableLaunchdLabel(label)) {
            return u"  [SKIPPED] Unusable background label: "_s + label;
        }
        if (isReservedLabel(label)) {
            return u"  [SKIPPED] Protected background item: "_s + label;
        }
        const QList<BackgroundTaskItem> records = recordsLabelled(label);
        if (isExcludedName(label) ||
            std::any_of(records.begin(), records.end(),
                        [this](const BackgroundTaskItem& record) { return isProtected(record); })) {
            return protectedLine(label);
        }
        return std::any_of(records.begin(), records.end(), isManagedRecord) ? managedLine(nameOf(label)) : QString();
    }

    /// The same of a service: what else bears it would be switched off, too.
    QString lineOfSharedService(const LaunchdService& service) const {
        for (const BackgroundTaskItem& record : m_recordsByService.value(service)) {
            if (isProtected(record)) {
                return protectedLine(service.label);
            }
            if (isManagedRecord(record)) {
                return managedLine(record.name);
            }
            if (isLoginRecord(record) && !isPlanned(record) && isOn(record, m_launchd) != false) {
                return sharedLine(service);
            }
        }
        const QList<LaunchPlist> plists = m_launchd.labelled(service.label);
        const bool hasProtected = std::any_of(plists.begin(), plists.end(), [&service](const LaunchPlist& plist) {
            return plist.service() == service && isExcludedName(plist.fileName);
        });
        if (hasProtected) {
            return protectedLine(service.label);
        }
        const bool hasOther = std::any_of(plists.begin(), plists.end(), [&](const LaunchPlist& plist) {
            return plist.service() == service && !isPlanned(plist) && isOn(plist, m_list, m_launchd) != false;
        });
        return hasOther ? sharedLine(service) : QString();
    }

    static QString sharedLine(const LaunchdService& service) {
        return u"  [SKIPPED] Something that stays has the same label: "_s + service.label;
    }

    bool isPlanned(const LaunchPlist& plist) const {
        const QList<BackgroundTaskItem> records =
            m_list ? m_list->itemsWithPlist(plist.fileName) : QList<BackgroundTaskItem>();
        return m_named.contains(plist.label) ||
               std::any_of(records.begin(), records.end(), [&](const BackgroundTaskItem& record) {
                   return m_recordsByLabel.value(backgroundItemLabel(record).value_or(QString())).contains(record);
               });
    }

    bool isPlanned(const BackgroundTaskItem& record) const {
        const std::optional<LaunchPlist> plist = m_launchd.plistAt(recordedPath(record).value_or(QString()));
        return m_recordsByLabel.value(backgroundItemLabel(record).value_or(QString())).contains(record) ||
               (plist && isPlanned(*plist));
    }

    void addLabel(const QString& label) {
        const qsizetype before = m_planned.users.size() + m_planned.roots.size();
        addServices(label);
        if (m_planned.users.size() + m_planned.roots.size() > before) {
            m_planned.labels.insert(label);
            m_planned.records += m_recordsByLabel.value(label);
        }
    }

    void addServices(const QString& label) {
        const QList<BackgroundTaskItem> records = m_recordsByLabel.value(label);
        for (const BackgroundTaskItem& record : records) {
            addRecord(record, label);
        }
        if (!m_named.contains(label)) {
            return;
        }
        const QList<LaunchPlist> plists = m_launchd.labelled(label);
        for (const LaunchPlist& plist : plists) {
            addPlist(plist, label);
        }
        if (records.isEmpty() && plists.isEmpty()) {
            addUnseen(label);
        }
    }

    void addRecord(const BackgroundTaskItem& record, const QString& label) {
        const std::optional<LaunchdService> service = serviceOf(record, m_launchd);
        if (!service || !isLoginRecord(record) || isOn(record, m_launchd) == false) {
            return;
        }
        if (runsOnDemand(record, *m_list, m_launchd)) {
            addLine(onDemandLine(*service));
            return;
        }
        const QString path = m_list->pathOf(record).value_or(QString());
        PlannedService planned{*service, nameOf(service->label), path, label};
        planned.isBundled = !m_launchd.isInLaunchFolder(path);
        add(planned);
    }

    void addPlist(const LaunchPlist& plist, const QString& label) {
        if (isOn(plist, m_list, m_launchd) == false) {
            return;
        }
        if (plist.runsOnDemand()) {
            addLine(onDemandLine(plist.service()));
        } else if (isLeftAlone(plist, m_list)) {
            addLine(managedLine(nameOf(label)));
        } else {
            add({plist.service(), nameOf(label), plist.path(), label});
        }
    }

    /// In its application, most likely. What the last dump has shown tells whose it is; a daemon's plist can't be looked at
    /// before the list is there.
    void addUnseen(const QString& label) {
        const QList<LaunchdService> services =
            m_list ? QList<LaunchdService>{{LaunchdDomain::User, label}} : m_memory.servicesOf(label);
        const bool isGuess = !m_list && !m_memory.services;
        const bool isOneOff = std::any_of(services.begin(), services.end(), [this](const LaunchdService& service) {
            return m_launchd.overrides().isDisabled(service);
        });
        for (const LaunchdService& service : services) {
            if (service.domain == LaunchdDomain::User && !m_launchd.overrides().isDisabled(service) &&
                !(isGuess && isOneOff)) {
                PlannedService planned{service, nameOf(label), {}, label};
                planned.isBundled = true;
                planned.isGuess = isGuess;
                add(planned);
            }
        }
    }

    // ---- What an earlier apply has left: the file lies open, so nothing counts but what holds for any label

    void addWaiting(const WaitingService& waiting) {
        const LaunchdService& service = waiting.service;
        if (!mayOverride(service.label) || m_launchd.overrides().isDisabled(service) || isKept(waiting)) {
            m_planned.settled.append(service);
            return;
        }
        const QString line = m_list ? lineOfWaiting(service) : QString();
        if (!line.isEmpty() || (m_list && !isBorne(service))) {
            m_planned.settled.append(service);
            if (!line.isEmpty()) {
                addLine(line);
            }
        } else if (waitsForItsApplication(waiting)) {
            m_planned.settled.append(service);
            addLine(onDemandLine(service));
        } else {
            PlannedService planned{service, waiting.shownName(), waiting.path, waiting.knownAs};
            planned.isBundled = !m_launchd.isInLaunchFolder(waiting.path);
            planned.isCleared = waiting.isCleared;
            append(planned);
        }
    }

    QString lineOfWaiting(const LaunchdService& service) const {
        const QString line = lineOfHeldBackLabel(service.label);
        if (!line.isEmpty()) {
            return line;
        }
        for (const BackgroundTaskItem& record : m_recordsByService.value(service)) {
            if (isProtected(record)) {
                return protectedLine(service.label);
            }
            if (isLeftAlone(record, *m_list, m_launchd)) {
                return isManagedRecord(record) ? managedLine(record.name) : onDemandLine(service);
            }
        }
        for (const LaunchPlist& plist : m_launchd.labelled(service.label)) {
            if (plist.service() == service && !plist.runsOnDemand() && isLeftAlone(plist, m_list)) {
                return managedLine(service.label);
            }
        }
        return {};
    }

    bool isBorne(const LaunchdService& service) const {
        const QList<BackgroundTaskItem> records = m_recordsByService.value(service);
        const QList<LaunchPlist> plists = m_launchd.labelled(service.label);
        return std::any_of(records.begin(), records.end(),
                           [this](const BackgroundTaskItem& record) { return isOn(record, m_launchd) != false; }) ||
               std::any_of(plists.begin(), plists.end(), [&](const LaunchPlist& plist) {
                   return plist.service() == service && isOn(plist, m_list, m_launchd) != false;
               });
    }

    bool isKept(const WaitingService& waiting) const {
        return std::any_of(
            m_plan.keptIdentifiers.begin(), m_plan.keptIdentifiers.end(), [&](const QString& identifier) {
                const QList<BackgroundTaskItem> records = recordsLabelled(identifier);
                const QList<LaunchPlist> plists = m_launchd.named(identifier);
                return waiting.isKnownAs(identifier) ||
                       std::any_of(
                           records.begin(), records.end(),
                           [&](const auto& record) { return serviceOf(record, m_launchd) == waiting.service; }) ||
                       std::any_of(plists.begin(), plists.end(),
                                   [&](const auto& plist) { return plist.service() == waiting.service; });
            });
    }

    bool waitsForItsApplication(const WaitingService& waiting) const {
        if (waiting.path.isEmpty() || waiting.service.domain != LaunchdDomain::System) {
            return false;
        }
        LaunchFolder folder;
        folder.path = parentFolder(waiting.path);
        folder.isDaemons = true;
        return readLaunchPlist(folder, lastPathComponent(waiting.path), m_propertyLists).runsOnDemand();
    }

    static QString onDemandLine(const LaunchdService& service) {
        return u"  [INFO] Only runs when its application needs it: "_s + service.label;
    }

    void add(const PlannedService& planned) {
        const QString line = lineOfSharedService(planned.service);
        if (!line.isEmpty()) {
            addLine(line);
        } else if (mayOverride(planned.service.label)) {
            append(planned);
        }
    }

    void append(PlannedService planned) {
        const LaunchdService& service = planned.service;
        QList<PlannedService>& services = service.domain == LaunchdDomain::System ? m_planned.roots : m_planned.users;
        const auto isThisOne = [&service](const PlannedService& other) { return other.service == service; };
        if (std::none_of(services.begin(), services.end(), isThisOne)) {
            planned.isCleared = planned.isCleared || m_list;
            services.append(planned);
        }
    }

    const BackgroundLoginItemChangePlan& m_plan;
    const std::optional<BackgroundTaskList>& m_list;
    const LaunchdReadings& m_launchd;
    const StartupMemory& m_memory;
    const PropertyLists& m_propertyLists;
    const QSet<QString>& m_named;
    QHash<QString, QList<BackgroundTaskItem>> m_recordsByLabel; ///< of what goes
    QHash<LaunchdService, QList<BackgroundTaskItem>> m_recordsByService;
    PlannedServices m_planned;
};

} // namespace

PlannedServices plannedServices(const BackgroundLoginItemChangePlan& plan,
                                const std::optional<BackgroundTaskList>& list, const LaunchdReadings& launchd,
                                const StartupMemory& memory, const PropertyLists& propertyLists) {
    return PlanResolution(plan, list, launchd, memory, propertyLists).run();
}

} // namespace quorvane
