#include "profiles/ProfileManager.h"

#include "core/FoldedText.h"
#include "core/JsonErrors.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileNames.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

const QString kExtension = u".json"_s;

/// Does what may fail without harm; true when it didn't fail.
template <typename Action>
bool attempt(Action action) {
    try {
        action();
        return true;
    } catch (const FileError&) {
        return false;
    }
}

/// None where there is none, or it can't be told which.
std::optional<QString> onlyOne(const QStringList& names) {
    return names.size() == 1 ? std::optional(names.first()) : std::nullopt;
}

} // namespace

QString profilesDirectory(const Machine& machine) {
    return machine.applicationSupportFolder() + u"/Quorvane/UnifiedProfiles"_s;
}

ProfileManager::ProfileManager(FileManager& files, QString profilesDirectory)
    : m_files(files)
    , m_profilesDirectory(std::move(profilesDirectory)) {}

QString ProfileManager::profilesDirectory() const {
    attempt([this] { m_files.createFolders(m_profilesDirectory); });
    return m_profilesDirectory;
}

// ---- Reading

std::optional<UnifiedProfile> ProfileManager::loadProfile(const QString& named) const {
    if (isProfileFileName(named)) {
        if (auto profile = readProfile(named)) {
            return profile;
        }
    }
    return wholeReading().profile(named);
}

bool ProfileManager::isUnreadable(const QString& named) const {
    if (isProfileFileName(named) && standsThere(named)) {
        return !readProfile(named);
    }
    return wholeReading().isUnreadable(named);
}

ProfileListing ProfileManager::listing() const {
    return wholeReading().listing();
}

ProfileManager::Reading ProfileManager::reading() const {
    return Reading(*this);
}

bool ProfileManager::Reading::step() {
    if (!m_names) {
        m_names.emplace();
        attempt([this] { m_names = m_store.baseNames(); });
    } else if (!m_names->isEmpty()) {
        const QString baseName = m_names->takeFirst();
        if (auto profile = m_store.readProfile(baseName)) {
            m_stored.append({{baseName, profile->id, profile->name}, *std::move(profile)});
        } else {
            m_unreadable.append(baseName);
        }
    }
    return !m_names->isEmpty();
}

ProfileListing ProfileManager::Reading::listing() const {
    ProfileListing listing;
    const QList<StoredProfile> stored = newestFirst(m_stored);
    for (const StoredProfile& each : stored) {
        listing.profiles.append(each.profile);
        listing.fileNames.append(each.file.baseName);
    }
    listing.unreadable = m_unreadable;
    return listing;
}

std::optional<UnifiedProfile> ProfileManager::Reading::profile(const QString& named) const {
    const StoredProfile* const found = find(named);
    return found != nullptr ? std::optional(found->profile) : std::nullopt;
}

bool ProfileManager::Reading::isUnreadable(const QString& named) const {
    const QString key = profileNameKey(named);
    const bool isRead = std::any_of(m_stored.cbegin(), m_stored.cend(),
                                    [&named](const StoredProfile& each) { return each.file.baseName == named; });
    return !isRead && std::any_of(m_unreadable.cbegin(), m_unreadable.cend(),
                                  [&key](const QString& baseName) { return profileNameKey(baseName) == key; });
}

/// In the file of that name, or else the newest that bears the name. Null without one.
const ProfileManager::StoredProfile* ProfileManager::Reading::find(const QString& named) const {
    const QString key = profileNameKey(named);
    const StoredProfile* newest = nullptr;
    for (const StoredProfile& each : m_stored) {
        if (each.file.baseName == named) {
            return &each;
        }
        const bool isNewer = newest == nullptr || each.profile.dateCreated > newest->profile.dateCreated;
        if (profileNameKey(each.file.name) == key && isNewer) {
            newest = &each;
        }
    }
    return newest;
}

QList<ProfileManager::StoredFile> ProfileManager::Reading::files() const {
    QList<StoredFile> files;
    for (const StoredProfile& stored : m_stored) {
        files.append(stored.file);
    }
    return files;
}

/// Under which the folder has its files.
QSet<QString> ProfileManager::Reading::baseNames() const {
    QSet<QString> names(m_unreadable.cbegin(), m_unreadable.cend());
    for (const StoredProfile& stored : m_stored) {
        names.insert(stored.file.baseName);
    }
    return names;
}

// ---- Saving

QString ProfileManager::savedName(const QString& name) {
    const QString sanitized = sanitizedProfileName(name);
    if (!isUsableProfileName(name)) {
        throw ProfileStoreError(ProfileStoreError::Code::InvalidName, u"Profile name is invalid."_s);
    }
    return sanitized;
}

