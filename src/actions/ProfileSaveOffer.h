#pragma once

#include "actions/ProfileSaving.h"
#include "actions/SheetOffer.h"
#include "profiles/ProfileNameUse.h"

#include <QString>

namespace quorvane {

/// The offer to save the working copy as a profile, as the user fills in its sheet. Main thread.
class ProfileSaveOffer : public SheetOffer {
    Q_OBJECT

public:
    /// Both outlive it.
    ProfileSaveOffer(const SavedProfiles& saved, const MasterProfileState& workingCopy, QObject* parent = nullptr);

    /// What would be saved if it were pressed now. At first under the name of the profile that is loaded.
    const ProfileToSave& wanted() const { return m_wanted; }
    void setName(const QString& name);
    void setIncludesTweaks(bool includes);
    void setIncludesStartup(bool includes);
    void setSavesBaseline(bool saves);

    // ---- What the sheet says

    bool canSave() const;
    /// "Save", or "Update" where the name is taken.
    QString button() const;
    /// Of the name; mostly empty.
    QString note() const;
    QString tweaksText() const;
    QString startupText() const;

private:
    void update(const ProfileToSave& wanted);

    const SavedProfiles& m_saved;
    const MasterProfileState& m_workingCopy;
    ProfileToSave m_wanted;
};

} // namespace quorvane
