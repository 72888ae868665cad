#pragma once

#include "platform/AlertPresenter.h"
#include "profiles/ProfileManager.h"

#include <QHash>

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class ActiveProfile;
class MasterProfileState;
class ProfileLabel;
class SavedProfiles;
class SystemManager;
class UserDefaults;

/// What it means for everything that goes by a saved profile when that becomes another: by a save, or by profiles that come from
/// elsewhere, out of a backup or a file.
class ProfileChanges {
public:
    struct Parts {
        SystemManager& system;
        UserDefaults& defaults;
        SavedProfiles& saved;
        MasterProfileState& workingCopy;
        ActiveProfile& active;
        ProfileLabel& label;
    };
    explicit ProfileChanges(const Parts& parts)
        : m_parts(parts) {}

    /// What follows a save.
    /// @param before  the profile as it was saved until then; none for a new one
    /// @param stored  as its file holds it now; the working copy is that from then on
    QCoro::Task<void> followSave(std::optional<UnifiedProfile> before, UnifiedProfile stored);

    /// To be asked before profiles from elsewhere are taken in. None where no saved one would become another.
    /// @param source  what they come from, as its user knows it
    QCoro::Task<std::optional<Alert>> questionBeforeArrival(QList<UnifiedProfile> arriving, QString source);
    /// What follows when profiles from elsewhere were taken in, all or some of them. What the user has edited stays as it is.
    QCoro::Task<void> followArrival(QList<UnifiedProfile> before);

private:
    struct Succession {
        UnifiedProfile before;
        UnifiedProfile now;
    };
    using Successors = QHash<QString, Succession>; ///< by the name that the profile had

    void takeAlong(const Successors& successors);
    std::optional<QString> newName(const Successors& successors, const QString& key) const;
    QCoro::Task<void> showTheChange(std::optional<QString> label);
    void loadAnew(const QList<UnifiedProfile>& saved);

    Parts m_parts;
};

/// The names of the saved profiles that those from elsewhere would replace by others.
QStringList namesReplacedBy(const QList<UnifiedProfile>& arriving, const QList<UnifiedProfile>& saved);

} // namespace quorvane
