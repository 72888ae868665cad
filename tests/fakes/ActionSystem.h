#pragma once

#include "actions/AlertingListener.h"
#include "actions/Session.h"
#include "actions/SheetModel.h"
#include "core/UserDefaultKeys.h"
#include "fakes/CountingWorkspace.h"
#include "fakes/EventLoop.h"
#include "fakes/ProfileStore.h"
#include "fakes/ScriptedAlertPresenter.h"
#include "fakes/ScriptedSystem.h"
#include "lock/LockManager.h"
#include "snapshots/SnapshotManager.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <memory>
#include <stdexcept>
#include <utility>

namespace quorvane {

/// Shows nothing, and writes down what it is asked for.
class RecordingLabel final : public ProfileLabel {
public:
    explicit RecordingLabel(QStringList& steps)
        : m_steps(steps) {}

    QCoro::Task<void> setOverlayEnabled(bool enabled, QString name) override {
        m_steps.append(enabled ? u"label on: "_s + name : u"label off"_s);
        if (isBroken) {
            throw std::runtime_error("no paint");
        }
        co_return;
    }
    QCoro::Task<void> updateAtStart(QString name) override {
        m_steps.append(u"label at start: "_s + name);
        co_return;
    }
    QCoro::Task<void> updateForAppliedProfile(QString name) override {
        m_steps.append(u"label: "_s + name);
        co_return;
    }
    QCoro::Task<void> refreshForProfile(QString name) override {
        m_steps.append(u"label: "_s + name);
        co_return;
    }
    QCoro::Task<void> finished() override { co_return; }
    bool isOverlayInPlace() const override { return isInPlace; }
    bool hasAnimatedPicture() const override { return coversAnimated; }

    bool isInPlace = true;
    bool coversAnimated = false; ///< a display shows what macOS animates
    bool isBroken = false;

private:
    QStringList& m_steps;
};

/// A window's listener, whose reviews are answered at once, unless a test holds them.
class RecordingListener final : public AlertingListener {
public:
    RecordingListener(QStringList& steps, AlertPresenter& alerts, SystemScans& scans)
        : AlertingListener(alerts, scans)
        , m_steps(steps) {}

    QCoro::Task<bool> review(Review review) override {
        m_steps.append(u"review: "_s + review.title + u" | "_s + review.button);
        if (preparesReviews) {
            preview = co_await review.prepare();
        }
        if (held) {
            const QFuture<void> closing = held->future();
            co_await closing;
        }
        co_return agreesToReviews;
    }
    QCoro::Task<void> showResult(ResultPanel panel) override {
        m_steps.append(u"panel: "_s + panel.title);
        co_return;
    }
    void withdrawReview() override { m_steps.append(u"review withdrawn"_s); }
    void showSheet(std::shared_ptr<SheetModel> shown) override {
        m_steps.append(u"sheet"_s);
        sheet = shown;
    }
    QCoro::Task<void> readAnew(Anew what) override {
        QStringList names;
        for (const auto& [isMeant, name] :
             {std::pair(what.match, u"match"_s), std::pair(what.startupItems, u"items"_s),
              std::pair(what.snapshot, u"snapshot"_s), std::pair(what.backups, u"backups"_s)}) {
            if (isMeant) {
                names.append(name);
            }
        }
        m_steps.append(u"anew: "_s + names.join(u", "_s));
        if (requestsScans) {
            co_await AlertingListener::readAnew(what);
        }
    }

    bool agreesToReviews = true;
    bool preparesReviews = false;
    bool requestsScans = false;
    std::optional<ReviewPreview> preview;
    std::shared_ptr<SheetModel> sheet;
    std::optional<QPromise<void>> held; ///< reviews stay open until it is finished

private:
    QStringList& m_steps;
};

/// A session with a window over scripted ports. `steps` holds in order: questions and alerts, busy texts, the first line of
/// each stretch of the log, what the label is asked for, notifications, reviews, and what is looked at anew. The commands
/// are in `trace`.
class ActionSystem : public ScriptedSystem {
public:
    /// What runs on without being awaited ends before the session does.
    ~ActionSystem() override { QCoro::waitFor(session->shutDown()); }

protected:
    ActionSystem() { start(); }

    void start() {
        session.reset();
        const auto makeGate = [this] {
            auto made = std::make_unique<LockManager>(keychain, biometrics, alerts, workspace, defaults);
            lock = made.get();
            return made;
        };
        const auto makeLabel = [this](SystemManager&) {
            auto made = std::make_unique<RecordingLabel>(steps);
            label = made.get();
            return made;
        };
        const auto shutDownPorts = [this] {
            alerts.shutDown();
            filePanels.shutDown();
            commands.shutDown();
            commands.release();
            clock.shutDown();
        };
        session = std::make_unique<Session>(host, SessionParts{makeGate, makeLabel, shutDownPorts});
        listener = std::make_unique<RecordingListener>(steps, alerts, session->scans);
        QObject::connect(&session->system, &SystemManager::messageLogged, [this](const QString& line) {
            if (steps.isEmpty() || !steps.last().startsWith(u"log: "_s)) {
                steps.append(u"log: "_s + line.trimmed());
            }
        });
        QObject::connect(&session->system, &SystemManager::isBusyChanged, [this](bool isBusy) {
            steps.append(isBusy ? u"busy: "_s + session->system.busyMessage() : u"idle"_s);
        });
        QObject::connect(&session->notifications, &NotificationCenter::posted,
                         [this](const QString& name, const QVariantMap&) { steps.append(u"post: "_s + name); });
    }

    /// With the lock on, and open.
    void enableLock() {
        ASSERT_EQ(lock->enableLock(kPassword, kPassword), std::nullopt);
        ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    }
    /// There is something to go back to: nothing is captured before the first change.
    void saveOwnSnapshot() {
        SystemSnapshot own;
        own.id = QUuid::createUuid();
        own.dateCreated = clock.time;
        SnapshotManager(files, machine).save(own);
    }
    void addProfile(const UnifiedProfile& profile) {
        files.addFile(session->profileStore.profilesDirectory() + u'/' + profile.name + u".json"_s,
                      encodeProfile(profile));
    }
    /// A scan, an apply, or the program's start has made the profile the active one.
    void makeActive(const UnifiedProfile& profile) {
        session->system.recordAppliedConfiguration(profile, {});
        steps.clear();
    }
    /// The saved profiles are known. Reading them takes turns, so that it may not be done at once.
    void listProfiles() {
        session->savedProfiles.list();
        QCoro::waitFor(session->finished());
    }
    QString lastApplied() const { return defaults.values.value(kQuorvaneLastAppliedProfileName).toString(); }
    QStringList takeSteps() { return std::exchange(steps, {}); }
    static ActionOutcome ending(QCoro::Task<ActionOutcome> action) { return QCoro::waitFor(std::move(action)); }

    static inline const QString kPassword = u"gig7"_s;
    static inline const QString kOkay = u" | OK"_s;

    QStringList steps;
    ScriptedAlertPresenter alerts{steps};
    CountingWorkspace workspace{steps};
    LockManager* lock = nullptr;
    RecordingLabel* label = nullptr;
    std::unique_ptr<Session> session;
    std::unique_ptr<RecordingListener> listener;
};

} // namespace quorvane
