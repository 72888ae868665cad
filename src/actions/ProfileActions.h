#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "profiles/UnifiedProfile.h"

#include <functional>

namespace quorvane {

class Action;
class ActionStage;
class ActiveProfile;
class MasterProfileState;
class ModeManager;
class NotificationCenter;
class ProfileCloudManager;
class ProfileLabel;
class ProfileManager;
class SavedProfiles;
class SystemManager;
class Tasks;
class UserDefaults;

/// Who has started an action that is told in other words there.
enum class StartedFrom { Page, Menu };

/// What a user does with saved profiles, Default among them.
class ProfileActions {
public:
    struct Parts {
        SystemManager& system;
        UserDefaults& defaults;
        NotificationCenter& notifications;
        ProfileManager& store;
        SavedProfiles& saved;
        ProfileCloudManager& cloudBackups;
        MasterProfileState& workingCopy;
        ModeManager& mode;
        ActiveProfile& active;
        ProfileLabel& label;
        Tasks& tasks;
    };
    ProfileActions(ActionStage& stage, const Parts& parts);

    /// Loads a saved profile into the working copy and has it reviewed. A Default takes the road of Default.
    /// @param id  what the row shows; another profile of that name isn't loaded
    QCoro::Task<ActionOutcome> pick(const QString& name, QUuid id, StartedFrom from, ActionListener& listener);
    using WhenEditable = std::function<void()>;
    /// Loads a saved profile into the working copy, to be edited. Succeeded when it is loaded.
    /// @param whenLoaded  called then
    QCoro::Task<ActionOutcome> edit(const QString& name, QUuid id, const WhenEditable& whenLoaded,
                                    ActionListener& listener);
    /// The one that is loaded, as it stands in the working copy; nothing without one.
    QCoro::Task<ActionOutcome> editCurrent(const WhenEditable& whenEditable, ActionListener& listener);
    /// Empties the working copy; the system and what stands for it stay. Succeeded when it is empty.
    QCoro::Task<ActionOutcome> clear(ActionListener& listener);
    /// Has a profile reviewed and, where the user agrees, applies it with everything that follows.
    /// @param profile  as it is stored
    QCoro::Task<ActionOutcome> review(const UnifiedProfile& profile, ActionListener& listener);
    /// "Apply Default" or, in the menu, "Restore Default".
    QCoro::Task<ActionOutcome> restoreDefault(StartedFrom from, ActionListener& listener);
    /// Deletes a saved profile.
    QCoro::Task<ActionOutcome> remove(const QString& name, QUuid id, ActionListener& listener);
    /// The same of the one that is loaded; nothing without one.
    QCoro::Task<ActionOutcome> removeCurrent(ActionListener& listener);

    // What follows an apply that an action has carried out.

    /// True where it is saved just as it is.
    bool isSaved(const UnifiedProfile& profile) const;
    QCoro::Task<void> followAppliedProfile(Action& action, UnifiedProfile profile);
    QCoro::Task<void> followDefault(StartedFrom from);

private:
    QCoro::Task<void> tellNotLoaded(Action& action, QString name, StartedFrom from);
    QCoro::Task<void> reviewAndApply(Action& action, UnifiedProfile profile);
    QCoro::Task<void> apply(Action& action, UnifiedProfile profile, QString busyText);
    QCoro::Task<ReviewPreview> preview(UnifiedProfile profile);
    QCoro::Task<void> askAndRestoreDefault(Action& action, StartedFrom from);
    QCoro::Task<void> backUpDefault();
    QCoro::Task<void> carryOutRemoval(Action& action, QString name, QUuid id);
    QCoro::Task<bool> isGone(QString name, QUuid id);
    void forget(const QString& name, const QUuid& id);

    ActionStage& m_stage;
    Parts m_parts;
};

} // namespace quorvane
