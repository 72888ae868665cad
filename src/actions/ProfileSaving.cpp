#include "actions/ProfileSaving.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "actions/ActiveProfile.h"
#include "actions/ProfileActions.h"
#include "actions/ProfileChanges.h"
#include "actions/ProfileSaveOffer.h"
#include "actions/ProfileTexts.h"
#include "actions/SavedProfiles.h"
#include "core/JsonErrors.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "profiles/MasterProfileState.h"
#include "profiles/ProfileCloudManager.h"
#include "profiles/ProfileNames.h"
#include "system/SystemManager.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

std::optional<UnifiedProfile> withId(const QUuid& id, const QList<UnifiedProfile>& profiles) {
    const auto found = std::find_if(profiles.cbegin(), profiles.cend(),
                                    [&id](const UnifiedProfile& profile) { return profile.id == id; });
    return found == profiles.cend() ? std::nullopt : std::optional(*found);
}

bool isEditedItself(const ProfileToSave& wanted, const ProfileNameUse& use) {
    return wanted.edited && use.profile && wanted.edited->id == use.profile->id;
}

/// What the saved profile would be called, or its file.
std::optional<Alert> questionBefore(const ProfileToSave& wanted, const ProfileNameUse& use) {
    if (use.kind == ProfileNameUse::Kind::UnreadableFile) {
        return overwriteUnreadableQuestion(use.file);
    }
    return use.profile && !isEditedItself(wanted, use) ? std::optional(overwriteQuestion(use.profile->name))
                                                       : std::nullopt;
}

} // namespace

ProfileSaving::ProfileSaving(ActionStage& stage, const Parts& parts)
    : m_stage(stage)
    , m_parts(parts) {}

// ---- In the selector

QCoro::Task<ActionOutcome> ProfileSaving::offer(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        const auto offer = std::make_shared<ProfileSaveOffer>(m_parts.saved, m_parts.workingCopy);
        action.show(offer);
        std::optional<ClosingAlert> alert;
        bool isWanted = co_await offer->answer();
        while (isWanted) {
            alert = co_await saveOffered(action, offer);
            isWanted = co_await offer->answer();
        }
        if (alert) {
            co_await action.tell(*alert);
        }
    });
}

/// What keeps it from being saved leaves it offered.
/// @return what is told when the sheet has gone
QCoro::Task<std::optional<ClosingAlert>> ProfileSaving::saveOffered(Action& action,
                                                                    std::shared_ptr<ProfileSaveOffer> offer) {
    const auto begins = [offer] { offer->beginSaving(); };
    const std::optional<Saved> saved = co_await save(action, offer->wanted(), begins);
    if (offer->state() == SheetOffer::State::Saving) {
        offer->endSaving(saved.has_value());
    }
    std::optional<ClosingAlert> alert;
    if (saved) {
        alert = savedAlert(saved->profile.name, saved->hasBaseline);
    }
    co_return alert;
}

// ---- In the wizard

QCoro::Task<ActionOutcome> ProfileSaving::saveInWizard(const ProfileToSave& wanted, Afterwards afterwards,
                                                       const WizardEnd& end, ActionListener& listener) {
    if (afterwards == Afterwards::Apply) {
        return saveAndApply(wanted, end, &listener);
    }
    return m_stage.run(listener,
                       [=, this](Action& action) { return saveAndTell(action, wanted, Afterwards::Nothing, end); });
}

QCoro::Task<void> ProfileSaving::saveAndTell(Action& action, ProfileToSave wanted, Afterwards afterwards,
                                             WizardEnd end) {
    const std::optional<Saved> saved = co_await save(action, wanted, [] {});
    if (!saved) {
        if (action.outcome.wasCarriedOut) {
            end.whenFailed();
        }
        co_return;
    }
    m_parts.system.log(u"\n[WIZARD] Profile saved: "_s + saved->profile.name);
    end.whenSaved(saved->profile);
    if (saved->hasBaseline == false) {
        co_await action.tell(wizardBaselineAlert(saved->profile.name));
    }
    if (afterwards == Afterwards::Nothing) {
        co_await action.tell(wizardSavedAlert(saved->profile.name));
    }
}

/// Applying is an action of its own, which begins when the profile is saved and nothing of that is left.
QCoro::Task<ActionOutcome> ProfileSaving::saveAndApply(ProfileToSave wanted, WizardEnd end, ActionListener* listener) {
    const auto stored = std::make_shared<std::optional<UnifiedProfile>>();
    WizardEnd keeping = end;
    keeping.whenSaved = [=](const UnifiedProfile& profile) {
        *stored = profile;
        end.whenSaved(profile);
    };
    const ActionStage::Body body = [=, this](Action& action) {
        return saveAndTell(action, wanted, Afterwards::Apply, keeping);
    };
    ActionOutcome outcome = co_await m_stage.run(*listener, body);
    if (stored->has_value()) {
        outcome = co_await m_parts.profiles.pick((*stored)->name, (*stored)->id, StartedFrom::Page, *listener);
    }
    co_return outcome;
}

// ---- Both