void ProfileManager::saveProfile(const UnifiedProfile& profile) {
    UnifiedProfile saved = profile;
    saved.name = savedName(profile.name);
    const Reading all = wholeReading();
    QSet<QString> names = all.baseNames();
    write(saved, formerName(saved, all.files()), names);
}

/// The base name of the file that a profile moves out of. A copy with a name of its own is none: the user made it, and it only
/// holds the same `id`.
std::optional<QString> ProfileManager::formerName(const UnifiedProfile& profile, const QList<StoredFile>& files) {
    QStringList all;
    QStringList otherSpellings;
    QStringList named; // as their profile is
    for (const StoredFile& file : files) {
        if (file.id != profile.id) {
            continue;
        }
        if (file.baseName == profile.name) {
            return std::nullopt; // it stays in its file
        }
        all.append(file.baseName);
        if (foldedText(file.baseName) == foldedText(profile.name)) {
            otherSpellings.append(file.baseName);
        }
        if (file.baseName == sanitizedProfileName(file.name)) {
            named.append(file.baseName);
        }
    }
    if (!otherSpellings.isEmpty()) {
        return onlyOne(otherSpellings);
    }
    return onlyOne(all.size() == 1 ? all : named);
}

/// @param profile  under the name it is saved by
/// @param former   the base name of a file that goes when the profile is saved
/// @param names    the base names in the folder; those after the write when it ends
ProfileManager::StoredFile ProfileManager::write(const UnifiedProfile& profile, const std::optional<QString>& former,
                                                 QSet<QString>& names) {
    const std::optional<QString> other = otherSpelling(profile.name, names);
    m_files.writeAtomically(pathOf(profile.name), encodeProfile(profile));
    // The profile is saved; an old spelling or an old file that stays is no loss.
    const bool isSpelledAnew = !other || attempt([&] { m_files.move(pathOf(*other), pathOf(profile.name)); });
    if (other && isSpelledAnew) {
        names.remove(*other);
    }
    const QString baseName = isSpelledAnew ? profile.name : *other;
    names.insert(baseName);
    if (former && *former != baseName && names.contains(*former) && attempt([&] { m_files.remove(pathOf(*former)); })) {
        names.remove(*former);
    }
    return {baseName, profile.id, profile.name};
}

/// The name of the file that the volume takes this one for: one that ignores case writes "Live" into an existing "live" and
/// keeps the old spelling.
std::optional<QString> ProfileManager::otherSpelling(const QString& baseName, const QSet<QString>& names) const {
    if (names.contains(baseName) || !m_files.exists(pathOf(baseName))) {
        return std::nullopt;
    }
    const QString folded = foldedText(baseName);
    const auto found = std::find_if(names.cbegin(), names.cend(),
                                    [&folded](const QString& name) { return foldedText(name) == folded; });
    return found == names.cend() ? std::nullopt : std::optional(*found);
}

// ---- Deleting

void ProfileManager::deleteProfile(const QString& named) {
    if (isProfileFileName(named) && standsThere(named)) {
        attempt([&] { m_files.remove(pathOf(named)); });
        return;
    }
    const Reading all = wholeReading();
    const StoredProfile* const found = all.find(named);
    // A file of another name than its profile's is the user's own copy.
    if (found != nullptr && profileNameKey(found->file.baseName) == profileNameKey(named)) {
        attempt([&] { m_files.remove(pathOf(found->file.baseName)); });
    }
}

// ---- Files

QString ProfileManager::pathOf(const QString& baseName) const {
    return m_profilesDirectory + u'/' + baseName + kExtension;
}

/// Of the profile files, in the order of the folder. Throws FileError.
QStringList ProfileManager::baseNames() const {
    QStringList names;
    for (const QString& entry : m_files.list(profilesDirectory())) {
        if (entry.endsWith(kExtension) && entry != kExtension) {
            names.append(entry.chopped(kExtension.size()));
        }
    }
    return names;
}

bool ProfileManager::standsThere(const QString& baseName) const {
    return m_files.status(pathOf(baseName)).kind != FileStatus::Kind::Missing;
}

std::optional<UnifiedProfile> ProfileManager::readProfile(const QString& baseName) const {
    try {
        return decodeProfile(m_files.read(pathOf(baseName)));
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

ProfileManager::Reading ProfileManager::wholeReading() const {
    Reading all(*this);
    while (all.step()) {
    }
    return all;
}

QList<ProfileManager::StoredProfile> ProfileManager::newestFirst(QList<StoredProfile> stored) {
    std::stable_sort(stored.begin(), stored.end(), [](const StoredProfile& left, const StoredProfile& right) {
        return left.profile.dateCreated > right.profile.dateCreated;
    });
    return stored;
}

} // namespace quorvane
