#pragma once

#include "profiles/ProfileManager.h"

#include <QString>

#include <optional>

namespace quorvane {

/// What saving under a name would meet.
struct ProfileNameUse {
    enum class Kind {
        Unusable, ///< no file can have it: see isUsableProfileName
        Free,
        Profile,        ///< a saved one would be replaced
        UnreadableFile, ///< one that holds no profile that can be read would be replaced
    };

    Kind kind = Kind::Free;
    std::optional<UnifiedProfile> profile{}; ///< for Profile
    QString file{};                          ///< for UnreadableFile, without ".json"

    bool isTaken() const { return kind == Kind::Profile || kind == Kind::UnreadableFile; }
};

/// A name goes by the file that it would be written to before it goes by what a profile elsewhere is called. Two names are the
/// same where their profileNameKey is.
ProfileNameUse useOfProfileName(const QString& name, const ProfileListing& saved);

} // namespace quorvane
