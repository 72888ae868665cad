#include "actions/ProfileWizard.h"

#include "actions/ProfileTexts.h"
#include "actions/SavedProfiles.h"
#include "profiles/MasterProfileState.h"

#include <utility>

namespace quorvane {

std::unique_ptr<ProfileWizard> ProfileWizard::forNew(MasterProfileState& workingCopy, const SavedProfiles& saved) {
    std::unique_ptr<ProfileWizard> wizard(new ProfileWizard(workingCopy, saved));
    wizard->m_loadedBefore = workingCopy.currentProfile();
    workingCopy.setCurrentProfile(std::nullopt);
    return wizard;
}

std::unique_ptr<ProfileWizard> ProfileWizard::forEdit(MasterProfileState& workingCopy, const SavedProfiles& saved) {
    std::unique_ptr<ProfileWizard> wizard(new ProfileWizard(workingCopy, saved));
    wizard->m_wanted.edited = workingCopy.currentProfile();
    wizard->m_wanted.name = workingCopy.currentProfile() ? workingCopy.currentProfile()->name : QString();
    return wizard;
}

ProfileWizard::ProfileWizard(MasterProfileState& workingCopy, const SavedProfiles& saved)
    : m_workingCopy(workingCopy)
    , m_saved(saved) {}

/// A profile that was deleted or loaded meanwhile counts more than what was loaded before.
ProfileWizard::~ProfileWizard() {
    const bool isStillThere = m_loadedBefore && m_saved.find(m_loadedBefore->id);
    if (!m_isSaved && isStillThere && !m_workingCopy.currentProfile()) {
        m_workingCopy.setCurrentProfile(m_loadedBefore);
    }
}

void ProfileWizard::setStep(WizardStep step) {
    if (std::exchange(m_step, step) != step) {
        Q_EMIT stepChanged();
        Q_EMIT changed();
    }
}

void ProfileWizard::goOn() {
    m_visited.insert(m_step);
    if (m_step != WizardStep::save) {
        setStep(static_cast<WizardStep>(static_cast<int>(m_step) + 1));
    }
}

bool ProfileWizard::goBack() {
    if (m_step == WizardStep::tweaks) {
        return false;
    }
    setStep(static_cast<WizardStep>(static_cast<int>(m_step) - 1));
    return true;
}

bool ProfileWizard::canGoTo(WizardStep step) const {
    return step == WizardStep::tweaks || isVisited(step) ||
           isVisited(static_cast<WizardStep>(static_cast<int>(step) - 1));
}

void ProfileWizard::goTo(WizardStep step) {
    if (canGoTo(step)) {
        setStep(step);
    }
}

void ProfileWizard::setName(const QString& name) {
    if (std::exchange(m_wanted.name, name) != name) {
        Q_EMIT changed();
    }
}

void ProfileWizard::setSavesBaseline(bool saves) {
    if (std::exchange(m_wanted.savesBaseline, saves) != saves) {
        Q_EMIT changed();
    }
}

void ProfileWizard::setAppliesAfterwards(bool applies) {
    using Afterwards = ProfileSaving::Afterwards;
    const Afterwards wanted = applies ? Afterwards::Apply : Afterwards::Nothing;
    if (std::exchange(m_afterwards, wanted) != wanted) {
        Q_EMIT changed();
    }
}

QString ProfileWizard::title() const {
    return isEditing() ? kEditProfile : kCreateProfile;
}

QString ProfileWizard::stepTitle() const {
    return titleOf(m_step);
}

QString ProfileWizard::titleOf(WizardStep step) {
    switch (step) {
    case WizardStep::tweaks:
        return kSystemTweaks;
    case WizardStep::startup:
        return kStartupOptimization;
    case WizardStep::save:
        break;
    }
    return kSaveProfile;
}

bool ProfileWizard::canSave() const {
    return !m_wanted.name.trimmed().isEmpty();
}

QString ProfileWizard::note() const {
    const QString ofDefault = profileNameNote(m_wanted.name);
    if (!ofDefault.isEmpty() || !isEditing()) {
        return ofDefault;
    }
    const ProfileNameUse use = useOfProfileName(m_wanted.name, m_saved.known());
    const bool isOwn = use.profile && use.profile->id == m_wanted.edited->id;
    return use.isTaken() && !isOwn ? QString() : renameNote(m_wanted.edited->name, m_wanted.name);
}

} // namespace quorvane
