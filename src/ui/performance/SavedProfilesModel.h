#pragma once

#include "actions/ActiveProfile.h"
#include "actions/PageTexts.h"
#include "profiles/ProfileManager.h"

#include <QAbstractListModel>
#include <QUuid>

namespace quorvane {

class SavedProfiles;

/// The saved profiles, behind them the files that can't be read, and last Default. Rows are known by what they stand for, so
/// that a change moves nothing else.
class SavedProfilesModel : public QAbstractListModel {
    Q_OBJECT

public:
    SavedProfilesModel(SavedProfiles& saved, const ActiveProfile& active, QObject* parent = nullptr);

    enum class Kind { Profile, Unreadable, Default };

    Kind kind(const QModelIndex& index) const;
    /// Only of a profile.
    const UnifiedProfile& profile(const QModelIndex& index) const;
    /// What a row shows.
    ProfileRow row(const QModelIndex& index) const;
    bool hasProfiles() const { return !m_listing.profiles.isEmpty(); }
    const ProfileListing& listing() const { return m_listing; }

    int rowCount(const QModelIndex& parent = {}) const override;
    /// Display, tool tip, accessible text and description.
    QVariant data(const QModelIndex& index, int role) const override;

private:
    void takeListing();
    void replaceProfiles(const QList<UnifiedProfile>& profiles);
    void insertRun(const QList<UnifiedProfile>& profiles, const QSet<UnifiedProfile>& kept, int row);
    void replaceUnreadable(const QStringList& unreadable);
    void rowsChanged();

    SavedProfiles& m_saved;
    const ActiveProfile& m_active;
    ProfileListing m_listing;
};

} // namespace quorvane