/// @param begins  called when nothing keeps it from being saved any more
/// @return none where it wasn't saved; what went wrong has been told then
QCoro::Task<std::optional<ProfileSaving::Saved>> ProfileSaving::save(Action& action, ProfileToSave wanted,
                                                                     std::function<void()> begins) {
    if (!co_await action.passesGate(u"save profiles"_s)) {
        co_return std::nullopt;
    }
    m_parts.saved.readAnew(); // others write into the folder, too
    const ProfileListing before = co_await m_parts.saved.list();
    const ProfileNameUse use = useOfProfileName(wanted.name, before);
    if (use.kind == ProfileNameUse::Kind::Unusable) {
        co_await action.tell(notSavedAlert(u"Profile name is invalid."_s));
        co_return std::nullopt;
    }
    if (!co_await isAgreedTo(action, wanted, use)) {
        co_return std::nullopt;
    }
    begins();
    const UnifiedProfile record = recordOf(wanted, use);
    std::optional<Saved> saved;
    QString problem;
    try {
        saved = co_await store(action, wanted, record, before);
    } catch (const ProfileStoreError& error) {
        problem = error.message();
    } catch (const FileError& error) {
        problem = error.message();
    } catch (const EncodingError& error) {
        problem = error.message();
    }
    action.outcome.succeeded = saved.has_value();
    if (!saved) {
        co_await action.tell(notSavedAlert(problem));
    }
    co_return saved;
}

QCoro::Task<bool> ProfileSaving::isAgreedTo(Action& action, ProfileToSave wanted, ProfileNameUse use) {
    const std::optional<Alert> overwrite = questionBefore(wanted, use);
    if (!co_await action.isAgreedTo(overwrite)) {
        co_return false;
    }
    const std::optional<Alert> snapshot =
        wanted.savesBaseline ? questionBeforeSnapshot(m_parts.active.current()) : std::nullopt;
    co_return co_await action.isAgreedTo(snapshot);
}

/// What replaces a profile takes its identity; what is edited keeps its own, unless it replaces another one.
UnifiedProfile ProfileSaving::recordOf(const ProfileToSave& wanted, const ProfileNameUse& use) const {
    const std::optional<UnifiedProfile>& replaced = use.profile ? use.profile : wanted.edited;
    UnifiedProfile record;
    record.id = replaced ? replaced->id : QUuid::createUuid();
    record.dateCreated = replaced ? replaced->dateCreated : m_parts.clock.now();
    record.name = sanitizedProfileName(wanted.name);
    if (wanted.includesTweaks) {
        record.settings = m_parts.workingCopy.settings();
    }
    if (wanted.includesStartup) {
        record.startup = m_parts.workingCopy.startup();
    }
    return record;
}

/// Throws ProfileStoreError, FileError, EncodingError; what came before the file stays then.
QCoro::Task<ProfileSaving::Saved> ProfileSaving::store(Action& action, ProfileToSave wanted, UnifiedProfile record,
                                                       ProfileListing before) {
    const std::optional<UnifiedProfile> former = withId(record.id, before.profiles);
    const bool wasInForce = former && isInForce(m_parts.active.current(), *former);
    const bool isChanged = former && !former->hasSameContent(record);
    const Turnstile::Hold busy =
        action.carryingOut(kSavingProfile, {.match = wasInForce && isChanged, .snapshot = wanted.savesBaseline});
    Saved saved;
    if (wanted.savesBaseline) {
        saved.hasBaseline = co_await captureBaseline(action, record.name);
    }
    if (isDefaultProfileName(record.name)) {
        const bool isDefaultSaved = std::any_of(before.profiles.cbegin(), before.profiles.cend(), isDefaultProfile);
        co_await keepDefaultCopies(record, isDefaultSaved);
    }
    m_parts.store.saveProfile(record);
    saved.profile = readBack(record);
    co_await m_parts.changes.followSave(former, saved.profile);
    co_return saved;
}

QCoro::Task<bool> ProfileSaving::captureBaseline(Action& action, QString name) {
    const std::optional<QString> label = u"Profile: "_s + name;
    action.outcome.capture = co_await m_parts.system.captureSystemSnapshot(label, MasterArchive::Yes);
    co_return isComplete(*action.outcome.capture, MasterArchive::Yes);
}

/// The copies in iCloud are a precaution: the profile is saved without them, too.
QCoro::Task<void> ProfileSaving::keepDefaultCopies(UnifiedProfile record, bool isDefaultSaved) {
    try {
        if (isDefaultSaved) {
            co_await m_parts.cloudBackups.ensureDefaultBackups(m_parts.store); // of what is replaced
        }
        co_await m_parts.cloudBackups.backupDefaultProfile(m_parts.store, record);
    } catch (const ProfileCloudError&) {
    }
}

/// As it stands in its file now. Throws FileError when that holds something else.
UnifiedProfile ProfileSaving::readBack(const UnifiedProfile& record) const {
    const std::optional<UnifiedProfile> stored = m_parts.store.loadProfile(record.name);
    if (!stored || stored->id != record.id || stored->settings != record.settings) {
        throw FileError(m_parts.store.profilesDirectory() + u'/' + record.name + u".json"_s,
                        u"it doesn’t hold what was written"_s);
    }
    return *stored;
}

} // namespace quorvane
