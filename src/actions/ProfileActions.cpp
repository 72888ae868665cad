#include "actions/ProfileActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "actions/ActiveProfile.h"
#include "actions/SavedProfiles.h"
#include "actions/Tasks.h"
#include "core/NotificationCenter.h"
#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "profiles/MasterProfileState.h"
#include "profiles/ProfileCloudManager.h"
#include "profiles/ProfileLabel.h"
#include "system/SystemManager.h"
#include "tweaks/ModeManager.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kDeleteProfiles = u"delete profiles"_s;

} // namespace

ProfileActions::ProfileActions(ActionStage& stage, const Parts& parts)
    : m_stage(stage)
    , m_parts(parts) {}

// ---- Pick, review, apply

QCoro::Task<ActionOutcome> ProfileActions::pick(const QString& name, QUuid id, StartedFrom from,
                                                ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(u"switch profiles"_s)) {
            co_return;
        }
        const std::optional<UnifiedProfile> profile = m_parts.store.loadProfile(name);
        if (!profile || profile->id != id) {
            co_await tellNotLoaded(action, name, from);
            co_return;
        }
        if (isDefaultProfile(*profile)) {
            co_await askAndRestoreDefault(action, from);
            co_return;
        }
        m_parts.workingCopy.load(*profile);
        m_parts.system.log(u"\n[PROFILE] Loaded: "_s + profile->name);
        m_parts.tasks.start(backUpDefault());
        co_await reviewAndApply(action, *profile);
    });
}

QCoro::Task<ActionOutcome> ProfileActions::edit(const QString& name, QUuid id, const WhenEditable& whenLoaded,
                                                ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(u"switch profiles"_s)) {
            co_return;
        }
        const std::optional<UnifiedProfile> profile = m_parts.store.loadProfile(name);
        if (!profile || profile->id != id) {
            co_await tellNotLoaded(action, name, StartedFrom::Page);
            co_return;
        }
        action.carryOutAtOnce();
        m_parts.workingCopy.load(*profile);
        m_parts.system.log(u"\n[PROFILE] Loaded for editing: "_s + profile->name);
        if (!isDefaultProfile(*profile)) {
            m_parts.tasks.start(backUpDefault());
        }
        action.outcome.succeeded = true;
        whenLoaded();
    });
}

QCoro::Task<ActionOutcome> ProfileActions::editCurrent(const WhenEditable& whenEditable, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!m_parts.workingCopy.currentProfile()) {
            co_return;
        }
        if (!co_await action.passesGate(u"switch profiles"_s)) {
            co_return;
        }
        action.outcome.succeeded = true;
        whenEditable();
    });
}

QCoro::Task<ActionOutcome> ProfileActions::clear(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(u"switch profiles"_s)) {
            co_return;
        }
        action.carryOutAtOnce();
        m_parts.workingCopy.clear();
        action.outcome.succeeded = true;
    });
}

QCoro::Task<void> ProfileActions::tellNotLoaded(Action& action, QString name, StartedFrom from) {
    m_parts.saved.readAnew();
    if (from == StartedFrom::Page) {
        co_await action.tell(notLoadedAlert(name));
    }
}

/// Keeps the copies in iCloud fresh while a profile is used. Nobody asked for it, so nobody is told when it can't be done.
QCoro::Task<void> ProfileActions::backUpDefault() {
    try {
        co_await m_parts.cloudBackups.backupDefaultProfile(m_parts.store, std::nullopt);
    } catch (const ProfileCloudError&) {
    }
}

QCoro::Task<ActionOutcome> ProfileActions::review(const UnifiedProfile& profile, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) { return reviewAndApply(action, profile); });
}

QCoro::Task<void> ProfileActions::reviewAndApply(Action& action, UnifiedProfile profile) {
    Review review = reviewOf(ReviewSubject::Profile, profile.name);
    review.prepare = [=, this] { return preview(profile); };
    if (!co_await action.isAgreedTo(review)) {
        co_return;
    }
    {
        const UnlockGate::AutoLockSuppression noAutoLock = action.suppressAutoLock();
        if (!co_await action.keepsWayBack()) {
            co_return;
        }
        co_await apply(action, profile, review.busyText);
    }
    if (action.outcome.succeeded) {
        co_await followAppliedProfile(action, profile);
    }
}

QCoro::Task<ReviewPreview> ProfileActions::preview(UnifiedProfile profile) {
    co_return co_await m_parts.system.previewProfile(profile);
}

QCoro::Task<void> ProfileActions::apply(Action& action, UnifiedProfile profile, QString busyText) {
    const Turnstile::Hold busy = action.carryingOut(busyText, {.match = true});
    action.outcome.succeeded = co_await m_parts.system.applyProfile(profile);
    action.outcome.verification = m_parts.system.lastApplyVerification();
    action.showResult(resultPanel(ReviewSubject::Profile, action.outcome));
}

