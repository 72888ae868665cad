#include "wallpaper/WallpaperProfileOverlay.h"

#include "core/UserDefaultKeys.h"
#include "platform/Displays.h"
#include "platform/Machine.h"
#include "platform/SystemNotifications.h"
#include "platform/UserDefaults.h"
#include "profiles/ProfileManager.h"
#include "profiles/UnifiedProfile.h"
#include "system/SystemManager.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <exception>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kNoLabel = u"Default"_s;

bool isCustomName(const QString& name) {
    return !name.isEmpty() && !isDefaultProfileName(name);
}

} // namespace

WallpaperProfileOverlay::WallpaperProfileOverlay(const WallpaperPorts& ports, QObject* parent)
    : ProfileLabel(parent)
    , m_ports(ports)
    , m_label(ports, [this](const QString& line) { log(line); })
    , m_notifications(ports.notifications.observe(u"com.apple.desktop"_s, [this] { enqueue(Job::Kind::Check); }))
    , m_desktopChanges(ports.displays.observe([this](DesktopChange change) { lookAgain(change); })) {}

WallpaperProfileOverlay::~WallpaperProfileOverlay() = default;

void WallpaperProfileOverlay::setLogAction(LogAction logAction) {
    m_logAction = std::move(logAction);
}

void WallpaperProfileOverlay::follow(SystemManager& system) {
    setLogAction([&system](const QString& line) { system.log(line); });
    connect(
        &system, &SystemManager::appliedConfigurationRecorded, this,
        [this](const QString& name) { updateForAppliedProfile(name); }, Qt::QueuedConnection);
}

void WallpaperProfileOverlay::log(const QString& line) const {
    if (m_logAction) {
        m_logAction(line);
    }
}

// ---- What is asked for

QCoro::Task<void> WallpaperProfileOverlay::setOverlayEnabled(bool enabled, QString name) {
    m_ports.defaults.setBoolean(kShowProfileOnWallpaper, enabled);
    if (!enabled) {
        co_await removeOverlay();
        co_return;
    }
    if (const std::optional<QString> resolved = resolvedOrLogged(name)) {
        co_await enqueue(Job::Kind::Update, *resolved, DesktopLabel::Attempt::AnimatedToo);
    }
}

QCoro::Task<void> WallpaperProfileOverlay::updateAtStart(QString name) {
    if (isOff()) {
        co_await enqueue(Job::Kind::Check);
    } else {
        co_await showActive(name);
    }
}

QCoro::Task<void> WallpaperProfileOverlay::updateForAppliedProfile(QString name) {
    if (isEnabled() && isCustomName(name)) {
        m_ports.defaults.setString(kQuorvaneLastAppliedProfileName, name);
    }
    co_await showActive(name);
}

QCoro::Task<void> WallpaperProfileOverlay::showActive(QString name) {
    if (!isEnabled()) {
        co_await enqueue(Job::Kind::Check);
        co_return;
    }
    if (isDefaultProfileName(name)) {
        co_await enqueue(Job::Kind::Update, kNoLabel);
        co_return;
    }
    const std::optional<QString> resolved = resolvedOrLogged(name);
    if (!resolved) {
        co_await enqueue(Job::Kind::Check);
        co_return;
    }
    co_await enqueue(Job::Kind::Update, *resolved);
}

QCoro::Task<void> WallpaperProfileOverlay::refreshForProfile(QString name) {
    if (!name.isEmpty() && name != comingName()) {
        co_await enqueue(Job::Kind::Update, name);
    }
}

QCoro::Task<void> WallpaperProfileOverlay::applyOverlay(QString name) {
    if (!name.isEmpty()) {
        co_await enqueue(Job::Kind::Update, name);
    }
}

QCoro::Task<void> WallpaperProfileOverlay::removeOverlay() {
    co_await enqueue(Job::Kind::Removal);
}

QCoro::Task<void> WallpaperProfileOverlay::finished() {
    while (m_isApplyingOverlay) {
        co_await enqueue(Job::Kind::Check);
    }
}

// ---- Names

bool WallpaperProfileOverlay::isEnabled() const {
    return m_ports.defaults.boolean(kShowProfileOnWallpaper);
}

bool WallpaperProfileOverlay::isOff() const {
    return !isEnabled() || isDefaultProfileName(storedName());
}

bool WallpaperProfileOverlay::isOverlayInPlace() const {
    return !isOff() && m_label.isInPlace(storedName());
}

bool WallpaperProfileOverlay::hasAnimatedPicture() const {
    return m_label.hasAnimatedPicture();
}

QString WallpaperProfileOverlay::storedName() const {
    const QString name = m_ports.defaults.string(kWallpaperProfileName).value_or(QString());
    return name.isEmpty() ? kNoLabel : name;
}

/// The name that will be stored when everything is done that was asked for.
QString WallpaperProfileOverlay::comingName() const {
    for (auto job = m_waiting.crbegin(); job != m_waiting.crend(); ++job) {
        if (job->kind != Job::Kind::Check) {
            return job->kind == Job::Kind::Update ? job->name : kNoLabel;
        }
    }
    return m_nameOfJobAtHand.value_or(storedName());
}

