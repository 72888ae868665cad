#include "actions/StartupEditing.h"

#include "actions/ActionStage.h"
#include "actions/StartupTexts.h"
#include "actions/Tasks.h"
#include "core/Background.h"
#include "core/Paths.h"
#include "platform/FilePanels.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "profiles/MasterProfileState.h"
#include "startup/items/StartupChanges.h"
#include "system/SystemManager.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const StartupItem* itemWithId(const StartupConfiguration& startup, const QString& id) {
    const auto found = std::find_if(startup.items.cbegin(), startup.items.cend(),
                                    [&id](const StartupItem& item) { return item.id == id; });
    return found == startup.items.cend() ? nullptr : &*found;
}

bool hasAddedApp(const StartupConfiguration& startup) {
    return std::any_of(startup.items.cbegin(), startup.items.cend(),
                       [](const StartupItem& item) { return item.kind == StartupItemKind::addedApp; });
}

/// Without what doesn't run on this Mac already: to switch it off changes nothing.
StartupConfiguration withoutWhatIsOff(StartupConfiguration startup,
                                      const std::optional<DiscoveredStartup>& discovered) {
    QSet<QString> off;
    for (const StartupItem& item : discovered ? discovered->items : QList<StartupItem>()) {
        if (!item.runsAtStartup) {
            off.insert(comparableId(item));
        }
    }
    startup.items.removeIf(
        [&off](const StartupItem& item) { return !item.runsAtStartup && off.contains(comparableId(item)); });
    return startup;
}

} // namespace

StartupEditing::StartupEditing(const Parts& parts, QObject* parent)
    : QObject(parent)
    , m_parts(parts) {}

bool StartupEditing::isIdle() const {
    return m_parts.turnstile.isIdle();
}

// ---- What is found

void StartupEditing::load() {
    if (!m_isRefreshing) {
        m_parts.tasks.start(discover(Refresh::UseCache));
    }
}

void StartupEditing::refresh() {
    m_parts.tasks.start(discover(Refresh::Force));
}

void StartupEditing::readAnew() {
    if (m_parts.workingCopy.discovered() || m_isRefreshing) {
        refresh();
    } else {
        m_parts.tasks.start(m_parts.system.discoverStartupItems(SystemManager::StartupRefresh::Force));
    }
}

/// An answer of System Events that comes too late for who waits is taken up as well.
QCoro::Task<void> StartupEditing::discover(Refresh refresh) {
    const quint64 round = ++m_round;
    m_isRefreshing = true;
    Q_EMIT changed();
    using SystemRefresh = SystemManager::StartupRefresh;
    const SystemRefresh ofSystem = refresh == Refresh::Force ? SystemRefresh::Force : SystemRefresh::UseCache;
    QCoro::Task<QList<StartupItem>> whole = m_parts.system.discoverStartupItems(ofSystem);
    const DiscoveredStartup inTime = co_await m_parts.system.discoverStartup(SystemRefresh::UseCache);
    co_await takeUp(inTime, round);
    co_await std::move(whole);
    if (inTime.loginItems == LoginItemsSource::Unanswered && round == m_round) {
        const DiscoveredStartup late = co_await m_parts.system.discoverStartup(SystemRefresh::UseCache);
        co_await takeUp(late, round);
    }
}

/// Unless somebody has asked anew. What the user decides meanwhile stays: it is brought together with what was found once more
/// then.
QCoro::Task<void> StartupEditing::takeUp(DiscoveredStartup found, quint64 round) {
    const QStringList folderTexts = cloudFolderTexts();
    Prepared known;
    StartupLayers layers;
    do {
        layers = m_parts.workingCopy.layersWith(found);
        const QFuture<Prepared> inTheMaking = inBackground(&StartupEditing::prepared, layers, folderTexts);
        known = co_await inTheMaking;
        if (round != m_round) {
            co_return;
        }
    } while (m_parts.workingCopy.layersWith(found) != layers);
    m_searchTexts = known.searchTexts;
    m_detectedServices = known.services;
    m_parts.workingCopy.takeMerged(layers, known.working);
    for (const QString& error : known.working.errors) {
        m_parts.system.log(u"  [WARNING] "_s + error);
    }
    m_isRefreshing = false;
    Q_EMIT changed();
}