bool ProfileActions::isSaved(const UnifiedProfile& profile) const {
    const std::optional<UnifiedProfile> stored = m_parts.store.loadProfile(profile.name);
    return stored && stored->id == profile.id && stored->hasSameContent(profile);
}

QCoro::Task<void> ProfileActions::followAppliedProfile(Action& action, UnifiedProfile profile) {
    m_parts.active.update();
    m_parts.notifications.post(kQuorvaneProfileApplied, {{u"profileName"_s, profile.name}});
    m_parts.workingCopy.load(profile);
    m_parts.saved.readAnew();
    co_await m_parts.label.updateForAppliedProfile(profile.name);
    co_await action.tell(restartAlert(profile.name));
}

// ---- Default

QCoro::Task<ActionOutcome> ProfileActions::restoreDefault(StartedFrom from, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) { return askAndRestoreDefault(action, from); });
}

QCoro::Task<void> ProfileActions::askAndRestoreDefault(Action& action, StartedFrom from) {
    const bool isMenu = from == StartedFrom::Menu;
    const QString activity = isMenu ? u"restore default settings"_s : u"apply the Default profile"_s;
    if (!co_await action.passesGate(activity)) {
        co_return;
    }
    if (!co_await action.isAgreedTo(defaultQuestion())) {
        co_return;
    }
    RestoreOutcome restore;
    {
        const Turnstile::Hold busy = action.carryingOut(u"Restoring default settings…"_s, {.match = true});
        restore = co_await m_parts.system.restoreDefault();
    }
    action.outcome.restore = restore;
    action.outcome.succeeded = restore.succeeded;
    if (restore.succeeded) {
        co_await followDefault(from);
    }
    m_parts.saved.readAnew();
    const ClosingAlert alert = isMenu ? menuDefaultAlert(restore) : defaultAlert(restore);
    co_await action.tell(alert);
}

QCoro::Task<void> ProfileActions::followDefault(StartedFrom from) {
    if (from == StartedFrom::Menu) {
        m_parts.mode.setCurrentMode(AppMode::default_);
    }
    m_parts.workingCopy.clear();
    m_parts.active.update();
    co_await m_parts.label.refreshForProfile(UnifiedProfile::defaultProfile().name);
}

// ---- Remove

QCoro::Task<ActionOutcome> ProfileActions::remove(const QString& name, QUuid id, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(kDeleteProfiles)) {
            co_return;
        }
        if (!co_await action.isAgreedTo(deleteQuestion(name))) {
            co_return;
        }
        co_await carryOutRemoval(action, name, id);
    });
}

QCoro::Task<ActionOutcome> ProfileActions::removeCurrent(ActionListener& listener) {
    const std::optional<UnifiedProfile> loaded = m_parts.workingCopy.currentProfile();
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!loaded) {
            co_return;
        }
        if (!co_await action.passesGate(kDeleteProfiles)) {
            co_return;
        }
        if (!co_await action.isAgreedTo(deleteCurrentQuestion(loaded->name))) {
            co_return;
        }
        co_await carryOutRemoval(action, loaded->name, loaded->id);
    });
}

QCoro::Task<void> ProfileActions::carryOutRemoval(Action& action, QString name, QUuid id) {
    action.carryOutAtOnce({.match = m_parts.active.current().id == id});
    action.outcome.succeeded = co_await isGone(name, id);
    if (action.outcome.succeeded) {
        m_parts.system.log(u"\n[PROFILE] Deleted: "_s + name);
        forget(name, id);
    }
    co_await action.tell(deletedAlert(name, action.outcome.succeeded));
}

/// Removes the profile, but not another one that has taken its name since the row was shown.
QCoro::Task<bool> ProfileActions::isGone(QString name, QUuid id) {
    const std::optional<UnifiedProfile> stored = m_parts.store.loadProfile(name);
    if (stored && stored->id != id) {
        m_parts.saved.readAnew();
        co_return false;
    }
    co_return co_await m_parts.saved.remove(name);
}

/// A profile that is gone is neither edited nor the one that was applied last.
void ProfileActions::forget(const QString& name, const QUuid& id) {
    const std::optional<UnifiedProfile>& edited = m_parts.workingCopy.currentProfile();
    if (edited && edited->id == id) {
        m_parts.workingCopy.clear();
    }
    if (m_parts.defaults.string(kQuorvaneLastAppliedProfileName) == name) {
        m_parts.defaults.setString(kQuorvaneLastAppliedProfileName, UnifiedProfile::defaultProfile().name);
    }
    m_parts.active.update();
}

} // namespace quorvane
