#pragma once

#include "actions/ProfileSaving.h"

#include <QObject>
#include <QSet>
#include <QString>

#include <optional>

namespace quorvane {

enum class WizardStep { tweaks, startup, save };
inline constexpr int kWizardSteps = 3;

/// One composing of a profile, from the first step to its end. The working copy is what is composed. Main thread.
class ProfileWizard : public QObject {
    Q_OBJECT

public:
    /// A new profile, which begins with what the working copy holds; the profile that it was loaded from is left alone.
    static std::unique_ptr<ProfileWizard> forNew(MasterProfileState& workingCopy, const SavedProfiles& saved);
    /// The profile that the working copy was loaded from.
    static std::unique_ptr<ProfileWizard> forEdit(MasterProfileState& workingCopy, const SavedProfiles& saved);
    /// One that wasn't saved gives the working copy its profile back.
    ~ProfileWizard() override;

    WizardStep step() const { return m_step; }
    bool isVisited(WizardStep step) const { return m_visited.contains(step); }
    /// True for the steps that were reached before.
    bool canGoTo(WizardStep step) const;
    bool isEditing() const { return m_wanted.edited.has_value(); }
    /// What "Save Profile" would save.
    const ProfileToSave& wanted() const { return m_wanted; }
    ProfileSaving::Afterwards afterwards() const { return m_afterwards; }

    // ---- What the user does

    /// "Continue"; nothing on the last step.
    void goOn();
    /// @return false on the first step: the wizard is left
    bool goBack();
    /// Nothing where that step can't be reached yet.
    void goTo(WizardStep step);
    void setName(const QString& name);
    void setSavesBaseline(bool saves);
    void setAppliesAfterwards(bool applies);

    // ---- What the page says

    QString title() const;
    QString stepTitle() const;
    static QString titleOf(WizardStep step);
    bool canSave() const;
    /// Of the name; mostly empty.
    QString note() const;

    // ---- What comes of it

    void saved() { m_isSaved = true; }
    /// A baseline may have been written before what failed.
    void notSaved() { setSavesBaseline(false); }

Q_SIGNALS:
    void changed();
    void stepChanged();

private:
    ProfileWizard(MasterProfileState& workingCopy, const SavedProfiles& saved);
    void setStep(WizardStep step);

    MasterProfileState& m_workingCopy;
    const SavedProfiles& m_saved;
    std::optional<UnifiedProfile> m_loadedBefore;
    WizardStep m_step = WizardStep::tweaks;
    QSet<WizardStep> m_visited;
    ProfileToSave m_wanted;
    ProfileSaving::Afterwards m_afterwards = ProfileSaving::Afterwards::Nothing;
    bool m_isSaved = false;
};

} // namespace quorvane