StartupEditing::Prepared StartupEditing::prepared(const StartupLayers& layers, const QStringList& cloudFolderTexts) {
    Prepared made;
    made.working = workingStartup(layers);
    QStringList texts = cloudFolderTexts;
    for (const StartupItem& item : layers.discovered->items) {
        texts << item.name << item.path << item.launchIdentifier.value_or(QString());
    }
    made.services = detectedCloudServices(texts);
    for (const StartupItem& item : made.working.configuration.items) {
        made.searchTexts.insert(item.id, startupSearchText(item));
    }
    return made;
}

QStringList StartupEditing::cloudFolderTexts() const {
    const Host& host = m_parts.system.host();
    return cloudDetectionSearchStrings({}, host.files, host.machine.homeFolder());
}

QList<StartupLaunchItem> StartupEditing::suggestions() const {
    QSet<QString> added;
    for (const StartupItem& item : m_parts.workingCopy.startup().items) {
        if (item.kind == StartupItemKind::addedApp) {
            added.insert(comparablePath(item.path));
        }
    }
    QList<StartupLaunchItem> applications = m_parts.system.performanceApplications();
    applications.removeIf(
        [&added](const StartupLaunchItem& each) { return added.contains(comparablePath(each.path)); });
    return applications;
}

QString StartupEditing::searchText(const StartupItem& item) const {
    const auto known = m_searchTexts.constFind(item.id);
    return known != m_searchTexts.cend() ? *known : startupSearchText(item);
}

bool StartupEditing::canReview() const {
    const StartupConfiguration startup =
        withoutWhatIsOff(m_parts.workingCopy.startup(), m_parts.workingCopy.discovered());
    return hasStartupChanges(startup) || !startup.notOpenedOf(m_parts.system.managedStartupAppPaths()).isEmpty();
}

// ---- What is decided

void StartupEditing::switchItem(const QString& id, ActionListener& listener) {
    const StartupItem* const item = itemWithId(m_parts.workingCopy.startup(), id);
    if (item == nullptr || !isIdle()) {
        return;
    }
    if (item->isProtected && item->runsAtStartup) {
        m_parts.tasks.start(switchProtectedOff(id, listener));
    } else {
        m_parts.workingCopy.setRunsAtStartup(id, !item->runsAtStartup);
    }
}

QCoro::Task<ActionOutcome> StartupEditing::switchProtectedOff(const QString& id, ActionListener& listener) {
    return m_parts.stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        const std::optional<Alert> question = protectedItemQuestion();
        action.outcome.succeeded = co_await action.isAgreedTo(question);
        if (action.outcome.succeeded) {
            m_parts.workingCopy.setRunsAtStartup(id, false);
        }
    });
}

void StartupEditing::toggleHidden(const QString& id) {
    if (isIdle()) {
        m_parts.workingCopy.toggleHidden(id);
    }
}

void StartupEditing::remove(const QString& id) {
    if (isIdle()) {
        m_parts.workingCopy.removeItem(id);
    }
}

void StartupEditing::add(const StartupLaunchItem& application) {
    if (isIdle()) {
        m_parts.workingCopy.addLaunchItem(application);
        Q_EMIT added(addedItemId(application.path));
    }
}

QCoro::Task<ActionOutcome> StartupEditing::pickApplication(ActionListener& listener) {
    return m_parts.stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        const QFuture<std::optional<QString>> panel =
            m_parts.system.host().filePanels.open(kChooseApplication, FileKind::Application);
        const std::optional<QString> path = co_await panel;
        if (!path || !path->endsWith(u".app"_s) || !action.mayGoOn()) {
            co_return;
        }
        action.outcome.succeeded = true;
        m_parts.workingCopy.addLaunchItem({nameInPath(*path), *path, false});
        Q_EMIT added(addedItemId(*path));
    });
}

QCoro::Task<ActionOutcome> StartupEditing::clearSelection(ActionListener& listener) {
    return m_parts.stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        std::optional<Alert> question;
        if (hasAddedApp(m_parts.workingCopy.startup())) {
            question = clearSelectionQuestion();
        }
        action.outcome.succeeded = co_await action.isAgreedTo(question);
        if (action.outcome.succeeded) {
            m_parts.workingCopy.resetStartup();
        }
    });
}

void StartupEditing::setServiceDisabled(CloudSyncService service, bool disabled) {
    if (isIdle()) {
        m_parts.workingCopy.setCloudSyncDisabled(service, disabled);
    }
}

void StartupEditing::setNetworkDisabled(bool disabled) {
    if (isIdle()) {
        m_parts.workingCopy.setNetworkDisabled(disabled);
    }
}

} // namespace quorvane
