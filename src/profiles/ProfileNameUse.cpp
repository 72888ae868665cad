#include "profiles/ProfileNameUse.h"

#include "profiles/ProfileNames.h"

#include <algorithm>

namespace quorvane {

namespace {

ProfileNameUse profileUse(const UnifiedProfile& profile) {
    return {.kind = ProfileNameUse::Kind::Profile, .profile = profile};
}

} // namespace

ProfileNameUse useOfProfileName(const QString& name, const ProfileListing& saved) {
    if (!isUsableProfileName(name)) {
        return {.kind = ProfileNameUse::Kind::Unusable};
    }
    const QString key = profileNameKey(name);
    const auto isMeant = [&key](const QString& other) { return profileNameKey(other) == key; };
    const auto unreadable = std::find_if(saved.unreadable.cbegin(), saved.unreadable.cend(), isMeant);
    if (unreadable != saved.unreadable.cend()) {
        return {.kind = ProfileNameUse::Kind::UnreadableFile, .file = *unreadable};
    }
    const auto file = std::find_if(saved.fileNames.cbegin(), saved.fileNames.cend(), isMeant);
    if (file != saved.fileNames.cend()) {
        return profileUse(saved.profiles.at(file - saved.fileNames.cbegin()));
    }
    const auto named = std::find_if(saved.profiles.cbegin(), saved.profiles.cend(),
                                    [&isMeant](const UnifiedProfile& profile) { return isMeant(profile.name); });
    return named != saved.profiles.cend() ? profileUse(*named) : ProfileNameUse{};
}

} // namespace quorvane
