#include "actions/ProfileSaveOffer.h"

#include "actions/ProfileTexts.h"
#include "actions/SavedProfiles.h"
#include "profiles/MasterProfileState.h"
#include "profiles/ProfileNames.h"

namespace quorvane {

ProfileSaveOffer::ProfileSaveOffer(const SavedProfiles& saved, const MasterProfileState& workingCopy, QObject* parent)
    : SheetOffer(parent)
    , m_saved(saved)
    , m_workingCopy(workingCopy) {
    if (const std::optional<UnifiedProfile>& loaded = workingCopy.currentProfile()) {
        m_wanted.name = loaded->name;
    }
    connect(&saved, &SavedProfiles::changed, this, &SheetOffer::changed);
    connect(this, &SheetOffer::changed, this, [this] {
        if (state() == State::Failed) {
            m_wanted.savesBaseline = false; // it may have been written before what failed
        }
    });
}

void ProfileSaveOffer::setName(const QString& name) {
    ProfileToSave wanted = m_wanted;
    wanted.name = name;
    update(wanted);
}

void ProfileSaveOffer::setIncludesTweaks(bool includes) {
    ProfileToSave wanted = m_wanted;
    wanted.includesTweaks = includes;
    update(wanted);
}

void ProfileSaveOffer::setIncludesStartup(bool includes) {
    ProfileToSave wanted = m_wanted;
    wanted.includesStartup = includes;
    update(wanted);
}

void ProfileSaveOffer::setSavesBaseline(bool saves) {
    ProfileToSave wanted = m_wanted;
    wanted.savesBaseline = saves;
    update(wanted);
}

void ProfileSaveOffer::update(const ProfileToSave& wanted) {
    m_wanted = wanted;
    Q_EMIT changed();
}

bool ProfileSaveOffer::canSave() const {
    return state() != State::Saving && !m_wanted.name.trimmed().isEmpty();
}

QString ProfileSaveOffer::button() const {
    return useOfProfileName(m_wanted.name, m_saved.known()).isTaken() ? kUpdateProfile : kSave;
}

QString ProfileSaveOffer::note() const {
    return profileNameNote(m_wanted.name);
}

QString ProfileSaveOffer::tweaksText() const {
    return tweaksSelectedText(m_workingCopy.settings());
}

QString ProfileSaveOffer::startupText() const {
    return m_workingCopy.startupSummary();
}

} // namespace quorvane
