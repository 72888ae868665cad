#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "profiles/ProfileNameUse.h"
#include "profiles/UnifiedProfile.h"

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

class Action;
class ActionStage;
class ActiveProfile;
class Clock;
class MasterProfileState;
class ProfileActions;
class ProfileChanges;
class ProfileCloudManager;
class ProfileManager;
class ProfileSaveOffer;
class SavedProfiles;
class SystemManager;

/// What the user wants saved of the working copy, and how.
struct ProfileToSave {
    QString name{};             ///< as it was typed
    bool includesTweaks = true; ///< a half that isn't is empty in what is saved
    bool includesStartup = true;
    bool savesBaseline = false;             ///< first, a master baseline of the Mac as it is now
    std::optional<UnifiedProfile> edited{}; ///< keeps its identity, and moves to a name that no other profile has
};

/// The one way to save a profile.
class ProfileSaving {
public:
    struct Parts {
        SystemManager& system;
        Clock& clock;
        ProfileManager& store;
        SavedProfiles& saved;
        ProfileCloudManager& cloudBackups;
        MasterProfileState& workingCopy;
        ActiveProfile& active;
        ProfileActions& profiles;
        ProfileChanges& changes;
    };
    ProfileSaving(ActionStage& stage, const Parts& parts);

    /// "Save Profile" of the selector: a sheet, until something is saved or the user doesn't want it.
    QCoro::Task<ActionOutcome> offer(ActionListener& listener);

    enum class Afterwards { Nothing, Apply };
    /// What the wizard makes of the end. One that was cancelled before anything was done has neither.
    struct WizardEnd {
        std::function<void(const UnifiedProfile& stored)> whenSaved; ///< before anything is told
        std::function<void()> whenFailed;                            ///< what came before the profile may be done
    };
    /// "Save Profile" of the wizard.
    QCoro::Task<ActionOutcome> saveInWizard(const ProfileToSave& wanted, Afterwards afterwards, const WizardEnd& end,
                                            ActionListener& listener);

private:
    struct Saved {
        UnifiedProfile profile;            ///< as it is stored
        std::optional<bool> hasBaseline{}; ///< none where none was asked for
    };

    QCoro::Task<std::optional<ClosingAlert>> saveOffered(Action& action, std::shared_ptr<ProfileSaveOffer> offer);
    QCoro::Task<void> saveAndTell(Action& action, ProfileToSave wanted, Afterwards afterwards, WizardEnd end);
    QCoro::Task<ActionOutcome> saveAndApply(ProfileToSave wanted, WizardEnd end, ActionListener* listener);

    QCoro::Task<std::optional<Saved>> save(Action& action, ProfileToSave wanted, std::function<void()> begins);
    QCoro::Task<bool> isAgreedTo(Action& action, ProfileToSave wanted, ProfileNameUse use);
    UnifiedProfile recordOf(const ProfileToSave& wanted, const ProfileNameUse& use) const;
    QCoro::Task<Saved> store(Action& action, ProfileToSave wanted, UnifiedProfile record, ProfileListing before);
    QCoro::Task<bool> captureBaseline(Action& action, QString name);
    QCoro::Task<void> keepDefaultCopies(UnifiedProfile record, bool isDefaultSaved);
    UnifiedProfile readBack(const UnifiedProfile& record) const;

    ActionStage& m_stage;
    Parts m_parts;
};

} // namespace quorvane