/// What was applied comes before the first profile, and that one before what merely stands there: a label must not outlive
/// its profile while there is another one to name.
std::optional<QString> WallpaperProfileOverlay::resolvedProfileName(const QString& explicitName) const {
    if (isCustomName(explicitName)) {
        return explicitName;
    }
    const QString applied = m_ports.defaults.string(kQuorvaneLastAppliedProfileName).value_or(QString());
    if (isCustomName(applied)) {
        return applied;
    }
    const QList<UnifiedProfile> profiles =
        ProfileManager(m_ports.files, profilesDirectory(m_ports.machine)).listProfiles();
    if (!profiles.isEmpty() && isCustomName(profiles.first().name)) {
        return profiles.first().name;
    }
    const QString stored = storedName();
    return isCustomName(stored) ? std::optional(stored) : std::nullopt;
}

std::optional<QString> WallpaperProfileOverlay::resolvedOrLogged(const QString& explicitName) const {
    const std::optional<QString> resolved = resolvedProfileName(explicitName);
    if (!resolved) {
        log(u"  [INFO] Wallpaper overlay enabled but no custom profile name is available."_s);
    }
    return resolved;
}

// ---- The queue

/// A change of Space counts at once, also for what is under way.
void WallpaperProfileOverlay::lookAgain(DesktopChange change) {
    if (change == DesktopChange::Space) {
        m_label.noteAnotherSpace();
    }
    enqueue(Job::Kind::Check);
}

QFuture<void> WallpaperProfileOverlay::enqueue(Job::Kind kind, const QString& name, DesktopLabel::Attempt attempt) {
    if (Job* const waiting = waitingJobToShare(kind)) {
        waiting->name = name;
        waiting->attempt = std::max(waiting->attempt, attempt);
        return waiting->promise->future();
    }
    Job job{kind, name, attempt, std::make_unique<QPromise<void>>()};
    job.promise->start();
    const QFuture<void> done = job.promise->future();
    m_waiting.push_back(std::move(job));
    if (!m_isApplyingOverlay) {
        runQueue();
    }
    return done;
}

/// A check that waits sees everything that has happened until then; an update makes the one before it superfluous, unless
/// a removal stands between them.
WallpaperProfileOverlay::Job* WallpaperProfileOverlay::waitingJobToShare(Job::Kind kind) {
    for (auto job = m_waiting.rbegin(); job != m_waiting.rend(); ++job) {
        if (job->kind == kind && kind != Job::Kind::Removal) {
            return &*job;
        }
        if (job->kind == Job::Kind::Removal && kind == Job::Kind::Update) {
            return nullptr;
        }
    }
    return nullptr;
}

QCoro::Task<void> WallpaperProfileOverlay::runQueue() {
    m_isApplyingOverlay = true;
    while (!m_waiting.empty()) {
        const Job job = std::move(m_waiting.front());
        m_waiting.pop_front();
        co_await carryOutGuarded(job.kind, job.name, job.attempt);
        m_nameOfJobAtHand.reset();
        job.promise->finish();
    }
    m_isApplyingOverlay = false;
}

/// What one job can't do must not keep the next from being done.
QCoro::Task<void> WallpaperProfileOverlay::carryOutGuarded(Job::Kind kind, QString name,
                                                           DesktopLabel::Attempt attempt) {
    try {
        co_await carryOut(kind, name, attempt);
    } catch (const std::exception& error) {
        log(u"  [ERROR] The wallpaper label could not be changed: "_s + QString::fromUtf8(error.what()));
    }
}

QCoro::Task<void> WallpaperProfileOverlay::carryOut(Job::Kind kind, QString name, DesktopLabel::Attempt attempt) {
    m_label.begin(kind == Job::Kind::Check ? Spaces::Unknown : Spaces::TheSame);
    switch (kind) {
    case Job::Kind::Update:
        m_nameOfJobAtHand = name;
        co_await carryOutUpdate(name, attempt);
        break;
    case Job::Kind::Removal:
        m_nameOfJobAtHand = kNoLabel;
        carryOutRemoval();
        break;
    case Job::Kind::Check:
        co_await carryOutCheck();
        break;
    }
}

QCoro::Task<void> WallpaperProfileOverlay::carryOutUpdate(QString name, DesktopLabel::Attempt attempt) {
    if (isEnabled() && isDefaultProfileName(name)) {
        carryOutRemoval();
        co_return;
    }
    m_ports.defaults.setString(kWallpaperProfileName, name);
    if (isEnabled()) {
        co_await show(name, attempt);
    }
}

void WallpaperProfileOverlay::carryOutRemoval() {
    m_label.restoreOriginals();
    m_ports.defaults.setString(kWallpaperProfileName, kNoLabel);
    log(u"  [APPLIED] Wallpaper profile label removed."_s);
}

/// The program's own changes lead here, too, and find everything in place. What has failed is left alone until something
/// else is asked for or shown: otherwise its own attempts could call it for ever.
QCoro::Task<void> WallpaperProfileOverlay::carryOutCheck() {
    m_label.keepTrack();
    if (isOff()) {
        if (m_label.hasLeftOver()) {
            m_label.restoreOriginals();
        }
    } else if (!m_label.isInPlaceWhereItCan(storedName())) {
        co_await show(storedName(), DesktopLabel::Attempt::Untried);
    } else {
        m_label.takeChoices();
    }
}

QCoro::Task<void> WallpaperProfileOverlay::show(QString name, DesktopLabel::Attempt attempt) {
    const QList<DisplayLabel> labels = co_await m_label.show(name, attempt);
    Q_EMIT displaysLabelled(labels);
    if (m_label.wasOvertaken()) {
        enqueue(Job::Kind::Check);
    }
}

} // namespace quorvane
