#include "ui/performance/SavedProfilesModel.h"

#include "actions/SavedProfiles.h"

#include <QSet>
#include <QTextDocument>

#include <algorithm>

namespace quorvane {

namespace {

/// Whether both are shown alike.
bool isShownAlike(const UnifiedProfile& one, const UnifiedProfile& other) {
    return one.hasSameContent(other);
}

} // namespace

SavedProfilesModel::SavedProfilesModel(SavedProfiles& saved, const ActiveProfile& active, QObject* parent)
    : QAbstractListModel(parent)
    , m_saved(saved)
    , m_active(active)
    , m_listing(saved.known()) {
    connect(&saved, &SavedProfiles::changed, this, &SavedProfilesModel::takeListing);
    connect(&active, &ActiveProfile::changed, this, &SavedProfilesModel::rowsChanged);
}

SavedProfilesModel::Kind SavedProfilesModel::kind(const QModelIndex& index) const {
    if (index.row() < m_listing.profiles.size()) {
        return Kind::Profile;
    }
    return index.row() < rowCount() - 1 ? Kind::Unreadable : Kind::Default;
}

const UnifiedProfile& SavedProfilesModel::profile(const QModelIndex& index) const {
    return m_listing.profiles.at(index.row());
}

ProfileRow SavedProfilesModel::row(const QModelIndex& index) const {
    switch (kind(index)) {
    case Kind::Profile:
        return profileRow(profile(index), m_active.current());
    case Kind::Unreadable:
        return {unreadableRow(m_listing.unreadable.at(index.row() - m_listing.profiles.size())), {}, {}, false};
    case Kind::Default:
        break;
    }
    return defaultRow(m_active.current());
}

int SavedProfilesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_listing.profiles.size() + m_listing.unreadable.size() + 1);
}

QVariant SavedProfilesModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const ProfileRow shown = row(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shown.text.title;
    case Qt::ToolTipRole:
        return shown.help.isEmpty() ? QString() : Qt::convertFromPlainText(shown.help); // Qt would guess
    case Qt::AccessibleDescriptionRole: {
        QStringList parts{shown.text.subtitle, shown.mark, shown.help};
        parts.removeAll(QString());
        return parts.join(QStringLiteral(". "));
    }
    default:
        return {};
    }
}

void SavedProfilesModel::takeListing() {
    const ProfileListing& now = m_saved.known();
    replaceUnreadable(now.unreadable);
    replaceProfiles(now.profiles);
}

/// Removes what has gone, then puts the others in their places.
void SavedProfilesModel::replaceProfiles(const QList<UnifiedProfile>& profiles) {
    const QSet<UnifiedProfile> now(profiles.cbegin(), profiles.cend());
    QList<UnifiedProfile>& shown = m_listing.profiles;
    for (int row = static_cast<int>(shown.size()) - 1; row >= 0; --row) {
        if (!now.contains(shown.at(row))) {
            beginRemoveRows({}, row, row);
            shown.removeAt(row);
            endRemoveRows();
        }
    }
    const QSet<UnifiedProfile> kept(shown.cbegin(), shown.cend());
    for (int row = 0; row < profiles.size(); ++row) {
        const UnifiedProfile& profile = profiles.at(row);
        const bool stands = row < shown.size() && shown.at(row) == profile;
        if (!stands && kept.contains(profile)) {
            const auto from = static_cast<int>(shown.indexOf(profile, row));
            beginMoveRows({}, from, from, {}, row);
            shown.move(from, row);
            endMoveRows();
        } else if (!stands) {
            insertRun(profiles, kept, row);
        }
        if (!isShownAlike(shown.at(row), profile)) {
            shown[row] = profile;
            Q_EMIT dataChanged(index(row), index(row));
        }
        shown[row] = profile;
    }
}

/// Those that aren't among the kept ones, from the row on to the next kept one: a view takes note of them once.
void SavedProfilesModel::insertRun(const QList<UnifiedProfile>& profiles, const QSet<UnifiedProfile>& kept, int row) {
    const auto first = profiles.cbegin() + row;
    const auto end =
        std::find_if(first, profiles.cend(), [&kept](const UnifiedProfile& profile) { return kept.contains(profile); });
    QList<UnifiedProfile>& shown = m_listing.profiles;
    beginInsertRows({}, row, row + static_cast<int>(end - first) - 1);
    QList<UnifiedProfile> behind = shown.mid(row);
    shown.resize(row);
    shown.append(QList<UnifiedProfile>(first, end));
    shown.append(behind);
    endInsertRows();
}

/// There are few of them, if any.
void SavedProfilesModel::replaceUnreadable(const QStringList& unreadable) {
    if (unreadable == m_listing.unreadable) {
        return;
    }
    const auto first = static_cast<int>(m_listing.profiles.size());
    if (!m_listing.unreadable.isEmpty()) {
        beginRemoveRows({}, first, first + static_cast<int>(m_listing.unreadable.size()) - 1);
        m_listing.unreadable.clear();
        endRemoveRows();
    }
    if (!unreadable.isEmpty()) {
        beginInsertRows({}, first, first + static_cast<int>(unreadable.size()) - 1);
        m_listing.unreadable = unreadable;
        endInsertRows();
    }
}

/// Another profile is in force.
void SavedProfilesModel::rowsChanged() {
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

} // namespace quorvane
